"""Pictures in memory until it is known whether they are kept."""

from __future__ import annotations

import hashlib
import io
import threading
import zlib
from collections import OrderedDict
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass
from pathlib import Path
from typing import TYPE_CHECKING, Dict, Iterable, List, Optional, Tuple

if TYPE_CHECKING:
    from PIL.Image import Image  # type: ignore[import]

KEPT_BYTES = 64_000_000
"""Memory for compressed pictures: some 600 of a screen of 1280 by 1024 pixels, less the more there is in them."""

LARGE_BYTES = 250_000
"""A picture that needs more than this without loss is stored with loss: it is a photograph rather than text."""

_WAITING = 4
_MARGIN = 12
_Box = Tuple[int, int, int, int]


@dataclass
class Picture:
    """A picture that was handed to an album.

    Attributes:
        digest: what identifies its pixels; empty as long as it has not been taken in.
    """

    digest: str = ""


@dataclass(frozen=True)
class _Stored:
    size: Tuple[int, int]
    mode: str
    data: bytes


class Album:
    """Holds each distinct picture once, compressed without loss, and forgets the oldest ones beyond a limit.

    Compressing takes a thread of its own, so that a test goes on meanwhile.
    """

    def __init__(self, kept_bytes: int = KEPT_BYTES) -> None:
        """`kept_bytes`: how much memory the compressed pictures may take."""
        self.dropped = 0
        self._kept_bytes = kept_bytes
        self._bytes = 0
        self._stored: "OrderedDict[str, _Stored]" = OrderedDict()
        self._latest: Dict[str, Tuple[bytes, Picture]] = {}
        self._executor = ThreadPoolExecutor(max_workers=1, thread_name_prefix="qtdriver-album")
        self._room = threading.BoundedSemaphore(_WAITING)

    def add(self, image: "Image", source: str) -> Picture:
        """Takes a picture in; the latest one of the same `source` is answered again if nothing has changed."""
        pixels: bytes = image.tobytes()
        latest = self._latest.get(source)
        if latest is not None and latest[0] == pixels:
            return latest[1]
        picture = Picture()
        self._latest[source] = (pixels, picture)
        self._room.acquire()  # pictures that wait are large: a few of them at a time
        self._executor.submit(self._take_in, picture, pixels, image.size, image.mode)
        return picture

    def _take_in(self, picture: Picture, pixels: bytes, size: Tuple[int, int], mode: str) -> None:
        try:
            digest = hashlib.sha1(pixels + repr(size).encode()).hexdigest()[:20]
            if digest in self._stored:
                self._stored.move_to_end(digest)
            else:
                self._stored[digest] = _Stored(size, mode, zlib.compress(pixels, 1))
                self._bytes += len(self._stored[digest].data)
            picture.digest = digest
            while self._bytes > self._kept_bytes and len(self._stored) > 1:
                _, oldest = self._stored.popitem(last=False)
                self._bytes -= len(oldest.data)
                self.dropped += 1
        finally:
            self._room.release()

    def close(self) -> None:
        """Waits until every picture has been taken in. No more can be added then."""
        self._executor.shutdown()
        self._latest.clear()

    def save(self, folder: Path, digests: Iterable[str]) -> Dict[str, str]:
        """Writes those of these pictures that are still there, and answers their file names by digest.

        The empty border that all pictures of one size share is cut off. Call close() first.
        """
        wanted = [digest for digest in dict.fromkeys(digests) if digest in self._stored]
        boxes: Dict[Tuple[int, int], Optional[_Box]] = {}
        for digest in wanted:
            size = self._stored[digest].size
            boxes[size] = _united(boxes.get(size), _content(self._image(digest)))
        names: Dict[str, str] = {}
        for digest in wanted:
            image = self._image(digest)
            box = boxes[image.size]
            suffix, data = encode(image if box is None else image.crop(_widened(box, image.size)))
            # Named after the content of the file: what is cut off differs between traces.
            names[digest] = f"{hashlib.sha1(data).hexdigest()[:20]}.{suffix}"
            (folder / names[digest]).write_bytes(data)
        return names

    def _image(self, digest: str) -> "Image":
        from PIL import Image  # type: ignore[import]

        stored = self._stored[digest]
        return Image.frombytes(stored.mode, stored.size, zlib.decompress(stored.data))


def encode(image: "Image") -> Tuple[str, bytes]:
    """The picture as a file for a browser: the ending of its name and its bytes. Text stays sharp, WebP without loss."""
    from PIL import features

    if not features.check("webp"):
        return "png", _encoded(image, "PNG", compress_level=6)
    data = _encoded(image, "WEBP", lossless=True, quality=0, method=1)
    if len(data) > LARGE_BYTES:
        lossy = _encoded(image, "WEBP", quality=80, method=2)
        data = min(data, lossy, key=len)
    return "webp", data


def _encoded(image: "Image", kind: str, **options: object) -> bytes:
    file = io.BytesIO()
    image.convert("RGB").save(file, kind, **options)
    return file.getvalue()


def _content(image: "Image") -> Optional[_Box]:
    """The part of a screen that is not the plain colour of its corner; None for a plain picture."""
    from PIL import Image, ImageChops

    plain = Image.new(image.mode, image.size, image.getpixel((0, 0)))
    box: Optional[_Box] = ImageChops.difference(image, plain).getbbox()
    return box


def _united(one: Optional[_Box], other: Optional[_Box]) -> Optional[_Box]:
    if one is None or other is None:
        return one or other
    return (min(one[0], other[0]), min(one[1], other[1]), max(one[2], other[2]), max(one[3], other[3]))


def _widened(box: _Box, size: Tuple[int, int]) -> _Box:
    left, top, right, bottom = box
    edges: List[int] = [max(left - _MARGIN, 0), max(top - _MARGIN, 0)]
    return (edges[0], edges[1], min(right + _MARGIN, size[0]), min(bottom + _MARGIN, size[1]))
