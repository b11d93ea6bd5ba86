"""Buttons, as a test drives them: what they accept, where they are clicked, what the application sees."""

import re

import pytest

from refusals import nothing_happens
from styles import STYLES

WINDOW = "Buttons"


@pytest.fixture(params=STYLES)
def style(request):
    return request.param


@pytest.fixture(params=[[], ["-reverse"]], ids=["left-to-right", "right-to-left"])
def app(launch, style, request):
    return launch("buttonhost", "-style", style, *request.param)


@pytest.fixture
def plain(launch):
    return launch("buttonhost", "-style", STYLES[0])


def center(app, name):
    rect = app.get(name, "geometry")
    width, height = map(int, rect.split(" ")[1].split("x"))
    return f"{(width - 1) // 2},{(height - 1) // 2}"


@pytest.mark.parametrize("name", ["push", "toggle", "first", "link", "tool", "split"])
def test_activating_without_a_value_clicks_once(app, name):
    app.activate(WINDOW, name)
    app.wait_for(f"clicked {name}")
    assert app.events("clicked") == [f"clicked {name}"]


@pytest.mark.shared
def test_a_push_button_is_clicked_at_its_center(plain):
    assert plain.activate(WINDOW, "push") == "0,QPushButton"
    assert plain.events("press", "release") == [
        f"press push {center(plain, 'push')} button 1 buttons 1 modifiers 0",
        f"release push {center(plain, 'push')} button 1 buttons 0 modifiers 0",
    ]


@pytest.mark.parametrize("name", ["check", "second", "toggle"])
def test_a_bool_toggles_only_when_needed(app, name):
    for value, state in (("b:true", "true"), ("b:true", "true")):
        assert app.activate(WINDOW, name, value).startswith("0,")
    app.wait_for(f"toggled {name} true")
    assert app.get(name, "checked") == "true"
    assert app.events("clicked") == [f"clicked {name}"]


@pytest.mark.shared
@pytest.mark.parametrize("name", ["check", "toggle"])
def test_false_clicks_a_button_that_is_on_and_none_that_is_off(app, name):
    assert app.activate(WINDOW, name, "b:false").startswith("0,")
    assert app.events("press", "clicked") == []
    for value in ("b:true", "b:false", "b:false"):
        assert app.activate(WINDOW, name, value).startswith("0,")
    app.wait_for(f"toggled {name} false")
    assert app.get(name, "checked") == "false"
    assert app.events("clicked") == [f"clicked {name}"] * 2


@pytest.mark.parametrize("option", ["s:abc", "i:1", "b:false"])
@pytest.mark.parametrize("name, value", [("push", ""), ("toggle", "b:true"), ("check", "b:true")])
def test_the_option_is_not_looked_at(plain, name, value, option):
    assert plain.activate(WINDOW, name, value, option).startswith("0,")
    plain.wait_for(f"clicked {name}")
    assert plain.events("clicked") == [f"clicked {name}"]


@pytest.mark.shared
def test_a_checkable_group_box_is_toggled_at_its_check_box(app):
    assert app.activate(WINDOW, "checkableBox", "b:false") == "0,QGroupBox"
    app.wait_for("toggled checkableBox false")
    app.activate(WINDOW, "checkableBox", "b:false")
    app.activate(WINDOW, "checkableBox", "b:true")
    app.wait_for("toggled checkableBox true")
    assert len(app.events("toggled")) == 2


@pytest.mark.parametrize("name", ["centeredBox", "rightBox", "flatBox", "flatRightBox"])
def test_a_group_box_is_toggled_wherever_its_title_stands(app, name):
    assert app.activate(WINDOW, name, "b:false") == "0,QGroupBox"
    app.wait_for(f"toggled {name} false")


def refused(name, class_name, expected):
    return f'8,Exception : Type error: object "{name}" of class "{class_name}" accepts {expected}.'


NO_VALUES = ["b:yes", "b:True", "B:true", "b:true ", "i:", "i:4x", "i:99999999999", "x:1", "true"]


