"""Keeps pictures in memory until it is known whether the test fails."""

from __future__ import annotations

import hashlib
import io
import zlib
from collections import deque
from dataclasses import dataclass
from pathlib import Path
from typing import TYPE_CHECKING, Deque, Dict, Iterable, List, NamedTuple, Optional, Tuple

if TYPE_CHECKING:
    from PIL.Image import Image  # type: ignore[import]

KEPT_BYTES = 64_000_000
"""Memory for compressed pictures: a thousand or more of a screen of 1280 by 1024 pixels, as little differs between
them."""

LARGE_BYTES = 250_000
"""A picture that needs more than this without loss is stored with loss: it is a photograph rather than text."""

_ROWS = 32
_MARGIN = 12
_Size = Tuple[int, int]
_Box = Tuple[int, int, int, int]


@dataclass(eq=False)
class Picture:
    """A picture in a store: bands of some rows each, most of which it shares with the picture before.

    Attributes:
        size: width and height in pixels.
        bands: keys of the bands from top to bottom; none when the picture has been dropped.
    """

    size: _Size
    bands: Tuple[bytes, ...]


class SavedPicture(NamedTuple):
    """A picture as a file.

    Attributes:
        name: the file name.
        place: the part of the screen that it shows: left, top, width and height in pixels.
    """

    name: str
    place: _Box


@dataclass(frozen=True)
class UnwrittenPicture:
    """A picture that is yet to be written.

    Attributes:
        file: the file.
        size: width and height of the screen in pixels.
        bands: the compressed pixels of the screen.
        part: left, top, right and bottom of the part that the file shows.
        quickly: whether it is to take little time rather than little room.
    """

    file: Path
    size: _Size
    bands: List[bytes]
    part: _Box
    quickly: bool

    def write(self) -> None:
        """Writes the file. Raises OSError."""
        from PIL import Image  # type: ignore[import]

        pixels = b"".join(map(zlib.decompress, self.bands))
        image = Image.frombytes("RGB", self.size, pixels).crop(self.part)
        self.file.write_bytes(_encoded(image, "PNG", compress_level=1) if self.quickly else encode(image))


@dataclass
class _Band:
    data: bytes
    content: Optional[_Box]
    plain: bytes
    users: int = 0


