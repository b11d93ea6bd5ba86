"""Snapshots: all that a window shows at one moment, as objects and as an outline."""

from __future__ import annotations

import sys
from dataclasses import dataclass, field, replace
from itertools import islice
from typing import Any, Iterator, List, Mapping, NamedTuple, Optional, Tuple

from ..errors import ProtocolError
from ..protocol.wire import Rect

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_INDENT = "  "
_FRAMES = ("widget", "scroll area", "splitter", "stack", "tabs")
_DECORATIONS = ("size grip", "scroll bar", "header", "splitter handle")
_WHOLE = ("spin box", "combo box", "list", "tree", "table")
"""Roles of widgets whose inner parts the outline leaves out."""
INNER_NAMES = ("qt_", "_q_", "__qt__")
"""Beginnings of object names that Qt gives to inner parts of widgets."""
_SHOWN_AS = ("label", "text", "title", "placeholder", "action", "tip")
"""Fields of a widget by which a person knows it; the first one that has a text counts."""
_LEFT_OUT_STATES = ("hovered",)


class _Limits(NamedTuple):
    """How much an outline has: characters of a text, items of a view, columns of an item, levels, and reference numbers."""

    text: int
    items: int
    columns: int
    depth: int = sys.maxsize
    with_refs: bool = False


_SHORT = _Limits(60, 10, 3)
_WHOLE_TEXTS = _Limits(sys.maxsize, sys.maxsize, sys.maxsize)


@dataclass(frozen=True)
class Item:
    """A row of an item view, a tab, a title or an entry of a menu, a choice of a combo box.

    Attributes:
        texts: one for each column; an entry of a menu has its shortcut as the second.
        depth: in trees, below how many items it is.
        states: such as "selected", "current", "disabled", "checked", "expanded", "collapsed".
    """

    texts: Tuple[str, ...]
    depth: int = 0
    states: Tuple[str, ...] = ()

    def __str__(self) -> str:
        return " | ".join(self.texts) + _in_brackets(self.states)


@dataclass(eq=False)
class SnapshotNode:
    """A widget as it was when the snapshot was made.

    Attributes:
        ref: the number that finds it again, find(ref=12), as long as it lives.
        class_name: its own class.
        role: its kind in plain words: "button", "checkbox", "edit", ...
        name: its object name.
        text: the text that it shows as its own.
        label: the text of its label.
        tip: its tool tip.
        value: the text of an edit, the number of a slider, ...; None for widgets without a value.
        states: such as "disabled", "checked", "focused", "expanded", "read only", "hidden".
        rect: its place on the screen, in pixels.
        header: the titles of the columns of an item view.
        items: the rows, tabs, choices or entries in it that are in sight.
        left_out: how many items there are that are not in `items`.
        children: the widgets in it.
        details: all fields of the agent's reply, by their names in the protocol.
    """

    ref: int
    class_name: str
    role: str
    name: str = ""
    text: str = ""
    label: str = ""
    tip: str = ""
    value: "str | int | float | None" = None
    states: Tuple[str, ...] = ()
    rect: Rect = Rect(0, 0, 0, 0)
    header: Tuple[str, ...] = ()
    items: Tuple[Item, ...] = ()
    left_out: int = 0
    children: List["SnapshotNode"] = field(default_factory=list)
    details: Mapping[str, Any] = field(default_factory=dict, repr=False)

    @classmethod
    def of(cls, told: Mapping[str, Any]) -> "SnapshotNode":
        """The node for an object of the agent's JSON, with all below it. Raises ProtocolError for any other object."""
        try:
            left, top, width, height = told["rect"]
            children, get = told.get("children", ()), told.get
            return cls(  # by position, which takes a quarter less time: a window can have thousands
                told["ref"],
                told["class"],
                told["role"],
                get("name", ""),
                get("text", ""),
                get("label", ""),
                get("tip", ""),
                get("value"),
                tuple(get("states", ())),
                Rect(left, top, left + width - 1, top + height - 1),
                tuple(get("header", ())),
                tuple(map(_item, told["items"])) if "items" in told else (),
                get("more", 0),
                [cls.of(child) for child in children],
                {key: told[key] for key in told if key != "children"} if children else told,
            )
        except (KeyError, TypeError, ValueError) as error:
            raise ProtocolError(f"not a widget of a snapshot: {error!r}") from None

    def column(self, title: str) -> Tuple[str, ...]:
        """The texts in one column of an item view, of the rows in `items`. Raises ValueError for an unknown title."""
        if title not in self.header:
            raise ValueError(
                f"no column {title!r} is shown, but {', '.join(map(repr, self.header)) or 'none'}"
            )
        number = self.header.index(title)
        return tuple(item.texts[number] for item in self.items if number < len(item.texts))

    def with_fields(self, told: Mapping[str, Any]) -> "SnapshotNode":
        """This node with other fields, as a part of the agent's JSON has them; the place, the label and the children stay."""
        kept = {key: self.details[key] for key in ("ref", "rect", "label") if key in self.details}
        changed = SnapshotNode.of({**told, **kept})
        changed.children = self.children
        return changed

    def with_node(self, node: "SnapshotNode") -> "SnapshotNode":
        """This node, with another one in the place of that with the same number below it."""
        if self.ref == node.ref:
            return node
        children = [child.with_node(node) for child in self.children]
        is_same = all(before is now for before, now in zip(self.children, children))
        return self if is_same else replace(self, children=children)

    def walk(self) -> Iterator["SnapshotNode"]:
        """This node and all below it, each before its children."""
        yield self
        for child in self.children:
            yield from child.walk()

    def walk_with_depth(self, depth: int = 0) -> Iterator[Tuple["SnapshotNode", int]]:
        """As walk(), each node with its depth: 0 for this one."""
        yield self, depth
        for child in self.children:
            yield from child.walk_with_depth(depth + 1)

    def __str__(self) -> str:
        return outline(self)


