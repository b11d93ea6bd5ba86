"""The applications that tests run: one that ends or is changed without the test's knowledge fails the test."""

import re

import pytest

import hostapp
from hostapp import DEADLINE, HostApp, eventually, hexed, listen
from sharedhost import SharedHost

PRESS = f"9,Editor,canvas,,{hexed('s:MousePress:LeftButton:::')},"


@pytest.fixture
def app():
    app = HostApp("corehost")
    yield app
    app.close()


@pytest.fixture
def shared():
    shared = SharedHost()
    yield shared
    if shared.app:
        shared.app.close()


# Has failures come soon.
SOON = 1.0


# Ends


def test_an_application_that_is_there_to_the_end_ends_in_order(app):
    app.end()
    assert app.process.poll() == 0


def test_one_that_quits_after_its_last_reply_is_a_failure(app):
    app.start("quit")
    app.process.wait(DEADLINE)
    with pytest.raises(AssertionError, match="ended by itself, with status 0"):
        app.end()


def test_one_that_dies_after_its_last_reply_is_a_failure_with_its_status(app):
    app.show("showDeadly", "deadly")
    app.activate("Deadly", "exit")
    app.process.wait(DEADLINE)
    with pytest.raises(AssertionError, match="ended by itself, with status 7"):
        app.end()


def test_one_whose_end_the_test_has_waited_for_is_none(app):
    app.start("quit")
    assert app.wait_for_end() == 0
    app.end()


def test_an_application_whose_agent_does_not_come_leaves_the_port_to_the_next(monkeypatch):
    monkeypatch.setattr(hostapp, "DEADLINE", SOON)
    with pytest.raises(AssertionError, match="no agent connects"):
        HostApp("corehost", "--late")
    listen().close()


# Sharing


def test_an_application_that_is_as_it_was_is_used_again_with_an_empty_journal(shared):
    first = shared.take("corehost")
    assert first.activate("Editor", "a/ok") == "0,QPushButton"
    first.wait_for("clicked ok")
    shared.give_back()
    assert shared.take("corehost") is first
    assert first.events() == []


def test_windows_popups_focus_and_cursor_are_brought_back(shared):
    app = shared.take("menuhost")
    shared.give_back()
    before = app.get("window", "isActiveWindow"), app.get("edit", "focus")
    app.request("4,Menus,bar")
    app.do("popup")
    shared.give_back()
    assert shared.take("menuhost") is app
    assert (app.get("popup", "visible"), app.get("popupFile", "visible")) == ("false", "false")
    assert (app.get("window", "isActiveWindow"), app.get("edit", "focus")) == before == ("true", "true")


def test_a_window_that_a_test_has_opened_is_gone(shared):
    app = shared.take("corehost")
    app.show("showNames", "names")
    shared.give_back()
    assert shared.take("corehost") is app
    assert app.get("names", "visible") == "<no object names>"
    assert app.get("main", "isActiveWindow") == "true"


def test_other_arguments_are_another_application(shared):
    first = shared.take("menuhost", "-style", "windows")
    shared.give_back()
    second = shared.take("menuhost", "-reverse")
    assert first is not second
    assert first.process.poll() == 0


LEFT_BEHIND = {
    "a text": (f"6,Editor,edit,,{hexed('s:typed')},", "edit text was '', is 'typed'"),
    "a held button": (PRESS, "held buttons was '', is '1'"),
    "a size": ("11,Editor,640,700", "main geometry was .*640x700"),
    "a place": ("10,Editor,300,20", "main geometry was .*"),
}


@pytest.mark.parametrize("name", LEFT_BEHIND)
def test_what_a_test_leaves_behind_is_told_and_the_application_not_used_again(shared, name):
    line, told = LEFT_BEHIND[name]
    app = shared.take("corehost")
    app.wait_until("main", "isActiveWindow", "true")

    def is_left():
        # Again, where the window manager was not done with the window, and has undone it.
        assert app.request(line).startswith("0,")
        return any(re.search(told, change) for change in shared.changes())

    eventually(is_left, True)
    with pytest.raises(AssertionError, match=told):
        shared.give_back(seconds=SOON)
    assert shared.app is None


def test_another_current_item_is_told(shared):
    app = shared.take("listviewhost", "--scenario", "letters")
    assert app.activate("Lists", "list", "s:Cat") == "0,QListView"
    with pytest.raises(AssertionError, match="list current was '-1;-1', is '2;0'"):
        shared.give_back(seconds=SOON)


def test_an_item_that_is_selected_is_told(shared):
    app = shared.take("itemviewhost")
    assert app.activate("Views", "own", "s:2;3/1", "s:Select") == "0,QAbstractItemView"
    with pytest.raises(
        AssertionError, match="own items/1;2/0;0 was .*deep1c1.* selected 0 .* is .* selected 1"
    ):
        shared.give_back(seconds=SOON)


@pytest.mark.parametrize("line", [b"8,Editor\n", b"8,Edi"], ids=["a reply", "half a request"])
def test_something_on_the_wire_is_a_failure(shared, line):
    shared.take("corehost").send(line)
    with pytest.raises(AssertionError):
        shared.give_back()


def test_an_application_without_its_agent_is_a_failure(shared):
    shared.take("corehost").do("deleteAgent")
    with pytest.raises((AssertionError, OSError)):
        shared.give_back()


def test_an_application_that_has_ended_is_a_failure(shared):
    app = shared.take("corehost")
    app.start("quit")
    app.process.wait(DEADLINE)
    with pytest.raises(AssertionError, match="has ended"):
        shared.give_back()


def test_an_application_that_a_failed_test_has_used_is_not_used_again(shared):
    first = shared.take("corehost")
    shared.give_back(failed=True)
    assert shared.take("corehost") is not first


def test_a_process_that_is_kept_has_a_new_application_with_a_new_agent():
    app = HostApp("buttonhost")
    process = app.process
    app.do("rememberState")
    app.pause()
    assert process.poll() is None
    app.resume()
    assert app.process is process and app.greeting
    assert app.request("13") == "8,Command not found"
    assert app.get("buttons", "visible") == "true"
    app.end()
    assert process.poll() == 0
