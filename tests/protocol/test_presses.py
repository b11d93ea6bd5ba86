"""A widget that dies on the way to its press: nothing else is pressed instead, and no button stays held."""

import pytest

from hostapp import hexed

WINDOW = "Deaths"
DIED = "8,Exception : Internal error, proxy without widget"
MOMENTS = 48
"""Rounds of events that a widget lives on at most, from the moment when its window is raised."""

COMMANDS = {
    "a click": ("plain", 9, "s:MouseClick:LeftButton:::"),
    "a double click": ("plain", 9, "s:MouseDoubleClick:LeftButton:::"),
    "a press": ("plain", 9, "s:MousePress:LeftButton:::"),
    "a text": ("field", 6, "s:x"),
    "a value of a slider": ("slider", 5, "i:90"),
}


@pytest.fixture
def app(launch):
    return launch("deathhost")


def is_button_held(app):
    """Whether a move of the mouse is a drag to the application."""
    app.forget()
    app.mouse(WINDOW, "witness", "MouseMove::0.1:0.1:")
    app.mouse(WINDOW, "witness", "MouseMove::0.6:0.6:")
    return any(" buttons 1 " in line for line in app.events("move"))


def pressed(app):
    return {line.split(" ")[1] for line in app.events("press", "doubleclick")}


@pytest.mark.parametrize("name", sorted(COMMANDS))
def test_a_widget_that_dies_before_its_press_leaves_what_is_below_alone(app, name):
    kind, number, value = COMMANDS[name]
    replies = []
    for moment in range(MOMENTS):
        app.do(f"{kind}In{moment}")
        app.forget()
        replies.append(app.request(f"{number},{WINDOW},victim,,{hexed(value)},"))
        assert "below" not in pressed(app), f"it dies at moment {moment}: {replies}"
        assert replies[-1] == DIED or pressed(app) == {"victim"}
        if replies[-1] == DIED:
            assert not is_button_held(app), f"it dies at moment {moment}"
        else:
            app.mouse(WINDOW, "witness", "MouseRelease:LeftButton:::")
        app.do("clear")
    assert DIED in replies
    assert replies[-1] != DIED, "at no moment did it live long enough"


def test_a_release_whose_widget_dies_reaches_nothing_else(app):
    replies = set()
    for moment in range(MOMENTS):
        app.mouse(WINDOW, "witness", "MousePress:LeftButton:::")
        app.do(f"plainIn{moment}")
        app.forget()
        reply = app.mouse(WINDOW, "victim", "MouseRelease:LeftButton:::")
        released = [line.split(" ")[1] for line in app.events("release")]
        assert released == ([] if reply == DIED else ["victim"]), f"it dies at moment {moment}"
        replies.add(reply)
        app.mouse(WINDOW, "witness", "MouseRelease:LeftButton:::")
        app.do("clear")
    assert replies == {DIED, "0,QWidget"}