def describe_briefly(node: SnapshotNode) -> str:
    """The widget's role, and the text by which a person knows it."""
    return f'{node.role} "{_cut(_shown(node))}"' if _shown(node) else node.role


def describe_node(told: Mapping[str, Any]) -> str:
    """One line on a widget that the agent has described."""
    node = SnapshotNode.of(told)
    return f"{_headline(node)} ({node.class_name}, ref={node.ref})"


class Snapshot:
    """All that a window, or a widget, showed at one moment. Prints as an outline.

    Attributes:
        root: the window or the widget.
    """

    def __init__(self, root: SnapshotNode) -> None:
        self.root = root

    @property
    def nodes(self) -> Tuple[SnapshotNode, ...]:
        """All widgets, each before those in it."""
        return tuple(self.root.walk())

    def __repr__(self) -> str:
        return f"<snapshot: {_headline(self.root)}, {len(self.nodes)} widgets>"

    def __str__(self) -> str:
        return outline(self.root)


def outline(root: SnapshotNode) -> str:
    """An outline of the widgets and their texts, one line each, indented as they are within each other.

    It leaves out widgets that only hold others, scroll bars and the like, and labels whose text is shown with their field.
    Of states, values and items it has those that a person would look for; the nodes have all.
    """
    return "\n".join(_lines(root, _SHORT))


def whole_outline(root: SnapshotNode) -> str:
    """As outline(), with every text and all items in sight, however long, and the texts of widgets known by a label."""
    return "\n".join(_lines(root, _WHOLE_TEXTS))


def outline_with_refs(
    root: SnapshotNode, *, depth: Optional[int] = None, whole: bool = False, most: Optional[int] = None
) -> List[str]:
    """The lines of outline(), with the reference number of each widget in brackets in front of it.

    Args:
        root: the widget.
        depth: how many levels below it; None for all.
        whole: with every text and all items in sight, however long.
        most: how many lines; None for all.
    """
    return list(islice(_lines(root, _with_refs(depth, whole)), most))


def outline_length(root: SnapshotNode, *, depth: Optional[int] = None, whole: bool = False) -> int:
    """How many lines outline_with_refs() has in all."""
    limits = _with_refs(depth, whole)
    shown = ((node, level) for node, level in walk_outline(root) if level <= limits.depth)
    return sum(1 + (_item_count(node, limits) if level < limits.depth else 0) for node, level in shown)


def _with_refs(depth: Optional[int], whole: bool) -> _Limits:
    levels = sys.maxsize if depth is None else depth
    return (_WHOLE_TEXTS if whole else _SHORT)._replace(depth=levels, with_refs=True)


def _item_count(node: SnapshotNode, limits: _Limits) -> int:
    if not node.items and not node.left_out:
        return 0
    return sum(1 for _ in _item_lines(node, 0, limits))


