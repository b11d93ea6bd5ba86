"""The values of a widget that are made of its properties."""

from __future__ import annotations

from pathlib import Path
from typing import Callable, Dict, Optional, Tuple

from ..errors import CommandError, ProtocolError
from ..protocol.wire import Rect, Value
from .pictures import read_xpm

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_NOT_AMONG_PROPERTIES = ("propertyNames", "pseudoPropertyNames", "globalRect")


class WidgetValues:
    """Reads values of a widget that take more than a single property."""

    read: Callable[..., Value]

    def text(self, *, timeout: Optional[float] = None) -> str:
        """The property "text" as text, whatever its type."""
        return str(self.read("text", timeout=timeout))

    def is_enabled(self, *, timeout: Optional[float] = None) -> bool:
        """Whether it can be used."""
        return self.read("enabled", timeout=timeout) is True

    def is_checked(self, *, timeout: Optional[float] = None) -> bool:
        """Whether it is checked."""
        return self.read("checked", timeout=timeout) is True

    def class_name(self, *, timeout: Optional[float] = None) -> str:
        """Its own class."""
        return str(self.read("className", timeout=timeout))

    def rect(self, *, timeout: Optional[float] = None) -> Rect:
        """Its rectangle in pixels of the screen; brings the window to the front and onto the screen."""
        value = self.read("globalRect", timeout=timeout)
        if not isinstance(value, Rect):
            raise ProtocolError(f"not a rectangle: {value!r}")
        return value

    def items(self, *, timeout: Optional[float] = None) -> Tuple[str, ...]:
        """The texts of the items of a list, combo box, tab bar or menu, the paths of those of a tree."""
        names = self.read("pseudoPropertyNames", timeout=timeout)
        name = "pathList" if isinstance(names, tuple) and "pathList" in names else "itemList"
        value = self.read(name, timeout=timeout)
        if not isinstance(value, tuple):
            raise ProtocolError(f"not a list: {value!r}")
        return value

    def properties(self, *, timeout: Optional[float] = None) -> Dict[str, Value]:
        """Every property that has a value which can be told and takes no argument.

        Without the listings of the names, and without "globalRect", which moves the window to be read.
        """
        values: Dict[str, Value] = {}
        for listing in ("pseudoPropertyNames", "propertyNames"):
            names = self.read(listing, timeout=timeout)
            for name in names if isinstance(names, tuple) else ():
                if name in values or name in _NOT_AMONG_PROPERTIES:
                    continue
                try:
                    values[name] = self.read(name, timeout=timeout)
                except CommandError:
                    continue  # it takes an argument, or has a type that cannot be told
        return values

    def save_picture(self, name: str, path: "Path | str", *, timeout: Optional[float] = None) -> Path:
        """Saves the picture or icon in the property `name`; the ending of `path` tells the format."""
        value = self.read(name, timeout=timeout)
        if not isinstance(value, bytes):
            raise ProtocolError(f"not a picture: {value!r}")
        file = Path(path)
        read_xpm(value).save(file)
        return file
