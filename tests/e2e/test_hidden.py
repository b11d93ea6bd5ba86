"""A window that is not there for the mouse: another program's is in front of it, or the window manager is slow."""

import os
import signal
import threading
from contextlib import contextmanager
from pathlib import Path

import pytest
from Xlib import display

from qtdriver import Driver, NotReadyError, ObscuredError, eventually

from showcase import AGENTS, PROGRAM, QT, running


SECONDS = 1.2  # more than the agent itself waits for a window to come to the front


@pytest.fixture
def window():
    """The main window of a fresh showcase."""
    with running() as (_, app):
        yield app.window(name="showcase")


@pytest.fixture
def window_of_old_agent(window, monkeypatch):
    """The same, as the runner sees it where the agent has no extensions: the mouse finds out that it cannot get there."""
    monkeypatch.setattr(window.app.connection, "_extensions", frozenset())
    return window


@contextmanager
def cover(seconds=None):
    """Another program's window over the whole screen, which no window manager puts behind another, for some seconds or
    within the block."""
    connection = display.Display()
    screen = connection.screen()
    sheet = screen.root.create_window(
        0, 0, screen.width_in_pixels, screen.height_in_pixels, 0, screen.root_depth, override_redirect=True
    )
    sheet.map()
    connection.sync()
    end = threading.Event()

    def wait_and_close():
        end.wait(seconds)
        connection.close()

    closing = threading.Thread(target=wait_and_close)
    closing.start()
    try:
        yield
    finally:
        if seconds is None:
            end.set()
        closing.join()


def window_manager():
    """The process id of the window manager of this display."""
    for folder in Path("/proc").glob("[0-9]*"):
        try:
            settings = (folder / "environ").read_bytes().split(b"\0")
            name = (folder / "comm").read_text().strip()
        except OSError:
            continue  # it has ended, or is another user's
        if name == "openbox" and f"DISPLAY={os.environ['DISPLAY']}".encode() in settings:
            return int(folder.name)
    raise AssertionError("there is no window manager")


@contextmanager
def sleeping_window_manager(seconds):
    """The window manager does nothing for some seconds."""
    pid = window_manager()
    os.kill(pid, signal.SIGSTOP)
    wake_up = threading.Timer(seconds, os.kill, (pid, signal.SIGCONT))
    wake_up.start()
    try:
        yield
    finally:
        wake_up.join()


def noted_of_the_pad(window):
    """The entries of the application's journal for the pad, without the places."""
    lines = window.widget("journal").read("plainText").splitlines()
    return [line.partition(":")[0] for line in lines if "tastingPad" in line]


def refused_as_hidden(window):
    """How many requests the agent has refused because another window was in front."""
    exchanges = window.app.connection.transcript.exchanges()
    return len([exchange for exchange in exchanges if "hidden by another window" in exchange.reply])


def drag(pad):
    pad.drag_to(pad, at=(0.2, 0.2), to=(0.8, 0.8))


@pytest.mark.parametrize(
    "agent, act, noted",
    [
        ("window_of_old_agent", lambda pad: pad.click(at=(0.5, 0.5)), ["pressed", "released"]),
        (
            "window_of_old_agent",
            lambda pad: pad.double_click(at=(0.5, 0.5)),
            ["pressed", "released", "double-clicked"],
        ),
        ("window_of_old_agent", drag, ["pressed", "dragged"]),
        ("window", lambda pad: pad.click(at=(0.5, 0.5)), ["pressed", "released"]),
        ("window", drag, ["pressed", "dragged"]),
    ],
    ids=["click, old agent", "double click, old agent", "drag, old agent", "click", "drag"],
)
def test_the_mouse_waits_for_another_window_to_go_and_then_acts_once(request, agent, act, noted):
    window = request.getfixturevalue(agent)
    with cover(SECONDS):
        act(window.widget("tastingPad"))
    assert refused_as_hidden(window), "there was something to wait for"
    # The last click is handled last: whatever else the pad got is in the journal by then.
    window.widget("brewButton").click()
    eventually(window.widget("clickCount")).has(text="1")
    assert noted_of_the_pad(window) == noted


