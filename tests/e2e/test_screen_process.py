"""The process that takes pictures: several screens, of which one ends; pictures that are written later."""

import threading

import pytest
from PIL import Image

from qtdriver import Desktop
from qtdriver.desktop import screen_process, screen_worker
from qtdriver.desktop.bands import BandCutter, Pixels
from qtdriver.desktop.screen_process import ScreenProcess, display_name
from qtdriver.desktop.strips import StripWriter
from qtdriver.errors import PictureError

KEPT_BYTES = 100_000_000


@pytest.fixture
def screens():
    process = ScreenProcess()
    yield process
    process.close()


@pytest.fixture
def desktops():
    both = Desktop(), Desktop()
    yield both
    for desktop in both:
        desktop.close()


def test_pictures_of_all_screens_stay_when_one_of_them_ends(screens, desktops, tmp_path):
    ending, staying = (desktop.environment["DISPLAY"] for desktop in desktops)
    store = screens.new_store()
    pictures = [screens.grab(display, store, KEPT_BYTES) for display in (ending, staying)]
    for picture in pictures:
        picture.wait()
    desktops[0].close()
    with pytest.raises(PictureError, match=f"no picture of the display {ending}: the X server has ended"):
        screens.grab(ending, store, KEPT_BYTES).wait()
    pictures.append(screens.grab(staying, store, KEPT_BYTES))
    pictures[-1].wait()
    saved, dropped, problem = screens.save(store, tmp_path, pictures, later=True)
    screens.finish()
    assert sorted(saved) == [picture.number for picture in pictures] and (dropped, problem) == (0, "")
    assert all((tmp_path / picture.name).stat().st_size for picture in saved.values())


def test_pictures_are_written_also_by_a_process_of_the_lowest_priority(screens, tmp_path, monkeypatch):
    """No thread may raise its own."""
    monkeypatch.setattr(screen_process, "_START", f"import os; os.nice(19); {screen_process._START}")
    store = screens.new_store()
    picture = screens.grab(display_name(None), store, KEPT_BYTES)
    picture.wait()
    saved = screens.save(store, tmp_path, [picture], later=True).files
    screens.finish()
    assert (tmp_path / saved[picture.number].name).stat().st_size


BROKEN_CUTTER = """
from qtdriver.desktop.bands import BandCutter

whole, cut, calls = BandCutter.cut, [], []

def broken(self, pixels):
    calls.append(pixels)
    if len(calls) == 1:
        raise MemoryError("no room for a band")
    return whole(self, pixels)

BandCutter.cut = broken
"""


def test_a_picture_that_cannot_be_cut_is_noted_and_the_next_one_is_taken(screens, tmp_path, monkeypatch):
    begin, main = screen_process._START.split("main()\n", 1)[0], "main()\n"
    monkeypatch.setattr(screen_process, "_START", begin + BROKEN_CUTTER + main)
    stores = screens.new_store(), screens.new_store()
    lost, kept, other = (screens.grab(display_name(None), stores[number], KEPT_BYTES) for number in (0, 0, 1))
    for picture in (lost, kept, other):
        picture.wait()
    saved, dropped, problem = screens.save(stores[0], tmp_path, [lost, kept])
    assert list(saved) == [kept.number] and dropped == 0
    assert problem == "MemoryError: no room for a band"
    assert screens.save(stores[1], tmp_path, [other]).problem == ""


class Slow:
    """A picture that takes its time to be written, or cannot be."""

    written = 0

    def __init__(self, release, error=None):
        self.release, self.error, self.is_compressed = release, error, False

    def compress(self):
        self.is_compressed = True

    def write(self, strips):
        self.release.wait()
        if self.error is not None:
            raise self.error
        Slow.written += 1


