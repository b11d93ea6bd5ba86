"""Cuts pictures of a screen into bands of some rows, of which successive pictures share most."""

from __future__ import annotations

import hashlib
import zlib
from dataclasses import dataclass
from typing import TYPE_CHECKING, List, Optional, Tuple
from weakref import WeakValueDictionary

if TYPE_CHECKING:
    from PIL.Image import Image  # type: ignore[import]

ROWS = 16
"""The number of rows in a band; the last one of a screen may have fewer."""

_BLACK = bytes(3)

Size = Tuple[int, int]
Box = Tuple[int, int, int, int]


@dataclass(frozen=True)
class Pixels:
    """The pixels of a whole screen, four bytes each: blue, green, red, and one without meaning.

    Attributes:
        size: width and height in pixels.
        row: the number of bytes from one row to the next.
        data: the bytes. They may be memory that the next picture of the same screen overwrites.
    """

    size: Size
    row: int
    data: memoryview

    @classmethod
    def of(cls, image: "Image") -> "Pixels":
        """Those of a picture."""
        data: bytes = image.convert("RGB").tobytes("raw", "BGRX")
        return cls(image.size, 4 * image.width, memoryview(data))

    def image(self) -> "Image":
        """The picture, with pixels of its own."""
        return _image(self.size, bytes(self.data), self.row)


@dataclass(frozen=True, eq=False)
class Band:
    """Some rows of a screen.

    Attributes:
        key: equal for equal pixels.
        data: the pixels, three bytes each, compressed without loss.
        plain: the colour of the corner of the screen it was cut from.
        content: left, top, right and bottom of the part that is not in that colour; None if all is.
    """

    key: bytes
    data: bytes
    plain: bytes
    content: Optional[Box]

    def pixels(self) -> bytes:
        """The pixels, three bytes each."""
        return zlib.decompress(self.data)


class BandCutter:
    """Cuts the pictures of one screen. Only bands that have changed since the picture before cost more than a comparison."""

    def __init__(self) -> None:
        self._size: Size = (0, 0)
        self._latest: List[Tuple[bytes, Band]] = []
        self._known: "WeakValueDictionary[Tuple[bytes, bytes], Band]" = WeakValueDictionary()

    def cut(self, pixels: Pixels) -> Tuple[Band, ...]:
        """The bands of a picture from top to bottom."""
        if pixels.size != self._size:
            self._size, self._latest = pixels.size, []
        plain = bytes(pixels.data[2::-1])
        latest = []
        height, length = pixels.size[1], ROWS * pixels.row
        for number in range((height + ROWS - 1) // ROWS):
            raw = bytes(pixels.data[number * length : min((number + 1) * length, height * pixels.row)])
            before = self._latest[number] if self._latest else None
            unchanged = before is not None and before[1].plain == plain and before[0] == raw
            latest.append(before if before and unchanged else (raw, self._band(raw, pixels.row, plain)))
        self._latest = latest
        return tuple(band for _, band in latest)

    def _band(self, raw: bytes, row: int, plain: bytes) -> Band:
        width = self._size[0]
        image = _image((width, len(raw) // row), raw, row)
        data: bytes = image.tobytes()
        key = hashlib.sha1(data).digest()
        band = self._known.get((key, plain))
        if band is None:
            # Where its content is costs least as long as it is at hand, and nobody waits for it now.
            band = Band(key, zlib.compress(data, 1), plain, find_content(image, plain))
            self._known[key, plain] = band
        return band


def find_content(image: "Image", plain: bytes) -> Optional[Box]:
    """The part of a picture that is not in a plain colour; None if all is."""
    from PIL import Image, ImageChops  # type: ignore[import]

    # In black, the colour of an X server's own background, Pillow finds the rest in a tenth of the time.
    if plain != _BLACK:
        image = ImageChops.difference(image, Image.new("RGB", image.size, tuple(plain)))
    box: Optional[Box] = image.getbbox()
    return box


def _image(size: Size, data: bytes, row: int) -> "Image":
    from PIL import Image

    return Image.frombytes("RGB", size, data, "raw", "BGRX", row, 1)
