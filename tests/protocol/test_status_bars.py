"""Status bars: their message can be read, and there is nothing to do with them."""

import pytest

from refusals import nothing_happens

WINDOW = "Tool boxes"


@pytest.fixture
def app(launch):
    return launch("toolboxhost")


def test_the_current_message_is_the_temporary_one(app):
    app.do("say")
    assert app.read(WINDOW, "status", "currentMessage") == "u:Saved & sound"


def test_without_a_message_it_is_empty(app):
    assert app.read(WINDOW, "status", "currentMessage") == "u:"
    app.do("say")
    app.do("clear")
    assert app.read(WINDOW, "status", "currentMessage") == "u:"


def test_the_pseudo_property_is_listed(app):
    names = [
        "propertyNames",
        "pseudoPropertyNames",
        "className",
        "silkClassName",
        "globalRect",
        "currentMessage",
    ]
    assert app.read(WINDOW, "status", "pseudoPropertyNames") == "0,l:\f" + "\f".join(names)


@pytest.mark.parametrize("name", ["currentmessage", "message", "itemList"])
def test_other_names_are_unknown_properties(app, name):
    assert app.read(WINDOW, "status", name) == f'8,Exception : Unknown property "{name}".'


@pytest.mark.parametrize("value", ["", "s:Saved"])
def test_activating_is_refused(app, value):
    refusal = '8,Exception : "activate" is not implemented for widget of class "QStatusBar"'
    with nothing_happens(app):
        assert app.activate(WINDOW, "status", value) == refusal


def test_entering_is_refused(app):
    refusal = '8,Exception : "enter" is not implemented for widget of class "QStatusBar"'
    with nothing_happens(app):
        assert app.enter(WINDOW, "status", "s:Saved") == refusal


def test_the_general_mouse_command_is_accepted(app):
    app.do("journalStatus")
    assert app.mouse(WINDOW, "status", "MouseClick:LeftButton:0:0:") == "0,QStatusBar"
    app.wait_for("press status 0,0 button 1 buttons 1 modifiers 0")
