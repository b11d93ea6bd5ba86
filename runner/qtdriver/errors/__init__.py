"""The errors of the wire client: everything that can go wrong between the test and the agent."""

from __future__ import annotations

from typing import Dict, Type


class QtDriverError(Exception):
    """Base of every error that this package raises on purpose. Its text is for the person at the test."""


class ProtocolError(QtDriverError):
    """The other side sent a line that the protocol does not have."""


class PortInUseError(QtDriverError):
    """Another process listens on the port on which the agent looks for its test server."""

    def __init__(
        self,
        host: str,
        port: int,
        way_out: str = "run 'scripts/with-desktop.sh COMMAND' or 'qtdriver run --headless'",
    ) -> None:
        """`way_out` is how a run gets a network of its own."""
        super().__init__(
            f"{host}:{port} is taken: another test run or test server listens there, and the agent knows no "
            f"other port. End that process ('ss -ltnp sport = :{port}' names it) or wait for its end. Where the "
            f"system allows network namespaces, you can also {way_out}, which has a network of its own"
        )


class NoClientError(QtDriverError):
    """No agent connected to the server in the time that was given."""


class ClientRefusedError(QtDriverError):
    """Who has connected is not who may: a process of another user, or one that has closed again."""


class ConnectionClosed(QtDriverError):
    """The application ended, or its agent closed the connection: no further request can be answered."""


class RequestTimeout(QtDriverError):
    """The agent has not answered a request in the time that was given. The connection stays usable: the next
    request first waits for the late reply and drops it."""


class ApplicationEndedError(ConnectionClosed):
    """The application ended at a request. The message tells how, the request, and its last output."""


class ApplicationHangsError(RequestTimeout):
    """The application did not answer a request in time, and was ended. The message tells the request and the windows
    that were last seen."""


class UnsupportedTextError(QtDriverError, ValueError):
    """A text that the protocol cannot carry: a character beyond U+00FF, a comma or a line break in a name. Nothing has
    been sent."""


class NoEditorError(QtDriverError):
    """A text was not entered in a list, tree or table, since its edit triggers open no editor for it. Nothing was done.

    Attributes:
        view_class: the class that serves the view.
        triggers: the names of its edit triggers, as Qt writes them.
        value: what was to be entered.
    """

    def __init__(self, view_class: str, triggers: str, value: str) -> None:
        super().__init__(
            f'{value!r} was not entered: this {view_class} opens no editor at the keys of "enter", since its '
            f"editTriggers are {triggers}. The keys would act on the view itself: move its current item, run shortcuts "
            "of the application, and press Return, which activates the item and a dialog's default button.\n"
            "Open the editor as a user does, for example by double_click() where that edits, and enter the text in "
            "window.focus_widget(). Where the application opens an editor at F2 by itself, or has one open for the "
            "item, enter(..., force=True) sends the keys"
        )
        self.view_class = view_class
        self.triggers = triggers
        self.value = value

    def __reduce__(self) -> "tuple[Type[NoEditorError], tuple[str, str, str]]":
        """All arguments travel when the error is copied to another process, as parallel test runs do."""
        return type(self), (self.view_class, self.triggers, self.value)


class CornerButtonError(QtDriverError):
    """An entry of a menu bar was not chosen, since the click that comes first would press a button in the bar's corner.
    Nothing was done.

    Attributes:
        button_class: the class that serves the button.
        button: its path.
        bar: the path of the menu bar.
    """

    def __init__(self, button_class: str, button: str, bar: str) -> None:
        super().__init__(
            f'the menu was not opened: before it comes a click at the top right corner of the menu bar "{bar}", where '
            f'the {button_class} "{button}" is, which it would press.\n'
            f'Open the menu by a click on its title, window.widget("{bar}").click(at=(0.02, 0.5)) for the first one, and '
            "choose from app.popup(). Where the button may be pressed, say force=True"
        )
        self.button_class = button_class
        self.button = button
        self.bar = bar

    def __reduce__(self) -> "tuple[Type[CornerButtonError], tuple[str, str, str]]":
        """All arguments travel when the error is copied to another process, as parallel test runs do."""
        return type(self), (self.button_class, self.button, self.bar)


class ConditionError(QtDriverError, AssertionError):
    """What a test expected has not come true in time. The message tells what was there instead."""


class ReplyError(QtDriverError):
    """The agent refused a request. Subclasses name the reasons.

    Attributes:
        code: the reply code, "2" to "8".
        message: the agent's own words, for example "Widget (dialog/ok) not found".
        explanation: what there is instead, empty where nobody has looked.
    """

    def __init__(self, code: str, message: str, explanation: str = "") -> None:
        super().__init__(f"{message}\n{explanation}" if explanation else message)
        self.code = code
        self.message = message
        self.explanation = explanation

    def __reduce__(self) -> "tuple[Type[ReplyError], tuple[str, str, str]]":
        """All arguments travel when the error is copied to another process, as parallel test runs do."""
        return type(self), (self.code, self.message, self.explanation)


class NotFoundError(ReplyError):
    """Code 2: no window, or no tray icon, has this name."""


class AmbiguousWindowError(ReplyError):
    """Code 3: several visible windows match the window name."""


class WindowBlockedError(ReplyError):
    """Code 4: a popup or a modal window is open in front of the window."""


class WidgetNotFoundError(ReplyError):
    """Code 5: no widget of the window matches the path."""


class NotVisibleError(ReplyError):
    """Code 6: widgets or tray icons match, but none of them is visible."""


class AmbiguousError(ReplyError):
    """Code 7: several visible widgets or tray icons match."""


class CommandError(ReplyError):
    """Code 8: the command is unknown, or the widget could not do what was asked."""


class HiddenError(CommandError):
    """Code 8 in a case that can clear: the mouse found no window of the application where the widget is. Another
    program's window is in front of it, or the window manager has not shown it yet."""


_HIDDEN = "Exception : Error: widget is hidden by another window"

REPLY_ERRORS: Dict[str, Type[ReplyError]] = {
    "2": NotFoundError,
    "3": AmbiguousWindowError,
    "4": WindowBlockedError,
    "5": WidgetNotFoundError,
    "6": NotVisibleError,
    "7": AmbiguousError,
    "8": CommandError,
}

RETRYABLE_LOOKUPS = tuple(error for code, error in REPLY_ERRORS.items() if code != "8")
"""What can clear by itself: a window or widget that is about to appear, a dialog that is about to close."""

RETRYABLE_ERRORS = RETRYABLE_LOOKUPS + (HiddenError,)
"""The same, and a window that is about to come to the front, for an action that can begin anew."""


def reply_error(code: str, message: str) -> ReplyError:
    """The error for a reply with this code, "2" to "8", and this payload."""
    return HiddenError(code, message) if message == _HIDDEN else REPLY_ERRORS[code](code, message)
