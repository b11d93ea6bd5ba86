"""Takes pictures of a whole screen: of an X display by shared memory, or by Pillow where there is none.

A call waits as long as the X server takes, which may be for ever: see `screen_process`.
"""

from __future__ import annotations

import ctypes
import os
import sys
from ctypes.util import find_library
from typing import Any, Dict, List, Optional, Set

from ..errors import PictureError
from .bands import Pixels

_ALL_PLANES = 0xFFFFFFFF
_Z_PIXMAP = 2
_PRIVATE = 0  # IPC_PRIVATE
_CREATE = 0o1600  # IPC_CREAT, and for this user only
_REMOVE = 0  # IPC_RMID
_FAILED = ctypes.c_void_p(-1).value
_CHANNELS = (0xFF0000, 0xFF00, 0xFF)


class Screen:
    """The screen of a display. Belongs to one thread."""

    def __init__(self, display: Optional[str]) -> None:
        """`display` is the X display; None for that of this process.

        Raises PictureError when there is no display, or no Pillow (Debian: python3-pil).
        """
        try:
            from PIL import ImageGrab  # type: ignore[import]
        except ImportError as error:
            raise PictureError("pictures need Pillow (Debian: python3-pil)") from error
        self._pillow = ImageGrab
        self._shared: Optional[_SharedImage] = None
        self._name = os.environ.get("DISPLAY", "") if display is None else display
        if sys.platform == "win32":
            return
        if not self._name:
            raise PictureError("there is no X display to take a picture of (DISPLAY is not set)")
        try:
            self._shared = _SharedImage(self._name)
        except (OSError, AttributeError):
            pass  # no Xlib, a display of another machine, or one with other pixels: Pillow does it, more slowly

    def grab(self) -> Pixels:
        """Takes the whole screen as it is now. The next call may overwrite the pixels. Raises PictureError."""
        try:
            if self._shared is not None:
                return self._shared.grab()
            options: Dict[str, object] = {"xdisplay": self._name}
            image = self._pillow.grab(**({"all_screens": True} if sys.platform == "win32" else options))
        except OSError as error:
            raise PictureError(f"no picture of the display {self._name}: {error}") from error
        return Pixels.of(image)


class _XImage(ctypes.Structure):
    """The beginning of Xlib's XImage."""

    _fields_ = [
        ("width", ctypes.c_int),
        ("height", ctypes.c_int),
        ("xoffset", ctypes.c_int),
        ("format", ctypes.c_int),
        ("data", ctypes.c_void_p),
        ("byte_order", ctypes.c_int),
        ("bitmap_unit", ctypes.c_int),
        ("bitmap_bit_order", ctypes.c_int),
        ("bitmap_pad", ctypes.c_int),
        ("depth", ctypes.c_int),
        ("bytes_per_line", ctypes.c_int),
        ("bits_per_pixel", ctypes.c_int),
        ("red_mask", ctypes.c_ulong),
        ("green_mask", ctypes.c_ulong),
        ("blue_mask", ctypes.c_ulong),
    ]


class _Segment(ctypes.Structure):
    """Xlib's XShmSegmentInfo."""

    _fields_ = [
        ("segment", ctypes.c_ulong),
        ("id", ctypes.c_int),
        ("address", ctypes.c_void_p),
        ("read_only", ctypes.c_int),
    ]


