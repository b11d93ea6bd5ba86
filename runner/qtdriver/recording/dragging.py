"""Drags with the mouse as steps."""

from __future__ import annotations

from dataclasses import replace
from typing import Dict, Optional

from ..lookup.snapshot import SnapshotNode
from .events import Event, EventItem
from .mouse_places import VIEWS, share_of
from .names import Names
from .parts import holder_of, part_of
from .steps import Argument, Step, Target
from .typing_runs import FIELDS

_PLACELESS = ("button", "radio button", "checkbox", "label", "splitter handle")
"""Roles of widgets that do the same wherever they are used."""
_UPPER_EDGE, _MIDDLE, _LOWER_EDGE = 25, 50, 75
"""Percent of an item's height: at an edge what is dropped goes before or after the item, and in its upper half may do so."""


def drag_step(app: str, press: Event, end: Optional[Event], names: Names) -> Step:
    """The step for a drag; where a test cannot repeat it, a comment that says so.

    Args:
        app: the name of the application.
        press: where it has begun.
        end: the widget and the item where it has ended, an event "over" or "drop"; None where nothing tells that.
        names: makes the addresses of windows and widgets.
    """
    end = end and _behind_tab(press, end, names)
    step = (
        None if end is None or not _can_be_repeated(press, end, names) else _between(app, press, end, names)
    )
    if step is not None:
        return step
    node = names.nodes.get(press.ref)
    kind = "a drag with the mouse"
    if press.item is not None and press.item.is_at_edge:
        kind = "a size that was changed with the mouse"
    elif node is not None and node.role in FIELDS:
        kind = "a text that was dragged"
    source, target = _call(press, names), None if end is None else _call(end, names)
    onto = f" to {target}" if target and target != source else ""
    origin = source or (node.role if node is not None else "a widget")
    return Step(app, "", "", "", comment=f"not recorded: {kind}, from {origin}{onto}")


def _behind_tab(press: Event, end: Event, names: Names) -> Event:
    """The end of a drag of a tab, which has moved with the mouse: at the tab whose place it has taken, which is beside it now."""
    node, start, item = names.nodes.get(end.ref), press.item, end.item
    if node is None or node.role != "tab bar" or item is None or start is None or len(item.beside) < 2:
        return end
    if item.row is None or start.row is None or item.row == start.row:
        return replace(end, item=None)
    return replace(end, item=EventItem(text=item.beside[0 if item.row > start.row else 1]))


def _can_be_repeated(press: Event, end: Event, names: Names) -> bool:
    """Whether drag_to() does the same."""
    node = names.nodes.get(press.ref)
    if (
        node is None
        or node.role in (*FIELDS, "dock", "subwindow")
        or press.button != "left"
        or press.modifiers
    ):
        return False
    if press.item is not None and press.item.is_at_edge:
        return False
    if end.kind == "over" and node.role in (*VIEWS, "header", "tab bar") and end.ref != press.ref:
        return False  # only drag and drop takes an item elsewhere
    return node.role != "tab bar" or end.item is not None


def _between(app: str, press: Event, end: Event, names: Names) -> Optional[Step]:
    """The step from one place to another; None where a test cannot name both."""
    keywords: Dict[str, Argument] = {}
    is_from_item, is_to_item = _part(press, names) is not None, _part(end, names) is not None
    if not is_from_item:
        end = replace(end, item=None)  # a widget is dragged to another one only
        _add_place(keywords, "at", press, names)
    if not is_to_item or not is_from_item:
        _add_place(keywords, "to", end, names)
    else:
        keywords.update(_place_in_item(end))
    window, source = names.window(press.window), _call(press, names)
    onto_window, target = names.window(end.window), _call(end, names)
    if not (window and source and onto_window and target):
        return None
    return Step(app, window, source, "drag_to", (Target(onto_window, target),), keywords)


def _add_place(keywords: Dict[str, Argument], name: str, event: Event, names: Names) -> None:
    """Adds the place in a widget as shares of its width and height."""
    node = names.nodes.get(event.ref)
    if node is None or node.role not in _PLACELESS:
        keywords[name] = share_of(event)


def _call(event: Event, names: Names) -> Optional[str]:
    """The call on the window for the item or widget at an event; None or empty where no call on a window makes it."""
    node = names.nodes.get(event.ref)
    if node is None:
        return None
    part = part_of(event, node)
    if node.role == "tab bar" and part:
        return part
    widget = names.widget(event.window, holder_of(event, node, names).ref)
    return widget and ".".join(filter(None, [widget, part]))


def _part(event: Event, names: Names) -> Optional[str]:
    node: Optional[SnapshotNode] = names.nodes.get(event.ref)
    return None if node is None else part_of(event, node)


def _place_in_item(end: Event) -> Dict[str, Argument]:
    """The keyword for the place in an item where something is dropped; nothing in its middle and below that, the default."""
    height = _MIDDLE if end.item is None or end.item.within is None else end.item.within[1]
    if height < _UPPER_EDGE:
        return {"to": (0.5, 0.1)}
    if height > _LOWER_EDGE:
        return {"to": (0.5, 0.9)}
    return {"to": (0.5, 0.3)} if height < _MIDDLE else {}
