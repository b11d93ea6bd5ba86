"""The records in which the agent describes windows and widgets."""

from __future__ import annotations

import re
from dataclasses import dataclass
from functools import lru_cache
from typing import Optional

from ..errors import ProtocolError
from .wire import decode_hex

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_WINDOW = re.compile(r'(?P<class>.*?)(?P<modal> \(M\))? : "(?P<title>.*)"', re.DOTALL)
_WIDGET = re.compile(r'(?P<depth>\d{1,9}) (?P<visible>[VN]) (?P<class>.*?) : "(?P<name>.*)"', re.DOTALL)

_KEPT_RECORDS = 5000
"""How many different records are kept as they were read: a window is listed again and again, and little of it changes."""


@dataclass(frozen=True)
class WindowRecord:
    """A visible window of the application.

    Attributes:
        class_name: the widget's class.
        modal: whether it blocks other windows while it is open.
        title: the window title.
    """

    class_name: str
    modal: bool
    title: str

    @classmethod
    def parse(cls, record: str) -> "WindowRecord":
        """Reads one item of the window list. Raises ProtocolError for any other text."""
        match = _WINDOW.fullmatch(record)
        if match is None:
            raise ProtocolError(f"not a record of a window: {record!r}")
        return cls(match["class"], match["modal"] is not None, match["title"])


@dataclass(frozen=True)
class WidgetRecord:
    """A widget in the tree of a window.

    Attributes:
        depth: 0 for the window, 1 for its children, and so on.
        visible: whether the user can see it.
        class_name: the widget's class.
        object_name: its object name, empty when it has none.
    """

    depth: int
    visible: bool
    class_name: str
    object_name: str

    @classmethod
    def parse(cls, record: str) -> "WidgetRecord":
        """Reads one item of the widget tree. Raises ProtocolError for any other text."""
        return _parse_widget(record)


@lru_cache(maxsize=_KEPT_RECORDS)
def _parse_widget(record: str) -> WidgetRecord:
    match = _WIDGET.fullmatch(record)
    if match is None:
        raise ProtocolError(f"not a record of a widget: {record!r}")
    return WidgetRecord(int(match["depth"]), match["visible"] == "V", match["class"], match["name"])


@dataclass(frozen=True)
class CursorWidget:
    """The widget under the mouse cursor, and how a test can address it.

    Attributes:
        class_name: the class under which the agent serves the widget.
        count: how many widgets of the window have the same name.
        visible_count: how many of them are visible; 1 says that `path` is unique.
        path: the widget path from the window down.
        window_name: object name of the window; "ActiveModalWidget" for a modal window without a name.
        window: the window section for a request: the window title, or "Widget:ActivePopupWidget" for a menu. Titles
            with characters beyond U+00FF are ambiguous on the wire and arrive garbled.
    """

    class_name: str
    count: int
    visible_count: int
    path: str
    window_name: str
    window: str

    @classmethod
    def parse(cls, payload: str) -> "Optional[CursorWidget]":
        """Reads the fields behind "?,"; None when no widget is under the cursor.

        Object names may contain commas: the path is the text between the three fields before it and the two behind it.
        Raises ProtocolError when fields are missing or not of their kind.
        """
        if not payload.strip(","):
            return None
        try:
            class_name, count, visible_count, rest = payload.split(",", 3)
            path, window_name, window = rest.rsplit(",", 2)
            return cls(class_name, int(count), int(visible_count), path, window_name, _decode_title(window))
        except ValueError:
            raise ProtocolError(f"not a description of the widget under the cursor: {payload!r}") from None


def _decode_title(digits: str) -> str:
    """Characters beyond U+00FF have three or four digits, so the number of digits can be odd."""
    return decode_hex(digits[:-1] if len(digits) % 2 else digits)
