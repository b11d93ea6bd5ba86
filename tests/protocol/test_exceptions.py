"""Handlers of the application that throw: the exception ends at the command, as its reply, and the application goes on.

Only where Qt lets an exception pass: by its own event dispatcher, for GLib's, in C, cannot be passed.
"""

import pytest

from hostapp import eventually

UNKNOWN = "8,Exception : Unknown exception"


@pytest.fixture
def app(launch):
    app = launch("throwhost", env={"QT_NO_GLIB": "1"})
    app.wait_until("button", "visible", "true")
    return app


def check_that_it_goes_on(app):
    assert app.activate("Thrower", "button") == "0,QPushButton"
    app.wait_for("clicked button")
    assert app.enter("Thrower", "plain", "s:typed") == "0,QLineEdit"
    assert app.get("plain", "text") == "typed"


def test_an_event_filter_throws_while_keys_are_typed(app):
    app.do("throwAtKey")
    assert app.enter("Thrower", "edit", "s:typed") == UNKNOWN
    check_that_it_goes_on(app)
    assert app.enter("Thrower", "edit", "s:again") == "0,QLineEdit"
    assert app.get("edit", "text") == "again"


def test_an_event_filter_throws_while_a_button_is_pressed(app):
    app.do("throwAtPress")
    assert app.mouse("Thrower", "edit", "MousePress:LeftButton:::") == UNKNOWN
    app.mouse("Thrower", "edit", "MouseRelease:LeftButton:::")
    check_that_it_goes_on(app)


@pytest.mark.parametrize("act", ["press", "enter"])
def test_no_button_stays_held_when_an_event_filter_throws_at_the_press(app, act):
    app.do("throwAtPress")
    if act == "press":
        assert app.mouse("Thrower", "edit", "MousePress:LeftButton:::") == UNKNOWN
    else:
        assert app.enter("Thrower", "edit", "s:typed") == UNKNOWN
    app.forget()
    app.mouse("Thrower", "plain", "MouseMove::0.1:0.5:")
    app.mouse("Thrower", "plain", "MouseMove::0.6:0.5:")
    assert [line for line in app.events("move") if " buttons 1 " in line] == []


def test_a_slot_throws_when_an_item_is_selected(app):
    reply = app.activate("Thrower", "table", "s:2;1", "s:Select", class_name="QAbstractItemView")
    assert reply == UNKNOWN
    check_that_it_goes_on(app)


def test_an_event_filter_throws_when_the_window_is_resized(app):
    app.do("throwAtResize")
    assert app.request("11,Thrower,500,400") == UNKNOWN
    check_that_it_goes_on(app)
    assert app.request("11,Thrower,520,420") == "0,Thrower"
    eventually(lambda: app.get("table", "visible"), "true")


def test_requests_behind_one_that_throws_are_answered(app):
    app.do("throwAtKey")
    app.send(b"6,Thrower,edit,,733a61,\n8,Thrower\n")
    assert [app.read_line(), app.read_line()] == [UNKNOWN, "0,Thrower"]