@pytest.mark.shared
@pytest.mark.parametrize("value", NO_VALUES)
def test_what_is_no_value_reads_as_none(plain, value):
    assert plain.activate(WINDOW, "check", value) == refused("check", "QCheckBox", "bool")
    assert plain.activate(WINDOW, "push", value) == "0,QPushButton"
    plain.wait_for("clicked push")
    assert plain.events("clicked", "toggled") == ["clicked push"]


@pytest.mark.shared
@pytest.mark.parametrize("value", ["s:true", "i:1"])
def test_a_button_accepts_bool_or_nothing(plain, value):
    assert plain.activate(WINDOW, "push", value) == refused("push", "QPushButton", "bool, none")
    assert plain.events("clicked") == []


@pytest.mark.shared
@pytest.mark.parametrize("value", ["s:true", "i:1", ""])
@pytest.mark.parametrize("name, class_name", [("check", "QCheckBox"), ("checkableBox", "QGroupBox")])
def test_check_boxes_and_group_boxes_accept_only_bool(plain, name, class_name, value):
    assert plain.activate(WINDOW, name, value) == refused(name, class_name, "bool")
    assert plain.events("press", "toggled") == []


def test_a_check_box_addressed_as_a_plain_button_is_clicked_without_a_value(plain):
    assert plain.activate(WINDOW, "check", class_name="QAbstractButton") == "0,QAbstractButton"
    plain.wait_for("toggled check true")


@pytest.mark.shared
def test_a_button_that_is_not_checkable_refuses_a_bool_before_any_click(plain):
    assert plain.activate(WINDOW, "push", "b:true") == "8,Exception : Button is not a togglebutton"
    assert plain.events("press") == []


@pytest.mark.shared
def test_a_group_box_without_check_box_refuses(plain):
    reply = "8,Exception : activate, QGroupBox is not checkable"
    with nothing_happens(plain):
        assert plain.activate(WINDOW, "plainBox", "b:true") == reply


@pytest.mark.shared
def test_a_disabled_button_is_refused(plain):
    reply = '8,Exception : Error: widget "disabled" of class "QPushButton" is disabled.'
    assert plain.activate(WINDOW, "disabled") == reply
    assert plain.events("press") == []


@pytest.mark.shared
def test_a_check_box_is_no_push_button(plain):
    reply = "8,Exception : Widget is not derived from class QPushButton"
    assert plain.activate(WINDOW, "check", class_name="QPushButton") == reply
    assert plain.read(WINDOW, "check", "checked", class_name="QPushButton") == reply
    assert plain.events("press") == []


@pytest.mark.shared
@pytest.mark.parametrize("name, class_name", [("push", "QPushButton"), ("check", "QCheckBox")])
def test_buttons_cannot_be_entered(plain, name, class_name):
    reply = f'8,Exception : "enter" is not implemented for widget of class "{class_name}"'
    with nothing_happens(plain):
        assert plain.enter(WINDOW, name, "s:x") == reply


@pytest.mark.shared
def test_a_group_box_cannot_be_entered(plain):
    reply = '8,Exception : "enter" is not implemented for widget of class "QGroupBox"'
    with nothing_happens(plain):
        assert plain.enter(WINDOW, "checkableBox", "s:x") == reply


@pytest.mark.parametrize(
    "command, events",
    [
        ("MouseClick:LeftButton:::", ["press", "release"]),
        ("MouseClick:RightButton:::", ["press", "release", "contextmenu"]),
        ("MouseDoubleClick:LeftButton:::", ["press", "release", "doubleclick"]),
        ("MouseDoubleClick:RightButton:::", ["press", "release", "contextmenu", "doubleclick"]),
        ("MousePress:LeftButton:::", ["press"]),
        ("MousePress:RightButton:::", ["press"]),
    ],
)
def test_the_mouse_commands_of_a_button(plain, command, events):
    assert plain.mouse(WINDOW, "push", command) == "0,QPushButton"
    seen = plain.events("press", "release", "doubleclick", "contextmenu")
    assert [line.split(" ")[0] for line in seen] == events
    assert {line.split(" ")[2] for line in seen} == {center(plain, "push")}
    if command.startswith("MousePress"):
        plain.mouse(WINDOW, "push", command.replace("Press", "Release"))
        plain.wait_for(re.compile("release .*"))


