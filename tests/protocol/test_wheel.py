"""+wheel: the wheel of the mouse, to the widget under it and those around."""

import pytest

from extensions import extension
from replies import error

SHIFT, CTRL = 0x2000000, 0x4000000


@pytest.fixture
def app(launch):
    return launch("wheelhost")


def wheel(app, name, command):
    return app.request(extension("+wheel", "Wheels", f"path={name}", command))


def number(app, name, prop="value"):
    app.settle()
    return int(app.get(name, prop))


@pytest.mark.parametrize("name, class_name", [("slider", "QSlider"), ("spin", "QSpinBox")])
def test_each_step_is_an_event_and_turns_the_value(app, name, class_name):
    before = number(app, name)
    assert wheel(app, name, ":::0:3") == f"0,{class_name}"
    app.settle()
    assert app.events("wheel") == [f"wheel {name} 0,120 modifiers 0"] * 3
    after = number(app, name)
    assert after > before
    assert wheel(app, name, ":::0:-3") == f"0,{class_name}"
    assert number(app, name) == before
    assert app.events("wheel")[-1] == f"wheel {name} 0,-120 modifiers 0"


def test_a_list_is_scrolled_down_and_up_again(app):
    assert wheel(app, "list", ":::0:-4") == "0,QListWidget"
    below = number(app, "listBar")
    assert below > 0
    wheel(app, "list", ":::0:4")
    assert number(app, "listBar") == 0


def test_a_widget_that_ignores_the_wheel_leaves_it_to_what_it_is_in(app):
    assert wheel(app, "area", ":::0:-2") == "0,QScrollArea"
    assert number(app, "areaBar") > 0
    assert app.events("wheel")[0] == "wheel inner 0,-120 modifiers 0"
    app.forget()
    assert wheel(app, "idle", ":::0:1") == "0,QLabel"
    assert app.events("wheel") == ["wheel idle 0,120 modifiers 0", "wheel window 0,120 modifiers 0"]


def test_a_wheel_turns_sideways_too(app):
    wheel(app, "area", ":::-2:0")
    assert number(app, "areaSideBar") > 0
    assert app.events("wheel")[0].endswith(" -120,0 modifiers 0")
    app.forget()
    wheel(app, "idle", ":::1:-1")
    assert [line for line in app.events("wheel") if " idle " in line] == [
        "wheel idle 120,0 modifiers 0",
        "wheel idle 0,-120 modifiers 0",
    ]


@pytest.mark.parametrize("word, value", [("ControlModifier", CTRL), ("ShiftModifier", SHIFT)])
def test_modifiers_are_told_with_each_step(app, word, value):
    wheel(app, "idle", f"::{word}:0:1")
    assert app.events("wheel")[0] == f"wheel idle 0,120 modifiers {value}"


def test_no_steps_only_move_the_mouse_there(app):
    assert wheel(app, "slider", ":::0:0") == "0,QSlider"
    assert wheel(app, "slider", "") == "0,QSlider"
    assert app.events("wheel") == []
    assert app.request("3").startswith("?,QSlider,")


def test_a_disabled_widget_is_refused(app):
    assert wheel(app, "disabled", ":::0:1") == "9,disabled"
    assert app.events("wheel") == []


def test_a_widget_that_dies_of_a_step_ends_the_turning(app):
    assert wheel(app, "victim", ":::0:5") == error("Internal error, proxy without widget")
    assert app.get("victim", "value") == "<no object victim>"


@pytest.mark.shared
@pytest.mark.parametrize(
    "command, message",
    [
        ("x:::0:1", 'The 1. parameter "x" is not a float'),
        (":y::0:1", 'The 2. parameter "y" is not a float'),
        ("1.5:::0:1", "Only a Position between 0.0 and 1.0 is allowed"),
        ("::Shift:0:1", '"Shift"-Modifier is not implemented'),
        (":::z:1", 'The 4. parameter "z" is not an integer'),
        (":::0:1.5", 'The 5. parameter "1.5" is not an integer'),
        (":::0:1001", "At most 1000 steps of the wheel are allowed"),
        (":::-2147483648:0", "At most 1000 steps of the wheel are allowed"),
    ],
)
def test_a_command_that_is_none_is_an_error(app, command, message):
    assert wheel(app, "slider", command) == error(message)
    assert app.events("wheel") == []
