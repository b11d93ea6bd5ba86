"""Drags of sliders that do not arrive: no button stays held, neither the slider's nor the mouse's."""

import pytest

from hostapp import eventually

DIED = "8,Exception : Internal error, proxy without widget"
HIDDEN = "8,Exception : Error: widget is hidden by another window"


@pytest.fixture
def app(launch):
    app = launch("sliderhost")
    for window, name in (("Crowded", "crowded"), ("Lonely", "lonely"), ("Doomed", "doomed")):
        # Until the window manager has shown it where Qt takes it to be.
        eventually(lambda: app.mouse(window, name, "MouseMove::::", class_name="QWidget"), "0,QWidget")
    app.forget()
    return app


def is_button_held(app):
    """Whether a move of the mouse is a drag to the application."""
    app.forget()
    app.mouse("Crowded", "neighbour", "MouseMove::0.5:0.1:", class_name="QWidget")
    app.mouse("Crowded", "neighbour", "MouseMove::0.5:0.9:", class_name="QWidget")
    return any(" buttons 1 " in line for line in app.events("move"))


@pytest.mark.parametrize(
    "window, name, reply",
    # The drag goes to the right, as in a layout from left to right, and leaves the slider.
    [("Crowded", "crowded", "0,QSlider"), ("Lonely", "lonely", HIDDEN)],
)
def test_a_slider_in_a_layout_from_right_to_left_does_not_stay_pressed(app, window, name, reply):
    assert app.activate(window, name, "i:9") == reply
    app.wait_for(f"released {name}")
    assert app.get(name, "sliderDown") == "false"
    assert app.get(name, "value") == "0"
    assert not is_button_held(app)


def test_a_slider_in_a_layout_from_right_to_left_is_pressed_once_and_released_once(app):
    app.activate("Crowded", "crowded", "i:9")
    app.wait_for("released crowded")
    assert [line.split(" ")[0] for line in app.events("press", "release") if " crowded " in line] == [
        "press",
        "release",
    ]


def test_the_minimum_of_a_slider_in_a_layout_from_right_to_left_is_pressed_and_released_in_place(app):
    assert app.activate("Crowded", "crowded", "i:0") == "0,QSlider"
    app.wait_for("released crowded")
    assert app.events("press", "release", "released")[-1] == "released crowded"
    assert [line.split(" ")[1] for line in app.events("press", "release")] == ["crowded", "crowded"]


def test_a_drag_that_its_window_does_not_survive_tells_so(app):
    assert app.activate("Doomed", "doomed", "i:9") == DIED
    assert app.request("8,Doomed") == "2,Window (Doomed) not found"
    assert not is_button_held(app)
