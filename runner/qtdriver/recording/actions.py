"""The input of a user as the steps of a test."""

from __future__ import annotations

from dataclasses import replace
from typing import Dict, List, Optional, Sequence, Set, Tuple, Union

from ..lookup.snapshot import SnapshotNode
from ..protocol.locators import as_python
from .events import Event, EventItem
from .file_dialogs import with_files
from .mouse_places import (
    NEVER_DRAGGED,
    PASSIVE,
    VIEWS,
    chooses_in_list,
    is_click,
    modifier_of,
    share_of,
    unplayed_modifiers,
)
from .names import Names
from .parts import part_of
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
_WHEEL_STEP = 120


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
    return with_files(builder.build())


class _StepBuilder:
    """Builds the steps from events, one after the other."""

    def __init__(self, app: str, events: Sequence[Recorded], names: Names) -> None:
        self._app = app
        self._events = [event for event in events if isinstance(event, Step) or event.kind != "focus"]
        self._names = names
        self._steps: List[Step] = []
        self._origins: List[Tuple[str, int]] = []  # of each step: the kind of gesture, and the widget
        self._press: Optional[Event] = None
        self._right_click: Optional[Event] = None
        self._run: List[Event] = []
        self._secrets: Dict[int, Secret] = {}
        self._lists: Set[int] = set()  # of completions, which get the keys of a field while they are open

    def build(self) -> List[Step]:
        handlers = {
            "press": self._handle_press,
            "release": self._handle_release,
            "double click": self._handle_double_click,
            "wheel": self._handle_wheel,
            "key": self._handle_key,
            "text": self._handle_key,
            "shortcut": self._handle_shortcut,
            "action": self._handle_action,
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
        self._end_right_click()
        return self._steps

    def _add(
        self,
        event: Event,
        origin: str,
        method: str,
        *arguments: Argument,
        part: str = "",
        **keywords: Argument,
    ) -> None:
        window, widget = self._names.window(event.window), self._names.widget(event.window, event.ref)
        if window is None or widget is None:
            return
        call = ".".join(filter(None, [widget, part]))
        comment = unplayed_modifiers(event)
        self._steps.append(Step(self._app, window, call, method, arguments, keywords, comment=comment))
        self._origins.append((origin, event.ref))

    def _handle_step(self, step: Step, number: int) -> None:
        self._end_run(number)
        self._end_right_click()
        self._press = None
        self._steps.append(step)
        self._origins.append(("step", 0))

    def _drop_last(self, origin: str, ref: int) -> None:
        if self._origins and self._origins[-1] == (origin, ref):
            self._steps.pop()
            self._origins.pop()

    def _events_from(self, number: int) -> List[Event]:
        return [event for event in self._events[number:] if isinstance(event, Event)]

    # The mouse

    def _handle_press(self, event: Event) -> None:
        if event.item is None or not event.item.is_entry:
            self._end_right_click()
        before, self._press = self._press, event
        node = None if before is None else self._names.nodes.get(before.ref)
        if before is not None and before.item is not None and node is not None and node.role in VIEWS:
            self._note_drag(before, node)  # drag and drop has kept the release

    def _handle_release(self, event: Event) -> None:
        press, self._press = self._press, None
        if event.is_in_list:
            if event.item is not None and press is not None and chooses_in_list(press, event):
                self._add(event, "select", "select", event.item.text)
            return
        if press is not None and press.button == event.button == "right" and press.ref != event.ref:
            self._right_click = press  # its menu is open already
        if press is None or (press.ref, press.button) != (event.ref, event.button):
            return
        if press.item is not None and press.item.is_entry:
            return  # told by its action
        node = self._names.nodes.get(press.ref)
        if node is None:
            return
        if node.role == "slider":
            self._set_slider(press)
        elif is_click(press, event):
            self._click(press, node)
        elif node.role not in (*NEVER_DRAGGED, *_BUTTONS):
            self._note_drag(press, node)

    def _note_drag(self, press: Event, node: SnapshotNode) -> None:
        """Adds a comment: where the mouse has let go, in which item or between which, is not told."""
        holder = self._holder(press, node)
        widget = self._names.widget(holder.window, holder.ref)
        call = ".".join(filter(None, [widget, part_of(press, node)])) or node.role
        self._steps.append(
            Step(self._app, "", "", "", comment=f"not recorded: a drag with the mouse, from {call}")
        )
        self._origins.append(("drag", press.ref))

    def _click(self, press: Event, node: SnapshotNode) -> None:
        if press.button == "right":
            self._right_click = press
            return
        keywords = modifier_of(press)
        button: Tuple[Argument, ...] = () if press.button == "left" else (press.button,)
        is_plain = press.button == "left" and not keywords
        part = part_of(press, node)
        if part is not None:
            self._click_item(press, node, part, is_plain, button, keywords)
        elif node.role == "checkbox" and is_plain and "partly checked" not in node.states:
            self._add(press, "click", "uncheck" if "checked" in node.states else "check")
        elif node.role in ("spin box", "date edit") and is_plain:
            value = self._value_after(press)
            if value is not None and value != str(node.value):  # by an arrow
                self._fill(press, value)
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
        if is_plain and node.role in ("list", "tree") and press.item is not None:
            self._add(press, "click", "select", "/".join(press.item.path))
        elif node.role == "tab bar":
            window = self._names.window(press.window)
            if window is not None:
                comment = unplayed_modifiers(press)
                self._steps.append(Step(self._app, window, part, "click", button, keywords, comment=comment))
                self._origins.append(("click", press.ref))
        else:
            self._add(self._holder(press, node), "click", "click", *button, part=part, **keywords)

    def _holder(self, press: Event, node: SnapshotNode) -> Event:
        """The event for the view that a header is of."""
        around = self._names.parent(node.ref) if node.role == "header" else None
        return press if around is None else replace(press, ref=around.ref)

    def _handle_double_click(self, event: Event) -> None:
        self._press = None
        self._drop_last("click", event.ref)
        node = self._names.nodes.get(event.ref)
        if node is not None and node.role not in (*FIELDS, "scroll bar"):
            part = part_of(event, node)
            place: Dict[str, Argument] = {} if part or node.role != "widget" else {"at": share_of(event)}
            place.update(modifier_of(event))
            self._add(event, "double click", "double_click", part=part or "", **place)

    def _end_right_click(self) -> None:
        press, self._right_click = self._right_click, None
        node = None if press is None else self._names.nodes.get(press.ref)
        if press is not None and node is not None:
            self._add(press, "right click", "right_click", part=part_of(press, node) or "")

    def _value_after(self, press: Event) -> Optional[str]:
        number = next(n for n, event in enumerate(self._events) if event is press)
        return value_later(self._events_from(number + 1), press.ref)

    def _set_slider(self, press: Event) -> None:
        value = self._value_after(press)
        if value:
            self._add(press, "slider", "select", int(value))

    def _handle_wheel(self, event: Event) -> None:
        node = self._names.nodes.get(event.ref)
        if node is None or node.role in _SCROLLED:
            return
        horizontal, vertical = event.angle[0] // _WHEEL_STEP, event.angle[1] // _WHEEL_STEP
        if not horizontal and not vertical:
            return
        word, steps = (
            ("up" if vertical > 0 else "down", abs(vertical))
            if vertical
            else ("left" if horizontal > 0 else "right", abs(horizontal))
        )
        before = 0
        modifier = modifier_of(event)
        if self._origins and self._origins[-1] == (f"wheel {word} {modifier}", event.ref):
            before = int(str(self._steps[-1].keywords[word]))
            self._drop_last(f"wheel {word} {modifier}", event.ref)
        keywords: Dict[str, Argument] = {word: steps + before, **modifier}
        self._add(event, f"wheel {word} {modifier}", "wheel", part="", **keywords)

    # The keyboard

    def _for_field(self, event: Event) -> Event:
        """A key that an open list of completions got, as one of its field, to which the list hands it on."""
        if event.kind == "shown" and event.class_name.endswith("ListView"):
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
        self._end_right_click()
        is_field = node.role in FIELDS
        if edits(event, node) if is_field else is_text(event):
            self._run.append(event)
        elif not (is_field and event.key in ("Tab", "Shift+Tab", "Backtab", "Shift+Backtab")) and event.key:
            self._press_key(event, event.key)

    def _press_key(self, event: Event, key: str) -> None:
        if self._origins and self._origins[-1] == ("key", event.ref):
            keys = (*self._steps[-1].arguments, key)
            self._drop_last("key", event.ref)
            self._add(event, "key", "press", *keys)
        else:
            self._add(event, "key", "press", key)

    def _end_run(self, number: int) -> None:
        """Adds what the keys until an event have entered."""
        run, self._run = self._run, []
        if not run:
            return
        first = run[0]
        node = self._names.nodes[first.ref]
        if node.role not in FIELDS:
            self._add(first, "type", "type", "".join(event.text for event in run))
            return
        if node.role == "combo box" and not is_editable(node):
            self._choose(run, number)
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

    def _choose(self, run: List[Event], number: int) -> None:
        """Adds what keys have chosen in a combo box that takes no text; where nothing tells it, the keys themselves."""
        first = run[0]
        following = self._events_from(number)[:1]
        chosen = value_after(following[0] if following else None, first.ref)
        if chosen is None:
            for event in run:
                if event.key:
                    self._press_key(event, event.key)
            return
        self._drop_last("select", first.ref)
        self._add(first, "select", "select", chosen)

    def _handle_shortcut(self, event: Event) -> None:
        self._end_right_click()
        window = self._names.window(event.window)
        if event.key and window is not None:
            self._steps.append(Step(self._app, window, "", "press", (event.key,)))
            self._origins.append(("shortcut", event.window))

    # Menus

    def _handle_action(self, event: Event) -> None:
        item = event.item
        if item is None:
            return
        if item.opener is None or item.window is None:
            self._choose_from_context_menu(item)
            return
        opener = Event("action", item.opener, item.window)
        node = self._names.nodes.get(item.opener)
        if node is not None and node.role != "menu bar":
            self._drop_last("click", item.opener)
            self._add(opener, "menu", "choose", part=f"menu({as_python('/'.join(item.path))})")
            return
        if (
            self._steps
            and self._steps[-1].method == "press"
            and str(self._steps[-1].arguments[0]).startswith("Alt+")
        ):
            self._drop_last("shortcut", item.window)
        window = self._names.window(item.window)
        if window is not None:
            call = f"menu({as_python('/'.join(item.path))})"
            self._steps.append(Step(self._app, window, call, "choose"))
            self._origins.append(("menu", item.opener))

    def _choose_from_context_menu(self, item: EventItem) -> None:
        press, self._right_click = self._right_click, None
        node = None if press is None else self._names.nodes.get(press.ref)
        if press is not None and node is not None:
            menu = f"context_menu({as_python('/'.join(item.path))})"
            part = ".".join(filter(None, [part_of(press, node), menu]))
            self._add(press, "menu", "choose", part=part)
