"""Named widgets that a user could not use yet: what the runner does to them waits, or tells why it was not done."""

import re
import sys
import threading
from contextlib import contextmanager, suppress
from pathlib import Path

import pytest

sys.path.append(str(Path(__file__).resolve().parents[1] / "protocol"))

from hostapp import HostApp
from qtdriver import CommandError, Driver, NotReadyError, WidgetNotFoundError, Window, eventually

from qtdriver.commandline.dialogue import Dialogue
from showcase import AGENTS

BRIEFLY = 0.2
"""Seconds that a test waits for what never comes."""

LONG = 60
"""Seconds that a test would wait if there were anything to wait for."""


@pytest.fixture(scope="module")
def driver():
    with Driver(build=AGENTS, timeout=20) as running:
        yield running


@pytest.fixture
def host(driver):
    """The program whose widgets cannot be used yet; it tells what has happened to them."""
    program = HostApp("readinesshost", serve=False)
    yield program
    assert program.close() == 0


@pytest.fixture
def app(driver, host):
    return driver.attach(pid=host.process.pid)


@pytest.fixture
def main(app):
    window = app.window("Main")
    window.title()
    return window


@pytest.fixture
def items(host, app):
    """The window with views, in front."""
    app.window("Main").title()
    host.show("showItems", "items")
    return app.window("Items")


def requests(app):
    """The names of the requests so far."""
    return [exchange.request.split(",")[0] for exchange in app.connection.transcript.exchanges()]


def nothing_happened(host):
    return host.events("clicked", "press", "release", "move", "dropped") == []


@contextmanager
def when_refused(app, reason, deed):
    """Does the deed when a request within the block has been refused as not ready, for this reason."""
    transcript = app.connection.transcript
    before = len(transcript.exchanges())
    ended, done = threading.Event(), threading.Event()

    def watch():
        while not ended.wait(0.005):
            with suppress(RuntimeError):  # a reply has come just now
                replies = [exchange.reply for exchange in transcript.exchanges()[before:]]
                if f"9,{reason}" in replies:
                    deed()
                    done.set()
                    return

    watching = threading.Thread(target=watch)
    watching.start()
    try:
        yield
    finally:
        ended.set()
        watching.join()
    assert done.is_set(), "it was not refused first"


def press_and_release(widget, **options):
    widget.mouse("MousePress", **options)
    widget.mouse("MouseRelease")


OVERLAY = "covered by QFrame overlay"
ACTS = {
    "click": lambda widget, **options: widget.click(**options),
    "double_click": lambda widget, **options: widget.double_click(**options),
    "activate": lambda widget, **options: widget.activate(**options),
    "mouse": lambda widget, **options: press_and_release(widget, **options),
    "hover": lambda widget, **options: widget.hover(**options),
    "right_click": lambda widget, **options: widget.right_click(at=(0.5, 0.5), **options),
    "drag_to": lambda widget, **options: widget.drag_to(widget, at=(0.4, 0.5), **options),
}


@pytest.mark.parametrize("act", ACTS)
def test_an_action_waits_until_what_covers_the_widget_is_gone(app, host, main, act):
    with when_refused(app, OVERLAY, lambda: host.do("uncover")):
        ACTS[act](main.widget("covered"))
    if act not in ("hover", "right_click"):
        host.wait_for("clicked covered")
    assert host.events("press", "move") == [], "the overlay got nothing of it"


@pytest.mark.parametrize("act", ACTS)
def test_what_stays_covered_is_not_touched_and_the_error_names_what_covers_it(host, main, act):
    with pytest.raises(NotReadyError) as caught:
        ACTS[act](main.widget("covered"), timeout=BRIEFLY)
    assert str(caught.value) == (
        "covered by QFrame overlay\n"
        'waited 0.2 s in window "Main"\n'
        "the widget is covered; nothing was done to it\n"
        "click(force=True), and the like, send the input to whatever is at the place"
    )
    assert nothing_happened(host)


def test_forced_a_click_goes_to_what_covers_the_widget(host, main):
    main.widget("covered").click(force=True)
    host.wait_for(re.compile("press overlay .*"))
    assert host.events("clicked") == []


