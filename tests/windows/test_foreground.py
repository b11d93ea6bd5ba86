"""A window that Windows refuses to activate, as it does while the user works with another program.

A wait for the foreground ends after half a second. No busy machine makes the quickest of several commands take as long.
"""

import time

import pytest
from hostapp import HostApp

WAIT = 0.5


@pytest.fixture
def app():
    app = HostApp("foregroundhost")
    app.activate("Main", "press")
    app.wait_until("main", "isActiveWindow", "true")
    app.forget()
    yield app
    app.end()


def seconds(command, reply):
    start = time.monotonic()
    assert command() == reply
    return time.monotonic() - start


def test_a_window_comes_to_the_foreground_unless_it_is_refused(app):
    assert app.activate("Other", "press") == "0,QPushButton"
    app.wait_until("other", "isActiveWindow", "true")
    app.activate("Main", "press")
    app.wait_until("main", "isActiveWindow", "true")
    app.do("refuse")
    assert app.activate("Other", "press") == "0,QPushButton"
    assert app.get("other", "isActiveWindow") == "false"
    assert app.get("main", "isActiveWindow") == "true"


def test_a_refused_foreground_is_waited_for_once_and_not_by_each_command(app):
    app.do("refuse")
    press = lambda: app.activate("Other", "press")  # noqa: E731
    assert seconds(press, "0,QPushButton") > 0.8 * WAIT
    assert min(seconds(press, "0,QPushButton") for _ in range(4)) < WAIT / 2
    # Commands on the window that has the foreground do not have it waited for again.
    turns = []
    for _ in range(4):
        assert app.activate("Main", "press") == "0,QPushButton"
        turns.append(seconds(press, "0,QPushButton"))
    assert min(turns) < WAIT / 2
    assert app.events("clicked").count("clicked other press") == 9


def test_keys_go_to_the_window_that_has_the_foreground_as_a_users_do(app):
    assert app.enter("Main", "mainEdit", "s:tea") == "0,QLineEdit"
    app.do("refuse")
    assert app.enter("Other", "otherEdit", "s:coffee") == "0,QLineEdit"
    assert app.get("otherEdit", "text") == ""
    assert app.get("mainEdit", "text") == "teacoffee"
