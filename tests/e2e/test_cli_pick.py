"""The command `pick`: the showcase and the mouse, for real."""

import json
import subprocess
import sys
from contextlib import contextmanager

import pytest

from qtdriver import eventually
from qtdriver.commandline.picking import wait_for_click
from qtdriver.errors.commandline import PickError

from oneshot import QTDRIVER, data, held, interrupt, is_running, qtdriver, runtime, to_interrupt  # noqa: F401


def test_what_is_under_the_cursor_is_picked(held):
    qtdriver("mouse", "Roastery", "brewButton", "move")
    picked = data("pick", "--countdown", "0")
    assert picked["path"].endswith("/brewButton") and picked["unique"] is True
    assert (picked["window"], picked["window_name"], picked["class"]) == (
        "Roastery",
        "showcase",
        "QPushButton",
    )
    assert picked["properties"]["text"] == "Brew a cup"
    text = qtdriver("pick", "--countdown", "0.1")
    assert "window by its object name: Widget:showcase" in text and "(unique)" in text


def test_the_address_of_what_is_picked_finds_it_alone(held):
    qtdriver("mouse", "Roastery", 'QPushButton text="Grind"', "move")
    picked = data("pick", "--countdown", "0")
    assert data("get", "Roastery", picked["address"], "text") == "Grind"
    listed = [row for row in data("tree", "Roastery", "--paths") if row["path"] == picked["address"]]
    assert [row["python"] for row in listed] == [picked["python"]]
    text = qtdriver("pick", "--countdown", "0")
    assert f"address: {picked['address']}\nin Python: window.{picked['python']}\n" in text


def test_a_click_picks_without_reaching_the_application(held):
    qtdriver("mouse", "Roastery", "brewButton", "move")
    before = qtdriver("get", "Roastery", "clickCount", "text")
    with subprocess.Popen([QTDRIVER, "pick", "--json"], stdout=subprocess.PIPE, text=True) as picking:
        # A click before the grab is an ordinary one: it is made again until it has picked.
        while picking.poll() is None:
            if _is_grabbed():
                subprocess.run(["xdotool", "click", "1"], check=True)
                picking.wait(30)
        assert json.loads(picking.stdout.read())["path"].endswith("/brewButton")
    assert qtdriver("get", "Roastery", "clickCount", "text") == before


def test_a_mouse_that_another_program_holds_is_told(held):
    with _grab() as status:
        assert status == 0
        message = qtdriver("pick", status=1)
    assert "another program holds the mouse: close its menu, or use --countdown" in message


def _is_grabbed():
    """Whether a program holds the mouse."""
    with _grab() as status:
        return status == 1


def test_an_interrupted_pick_lets_the_mouse_go(held):
    with to_interrupt("pick") as process:
        eventually(_is_grabbed, timeout=30).is_true()
        interrupt(process)
    eventually(_is_grabbed, timeout=30).equals(False)  # long before the time for a click is over


def test_the_end_of_the_application_does_not_wait_for_a_pick(held):
    with subprocess.Popen([QTDRIVER, "pick"], stderr=subprocess.PIPE, text=True) as picking:
        eventually(_is_grabbed, timeout=30).is_true()
        assert qtdriver("stop") == "stopped"  # within its 60 seconds: the time for a click is as long
        assert 'the application is being ended by "qtdriver stop"' in picking.communicate(timeout=30)[1]
    assert picking.returncode == 6
    assert not is_running(held["pid"])


def test_nobody_clicking_is_told_and_lets_the_mouse_go():
    with pytest.raises(PickError, match="nobody clicked within 0 seconds"):
        wait_for_click(None, 0)
    assert not _is_grabbed()


def test_a_missing_python_xlib_is_told(monkeypatch):
    monkeypatch.setitem(sys.modules, "Xlib", None)
    with pytest.raises(PickError, match="needs python3-xlib; use --countdown"):
        wait_for_click(None, 0)


def test_a_display_that_is_not_there_is_told():
    with pytest.raises(PickError, match="the X display ':987' cannot be asked: .*; use --countdown"):
        wait_for_click(":987", 0)


@contextmanager
def _grab():
    """Holds the mouse, if no other program does: the status is X11's GrabSuccess, 0, or AlreadyGrabbed, 1."""
    from Xlib import X, display

    connection = display.Display()
    root = connection.screen().root
    status = root.grab_pointer(False, 0, X.GrabModeAsync, X.GrabModeAsync, X.NONE, X.NONE, X.CurrentTime)
    try:
        yield status
    finally:
        connection.ungrab_pointer(X.CurrentTime)
        connection.close()
