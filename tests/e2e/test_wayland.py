"""Sessions of Wayland: applications on their screens run as clients of X, since only those can be driven."""

import subprocess
from pathlib import Path

import psutil
import pytest

from qtdriver.desktop.session import WAYLAND_NOTE, session_settings

SCRIPT = str(Path(__file__).resolve().parents[2] / "scripts" / "qtdriver")
X11 = {"QT_QPA_PLATFORM": "xcb"}


@pytest.fixture
def session(monkeypatch):
    """This process is in a session of Wayland."""
    monkeypatch.setenv("WAYLAND_DISPLAY", "wayland-0")
    monkeypatch.delenv("QT_QPA_PLATFORM")


@pytest.mark.parametrize(
    "environment, settings",
    [
        ({"WAYLAND_DISPLAY": "wayland-0"}, X11),
        ({"XDG_SESSION_TYPE": "wayland"}, X11),
        ({"WAYLAND_DISPLAY": "wayland-0", "QT_QPA_PLATFORM": "wayland;xcb"}, X11),
        ({"WAYLAND_DISPLAY": "wayland-0", "QT_QPA_PLATFORM": "offscreen"}, {}),
        ({"WAYLAND_DISPLAY": "wayland-0", "QT_QPA_PLATFORM": "xcb"}, {}),
        ({"XDG_SESSION_TYPE": "x11"}, {}),
        ({}, {}),
    ],
)
def test_qt_is_told_to_use_x_where_it_would_use_wayland(environment, settings):
    assert session_settings(environment) == settings


def test_an_application_on_a_screen_of_wayland_runs_on_x(session, driver, fake_agent):
    app = driver.launch(*fake_agent)
    assert psutil.Process(app.pid).environ()["QT_QPA_PLATFORM"] == "xcb"


def test_a_test_can_choose_another_platform(session, driver, fake_agent):
    app = driver.launch(*fake_agent, environment={"QT_QPA_PLATFORM": "wayland"})
    assert psutil.Process(app.pid).environ()["QT_QPA_PLATFORM"] == "wayland"


def test_the_command_line_says_that_it_runs_on_x(session, build, fake_agent):
    done = subprocess.run(
        [SCRIPT, "run", "--qt", "5", "--build", str(build), "--", *fake_agent],
        stdin=subprocess.DEVNULL,
        capture_output=True,
        text=True,
        timeout=60,
    )
    assert done.stderr.splitlines()[0] == f"qtdriver: {WAYLAND_NOTE}"
