"""Screenshots, and the pictures that a widget's properties hold."""

from __future__ import annotations

import os
import re
import sys
from pathlib import Path
from typing import TYPE_CHECKING, Dict, Optional, Tuple

from ..errors import PictureError, ProtocolError

if TYPE_CHECKING:
    from PIL.Image import Image  # type: ignore[import]

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_XPM_STRING = re.compile(r'"([^"]*)"')
_COLOUR = re.compile(r"\bc\s+(\S+)")
_CLEAR = (0, 0, 0, 0)


def grab_screen(display: Optional[str] = None) -> "Image":
    """Takes a picture of a whole screen.

    Args:
        display: the X display, by default that of this process.

    Raises PictureError when there is no display, or no Pillow (Debian: python3-pil).
    """
    try:
        from PIL import ImageGrab  # type: ignore[import]
    except ImportError as error:
        raise PictureError("pictures need Pillow (Debian: python3-pil)") from error
    if sys.platform == "win32":
        return ImageGrab.grab(all_screens=True)
    name = os.environ.get("DISPLAY", "") if display is None else display
    if not name:
        raise PictureError("there is no X display to take a picture of (DISPLAY is not set)")
    try:
        return ImageGrab.grab(xdisplay=name)
    except OSError as error:
        raise PictureError(f"no picture of the display {name}: {error}") from error


def save_screenshot(path: Path, display: Optional[str] = None) -> Path:
    """Saves the picture of grab_screen() in the format of the ending of `path`. Returns `path`."""
    grab_screen(display).save(path)
    return path


def read_xpm(data: bytes) -> "Image":
    """The picture in an XPM file as Qt writes it. Raises PictureError without Pillow, ProtocolError for other data."""
    try:
        from PIL import Image
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
