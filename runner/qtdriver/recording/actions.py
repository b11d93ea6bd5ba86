"""The input of a user as the steps of a test."""

from __future__ import annotations

from dataclasses import replace
from typing import Dict, List, Optional, Sequence, Set, Tuple, Union

from ..lookup.snapshot import SnapshotNode
from .choosing import choice_told, last_choice, makes_choice, typed_in
from .dragging import drag_step
from .edited_items import with_edited_items
from .events import Event, EventItem
from .file_dialogs import with_files
from .menu_steps import MenuSteps
from .mouse_places import (
    NEVER_DRAGGED,
    PASSIVE,
    VIEWS,
    chooses_in_list,
    is_click,
    modifier_of,
    share_of,
    turn_of,
    unplayed_modifiers,
)
from .names import Names
from .parts import holder_of, part_of
from .step_list import StepList
from .steps import Argument, Secret, Step
from .typing_runs import (
    FIELDS,
    edits,
    is_editable,
    is_text,
    sending_return,
    text_after,
    value_after,
    value_later,
    value_told,
)

_SCROLLED = ("list", "tree", "table", "view", "scroll area", "scroll bar", "edit")
"""The wheel only scrolls these: a test finds what is out of sight by itself."""
_BUTTONS = ("button", "radio button", "checkbox")
_LISTS = ("ListView", "QComboBoxPrivateContainer")
"""The classes of windows with a list of completions, or that of a combo box."""


Recorded = Union[Event, Step]
"""An event, or a step that was made between two events, such as a check."""


def steps_of(app: str, events: Sequence[Recorded], names: Optional[Names] = None) -> List[Step]:
    """The steps that do what a user did.

    Args:
        app: the name of the application, as its Launch has it.
        events: all of a recording, the oldest first; those of several replies one after the other. It may be called
            again with more of them: what was a step stays one, but for the last ones, which the next events can complete.
            Steps among them stay as they are.
        names: makes the addresses of windows and widgets. By default those of Names, which nobody has checked.

    Returns the steps. Input that no address is found for is left out.
    """
    builder = _StepBuilder(app, events, names or Names())
    return with_edited_items(with_files(builder.build()))


def _stays_within(press: Event, release: Event, node: SnapshotNode) -> bool:
    """Whether a press that was moved is a click all the same, since it was let go on the same button or item."""
    if release.over is None or release.over.ref != press.ref:
        return False
    item = press.item
    return (
        node.role in _BUTTONS or item is not None and not item.is_at_edge and item.is_same(release.over.item)
    )


