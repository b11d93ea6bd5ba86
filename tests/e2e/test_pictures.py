"""Pictures in the XPM format, as an agent sends them."""

import pytest

from qtdriver import PictureError, ProtocolError
from qtdriver.pictures import grab_screen, read_xpm

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


def test_a_screen_that_is_not_there_is_said(monkeypatch):
    monkeypatch.delenv("DISPLAY")
    with pytest.raises(PictureError, match="DISPLAY is not set"):
        grab_screen()
    with pytest.raises(PictureError, match="no picture of the display :4321"):
        grab_screen(":4321")
