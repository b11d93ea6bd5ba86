"""Pictures in the XPM format, as an agent sends them; what is taken from a screen: its picture, its clipboard."""

import ctypes
import os

import pytest

from qtdriver import ClipboardError, PictureError, ProtocolError, eventually
from qtdriver.api import clipboard
from qtdriver.api.clipboard import read_clipboard
from qtdriver.api.pictures import read_xpm, save_screenshot
from qtdriver.desktop.screen import Screen

XPM = b'/* XPM */\nstatic char *image[]={\n"3 2 3 2",\n"   c None",\n".. c #ff8000",\n"## c #000000",\n"  ..##",\n"##..  "};\n'


def test_an_xpm_picture_is_read_with_its_transparent_pixels():
    picture = read_xpm(XPM)
    assert picture.size == (3, 2)
    assert picture.getpixel((0, 0)) == (0, 0, 0, 0)
    assert picture.getpixel((1, 0)) == (255, 128, 0, 255)
    assert picture.getpixel((0, 1)) == (0, 0, 0, 255)


@pytest.mark.parametrize(
    "data", [b"", b"GIF89a", XPM.replace(b'"  ..##",', b""), XPM.replace(b"..##", b"..!!")]
)
def test_other_data_is_no_picture(data):
    with pytest.raises(ProtocolError, match="not a picture in the XPM format"):
        read_xpm(data)


def test_a_screen_that_is_not_there_is_said(monkeypatch, tmp_path):
    monkeypatch.delenv("DISPLAY")
    with pytest.raises(PictureError, match="DISPLAY is not set"):
        save_screenshot(tmp_path / "shot.png")
    with pytest.raises(PictureError, match="no picture of the display :4321"):
        save_screenshot(tmp_path / "shot.png", ":4321")


def test_a_picture_by_shared_memory_is_the_one_that_pillow_takes():
    from PIL import ImageGrab

    def same(taken):
        one, other = taken
        return one.size == other.size and one.tobytes() == other.tobytes()

    screen = Screen(None)
    assert screen._shared is not None
    eventually(lambda: (screen.grab().image(), ImageGrab.grab(xdisplay=os.environ["DISPLAY"]))).satisfies(
        same
    )


def test_without_shared_memory_pillow_takes_the_picture(monkeypatch):
    monkeypatch.setattr("qtdriver.desktop.screen._library", lambda name: ctypes.CDLL(None))
    screen = Screen(None)
    assert screen._shared is None and screen.grab().size == (1280, 1024)


def test_a_clipboard_without_a_display_is_said(monkeypatch):
    monkeypatch.delenv("DISPLAY")
    with pytest.raises(ClipboardError, match=r"no X display.*\(DISPLAY is not set\)"):
        read_clipboard()


def test_a_clipboard_of_a_display_that_is_not_there_is_said():
    with pytest.raises(ClipboardError, match="^the display :4321 cannot be reached$"):
        read_clipboard(":4321")


def test_a_clipboard_without_xclip_is_said_with_the_package_that_has_it(monkeypatch, tmp_path):
    monkeypatch.setenv("PATH", str(tmp_path))
    with pytest.raises(ClipboardError, match=r"^reading the clipboard needs xclip \(Debian: xclip\)$"):
        read_clipboard()


def test_a_clipboard_whose_owner_does_not_answer_is_said(monkeypatch, tmp_path):
    silent = tmp_path / "xclip"
    silent.write_text("#!/bin/sh\nexec sleep 1000\n")
    silent.chmod(0o755)
    monkeypatch.setenv("PATH", f"{tmp_path}:{os.environ['PATH']}")
    monkeypatch.setattr(clipboard, "_SECONDS", 0.2)
    with pytest.raises(ClipboardError, match="^the owner of the clipboard has not answered in 0.2 seconds$"):
        read_clipboard()
