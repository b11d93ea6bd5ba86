"""Keys, typed text, the wheel and the focus, for windows and for widgets of every kind."""

from __future__ import annotations

from abc import ABC, abstractmethod
from contextlib import contextmanager
from typing import TYPE_CHECKING, Callable, Iterator, Optional, Tuple

from ..errors import CommandError, ConditionError
from ..lookup.windows import POPUP
from ..protocol.connection import Connection
from ..protocol.locators import Address, as_locator, is_special
from ..protocol.waiting import Deadline, attempts
from .mouse import Modifier, Position, mouse_command, wheel_command

if TYPE_CHECKING:
    from .window import Window

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_TEXT_PROPERTIES = ("plainText", "cleanText", "text", "currentText")
"""The properties in which fields have their text. The first one that a field has counts."""

_PART = 500
"""How many characters one request types: the application does nothing else meanwhile, and has to answer in time."""

_CLICK = mouse_command("MouseClick", "left", None, "")

Send = Callable[[Connection, str, Address], object]
"""Sends a request for a window, as requests name it, and what a locator finds there."""


class KeyInput(ABC):
    """Base of widgets and windows, which take keys; a window gives them to the widget that has the focus.

    Keys take the way of a user's: shortcuts, menus and default buttons see them, but no input method. The methods need an
    agent with extensions; with another one they raise OldAgentError. `timeout` is how many seconds they wait, by default
    as long as the application says.
    """

    @abstractmethod
    def send_keys(self, action: str, send: Send, timeout: Optional[float]) -> None:
        """Sends a request as one step, and repeats it until the widget can take the keys.

        Args:
            action: names the step in reports.
            send: sends the request.
            timeout: seconds to repeat it.
        """

    def press(self, *keys: str, timeout: Optional[float] = None) -> None:
        """Presses and releases keys, one after the other.

        Args:
            keys: their names, as in QKeySequence's portable texts.
            timeout: seconds to wait until the widget can take them.

        Example: window.press("Ctrl+Shift+S"), window.press("Ctrl+K", "Ctrl+C")
        """
        self._press(f"press({_shown(keys)})", keys, "", timeout)

    def key_down(self, key: str, *, timeout: Optional[float] = None) -> None:
        """Presses a key and keeps it pressed. Modifiers are held for all keys until key_up()."""
        self._press(f"key_down({_shown((key,))})", (key,), "press", timeout)

    def key_up(self, key: str, *, timeout: Optional[float] = None) -> None:
        """Releases a key."""
        self._press(f"key_up({_shown((key,))})", (key,), "release", timeout)

    @contextmanager
    def holding(self, key: str, *, timeout: Optional[float] = None) -> Iterator[None]:
        """A context in which a key is held: `with window.holding("Shift"): window.press("Right", "Right")`."""
        self.key_down(key, timeout=timeout)
        try:
            yield
        finally:
            self.key_up(key, timeout=timeout)

    def type(self, text: str, *, timeout: Optional[float] = None) -> None:
        """Types a text where the caret is: all of Unicode, a line break as Return, a tab as Tab.

        A key that moves the focus, such as a tab, or that opens a dialog, leads the rest of the text there.
        """
        self.send_keys(f"type({text!r})", _typing(text), timeout)

    def _press(self, action: str, keys: Tuple[str, ...], mode: str, timeout: Optional[float]) -> None:
        if not keys:
            raise ValueError("at least one key is needed")
        remaining = list(keys)

        def send(connection: Connection, window: str, locator: Address) -> None:
            while remaining:  # a repetition goes on with the key that was refused
                connection.press(window, remaining[0], locator, mode=mode)
                del remaining[0]

        self.send_keys(action, send, timeout)


