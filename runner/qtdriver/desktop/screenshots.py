"""Keeps pictures in memory until it is known whether the test fails."""

from __future__ import annotations

import hashlib
import io
from collections import deque
from dataclasses import dataclass
from pathlib import Path
from typing import TYPE_CHECKING, Deque, Dict, Iterable, List, NamedTuple, Optional, Tuple

from .bands import ROWS, Band, Box, Size
from .strips import StripWriter

if TYPE_CHECKING:
    from PIL.Image import Image  # type: ignore[import]

KEPT_BYTES = 64_000_000
"""Memory for compressed pictures: a thousand or more of a screen of 1280 by 1024 pixels, as little differs between
them."""

LOOSE_BYTES = 16_000_000
"""Memory for bands that are not compressed: a test of some ten steps ends before any has to be."""

LARGE_BYTES = 250_000
"""A picture that needs more than this without loss is stored with loss: it is a photograph rather than text."""

_MARGIN = 12


@dataclass(eq=False)
class Picture:
    """A picture in a store.

    Attributes:
        size: width and height in pixels.
        bands: the bands from top to bottom, most of which it shares with the picture before; none when the picture has
            been dropped.
    """

    size: Size
    bands: Tuple[Band, ...]


class SavedPicture(NamedTuple):
    """A picture as a file.

    Attributes:
        name: the file name.
        place: the part of the screen that it shows: left, top, width and height in pixels.
    """

    name: str
    place: Box


@dataclass(frozen=True)
class UnwrittenPicture:
    """A picture that is yet to be written.

    Attributes:
        file: the file.
        size: width and height of the screen in pixels.
        bands: the bands of the screen.
        part: left, top, right and bottom of the part that the file shows.
        quickly: whether it is to take little time rather than little room.
    """

    file: Path
    size: Size
    bands: Tuple[Band, ...]
    part: Box
    quickly: bool

    def compress(self) -> None:
        """Compresses the bands, so that the picture takes less memory until it is written."""
        for band in self.bands:
            band.compress()

    def write(self, strips: StripWriter) -> None:
        """Writes the file. `strips` has what it shares with those that were written before. Raises OSError."""
        if self.quickly:
            self.file.write_bytes(strips.png(self.bands, self.size[0], self.part))
            return
        from PIL import Image  # type: ignore[import]

        pixels = b"".join(band.pixels() for band in self.bands)
        self.file.write_bytes(encode(Image.frombytes("RGB", self.size, pixels).crop(self.part)))


