"""+events of gestures: the lists of combo boxes, where drags end, check boxes of items, and what a widget holds now."""

import pytest

from extensions import extension
from hostapp import eventually
from test_recording import Recording, xdotool

DRAGS = "Drags"


def kinds(events):
    return [event["kind"] for event in events]


def rect_of(app, window, locator, item, class_name=""):
    """The place of an item on the screen."""
    reply = app.request(extension("+scroll", window, locator, class_name, item))
    assert reply.startswith("0,r:"), reply
    return tuple(map(int, reply[4:].split(",")))


def drag(app, window, source, target, item="", onto=""):
    """Drags an item to another place by the agent's mouse."""
    for kind, name, button, within in (
        ("MousePress", source, "LeftButton", item),
        ("MouseMove", target, "", onto),
        ("MouseRelease", target, "LeftButton", onto),
    ):
        command = f"s:{kind}:{button}:::"
        reply = app.request(extension("+9", window, f"name={name}", "", command, "force", within))
        assert reply.startswith("0,"), reply


@pytest.mark.parametrize("opening", ["mouse", "key"])
def test_keys_in_the_open_list_of_a_combo_box_are_told_as_of_the_box(launch, opening):
    app = launch("entryhost")
    assert app.request(extension("+focus", "Entries", "path=choice"))[:2] == "0,"
    recording = Recording(app)
    told = []
    if opening == "mouse":
        recording.click("Entries", "choice")
    else:
        xdotool("key", "alt+Down")
    eventually(lambda: told.extend(recording.ask()["events"]) or "shown" in kinds(told), True)
    told.clear()
    xdotool("key", "Down", "Return")
    eventually(lambda: told.extend(recording.ask()["events"]) or kinds(told).count("key"), 2)
    keys = [event for event in told if event["kind"] == "key"]
    assert [event["key"] for event in keys] == ["Down", "Return"]
    assert {event["ref"] for event in keys} == {recording.ref("Entries", "choice")}
    assert {event["window"] for event in keys} == {recording.ref("Entries", "")}
    assert all(event["list"] for event in keys)


def test_a_widget_of_the_last_input_is_told_with_what_it_holds_now(launch):
    app = launch("snapshothost")
    recording = Recording(app)
    assert "last" not in recording.ask()
    ref = recording.ref("", "customer")
    assert app.request(extension("+type", "", "path=customer", "x"))[:2] == "0,"
    app.settle()
    assert recording.ask()["last"] == {"ref": ref, "value": "Ada €x"}
    assert "last" not in recording.ask()  # nothing has changed
    assert app.request(extension("+type", "", "path=password", "secret"))[:2] == "0,"
    app.settle()
    assert recording.ask()["last"] == {"ref": recording.ref("", "password"), "value": "***"}
    assert app.request(extension("+type", "", "path=customer", "y"))[:2] == "0,"
    app.settle()
    assert app.request(extension("+record", "stop")) == "0,"
    assert recording.ask()["last"] == {"ref": ref, "value": "Ada €xy"}
    assert "last" not in recording.ask()


def test_a_drop_is_told_with_the_item_that_it_goes_to(launch):
    app = launch("draghost")
    recording = Recording(app)
    drag(app, DRAGS, "left", "right", "s:left 1", "s:right 2")
    told = []
    eventually(lambda: told.extend(recording.ask()["events"]) or kinds(told).count("drop"), 1)
    # Qt 4 shows what is dragged in a window.
    press, drop = [event for event in told if event["kind"] not in ("focus", "shown", "closed")]
    assert kinds([press, drop]) == ["press", "drop"]
    assert (press["ref"], press["item"]["text"]) == (recording.ref(DRAGS, "left"), "left 1")
    assert (drop["ref"], drop["item"]["text"]) == (recording.ref(DRAGS, "right"), "right 2")
    assert all(40 <= percent <= 60 for percent in drop["item"]["within"])


