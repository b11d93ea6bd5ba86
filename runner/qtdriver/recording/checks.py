"""Conditions that a test can check of a widget, from a snapshot of it."""

from __future__ import annotations

import re
from dataclasses import dataclass
from typing import Iterator, List, Tuple

from ..lookup.snapshot import Item, SnapshotNode
from ..protocol.locators import as_python
from .steps import Argument
from .typing_runs import takes_lines

_TEXTS = ("label", "button", "edit", "checkbox", "radio button", "group")
_VALUES = {"spin box": "value", "slider": "value", "progress bar": "value", "combo box": "currentText"}
_CHECKED = ("checkbox", "radio button")
_HOLDERS = ("list", "tree", "table")
_MAX_ITEMS = 12
_MAX_LENGTH = 60


@dataclass(frozen=True)
class Check:
    """A condition that holds now.

    Attributes:
        words: tell it to a person.
        method, arguments: the condition of eventually(), with what it is given.
        part: calls on the widget, joined by dots, that make its item; empty for the widget itself.
        reads: the call that reads a value, for a condition of that; empty for a condition of the widget.
        is_of_window: whether it is a condition of the whole window.
    """

    words: str
    method: str
    arguments: Tuple[Argument, ...] = ()
    part: str = ""
    reads: str = ""
    is_of_window: bool = False


def checks_of(node: SnapshotNode, title: str) -> List[Check]:
    """All that can be checked of a widget.

    Args:
        node: the widget as it is now.
        title: that of its window.
    """
    return [*_own(node), *_states(node), *_items(node), *_of_window(node, title)]


def _own(node: SnapshotNode) -> Iterator[Check]:
    text = node.details.get("text")
    if node.role == "edit" and isinstance(node.value, str):
        name = "text" if "LineEdit" in node.class_name or not takes_lines(node) else "plainText"
        if not node.value.endswith("…"):
            yield Check(f"its text is {_short(node.value)}", "has_property", (name, node.value))
    elif node.role in _TEXTS and isinstance(text, str) and text and not text.endswith("…"):
        name = "title" if node.role == "group" else "text"
        yield Check(f"its text is {_short(text)}", "has_property", (name, text))
    if node.role in _VALUES and node.value is not None:
        yield Check(f"its value is {_short(node.value)}", "has_property", (_VALUES[node.role], node.value))


def _states(node: SnapshotNode) -> Iterator[Check]:
    states = node.states
    if node.role in _CHECKED or "checked" in states:
        is_on = "checked" in states
        yield Check(
            "it is checked" if is_on else "it is not checked", "is_checked" if is_on else "is_not_checked"
        )
    is_off = "disabled" in states
    yield Check("it is disabled" if is_off else "it is enabled", "is_disabled" if is_off else "is_enabled")
    yield Check("it is visible", "is_visible")


def _items(node: SnapshotNode) -> Iterator[Check]:
    if node.role not in _HOLDERS:
        return
    paths: List[str] = []
    for number, item in enumerate(node.items[:_MAX_ITEMS]):
        del paths[item.depth :]
        paths.append(item.texts[0] if item.texts else "")
        if node.role == "table":
            yield from _cells(node, number, item)
        elif all(paths):
            yield from _row("/".join(paths), item)


def _row(path: str, item: Item) -> Iterator[Check]:
    part = f"item({as_python(path)})"
    if "selected" in item.states:
        yield Check(f"{_short(path)} is selected", "is_true", (), part, "is_selected()")
    if "checked" in item.states:
        yield Check(f"{_short(path)} is checked", "is_true", (), part, "is_checked()")
    yield Check(f"there is an item {_short(path)}", "equals", (item.texts[0],), part, "text()")


def _cells(node: SnapshotNode, number: int, item: Item) -> Iterator[Check]:
    for column, text in enumerate(item.texts):
        title = node.header[column] if column < len(node.header) else ""
        is_name = bool(title) and not title.isdigit()
        part = f"cell({number + 1}, {as_python(title) if is_name else column + 1})"
        if text:
            yield Check(
                f"row {number + 1}, {title or column + 1} is {_short(text)}",
                "equals",
                (text,),
                part,
                "text()",
            )


def _of_window(node: SnapshotNode, title: str) -> Iterator[Check]:
    if title:
        yield Check(f"the window's title is {_short(title)}", "has_title", (title,), is_of_window=True)
    name = " ".join(re.findall(r"\w+", title.lower())[:3]) or "window"
    yield Check("the outline of the whole window", "looks_like", (name,), is_of_window=True)


def _short(value: "str | int | float") -> str:
    if not isinstance(value, str):
        return str(value)
    text = " ".join(value.split())
    return f'"{text}"' if len(text) <= _MAX_LENGTH else f'"{text[:_MAX_LENGTH]}…"'
