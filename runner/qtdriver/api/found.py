"""A widget that a locator finds."""

from __future__ import annotations

import re
from typing import TYPE_CHECKING, Optional

from ..errors import AmbiguousError, NotVisibleError, WidgetNotFoundError
from ..protocol.locators import Locator
from .widget import Widget

if TYPE_CHECKING:
    from .window import Window

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_COUNT = re.compile(r"visible,(\d+)$")


class FoundWidget(Widget):
    """A widget that a locator finds. Each call finds it anew, and waits until it is visible and the only one.

    Attributes:
        locator: the locator.
    """

    def __init__(self, window: "Window", locator: Locator, *, as_class: str = "") -> None:
        super().__init__(window, locator, as_class=as_class)
        self.locator = locator

    def nth(self, number: int) -> "FoundWidget":
        """One of several, in the order in which the window has them; `number` counts from 0."""
        if number < 0:
            raise ValueError(f"{number} is no number here: the first one is 0")
        return FoundWidget(
            self.window, self.locator.at(f"nth={number}", f"nth({number})"), as_class=self.as_class
        )

    def first(self) -> "FoundWidget":
        """The first of several."""
        return FoundWidget(self.window, self.locator.at("first", "first()"), as_class=self.as_class)

    def last(self) -> "FoundWidget":
        """The last of several."""
        return FoundWidget(self.window, self.locator.at("last", "last()"), as_class=self.as_class)

    def within(self, outer: Widget) -> "FoundWidget":
        """The same widget, but looked for within another one: find("QLabel").within(window.widget("form"))."""
        return FoundWidget(self.window, self.locator.within(outer.as_locator()), as_class=self.as_class)

    def count(self, *, timeout: Optional[float] = None) -> int:
        """How many visible widgets fit now. Waits for the window only."""

        def look() -> int:
            try:
                self.window.app.connection.read(self.window.address, self.locator, "className")
            except (WidgetNotFoundError, NotVisibleError):
                return 0
            except AmbiguousError as error:
                match = _COUNT.search(error.message)
                return int(match[1]) if match else 2
            return 1

        return self.window.perform(f"{self.call()}.count()", look, timeout=timeout)
