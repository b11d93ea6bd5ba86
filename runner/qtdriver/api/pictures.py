"""Screenshots, and the pictures that a widget's properties hold."""

from __future__ import annotations

import re
from pathlib import Path
from typing import TYPE_CHECKING, Dict, Optional, Tuple

from ..desktop.screen_process import SCREENS, display_name
from ..errors import PictureError, ProtocolError

if TYPE_CHECKING:
    from PIL.Image import Image  # type: ignore[import]

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_XPM_STRING = re.compile(r'"([^"]*)"')
_COLOUR = re.compile(r"\bc\s+(\S+)")
_CLEAR = (0, 0, 0, 0)


def save_screenshot(path: Path, display: Optional[str] = None) -> Path:
    """Saves a picture of a whole screen in the format of the ending of `path`.

    Args:
        path: the file.
        display: the X display, by default that of this process.

    Returns `path`. Raises PictureError when there is no display, it does not answer, or there is no Pillow (Debian:
    python3-pil).
    """
    SCREENS.save_picture(display_name(display), path).wait()
    return path


def read_xpm(data: bytes) -> "Image":
    """The picture in an XPM file as Qt writes it. Raises PictureError without Pillow, ProtocolError for other data."""
    try:
        from PIL import Image  # type: ignore[import]
    except ImportError as error:
        raise PictureError("pictures need Pillow (Debian: python3-pil)") from error
    strings = _XPM_STRING.findall(data.decode("latin-1"))
    try:
        width, height, count, length = map(int, strings[0].split()[:4])
        if min(width, height, count, length) < 1:
            raise ValueError(f"a size of {strings[0]}")
        colours = dict(_parse_colour(line, length) for line in strings[1 : count + 1])
        pixels = [_row(line, width, length, colours) for line in strings[count + 1 : count + 1 + height]]
        if len(pixels) != height:
            raise ValueError("rows are missing")
    except (IndexError, KeyError, ValueError) as error:
        raise ProtocolError(f"not a picture in the XPM format ({error}): {data[:60]!r}") from error
    return Image.frombytes("RGBA", (width, height), b"".join(pixels))


def _parse_colour(line: str, length: int) -> Tuple[str, bytes]:
    match = _COLOUR.search(line, length)
    if match is None:
        raise ValueError(f"no colour in {line!r}")
    colour = match[1]
    if colour.lower() == "none":
        return line[:length], bytes(_CLEAR)
    channels = bytes.fromhex(colour.lstrip("#"))
    if len(channels) != 3:
        raise ValueError(f"a colour {colour}")
    return line[:length], channels + b"\xff"


def _row(line: str, width: int, length: int, colours: Dict[str, bytes]) -> bytes:
    if len(line) != width * length:
        raise ValueError(f"a row of {len(line)} characters")
    return b"".join(colours[line[start : start + length]] for start in range(0, len(line), length))