class ScreenshotStore:
    """Holds pictures, compressed without loss and sharing equal bands, and drops the oldest beyond a limit.

    Attributes:
        dropped: how many were dropped.
    """

    def __init__(self, kept_bytes: int = KEPT_BYTES) -> None:
        """`kept_bytes`: how much memory the compressed pictures may take."""
        self.dropped = 0
        self._kept_bytes = kept_bytes
        self._bytes = 0
        self._bands: Dict[bytes, _Band] = {}
        self._pictures: Deque[Picture] = deque()
        self._latest: Dict[str, Tuple[Picture, bytes]] = {}

    def add(self, image: "Image", source: str) -> Picture:
        """Adds a picture. Returns the latest one of the same `source` if nothing has changed since."""
        image = image if image.mode == "RGB" else image.convert("RGB")
        pixels: bytes = image.tobytes()
        latest = self._latest.get(source)
        if latest is not None and latest[0].size == image.size and latest[1] == pixels:
            return latest[0]
        picture = Picture(image.size, tuple(self._cut(pixels, image.size, latest)))
        for key in picture.bands:
            self._bands[key].users += 1
        self._latest[source] = (picture, pixels)
        self._pictures.append(picture)
        while self._bytes > self._kept_bytes and len(self._pictures) > 1:
            self._drop(self._pictures.popleft())
        return picture

    def _cut(self, pixels: bytes, size: _Size, latest: Optional[Tuple[Picture, bytes]]) -> List[bytes]:
        """The keys of the bands; only those that differ from the latest picture are compressed."""
        known: Tuple[bytes, ...] = ()
        before = b""
        if latest is not None and latest[0].size == size:
            known, before = latest[0].bands, latest[1]
        length = size[0] * 3 * _ROWS
        keys = []
        for number, start in enumerate(range(0, len(pixels), length)):
            band = pixels[start : start + length]
            if known and band == before[start : start + length]:
                keys.append(known[number])
                continue
            key = hashlib.sha1(band).digest()
            if key not in self._bands:
                # Where its content is costs least as long as it is at hand, and nobody waits for it now.
                plain = pixels[:3]
                content = _band_content(band, size[0], plain)
                self._bands[key] = _Band(zlib.compress(band, 1), content, plain)
                self._bytes += len(self._bands[key].data)
            keys.append(key)
        return keys

    def _drop(self, picture: Picture) -> None:
        for key in picture.bands:
            band = self._bands[key]
            band.users -= 1
            if band.users == 0:
                self._bytes -= len(band.data)
                del self._bands[key]
        picture.bands = ()
        self.dropped += 1

    def save(self, folder: Path, pictures: Iterable[Picture]) -> Dict[Picture, SavedPicture]:
        """Writes pictures, without the empty border that all pictures of one size share.

        Returns the files of those that have not been dropped.
        """
        files, unwritten = self.plan(folder, pictures)
        for file in unwritten:
            file.write()
        return files

    def plan(
        self, folder: Path, pictures: Iterable[Picture], *, quickly: bool = False
    ) -> "Tuple[Dict[Picture, SavedPicture], List[UnwrittenPicture]]":
        """The same without the writing, which takes most of the time: returns the files, and what is to be written.

        With `quickly` that takes half of the time, and the files are twice as large.
        """
        kind = "png" if quickly else picture_kind()
        wanted = [picture for picture in dict.fromkeys(pictures) if picture.bands]
        boxes: Dict[_Size, Optional[_Box]] = {}
        contents: Dict[Tuple[bytes, bytes], Optional[_Box]] = {}
        for picture in wanted:
            boxes[picture.size] = _united(boxes.get(picture.size), self._content(picture, contents))
        saved: Dict[Tuple[bytes, ...], SavedPicture] = {}
        unwritten = []
        for picture in wanted:
            if picture.bands not in saved:
                box = boxes[picture.size]
                part = (0, 0, *picture.size) if box is None else _widened(box, picture.size)
                # Named after what it shows: what is cut off differs between traces.
                text = repr((picture.size, part)).encode()
                name = f"{hashlib.sha1(b''.join(picture.bands) + text).hexdigest()[:20]}.{kind}"
                place = (part[0], part[1], part[2] - part[0], part[3] - part[1])
                saved[picture.bands] = SavedPicture(name, place)
                bands = [self._bands[key].data for key in picture.bands]
                unwritten.append(UnwrittenPicture(folder / name, picture.size, bands, part, quickly))
        return {picture: saved[picture.bands] for picture in wanted}, unwritten

    def _content(self, picture: Picture, known: Dict[Tuple[bytes, bytes], Optional[_Box]]) -> Optional[_Box]:
        """The part of a screen that is not in the plain colour of its corner; None for a plain picture.

        `known` is what has been found out of bands, which pictures have in common.
        """
        plain = zlib.decompress(self._bands[picture.bands[0]].data)[:3]
        whole: Optional[_Box] = None
        for number, key in enumerate(picture.bands):
            band = self._bands[key]
            if band.plain == plain:
                box = band.content
            else:
                if (key, plain) not in known:
                    known[key, plain] = _band_content(zlib.decompress(band.data), picture.size[0], plain)
                box = known[key, plain]
            if box is not None:
                top = number * _ROWS
                whole = _united(whole, (box[0], box[1] + top, box[2], box[3] + top))
        return whole


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


def _band_content(pixels: bytes, width: int, plain: bytes) -> Optional[_Box]:
    from PIL import Image, ImageChops

    band = Image.frombytes("RGB", (width, len(pixels) // (3 * width)), pixels)
    box: Optional[_Box] = ImageChops.difference(band, Image.new("RGB", band.size, tuple(plain))).getbbox()
    return box


def _united(one: Optional[_Box], other: Optional[_Box]) -> Optional[_Box]:
    if one is None or other is None:
        return one or other
    return (min(one[0], other[0]), min(one[1], other[1]), max(one[2], other[2]), max(one[3], other[3]))


def _widened(box: _Box, size: _Size) -> _Box:
    left, top, right, bottom = box
    return (
        max(left - _MARGIN, 0),
        max(top - _MARGIN, 0),
        min(right + _MARGIN, size[0]),
        min(bottom + _MARGIN, size[1]),
    )
