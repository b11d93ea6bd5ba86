"""Reaching an item: by an agent that knows items, and by one that does not."""

from __future__ import annotations

import re
from typing import TYPE_CHECKING, Callable, Optional, Tuple, TypeVar

from ..errors import CommandError
from ..lookup.item_names import with_item_suggestions
from ..lookup.item_places import ANY_VIEW, ItemFinder
from ..lookup.served import ITEM_VIEWS
from ..protocol.connection import Connection
from ..protocol.locators import Address, as_locator, is_special
from ..protocol.wire import Rect, Value
from .mouse import Modifier, MouseButton, Position, mouse_command

if TYPE_CHECKING:
    from .widget import Widget

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_Result = TypeVar("_Result")
COMBO_BOX = "QComboBox"
ONLY_CHOSEN = (COMBO_BOX, "QTabBar", "QToolBox")
"""The classes whose items have no place for the mouse with an agent that does not know items."""
_NO_PLACE = re.compile(r'Items of a widget of class "(.*)" have no place for the mouse$')


class ItemAccess:
    """The item of a widget; see WidgetItem."""

    def __init__(
        self, widget: "Widget", address: "str | int", title: Optional[str] = None, *, as_class: str = ""
    ) -> None:
        """Names an item.

        Args:
            widget: the widget that has it.
            address: the item, as the widget takes it.
            title: the call that messages and reports show for it.
            as_class: the class that takes the address, if the widget's own does not.
        """
        self.widget = widget
        self.address = address
        self._title = f"item({address!r})" if title is None else title
        self._as_class = as_class or widget.as_class

    def __repr__(self) -> str:
        return ".".join(filter(None, [str(self.widget), self._title]))

    # With an agent that knows items

    def _is_known(self) -> bool:
        """Whether the agent knows items, and a locator can name the widget."""
        return self._connection.knows_items and not is_special(self.widget.path)

    @property
    def _connection(self) -> Connection:
        return self.widget.window.app.connection

    def _play(
        self,
        kind: str,
        button: MouseButton,
        modifier: Modifier,
        timeout: Optional[float],
        *,
        force: bool = False,
        may_choose: bool = False,
    ) -> None:
        """Plays a mouse command on it; with `may_choose`, an item of a combo box is chosen instead."""
        if not self._is_known():
            place = self._place(timeout)
            self.widget.mouse(kind, button, at=place, modifier=modifier, force=force, timeout=timeout)
            return
        command = mouse_command(kind, button, None, modifier)

        def act(path: Address) -> str:
            window, locator, served_as = self.widget.window.address, as_locator(path), self._as_class
            try:
                return self._connection.mouse(
                    window, locator, command, widget_class=served_as, force=force, item=self.address
                )
            except CommandError as error:
                if not may_choose or not self._is_of_combo_box(error, path):
                    raise
            return self._connection.activate(
                window, locator, self.address, widget_class=served_as, force=force
            )

        self._looked_up(f"mouse({command!r})", act, timeout, reads=False)

    def _is_of_combo_box(self, error: CommandError, path: Address) -> bool:
        """Whether a combo box refused the mouse on an item: its items can only be chosen, as its list is closed."""
        refused = _NO_PLACE.search(error.message)
        if refused is None or refused[1] == COMBO_BOX:
            return refused is not None
        window = self.widget.window.address
        served = self._connection.read(window, as_locator(path), "silkClassName", widget_class=self._as_class)
        return served == COMBO_BOX

    def _rect(self, timeout: Optional[float]) -> Rect:
        """Scrolls to it. Returns where it is on the screen."""

        def scroll(path: Address) -> Rect:
            window = self.widget.window.address
            return self._connection.scroll(
                window, as_locator(path), self.address, widget_class=self._as_class
            )

        return self._looked_up("scroll_to()", scroll, timeout, reads=False)

    def _told(self, timeout: Optional[float]) -> Tuple[str, Tuple[str, ...]]:
        def read(path: Address) -> Tuple[str, Tuple[str, ...]]:
            window = self.widget.window.address
            return self._connection.item(window, as_locator(path), self.address, widget_class=self._as_class)

        return self._looked_up("states()", read, timeout)

    def _states(self, timeout: Optional[float]) -> Tuple[str, ...]:
        return self._told(timeout)[1]

    def _share(
        self,
        timeout: Optional[float],
        *,
        scrolls: bool = True,
        at: Position = (0.5, 0.5),
        dragged: Optional[Rect] = None,
    ) -> Position:
        """Scrolls to it. Returns the place `at` of it as shares of the width and height of its widget.

        `dragged` is the rectangle of a tab that is being dragged here: then it is where the centre of that has to be.
        """
        if not self._is_known():
            return self._place(timeout, scrolls=scrolls)
        item, whole = self._rect(timeout), self.widget.rect(timeout=timeout)
        x, y = _point(item, at) if dragged is None else _place_of_tab(dragged, item)
        return ((x - whole.left + 0.5) / whole.width, (y - whole.top + 0.5) / whole.height)

    # With an agent that does not know items

    def _served(self, timeout: Optional[float]) -> str:
        return self._as_class or str(self.widget.read("silkClassName", timeout=timeout))

    def _read_in_view(self, name: str, timeout: Optional[float]) -> Value:
        connection, window = self._connection, self.widget.window.address

        def read(path: Address) -> Value:
            address = self._finder(path).address(self.address)
            return connection.read_property(window, path, name, address, widget_class=ANY_VIEW)

        return self._looked_up(name, read, timeout)

    def _place(self, timeout: Optional[float], *, scrolls: bool = True) -> Position:
        """Scrolls to it. Returns its centre as shares of the width and height of its widget."""

        def look(path: Address) -> Position:
            finder = self._finder(path)
            address = finder.scroll_to(self.address) if scrolls else finder.address(self.address)
            return finder.position(address)

        return self._looked_up("scroll_to()", look, timeout, reads=not scrolls)

    def _finder(self, path: Address) -> ItemFinder:
        window = self.widget.window
        connection = window.app.connection
        served = self._as_class or str(connection.read_property(window.address, path, "silkClassName"))
        if served not in ITEM_VIEWS:
            raise CommandError(
                "8", f"the place of {self} cannot be told: it is none of a list, tree or table"
            )
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
                window.app.connection,
                window.address,
                path,
                self.address,
                lambda: call(path),
                self._as_class,
            )
            return result

        title = ".".join(filter(None, [self._title, action]))
        return self.widget.perform(title, look, reads=reads, timeout=timeout)


def _center(rect: Rect) -> Tuple[int, int]:
    return (rect.left + rect.right) // 2, (rect.top + rect.bottom) // 2


def _point(rect: Rect, at: Position) -> Tuple[int, int]:
    x, y = rect.left + int(at[0] * rect.width), rect.top + int(at[1] * rect.height)
    return min(x, rect.right), min(y, rect.bottom)


def _place_of_tab(dragged: Rect, target: Rect) -> Tuple[int, int]:
    """Where the centre of a dragged tab has to be: its outer edge is then where the target's is.

    If its centre were put on the target's, a tab that is wider would also change places with the tab beyond.
    """
    (x, y), (goal_x, goal_y) = _center(dragged), _center(target)
    if abs(goal_x - x) >= abs(goal_y - y):
        shift = target.right - dragged.right if goal_x > x else target.left - dragged.left
        return x + shift, y
    shift = target.bottom - dragged.bottom if goal_y > y else target.top - dragged.top
    return x, y + shift
