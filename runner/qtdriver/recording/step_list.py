"""The steps of a recording while they are made."""

from __future__ import annotations

from typing import List, Optional, Tuple

from .events import Event
from .mouse_places import unplayed_modifiers
from .names import Names
from .steps import Argument, Step


class StepList:
    """Steps, each with its origin: the kind of gesture, and the number of the widget.

    Attributes:
        steps: all of them, in order.
    """

    def __init__(self, app: str, names: Names) -> None:
        self.steps: List[Step] = []
        self._origins: List[Tuple[str, int]] = []
        self._app = app
        self._names = names

    def add(
        self,
        event: Event,
        origin: str,
        method: str,
        *arguments: Argument,
        part: str = "",
        **keywords: Argument,
    ) -> None:
        """Adds a call on the widget of an event, or on its part; where nothing names that, a comment that says so."""
        window, widget = self._names.window(event.window), self._names.widget(event.window, event.ref)
        comment = unplayed_modifiers(event)
        if window is not None and widget is not None:
            call = ".".join(filter(None, [widget, part]))
            step = Step(self._app, window, call, method, arguments, keywords, comment=comment)
        else:
            node = self._names.nodes.get(event.ref)
            role = node.role if node is not None else "widget"
            step = self.comment(f"{method}() on a {role} that no locator finds alone")
        self.append(step, origin, event.ref)

    def append(self, step: Step, origin: str, ref: int) -> None:
        """Adds a step that has been made."""
        self.steps.append(step)
        self._origins.append((origin, ref))

    def comment(self, text: str) -> Step:
        """A line that says what was not recorded."""
        return Step(self._app, "", "", "", comment=f"not recorded: {text}")

    def drop_last(self, origin: str, ref: int) -> Optional[Step]:
        """Removes the last step where it has this origin. Returns it, None where it has another one."""
        if not self.is_last(origin, ref):
            return None
        self._origins.pop()
        return self.steps.pop()

    def is_last(self, origin: str, ref: int) -> bool:
        """Whether the last step has this origin."""
        return bool(self._origins) and self._origins[-1] == (origin, ref)

    def settle_click(self) -> None:
        """A click that is the last step has not opened what comes now."""
        if self._origins and self._origins[-1][0] == "click":
            self._origins[-1] = ("settled click", self._origins[-1][1])
