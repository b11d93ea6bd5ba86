"""The parts of pictures that have changed, and how they are sent."""

import io
import struct

from PIL import Image, ImageDraw

from qtdriver.desktop.bands import Pixels
from qtdriver.inspector.changes import PictureChanges


def screen(size=(320, 200), *boxes):
    """The pixels of a screen with white boxes."""
    image = Image.new("RGB", size, "navy")
    for box in boxes:
        ImageDraw.Draw(image).rectangle((box[0], box[1], box[2] - 1, box[3] - 1), fill="white")
    return Pixels.of(image)


def test_the_first_picture_is_whole_and_the_same_one_is_nothing():
    changes = PictureChanges()
    assert changes.update(screen()).box == (0, 0, 320, 200)
    assert changes.update(screen()) is None


def test_only_the_part_that_has_changed_is_sent():
    changes = PictureChanges()
    changes.update(screen())
    part = changes.update(screen((320, 200), (30, 17, 44, 121)))
    assert part.box == (30, 17, 44, 121)
    assert part.image.getcolors() == [(14 * 104, (255, 255, 255))]
    assert changes.update(screen((320, 200), (30, 17, 44, 121), (319, 199, 320, 200))).box == (
        319,
        199,
        320,
        200,
    )


def test_a_change_from_one_side_to_the_other_is_sent_in_its_rows():
    changes = PictureChanges()
    changes.update(screen())
    wide = changes.update(screen((320, 200), (0, 24, 1, 40), (319, 31, 320, 32)))
    assert wide.box == (0, 24, 320, 40)
    assert (
        wide.image.tobytes()
        == screen((320, 200), (0, 24, 1, 40), (319, 31, 320, 32)).image().crop(wide.box).tobytes()
    )
    changes.update(screen())
    assert changes.update(screen((320, 200), (0, 24, 319, 40))).box == (0, 24, 319, 40)
    changes.update(screen())
    assert changes.update(screen((320, 200), (1, 24, 320, 40))).box == (1, 24, 320, 40)


def test_bytes_of_pixels_without_a_meaning_are_no_change():
    changes = PictureChanges()
    pixels = screen()
    changes.update(pixels)
    data = bytearray(pixels.data)
    data[3::4] = b"\x7f" * (len(data) // 4)
    assert changes.update(Pixels(pixels.size, pixels.row, memoryview(bytes(data)))) is None


def test_a_screen_of_another_size_is_sent_as_a_whole():
    changes = PictureChanges()
    changes.update(screen())
    assert changes.update(screen((300, 200))).box == (0, 0, 300, 200)


def test_a_small_part_is_sent_without_loss():
    changes = PictureChanges()
    data = changes.update(screen((320, 200), (5, 5, 9, 9))).to_bytes()
    assert struct.unpack("<6H", data[:12]) == (320, 200, 0, 0, 320, 200)
    image = Image.open(io.BytesIO(data[12:]))
    assert image.format == "PNG"
    assert image.convert("RGB").tobytes() == screen((320, 200), (5, 5, 9, 9)).image().tobytes()
    assert not changes.has_losses and changes.losses() is None


def test_a_large_part_is_sent_quickly_and_then_once_more_without_loss():
    changes = PictureChanges()
    size = (1000, 800)
    data = changes.update(screen(size)).to_bytes()
    assert Image.open(io.BytesIO(data[12:])).format == "JPEG"
    assert changes.has_losses
    changes.update(screen(size, (10, 10, 20, 20)))  # a small one does not take that back
    part = changes.losses()
    assert part.box == (0, 0, 1000, 800)
    assert part.image.tobytes() == screen(size, (10, 10, 20, 20)).image().tobytes()
    assert not changes.has_losses and changes.losses() is None
