"""Picture snapshots without an application: what differs between pictures, which file is compared, what is refused."""

import mmap
import os
import re
import subprocess
import time
from itertools import cycle
from types import SimpleNamespace

import pytest
from PIL import Image

from qtdriver import ConditionError, PictureError, eventually
from qtdriver.api.window import Window
from qtdriver.expect import picturesnapshots, steady
from qtdriver.expect.baselines import Baselines, use_baselines
from qtdriver.expect.comparison import Limits, compare, masked
from qtdriver.surroundings.look import Look, look_of_attached, look_of_launched

EXACT = Limits(0, 0.0)


def plain(size=(20, 10), colour="white"):
    return Image.new("RGB", size, colour)


def with_spot(box, colour, size=(20, 10)):
    image = plain(size)
    image.paste(colour, box)
    return image


class Camera(picturesnapshots._Camera):
    """One that sees pictures of the test in place of the screen."""

    pictures = ()

    def _picture(self):
        self._taken_at = time.monotonic()
        return next(self.pictures)


@pytest.fixture
def seen(monkeypatch, tmp_path):
    """Sets the pictures that are shown one after the other; the window is one to be compared with its baseline."""
    monkeypatch.setattr(picturesnapshots, "_Camera", Camera)
    monkeypatch.chdir(tmp_path)

    def show(*images, update=False, **options):
        monkeypatch.setattr(Camera, "pictures", cycle(images))
        compared = []

        def wait_in(window, widget, wanted, read, satisfied, timeout, shown, given_up, comparison):
            for _ in range(30):
                value = read()
                if satisfied(value):
                    return
                if given_up(value):
                    break
            message = shown(value)
            compared.append(comparison())
            raise ConditionError(message)

        monkeypatch.setattr(picturesnapshots, "wait_in", wait_in)
        monkeypatch.setattr(picturesnapshots, "_APART_SECONDS", 0.002)
        monkeypatch.setattr(steady, "_SECONDS", 0.02)
        window = Window(SimpleNamespace(look=Look(5, "fusion")), "Widget:w", "window()")
        with use_baselines(Baselines(tmp_path / "test_it.py", update, "--update")) as baselines:
            try:
                eventually(window).matches_picture("gauge", **options)
            finally:
                show.comparisons, show.written = compared, baselines.written

    show.folder = tmp_path / "snapshots" / "test_it"
    show.folder.mkdir(parents=True)
    return show


def test_equal_pictures_do_not_differ():
    difference = compare(plain(), plain(), 0)
    assert (difference.pixels, difference.box) == (0, None) and difference.is_within(EXACT)


def test_each_channel_may_differ_by_the_tolerance_and_no_more():
    for channel in range(3):
        colour = [255, 255, 255]
        colour[channel] = 245
        spotted = with_spot((3, 2, 5, 6), tuple(colour))
        assert compare(plain(), spotted, 10).pixels == 0
        difference = compare(plain(), spotted, 9)
        assert (difference.pixels, difference.box) == (8, (3, 2, 5, 6))


def test_a_share_of_the_pixels_may_differ_by_more():
    difference = compare(plain(), with_spot((0, 0, 2, 1), "black"), 0)
    assert difference.is_within(Limits(0, 0.01)) and not difference.is_within(Limits(0, 0.0099))
    assert difference.describe(Limits(0, 0.005)) == (
        "it differs: 1.00% of its pixels (2) differ by more than 0 of 255, where 0.50% may, all within 2 x 1 pixels at 0, 0"
    )


def test_pictures_of_different_sizes_always_differ():
    difference = compare(plain((20, 10)), plain((21, 9)), 255)
    assert not difference.is_within(Limits(255, 1.0))
    assert difference.describe(EXACT) == "it was 21 x 9 pixels large in place of 20 x 10"
    assert difference.picture.size == (21, 10)
    assert difference.picture.getpixel((20, 5)) == difference.picture.getpixel((5, 9)) != (255, 255, 255)


def test_the_picture_of_a_difference_shows_it_in_a_strong_colour_on_a_pale_ground():
    picture = compare(plain(), with_spot((3, 2, 5, 6), (0, 0, 200)), 0).picture
    assert picture.getpixel((3, 2)) == (224, 33, 138) and picture.getpixel((0, 0)) == (255, 255, 255)


def test_what_is_masked_does_not_count():
    one, other = (masked(image, [(3, 2, 5, 6)]) for image in (plain(), with_spot((3, 2, 5, 6), "black")))
    assert compare(one, other, 0).pixels == 0
    assert compare(one, masked(with_spot((3, 2, 6, 6), "black"), [(3, 2, 5, 6)]), 0).pixels == 4


def test_the_first_file_of_the_most_exact_look_is_compared(seen):
    files = ["gauge.qt5-fusion-linux.png", "gauge.qt5-fusion.png", "gauge.qt5.png", "gauge.png"]
    colours = ["red", "green", "blue", "white"]
    for name, colour in zip(files, colours):
        plain(colour=colour).save(seen.folder / name)
    for name, colour in zip(files, colours):
        seen(plain(colour=colour))
        (seen.folder / name).unlink()
    with pytest.raises(ConditionError, match="no such picture"):
        seen(plain(colour="white"))


def test_files_of_other_looks_are_not_compared(seen):
    for name in ("gauge.qt4.png", "gauge.qt5-windows-linux.png", "gauge.qt5-fusion-windows.png"):
        plain().save(seen.folder / name)
    with pytest.raises(ConditionError, match="no such picture"):
        seen(plain())


