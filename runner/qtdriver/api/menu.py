"""Entries of menu bars and of open menus."""

from __future__ import annotations

from typing import TYPE_CHECKING, Callable, Optional, Tuple, TypeVar

from ..errors import ProtocolError
from ..lookup.near_names import with_item_suggestions
from ..protocol.locators import Address
from ..protocol.wire import Value
from .mouse import repeatable

if TYPE_CHECKING:
    from .window import Window

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_Result = TypeVar("_Result")


class Menu:
    """The name of an entry in the menu bar of a window, or in an open menu; see addresses.menu_path().

    `timeout` of the methods is how many seconds they wait, by default as long as the application says.

    Attributes:
        window: the window with the menu bar, or the open popup.
        path: the texts of the menus and of the entry, joined by "/".
    """

    def __init__(self, window: "Window", path: str, bar: Optional[str] = None) -> None:
        """`bar` is the path of the menu bar; None finds it."""
        self.window = window
        self.path = path
        self._bar = bar

    def __repr__(self) -> str:
        return f'{self.window}.menu("{self.path}")'

    def activate(self, *, force: bool = False, timeout: Optional[float] = None) -> None:
        """Opens the menus on the way with the keyboard and chooses the entry.

        Before that the top right corner of the menu bar is clicked. Where that would press a button, it is a
        CornerButtonError; `force` clicks nevertheless. A bar that was given by its path is not looked at.
        """
        self._act("activate()", None, force, timeout)

    def check(self, on: bool = True, *, force: bool = False, timeout: Optional[float] = None) -> None:
        """Chooses the entry if it is not in that state; the menu is closed in any case. `force` is as for activate()."""
        self._act(f"check({on})", on, force, timeout)

    def is_enabled(self, *, timeout: Optional[float] = None) -> bool:
        """Whether the entry can be chosen."""
        return self._read("pathDisabled", timeout) is False

    def is_checked(self, *, timeout: Optional[float] = None) -> bool:
        """Whether the entry is checked; of menu bars only."""
        return self._read("pathChecked", timeout) is True

    def items(self, *, timeout: Optional[float] = None) -> Tuple[str, ...]:
        """The paths of all entries of the bar or the open menu, whatever this entry is."""
        connection = self.window.app.connection
        value = self._perform(
            "items()",
            lambda path: connection.read_property(self.window.address, path, "itemList"),
            True,
            timeout,
        )
        if not isinstance(value, tuple):
            raise ProtocolError(f"not a list: {value!r}")
        return value

    def _act(self, action: str, state: Optional[bool], force: bool, timeout: Optional[float]) -> None:
        connection = self.window.app.connection
        address = self.window.address

        def choose(bar: Address) -> str:
            return with_item_suggestions(
                connection,
                address,
                bar,
                self.path,
                lambda: connection.activate_widget(address, bar, self.path, state),
            )

        self._perform(action, repeatable(connection, address, choose), False, timeout, opens=not force)

    def _read(self, name: str, timeout: Optional[float]) -> Value:
        connection = self.window.app.connection
        return self._perform(
            name,
            lambda path: connection.read_property(self.window.address, path, name, self.path),
            True,
            timeout,
        )

    def _perform(
        self,
        action: str,
        call: Callable[[Address], _Result],
        reads: bool,
        timeout: Optional[float],
        *,
        opens: bool = False,
    ) -> _Result:
        """Makes `call` with the path of the widget that has the entries; `opens` says that it opens a menu by a click."""
        window = self.window

        def find_and_call() -> _Result:
            return call(self._bar if self._bar is not None else window.menu_bar_path(opens=opens))

        title = f'menu("{self.path}").{action}'
        return window.perform(title, find_and_call, reads=reads, path=self._bar or "", timeout=timeout)