def test_the_writer_says_how_many_pictures_are_left_and_goes_on_after_an_error(monkeypatch):
    """So a run that ends waits as long as some are written, and for all of them."""
    monkeypatch.setattr(screen_worker, "_FINISH_SECONDS", 0.0)
    monkeypatch.setattr(Slow, "written", 0)
    writing, release = screen_worker._Writing(), threading.Event()
    writing.put([Slow(release), Slow(release, ValueError("no picture")), Slow(release)])
    assert writing.finish({}) == 3
    release.set()
    monkeypatch.setattr(screen_worker, "_FINISH_SECONDS", 60.0)
    with pytest.raises(ValueError, match="no picture"):
        writing.finish({})
    assert writing.finish({}) == 0 and Slow.written == 2


def test_pictures_that_wait_long_to_be_written_are_compressed(monkeypatch):
    """The tests do not wait for the writer, so its pictures may take no more memory with their number."""
    monkeypatch.setattr(screen_worker, "_MAX_LOOSE", 2)
    writing, release = screen_worker._Writing(), threading.Event()
    pictures = [Slow(release) for _ in range(5)]
    writing.put(pictures)
    release.set()
    assert writing.finish({}) == 0
    assert [picture.is_compressed for picture in pictures[:2]] == [False, False]
    assert pictures[-1].is_compressed


def test_a_run_that_ends_waits_as_long_as_pictures_are_written(screens, monkeypatch):
    answers = iter([7, 3, 0, 5, 5])

    def answer(**_):
        order = screen_process.Pending(1, "")
        order.answer(next(answers), "")
        return order

    monkeypatch.setattr(screens, "_order", answer)
    monkeypatch.setattr(screens, "_process", object())
    monkeypatch.setattr(screens, "_writes_later", True)
    screens.finish()
    screens._writes_later = True
    with pytest.raises(PictureError, match="5 pictures are still not written"):
        screens.finish()
    assert list(answers) == []


def test_only_what_has_changed_on_a_screen_is_compressed_again():
    screen = Image.radial_gradient("L").convert("RGB")
    cutter = BandCutter()
    before = cutter.cut(Pixels.of(screen))
    screen.paste("red", (10, 40, 20, 50))
    after = cutter.cut(Pixels.of(screen))
    screen.paste("red", (0, 0, 1, 1))
    corner = cutter.cut(Pixels.of(screen))
    assert [one is other for one, other in zip(before, after)] == 2 * [True] + 2 * [False] + 12 * [True]
    assert {band.plain for band in corner} == {b"\xff\0\0"}  # of which each band has other content


def test_what_is_shown_again_is_not_compressed_again():
    """As when a window is closed and opened again; or a caret blinks."""
    cutter = BandCutter()
    window, empty = Image.radial_gradient("L").convert("RGB"), Image.new("RGB", (256, 256), "black")
    window.paste("black", (0, 0, 1, 1))
    first, _, again = (cutter.cut(Pixels.of(screen)) for screen in (window, empty, window))
    assert all(one is other for one, other in zip(first, again))


def test_files_share_what_they_show_alike(tmp_path):
    """Only the bands that differ in the second one are compressed, and both are as they were."""
    strips, cutter = StripWriter(), BandCutter()
    screen = Image.radial_gradient("L").convert("RGB")
    part = (7, 5, 250, 251)
    for number in range(2):
        screen.paste("red", (10, 40, 10 + number, 50))
        path = tmp_path / f"{number}.png"
        path.write_bytes(strips.png(cutter.cut(Pixels.of(screen)), screen.width, part))
        assert list(Image.open(path).getdata()) == list(screen.crop(part).getdata())
    assert len(strips._strips) == 16 + 2


def test_rows_of_a_screen_may_be_longer_than_they_are_wide():
    rows = [bytes((row, 2, 3, 0)) * 5 + b"ends" for row in range(40)]
    pixels = Pixels((5, 40), 24, memoryview(b"".join(rows)))
    first, _, last = BandCutter().cut(pixels)
    assert first.pixels()[:3] == b"\3\2\0" and len(first.pixels()) == 16 * 15 and len(last.pixels()) == 8 * 15
    assert pixels.image().getpixel((4, 39)) == (3, 2, 39)
