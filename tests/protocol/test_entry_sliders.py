"""Sliders, as a test drives them."""

import re

import pytest

from entryfields import (
    DIED,
    WINDOW,
    disabled,
    input_events,
    not_implemented,
    plain_app,
    styled_app,
    type_error,
)  # noqa: F401
from refusals import nothing_happens

RANGE = "accepts only values in the following range"


@pytest.mark.parametrize(
    "name, value", [("wide", 80), ("wide", 0), ("wide", 100), ("inverted", 8), ("inverted", 10)]
)
def test_the_application_sees_a_drag_of_the_handle(app, name, value):
    assert app.activate(WINDOW, name, f"i:{value}") == "0,QSlider"
    app.wait_for(f"released {name}")
    assert app.events("pressed", "moved", "changed", "released") == [
        f"pressed {name}",
        f"moved {name} {value}",
        f"changed {name} {value}",
        f"released {name}",
    ]
    assert app.get(name, "value") == str(value)


def test_a_drag_is_a_press_a_move_with_the_button_held_and_a_release(app):
    app.activate(WINDOW, "wide", "i:80")
    app.wait_for("released wide")
    drag = [
        line.split(" button ")
        for line in app.events("press", "move", "release")
        if "buttons 0" not in line[:-20]
    ]
    assert [(place.split(" ")[0], buttons) for place, buttons in drag[-3:]] == [
        ("press", "1 buttons 1 modifiers 0"),
        ("move", "0 buttons 1 modifiers 0"),
        ("release", "1 buttons 0 modifiers 0"),
    ]
    heights = {place.rsplit(",")[-1] for place, _ in drag[-3:]}
    assert len(heights) == 1


def test_a_slider_that_does_not_track_changes_at_the_release(app):
    assert app.activate(WINDOW, "shifted", "i:-10") == "0,QSlider"
    app.wait_for("changed shifted -10")
    assert app.events("moved", "changed", "released") == [
        "moved shifted -10",
        "released shifted",
        "changed shifted -10",
    ]


@pytest.mark.shared
def test_dragging_to_the_current_value_presses_and_releases_in_place(app):
    assert app.activate(WINDOW, "wide", "i:20") == "0,QSlider"
    app.wait_for("released wide")
    assert app.events("pressed", "moved", "changed", "released") == ["pressed wide", "released wide"]


def test_every_value_of_a_slider_that_is_long_enough_can_be_reached(plain):
    for value in (1, 99, 50, 51, 50, 0):
        assert plain.activate(WINDOW, "wide", f"i:{value}") == "0,QSlider"
        assert plain.get("wide", "value") == str(value)


@pytest.mark.shared
def test_a_value_between_two_pixels_is_refused_with_the_nearest_one(app):
    reply = app.activate(WINDOW, "narrow", "i:1")
    assert reply == "8,Exception : Unable to display value 1, try 0"
    assert input_events(app) == []


def test_the_nearest_value_of_the_message_can_be_reached(app):
    reply = app.activate(WINDOW, "narrow", "i:503")
    nearest = re.fullmatch(r"8,Exception : Unable to display value 503, try (\d+)", reply).group(1)
    assert abs(int(nearest) - 503) < 12
    assert app.activate(WINDOW, "narrow", f"i:{nearest}") == "0,QSlider"
    app.wait_for("released narrow")
    assert app.get("narrow", "value") == nearest


@pytest.mark.shared
@pytest.mark.parametrize(
    "name, value, limits", [("wide", 101, "0, 100"), ("wide", -1, "0, 100"), ("shifted", -51, "-50, 50")]
)
def test_a_value_out_of_range_is_refused(plain, name, value, limits):
    reply = plain.activate(WINDOW, name, f"i:{value}")
    assert reply == f'8,Exception : Type error: object "{name}" of class "QSlider" {RANGE}: [{limits}].'
    assert input_events(plain) == []


# A vertical slider knows one pixel only, the first.


@pytest.mark.parametrize("name, reachable", [("upright", 0), ("uprightInverted", 10)])
def test_a_vertical_slider_is_pressed_and_released_at_its_first_pixel(app, name, reachable):
    assert app.activate(WINDOW, name, f"i:{reachable}") == "0,QSlider"
    places = {re.sub(r"^\w+ | button.*", "", line) for line in app.events("press", "release")}
    assert len(places) == 1
    assert [line.split(" ")[:2] for line in app.events("press", "release")] == [
        ["press", name],
        ["release", name],
    ]


def test_the_first_pixel_of_a_vertical_slider_is_where_a_bare_handle_is(app):
    app.do("placeOfFirstPixel")
    place = app.wait_for(re.compile("centre .*")).split(" ")[1]
    app.activate(WINDOW, "upright", "i:0")
    assert [line.split(" ")[2] for line in app.events("press", "release")] == [place, place]