class _SharedImage:
    """A picture of the screen in memory that the X server writes (MIT-SHM)."""

    _errors: List[int] = []
    _gone: Set[int] = set()
    """The connections whose X server has ended."""

    def __init__(self, name: str) -> None:
        """Raises OSError when the display cannot do it, AttributeError or OSError without Xlib, and PictureError where nobody
        could do it."""
        self._x = _library("X11")
        self._extension = _library("Xext")
        self._connection: int = self._x.XOpenDisplay(name.encode())
        if not self._connection:
            raise PictureError(f"no picture of the display {name}: it cannot be opened")
        _SharedImage._errors.clear()
        self._x.XSetErrorHandler(_ERROR_HANDLER)
        if hasattr(self._x, "XSetIOErrorExitHandler"):  # since version 1.7 of Xlib
            self._x.XSetIOErrorHandler(_BREAK_HANDLER)
            self._x.XSetIOErrorExitHandler(self._connection, _END_HANDLER, None)
        if not self._extension.XShmQueryExtension(self._connection):
            raise OSError("no shared memory with the display")
        self._root = self._x.XDefaultRootWindow(self._connection)
        self._attach()

    def _attach(self) -> None:
        """Makes the X server attach memory of the size of the screen."""
        number = self._x.XDefaultScreen(self._connection)
        width, height = (
            size(self._connection, number) for size in (self._x.XDisplayWidth, self._x.XDisplayHeight)
        )
        self._segment = _Segment()
        self._image = self._extension.XShmCreateImage(
            self._connection,
            ctypes.c_void_p(self._x.XDefaultVisual(self._connection, number)),
            self._x.XDefaultDepth(self._connection, number),
            _Z_PIXMAP,
            None,
            ctypes.byref(self._segment),
            width,
            height,
        )
        if not self._image:
            raise OSError("no shared picture")
        image = self._image.contents
        if (image.red_mask, image.green_mask, image.blue_mask) != _CHANNELS or image.bits_per_pixel != 32:
            raise OSError("pixels of another kind")
        system = ctypes.CDLL(None, use_errno=True)
        system.shmat.restype = ctypes.c_void_p
        self._segment.id = system.shmget(
            _PRIVATE, ctypes.c_size_t(image.bytes_per_line * image.height), _CREATE
        )
        self._segment.address = system.shmat(self._segment.id, None, 0)
        if self._segment.id < 0 or self._segment.address == _FAILED:
            raise OSError("no shared memory")
        image.data = self._segment.address
        self._extension.XShmAttach(self._connection, ctypes.byref(self._segment))
        self._x.XSync(self._connection, 0)
        system.shmctl(self._segment.id, _REMOVE, None)  # it goes when both have let it go
        if self._errors:
            raise OSError("the display does not share memory with this process")

    def grab(self) -> Pixels:
        """As Screen.grab(). Raises OSError."""
        self._extension.XShmGetImage(
            self._connection, ctypes.c_ulong(self._root), self._image, 0, 0, ctypes.c_ulong(_ALL_PLANES)
        )
        if self._connection in self._gone:
            raise OSError("the X server has ended")
        if self._errors:
            raise OSError("the X server refuses it")
        image = self._image.contents
        length = image.bytes_per_line * image.height
        pixels = (ctypes.c_ubyte * length).from_address(image.data)
        return Pixels((image.width, image.height), image.bytes_per_line, memoryview(pixels).cast("B"))


def _note_error(_: int, __: int) -> int:
    _SharedImage._errors.append(1)
    return 0


_ERROR_HANDLER = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p)(_note_error)
"""In place of Xlib's own one, which would end the process."""


def _ignore_break(_: int) -> int:
    return 0


_BREAK_HANDLER = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p)(_ignore_break)
"""Comes before the _END_HANDLER; Xlib's own one would print a message and end the process."""


def _note_end(connection: int, _: int) -> None:
    _SharedImage._gone.add(connection)


_END_HANDLER = ctypes.CFUNCTYPE(None, ctypes.c_void_p, ctypes.c_void_p)(_note_end)
"""In place of one that would end the process, with the pictures of all displays, where the X server of one has ended."""


def _library(name: str) -> Any:
    try:
        library = ctypes.CDLL(f"lib{name}.so.6")
    except OSError:  # not where the loader looks, or of another version; a search starts other processes
        library = ctypes.CDLL(find_library(name) or f"lib{name}.so")
    if name == "X11":
        library.XOpenDisplay.restype = ctypes.c_void_p
        library.XDefaultVisual.restype = ctypes.c_void_p
        if hasattr(library, "XSetIOErrorExitHandler"):
            library.XSetIOErrorExitHandler.argtypes = [ctypes.c_void_p] * 3
        library.XDefaultRootWindow.restype = ctypes.c_ulong
        for function in ("XDefaultScreen", "XDefaultRootWindow", "XSync"):
            getattr(library, function).argtypes = [ctypes.c_void_p] + [ctypes.c_int] * (function == "XSync")
        for function in ("XDisplayWidth", "XDisplayHeight", "XDefaultVisual", "XDefaultDepth"):
            getattr(library, function).argtypes = [ctypes.c_void_p, ctypes.c_int]
    else:
        library.XShmCreateImage.restype = ctypes.POINTER(_XImage)
        library.XShmCreateImage.argtypes = [ctypes.c_void_p, ctypes.c_void_p] + [ctypes.c_uint, ctypes.c_int]
        library.XShmCreateImage.argtypes += [ctypes.c_void_p] * 2 + [ctypes.c_uint] * 2
        library.XShmQueryExtension.argtypes = [ctypes.c_void_p]
        library.XShmAttach.argtypes = [ctypes.c_void_p, ctypes.c_void_p]
        library.XShmGetImage.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_void_p]
        library.XShmGetImage.argtypes += [ctypes.c_int, ctypes.c_int, ctypes.c_ulong]
    return library
