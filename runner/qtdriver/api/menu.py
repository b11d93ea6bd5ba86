"""Entries of menu bars, of open menus, and of menus that a click opens."""

from __future__ import annotations

from contextlib import suppress
from typing import TYPE_CHECKING, Callable, Optional, Tuple, TypeVar

from ..errors import CommandError, ProtocolError, ReplyError, WindowNotFoundError
from ..lookup.item_names import with_item_suggestions
from ..lookup.windows import POPUP
from ..protocol.locators import Address, as_locator
from ..protocol.wire import Value
from .addresses import menu_entry
from .mouse import mouse_command, repeatable

if TYPE_CHECKING:
    from .app import App
    from .window import Window

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_Result = TypeVar("_Result")
_NO_ENTRY = menu_entry(1_000_000)


class Menu:
    """The name of an entry in the menu bar of a window, in an open menu, or in a menu that a click opens.

    `timeout` of the methods is how many seconds they wait, by default as long as the application says.

    Attributes:
        window: the window with the menu bar, or the open popup.
        path: the texts of the menus and of the entry, joined by "/"; see addresses.menu_path().
    """

    def __init__(self, window: "Window", path: str, bar: Optional[str] = None) -> None:
        """`bar` is the path of the menu bar; None finds it."""
        self.window = window
        self.path = path
        self._bar = bar
        self._opener: "Optional[Callable[..., None]]" = None
        self._title = f"{window}.menu"

    @classmethod
    def of_popup(cls, app: "App", path: str, title: str, opener: Callable[..., None]) -> "Menu":
        """An entry of a popup menu.

        Args:
            app: the application.
            path: the entry.
            title: the call that messages show for the menu.
            opener: opens the menu by a click, whenever a method needs it.
        """
        menu = cls(app.popup(), path)
        menu._opener = opener
        menu._title = title
        return menu

    def __repr__(self) -> str:
        return f'{self._title}("{self.path}")'

    def activate(self, *, force: bool = False, timeout: Optional[float] = None) -> None:
        """Opens the menus on the way with the keyboard and chooses the entry.

        Before that the agent clicks the top right corner of the menu bar. Raises CornerButtonError where that would press
        a button; `force` clicks nevertheless. A bar that was given by its path is not checked.
        """
        self._act("activate()", None, timeout, force=force)

    def click(self, *, force: bool = False, timeout: Optional[float] = None) -> None:
        """As activate()."""
        self.activate(force=force, timeout=timeout)

    def choose(self, *, force: bool = False, timeout: Optional[float] = None) -> None:
        """As activate()."""
        self.activate(force=force, timeout=timeout)

    def select(self, *, force: bool = False, timeout: Optional[float] = None) -> None:
        """As activate()."""
        self.activate(force=force, timeout=timeout)

    def hover(self, *, timeout: Optional[float] = None) -> None:
        """Moves the mouse onto the entry, which shows its tool tip and status tip, and opens its submenu.

        The menus on the way are opened by clicks, and stay open until the next call on the menu, or press("Escape").
        Raises OldAgentError with an agent that does not know items.
        """
        self._use_mouse("hover()", mouse_command("MouseMove", "", None, ""), timeout)

    def right_click(self, *, timeout: Optional[float] = None) -> None:
        """Clicks the entry with the right mouse button; the rest is as for hover().

        It is for menus that have context menus for their entries: in other menus it chooses the entry.
        """
        self._use_mouse("right_click()", mouse_command("MouseClick", "right", None, ""), timeout)

    def uncheck(self, *, force: bool = False, timeout: Optional[float] = None) -> None:
        """As check(False)."""
        self.check(False, force=force, timeout=timeout)

    def check(self, on: bool = True, *, force: bool = False, timeout: Optional[float] = None) -> None:
        """Chooses the entry if it is not in that state; the menu is closed in any case. `force` is as for activate()."""
        self._act(f"check({on})", on, timeout, force=force)

    def is_enabled(self, *, timeout: Optional[float] = None) -> bool:
        """Whether the entry can be chosen."""
        return self._read("pathDisabled", timeout) is False

    def is_checked(self, *, timeout: Optional[float] = None) -> bool:
        """Whether the entry is checked. With an agent that does not know items, of menu bars only."""
        connection, address = self.window.app.connection, self.window.address
        if address != POPUP or not connection.knows_items:
            return self._read("pathChecked", timeout) is True

        def read(popup: Address) -> bool:
            def is_checked() -> bool:
                return "checked" in connection.item(address, "", self.path)[1]

            return self._with_suggestions(popup, is_checked, acts=False)

        return self._look("is_checked()", read, timeout)

    def items(self, *, timeout: Optional[float] = None) -> Tuple[str, ...]:
        """The paths of all entries of the bar or the open menu, whatever this entry is."""
        connection = self.window.app.connection
        value = self._look(
            "items()", lambda path: connection.read_property(self.window.address, path, "itemList"), timeout
        )
        if not isinstance(value, tuple):
            raise ProtocolError(f"not a list: {value!r}")
        return value

    def _act(self, action: str, state: Optional[bool], timeout: Optional[float], *, force: bool) -> None:
        connection, address = self.window.app.connection, self.window.address

        def choose(bar: Address) -> str:
            target = bar if force else connection.checked_address(bar)
            return self._with_suggestions(
                bar, lambda: connection.activate_widget(address, target, self.path, state, force=force)
            )

        self._open(timeout)
        act = repeatable(connection, address, choose)
        self._perform(action, act, timeout, reads=False, opens=not force)

    def _use_mouse(self, action: str, command: str, timeout: Optional[float]) -> None:
        connection, address = self.window.app.connection, self.window.address

        def play(bar: Address) -> str:
            locator: Address = "" if address == POPUP else as_locator(bar)
            return self._with_suggestions(
                bar, lambda: connection.mouse(address, locator, command, item=self.path)
            )

        self._open(timeout)
        self._perform(action, play, timeout, reads=False)

    def _read(self, name: str, timeout: Optional[float]) -> Value:
        connection, address = self.window.app.connection, self.window.address

        def read(bar: Address) -> Value:
            return self._with_suggestions(
                bar, lambda: connection.read_property(address, bar, name, self.path), acts=False
            )

        return self._look(name, read, timeout)

    def _with_suggestions(self, bar: Address, call: Callable[[], _Result], *, acts: bool = True) -> _Result:
        """Makes a call that names the entry; when it is refused, the error says which entries there are.

        Args:
            bar: the widget with the entries.
            call: makes the request.
            acts: whether the call acts on the menu. Then a refusal closes an open menu, so that its entries have to be
                listed before.
        """
        window = self.window
        return with_item_suggestions(
            window.app.connection,
            window.address,
            bar,
            self.path,
            call,
            closes=acts and window.address == POPUP,
        )

    def _look(self, action: str, read: Callable[[Address], _Result], timeout: Optional[float]) -> _Result:
        """Makes a call that only reads. Closes a menu that had to be opened for it."""
        self._open(timeout)
        try:
            return self._perform(action, read, timeout, reads=True)
        finally:
            if self._opener is not None:
                self._close()

    def _open(self, timeout: Optional[float]) -> None:
        if self._opener is not None:
            self._opener(timeout=timeout)

    def _close(self) -> None:
        """Closes the open menu, by choosing an entry that does not exist: the agent presses Escape then."""
        connection = self.window.app.connection

        def leave(popup: Address) -> None:
            with suppress(CommandError):
                connection.activate_widget(self.window.address, popup, _NO_ENTRY)

        with suppress(ReplyError):
            self._perform("close()", leave, 0, reads=False)

    def _perform(
        self,
        action: str,
        call: Callable[[Address], _Result],
        timeout: Optional[float],
        *,
        reads: bool,
        opens: bool = False,
    ) -> _Result:
        """Makes a call as one step, with the address of the widget that has the entries.

        Args:
            action: names the step in reports.
            call: makes the requests.
            timeout: seconds to repeat it.
            reads: whether the call only reads.
            opens: whether it opens a menu by a click into the corner of the bar, which is checked then.
        """
        window = self.window

        def find_and_call() -> _Result:
            return call(self._bar if self._bar is not None else window.menu_bar_path(opens=opens))

        title = f'menu("{self.path}").{action}'
        try:
            return window.perform(title, find_and_call, reads=reads, path=self._bar or "", timeout=timeout)
        except WindowNotFoundError as error:
            if self._opener is None:
                raise
            words = f"the click for {self} has opened no menu\n{error.explanation}"
            raise WindowNotFoundError(error.code, error.message, words) from None