class WidgetInput(KeyInput):
    """Input that only widgets take. Attributes are those of Widget."""

    window: "Window"
    path: Address
    call: Callable[[], str]
    _act: Callable[[str, Callable[[Address], None], Optional[float]], None]

    def send_keys(self, action: str, send: Send, timeout: Optional[float]) -> None:
        connection = self.window.app.connection
        address, locator = _place(self.window.address, self.path)
        self.window.perform(
            f"{self.call()}.{action}",
            lambda: send(connection, address, locator),
            reads=False,
            path=self.path,
            timeout=timeout,
            target=None if is_special(self.path) else as_locator(self.path),
        )

    def focus(self, *, timeout: Optional[float] = None) -> None:
        """Gives the widget the keyboard focus, as the Tab key would."""

        def send(connection: Connection, window: str, locator: Address) -> None:
            connection.focus(window, locator)

        self.send_keys("focus()", send, timeout)

    def wheel(
        self,
        *,
        up: int = 0,
        down: int = 0,
        left: int = 0,
        right: int = 0,
        at: Optional[Position] = None,
        modifier: Modifier = "",
        timeout: Optional[float] = None,
    ) -> None:
        """Turns the wheel of the mouse over the widget.

        Args:
            up, down, left, right: steps of the wheel.
            at: the position, as shares of width and height; by default the centre.
            modifier: the key that is held meanwhile.
            timeout: seconds to wait until the widget can take it.

        Example: window.widget("map").wheel(up=2, modifier="control")
        """
        command = wheel_command(left - right, up - down, at, modifier)

        def send(connection: Connection, window: str, locator: Address) -> None:
            connection.turn_wheel(window, locator, command)

        self.send_keys(f"wheel({command!r})", send, timeout)

    def fill(self, text: str, *, timeout: Optional[float] = None) -> None:
        """Replaces the text of a field as a user does: clicks into it, selects all, deletes it, and types.

        Raises ConditionError where the field then has another text, because it accepts only some. Fields whose text is in
        no property are not checked, nor are texts with a line break or a tab, which can leave the field.
        """
        connection = self.window.app.connection
        address, locator = _place(self.window.address, self.path)
        deadline = Deadline(self.window.app.timeout if timeout is None else timeout)

        def enter(path: Address) -> None:
            with connection.guarding(text, address, locator):
                connection.mouse_widget(self.window.address, path, _CLICK, widget_class="QWidget")
                connection.press(address, "Ctrl+A, Del", locator)
            _typing(text)(connection, address, locator)
            if locator:  # what has the focus now may be another widget
                self._check_filled(text, deadline)

        self._act(f"fill({text!r})", enter, timeout)

    def _check_filled(self, text: str, deadline: Deadline) -> None:
        expected = text.replace("\r\n", "\n").replace("\r", "\n")
        for name in _TEXT_PROPERTIES:
            if name != _TEXT_PROPERTIES[0] and not expected.isprintable():
                return
            try:
                shown = self._read_text(name)
            except CommandError:
                continue  # it has no such property
            for _ in attempts(deadline):
                if shown == expected:
                    return
                shown = self._read_text(name)
            raise ConditionError(f"{self} has the text {shown!r} after fill({text!r})")

    def _read_text(self, name: str) -> str:
        return str(self.window.app.connection.read_property(self.window.address, self.path, name))


def _place(window: str, path: Address) -> Tuple[str, Address]:
    """The window and the locator by which extensions name the widget at a path."""
    if is_special(path):
        return (POPUP if str(path).endswith("ActivePopupWidget") else window), ""
    return window, as_locator(path)


def _typing(text: str) -> Send:
    """Sends a text in parts; a repetition goes on with the part that was refused."""
    remaining = [text.replace("\r\n", "\n")]  # one Return, also where two parts meet
    count = len(remaining[0])

    def send(connection: Connection, window: str, locator: Address) -> None:
        while remaining:
            part, rest = remaining[0][:_PART], remaining[0][_PART:]
            is_first = len(remaining[0]) == count  # later parts are for what has the focus by then
            connection.type_text(window, part, locator if is_first else "")
            remaining[:] = [rest] if rest else []

    return send


def _shown(keys: Tuple[str, ...]) -> str:
    return ", ".join(f'"{key}"' for key in keys)
