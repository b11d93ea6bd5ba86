"""The items of a widget, as a test says them."""

from __future__ import annotations

from dataclasses import replace
from typing import Optional

from ..lookup.snapshot import SnapshotNode
from ..protocol.locators import as_python
from .events import Event, EventItem
from .names import Names


def part_of(press: Event, node: SnapshotNode) -> Optional[str]:
    """The call on the widget for the item under the mouse; None where there is none that a test can name."""
    item = press.item
    if item is None:
        return None
    if item.section is not None:
        kind = "column_header" if item.orientation == "horizontal" else "row_header"
        return f"{kind}({_python(item.text or item.section + 1)})"
    if node.role == "tab bar":
        return f"tab({_python(item.text)})"
    if node.role == "table" and len(item.headers) == 2:
        row, column = (_section(text) for text in item.headers)
        return f"cell({_python(row)}, {_python(column)})"
    is_named = node.role in ("list", "tree") and all(item.path) and not _has_slash(node, item)
    return f"item({_python('/'.join(item.path))})" if is_named else None


def holder_of(event: Event, node: SnapshotNode, names: Names) -> Event:
    """The event for the view that a header is of; the event itself for other widgets."""
    around = names.parent(node.ref) if node.role == "header" else None
    return event if around is None else replace(event, ref=around.ref)


def _has_slash(node: SnapshotNode, item: EventItem) -> bool:
    return node.role == "tree" and any("/" in text for text in item.path)


def _section(text: str) -> "str | int":
    return int(text) if text.isdigit() else text


def _python(value: "str | int") -> str:
    return as_python(value) if isinstance(value, str) else repr(value)
