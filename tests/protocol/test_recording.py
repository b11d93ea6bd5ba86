"""+record and +events: what a user and the agent do with the application, told as it happens."""

import json
import subprocess

import pytest

import faultapp
from extensions import extension
from hostapp import eventually
from replies import error

PRESS_AND_RELEASE = ["press", "release"]


def xdotool(*words):
    """Input by the windowing system, as from a user."""
    subprocess.run(["xdotool", *map(str, words)], check=True)


def describe(reply):
    assert reply.startswith("0,j:") and reply.isascii(), reply
    return json.loads(reply[len("0,j:") :])


class Recording:
    """Records what happens to an application."""

    def __init__(self, app, *options):
        self.app = app
        self._events = []
        self.windows = {}
        assert app.request(extension("+record", "start", *options)) == "0,"

    def ask(self):
        return describe(self.app.request("+events"))

    def until(self, *kinds):
        """The events since the last call, without those of the focus, once there have been so many; their kinds are these."""

        def told():
            told = self.ask()
            self.windows.update((tree["ref"], tree) for tree in told.get("windows", []))
            self._events += [event for event in told["events"] if event["kind"] != "focus"]
            return len(self._events) >= len(kinds)

        eventually(told, True)
        events, self._events = self._events, []
        assert [event["kind"] for event in events] == list(kinds)
        return events

    def click(self, window, path, button=1, position=None, repeat=1):
        left, top, right, bottom = self.app.rect(window, path)
        x, y = position or ((right - left) // 2, (bottom - top) // 2)
        xdotool("mousemove", left + x, top + y, "click", "--repeat", repeat, button)

    def ref(self, window, name):
        return describe(self.app.request(extension("+2", window, f"path={name}" if name else "")))["ref"]


def tree_names(tree):
    waiting, names = [tree], {}
    while waiting:
        node = waiting.pop()
        names[node.get("name", "")] = node
        waiting += node.get("children", [])
    return names


@pytest.fixture
def keys(launch):
    return launch("keyhost")


@pytest.fixture
def items(launch):
    return launch("itemhost")


def test_clicks_are_told_with_their_widget_as_it_was_before(keys):
    recording = Recording(keys)
    ref, window = recording.ref("Keys", "button"), recording.ref("Keys", "")
    recording.click("Keys", "button")
    by_user = recording.until(*PRESS_AND_RELEASE)
    keys.wait_for("clicked button")
    assert keys.activate("Keys", "button") == "0,QPushButton"
    by_agent = recording.until(*PRESS_AND_RELEASE)
    for press, release in (by_user, by_agent):
        width, height = press["size"]
        assert (press["ref"], press["window"], press["button"], press["buttons"]) == (
            ref,
            window,
            "left",
            ["left"],
        )
        assert abs(press["at"][0] - width // 2) <= 1 and abs(press["at"][1] - height // 2) <= 1
        assert (release["ref"], release["button"], release.get("buttons")) == (ref, "left", None)
        assert release["time"] >= press["time"] >= 0
        assert tree_names(recording.windows[window])["button"]["ref"] == ref
        assert press["widget"]["name"] == "button" and press["widget"]["role"] == "button"
        assert "tree" not in press and "tree" not in release and "widget" not in release


def test_double_clicks_and_modifiers_are_told(items):
    recording = Recording(items)
    command = "s:MouseDoubleClick:LeftButton:::ControlModifier"
    assert items.request(extension("+9", "Items", "path=list", "", command, "", "s:Row 3")) == "0,QListView"
    events = recording.until("press", "release", "double click")
    assert [event["modifiers"] for event in events] == [["Ctrl"]] * 3
    assert {event["item"]["text"] for event in events} == {"Row 3"}
    recording.click("Items", "list", position=(20, 10), repeat=2)
    kinds = [event["kind"] for event in wait_for_last_release(recording, 2)]
    assert kinds.count("double click") == 1 and kinds[0] == "press"


def test_the_same_key_is_told_again_of_a_widget_around_the_one_that_took_it(keys):
    """A key that a widget ignores comes to those around it as well, and is told once."""
    recording = Recording(keys)
    assert keys.request(extension("+press", "Keys", "path=button", "Space"))[:2] == "0,"
    keys.do("focusCentre")
    assert keys.request(extension("+press", "Keys", "", "Space"))[:2] == "0,"
    inner, outer = recording.until("key", "key")
    assert (inner["ref"], outer["ref"]) == (recording.ref("Keys", "button"), recording.ref("Keys", "centre"))


def wait_for_last_release(recording, count):
    events = []

    def releases():
        events.extend(event for event in recording.ask()["events"] if event["kind"] != "focus")
        return sum(event["kind"] == "release" for event in events)

    eventually(releases, count)
    return events


def test_items_are_told_by_path_cell_section_and_tab(items):
    recording = Recording(items)

    def item(path, name, class_name=""):
        command = "s:MouseClick:LeftButton:::"
        assert (
            items.request(extension("+9", "Items", f"path={path}", class_name, command, "", name))[:2] == "0,"
        )
        press, release = recording.until(*PRESS_AND_RELEASE)
        assert press["item"] == release["item"]
        return press["item"]

    tree = "QAbstractItemView"
    assert item("list", "s:Row 4") == {"path": ["Row 4"], "text": "Row 4", "row": 4, "column": 0}
    items.activate("Items", "tree", "s:Folder 1", class_name=tree)
    opened = item("tree", "s:Folder 1/File 1")
    assert opened["path"] == ["Folder 1", "File 1"] and opened["row"] == 0
    assert item("table", "s:3:4") == {
        "path": ["2x3"],
        "text": "2x3",
        "row": 2,
        "column": 3,
        "headers": ["3", "4"],
    }
    assert item("movable", "s:Tab 1") == {"text": "Tab 1", "row": 1}
    section = {"section": 1, "orientation": "horizontal", "text": "Size"}
    assert item("tree", "s:H:2", tree) == section


def test_entries_of_menus_are_told_by_their_path_before_they_act(keys):
    recording = Recording(keys)
    assert keys.request(extension("+5", "Keys", "QMenuBar", "", "s:File/Save")) == "0,QMenuBar"
    keys.wait_for("triggered saveAction modifiers 0")
    events = [event for event in recording.ask()["events"] if event["kind"] == "action"]
    assert [event["item"]["path"] for event in events] == [["File", "Save"]]
    assert events[0]["item"]["action"] == "saveAction"
    assert events[0]["item"]["window"] == recording.ref("Keys", "")


def test_a_user_s_mnemonic_and_a_click_choose_entries_too(items):
    recording = Recording(items)
    items.do("popup")
    (shown,) = recording.until("shown")
    assert (shown["class"], shown["name"]) == ("QMenu", "popup")
    left, top, _, _ = items.rect("Widget:ActivePopupWidget", "popup")
    xdotool("mousemove", left + 15, top + 12, "mousemove_relative", 2, 2, "click", 1)
    press, release, action, closed = recording.until("press", "release", "action", "closed")
    assert press["item"]["path"] == release["item"]["path"] == action["item"]["path"] == ["Cut"]
    assert "opener" not in action["item"]
    assert closed["ref"] == shown["ref"] == action["ref"]
    items.wait_for("triggered Cut")


def test_keys_shortcuts_and_dialogs_are_told(keys):
    recording = Recording(keys)
    assert keys.request(extension("+focus", "Keys", "path=line"))[:2] == "0,"
    xdotool("key", "a", "shift+b", "Return")
    typed = recording.until("key", "key", "key")
    assert [event["text"] for event in typed] == ["a", "B", "\r"]
    assert [event.get("value", "") for event in typed] == ["", "a", "aB"]
    assert [event["key"] for event in typed] == ["A", "Shift+B", "Return"]
    assert {event["ref"] for event in typed} == {recording.ref("Keys", "line")}
    assert ["widget" in event for event in typed] == [True, False, False]
    xdotool("key", "ctrl+s")
    (shortcut,) = recording.until("shortcut")
    assert (shortcut["key"], shortcut["action"], shortcut["text"]) == ("Ctrl+S", "saveAction", "Save")
    assert keys.request(extension("+press", "Keys", "", "Ctrl+O"))[:2] == "0,"
    shortcut, shown = recording.until("shortcut", "shown")
    assert (shown["class"], shown["name"], shown["title"], shown["modal"]) == (
        "QDialog",
        "dialog",
        "Name",
        True,
    )
    assert keys.request(extension("+type", "Name", "path=name", "Ada\n"))[:2] == "0,"
    *typed, closed = recording.until("key", "key", "key", "key", "closed")
    assert "".join(event["text"] for event in typed) == "Ada\r"
    assert tree_names(typed[0]["tree"])["name"]["ref"] == typed[0]["ref"]
    assert typed[0]["previous"] == {"ref": recording.ref("Keys", "line"), "value": "aB"}
    assert closed["ref"] == shown["ref"]


def test_a_window_is_told_again_only_after_a_widget_in_it_has_gone(launch):
    app = launch("snapshothost")
    recording = Recording(app)
    telling = []
    for gone in (False, False, True):
        if gone:
            app.do("deleteBuy")
        assert app.request(extension("+type", "", "path=customer", "x"))[:2] == "0,"
        assert app.request(extension("+type", "", "path=password", "x"))[:2] == "0,"
        telling.append(recording.until("key", "key"))
    names = [tree_names(tree) for tree in recording.windows.values()]
    assert any("buy" in found for found in names)
    assert [["tree" in event for event in events] for events in telling] == [
        [False, False],
        [False, False],
        [True, False],
    ]
    assert "buy" not in tree_names(telling[2][0]["tree"])
    assert telling[1][0]["widget"]["value"] == "Ada €x"
    assert telling[1][1]["previous"] == {"ref": telling[1][0]["ref"], "value": "Ada €xx"}


def test_a_key_that_a_widget_ignores_is_told_once(keys):
    recording = Recording(keys)
    assert keys.request(extension("+press", "Keys", "path=button", "F9"))[:2] == "0,"
    assert [event["key"] for event in recording.until("key")] == ["F9"]
    keys.settle()
    assert "keypress window 16777272 '' modifiers 0" in keys.journal  # the window was offered it, too
    assert recording.ask()["events"] == []


def test_the_wheel_is_told_once_for_the_widget_under_the_mouse(launch):
    app = launch("wheelhost")
    recording = Recording(app)
    assert app.request(extension("+wheel", "Wheels", "path=idle", ":::0:-2")) == "0,QLabel"
    events = recording.until("wheel", "wheel")
    app.settle()
    assert "wheel window 0,-120 modifiers 0" in app.journal
    assert [(event["ref"], event["angle"]) for event in events] == [
        (recording.ref("Wheels", "idle"), [0, -120])
    ] * 2
    assert recording.ask()["events"] == []
    xdotool("click", 4)
    (event,) = recording.until("wheel")
    assert event["angle"] == [0, 120]


def test_the_focus_is_told_with_its_reason(keys):
    recording = Recording(keys)
    assert keys.request(extension("+focus", "Keys", "path=line"))[:2] == "0,"
    keys.settle()
    told = [
        (event["ref"], event["reason"]) for event in recording.ask()["events"] if event["kind"] == "focus"
    ]
    assert told == [(recording.ref("Keys", "line"), "tab")]


@pytest.mark.parametrize("option", [(), ("passwords",)], ids=["by default", "asked for"])
def test_keys_for_a_field_that_hides_its_text_are_told_only_if_asked_for(launch, option):
    app = launch("snapshothost")
    recording = Recording(app, *option)
    assert app.request(extension("+type", "", "path=password", "xyz"))[:2] == "0,"
    events = recording.until("key", "key", "key")
    assert [event.get("text") for event in events] == (["x", "y", "z"] if option else [None] * 3)
    assert [event.get("hidden", False) for event in events] == [not option] * 3
    if not option:
        assert not any("key" in event or "value" in event for event in events)


def test_events_that_nobody_asks_for_are_dropped_and_counted_the_oldest_first(launch):
    app = launch("snapshothost")
    recording = Recording(app)
    for letter in "abcdefghijk":  # several requests: each has its time limit
        assert app.request(extension("+type", "", "path=customer", letter * 100))[:2] == "0,"
    app.settle()
    told = recording.ask()
    typed = [event["text"] for event in told["events"] if event["kind"] == "key"]
    assert len(told["events"]) == 1000 and told["dropped"] >= 100
    assert "".join(typed).endswith("".join(letter * 100 for letter in "cdefghijk")) and typed[0] == "b"
    assert recording.ask() == {"dropped": 0, "recording": True, "events": []}


def test_nothing_is_told_before_and_after_a_recording(keys):
    nothing = {"dropped": 0, "recording": False, "events": []}
    keys.activate("Keys", "button")
    assert describe(keys.request("+events")) == nothing
    recording = Recording(keys)
    keys.activate("Keys", "button")
    keys.wait_for("clicked button")
    keys.settle()
    assert keys.request(extension("+record", "stop")) == "0,"
    keys.activate("Keys", "button")
    keys.settle()
    told = recording.ask()
    assert [event["kind"] for event in told["events"] if event["kind"] != "focus"] == PRESS_AND_RELEASE
    assert told["recording"] is False
    assert recording.ask() == nothing


def test_a_recording_ends_with_the_connection():
    app = faultapp.FaultApp()
    try:
        Recording(app)
        app.disappear()
        app.wait_until_agent_is_closed()
        app.do("clickOwn")
        connection = app.connect()
        lines = connection.makefile("rb")
        lines.readline()
        connection.sendall(b"+events\n")
        told = describe(lines.readline().decode("ascii").rstrip("\n"))
        assert told == {"dropped": 0, "recording": False, "events": []}
    finally:
        app.close()


@pytest.mark.shared
@pytest.mark.parametrize(
    "texts, message",
    [
        ((), 'Unknown mode ""'),
        (("begin",), 'Unknown mode "begin"'),
        (("start", "all"), 'Unknown option "all"'),
    ],
)
def test_another_mode_or_option_is_an_error(launch, texts, message):
    app = launch("corehost")
    assert app.request(extension("+record", *texts)) == error(message)
    assert describe(app.request("+events"))["recording"] is False


def play_in(app):
    """Some of everything, from the windowing system and from the agent. Returns what the application tells of it."""
    app.mouse("Keys", "line", "MouseMove::::")
    app.forget()
    xdotool("click", 1, "key", "x", "a", "Tab")
    app.wait_until("spin", "focus", "true")
    xdotool("key", "7", "ctrl+s", "ctrl+k", "ctrl+c", "ctrl+d")
    app.wait_for("ambiguous first")
    app.activate("Keys", "button")
    app.mouse("Keys", "custom", "MouseDoubleClick:LeftButton:::")
    app.request(extension("+wheel", "Keys", "path=spin", ":::0:2"))
    app.request(extension("+5", "Keys", "QMenuBar", "", "s:File/Open..."))
    app.wait_until("dialog", "isActiveWindow", "true")
    app.request(extension("+type", "Name", "path=name", "Ada\n"))
    app.wait_for("dialog 1 'Ada'")
    # The windowing system tells of its moves of the mouse in its own time.
    return [line for line in app.events() if not line.startswith("move ")]


def test_the_application_has_the_same_events_as_without_a_recording(launch):
    without = launch("keyhost")
    expected = play_in(without)
    without.end()
    without._end_is_expected = True
    app = launch("keyhost")
    recording = Recording(app)
    assert play_in(app) == expected
    assert len(recording.ask()["events"]) > 15
    assert len(expected) > 30
