"""Writes PNG files of bands. Files that show the same part of a screen share what has been compressed for them."""

from __future__ import annotations

import struct
import zlib
from collections import OrderedDict
from dataclasses import dataclass
from typing import Iterable, List, Tuple

from .bands import ROWS, Band, Box

_KEPT_STRIPS = 2000
"""How many strips are kept for further files; a strip of a window full of text takes 5 KB."""

_SIGNATURE = b"\x89PNG\r\n\x1a\n"
_COLOURS = struct.pack(">BBBBB", 8, 2, 0, 0, 0)
"""Eight bits for each of red, green and blue; the usual compression and filters; not interlaced."""

_STREAM_BEGINS = b"\x78\x01"
_STREAM_ENDS = b"\x03\x00"
"""An empty last block."""

_ADLER = 65521


@dataclass(frozen=True)
class _Strip:
    """The part of a band that a file shows, compressed so that strips can follow each other in one stream.

    Attributes:
        data: whole blocks of deflate, none the last of a stream.
        length: the number of bytes that they stand for.
        checksum: the Adler-32 of those.
    """

    data: bytes
    length: int
    checksum: int


class StripWriter:
    """Makes PNG files. Belongs to one thread."""

    def __init__(self) -> None:
        self._strips: "OrderedDict[Tuple[bytes, Box], _Strip]" = OrderedDict()
        self._deflate = zlib.compressobj(1, zlib.DEFLATED, -zlib.MAX_WBITS)

    def png(self, bands: Iterable[Band], width: int, part: Box) -> bytes:
        """The file that shows a part of a screen.

        Args:
            bands: the bands of the screen from top to bottom.
            width: of the screen, in pixels.
            part: left, top, right and bottom in pixels; right and bottom are the first ones outside.
        """
        left, top, right, bottom = part
        stream: List[bytes] = [_STREAM_BEGINS]
        checksum = 1
        for number, band in enumerate(bands):
            first, last = max(top - number * ROWS, 0), min(bottom - number * ROWS, ROWS)
            if first < last:
                strip = self._strip(band, width, (left, first, right, last))
                stream.append(strip.data)
                checksum = _joined(checksum, strip)
        stream += [_STREAM_ENDS, struct.pack(">I", checksum)]
        size = struct.pack(">II", right - left, bottom - top)
        chunks = [(b"IHDR", size + _COLOURS), (b"IDAT", b"".join(stream)), (b"IEND", b"")]
        return _SIGNATURE + b"".join(_chunk(kind, data) for kind, data in chunks)

    def _strip(self, band: Band, width: int, part: Box) -> _Strip:
        key = band.key, part
        strip = self._strips.get(key)
        if strip is None:
            strip = self._strips[key] = self._compressed(band.pixels(), width, part)
            if len(self._strips) > _KEPT_STRIPS:
                self._strips.popitem(last=False)
        self._strips.move_to_end(key)
        return strip

    def _compressed(self, pixels: bytes, width: int, part: Box) -> _Strip:
        left, top, right, bottom = part
        # Each row begins with the number of its filter, none: it takes the least time, and screens of windows do well without.
        rows = b"".join(
            b"\0" + pixels[3 * (row * width + left) : 3 * (row * width + right)] for row in range(top, bottom)
        )
        # A full flush makes what follows independent of what was compressed before.
        data = self._deflate.compress(rows) + self._deflate.flush(zlib.Z_FULL_FLUSH)
        return _Strip(data, len(rows), zlib.adler32(rows))


def _joined(checksum: int, strip: _Strip) -> int:
    """The Adler-32 of the bytes so far, whose own one is `checksum`, and those of the strip behind them."""
    low, high = checksum & 0xFFFF, checksum >> 16
    more_low, more_high = strip.checksum & 0xFFFF, strip.checksum >> 16
    low_of_both = (low + more_low - 1) % _ADLER
    high_of_both = (high + more_high + strip.length * (low - 1)) % _ADLER
    return high_of_both << 16 | low_of_both


def _chunk(kind: bytes, data: bytes) -> bytes:
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