@pytest.mark.shared
@pytest.mark.parametrize(
    "command",
    [
        "MouseClick:LeftButton:0.1:0.1:",
        "MouseClick:LeftButton::::",
        "MouseClick:LeftButton::",
        "MouseClick:LeftButton",
        "MouseClick:MidButton:::",
        "MouseMove::::",
        "mouseclick:LeftButton:::",
        "MouseClick:LeftButton:::ShiftModifier",
        "",
    ],
)
def test_other_mouse_commands_of_a_button_are_invalid(plain, command):
    assert plain.mouse(WINDOW, "push", command) == "8,Exception : Invalid string value"
    assert plain.events("press") == []


@pytest.mark.shared
def test_a_mouse_command_that_is_no_text_is_a_type_error(plain):
    with nothing_happens(plain):
        reply = plain.request(f"9,{WINDOW},push,,{b'i:1'.hex()},")
        assert reply == refused("push", "QPushButton", "string")


@pytest.mark.shared
def test_a_left_click_of_the_mouse_opens_a_split_buttons_menu(app):
    assert app.mouse(WINDOW, "split", "MouseClick:LeftButton:::") == "0,QToolButton"
    app.wait_for("shown splitMenu")
    assert app.events("clicked") == []


@pytest.mark.shared
def test_a_right_click_of_the_mouse_goes_to_a_split_buttons_centre(plain):
    plain.mouse(WINDOW, "split", "MouseClick:RightButton:::")
    assert plain.events("press") == ["press split 59,19 button 2 buttons 2 modifiers 0"]


@pytest.mark.shared
def test_activating_a_split_button_clicks_its_body(app):
    app.activate(WINDOW, "split")
    app.wait_for("clicked split")
    assert app.events("shown") == []


@pytest.mark.shared
def test_the_parts_of_a_split_button_are_clicked_at_their_centres(plain):
    plain.activate(WINDOW, "split")
    plain.mouse(WINDOW, "split", "MouseClick:LeftButton:::")
    plain.wait_for("shown splitMenu")
    places = [line.split(" ")[2].split(",") for line in plain.events("press")]
    (body, height), (arrow, same_height) = ((int(x), int(y)) for x, y in places)
    assert height == same_height == 19
    # The centres of two parts that fill a button are half of its width apart.
    assert (arrow - body, body < 59) == (60, True)


@pytest.mark.shared
def test_a_tool_button_without_a_menu_is_clicked_at_its_centre(plain):
    plain.mouse(WINDOW, "tool", "MouseClick:LeftButton:::")
    assert [line.split(" ")[2] for line in plain.events("press")] == [center(plain, "tool")]


@pytest.mark.shared
@pytest.mark.parametrize("name, text", [("push", "Save"), ("ampersands", "Drag & &drop"), ("check", "Check")])
def test_the_text_of_a_button_loses_its_first_ampersand(plain, name, text):
    assert plain.read(WINDOW, name, "text") == f"u:{text}"


@pytest.mark.shared
def test_a_group_box_plays_the_generic_mouse_command(plain):
    assert plain.mouse(WINDOW, "plainBox", "MouseClick:LeftButton:0.5:0.5:ControlModifier") == "0,QGroupBox"
    plain.wait_for(re.compile("press plainBox .* modifiers 67108864"))


@pytest.mark.shared
@pytest.mark.parametrize(
    "name, served",
    [
        ("push", "QPushButton"),
        ("link", "QPushButton"),
        ("tool", "QToolButton"),
        ("first", "QRadioButton"),
        ("check", "QCheckBox"),
        ("plainBox", "QGroupBox"),
    ],
)
def test_each_kind_of_button_is_served_by_its_class(plain, name, served):
    assert plain.read(WINDOW, name, "silkClassName") == f"u:{served}"