def test_a_button_is_clicked_once_it_is_enabled(app, host, main):
    with when_refused(app, "disabled", lambda: host.do("enable")):
        main.widget("disabled").click()
    host.wait_for("clicked disabled")
    main.button("disabled").activate()
    eventually(lambda: host.events("clicked")).equals(["clicked disabled"] * 2)


def test_a_button_that_stays_disabled_is_told_and_forced_it_is_at_once(host, main):
    with pytest.raises(NotReadyError, match="^disabled\nwaited 0.2 s") as caught:
        main.widget("disabled").click(timeout=BRIEFLY)
    assert isinstance(caught.value, CommandError)
    for act in ("click", "activate", "hover"):
        before = len(requests(main.app))
        with pytest.raises(CommandError, match='"disabled" of class "QPushButton" is disabled') as caught:
            ACTS[act](main.widget("disabled"), force=True, timeout=LONG)
        assert caught.value.code == "8" and len(requests(main.app)) == before + 1
    assert nothing_happened(host)


def test_a_field_is_entered_into_once_it_can_be(app, host, main):
    host.do("coverLine")
    with pytest.raises(NotReadyError, match="covered by QFrame overlay"):
        main.widget("line").enter("Ada", timeout=BRIEFLY)
    with pytest.raises(NotReadyError, match="covered by QFrame overlay"):
        main.widget("line").fill("Ada", timeout=BRIEFLY)
    assert host.get("line", "text") == "" and nothing_happened(host)
    with when_refused(app, OVERLAY, lambda: host.do("uncover")):
        main.widget("line").enter("Ada")
    host.wait_until("line", "text", "Ada")
    main.widget("line").enter("Gr\u00e4fin")
    host.wait_until("line", "text", "Gr\u00e4fin")


def test_a_moving_button_is_clicked_when_it_rests(host, main):
    host.do("move")
    with pytest.raises(NotReadyError, match="^moving\n"):
        main.widget("moving").click(timeout=BRIEFLY)
    host.do("stop")
    main.widget("moving").click()
    host.wait_for("clicked moving")


def test_a_button_far_down_in_scroll_areas_is_scrolled_to(host, main):
    main.widget("deep").click()
    host.wait_for("clicked deep")
    main.widget("shallow").click(at=(0.5, 0.5))
    host.wait_for("clicked shallow")


def test_a_place_beyond_the_edge_is_forced(host, main):
    main.widget("covered").click(at=(1.0, 0.5))
    host.wait_for(re.compile("press overlay .*"))
    main.find(name="covered").click(at=(0.5, 1.0))
    eventually(lambda: len(host.events("press"))).equals(2)


def test_an_open_popup_is_named(app, items):
    items.widget("combo").click(at=(0.5, 0.5))
    eventually(app.popup()).is_open()
    with pytest.raises(NotReadyError) as caught:
        items.widget("list").select("Early", timeout=BRIEFLY)
    assert re.search(r"the popup QComboBoxPrivateContainer.* is open in front of it", str(caught.value))
    app.popup().press("Esc")
    items.widget("list").select("Early")
    eventually(items.widget("list")).has(currentRow=0)


def test_a_click_is_one_request(app, host, main):
    main.widget("ready").click()
    before = len(requests(app))
    main.widget("ready").click()
    main.widget("ready").activate()
    assert requests(app)[before:] == ["+9", "+5"]
    host.wait_for("clicked ready")


# Drags


def test_a_drag_begins_when_its_target_is_ready(app, host, main):
    with pytest.raises(NotReadyError, match="covered by QFrame overlay"):
        main.widget("grip").drag_to(main.widget("covered"), timeout=BRIEFLY)
    with pytest.raises(WidgetNotFoundError):
        main.widget("grip").drag_to(main.widget("nowhere"), timeout=BRIEFLY)
    assert nothing_happened(host), "the button was not pressed"
    with when_refused(app, OVERLAY, lambda: host.do("uncover")):
        main.widget("grip").drag_to(main.widget("covered"))
    host.wait_for(re.compile("press grip .*"))


