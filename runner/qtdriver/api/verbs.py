"""Methods of a widget that call its other methods: second names for these, its items, and the menus that it opens."""

from __future__ import annotations

from typing import TYPE_CHECKING, Callable, Optional

from ..errors import CommandError
from ..protocol.locators import Address, as_locator
from ..protocol.wire import Rect, Value
from .addresses import Section, cell, column_header, row_header
from .item import HeaderSection, WidgetItem
from .menu import Menu
from .mouse import Modifier, Position

if TYPE_CHECKING:
    from .window import Window

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_DELAYED_POPUP = 0  # QToolButton::DelayedPopup: a click presses the button, a long press opens the menu


class Verbs:
    """Base of Widget, with the methods that call its other methods."""

    window: "Window"
    select: Callable[..., None]
    check: Callable[..., None]
    click: Callable[..., None]
    mouse: Callable[..., None]
    read: Callable[..., Value]
    perform: Callable[..., Rect]

    def choose(self, item: "str | int", *, force: bool = False, timeout: Optional[float] = None) -> None:
        """As select()."""
        self.select(item, force=force, timeout=timeout)

    def uncheck(self, *, force: bool = False, timeout: Optional[float] = None) -> None:
        """As check(False)."""
        self.check(False, force=force, timeout=timeout)

    def right_click(
        self,
        *,
        at: Optional[Position] = None,
        modifier: Modifier = "",
        force: bool = False,
        timeout: Optional[float] = None,
    ) -> None:
        """Clicks with the right mouse button; the rest is as for click()."""
        self.click("right", at=at, modifier=modifier, force=force, timeout=timeout)

    def scroll_to(self, *, timeout: Optional[float] = None) -> None:
        """Scrolls the areas around it until it is in sight, without the mouse. Needs an agent that knows items."""

        def scroll(path: Address) -> Rect:
            return self.window.app.connection.scroll(self.window.address, as_locator(path))

        self.perform("scroll_to()", scroll, reads=False, timeout=timeout)

    def item(self, address: "str | int") -> WidgetItem:
        """An item of a list, tree, table, combo box, tab bar or tool box, to click, check or drag.

        Args:
            address: its text, its number as the class counts, or an address that the module `addresses` writes.

        Example: window.widget("drinks").item("Espresso").click()
        """
        return WidgetItem(self, address)  # type: ignore[arg-type]

    def cell(self, row: Section, column: Section) -> WidgetItem:
        """A cell of a table, by the texts of its headers, or by numbers from 1: cell("Espresso", "Price")."""
        return WidgetItem(self, cell(row, column), f"cell({row!r}, {column!r})")  # type: ignore[arg-type]

    def column_header(self, column: Section) -> HeaderSection:
        """The header of a column of a table or tree, by its text or its number from 1; to click or drag."""
        return HeaderSection(self, column_header(column), f"column_header({column!r})")  # type: ignore[arg-type]

    def row_header(self, row: Section) -> HeaderSection:
        """The header of a row of a table; as column_header()."""
        return HeaderSection(self, row_header(row), f"row_header({row!r})")  # type: ignore[arg-type]

    def tab(self, text: str) -> WidgetItem:
        """A tab of a tab bar; window.tab() needs no tab bar."""
        return WidgetItem(self, text, f'tab("{text}")')  # type: ignore[arg-type]

    def menu(self, path: str) -> Menu:
        """An entry of the menu that a click on this button opens."""
        return Menu.of_popup(self.window.app, path, f"{self}.menu", self._open_menu)

    def _open_menu(self, *, timeout: Optional[float] = None) -> None:
        """Clicks the button; or holds the mouse down until the menu is there, on a tool button whose menu opens so."""
        try:
            is_held = self.read("popupMode", timeout=timeout) == _DELAYED_POPUP
        except CommandError:
            is_held = False  # no tool button
        if not is_held:
            self.click(timeout=timeout)
            return
        self.mouse("MousePress", timeout=timeout)
        try:
            self.window.app.popup().title(timeout=timeout)
        finally:
            self.mouse("MouseRelease", timeout=timeout)

    def context_menu(self, path: str) -> Menu:
        """An entry of the menu that a right click on this widget opens."""
        return Menu.of_popup(self.window.app, path, f"{self}.context_menu", self.right_click)