def test_a_missing_picture_is_a_failure_that_leaves_the_new_one(seen):
    with pytest.raises(ConditionError) as caught:
        seen(plain(colour="red"))
    assert str(caught.value) == (
        "there was no such picture to compare it with\n"
        "pictures: test-results/pictures/gauge.actual.png\n"
        "--update writes snapshots/test_it/gauge.qt5-fusion-linux.png, if it is right so"
    )
    left = seen.folder.parents[1] / "test-results" / "pictures" / "gauge.actual.png"
    assert Image.open(left).getpixel((0, 0)) == (255, 0, 0)
    assert not list(seen.folder.iterdir())
    assert (seen.comparisons[0].expected, seen.comparisons[0].actual) == (b"", left.read_bytes())


def test_a_difference_leaves_all_three_pictures(seen):
    plain().save(seen.folder / "gauge.png")
    with pytest.raises(ConditionError) as caught:
        seen(with_spot((3, 2, 5, 6), "black"))
    assert "4.00% of its pixels (8) differ by more than 8 of 255, all within 2 x 4 pixels at 3, 2" in str(
        caught.value
    )
    assert "gauge.expected.png, gauge.actual.png, gauge.difference.png" in str(caught.value)
    left = sorted(path.name for path in (seen.folder.parents[1] / "test-results" / "pictures").iterdir())
    assert left == ["gauge.actual.png", "gauge.difference.png", "gauge.expected.png"]


def test_the_option_writes_the_file_of_the_exact_look_and_leaves_the_others(seen):
    plain().save(seen.folder / "gauge.png")
    seen(plain(colour="red"), update=True)
    assert [path.name for path in seen.written] == ["gauge.qt5-fusion-linux.png"]
    assert Image.open(seen.written[0]).getpixel((0, 0)) == (255, 0, 0)
    assert Image.open(seen.folder / "gauge.png").getpixel((0, 0)) == (255, 255, 255)
    seen(plain(colour="red"))


def test_the_option_writes_nothing_where_the_picture_is_right(seen):
    plain().save(seen.folder / "gauge.png")
    seen(plain(), update=True)
    assert not seen.written


def test_what_does_not_rest_is_neither_right_nor_written(seen):
    plain().save(seen.folder / "gauge.png")
    for update in (False, True):
        with pytest.raises(ConditionError, match="^it had not come to rest: "):
            seen(plain(), plain(colour="red"), update=update)
        assert not seen.written


def test_a_file_that_is_no_picture_is_told_by_its_name(seen):
    (seen.folder / "gauge.png").write_text("nothing")
    with pytest.raises(PictureError, match="gauge.png is no picture"):
        seen(plain())


@pytest.mark.parametrize(
    "options, error, message",
    [
        ({"tolerance": -1}, ValueError, "tolerance: -1 is not from 0 to 255"),
        ({"tolerance": "8"}, TypeError, "tolerance: '8' (str) is no number"),
        ({"share": 1.5}, ValueError, "share: 1.5 is not from 0 to 1"),
        ({"share": True}, TypeError, "share: True (bool) is no number"),
        ({"masks": ["clock"]}, TypeError, "masks: 'clock' (str) is no widget"),
    ],
)
def test_an_argument_that_nothing_can_fulfil_is_an_error_at_once(seen, options, error, message):
    with pytest.raises(error, match=re.escape(f"matches_picture: {message}")):
        seen(plain(), **options)


@pytest.mark.parametrize(
    "major, arguments, environment, plain_look, style",
    [
        (5, [], {}, False, "default"),
        (5, [], {"QT_STYLE_OVERRIDE": "Fusion"}, True, "fusion"),
        (5, ["-style", "Windows"], {"QT_STYLE_OVERRIDE": "fusion"}, True, "windows"),
        (5, ["notes.txt", "--style=kvantum-dark"], {}, False, "kvantumdark"),
        (5, ["-style"], {}, False, "default"),
        (4, [], {"QT_STYLE_OVERRIDE": "fusion"}, False, "default"),
        (4, [], {"QT_STYLE_OVERRIDE": "fusion"}, True, "plastique"),
    ],
)
def test_the_style_is_the_one_that_the_program_was_told(major, arguments, environment, plain_look, style):
    process = SimpleNamespace(qt_major=major, under_wine=False)
    assert look_of_launched(process, arguments, environment, plain_look) == Look(major, style, "linux")


@pytest.mark.parametrize(
    "library, major", [("libQtGui.so.4.8.7", 4), ("libQt5Widgets.so.5", 5), ("libQt6Widgets.so.60", None)]
)
def test_the_qt_of_an_attached_program_is_told_by_the_libraries_that_it_has_loaded(tmp_path, library, major):
    (tmp_path / library).write_bytes(b"library")
    with open(tmp_path / library, "rb") as file, mmap.mmap(file.fileno(), 0, prot=mmap.PROT_READ):
        assert look_of_attached(os.getpid()) == Look(major)


def test_the_qt_of_a_program_that_has_ended_is_not_known():
    ended = subprocess.Popen(["true"])
    ended.wait()
    assert look_of_attached(ended.pid) == Look(None)


def test_a_program_under_wine_has_a_look_of_windows():
    process = SimpleNamespace(qt_major=4, under_wine=True)
    assert list(look_of_launched(process, [], {}, True).names()) == [
        "qt4-default-windows",
        "qt4-default",
        "qt4",
        "",
    ]
