"""The mouse on screens with a scale, and on two screens of different scales. Qt 4 knows no scales."""

import os
import re
import subprocess
import time

import pytest

from hostapp import DEADLINE, QT, eventually
from screens import WIDTH, two_screens

WINDOW = "Screens"
needs_scales = pytest.mark.skipif(QT == 4, reason="Qt 4 has no scales: its pixels are the screen's")
PLACES = {"0:0": "0,0", "0.1:0.9": "20,54", ":": "99,29", "0.995:0.98": "199,58"}
"""Positions of mouse commands, and the points of the canvas, of 200 by 60 pixels, that they mean."""
FACTORS = ["1;2", "2;1", "1.25;1.5", "2;2"]


@pytest.fixture
def screens():
    with two_screens() as environment:
        yield environment


def cursor(environment):
    """Where the windowing system has the cursor, in pixels of the screen."""
    command = ["xdotool", "getmouselocation"]
    output = subprocess.run(
        command, env={**os.environ, **environment}, capture_output=True, check=True
    ).stdout
    return tuple(map(int, re.match(rb"x:(\d+) y:(\d+) ", output).groups()))


def rectangle(environment):
    """Where the windowing system has the window: left, top, width, height in pixels of the screen; None for nowhere."""
    command = ["xdotool", "search", "--onlyvisible", "--name", f"^{WINDOW}$", "getwindowgeometry", "--shell"]
    output = subprocess.run(
        command, env={**os.environ, **environment}, capture_output=True, check=False
    ).stdout
    place = re.search(rb"X=(-?\d+)\nY=(-?\d+)\nWIDTH=(\d+)\nHEIGHT=(\d+)\n", output)
    return tuple(map(int, place.groups())) if place else None


def launch_at(launch, place, environment, factor, *options, screen=0):
    """The application with its window there, in its own coordinates, when it and the windowing system agree on that.

    On a screen of another scale Qt gives the window its size some time after its place, and seldom loses that: then the
    two never agree, and the application is started again.
    """
    left, top = (place[0] - screen * WIDTH) * factor + screen * WIDTH, place[1] * factor
    for _ in range(3):
        app = launch("screenhost", "--place", f"{place[0]},{place[1]}", *options, env=environment)
        app.do("place")
        eventually(lambda: app.get("window", "geometry").split(" ")[0], f"{place[0]},{place[1]}")
        deadline = time.monotonic() + DEADLINE / 2
        while time.monotonic() < deadline:
            size = [int(app.get("window", name)) * factor for name in ("width", "height")]
            seen = rectangle(environment)
            if is_near(seen, (left, top, *size)):
                return app
        app.close()
        app.wait_for_end()
    raise AssertionError(f"Qt has {(left, top, *size)}, the windowing system {seen}")


def is_near(point, other):
    """Whether two points, or rectangles, are the same but for the fraction of a pixel that was rounded."""
    return point is not None and all(abs(a - b) <= 1 for a, b in zip(point, other))


def presses(app, name):
    return [line.split(" ")[2] for line in app.events("press") if line.split(" ")[1] == name]


def check_mouse(app):
    """Clicks, drags and what proxies do with the mouse reach the points that they are for."""
    for position, point in PLACES.items():
        app.forget()
        assert app.mouse(WINDOW, "canvas", f"MouseClick:LeftButton:{position}:") == "0,QWidget"
        app.wait_for(re.compile("release canvas .*"))
        assert presses(app, "canvas") == [point]
    app.forget()
    app.mouse(WINDOW, "canvas", "MousePress:LeftButton:0.1:0.1:")
    app.mouse(WINDOW, "canvas", "MouseMove::0.5:0.5:")
    app.mouse(WINDOW, "canvas", "MouseRelease:LeftButton:0.8:0.5:")
    drag = [
        line.split(" ", 3)[2] for line in app.events("press", "release", "move") if "buttons 0" not in line
    ]
    assert (drag[0], drag[-1]) == ("20,6", "160,30")
    assert app.activate(WINDOW, "slider", "i:7") == "0,QSlider"
    app.wait_until("slider", "value", "7")
    assert app.activate(WINDOW, "combo", "s:three") == "0,QComboBox"
    app.wait_until("combo", "currentIndex", "2")
    assert app.enter(WINDOW, "edit", "s:text") == "0,QLineEdit"
    assert app.get("edit", "text") == "text"


def check_cursor(environment, app, factor):
    """The cursor is where the canvas begins on the screen, at 7,5 in the window."""
    assert app.request(f"4,{WINDOW},canvas") == "0,QWidget"
    left, top, _, _ = rectangle(environment)
    assert is_near(cursor(environment), (left + 7 * factor, top + 5 * factor))


@pytest.mark.parametrize("factor", [1, 1.25, 1.5, 2])
def test_the_mouse_reaches_its_points_at_any_scale(launch, factor):
    if QT == 4 and factor != 1:
        pytest.skip("Qt 4 has no scales: its pixels are the screen's")
    app = launch_at(launch, (60, 40), {"QT_SCALE_FACTOR": str(factor)}, factor)
    check_mouse(app)
    check_cursor({}, app, factor)


@needs_scales
@pytest.mark.parametrize("screen", [0, 1])
@pytest.mark.parametrize("factors", FACTORS)
def test_the_mouse_reaches_its_points_on_each_of_two_screens(screens, launch, factors, screen):
    factor = float(factors.split(";")[screen])
    environment = {**screens, "QT_SCREEN_SCALE_FACTORS": factors}
    app = launch_at(launch, (screen * WIDTH + 11, 23), environment, factor, screen=screen)
    check_mouse(app)
    check_cursor(screens, app, factor)
    assert cursor(screens)[0] // WIDTH == screen


@needs_scales
def test_a_point_beyond_the_last_screen_is_not_taken_for_one_in_the_middle_of_it(screens, launch):
    environment = {**screens, "QT_SCREEN_SCALE_FACTORS": "1;2"}
    # The window ends where the right screen does, so that one pixel beyond the edge there is none.
    app = launch_at(launch, (WIDTH + WIDTH // 2 - 207, 23), environment, 2, screen=1)
    app.forget()
    hidden = "8,Exception : Error: widget is hidden by another window"
    assert app.mouse(WINDOW, "canvas", "MouseClick:LeftButton:1:0.5:") == hidden
    assert cursor(screens)[0] >= 2 * WIDTH - 2
    assert app.events("press") == []


@needs_scales
@pytest.mark.parametrize("name", ["canvas", "native", "inner"])
def test_a_click_has_the_positions_of_a_users(launch, name):
    app = launch_at(launch, (60, 40), {}, 1, "--native")
    app.mouse(WINDOW, name, "MouseMove::0.4:0.6:", class_name="QWidget")
    app.forget()
    subprocess.run(["xdotool", "click", "1"], check=True)
    app.wait_for(re.compile("release .*"))
    users = app.events("at")
    app.forget()
    app.mouse(WINDOW, name, "MouseClick:LeftButton:0.4:0.6:", class_name="QWidget")
    app.wait_for(re.compile("release .*"))
    assert len(users) == 2
    assert app.events("at") == users