def test_the_end_of_a_drag_that_nothing_takes_is_told_when_the_button_is_up(launch):
    app = launch("draghost")
    recording = Recording(app)
    left, top, right, bottom = app.rect(DRAGS, "source")
    xdotool("mousemove", (left + right) // 2, (top + bottom) // 2, "mousedown", 1)
    xdotool("mousemove_relative", 30, 0)
    app.wait_for("drag began")
    told = recording.ask()["events"]
    assert "drag end" not in kinds(told)
    xdotool("mouseup", 1)
    app.wait_for("drag over 0")
    told += recording.ask()["events"]
    press, end = [event for event in told if event["kind"] not in ("focus", "shown", "closed")]
    assert kinds([press, end]) == ["press", "drag end"]
    assert press["ref"] == end["ref"] == recording.ref(DRAGS, "source")
    assert recording.ask()["events"] == []


def test_the_end_of_a_drag_without_a_drop_is_told(launch):
    app = launch("draghost")
    recording = Recording(app)
    drag(app, DRAGS, "fixed", "fixed", "s:fixed 0", "s:fixed 2")
    _, release = recording.until("press", "release")
    assert release["over"]["ref"] == release["ref"] == recording.ref(DRAGS, "fixed")
    assert release["over"]["item"]["text"] == "fixed 2"
    left, top, right, bottom = rect_of(app, DRAGS, "name=fixed", "s:fixed 1")
    xdotool("mousemove", (left + right) // 2, (top + bottom) // 2, "click", 1)
    _, release = recording.until("press", "release")
    assert "over" not in release


def test_a_tab_that_has_moved_is_told_with_those_beside_it(launch):
    app = launch("itemhost")
    recording = Recording(app)
    first, last = (rect_of(app, "Items", "path=movable", f"s:Tab {number}") for number in (0, 2))
    middle = (first[1] + first[3]) // 2
    xdotool("mousemove", first[0] + 10, middle, "mousedown", 1)
    for x in range(first[0] + 15, (last[0] + last[2]) // 2 + 5, 5):
        xdotool("mousemove", x, middle)
    xdotool("mouseup", 1)
    press, release = recording.until("press", "release")
    assert press["item"] == {"text": "Tab 0", "row": 0}
    moved = release["over"]["item"]
    assert (moved["text"], moved["row"]) == ("Tab 0", 2)
    assert moved["beside"][0] == "Tab 2"


def test_a_check_box_of_an_item_and_the_arrow_beside_it_are_told(launch):
    app = launch("itemhost")
    recording = Recording(app)
    left, top, _, bottom = rect_of(app, "Items", "path=table", "s:3:3")
    xdotool("mousemove", left + 10, (top + bottom) // 2, "click", 1)
    press, _ = recording.until("press", "release")
    assert (press["item"]["row"], press["item"]["check"]) == (2, "checked")
    left, top, right, bottom = rect_of(app, "Items", "path=table", "s:3:3")
    xdotool("mousemove", right - 5, (top + bottom) // 2, "click", 1)
    press, _ = recording.until("press", "release")
    assert press["item"]["row"] == 2 and "check" not in press["item"]
    left, top, _, bottom = rect_of(app, "Items", "path=tree", "s:Folder 1")
    states = []
    for _ in range(2):
        xdotool("mousemove", left - 10, (top + bottom) // 2, "click", 1)
        press, _ = recording.until("press", "release")
        assert press["item"]["text"] == "Folder 1"
        states.append(press["item"]["branch"])
        recording.click("Items", "list")  # between two clicks on one place, which would be a double click
        recording.until("press", "release")
    assert states == ["closed", "open"]


def test_a_context_menu_that_a_key_opens_is_told(launch):
    app = launch("keyhost")
    assert app.request(extension("+focus", "Keys", "path=line"))[:2] == "0,"
    recording = Recording(app)
    xdotool("key", "Menu")
    told = []
    eventually(lambda: told.extend(recording.ask()["events"]) or "shown" in kinds(told), True)
    menus = [event for event in told if event["kind"] == "context menu"]
    assert [event["ref"] for event in menus] == [recording.ref("Keys", "line")]


def test_a_window_that_its_frame_closes_is_told(launch):
    app = launch("keyhost")
    recording = Recording(app)
    app.request(extension("+press", "Keys", "", "Ctrl+O"))
    _, shown = recording.until("shortcut", "shown")
    app.wait_until("dialog", "isActiveWindow", "true")
    xdotool("key", "alt+F4")
    close, closed = recording.until("close", "closed")
    assert close["ref"] == closed["ref"] == shown["ref"]