def headline_with_ref(node: SnapshotNode) -> str:
    """The line of one widget in outline_with_refs()."""
    return _headline(node, _SHORT._replace(with_refs=True))


def walk_outline(root: SnapshotNode) -> Iterator[Tuple[SnapshotNode, int]]:
    """The widgets that an outline has a line for, in its order, each with its depth there."""
    return _walk_outline(root, 0, is_root=True)


def _walk_outline(
    node: SnapshotNode, depth: int, is_root: bool = False
) -> Iterator[Tuple[SnapshotNode, int]]:
    if is_root or not _is_frame(node):
        yield node, depth
        depth += 1
    if node.role in _WHOLE:
        return
    if not node.children:
        return
    labels = {child.label for child in node.children if child.label}
    for child in node.children:
        is_shown_with_its_field = child.role == "label" and child.text in labels
        if not is_shown_with_its_field and child.role not in _DECORATIONS:
            yield from _walk_outline(child, depth)


def _lines(root: SnapshotNode, limits: _Limits) -> Iterator[str]:
    for node, depth in walk_outline(root):
        if depth <= limits.depth:
            yield _INDENT * depth + _headline(node, limits)
        if depth < limits.depth:
            yield from _item_lines(node, depth + 1, limits)


def _item_lines(node: SnapshotNode, depth: int, limits: _Limits) -> Iterator[str]:
    items = () if node.role == "combo box" else node.items
    for item in items[: limits.items]:
        words = _cut(_in_few_columns(item, limits), limits)
        yield _INDENT * (depth + item.depth) + f"- {_on_one_line(words) if limits.with_refs else words}"
    left_out = node.left_out + len(items) - len(items[: limits.items])
    if left_out:
        yield _INDENT * depth + f"- ... {left_out} more"


def _in_few_columns(item: Item, limits: _Limits) -> str:
    more = ("...",) if len(item.texts) > limits.columns else ()
    return str(replace(item, texts=item.texts[: limits.columns] + more))


def _is_frame(node: SnapshotNode) -> bool:
    """Whether it only holds others. One with a name counts only if the single widget in it has a name, too."""
    if node.role != "label" and node.role not in _FRAMES:
        return False
    if _shown(node) or node.items:
        return False
    if node.role == "label":
        return not _own_name(node)  # an empty one, or one with a picture
    inside = [child for child in node.children if child.role not in _DECORATIONS]
    name_counts = _own_name(node) and not (len(inside) == 1 and _own_name(inside[0]))
    return not name_counts


def _shown(node: SnapshotNode) -> str:
    """The text by which a person knows it."""
    for key in _SHOWN_AS:  # a loop, since each outline asks this twice for each of thousands of widgets
        if node.details.get(key):
            return str(node.details[key])
    return ""


def _own_name(node: SnapshotNode) -> str:
    """Its object name, if the application has given it."""
    return "" if node.name.startswith(INNER_NAMES) else node.name


def _headline(node: SnapshotNode, limits: _Limits = _SHORT) -> str:
    words = [f"[{node.ref}] {node.role}"] if limits.with_refs else [node.role]
    shown, name = _cut(_shown(node), limits), _own_name(node)
    if shown:
        words.append(f'"{_on_one_line(shown) if limits.with_refs else shown}"')
    if name:
        words.append(f"#{name}")
    if limits.text == sys.maxsize and node.text and node.text != shown:
        words.append(f"with {node.text!r}")
    if node.value is not None and node.value != "":
        words.append(
            f"= {_cut(repr(node.value) if isinstance(node.value, str) else str(node.value), limits)}"
        )
    states = tuple(state for state in node.states if state not in _LEFT_OUT_STATES) if node.states else ()
    return " ".join(words) + _in_brackets(states)


def _in_brackets(states: Tuple[str, ...]) -> str:
    return f" ({', '.join(states)})" if states else ""


def _on_one_line(text: str) -> str:
    """The text without line breaks, so that it cannot look like lines of the outline."""
    return " ".join(text.split())


def _cut(text: str, limits: _Limits = _SHORT) -> str:
    return text if len(text) <= limits.text else text[: limits.text - 3] + "..."


def _item(told: Mapping[str, Any]) -> Item:
    return Item(tuple(told["texts"]), told.get("depth", 0), tuple(told.get("states", ())))