class _StepBuilder:
    """Builds the steps from events, one after the other."""

    def __init__(self, app: str, events: Sequence[Recorded], names: Names) -> None:
        self._app = app
        self._made = StepList(app, names)
        self._add, self._drop_last = self._made.add, self._made.drop_last
        self._events = [event for event in events if isinstance(event, Step) or event.kind != "focus"]
        self._names = names
        self._press: Optional[Event] = None
        self._menus = MenuSteps(app, self._made, names)
        self._run: List[Event] = []
        self._secrets: Dict[int, Secret] = {}
        self._lists: Set[int] = set()  # of completions, which get the keys of a field while they are open

    def build(self) -> List[Step]:
        handlers = {
            "press": self._handle_press,
            "release": self._handle_release,
            "double click": self._handle_double_click,
            "drop": self._handle_drop,
            "drag end": lambda event: self._end_drag(),
            "wheel": self._handle_wheel,
            "key": self._handle_key,
            "text": self._handle_key,
            "shortcut": self._handle_shortcut,
            "action": lambda event: None if event.item is None else self._menus.choose(event.item),
            "context menu": self._menus.open_by_key,
            "close": self._handle_close,
        }
        for number, event in enumerate(self._events):
            if isinstance(event, Step):
                self._handle_step(event, number)
                continue
            event = self._for_field(event)
            if self._run and not self._continues(event):
                self._end_run(number)
            self._names.learn(event)
            if event.kind in handlers:
                handlers[event.kind](event)
        self._end_run(len(self._events))
        self._menus.end_right_click()
        return self._made.steps

    def _handle_step(self, step: Step, number: int) -> None:
        self._end_run(number)
        self._menus.end_right_click()
        self._press = None
        self._made.append(step, "step", 0)

    def _events_from(self, number: int) -> List[Event]:
        return [event for event in self._events[number:] if isinstance(event, Event)]

    # The mouse

    def _handle_press(self, event: Event) -> None:
        if event.item is None or not event.item.is_entry:
            self._menus.end_right_click()
            self._made.settle_click()
        self._end_drag()
        self._press = event

    def _end_drag(self) -> None:
        """Drag and drop has kept the release, and nothing has taken what was dragged."""
        press, self._press = self._press, None
        node = None if press is None else self._names.nodes.get(press.ref)
        if press is not None and press.item is not None and node is not None and node.role in VIEWS:
            self._drag(press, None)

    def _handle_release(self, event: Event) -> None:
        press, self._press = self._press, None
        if event.is_in_list:
            node = self._names.nodes.get(event.ref)
            if press is not None and node is not None and node.role == "date edit":
                self._step_value(press, node)
            elif event.item is not None and press is not None and chooses_in_list(press, event):
                self._drop_last("select", event.ref)
                self._add(event, "select", "select", event.item.text)
            return
        if press is not None and press.button == event.button == "right" and press.ref != event.ref:
            self._menus.remember(press)  # its menu is open already
        if press is None or (press.ref, press.button) != (event.ref, event.button):
            return
        if press.item is not None and press.item.is_entry:
            return  # told by its action
        node = self._names.nodes.get(press.ref)
        if node is None:
            return
        if node.role == "slider":
            self._set_slider(press)
        elif is_click(press, event) and event.over is None or _stays_within(press, event, node):
            self._click(press, node)
        elif node.role not in (*NEVER_DRAGGED, *_BUTTONS):
            self._drag(press, event.over)

    def _handle_close(self, event: Event) -> None:
        title = self._names.window(event.ref) or "a window"
        self._made.append(self._made.comment(f"{title} was closed by its frame"), "close", event.ref)

    def _handle_drop(self, event: Event) -> None:
        press, self._press = self._press, None
        if press is not None:
            self._drag(press, event)
            return
        target = self._names.widget(event.window, event.ref) or "a widget"
        told = self._made.comment(f"what was dropped from another application, on {target}")
        self._made.append(told, "drag", event.ref)

    def _drag(self, press: Event, end: Optional[Event]) -> None:
        self._made.append(drag_step(self._app, press, end, self._names), "drag", press.ref)

    def _click(self, press: Event, node: SnapshotNode) -> None:
        if press.button == "right":
            self._menus.remember(press)
            return
        keywords = modifier_of(press)
        button: Tuple[Argument, ...] = () if press.button == "left" else (press.button,)
        is_plain = press.button == "left" and not keywords
        part = part_of(press, node)
        if part is not None:
            self._click_item(press, node, part, is_plain, button, keywords)
        elif node.role == "checkbox" and is_plain and "partly checked" not in node.states:
            self._add(press, "click", "uncheck" if "checked" in node.states else "check")
        elif node.role == "group" and is_plain and press.item is not None and press.item.check:
            self._use_part_of_item(press, "", press.item)
        elif node.role in ("spin box", "date edit") and is_plain:
            self._step_value(press, node)
        elif node.role in _BUTTONS or not is_plain:
            self._add(press, "click", "click", *button, part="", **keywords)
        elif node.role not in (*PASSIVE, *FIELDS, "menu bar"):
            self._add(press, "click", "click", at=share_of(press))

    def _click_item(
        self,
        press: Event,
        node: SnapshotNode,
        part: str,
        is_plain: bool,
        button: Tuple[Argument, ...],
        keywords: Dict[str, Argument],
    ) -> None:
        item = press.item
        if is_plain and item is not None and (item.check or item.branch or item.is_at_edge):
            self._use_part_of_item(press, part, item)
        elif is_plain and node.role in ("list", "tree") and press.item is not None:
            self._add(press, "click", "select", "/".join(press.item.path))
        elif node.role == "tab bar":
            window = self._names.window(press.window)
            if window is not None:
                comment = unplayed_modifiers(press)
                step = Step(self._app, window, part, "click", button, keywords, comment=comment)
                self._made.append(step, "click", press.ref)
        else:
            self._add(holder_of(press, node, self._names), "click", "click", *button, part=part, **keywords)

    def _use_part_of_item(self, press: Event, part: str, item: EventItem) -> None:
        """A click on the check box of an item, on the arrow that opens it, or on the edge of a section, which does nothing."""
        if item.check:
            self._add(press, "check", "uncheck" if item.check == "checked" else "check", part=part)
        elif item.branch:
            self._add(press, "branch", "press", "Left" if item.branch == "open" else "Right", part=part)

    def _handle_double_click(self, event: Event) -> None:
        self._press = None
        self._drop_last("click", event.ref)
        node = self._names.nodes.get(event.ref)
        if node is not None and node.role not in (*FIELDS, "scroll bar"):
            part = part_of(event, node)
            place: Dict[str, Argument] = {} if part or node.role != "widget" else {"at": share_of(event)}
            place.update(modifier_of(event))
            self._add(event, "double click", "double_click", part=part or "", **place)

    def _value_after(self, press: Event) -> Optional[str]:
        number = next(n for n, event in enumerate(self._events) if event is press)
        return value_later(self._events_from(number + 1), press.ref)

    def _step_value(self, press: Event, node: SnapshotNode) -> None:
        """Adds the value that an arrow of a field, or its calendar, has made."""
        value = self._value_after(press)
        if value is not None and value != str(node.value):
            self._fill(press, value)

    def _set_slider(self, press: Event) -> None:
        value = self._value_after(press)
        if value:
            self._add(press, "slider", "select", int(value))

    def _handle_wheel(self, event: Event) -> None:
        node = self._names.nodes.get(event.ref)
        if node is None or node.role in _SCROLLED:
            return
        turn = turn_of(event)
        if turn is None:
            return
        word, steps = turn
        modifier = modifier_of(event)
        origin = f"wheel {word} {modifier}"
        before = self._drop_last(origin, event.ref)
        turned = 0 if before is None or word not in before.keywords else int(str(before.keywords[word]))
        keywords: Dict[str, Argument] = {word: steps + turned, **modifier}
        self._add(event, origin, "wheel", part="", **keywords)

    # The keyboard

    def _for_field(self, event: Event) -> Event:
        """A key that an open list of completions got, as one of its field, to which the list hands it on."""
        if event.kind == "shown" and event.class_name.endswith(_LISTS):
            self._lists.add(event.ref)
        if not self._run or event.kind not in ("key", "text") or event.ref not in self._lists:
            return event
        field = self._run[0]
        return replace(event, ref=field.ref, window=field.window, value=text_after(self._run, None, None))

    def _continues(self, event: Event) -> bool:
        if event.ref in self._lists and event.kind in ("shown", "closed"):
            return True
        node = self._names.nodes.get(self._run[0].ref)
        is_key = event.kind in ("key", "text") and event.ref == self._run[0].ref
        return is_key and node is not None and (edits(event, node) if node.role in FIELDS else is_text(event))

    def _handle_key(self, event: Event) -> None:
        node = self._names.nodes.get(event.ref)
        if node is None:
            return  # in a menu, or an open list: their actions are told
        self._menus.end_right_click()
        is_field = node.role in FIELDS
        if edits(event, node) if is_field else is_text(event):
            self._run.append(event)
        elif not (is_field and event.key in ("Tab", "Shift+Tab", "Backtab", "Shift+Backtab")) and event.key:
            self._press_key(event, event.key)

    def _press_key(self, event: Event, key: str) -> None:
        before = self._drop_last("key", event.ref)
        self._add(event, "key", "press", *(before.arguments if before is not None else ()), key)

    def _end_run(self, number: int) -> None:
        """Adds what the keys until an event have entered."""
        run, self._run = self._run, []
        if not run:
            return
        first = run[0]
        node = self._names.nodes[first.ref]
        if node.role not in FIELDS:
            self._type(run)
            return
        if node.role == "combo box":
            run = self._choose(run, node, number)
            if not run:
                return
        if any(event.is_hidden for event in run):
            secret = self._secrets.setdefault(first.ref, Secret(len(self._secrets) + 1))
            self._add(first, "fill", "fill", secret)
            return
        following = self._events_from(number)[:1]
        sent = sending_return(run, value_after(following[0] if following else None, first.ref))
        if sent is not None:
            if sent > 0:
                self._fill(first, str(run[sent].value or ""))
            self._press_key(first, "Return")
            self._run = run[sent + 1 :]
            self._end_run(number)
            return
        same = following[0] if following and following[0].ref == first.ref else None
        told = value_told(following[0], first.ref) if following else None
        text = text_after(run, same, told)
        if text is None and not any(map(is_text, run)):
            return
        self._fill(
            first, text if text is not None else "".join(event.text for event in run if is_text(event))
        )

    def _fill(self, event: Event, text: str) -> None:
        self._drop_last("fill", event.ref)
        method = "enter" if self._names.nodes[event.ref].role == "date edit" else "fill"
        self._add(event, "fill", method, text)

    def _type(self, run: List[Event]) -> None:
        """Adds the characters that something else than a field got; blanks press a button, or the check box of an item."""
        typed = "".join(event.text for event in run)
        if not typed.isspace():
            self._add(run[0], "type", "type", typed)
            return
        for event in run:
            self._press_key(event, "Space")

    def _choose(self, run: List[Event], node: SnapshotNode, number: int) -> List[Event]:
        """Adds what keys have chosen in a combo box; where nothing tells it, the keys. Returns those that type a text after it."""
        ref, chosen = node.ref, last_choice(run)
        if is_editable(node) and chosen is None:
            return typed_in(run)
        if not makes_choice(run):
            return []
        typed = typed_in(run[chosen + 1 :]) if is_editable(node) and chosen is not None else []
        told = str(typed[0].value or "") if typed else choice_told(self._events_from(number), ref)
        if told is not None:
            self._drop_last("select", ref)
            self._add(run[0], "select", "select", told)
        else:
            for event in run:
                if event.key:
                    self._press_key(event, event.key)
        return typed

    def _handle_shortcut(self, event: Event) -> None:
        self._menus.end_right_click()
        window = self._names.window(event.window)
        if event.key and window is not None:
            self._made.append(Step(self._app, window, "", "press", (event.key,)), "shortcut", event.window)