class ScreenshotStore:
    """Holds pictures, which share equal bands. Compresses the oldest bands beyond a limit, and drops the oldest pictures
    beyond another one.

    Attributes:
        dropped: how many were dropped.
    """

    def __init__(self, kept_bytes: int = KEPT_BYTES) -> None:
        """`kept_bytes`: how much memory the pictures may take."""
        self.dropped = 0
        self._kept_bytes = kept_bytes
        self._bytes = 0
        self._users: Dict[Band, int] = {}
        self._sizes: Dict[Band, int] = {}
        self._loose: Deque[Tuple[Band, int]] = deque()
        self._loose_bytes = 0
        self._pictures: Deque[Picture] = deque()
        self._latest: Dict[str, Picture] = {}

    def add(self, size: Size, bands: Tuple[Band, ...], source: str) -> Picture:
        """Adds a picture. Returns the latest one of the same `source` if nothing has changed since.

        Args:
            size: width and height in pixels.
            bands: as a BandCutter of the source has cut them.
            source: such as a screen.
        """
        latest = self._latest.get(source)
        if latest is not None and latest.size == size and latest.bands == bands:
            return latest
        picture = self._latest[source] = Picture(size, bands)
        for band in bands:
            if band not in self._users:
                self._count(band)
            self._users[band] = self._users.get(band, 0) + 1
        self._pictures.append(picture)
        while self._loose and (self._loose_bytes > LOOSE_BYTES or self._bytes > self._kept_bytes):
            self._compress(*self._loose.popleft())
        while self._bytes > self._kept_bytes and len(self._pictures) > 1:
            self._drop(self._pictures.popleft())
        return picture

    def _count(self, band: Band) -> None:
        self._sizes[band] = band.size()
        self._bytes += self._sizes[band]
        if not band.is_compressed():
            self._loose.append((band, self._sizes[band]))
            self._loose_bytes += self._sizes[band]

    def _compress(self, band: Band, loose_bytes: int) -> None:
        self._loose_bytes -= loose_bytes
        if band in self._users:
            band.compress()
            self._bytes += band.size() - self._sizes[band]
            self._sizes[band] = band.size()

    def _drop(self, picture: Picture) -> None:
        for band in picture.bands:
            self._users[band] -= 1
            if self._users[band] == 0:
                self._bytes -= self._sizes.pop(band)
                del self._users[band]
        picture.bands = ()
        self.dropped += 1

    def save(self, folder: Path, pictures: Iterable[Picture]) -> Dict[Picture, SavedPicture]:
        """Writes pictures, without the empty border that all pictures of one size share.

        Returns the files of those that have not been dropped.
        """
        files, unwritten = self.plan(folder, pictures)
        strips = StripWriter()
        for file in unwritten:
            file.write(strips)
        return files

    def plan(
        self, folder: Path, pictures: Iterable[Picture], *, quickly: bool = False
    ) -> "Tuple[Dict[Picture, SavedPicture], List[UnwrittenPicture]]":
        """Decides on the files of pictures, and leaves the writing, which takes most of the time, to the caller.

        Args:
            folder: the folder for the files.
            pictures: the pictures.
            quickly: whether the files are to be written in a small part of the time, and may be twice as large.

        Returns the files of the pictures that have not been dropped, and the ones that are to be written.
        """
        kind = "png" if quickly else picture_kind()
        wanted = [picture for picture in dict.fromkeys(pictures) if picture.bands]
        boxes: Dict[Size, Optional[Box]] = {}
        for picture in wanted:
            boxes[picture.size] = _united(boxes.get(picture.size), _content(picture))
        saved: Dict[Tuple[bytes, ...], SavedPicture] = {}
        files: Dict[Picture, SavedPicture] = {}
        unwritten = []
        for picture in wanted:
            keys = tuple(band.key for band in picture.bands)
            if keys not in saved:
                box = boxes[picture.size]
                part = (0, 0, *picture.size) if box is None else _widened(box, picture.size)
                # Named after what it shows: what is cut off differs between traces.
                text = repr((picture.size, part)).encode()
                name = f"{hashlib.sha1(b''.join(keys) + text).hexdigest()[:20]}.{kind}"
                place = (part[0], part[1], part[2] - part[0], part[3] - part[1])
                saved[keys] = SavedPicture(name, place)
                unwritten.append(UnwrittenPicture(folder / name, picture.size, picture.bands, part, quickly))
            files[picture] = saved[keys]
        return files, unwritten


def _content(picture: Picture) -> Optional[Box]:
    """The part of a screen that is not in the plain colour of its corner; None for a plain picture."""
    found = [(number * ROWS, band.content) for number, band in enumerate(picture.bands) if band.content]
    if not found:
        return None
    (first, top), (last, bottom) = found[0], found[-1]
    return (
        min(box[0] for _, box in found),
        first + top[1],
        max(box[2] for _, box in found),
        last + bottom[3],
    )


def picture_kind() -> str:
    """The ending of the names of pictures."""
    from PIL import features

    return "webp" if features.check("webp") else "png"


def encode(image: "Image") -> bytes:
    """The picture as a file for a browser. Text stays sharp, as WebP without loss, where Pillow has that, or PNG."""
    if picture_kind() == "png":
        return _encoded(image, "PNG", compress_level=6)
    data = _encoded(image, "WEBP", lossless=True, quality=0, method=1)
    if len(data) > LARGE_BYTES:
        lossy = _encoded(image, "WEBP", quality=80, method=2)
        data = min(data, lossy, key=len)
    return data


def _encoded(image: "Image", kind: str, **options: object) -> bytes:
    file = io.BytesIO()
    image.save(file, kind, **options)
    return file.getvalue()


def _united(one: Optional[Box], other: Optional[Box]) -> Optional[Box]:
    if one is None or other is None:
        return one or other
    return (min(one[0], other[0]), min(one[1], other[1]), max(one[2], other[2]), max(one[3], other[3]))


def _widened(box: Box, size: Size) -> Box:
    left, top, right, bottom = box
    return (
        max(left - _MARGIN, 0),
        max(top - _MARGIN, 0),
        min(right + _MARGIN, size[0]),
        min(bottom + _MARGIN, size[1]),
    )
