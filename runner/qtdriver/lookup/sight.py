"""Lists the widgets that the user sees in a window and can use, for the error that one was not found."""

from __future__ import annotations

from typing import Dict, Iterator, List, Optional, Sequence, Tuple

from ..protocol.connection import Connection
from .derived import DIALOG_BUTTON
from .paths import list_tree
from .served import CHECKED_BUTTONS, FIELDS, ITEM_VIEWS, OTHER_BUTTONS, PUSH_BUTTONS, TAB_BARS
from .snapshot import SnapshotNode
from .tree import Node, WidgetTree
from .visible_texts import Seen, TextReader, button_texts, item_texts, plain_text, seen_widgets

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_SHOWN = 12
_BUTTONS, _BOXES, _TABS, _FIELDS, _VIEWS, _MENUS = (
    "buttons", "check boxes and radio buttons", "tabs", "fields", "lists, trees and tables", "menus"
)  # fmt: skip


def describe_sight(connection: Connection, window: str, tree: Optional[WidgetTree] = None) -> List[str]:
    """Lines that name the visible buttons, boxes, tabs, fields and views of a window by their texts and names.

    Args:
        connection: asks the application.
        window: the window.
        tree: its widgets, if they have been listed already.

    Returns no lines where there are none. With an agent without snapshots, only widgets that a path finds alone count.
    """
    if "+2" in connection.extensions:
        kinds = _in_snapshot(SnapshotNode.of(connection.snapshot(window)))
    else:
        kinds = _in_tree(connection, window, tree or list_tree(connection, window))
    lines = [f"  {kind}: {_listed(words)}" for kind, words in kinds if words]
    return ["in sight are:", *lines] if lines else []


def _listed(words: Sequence[str]) -> str:
    more = f", and {len(words) - _SHOWN} more" if len(words) > _SHOWN else ""
    return ", ".join(words[:_SHOWN]) + more


# By snapshots

_KIND_OF_ROLE = {
    "button": _BUTTONS, "checkbox": _BOXES, "radio button": _BOXES, "tab bar": _TABS, "edit": _FIELDS,
    "spin box": _FIELDS, "date edit": _FIELDS, "combo box": _FIELDS, "slider": _FIELDS, "list": _VIEWS,
    "tree": _VIEWS, "table": _VIEWS, "view": _VIEWS, "menu bar": _MENUS,
}  # fmt: skip


def _in_snapshot(root: SnapshotNode) -> Iterator[Tuple[str, List[str]]]:
    words: Dict[str, List[str]] = {kind: [] for kind in _KIND_OF_ROLE.values()}
    _add(root, words)
    yield from words.items()


def _add(node: SnapshotNode, words: Dict[str, List[str]]) -> None:
    """Adds the words for this widget and for those in it."""
    kind = _KIND_OF_ROLE.get(node.role)
    if kind in (_TABS, _MENUS):
        words[kind] += [f'"{item.texts[0]}"' for item in node.items if item.texts and item.texts[0]]
    elif kind is not None:
        words[kind] += _named(node, kind)
    if kind in (None, _TABS, _MENUS):  # the parts of other widgets are no use alone
        for child in node.children:
            _add(child, words)


def _named(node: SnapshotNode, kind: str) -> List[str]:
    own = (node.text, node.details.get("action")) if kind in (_BUTTONS, _BOXES) else (node.label,)
    shown = next(filter(None, [*own, node.details.get("placeholder"), node.tip]), "")
    name = "" if node.name.startswith("qt_") else node.name
    if not shown:
        return [name] if name else []
    return [f'"{shown}" ({name})' if name else f'"{shown}"']


# By listings and properties


def _no_texts(connection: Connection, window: str, path: str) -> Tuple[str, ...]:
    return ()


_KINDS: Tuple[Tuple[str, Tuple[str, ...], TextReader], ...] = (
    (_BUTTONS, (*PUSH_BUTTONS, *OTHER_BUTTONS), button_texts),
    (_BOXES, CHECKED_BUTTONS, button_texts),
    (_TABS, TAB_BARS, item_texts),
    (_FIELDS, FIELDS, _no_texts),
    (_VIEWS, ITEM_VIEWS, _no_texts),
)


def _in_tree(connection: Connection, window: str, tree: WidgetTree) -> Iterator[Tuple[str, List[str]]]:
    for kind, classes, texts in _KINDS:
        words: List[str] = []
        for seen in seen_widgets(connection, window, tree, classes, texts):
            if not _is_part_of_a_field(seen.node):
                words += _words(seen)
        yield kind, words


def _words(seen: Seen) -> List[str]:
    """The words for a widget, from its texts and its path: "Continue" (nextButton), or the path alone."""
    if not any(seen.texts):
        return [seen.path]
    texts = [f'"{plain_text(text)}"' for text in seen.texts if text]
    if len(texts) > 1 or seen.path.endswith(DIALOG_BUTTON):
        return texts  # button() and tab() find them
    return [f"{text} ({seen.path})" for text in texts]


def _is_part_of_a_field(node: Node) -> bool:
    """Whether it is the line edit of a spin box or of a combo box, or the like."""
    return node.name.startswith("qt_") and node.record.class_name not in TAB_BARS
