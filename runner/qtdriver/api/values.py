"""Values that are read from a widget's properties."""

from __future__ import annotations

from pathlib import Path
from typing import TYPE_CHECKING, Any, Callable, Dict, Optional, Tuple

from ..errors import CommandError, ProtocolError
from ..lookup.item_names import with_item_suggestions
from ..lookup.snapshot import Snapshot, SnapshotNode
from ..protocol.locators import Address, as_locator
from ..protocol.wire import Rect, Value
from .pictures import read_xpm

if TYPE_CHECKING:
    from .window import Window

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_NOT_AMONG_PROPERTIES = ("propertyNames", "pseudoPropertyNames", "globalRect")


class WidgetValues:
    """Reads values of a widget, as Python has them. `timeout` is as for Widget."""

    window: "Window"
    as_class: str
    perform: Callable[..., Any]

    def read(self, name: str, argument: Optional[str] = None, *, timeout: Optional[float] = None) -> Value:
        """The value of a property of Qt, or of the widget's class.

        Args:
            name: the property.
            argument: for the few properties that take one, such as an item.
            timeout: see the class.

        Raises CommandError where the widget has no such property, or its type has no form in replies.
        """
        shown = repr(name) if argument is None else f"{name!r}, {argument!r}"
        connection, address = self.window.app.connection, self.window.address

        def look(path: Address) -> Value:
            return with_item_suggestions(
                connection,
                address,
                path,
                argument,
                lambda: connection.read_property(address, path, name, argument, widget_class=self.as_class),
                self.as_class,
            )

        value: Value = self.perform(f"read({shown})", look, timeout=timeout)
        return value

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
        """The texts of the items of a list, combo box, tab bar or menu, the paths of those of a tree.

        Raises CommandError for a widget without items.
        """
        names = self.read("pseudoPropertyNames", timeout=timeout)
        name = "pathList" if isinstance(names, tuple) and "pathList" in names else "itemList"
        value = self.read(name, timeout=timeout)
        if not isinstance(value, tuple):
            raise ProtocolError(f"not a list: {value!r}")
        return value

    def properties(self, *, timeout: Optional[float] = None) -> Dict[str, Value]:
        """The values of all properties that take no argument and have a type that replies can carry.

        The lists of names are left out, and "globalRect", since reading it raises and moves the window.
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
        """Saves the picture or icon in a property.

        Args:
            name: the property.
            path: the file; its ending is the format, such as ".png".
            timeout: seconds to wait for the widget.

        Returns `path`. Raises ProtocolError when the property holds no picture, and PictureError without Pillow.
        """
        value = self.read(name, timeout=timeout)
        if not isinstance(value, bytes):
            raise ProtocolError(f"not a picture: {value!r}")
        file = Path(path)
        read_xpm(value).save(file)
        return file

    def snapshot(self, *, timeout: Optional[float] = None) -> Snapshot:
        """All that the widget shows now; prints as an outline. Needs an agent with extensions."""

        def take(path: Address) -> Snapshot:
            window = self.window
            return Snapshot(SnapshotNode.of(window.app.connection.snapshot(window.address, as_locator(path))))

        snapshot: Snapshot = self.perform("snapshot()", take, timeout=timeout)
        return snapshot
