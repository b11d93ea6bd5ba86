"""Items of lists, trees, tables, combo boxes, tab bars and tool boxes."""

from __future__ import annotations

from contextlib import suppress
from typing import TYPE_CHECKING, Callable, Optional, Tuple

from ..errors import CommandError, ConditionError, ReplyError
from ..lookup.item_places import ANY_VIEW
from ..lookup.served import ITEM_VIEWS, TABLES
from ..protocol.waiting import Deadline, attempts
from .item_access import COMBO_BOX, ONLY_CHOSEN
from .item_keys import ItemKeys
from .menu import Menu
from .mouse import Modifier, MouseButton, Position

if TYPE_CHECKING:
    from .widget import Widget

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_MAX_PRESSES = 2  # from partly checked by way of checked to not checked


class WidgetItem(ItemKeys):
    """The name of an item in a widget: each call finds widget and item anew.

    The mouse goes to the item's centre: of a row, a cell, a tab, the header of a page in a tool box. Before that a view
    scrolls to the item, a tree opens the items above it, a tab bar is scrolled with its arrow buttons. A combo box's list is
    closed: a click chooses the item, hover() and scroll_to() open the list, and the rest is refused.

    Each call waits until the item is there, enabled and not covered, unless with `force`. An agent that does not know
    items checks nothing, and knows the places of the items of lists, trees and tables only.

    `timeout` of the methods is how many seconds they wait, by default as long as the application says; `force` leaves
    the checks out.

    Attributes:
        widget: the list, tree, table, combo box, tab bar or tool box.
        address: the item as the widget takes it: its text, its number as the class counts, or an address that the module
            `addresses` has written.
    """

    def select(self, *, force: bool = False, timeout: Optional[float] = None) -> None:
        """Makes it the current item, by the keyboard in lists, trees and tables; clicks a tab or a page."""
        self.widget.select(self.address, force=force, timeout=timeout)

    def choose(self, *, force: bool = False, timeout: Optional[float] = None) -> None:
        """As select()."""
        self.select(force=force, timeout=timeout)

    def activate(self, *, force: bool = False, timeout: Optional[float] = None) -> None:
        """As select()."""
        self.select(force=force, timeout=timeout)

    def click(
        self,
        button: MouseButton = "left",
        *,
        modifier: Modifier = "",
        force: bool = False,
        timeout: Optional[float] = None,
    ) -> None:
        """Clicks it with the mouse; `modifier` is held meanwhile, as for a second selected item "control"."""
        is_plain = button == "left" and not modifier
        if is_plain and not self._is_known() and self._served(timeout) in ONLY_CHOSEN:
            self.select(force=force, timeout=timeout)
        else:
            self._play("MouseClick", button, modifier, timeout, force=force, may_choose=is_plain)

    def double_click(
        self,
        button: MouseButton = "left",
        *,
        modifier: Modifier = "",
        force: bool = False,
        timeout: Optional[float] = None,
    ) -> None:
        """Double clicks it."""
        self._play("MouseDoubleClick", button, modifier, timeout, force=force)

    def right_click(
        self, *, modifier: Modifier = "", force: bool = False, timeout: Optional[float] = None
    ) -> None:
        """Clicks it with the right mouse button."""
        self.click("right", modifier=modifier, force=force, timeout=timeout)

    def context_menu(self, path: str) -> Menu:
        """An entry of the menu that a right click on it opens."""
        return Menu.of_popup(self.widget.window.app, path, f"{self}.context_menu", self.right_click)

    def hover(self, *, force: bool = False, timeout: Optional[float] = None) -> None:
        """Moves the mouse onto it. The list of a combo box stays open, until an item is chosen or press("Escape")."""
        if self._is_in_list(timeout):
            self._in_open_list(timeout).hover(force=force, timeout=timeout)
        else:
            self._play("MouseMove", "", "", timeout, force=force)

    def scroll_to(self, *, timeout: Optional[float] = None) -> None:
        """Scrolls until it is in sight; opens the items above it in a tree, and the list of a combo box, as hover()."""
        if self._is_in_list(timeout):
            self._in_open_list(timeout).scroll_to(timeout=timeout)
        elif self._is_known():
            self._rect(timeout)
        else:
            self._place(timeout)

    def drag_to(
        self, target: "Widget | WidgetItem", *, to: Position = (0.5, 0.5), timeout: Optional[float] = None
    ) -> None:
        """Drags it with the left mouse button.

        Two items of one widget have to be in sight together. A movable tab takes the place of the target. Where the
        application moves rows by drag and drop, they go where the view takes them: at the upper or lower edge of a row
        before or after it. Drag and drop needs an agent that knows locators.

        Args:
            target: an item, or a widget.
            to: the position in the target, as shares of its width and height.
            timeout: seconds that each step waits.
        """
        if not isinstance(target, WidgetItem):
            if self._is_known():
                target.hover(at=to, timeout=timeout)  # waits until it is ready, before the button is down
            self._drag(target, lambda: to, timeout)
            return
        item = target
        item._share(timeout)  # both in sight before the button is down
        if item._is_known() and self._served(timeout) == item._served(timeout) == "QTabBar":
            start = self._rect(timeout)
            self._drag(item.widget, lambda: item._share(timeout, dragged=start), timeout)
        else:
            self._drag(item.widget, lambda: item._share(timeout, scrolls=False, at=to), timeout)

    def check(self, on: bool = True, *, timeout: Optional[float] = None) -> None:
        """Sets its check box, if it is not in that state: makes it the current item, and presses Space.

        Raises ConditionError where a cell of a table does not get that state.
        """
        if self._is_known() and self._served(timeout) in TABLES:
            self._check_cell(on, timeout)
            return
        self.select(timeout=timeout)
        self.widget.enter(on, timeout=timeout)

    def uncheck(self, *, timeout: Optional[float] = None) -> None:
        """As check(False)."""
        self.check(False, timeout=timeout)

    def is_selected(self, *, timeout: Optional[float] = None) -> bool:
        """Whether it is selected; a tab, a page or an item of a combo box is if it is the current one."""
        served = self._served(timeout)
        if served != COMBO_BOX and self._is_known():
            return "selected" in self._states(timeout)
        if served in ITEM_VIEWS:
            return self._read_in_view("itemIsSelected", timeout) is True
        name = "currentIndex" if isinstance(self.address, int) else "currentText"
        return self.widget.read(name, timeout=timeout) == self.address

    def is_checked(self, *, timeout: Optional[float] = None) -> bool:
        """Whether its check box is checked. Only for items of lists, trees and tables."""
        if self._is_known():
            return "checked" in self._states(timeout)
        return self.widget.read("itemIsChecked", str(self.address), timeout=timeout) is True

    def is_enabled(self, *, timeout: Optional[float] = None) -> bool:
        """Whether it can be used."""
        if self._is_known():
            return "disabled" not in self._states(timeout)
        return self.widget.read("itemIsEnabled", str(self.address), timeout=timeout) is True

    def text(self, *, timeout: Optional[float] = None) -> str:
        """The text that it shows."""
        if self._is_known():
            return self._told(timeout)[0]
        return str(self._read_in_view("itemData", timeout))

    def _is_in_list(self, timeout: Optional[float]) -> bool:
        return self._is_known() and self._served(timeout) == COMBO_BOX

    def _in_open_list(self, timeout: Optional[float]) -> "WidgetItem":
        """The same item in the list of its combo box, which is opened by the keyboard unless it is open."""
        popup = self.widget.window.app.popup()
        if not popup.is_open():
            self.widget.press("Alt+Down", timeout=timeout)
        return popup.find("QAbstractItemView").first().item(self.address)

    def _drag(self, target: "Widget", place: Callable[[], Position], timeout: Optional[float]) -> None:
        """Presses the left button on the item, then moves to a place of the target and releases it there.

        `place` is called after the press, when the target may have moved. The button is released here where that fails.
        """
        self._play("MousePress", "left", "", timeout)
        try:
            at = place()
            target.mouse("MouseMove", "", at=at, timeout=timeout)
            target.mouse("MouseRelease", "left", at=at, timeout=timeout)
        except ReplyError:
            with suppress(ReplyError):
                self.widget.mouse("MouseRelease", "left", at=(0.5, 0.5), timeout=0)
            raise

    def _check_cell(self, on: bool, timeout: Optional[float]) -> None:
        deadline = Deadline(self.widget.window.app.timeout if timeout is None else timeout)
        before = self._states(timeout)
        if "checkable" not in before:
            raise CommandError("8", f"{self} has no check box")
        for _ in range(_MAX_PRESSES):
            if _is_in_state(before, on):
                return
            self.select(timeout=timeout)
            self.widget.press("Space", timeout=timeout)
            before = self._states_after(before, deadline)
        if not _is_in_state(before, on):
            raise ConditionError(f"{self} is {' and '.join(before)} after check({on})")

    def _states_after(self, before: Tuple[str, ...], deadline: Deadline) -> Tuple[str, ...]:
        """Waits until the check box has changed from the states `before`. Returns the states then, or at the deadline."""
        states = before
        for _ in attempts(deadline):
            states = self._states(0)
            if _box(states) != _box(before):
                break
        return states


def _box(states: Tuple[str, ...]) -> Tuple[bool, bool]:
    return "checked" in states, "partly checked" in states


def _is_in_state(states: Tuple[str, ...], on: bool) -> bool:
    return _box(states) == (on, False)


class HeaderSection(WidgetItem):
    """The name of a section in the header of a table or tree, for the mouse: sorting, its context menu, its tool tip."""

    def __init__(self, widget: "Widget", address: str, title: str) -> None:
        """`address` is "H:" or "V:" and the column or row."""
        super().__init__(widget, address, title, as_class=ANY_VIEW)

    def select(self, *, force: bool = False, timeout: Optional[float] = None) -> None:
        """Clicks it."""
        self._play("MouseClick", "left", "", timeout, force=force)

    def _make_current(self, timeout: Optional[float]) -> None:
        raise CommandError("8", f"{self} takes no keys")
