"""Chooses the traces and pictures that a page contains."""

from __future__ import annotations

import io
from pathlib import Path
from typing import Dict, Iterator, Set, Tuple

PAGE_BYTES = 27_000_000
"""Room for pictures in a page; in the page they take a third more. With the texts that is less than 50 MB."""

TEXT_CHARACTERS = 10_000_000
"""Room for traces in a page, without their pictures."""

LARGE_BYTES = 300_000
"""A larger picture is embedded with fewer pixels; the original is in the folder of the trace."""

_MAX_SIDE = 1600
_SUFFIXES = {".webp": "webp", ".png": "png", ".jpg": "jpeg", ".jpeg": "jpeg"}


class Embedding:
    """Chooses the traces and pictures of a page: each distinct picture once, until there is no more room."""

    def __init__(self, room: int = PAGE_BYTES, text_room: int = TEXT_CHARACTERS) -> None:
        """`room`: bytes of pictures, as files; `text_room`: characters of traces."""
        self._room = room
        self._text_room = text_room
        self._files: Dict[str, Tuple[str, Path]] = {}
        self._refused: Set[str] = set()

    def add_text(self, length: int) -> bool:
        """Takes a text of this length, if there is room for it. Returns whether there is."""
        fits = length <= self._text_room
        self._text_room -= length if fits else 0
        return fits

    def add(self, folder: Path, name: str, *, key: str = "") -> str:
        """Adds a picture, if there is room for it.

        Args:
            folder: its folder.
            name: its file name. Pictures of traces that have the same name have the same content: they are named after it.
            key: names the content of any other picture.

        Returns its key in the page; empty if it is not embedded. Raises ValueError for a name that is not one of a
        picture, and OSError when there is no such file.
        """
        file = folder / name
        if file.name != name or file.suffix not in _SUFFIXES:
            raise ValueError(f"{name!r} is not the name of a picture")
        key = key or name
        if key in self._files or key in self._refused:
            return key if key in self._files else ""
        size = min(file.stat().st_size, LARGE_BYTES)
        if size > self._room:
            self._refused.add(key)
            return ""
        self._room -= size
        self._files[key] = (_SUFFIXES[file.suffix], file)
        return key

    def pictures(self) -> Iterator[Tuple[str, str, bytes]]:
        """Key, kind and content of each picture, one at a time."""
        for name, (kind, file) in self._files.items():
            data = file.read_bytes()
            yield (name, kind, data) if len(data) <= LARGE_BYTES else (name, *_smaller(kind, data))


def _smaller(kind: str, data: bytes) -> Tuple[str, bytes]:
    """The picture in fewer pixels and with some loss; as it is without Pillow."""
    try:
        from PIL import Image  # type: ignore[import]
    except ImportError:
        return kind, data
    image = Image.open(io.BytesIO(data)).convert("RGB")
    image.thumbnail((_MAX_SIDE, _MAX_SIDE))
    file = io.BytesIO()
    image.save(file, "JPEG", quality=75)
    return min(("jpeg", file.getvalue()), (kind, data), key=lambda picture: len(picture[1]))
