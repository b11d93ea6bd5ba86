"""The events that an agent has recorded, as objects."""

from __future__ import annotations

from dataclasses import dataclass, field
from typing import Any, Mapping, Optional, Tuple

from ..errors import ProtocolError
from ..lookup.snapshot import SnapshotNode


@dataclass(frozen=True)
class EventItem:
    """The row, cell, tab, section or entry of a menu at the place of an event.

    Attributes:
        path: the texts from the outermost one, of a row in a tree and of an entry of a menu.
        text: its own text.
        row, column: its place in the model, from 0; None where it has none.
        headers: the texts of the headers of its row and its column, in a table.
        section, orientation: those of a section of a header.
        is_at_edge: whether the place is where a drag changes the width or height of the section.
        check: "checked", "unchecked" or "partly checked" where the place is on its check box.
        branch: "open" or "closed" where the place is on the arrow beside it in a tree.
        beside: the texts of the tabs before and after a tab that was dragged.
        within: the place in it at the end of a drag, in percent of its width and height.
        opener, window: the numbers of the menu bar or button that opens the outermost menu, and of the window of that; None
            for a context menu.
        is_menu: whether it opens a menu.
    """

    path: Tuple[str, ...] = ()
    text: str = ""
    row: Optional[int] = None
    column: Optional[int] = None
    headers: Tuple[str, ...] = ()
    section: Optional[int] = None
    orientation: str = ""
    opener: Optional[int] = None
    window: Optional[int] = None
    is_menu: bool = False
    is_at_edge: bool = False
    check: str = ""
    branch: str = ""
    beside: Tuple[str, ...] = ()
    within: Optional[Tuple[int, int]] = None

    @property
    def is_entry(self) -> bool:
        """Whether it is an entry of a menu or a menu bar."""
        return bool(self.path) and self.row is None

    def is_same(self, other: "Optional[EventItem]") -> bool:
        """Whether both are one item of the same widget."""
        names = ("path", "text", "row", "column", "section")
        return other is not None and all(getattr(self, name) == getattr(other, name) for name in names)


@dataclass(frozen=True)
class Event:
    """Something that a user has done, or that the application has made of it.

    Attributes:
        kind: "press", "release", "double click", "wheel", "key", "text", "shortcut", "action", "drop", "drag end" (of one that
            nothing took), "context menu" (by a key), "focus", "shown", "close" (by its frame), "closed"; "window" for one
            that was there when the recording began; "last" for what a widget holds now, and "over" for the end of a drag.
        ref, window: the reference numbers of the widget and its window.
        time: milliseconds since the recording began.
        at, size: the place in the widget, and its width and height, in pixels.
        button: "left", "right", "middle" or "other".
        modifiers: of "Ctrl", "Shift", "Alt", "Meta".
        angle: that of a wheel, horizontally and vertically; 120 is a step to the left or upwards.
        key, text: those of a key.
        value: the field's before a key; None where it holds none.
        is_hidden: whether the field hides its text, which is not told.
        is_in_list: whether the place is in the open list of a combo box, or the key was for that.
        item: the item there.
        over: the end of a drag, for a release; None where no widget of the application is.
        tree: the window before the event, where it is told.
        widget: what the widget tells of itself before the event, by the names of a snapshot, where the window is not told.
        previous: the number of the widget that had the last input before, and what it holds now; None where it is the same one.
        class_name, name, title, is_modal: those of a window that is shown.
    """

    kind: str
    ref: int
    window: int
    time: int = 0
    at: Tuple[int, int] = (0, 0)
    size: Tuple[int, int] = (0, 0)
    button: str = ""
    modifiers: Tuple[str, ...] = ()
    angle: Tuple[int, int] = (0, 0)
    key: str = ""
    text: str = ""
    value: "str | int | float | None" = None
    is_hidden: bool = False
    is_in_list: bool = False
    item: Optional[EventItem] = None
    over: "Optional[Event]" = None
    tree: Optional[SnapshotNode] = field(default=None, repr=False, compare=False)
    widget: Optional[Mapping[str, Any]] = field(default=None, repr=False, compare=False)
    previous: "Optional[Tuple[int, str | int | float | None]]" = None
    class_name: str = ""
    name: str = ""
    title: str = ""
    is_modal: bool = False


@dataclass(frozen=True)
class Events:
    """A reply of the agent.

    Attributes:
        events: the oldest first.
        dropped: how many older ones were lost, since nobody had asked for them.
        is_recording: whether the agent still records.
        last: what the widget of the last input holds now, an event behind all others; None where nothing new is told.
    """

    events: Tuple[Event, ...]
    dropped: int
    is_recording: bool
    last: Optional[Event] = None


def parse_events(told: Mapping[str, Any]) -> Events:
    """The reply of Connection.events() as objects. Raises ProtocolError for anything else."""
    try:
        windows = (_window(SnapshotNode.of(tree)) for tree in told.get("windows", ()))
        events = (*windows, *map(_event, told["events"]))
        return Events(events, int(told["dropped"]), bool(told["recording"]), _last(told.get("last")))
    except (KeyError, TypeError, ValueError) as error:
        raise ProtocolError(f"not recorded events: {error!r}") from None


def _event(told: Mapping[str, Any]) -> Event:
    get = told.get
    return Event(
        kind=str(told["kind"]),
        ref=int(told["ref"]),
        window=int(told["window"]),
        time=int(get("time", 0)),
        at=_pair(get("at")),
        size=_pair(get("size")),
        button=get("button", ""),
        modifiers=tuple(get("modifiers", ())),
        angle=_pair(get("angle")),
        key=get("key", ""),
        text=get("text", ""),
        value=get("value"),
        is_hidden=get("hidden", False),
        is_in_list=get("list", False),
        item=_item(told["item"]) if "item" in told else None,
        over=_event({"kind": "over", **told["over"]}) if "over" in told else None,
        tree=SnapshotNode.of(told["tree"]) if "tree" in told else None,
        widget=dict(told["widget"]) if "widget" in told else None,
        previous=_previous(get("previous")),
        class_name=get("class", ""),
        name=get("name", ""),
        title=get("title", ""),
        is_modal=get("modal", False),
    )


def _window(tree: SnapshotNode) -> Event:
    return Event("window", tree.ref, tree.ref, tree=tree)


def _last(told: Any) -> Optional[Event]:
    return None if told is None else Event("last", int(told["ref"]), 0, previous=_previous(told))


def _pair(told: Any) -> Tuple[int, int]:
    if told is None:
        return 0, 0
    first, second = told
    return int(first), int(second)


def _previous(told: Any) -> "Optional[Tuple[int, str | int | float | None]]":
    return None if told is None else (int(told["ref"]), told.get("value"))


def _item(told: Mapping[str, Any]) -> EventItem:
    get = told.get
    return EventItem(
        path=tuple(get("path", ())),
        text=get("text", ""),
        row=get("row"),
        column=get("column"),
        headers=tuple(get("headers", ())),
        section=get("section"),
        orientation=get("orientation", ""),
        opener=get("opener"),
        window=get("window"),
        is_menu=get("menu", False),
        is_at_edge=get("edge", False),
        check=get("check", ""),
        branch=get("branch", ""),
        beside=tuple(get("beside", ())),
        within=_pair(told["within"]) if "within" in told else None,
    )
