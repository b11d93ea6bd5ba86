"""A widget that a locator finds."""

from __future__ import annotations

from typing import TYPE_CHECKING, Optional

from ..lookup.stable_locators import count_of
from ..protocol.locators import Locator
from .widget import Widget

if TYPE_CHECKING:
    from .window import Window

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own


class FoundWidget(Widget):
    """A widget that a locator finds. Each call finds it anew, and waits until it is visible and the only one.

    Attributes:
        locator: the locator.
    """

    def __init__(self, window: "Window", locator: Locator, *, as_class: str = "") -> None:
        super().__init__(window, locator, as_class=as_class)
        self.locator = locator

    def nth(self, number: int) -> "FoundWidget":
        """One of several, in the order in which the window has them.

        Args:
            number: counts from 0.

        Raises ValueError for a negative number, and where the locator has a position already.
        """
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
        """How many visible widgets fit now. Waits for the window only, `timeout` seconds at most."""
        connection, address = self.window.app.connection, self.window.address
        return self.window.perform(
            f"{self.call()}.count()", lambda: count_of(connection, address, self.locator), timeout=timeout
        )
