"""Which window may be acted on: popups, modal dialogs, nested dialogs, focus."""

import re

import pytest

from hostapp import eventually
from refusals import nothing_happens


@pytest.fixture
def app(launch):
    return launch("corehost")


@pytest.mark.shared
def test_a_modal_dialog_keeps_the_other_windows_widgets_untouched(app):
    app.show("openDialog", "dialog1")
    reply = "4,Window (Editor) not active modal"
    assert app.activate("Editor", "twin") == reply
    assert app.enter("Editor", "edit", "s:x") == reply
    assert app.mouse("Editor", "twin", "MouseClick:LeftButton:::") == reply
    assert app.events("clicked") == []
    app.activate("Save", "accept")
    app.wait_for("dialog result 1")


@pytest.mark.shared
def test_properties_can_be_read_behind_a_modal_dialog(app):
    app.show("openDialog", "dialog1")
    assert app.read("Editor", "twin", "text") == "u:twin"
    app.activate("Save", "accept")
    app.wait_for("dialog result 1")


@pytest.mark.shared
def test_a_click_that_opens_a_dialog_is_answered_and_the_dialog_is_driven(app):
    app.show("showDeadly", "deadly")
    assert app.activate("Deadly", "dialog") == "0,QPushButton"
    app.wait_until("dialog1", "isActiveWindow", "true")
    assert app.activate("Widget:ActiveModalWidget", "accept") == "0,QPushButton"
    app.wait_for("dialog result 1")


@pytest.mark.shared
def test_a_dialog_opened_from_a_dialog_is_driven(app):
    app.show("showDeadly", "deadly")
    app.mouse("Deadly", "dialog", "MouseClick:LeftButton:::")
    for level in (1, 2, 3):
        app.wait_until(f"dialog{level}", "isActiveWindow", "true")
        assert app.request("8,Widget:ActiveModalWidget") == f"0,Save changes? {level}"
        if level < 3:
            assert app.activate(f"Save changes? {level}", "next") == "0,QPushButton"
    for level in (3, 2, 1):
        eventually(lambda: app.request("8,Widget:ActiveModalWidget"), f"0,Save changes? {level}")
        assert app.activate("Widget:ActiveModalWidget", "accept") == "0,QPushButton"
    eventually(lambda: len(app.events("dialog")), 3)


def test_a_popup_excuses_the_active_window(app):
    app.do("openMenu")
    assert app.get("main", "isActiveWindow") == "true"
    assert app.activate("Editor", "disabled").startswith('8,Exception : Error: widget "disabled"')


def test_a_popup_blocks_a_window_that_is_not_active(app):
    app.show("showNames", "names")
    app.do("openMenu")
    assert app.activate("Editor", "twin") == "4,Window (Editor) not active popup"
    assert app.enter("Editor", "edit", "s:x") == "4,Window (Editor) not active popup"
    assert app.events("clicked") == []


def test_a_mouse_command_proceeds_behind_a_popup(app):
    app.show("showNames", "names")
    app.do("openMenu")
    assert app.mouse("Editor", "canvas", "MouseClick:LeftButton:::") == "0,QWidget"
    app.wait_for("hidden popup")
    assert app.events("press")[0].startswith("press popup "), "a click beside a popup goes to the popup"


def test_a_mouse_command_proceeds_behind_a_popup_of_a_modal_dialog(app):
    app.show("openDialog", "dialog1")
    app.do("openMenu")
    assert app.activate("Editor", "twin") == "4,Window (Editor) not active popup"
    assert app.mouse("Editor", "canvas", "MouseClick:LeftButton:::") == "0,QWidget"
    app.wait_for("hidden popup")
    assert [line.split(" ")[1] for line in app.events("press")] == ["popup"]
    # Without the popup the dialog is in the way.
    assert app.mouse("Editor", "canvas", "MouseClick:LeftButton:::") == "4,Window (Editor) not active modal"
    assert app.activate("Save", "accept") == "0,QPushButton"
    app.wait_for("dialog result 1")
    assert len(app.events("press")) == 1


def test_properties_can_be_read_behind_a_popup(app):
    app.do("openMenu")
    assert app.read("Editor", "twin", "text") == "u:twin"


def test_the_popup_is_addressed_by_a_special_path(app):
    assert app.read("Editor", "ActivePopupWidget", "objectName") == "5,Widget (ActivePopupWidget) not found"
    app.do("openMenu")
    assert app.read("Widget:ActivePopupWidget", "ActivePopupWidget", "objectName") == "u:popup"
    # Without a look at the window or the rest of the path.
    assert app.read("Editor", "any/ActivePopupWidget", "objectName") == "u:popup"


@pytest.mark.shared
def test_the_focus_widget_is_addressed_by_a_special_path(app):
    app.wait_until("edit", "focus", "true")
    assert app.mouse("Editor", "FocusWidget", "MouseClick:LeftButton:::").startswith("0,Q")
    app.wait_for(re.compile("press edit .*"))


def test_text_is_entered_in_the_focus_widget(app):
    app.wait_until("edit", "focus", "true")
    assert app.enter("Editor", "FocusWidget", "s:typed") == "0,QLineEdit"
    assert app.get("edit", "text") == "typed"


@pytest.mark.shared
def test_the_focus_widget_is_an_ordinary_name_to_a_property_read(app):
    app.wait_until("edit", "focus", "true")
    assert app.read("Editor", "FocusWidget", "objectName") == "5,Widget (FocusWidget) not found"


@pytest.mark.shared
def test_without_a_focus_widget_the_special_path_finds_nothing(app):
    app.do("clearFocus")
    with nothing_happens(app):
        for reply in (app.activate("Editor", "FocusWidget"), app.mouse("Editor", "FocusWidget", "")):
            assert reply == "5,Widget (FocusWidget) not found"


@pytest.mark.shared
def test_a_disabled_widget_is_refused_and_its_window_not_raised(app):
    app.show("showNames", "names")
    reply = '8,Exception : Error: widget "disabled" of class "QPushButton" is disabled.'
    assert app.activate("Editor", "disabled") == reply
    assert app.enter("Editor", "disabled", "s:x") == reply
    assert app.mouse("Editor", "disabled", "MouseClick:LeftButton:::") == reply
    assert app.get("names", "isActiveWindow") == "true"
    assert app.read("Editor", "disabled", "text") == "u:disabled"