@pytest.mark.parametrize("find", [Window.widget, lambda window, name: window.find(name=name)])
def test_what_is_shown_over_the_target_while_the_button_is_down_does_not_stop_the_drag(host, main, find):
    find(main, "grip").drag_to(find(main, "ready"))
    host.wait_for(re.compile("release grip .*"))
    assert [" ".join(line.split()[:2]) for line in host.events("press", "release")] == [
        "press grip",
        "release grip",
    ]


# Items


LATE = {
    "list": ("Late", "Late", "currentRow", 1),
    "tree": ("Late", "Late", "currentPath", "Late"),
    "table": ("2:1", "2", "currentRow", 2),
    "combo": ("Late", "Late", "currentText", "Late"),
    "tabs": ("Late", "Late", "currentText", "Late"),
}
"""Item, what of it is not there, and the property that then has the value."""


@pytest.mark.parametrize("name", LATE)
def test_an_item_is_selected_once_it_is_there(app, host, items, name):
    widget = items.widget(name)
    item, missing, prop, value = LATE[name]
    with when_refused(app, f'item "{missing}" not there yet', lambda: host.do("addLate")):
        widget.select(item)
    eventually(widget).has_property(prop, value)


@pytest.mark.parametrize("name", LATE)
def test_an_item_that_does_not_come_is_told_with_those_that_are_there(host, items, name):
    with pytest.raises(NotReadyError, match='item "[^"]+" not there yet\nwaited 0.2 s') as caught:
        items.widget(name).select(LATE[name][0], timeout=BRIEFLY)
    assert ("rows: " if name == "table" else 'items: "Early"') in str(caught.value)
    with pytest.raises(CommandError, match="^Exception : ") as caught:
        items.widget(name).select(LATE[name][0], force=True, timeout=LONG)
    assert type(caught.value) is CommandError and ("rows: " if name == "table" else "items: ") in str(
        caught.value
    )


def test_an_entry_of_a_menu_is_chosen_once_it_is_there(app, host, items):
    with when_refused(app, 'item "Late" not there yet', lambda: host.do("addLate")):
        items.menu("File/Late").choose()
    host.wait_for("triggered late")
    with pytest.raises(NotReadyError) as caught:
        items.menu("File/Later").choose(timeout=BRIEFLY)
    assert 'there is no item "Later" in "File"; did you mean "Late"?' in str(caught.value)


# Windows below the window


def test_a_widget_in_a_child_dialog_is_reached_from_the_window_that_it_belongs_to(host, main):
    host.do("showChild")
    main.widget("inChild").click()
    host.wait_for("clicked inChild")
    main.widget("child/inChild").activate()
    eventually(lambda: host.events("clicked")).equals(["clicked inChild"] * 2)


# The command line


def test_the_command_line_waits_too_unless_it_is_forced(host, main):
    said, complaints = [], []

    def say(line):
        Dialogue(main.app, said.append, complaints.append, echo=False).run([line])

    say(f"activate Main covered --timeout {BRIEFLY}")
    say(f"mouse Main covered click --timeout {BRIEFLY}")
    assert [str(complaint).splitlines()[0] for complaint in said + complaints] == [OVERLAY] * 2
    assert nothing_happened(host)
    say("activate Main covered --force")
    say("mouse Main covered click --force")
    eventually(lambda: len(host.events("press"))).equals(2)


# Agents without extensions


@pytest.fixture
def old(app, monkeypatch):
    """The main window as a runner sees it whose agent has no extensions."""
    monkeypatch.setattr(app.connection, "_extensions", frozenset())
    window = app.window("Main")
    window.title()
    return window


def test_without_extensions_everything_is_done_by_the_commands(app, host, old):
    before = len(requests(app))
    old.widget("ready").click()
    old.widget("ready").activate()
    old.widget("line").enter("Ada")
    assert requests(app)[before:] == ["9", "5", "7", "6"]
    host.wait_until("line", "text", "Ada")
    assert host.events("clicked") == ["clicked ready"] * 2
    with pytest.raises(CommandError, match="is disabled"):
        old.widget("disabled").click(timeout=LONG)
    old.widget("covered").click()
    host.wait_for(re.compile("press overlay .*"))
    old.widget("ready").drag_to(old.widget("covered"))
    assert not any(request.startswith("+") for request in requests(app)[before:])
