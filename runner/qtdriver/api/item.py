"""Items of lists, trees, tables, combo boxes, tab bars and tool boxes."""

from __future__ import annotations

from typing import TYPE_CHECKING, Callable, Optional, TypeVar

from ..errors import CommandError
from ..lookup.item_names import with_item_suggestions
from ..lookup.item_places import ANY_VIEW, ItemFinder
from ..lookup.served import ITEM_VIEWS
from ..protocol.locators import Address
from ..protocol.wire import Value
from .menu import Menu
from .mouse import Modifier, MouseButton, Position

if TYPE_CHECKING:
    from .widget import Widget

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_Result = TypeVar("_Result")


class WidgetItem:
    """The name of an item in a widget: each call finds widget and item anew.

    Lists, trees and tables scroll to the item, and the mouse goes to its centre. Tabs, pages of a tool box and items of
    a combo box can be clicked, which chooses them; their place cannot be told.

    Attributes:
        widget: the list, tree, table, combo box, tab bar or tool box.
        address: the item as the widget takes it: its text, its number as the class counts, or what the module
            `addresses` writes.
    """

    def __init__(self, widget: "Widget", address: "str | int", title: Optional[str] = None) -> None:
        """`title` is how messages and reports call the item within its widget."""
        self.widget = widget
        self.address = address
        self._title = f"item({address!r})" if title is None else title

    def __repr__(self) -> str:
        return ".".join(filter(None, [str(self.widget), self._title]))

    def select(self, *, timeout: Optional[float] = None) -> None:
        """Makes it the current item, by the keyboard in lists, trees and tables; clicks a tab or a page."""
        self.widget.select(self.address, timeout=timeout)

    def choose(self, *, timeout: Optional[float] = None) -> None:
        """As select()."""
        self.select(timeout=timeout)

    def activate(self, *, timeout: Optional[float] = None) -> None:
        """As select()."""
        self.select(timeout=timeout)

    def click(
        self,
        button: MouseButton = "left",
        *,
        modifier: Modifier = "",
        timeout: Optional[float] = None,
    ) -> None:
        """Clicks it with the mouse."""
        if self._served(timeout) in ITEM_VIEWS:
            self.widget.click(button, at=self._place(timeout), modifier=modifier, timeout=timeout)
        elif button == "left" and not modifier:
            self.select(timeout=timeout)
        else:
            raise self._without_place()

    def double_click(
        self,
        button: MouseButton = "left",
        *,
        modifier: Modifier = "",
        timeout: Optional[float] = None,
    ) -> None:
        """Double clicks it."""
        self.widget.double_click(button, at=self._place(timeout), modifier=modifier, timeout=timeout)

    def right_click(self, *, modifier: Modifier = "", timeout: Optional[float] = None) -> None:
        """Clicks it with the right mouse button."""
        self.click("right", modifier=modifier, timeout=timeout)

    def context_menu(self, path: str) -> Menu:
        """An entry of the menu that a right click on it opens."""
        return Menu.of_popup(self.widget.window.app, path, f"{self}.context_menu", self.right_click)

    def hover(self, *, timeout: Optional[float] = None) -> None:
        """Moves the mouse onto it."""
        self.widget.hover(at=self._place(timeout), timeout=timeout)

    def scroll_to(self, *, timeout: Optional[float] = None) -> None:
        """Scrolls its list, tree or table until it is in sight; opens the items above it in a tree."""
        self._place(timeout)

    def drag_to(
        self, target: "Widget | WidgetItem", *, to: Position = (0.5, 0.5), timeout: Optional[float] = None
    ) -> None:
        """Drags it with the left button to an item, or to the position `to` of a widget.

        Two items of one widget have to be in sight together.
        """
        if isinstance(target, WidgetItem):
            target._place(timeout)
            start = self._place(timeout)
            end, widget = target._place(timeout, scrolls=False), target.widget
        else:
            start, end, widget = self._place(timeout), to, target
        self.widget.drag_to(widget, at=start, to=end, timeout=timeout)

    def check(self, on: bool = True, *, timeout: Optional[float] = None) -> None:
        """Makes it the current item and sets its check box; in lists and trees."""
        self.select(timeout=timeout)
        self.widget.enter(on, timeout=timeout)

    def uncheck(self, *, timeout: Optional[float] = None) -> None:
        """As check(False)."""
        self.check(False, timeout=timeout)

    def is_selected(self, *, timeout: Optional[float] = None) -> bool:
        """Whether it is selected; of a tab, a page or an item of a combo box: whether it is the current one."""
        served = self._served(timeout)
        if served in ITEM_VIEWS:
            return self._read_in_view("itemIsSelected", timeout) is True
        return self.widget.read("currentText", timeout=timeout) == self.address

    def is_checked(self, *, timeout: Optional[float] = None) -> bool:
        """Whether its check box is checked; in lists and trees."""
        return self.widget.read("itemIsChecked", str(self.address), timeout=timeout) is True

    def is_enabled(self, *, timeout: Optional[float] = None) -> bool:
        """Whether it can be used; in lists and trees."""
        return self.widget.read("itemIsEnabled", str(self.address), timeout=timeout) is True

    def text(self, *, timeout: Optional[float] = None) -> str:
        """The text that it shows; in lists, trees and tables."""
        return str(self._read_in_view("itemData", timeout))

    def _served(self, timeout: Optional[float]) -> str:
        return self.widget.as_class or str(self.widget.read("silkClassName", timeout=timeout))

    def _read_in_view(self, name: str, timeout: Optional[float]) -> Value:
        connection, window = self.widget.window.app.connection, self.widget.window.address

        def read(path: Address) -> Value:
            address = self._finder(path).address(self.address)
            return connection.read_property(window, path, name, address, widget_class=ANY_VIEW)

        return self._looked_up(name, read, timeout)

    def _place(self, timeout: Optional[float], *, scrolls: bool = True) -> Position:
        """Scrolls to it, and answers its centre as shares of the width and height of its widget."""

        def look(path: Address) -> Position:
            finder = self._finder(path)
            address = finder.scroll_to(self.address) if scrolls else finder.address(self.address)
            return finder.position(address)

        return self._looked_up("scroll_to()", look, timeout, reads=not scrolls)

    def _finder(self, path: Address) -> ItemFinder:
        window = self.widget.window
        connection = window.app.connection
        served = self.widget.as_class or str(connection.read_property(window.address, path, "silkClassName"))
        if served not in ITEM_VIEWS:
            raise self._without_place()
        return ItemFinder(connection, window.address, path, served)

    def _looked_up(
        self,
        action: str,
        call: Callable[[Address], _Result],
        timeout: Optional[float],
        *,
        reads: bool = True,
    ) -> _Result:
        window = self.widget.window

        def look(path: Address) -> _Result:
            result: _Result = with_item_suggestions(
                window.app.connection, window.address, path, self.address, lambda: call(path)
            )
            return result

        title = ".".join(filter(None, [self._title, action]))
        return self.widget.perform(title, look, reads=reads, timeout=timeout)

    def _without_place(self) -> CommandError:
        return CommandError("8", f"the place of {self} cannot be told: it is none of a list, tree or table")