@pytest.mark.shared
@pytest.mark.parametrize("name, reachable", [("upright", 0), ("uprightInverted", 10)])
def test_a_vertical_slider_refuses_every_other_value(app, name, reachable):
    assert app.activate(WINDOW, name, "i:5") == f"8,Exception : Unable to display value 5, try {reachable}"
    other = 10 - reachable
    assert (
        app.activate(WINDOW, name, f"i:{other}")
        == f"8,Exception : Unable to display value {other}, try {reachable}"
    )
    assert input_events(app) == []


def test_a_vertical_slider_can_be_moved_by_mouse_commands_of_a_plain_widget(plain):
    plain.mouse(WINDOW, "upright", "MouseClick:LeftButton:0.5:0.1:", class_name="QWidget")
    plain.wait_for("changed upright 10")


# Refusals


@pytest.mark.shared
@pytest.mark.parametrize("value", ["s:5", "b:true", ""])
def test_a_slider_takes_nothing_but_integers(plain, value):
    assert plain.activate(WINDOW, "wide", value) == type_error("wide", "QSlider", "integer")
    assert input_events(plain) == []


@pytest.mark.shared
def test_nothing_can_be_entered_into_a_slider(plain):
    assert plain.enter(WINDOW, "wide", "i:5") == not_implemented("enter", "QSlider")


@pytest.mark.shared
def test_a_disabled_slider_is_refused(plain):
    assert plain.activate(WINDOW, "disabledSlider", "i:5") == disabled("disabledSlider", "QSlider")
    assert plain.get("disabledSlider", "value") == "0"


def test_a_slider_that_dies_under_the_mouse_leaves_no_button_held(plain):
    assert plain.activate(WINDOW, "doomedSlider", "i:5") == DIED
    assert plain.events("died") == ["died doomedSlider"]
    plain.forget()
    plain.mouse(WINDOW, "wide", "MouseMove:NoButton:::")
    assert [line for line in plain.events("move") if "buttons 1" in line] == []


# Mouse commands


@pytest.mark.parametrize(
    "command, events",
    [
        ("MouseClick:LeftButton", ["press 1 1", "release 1 0"]),
        ("MouseClick:RightButton", ["press 2 2", "release 2 0", "contextmenu"]),
        ("MouseDoubleClick:LeftButton", ["press 1 1", "release 1 0", "doubleclick 1 1"]),
        ("MouseDoubleClick:RightButton", ["press 2 2", "release 2 0", "contextmenu", "doubleclick 2 2"]),
        ("MousePress:LeftButton", ["press 1 1"]),
        ("MousePress:RightButton", ["press 2 2"]),
    ],
)
def test_a_mouse_command_is_played_at_the_handles_origin(plain, command, events):
    assert plain.mouse(WINDOW, "wide", command) == "0,QSlider"
    seen = []
    for line in plain.events("press", "release", "doubleclick", "contextmenu"):
        word, name, place, *rest = line.split(" ")
        assert name == "wide"
        assert int(place.split(",")[0]) < 20
        seen.append(word if word == "contextmenu" else f"{word} {rest[1]} {rest[3]}")
    assert seen == events


@pytest.mark.parametrize("button, number", [("LeftButton", 1), ("RightButton", 2)])
def test_a_button_pressed_by_one_command_is_released_by_another(plain, button, number):
    plain.mouse(WINDOW, "wide", f"MousePress:{button}")
    assert plain.mouse(WINDOW, "wide", f"MouseRelease:{button}") == "0,QSlider"
    assert [line.split(" ", 3)[3] for line in plain.events("press", "release")] == [
        f"button {number} buttons {number} modifiers 0",
        f"button {number} buttons 0 modifiers 0",
    ]


@pytest.mark.shared
def test_an_empty_mouse_command_does_nothing(plain):
    assert plain.request(f"9,{WINDOW},wide,,,") == "0,QSlider"
    assert input_events(plain) == []


@pytest.mark.shared
@pytest.mark.parametrize(
    "command", ["MouseClick:LeftButton:::", "MouseClick:MidButton", "MouseMove:", "Click", ""]
)
def test_any_other_mouse_command_is_invalid(plain, command):
    assert plain.mouse(WINDOW, "wide", command) == "8,Exception : Invalid string value"
    assert input_events(plain) == []


@pytest.mark.shared
@pytest.mark.parametrize("value", ["i:1", "b:true"])
def test_a_mouse_command_must_be_a_string(plain, value):
    with nothing_happens(plain):
        reply = plain.request(f"9,{WINDOW},wide,,{value.encode().hex()},")
        assert reply == type_error("wide", "QSlider", "string, none")
