"""A window of an application."""

from __future__ import annotations

from pathlib import Path
from typing import TYPE_CHECKING, Callable, Optional, Tuple, Type, TypeVar

from ..errors import (
    RETRYABLE_ERRORS,
    ReplyError,
    WidgetNotFoundError,
    WindowBlockedError,
    WindowNotFoundError,
)
from ..lookup.derived import button_name
from ..lookup.paths import checked_unique_path, list_tree
from ..lookup.refusals import refuse_corner_button
from ..lookup.served import outermost_served_as
from ..lookup.snapshot import Snapshot, SnapshotNode
from ..lookup.tree import Node, WidgetTree
from ..lookup.visible_texts import button_showing, checkbox_showing, field_labelled, tab_bar_showing
from ..lookup.windows import POPUP
from ..protocol.locators import Address, Locator, locator, raw_locator
from .finding import Finder
from .found import FoundWidget
from .item import WidgetItem
from .keys import KeyInput, Send
from .menu import Menu
from .mouse import repeatable
from .steps import run_step
from .widget import Widget

if TYPE_CHECKING:
    from .app import App

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_Result = TypeVar("_Result")


class Window(Finder, KeyInput):
    """The name of a window: each call finds the window anew, and waits until it is there and can be reached.

    `timeout` of the methods is how many seconds they wait, by default as long as the application says.

    Attributes:
        app: the application.
        address: the name of the window in requests.
    """

    def __init__(self, app: "App", address: str, title: str) -> None:
        """`title` is the call that messages and reports show for the window."""
        self.app = app
        self.address = address
        self._title = title

    def __repr__(self) -> str:
        return self._title

    def widget(self, path: str, *, as_class: str = "") -> Widget:
        """The widget at a path.

        Args:
            path: its name, with as many names of ancestors in front as it needs, joined by "/".
            as_class: one of its base classes, to serve it as.

        Example: window.widget("dialog/ok"); window.widget("dialog//ok") is an "ok" at any depth below "dialog".
        """
        return Widget(self, path, as_class=as_class)

    def button(self, text: str) -> Widget:
        """The button that shows a text: a push button without an object name, or any push button, or a tool button."""
        return Widget(self, button_name(text), search=button_showing(text), title=f'button("{text}")')

    def checkbox(self, text: str) -> Widget:
        """The check box that shows a text; where there is none, the radio button."""
        return Widget(self, "", search=checkbox_showing(text), title=f'checkbox("{text}")')

    def field(self, label: str) -> Widget:
        """The field with this label; where there is none, with this placeholder. Needs an agent with extensions."""
        return Widget(self, "", search=field_labelled(label), title=f'field("{label}")')

    def tab(self, text: str) -> WidgetItem:
        """The tab with this text, whichever tab bar it is in; to click."""
        bar = Widget(self, "", search=tab_bar_showing(text), title=f'tab("{text}")')
        return WidgetItem(bar, text, "")

    def find_by(self, found: "Locator | str") -> FoundWidget:
        return FoundWidget(self, found if isinstance(found, Locator) else raw_locator(found))

    def focus_widget(self) -> Widget:
        """The widget that has the keyboard focus. It takes activate, enter and mouse, but has no properties to read."""
        return Widget(self, "FocusWidget")

    def menu(self, path: str, *, bar: Optional[str] = None) -> Menu:
        """An entry of the window's menu bar; of a popup(), an entry of that menu.

        Args:
            path: the texts of the menus and of the entry, joined by "/"; see addresses.menu_path().
            bar: the path of the menu bar, for a window that has several.

        Example: window.menu("File/Save as...").activate()
        """
        return Menu(self, path, bar)

    def file(self, path: "Path | str", *, timeout: Optional[float] = None) -> None:
        """Chooses a file in the file dialog that this window is, and accepts the dialog.

        Works only with dialogs that Qt draws, not with those of the operating system.

        Args:
            path: the file; a relative path counts from the folder that the dialog shows. A Windows program
                under Wine, too, gets the file that an absolute path of Linux names.
            timeout: see the class.

        Example: app.modal().file("/tmp/a.txt")
        """
        connection = self.app.connection
        choose = repeatable(
            connection,
            self.address,
            lambda dialog: connection.activate_widget(self.address, dialog, self.app.file_name(path)),
        )
        self.perform(
            f'file("{path}")', lambda: choose(self._find("QFileDialog")[2]), reads=False, timeout=timeout
        )

    def title(self, *, timeout: Optional[float] = None) -> str:
        """The whole title. Waits until no popup and no modal dialog is in front of the window."""
        return self.perform(
            "title()", lambda: self.app.connection.check_window(self.address), timeout=timeout
        )

    def is_open(self) -> bool:
        """Whether there is such a window now, reachable or not. Does not wait."""
        with run_step(self.app, f"{self}.is_open()", reads=True), self.app.watched():
            try:
                self.app.connection.check_window(self.address)
            except WindowNotFoundError:
                return False
            except WindowBlockedError:
                pass
            return True

    def send_keys(self, action: str, send: Send, timeout: Optional[float]) -> None:
        connection = self.app.connection
        self.perform(action, lambda: send(connection, self.address, ""), reads=False, timeout=timeout)

    def move(self, x: int, y: int, *, timeout: Optional[float] = None) -> None:
        """Moves the top left corner of the window's frame to a point of the screen.

        Args:
            x, y: the point, in pixels.
            timeout: see the class.
        """
        self.perform(
            f"move({x}, {y})",
            lambda: self.app.connection.move_window(self.address, x, y),
            reads=False,
            timeout=timeout,
        )

    def resize(self, width: int, height: int, *, timeout: Optional[float] = None) -> None:
        """Sets the size of the window.

        Args:
            width, height: the size without the frame, in pixels.
            timeout: see the class.
        """
        self.perform(
            f"resize({width}, {height})",
            lambda: self.app.connection.resize_window(self.address, width, height),
            reads=False,
            timeout=timeout,
        )

    def tree(self, *, timeout: Optional[float] = None) -> WidgetTree:
        """All widgets of the window, with their names in paths, as far as these can be known."""
        return self.perform("tree()", lambda: list_tree(self.app.connection, self.address), timeout=timeout)

    def snapshot(self, *, timeout: Optional[float] = None) -> Snapshot:
        """All that the window shows now; prints as an outline. Needs an agent with extensions."""
        return self.perform(
            "snapshot()",
            lambda: Snapshot(SnapshotNode.of(self.app.connection.snapshot(self.address))),
            timeout=timeout,
        )

    def perform(
        self,
        action: str,
        call: Callable[[], _Result],
        *,
        reads: bool = True,
        path: Address = "",
        timeout: Optional[float] = None,
        retryable: Tuple[Type[ReplyError], ...] = RETRYABLE_ERRORS,
        target: Optional[Locator] = None,
    ) -> _Result:
        """As App.perform(), for a call that looks for this window and, if `path` is given, for a widget in it."""
        return self.app.perform(
            f"{self}.{action}",
            call,
            reads=reads,
            window=self.address,
            path=path,
            timeout=timeout,
            retryable=retryable,
            target=target,
        )

    def menu_bar_path(self, *, opens: bool = False) -> Address:
        """The address of the widget with the window's menu entries: the popup itself, or the menu bar. Does not wait.

        With `opens`, raises CornerButtonError for a bar whose menus cannot be opened without pressing a button.
        """
        if self.address == POPUP:
            return "ActivePopupWidget"
        tree, bar, address = self._find("QMenuBar")
        if opens:
            refuse_corner_button(self.app.connection, self.address, tree, bar, address)
        return address

    def _find(self, class_name: str) -> Tuple[WidgetTree, Node, Address]:
        """Finds the outermost visible widget that is served as a class.

        Returns the widgets of the window, that widget, and its address: a path, or a locator where no path finds it alone.
        """
        connection = self.app.connection
        tree = list_tree(connection, self.address)
        node = outermost_served_as(connection, self.address, tree, class_name)
        if node is None:
            raise WidgetNotFoundError(
                "5", f"Widget of class {class_name} not found", "there is no visible one in this window"
            )
        address = checked_unique_path(connection, self.address, tree, node)
        if address is not None:
            return tree, node, address
        if connection.knows_locators:
            return tree, node, locator(class_name)
        raise WidgetNotFoundError(
            "5",
            f"Widget of class {class_name} not found",
            "there is one, but neither its name nor those around it tell it apart: set its object name in the application, "
            "or build an agent with extensions, which finds it by its class",
        )
