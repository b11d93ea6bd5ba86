"""The changes of an application from one survey to the next."""

from __future__ import annotations

from collections import Counter
from dataclasses import replace
from typing import Dict, Iterator, List, Optional

from ..lookup.snapshot import (
    Item,
    SnapshotNode,
    headline_with_ref,
    outline_length,
    outline_with_refs,
    walk_outline,
)
from ..lookup.survey import Survey, SurveyedWindow
from .answers import MAX_LINES, MAX_OF_A_PART, limited

_MAX_LINES = 25
_MAX_ITEMS = 8
_PASSING_STATES = ("focused", "hovered", "default")
"""States that follow the focus and the mouse: many widgets change them at each step, and one line tells the focus."""

_Widgets = Dict[int, SnapshotNode]
"""Widgets by their reference numbers."""


def is_same(before: Survey, after: Survey) -> bool:
    """Whether both show the same, but for places."""
    return _summary(before) == _summary(after)


def _summary(survey: Survey) -> List[object]:
    return [
        (node.ref, _headline(node), node.items, node.left_out)
        for window in survey.windows
        for node in _outlined(window).values()
    ]


def changes(before: Survey, after: Survey, acted_on: Optional[int] = None) -> List[str]:
    """Lines that tell what has changed; none where nothing has.

    `acted_on` is the number of the widget that was acted on: that it has got the focus needs no line.
    """
    old, new = _windows(before), _windows(after)
    lines: List[str] = []
    for ref, window in new.items():
        if ref not in old:
            assert window.root is not None
            shown = outline_with_refs(window.root, most=MAX_LINES)
            rest = f"snapshot with target {ref}"
            kind = "opened, modal: " if window.record.modal else "opened: "
            lines += [kind + limited(shown, rest, MAX_OF_A_PART, count=outline_length(window.root))]
    lines += [f"closed: {title(window)}" for ref, window in old.items() if ref not in new]
    for ref, window in new.items():
        if ref in old:
            lines += _changes_within(old[ref], window)
    return [*lines, *_focus(before, after, acted_on)]


def title(window: SurveyedWindow) -> str:
    """The window in words."""
    told = window.record.title if window.root is None else window.root.details.get("title", "")
    shown = f' "{" ".join(told.split())}"' if told else ""
    return f"{window.record.class_name}{shown}"


def _windows(survey: Survey) -> Dict[int, SurveyedWindow]:
    return {window.root.ref: window for window in survey.windows if window.root is not None}


def _outlined(window: SurveyedWindow) -> _Widgets:
    """The widgets that an outline of the window has a line for."""
    return {} if window.root is None else {node.ref: node for node, _ in walk_outline(window.root)}


def _changes_within(before: SurveyedWindow, after: SurveyedWindow) -> List[str]:
    old, new = _outlined(before), _outlined(after)
    lines = [line for ref, node in new.items() if ref in old for line in _changes_of(old[ref], node)]
    assert before.root is not None and after.root is not None
    gone = [f"- {_with_number_within(node)}" for node in _outermost(before.root, set(new))]
    came = [f"+ {line}" for node in _outermost(after.root, set(old)) for line in outline_with_refs(node)]
    for some in (lines, gone, came):
        if len(some) > _MAX_LINES:
            some[_MAX_LINES:] = [f"  ... and {len(some) - _MAX_LINES} more: take a snapshot"]
    return [*lines, *gone, *came]


def _outermost(root: SnapshotNode, others: "set[int]") -> Iterator[SnapshotNode]:
    """The widgets that are not among others, without those within them."""
    skipped: Optional[int] = None
    for node, depth in walk_outline(root):
        if skipped is not None and depth > skipped:
            continue
        skipped = None if node.ref in others else depth
        if skipped is not None:
            yield node


def _with_number_within(node: SnapshotNode) -> str:
    inside = sum(1 for _ in walk_outline(node)) - 1
    return headline_with_ref(node) + (f", with {inside} in it" if inside else "")


def _changes_of(before: SnapshotNode, after: SnapshotNode) -> Iterator[str]:
    if _headline(before) != _headline(after):
        yield f"~ {_headline(after)}, before: {_rest(_headline(before), after)}"
    if (before.items, before.left_out) != (after.items, after.left_out) and after.role != "combo box":
        if _headline(before) == _headline(after):
            yield f"~ {_headline(after)}"
        yield from _changes_of_items(before, after)


def _rest(headline: str, after: SnapshotNode) -> str:
    """The old headline without the role and the number, which stay."""
    return headline.replace(f"[{after.ref}] {after.role}", "", 1).strip() or "nothing"


def _changes_of_items(before: SnapshotNode, after: SnapshotNode) -> Iterator[str]:
    old, new = Counter(map(_plain, before.items)), Counter(map(_plain, after.items))
    if Counter(item.texts for item in before.items) == Counter(item.texts for item in after.items):
        lines = [f"    ~ {item}" for item in (new - old).elements()]  # only their states are other ones
    else:
        lines = [f"    - {item}" for item in (old - new).elements()]
        lines += [f"    + {item}" for item in (new - old).elements()]
    yield from lines[:_MAX_ITEMS]
    if len(lines) > _MAX_ITEMS:
        yield f"    ... and {len(lines) - _MAX_ITEMS} more items have changed"
    count = len(after.items) + after.left_out
    if count != len(before.items) + before.left_out:
        yield f"    {count} items, before: {len(before.items) + before.left_out}"


def _plain(item: Item) -> str:
    states = tuple(state for state in item.states if state != "current")
    return " ".join(str(replace(item, states=states)).split())


def _headline(node: SnapshotNode) -> str:
    states = tuple(state for state in node.states if state not in _PASSING_STATES)
    return headline_with_ref(replace(node, states=states))


def _focus(before: Survey, after: Survey, acted_on: Optional[int]) -> Iterator[str]:
    old, new = _focused(before), _focused(after)
    if new is not None and new.ref != acted_on and (old is None or old.ref != new.ref):
        yield f"focus: {_headline(new)}"


def _focused(survey: Survey) -> Optional[SnapshotNode]:
    return next((node for node, _ in survey.found.values() if "focused" in node.states), None)
