"""The connection to one application: a method for each of the twelve commands."""

from __future__ import annotations

from typing import Dict, Optional, Set, Tuple

from ..errors import ProtocolError, UnsupportedTextError
from .channel import DEFAULT_TIMEOUT
from .commands import COMMAND_BY_NAME
from .extended import ExtendedChannel
from .greeting import Greeting
from .lines import LineSocket
from .locators import Address, Locator, as_locator, is_special, path_locator
from .records import CursorWidget, WidgetRecord, WindowRecord
from .wire import Argument, Rect, Reply, Value, encode_argument

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own


class Connection(ExtendedChannel):
    """The connection to an agent: the twelve commands, and the extensions that it has. It belongs to one thread.

    A text that the command for a widget cannot carry (a character beyond U+00FF in a value, a comma in a name) is sent by
    the extension of the same number, if the agent has it.

    Every method of a command raises a ReplyError subclass when the agent refuses, ConnectionClosed when the application
    has ended, RequestTimeout when no reply comes in time, and UnsupportedTextError, before anything is sent, for text that
    the protocol cannot carry.

    Args that the methods share:
        window: the beginning of a window title, or "Widget:NAME", "Widget:ActivePopupWidget", "Widget:ActiveModalWidget".
        path: object names from the outside in, joined by "/", an empty one standing for any number of levels; or a
            locator, which needs an agent with extensions.
        widget_class: the class to serve the widget as, one of its base classes; empty for the nearest that the agent knows.
        force: leaves out the checks that the agent makes for a locator.

    Attributes:
        visited: the windows and locators of the widgets to which actions took the mouse; it may still be at one of them.
        entered: the classes that served widgets in which values were entered, by window, path and the class asked for.
        served: the classes that serve the application's own classes of widgets, as far as they are known.
    """

    def __init__(
        self,
        lines: LineSocket,
        greeting: Greeting,
        timeout: float = DEFAULT_TIMEOUT,
        process: Optional[int] = None,
    ) -> None:
        """Takes the arguments of Channel."""
        super().__init__(lines, greeting, timeout, process)
        self.visited: Set[Tuple[str, Locator]] = set()
        self.entered: Dict[Tuple[str, Address, str], str] = {}
        self.served: Dict[str, str] = {}

    def _command(self, name: str, *texts: str) -> Reply:
        reply = self.request(COMMAND_BY_NAME[name].compose(*texts))
        reply.raise_for_code()
        return reply

    def _items(self, reply: Reply) -> Tuple[str, ...]:
        items = reply.value()
        if not isinstance(items, tuple):
            raise ProtocolError(f"not a list: {reply.raw!r}")
        return items

    def _by_extension(self, name: str, path: str, error: UnsupportedTextError) -> Locator:
        """The locator of the widget at a path, for the extension that carries a text which its command cannot.

        Raises `error` where the agent lacks the extension, and for the special names, which locators do not know.
        """
        if is_special(path) or name not in self.extensions:
            raise error
        return path_locator(path)

    def checked_address(self, path: Address) -> Address:
        """The address by which the agent checks, before it acts, whether a user could: a locator for the path.

        It is the path itself where the agent lacks extensions, and for the special names, which locators do not know.
        """
        return path if is_special(path) or not self.knows_locators else as_locator(path)

    def list_windows(self) -> Tuple[WindowRecord, ...]:
        """The visible windows, in the application's order."""
        return tuple(map(WindowRecord.parse, self._items(self._command("listWindows"))))

    def window_tree(self, window: str) -> Tuple[WidgetRecord, ...]:
        """The window and all widgets in it, each parent before its children."""
        return tuple(map(WidgetRecord.parse, self._items(self._command("windowTree", window))))

    def identify_widget_at_cursor(self) -> Optional[CursorWidget]:
        """The widget under the mouse cursor, None where the application has none."""
        return CursorWidget.parse(self._command("identifyWidgetAtCursor").payload)

    def locate_widget(self, window: str, path: Address) -> str:
        """Raises the window and moves the cursor to the widget's top left pixel. Returns the widget's own class."""
        if isinstance(path, Locator):
            return self.locate(window, path)
        try:
            return self._command("locateWidget", window, path).payload
        except UnsupportedTextError as error:
            return self.locate(window, self._by_extension("+4", path, error))

    def activate_widget(
        self,
        window: str,
        path: Address,
        value: Argument = None,
        option: Argument = None,
        *,
        widget_class: str = "",
        force: bool = False,
    ) -> str:
        """Does what the widget is for; its class decides what `value` and `option` mean.

        Returns the class under which the widget was served.
        """
        if isinstance(path, Locator):
            return self.activate(window, path, value, option, widget_class=widget_class, force=force)
        texts = (encode_argument(value), encode_argument(option))
        try:
            return self._command("activateWidget", window, path, widget_class, *texts).payload
        except UnsupportedTextError as error:
            found = self._by_extension("+5", path, error)
            return self.activate(window, found, value, option, widget_class=widget_class, force=True)

    def enter_widget(
        self, window: str, path: Address, value: Argument, *, widget_class: str = "", force: bool = False
    ) -> str:
        """Enters `value` as a user would. Returns the class under which the widget was served."""
        if isinstance(path, Locator):
            served = self.enter(window, path, value, widget_class=widget_class, force=force)
        else:
            text = encode_argument(value)
            try:
                served = self._command("enterWidget", window, path, widget_class, text, "").payload
            except UnsupportedTextError as error:
                found = self._by_extension("+6", path, error)
                served = self.enter(window, found, value, widget_class=widget_class, force=True)
        self.entered[window, path, widget_class] = served
        return served

    def read_property(
        self, window: str, path: Address, name: str, argument: Optional[str] = None, *, widget_class: str = ""
    ) -> Value:
        """The value of the property `name`; `argument` is for the few properties that take one."""
        if isinstance(path, Locator):
            return self.read(window, path, name, argument, widget_class=widget_class)
        text = encode_argument(argument)
        try:
            return self._command("readProperty", window, path, widget_class, name, text).value()
        except UnsupportedTextError as error:
            found = self._by_extension("+7", path, error)
            return self.read(window, found, name, argument, widget_class=widget_class)

    def check_window(self, window: str) -> str:
        """The full title of the window. Raises WindowBlockedError while a popup or modal window is in front."""
        return self._command("checkWindow", window).payload

    def mouse_widget(
        self, window: str, path: Address, command: str, *, widget_class: str = "", force: bool = False
    ) -> str:
        """Plays a mouse command on the widget.

        Args:
            command: "type:button:x:y:modifier", x and y being shares of the widget's size, such as
                "MouseClick:LeftButton:0.5:0.5:NoModifier".

        Returns the class under which the widget was served.
        """
        if isinstance(path, Locator):
            return self.mouse(window, path, command, widget_class=widget_class, force=force)
        text = encode_argument(command)
        try:
            return self._command("mouseWidget", window, path, widget_class, text, "").payload
        except UnsupportedTextError as error:
            found = self._by_extension("+9", path, error)
            return self.mouse(window, found, command, widget_class=widget_class, force=True)

    def move_window(self, window: str, x: int, y: int) -> str:
        """Moves the window's frame to a point of the screen, in pixels. Returns the window title."""
        return self._command("moveWindow", window, str(x), str(y)).payload

    def resize_window(self, window: str, width: int, height: int) -> str:
        """Sets the size of the window without its frame, in pixels. Returns the window title."""
        return self._command("resizeWindow", window, str(width), str(height)).payload

    def locate_tray_icon(self, name: str) -> Rect:
        """The rectangle of the tray icon with this object name, in pixels of the screen.

        Raises CommandError when the desktop does not tell it.
        """
        reply = self._command("locateTrayIcon", "", name)
        rect = reply.value()
        if not isinstance(rect, Rect):
            raise ProtocolError(f"not a rectangle: {reply.raw!r}")
        return rect
