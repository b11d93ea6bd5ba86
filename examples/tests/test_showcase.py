"""A first test: the showcase, started, driven and checked. Run it with pytest in the folder of the checkout:

scripts/with-desktop.sh env PYTHONPATH=runner /usr/bin/python3 -m pytest examples/tests
"""

import os
import sys
import time
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "runner"))
BUILD = Path(os.environ.get("QTDRIVER_BUILD", ROOT / "build" / "qt5"))

from qtdriver import ReplyError, Server, launch  # noqa: E402

WINDOW = "Widget:showcase"


@pytest.fixture
def agent():
    """The connection to a fresh showcase whose window is there."""
    with Server() as server:
        with launch([str(BUILD / "bin" / "showcase")], server=server, build=BUILD.parent) as app:
            wait_for(lambda: is_open(app.connection, WINDOW))
            yield app.connection


def is_open(agent, window):
    """Whether the window is there and nothing is in front of it."""
    try:
        agent.check_window(window)
        return True
    except ReplyError:
        return False


def wait_for(condition, seconds=10):
    """Waits until a condition holds; what it returns then is returned."""
    end = time.monotonic() + seconds
    while not (value := condition()):
        assert time.monotonic() < end, "it did not happen in time"
        time.sleep(0.01)
    return value


def test_brewing_counts_the_cups(agent):
    agent.activate_widget(WINDOW, "brewButton")
    agent.activate_widget(WINDOW, "brewButton")
    wait_for(lambda: agent.read_property(WINDOW, "clickCount", "text") == "2")


def test_a_customer_is_entered(agent):
    agent.activate_widget(WINDOW, "pages/qt_tabwidget_tabbar", "Entry fields")
    agent.enter_widget(WINDOW, "customerEdit", "Ada\n")
    wait_for(lambda: agent.read_property(WINDOW, "lastEvent", "text") == "entered: customerEdit Ada")


def test_an_order_is_placed_in_its_dialog(agent):
    agent.activate_widget(WINDOW, "menuBar", "Order/New order...")
    wait_for(lambda: is_open(agent, "Widget:orderDialog"))
    agent.enter_widget("Widget:orderDialog", "dialogCustomerEdit", "Grace")
    agent.activate_widget("Widget:orderDialog", "acceptOrderButton")
    wait_for(lambda: "Grace" in str(agent.read_property(WINDOW, "lastEvent", "text")))