def test_a_button_a_field_and_a_menu_wait_for_another_window_to_go(window):
    with cover(SECONDS):
        window.widget("brewButton").activate()
    assert refused_as_hidden(window)
    eventually(window.widget("clickCount")).has(text="1")
    window.widget("pages/qt_tabwidget_tabbar").select("Entry fields")
    with cover(SECONDS):
        window.widget("customerEdit").enter("Ada")
    eventually(window.widget("customerEdit")).has(text="Ada")
    with cover(SECONDS):
        window.menu("Order/New order...").activate()
    eventually(window.app.modal("New order")).is_open()


def test_hovering_waits_for_another_window_to_go(window):
    with cover(3 * SECONDS):  # a move to where the mouse is would be a success, whatever is there
        window.widget("tastingPad").hover()
        assert window.app.widget_at_cursor().path.endswith("tastingPad")


def test_an_application_whose_window_manager_is_slow_gets_its_first_click():
    with Driver(build=AGENTS, timeout=10) as driver, sleeping_window_manager(SECONDS):
        window = driver.launch(PROGRAM, qt=QT).window(name="showcase")
        window.widget("brewButton").click()
        eventually(window.widget("clickCount")).has(text="1")


def test_what_stays_hidden_is_told_with_the_reason(window):
    with cover(), pytest.raises(NotReadyError) as caught:
        window.widget("brewButton").click(timeout=SECONDS)
    assert str(caught.value) == (
        "hidden by another window\n"
        'waited 1.2 s in window "Widget:showcase"\n'
        "the widget is brewButton; nothing was done to it\n"
        "another program's window is in front of it, the window manager has not shown it yet, "
        "or the place is beyond the edge of the screen"
    )
    assert_that_nothing_was_pressed(window)


def assert_that_nothing_was_pressed(window):
    window.widget("milkCheck").check()  # what had been pressed before would have its effect first
    eventually(window.widget("milkCheck")).is_checked()
    assert window.widget("clickCount").text() == "0"


def test_an_old_agent_tells_in_its_words_that_it_stays_hidden(window_of_old_agent):
    window = window_of_old_agent
    with cover(), pytest.raises(ObscuredError) as caught:
        window.widget("brewButton").click(timeout=SECONDS)
    assert str(caught.value) == (
        "Exception : Error: widget is hidden by another window\n"
        'waited 1.2 s in window "Widget:showcase"\n'
        "another program's window is in front of it, the window manager has not shown it yet, "
        "or the place is beyond the edge of the screen"
    )
    assert_that_nothing_was_pressed(window)


@pytest.mark.parametrize("place", ["the mouse comes from elsewhere", "the mouse is there"])
def test_a_click_that_stays_hidden_leaves_no_button_held(window_of_old_agent, place):
    window = window_of_old_agent
    window.widget("pages/qt_tabwidget_tabbar").select("Lists")
    origins = window.widget("originView")
    chosen = origins.items()[1]
    origins.select(chosen)
    eventually(lambda: origins.read("itemIsSelected", chosen)).is_true()
    if place == "the mouse is there":
        window.widget("pages/qt_tabwidget_tabbar").select("Lists")
    with cover(), pytest.raises(ObscuredError):
        window.widget("pages/qt_tabwidget_tabbar").select("Lists", timeout=SECONDS)
    origins.hover(at=(0.5, 0.9))  # with a held button it would choose what it passes
    assert origins.read("itemIsSelected", chosen)


@pytest.mark.parametrize("kind", ["MouseMove", "MouseRelease"])
def test_a_part_of_a_drag_is_not_repeated(window, kind):
    assert window.app.connection.knows_locators  # asked for once
    before = len(window.app.connection.transcript.exchanges())
    with cover(), pytest.raises(ObscuredError):
        window.widget("tastingPad").mouse(kind, "left", at=(0.5, 0.5), timeout=60)
    assert len(window.app.connection.transcript.exchanges()) == before + 1
