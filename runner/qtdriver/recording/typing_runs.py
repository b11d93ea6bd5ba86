"""Keys that were pressed one after the other, as what a test enters."""

from __future__ import annotations

from typing import Iterable, List, Optional

from ..lookup.snapshot import SnapshotNode
from .events import Event

FIELDS = ("edit", "spin box", "combo box", "date edit")
"""The roles of widgets whose text is edited."""

OPENING = ("F4", "Alt+Down", "Alt+Up")
"""They open the list of a combo box; in the list they close it without a choice."""

_EDITING = ("Backspace", "Del", "Left", "Right", "Up", "Down", "Home", "End")
_EDITING_SHORTCUTS = ("Ctrl+A", "Ctrl+C", "Ctrl+V", "Ctrl+X", "Ctrl+Z", "Ctrl+Y")

_STEPPING = {"spin box": ("Up", "Down"), "combo box": OPENING}


def is_text(event: Event) -> bool:
    """Whether the event types something that is seen."""
    held = set(event.modifiers) - {"Shift"}
    altgr = {"Ctrl", "Alt"}
    return (
        event.is_hidden or bool(event.text) and event.text.isprintable() and (not held or held == altgr)
    ) or event.kind == "text"


def edits(event: Event, node: SnapshotNode) -> bool:
    """Whether a key changes the text of a field, moves the caret in it, or is for the list of a combo box."""
    if event.is_in_list or event.key in _STEPPING.get(node.role, ()):
        return True
    plain = event.key.replace("Shift+", "")
    lines = node.role == "edit" and takes_lines(node) and plain == "Return"
    return is_text(event) or plain in _EDITING or event.key in _EDITING_SHORTCUTS or lines


def takes_lines(node: SnapshotNode) -> bool:
    """Whether Return is a part of the text: Qt gives only such fields an area that scrolls."""
    return any(child.name == "qt_scrollarea_viewport" for child in node.children)


def is_editable(node: SnapshotNode) -> bool:
    """Whether a combo box takes text, by a field within it."""
    return any(child.role == "edit" for child in node.children)


def in_tree(event: Event, ref: int) -> Optional[SnapshotNode]:
    """The widget in the window that an event tells; None where it is not there, or no window is told."""
    return None if event.tree is None else next((node for node in event.tree.walk() if node.ref == ref), None)


def value_told(event: Event, ref: int) -> Optional[str]:
    """The value of a widget before an event; None where that does not tell it."""
    if event.previous is not None and event.previous[0] == ref:
        return _as_text(event.previous[1])
    if event.widget is not None and event.ref == ref:
        return _as_text(event.widget.get("value"))
    told = in_tree(event, ref)
    return None if told is None else _as_text(told.value)


def value_after(following: Optional[Event], ref: int) -> Optional[str]:
    """The text of a field as the event that follows tells it; None where it does not."""
    if following is None:
        return None
    if following.ref == ref and following.kind in ("key", "text"):
        return _as_text(following.value)
    told = value_told(following, ref)
    return None if told is None or told.endswith("…") else told


def value_later(following: Iterable[Event], ref: int) -> Optional[str]:
    """The value of a widget as the first of some events tells it that does; None where none does."""
    return next((told for event in following if (told := value_after(event, ref)) is not None), None)


def sending_return(run: List[Event], after: Optional[str]) -> Optional[int]:
    """The number of the first Return in a run of keys that has sent the text off, as in a console, and begun no new line.

    Args:
        run: the keys that a field got.
        after: the text of the field after them; None where that is not known.
    """
    values: List[Optional[str]] = [*(_as_text(event.value) for event in run[1:]), after]
    for number, (event, then) in enumerate(zip(run, values)):
        if event.key != "Return" or then is not None and then.endswith("…"):
            continue
        if then is None or then.count("\n") <= _as_text(event.value).count("\n"):
            return number
    return None


def text_after(run: List[Event], following: Optional[Event], told: Optional[str]) -> Optional[str]:
    """The text of a field after a run of keys.

    Args:
        run: the keys that it got.
        following: the next event for the same field, which tells its value before; None where there is none.
        told: what it held later, where something tells that.

    Returns None where nobody can know it, since the caret was moved at last.
    """
    if following is not None and following.kind in ("key", "text"):
        return _as_text(following.value)
    if told is not None and not told.endswith("…"):
        return told
    last = run[-1]
    is_replaced = len(run) > 1 and run[-2].key == "Ctrl+A"
    value = "" if is_replaced else _as_text(last.value)
    if is_text(last):
        return value + last.text
    if last.key == "Return":
        return value + "\n"
    if last.key == "Backspace":
        return value[:-1]
    return None if last.key in ("Del", "Ctrl+V", "Ctrl+X", "Ctrl+Z", "Ctrl+Y", "Up", "Down") else value


def _as_text(value: "str | int | float | None") -> str:
    return "" if value is None else str(value)
