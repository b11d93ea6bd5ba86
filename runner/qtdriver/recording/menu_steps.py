"""Choices in menus, as steps."""

from __future__ import annotations

from typing import Optional

from ..protocol.locators import as_python
from .events import Event, EventItem
from .names import Names
from .parts import part_of
from .step_list import StepList
from .steps import Step

_MENU_KEYS = ("Menu", "Shift+F10")


class MenuSteps:
    """Adds the steps of menus: each entry with what has opened its menu."""

    def __init__(self, app: str, made: StepList, names: Names) -> None:
        self._app = app
        self._made = made
        self._names = names
        self._right_click: Optional[Event] = None

    def remember(self, press: Event) -> None:
        """A right click, or a key for the context menu, which is a step of its own where no entry follows."""
        self._right_click = press

    def open_by_key(self, event: Event) -> None:
        """A context menu that a key has opened: a test opens it by the mouse."""
        self.end_right_click()
        before = self._made.drop_last("key", event.ref)
        keys = () if before is None else before.arguments
        kept = keys[:-1] if keys and keys[-1] in _MENU_KEYS else keys  # Qt 4 tells the key before
        if kept:
            self._made.add(event, "key", "press", *kept)
        self.remember(event)

    def end_right_click(self) -> None:
        """Adds a right click that has opened no menu, or one that was closed."""
        press, self._right_click = self._right_click, None
        node = None if press is None else self._names.nodes.get(press.ref)
        if press is not None and node is not None:
            self._made.add(press, "right click", "right_click", part=part_of(press, node) or "")

    def choose(self, item: EventItem) -> None:
        """Adds the choice of an entry."""
        if item.opener is None or item.window is None:
            self._choose_from_context_menu(item)
            return
        opener = Event("action", item.opener, item.window)
        node = self._names.nodes.get(item.opener)
        call = f"menu({as_python('/'.join(item.path))})"
        if node is not None and node.role != "menu bar":
            self._made.drop_last("click", item.opener)
            self._made.add(opener, "menu", "choose", part=call)
            return
        steps = self._made.steps
        if steps and steps[-1].method == "press" and str(steps[-1].arguments[0]).startswith("Alt+"):
            self._made.drop_last("shortcut", item.window)
        window = self._names.window(item.window)
        if window is not None:
            self._made.append(Step(self._app, window, call, "choose"), "menu", item.opener)

    def _choose_from_context_menu(self, item: EventItem) -> None:
        press, self._right_click = self._right_click, None
        node = None if press is None else self._names.nodes.get(press.ref)
        path = "/".join(item.path)
        if press is None or node is None:
            told = self._made.comment(
                f"the choice of {as_python(path)} in a menu that nothing tells the opener of"
            )
            self._made.append(told, "menu", 0)
            return
        part = ".".join(filter(None, [part_of(press, node), f"context_menu({as_python(path)})"]))
        self._made.add(press, "menu", "choose", part=part)
