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

_RECENT = 3
"""How many different bands are known in each place: a window that is closed and opened again looks as before."""

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
        """The pixels of a picture."""
        data: bytes = image.convert("RGB").tobytes("raw", "BGRX")
        return cls(image.size, 4 * image.width, memoryview(data))

    def image(self) -> "Image":
        """The picture, with pixels of its own."""
        return _image(self.size, bytes(self.data), self.row)


class Band:
    """Some rows of a screen. Compressed only by compress(): most are dropped, or written, soon.

    Attributes:
        key: equal for equal pixels.
        plain: the colour of the corner of the screen it was cut from.
        content: left, top, right and bottom of the part that is not in that colour; None if all is.
    """

    def __init__(self, key: bytes, pixels: bytes, plain: bytes, content: Optional[Box]) -> None:
        """`pixels` has three bytes for each. The others are the attributes."""
        self.key = key
        self.plain = plain
        self.content = content
        self._pixels: Optional[bytes] = pixels
        self._compressed = b""

    def __repr__(self) -> str:
        return f"<band of {self.size()} bytes, {'compressed' if self.is_compressed() else 'not compressed'}>"

    def pixels(self) -> bytes:
        """The pixels, three bytes each. May be called while another thread compresses the band."""
        pixels = self._pixels
        return zlib.decompress(self._compressed) if pixels is None else pixels

    def is_compressed(self) -> bool:
        """Whether compress() has been called."""
        return self._pixels is None

    def compress(self) -> None:
        """Compresses the pixels without loss, which takes time and gives memory back."""
        pixels = self._pixels
        if pixels is not None:
            self._compressed = zlib.compress(pixels, 1)
            self._pixels = None

    def size(self) -> int:
        """How many bytes of memory it takes."""
        pixels = self._pixels
        return len(self._compressed if pixels is None else pixels)


class BandCutter:
    """Cuts the pictures of one screen. Bands that are as in a picture shortly before cost little more than a comparison."""

    def __init__(self) -> None:
        self._size: Size = (0, 0)
        self._recent: List[List[Tuple[bytes, Band]]] = []
        self._known: "WeakValueDictionary[Tuple[bytes, bytes], Band]" = WeakValueDictionary()

    def cut(self, pixels: Pixels) -> Tuple[Band, ...]:
        """The bands of a picture from top to bottom."""
        height, length = pixels.size[1], ROWS * pixels.row
        count = (height + ROWS - 1) // ROWS
        if pixels.size != self._size:
            self._size, self._recent = pixels.size, [[] for _ in range(count)]
        plain = bytes(pixels.data[2::-1])
        bands = []
        for number, recent in enumerate(self._recent):
            raw = bytes(pixels.data[number * length : min((number + 1) * length, height * pixels.row)])
            bands.append(self._recent_or_new(recent, raw, pixels.row, plain))
        return tuple(bands)

    def _recent_or_new(self, recent: List[Tuple[bytes, Band]], raw: bytes, row: int, plain: bytes) -> Band:
        """The band of these pixels, which becomes the first of the recent ones in its place."""
        for position, (known, band) in enumerate(recent):
            if known == raw and band.plain == plain:
                if position:
                    recent.insert(0, recent.pop(position))
                return band
        band = self._band(raw, row, plain)
        recent.insert(0, (raw, band))
        del recent[_RECENT:]
        return band

    def _band(self, raw: bytes, row: int, plain: bytes) -> Band:
        width = self._size[0]
        image = _image((width, len(raw) // row), raw, row)
        data: bytes = image.tobytes()
        key = hashlib.sha1(data).digest()
        band = self._known.get((key, plain))
        if band is None:
            # Its content is found here, where the picture is at hand and nobody waits.
            band = Band(key, data, plain, find_content(image, plain))
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
