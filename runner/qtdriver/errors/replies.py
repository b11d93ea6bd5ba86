"""Refusals of the agent: an error for each code of a reply, and which of them can clear by themselves."""

from __future__ import annotations

from typing import Callable, Dict, Mapping, Optional, Tuple, Type

from .base import QtDriverError


class ReplyError(QtDriverError):
    """The agent refused a request. Subclasses name the reasons.

    Attributes:
        code: the reply code, "2" to "9".
        message: the agent's own words, for example "Widget (dialog/ok) not found".
        explanation: lines on what there is instead; empty where the runner has not looked.
        candidates: the widgets that the agent names with the codes "5" to "7" of an extension, described as in a
            snapshot: the nearest, the hidden ones, or those that all match.
        explain_later: makes the explanation when the error is final; None where it is made already.
    """

    def __init__(
        self,
        code: str,
        message: str,
        explanation: str = "",
        candidates: Tuple[Mapping[str, object], ...] = (),
    ) -> None:
        super().__init__(message, context=explanation)
        self.code = code
        self.explanation = explanation
        self.candidates = candidates
        self.explain_later: Optional[Callable[[], str]] = None

    def __reduce__(self) -> "tuple[Type[ReplyError], tuple[object, ...]]":
        """All arguments travel when the error is copied to another process, as parallel test runs do."""
        return type(self), (self.code, self.message, self.explanation, self.candidates)


class WindowNotFoundError(ReplyError):
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
    """Code 8: the command is unknown, or the widget could not do what was asked.

    The subclasses are cases that can clear by themselves.
    """


class ObscuredError(CommandError):
    """Code 8, but it can clear: the mouse found no window of the application where the widget is.

    Another program's window is in front of it, or the window manager has not shown it yet.
    """


class NotReadyError(CommandError):
    """Code 9, of an extension: the widget could not take the input yet, and nothing was done.

    The message is the reason: "disabled", "covered by QFrame overlay", 'item "Late" not there yet'.
    """


_HIDDEN = "Exception : Error: widget is hidden by another window"

REPLY_ERRORS: Dict[str, Type[ReplyError]] = {
    "2": WindowNotFoundError,
    "3": AmbiguousWindowError,
    "4": WindowBlockedError,
    "5": WidgetNotFoundError,
    "6": NotVisibleError,
    "7": AmbiguousError,
    "8": CommandError,
    "9": NotReadyError,
}

RETRYABLE_LOOKUPS = tuple(error for code, error in REPLY_ERRORS.items() if code != "8")
"""Refusals that can clear by themselves: a window or widget is about to appear or to be enabled, a dialog is about to
close."""

RETRYABLE_ERRORS = RETRYABLE_LOOKUPS + (ObscuredError,)
"""The same, and that a window is about to come to the front: for actions that can be repeated from the beginning."""


def reply_error(code: str, message: str) -> ReplyError:
    """The error for a reply with this code, "2" to "9", and this payload."""
    return ObscuredError(code, message) if message == _HIDDEN else REPLY_ERRORS[code](code, message)
