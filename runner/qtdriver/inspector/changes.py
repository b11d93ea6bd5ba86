"""Which part of a picture has changed since the last one, in as few bytes and as little time as will do."""

from __future__ import annotations

import io
import struct
from dataclasses import dataclass
from typing import TYPE_CHECKING, Optional, Tuple

from ..desktop.bands import Box, Pixels, Size

if TYPE_CHECKING:
    from PIL.Image import Image  # type: ignore[import]

_ROWS = 8
"""The rows that are compared at once."""

_LOSSLESS_PIXELS = 300_000
"""A larger part is sent as JPEG, which takes a fifth of the time of PNG."""

_QUALITY = 75
_FASTEST = 1
_HEADER = struct.Struct("<6H")


@dataclass(frozen=True)
class ChangedPart:
    """A part of a screen.

    Attributes:
        size: that of the screen, in pixels.
        box: left, top, right and bottom of the part.
        image: its pixels.
        is_lossy: whether it is sent with a loss, to be sent once more without when nothing changes any more.
    """

    size: Size
    box: Box
    image: "Image"
    is_lossy: bool

    def to_bytes(self) -> bytes:
        """Width and height of the screen, left, top, width and height of the part, as 16 bits each; then a JPEG or PNG file."""
        left, top, right, bottom = self.box
        file = io.BytesIO()
        file.write(_HEADER.pack(*self.size, left, top, right - left, bottom - top))
        if self.is_lossy:
            self.image.save(file, "JPEG", quality=_QUALITY)
        else:
            self.image.save(file, "PNG", compress_level=_FASTEST)
        return file.getvalue()


class PictureChanges:
    """Compares each picture of a screen with the one before."""

    def __init__(self) -> None:
        self._size: Size = (0, 0)
        self._row = 0
        self._last = b""
        self._losses: Optional[Box] = None

    @property
    def has_losses(self) -> bool:
        """Whether a part has been sent with a loss, and not yet without."""
        return self._losses is not None

    def update(self, pixels: Pixels) -> Optional[ChangedPart]:
        """The part that has changed since the last picture; the whole one at first, and None where nothing has."""
        data = bytes(pixels.data)
        before, self._last = self._last, data
        if (self._size, self._row) != (pixels.size, pixels.row):
            self._size, self._row = pixels.size, pixels.row
            return self._part((0, 0, *pixels.size), self._image((0, pixels.size[1]), data))
        rows = _changed_rows(before, data, pixels.row)
        if rows is None:
            return None
        now = self._image(rows, data)
        if self._has_changed_sides(before, data, rows):
            return self._part((0, rows[0], self._size[0], rows[1]), now)
        columns = _changed_columns(self._image(rows, before), now)
        if columns is None:
            return None  # in the byte of each pixel that has no meaning
        left, top, right, bottom = columns
        return self._part((left, rows[0] + top, right, rows[0] + bottom), now.crop(columns))

    def losses(self) -> Optional[ChangedPart]:
        """The part that has been sent with a loss, without it."""
        box, self._losses = self._losses, None
        if box is None:
            return None
        left, top, right, bottom = box
        rows = self._image((top, bottom), self._last)
        return ChangedPart(self._size, box, rows.crop((left, 0, right, bottom - top)), False)

    def _has_changed_sides(self, before: bytes, now: bytes, rows: Tuple[int, int]) -> bool:
        """Whether some rows have changed in the first column and in the last: then there is no need to look between them."""
        end, last = rows[1] * self._row, 4 * (self._size[0] - 1)
        starts = [rows[0] * self._row + side for side in (0, last)]
        return all(
            any(
                before[byte : end : self._row] != now[byte : end : self._row]
                for byte in range(start, start + 3)
            )
            for start in starts
        )

    def _part(self, box: Box, image: "Image") -> ChangedPart:
        left, top, right, bottom = box
        is_lossy = (right - left) * (bottom - top) > _LOSSLESS_PIXELS
        if is_lossy:
            self._losses = box if self._losses is None else _around(self._losses, box)
        return ChangedPart(self._size, box, image, is_lossy)

    def _image(self, rows: Tuple[int, int], data: bytes) -> "Image":
        from PIL import Image  # type: ignore[import]

        part = data[rows[0] * self._row : rows[1] * self._row]
        size = (self._size[0], rows[1] - rows[0])
        return Image.frombytes("RGB", size, part, "raw", "BGRX", self._row, 1)


def _changed_rows(before: bytes, now: bytes, row: int) -> Optional[Tuple[int, int]]:
    """The first row that differs, and the one behind the last, in steps of _ROWS; None where all are equal."""
    length = row * _ROWS
    starts = range(0, len(now), length)
    first = next(
        (start for start in starts if before[start : start + length] != now[start : start + length]), None
    )
    if first is None:
        return None
    last = next(
        start for start in reversed(starts) if before[start : start + length] != now[start : start + length]
    )
    return first // row, min(last + length, len(now)) // row


def _changed_columns(before: "Image", now: "Image") -> Optional[Box]:
    from PIL import ImageChops

    # Not 0 where they differ, as the difference is, which takes twice as long.
    box: Optional[Box] = ImageChops.subtract_modulo(now, before).getbbox()
    return box


def _around(one: Box, other: Box) -> Box:
    return (
        min(one[0], other[0]),
        min(one[1], other[1]),
        max(one[2], other[2]),
        max(one[3], other[3]),
    )
