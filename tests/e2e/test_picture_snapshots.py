"""Picture snapshots of an application on the screen, and the plain look that makes them the same on every machine."""

import os
import re

import pytest
from PIL import Image

from qtdriver import ConditionError, Driver, PictureError, eventually
from qtdriver.expect.baselines import Baselines, use_baselines
from qtdriver.surroundings import plainlook
from showcase import AGENTS, BUILD, QT

PROGRAM = BUILD / "bin" / "host_preload_look"
STYLE = {4: "plastique", 5: "fusion", 6: "fusion"}[QT]
ELSEWHERE = {
    "LC_ALL": "de_DE.UTF-8",
    "LANG": "de_DE.UTF-8",
    "LANGUAGE": "de",
    "QT_FONT_DPI": "144",
    "QT_SCALE_FACTOR": "2",
    "QT_SCREEN_SCALE_FACTORS": "2",
    "QT_STYLE_OVERRIDE": "windows",
    "QT_QPA_PLATFORMTHEME": "gtk3",
    "DESKTOP_SESSION": "gnome",
    "XDG_CURRENT_DESKTOP": "GNOME",
}
"""The environment of a user who has another language, a finer screen and another style."""


@pytest.fixture(scope="module")
def driver():
    with Driver(build=AGENTS, qt=QT, timeout=20) as running:
        yield running


@pytest.fixture(scope="module")
def window(driver):
    return driver.launch(PROGRAM, plain_look=True).window(name="look")


@pytest.fixture
def baselines(tmp_path, monkeypatch):
    """Has the checks of a block write their pictures beside a file of this test, or compare with these."""
    monkeypatch.chdir(tmp_path)

    def use(update=False):
        return use_baselines(Baselines(tmp_path / "test_it.py", update, "--update"))

    use.folder = tmp_path / "snapshots" / "test_it"
    return use


def told_look(app):
    """The lines in which the program tells its look."""
    app.window(name="look").title()
    eventually(lambda: app.process.output.lines(), timeout=20).satisfies(
        lambda lines: any(line.startswith("date") for line in lines)
    )
    return [line for line in app.process.output.lines() if ": " in line]


def test_the_look_is_plain_and_the_same_in_whatever_surroundings(driver, window, monkeypatch):
    usual = told_look(window.app)
    assert usual[:6] == [
        f"style: {STYLE}",
        "font: DejaVu Sans",
        "pixels: 12",
        "resolution: 96",
        "caret: 0",
        "fading: 0",
    ]
    for name, value in ELSEWHERE.items():
        monkeypatch.setenv(name, value)
    assert told_look(driver.launch(PROGRAM, plain_look=True)) == usual
    assert told_look(driver.launch(PROGRAM)) != usual, "the surroundings matter to a program without it"


def test_pictures_are_the_same_in_whatever_surroundings(driver, window, baselines, monkeypatch):
    with baselines(update=True):
        eventually(window.widget("edit")).matches_picture("edit")
    assert [path.name for path in baselines.folder.iterdir()] == [f"edit.qt{QT}-{STYLE}-linux.png"]
    for name, value in ELSEWHERE.items():
        monkeypatch.setenv(name, value)
    app = driver.launch(PROGRAM, plain_look=True)
    with baselines():
        eventually(app.window(name="look").widget("edit")).matches_picture("edit", tolerance=0)
    app.terminate()


def test_the_environment_of_a_launch_has_the_last_word(driver):
    app = driver.launch(PROGRAM, plain_look=True, environment={"LC_ALL": "de_DE.UTF-8"})
    assert "locale: de_DE" in told_look(app)
    app.terminate()


def test_a_change_of_the_widget_is_told_with_its_place(window, baselines):
    edit = window.widget("edit")
    with baselines(update=True):
        eventually(edit).matches_picture("edit")
    edit.enter("Rooster")
    with baselines(), pytest.raises(ConditionError) as caught:
        eventually(edit, timeout=3).matches_picture("edit")
    edit.enter("Roastery")
    assert re.search(
        r"of its pixels \(\d+\) differ by more than 8 of 255, all within \d+ x \d+ pixels at \d+, \d+",
        str(caught.value),
    )
    with baselines():
        eventually(edit).matches_picture("edit")


def test_a_widget_that_moves_is_masked(window, baselines):
    masks = window.widget("bar")
    with baselines(update=True):
        eventually(window).matches_picture("window", masks=masks)
    with baselines():
        eventually(window).matches_picture("window", masks=masks)
    (file,) = baselines.folder.iterdir()
    bar, whole = window.widget("bar").rect(), window.snapshot().root.rect
    picture = Image.open(file)
    assert picture.size == (whole.width, whole.height)
    place = (bar.left - whole.left, bar.top - whole.top)
    part = picture.crop((*place, place[0] + bar.width, place[1] + bar.height))
    assert part.getcolors() == [(bar.width * bar.height, (128, 128, 128))]


def test_a_mask_that_is_not_there_is_told(window, baselines):
    with baselines(update=True), pytest.raises(
        ConditionError, match=r"could not be read: Widget \(clock\) not found"
    ):
        eventually(window, timeout=2).matches_picture("window", masks=window.widget("clock"))
    assert not baselines.folder.exists()


def test_a_widget_beyond_the_screen_has_no_picture(window, baselines):
    window.resize(300, 100)
    window.move(100, 100)
    with baselines(update=True):
        eventually(window).matches_picture("window", masks=window.widget("bar"))
    window.resize(300, 3000)
    eventually(lambda: window.snapshot().root.rect.height, timeout=20).satisfies(lambda height: height > 2000)
    with baselines(), pytest.raises(PictureError, match="pixels at .* is not on the screen of"):
        eventually(window).matches_picture("window", masks=window.widget("bar"))
    window.resize(300, 100)


def test_the_plain_look_needs_a_home_and_its_font(driver, monkeypatch):
    with pytest.raises(ValueError, match="leave out keep_home"):
        driver.launch(PROGRAM, plain_look=True, keep_home=True)
    monkeypatch.setattr(plainlook, "_FONT_FOLDERS", (os.devnull,))
    with pytest.raises(
        PictureError, match="plain_look needs the font DejaVu Sans .Debian: fonts-dejavu-core"
    ):
        driver.launch(PROGRAM, plain_look=True)
