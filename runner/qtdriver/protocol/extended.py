"""The extensions of an agent: a method for each."""

from __future__ import annotations

from contextlib import contextmanager, suppress
from typing import FrozenSet, Iterator, Mapping, Optional, Tuple

from ..errors import CommandError, OldAgentError, ProtocolError, QtDriverError, ReplyError
from .channel import Channel
from .extensions import EXTENSION_BY_NAME, decode_json, refusal
from .locators import Address, Locator, as_locator, is_special
from .wire import Argument, Rect, Reply, Value, encode_argument

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_FORCE = "force"


class ExtendedChannel(Channel):
    """The connection to an agent that may have extensions. Texts may contain every character.

    Every method raises OldAgentError, before anything is sent, where the agent lacks its extension, NotReadyError where
    the widget cannot take the input yet, and the errors of the commands' methods. Those of the codes 5 to 7 have the
    candidates that the agent names.

    Args that the methods share:
        window: as for the commands.
        locator: finds the widget; empty for the window itself, and for keys what has the focus in it.
        force: leaves out the checks whether the widget can take the input.
    """

    _extensions: Optional[FrozenSet[str]] = None

    @property
    def extensions(self) -> FrozenSet[str]:
        """The names of the extensions that the agent has, such as "+press". Asks the agent when it is first read."""
        if self._extensions is None:
            try:
                names = self._extended("+extensions").value()
            except CommandError:
                names = ()  # an agent of an earlier version
            if not isinstance(names, tuple):
                raise ProtocolError(f"not a list: {names!r}")
            self._extensions = frozenset(names)
        return self._extensions

    @property
    def known_extensions(self) -> Optional[FrozenSet[str]]:
        """The same, None as long as the agent has not been asked."""
        return self._extensions

    @property
    def knows_items(self) -> bool:
        """Whether the agent has what mouse(), scroll() and item() need for items."""
        return self.extensions.issuperset(("+9", "+scroll", "+item"))

    @property
    def knows_locators(self) -> bool:
        """Whether the methods of a connection take a locator in place of a path."""
        return self.extensions.issuperset(("+5", "+6", "+7", "+9"))

    def require(self, extension: str) -> None:
        """Raises OldAgentError where the agent lacks the extension of this name."""
        if extension not in self.extensions:
            raise OldAgentError(extension)

    def snapshot(self, window: str, locator: Address = "") -> Mapping[str, object]:
        """The window, or what the locator finds, and all that is in it, as the protocol describes it."""
        return decode_json(self._extended("+2", window, locator))

    def locate(self, window: str, locator: Address) -> str:
        """Raises the window and moves the cursor to the widget's top left pixel. Returns the widget's own class."""
        return self._extended("+4", window, locator).payload

    def activate(
        self,
        window: str,
        locator: Address,
        value: Argument = None,
        option: Argument = None,
        *,
        widget_class: str = "",
        force: bool = False,
    ) -> str:
        """As Connection.activate_widget(), for what the locator finds."""
        texts = (widget_class, encode_argument(value), encode_argument(option), _FORCE if force else "")
        return self._extended("+5", window, locator, *texts).payload

    def enter(
        self, window: str, locator: Address, value: Argument, *, widget_class: str = "", force: bool = False
    ) -> str:
        """As Connection.enter_widget(), for what the locator finds."""
        texts = (widget_class, encode_argument(value), _FORCE if force else "")
        return _class_of(self._extended("+6", window, locator, *texts))

    def typed_hidden(self) -> bool:
        """Whether the last value that was entered, by enter() or enter_widget(), went to a field that hides its text."""
        return self._extended("+hidden").value() is True

    def read(
        self,
        window: str,
        locator: Address,
        name: str,
        argument: Optional[str] = None,
        *,
        widget_class: str = "",
    ) -> Value:
        """As Connection.read_property(), for what the locator finds."""
        return self._extended("+7", window, locator, widget_class, name, encode_argument(argument)).value()

    def mouse(
        self,
        window: str,
        locator: Address,
        command: str,
        *,
        widget_class: str = "",
        force: bool = False,
        item: Argument = None,
    ) -> str:
        """As Connection.mouse_widget(), for what the locator finds, or at its item.

        `item` is what activate() takes to choose it; it needs an agent that knows items.
        """
        texts = [widget_class, encode_argument(command), _FORCE if force else ""]
        if item is not None:
            self.require("+scroll")
            texts.append(encode_argument(item))
        return self._extended("+9", window, locator, *texts).payload

    def scroll(self, window: str, locator: Address, item: Argument = None, *, widget_class: str = "") -> Rect:
        """Scrolls to the widget, or to its item. Returns the rectangle that is in sight, in pixels of the screen."""
        rect = self._extended("+scroll", window, locator, widget_class, encode_argument(item)).value()
        if not isinstance(rect, Rect):
            raise ProtocolError(f"not a rectangle: {rect!r}")
        return rect

    def item(
        self, window: str, locator: Address, item: Argument, *, widget_class: str = ""
    ) -> Tuple[str, Tuple[str, ...]]:
        """The text and the states of an item, such as "checked" and "disabled", wherever it is."""
        reply = self._extended("+item", window, locator, widget_class, encode_argument(item))
        told = decode_json(reply)
        text, states = told.get("text"), told.get("states")
        if not isinstance(text, str) or not isinstance(states, list):
            raise ProtocolError(f"not an item: {reply.raw!r}")
        return text, tuple(map(str, states))

    def press(self, window: str, keys: str, locator: Address = "", *, mode: str = "") -> str:
        """Presses and releases keys.

        Args:
            keys: one to four strokes, such as "Ctrl+K, Ctrl+C".
            mode: "press" or "release" to do only that; empty for both.

        Returns the class of the widget that had the focus.
        """
        return _class_of(self._extended("+press", window, locator, keys, mode))

    def type_text(self, window: str, text: str, locator: Address = "") -> str:
        """Types the text, a line break as Return and a tab as Tab. Returns the class of the widget that had the focus."""
        return _class_of(self._extended("+type", window, locator, text))

    @contextmanager
    def guarding(self, text: object, window: str, locator: Address) -> Iterator[None]:
        """A context in which a text is to be typed: if that is refused before it is sent, it may be a password all the same."""
        try:
            yield
        except ReplyError:
            found = as_locator(locator).text if locator else ""
            if isinstance(text, str) and not is_special(locator):
                with suppress(QtDriverError):
                    self._typed.learn_unsent(EXTENSION_BY_NAME["+type"].compose(window, found, text))
            raise

    def turn_wheel(self, window: str, locator: Address, command: str) -> str:
        """Plays a wheel command "x:y:modifier:horizontal:vertical", the last two in steps, up and left being positive.

        Returns the class of the widget.
        """
        return self._extended("+wheel", window, locator, command).payload

    def clipboard(self) -> str:
        """The text on the clipboard as the application sees it, empty when there is none."""
        text = self._extended("+clipboard").value()
        if not isinstance(text, str):
            raise ProtocolError(f"not a text: {text!r}")
        return text

    def set_clipboard(self, text: str) -> None:
        """Puts the text on the clipboard, through the application."""
        self._extended("+clipboard", text)

    def focus(self, window: str, locator: Address) -> str:
        """Gives the widget the keyboard focus, as the Tab key would. Returns its class."""
        return self._extended("+focus", window, locator).payload

    def record(self, *, passwords: bool = False) -> None:
        """Makes the agent record what a user does; events() returns it. An earlier recording is forgotten.

        Args:
            passwords: whether the keys in fields that hide their text are told, too.
        """
        self._extended("+record", "start", *(("passwords",) if passwords else ()))

    def stop_recording(self) -> None:
        """Ends the recording. events() still returns, once, what has happened until now."""
        self._extended("+record", "stop")

    def events(self) -> Mapping[str, object]:
        """The events since the last call, in the agent's form; see recording.events."""
        return decode_json(self._extended("+events"))

    def _extended(self, name: str, *texts: Address) -> Reply:
        located = [text for text in texts if isinstance(text, Locator)]
        line = EXTENSION_BY_NAME[name].compose(
            *(text.text if isinstance(text, Locator) else text for text in texts)
        )
        if name != "+extensions":
            self.require(name)
        reply = self.request(line)
        if not reply.ok:
            raise refusal(reply, str(located[0]) if located else "")
        return reply


def _class_of(reply: Reply) -> str:
    """The class in a reply, which may tell more behind a comma."""
    return reply.payload.partition(",")[0]
