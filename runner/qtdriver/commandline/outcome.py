"""The answer of a command: text for a person, data for a program, and an exit status."""

from __future__ import annotations

import json
import signal
from dataclasses import dataclass
from typing import Any, Dict, Optional, Tuple, Type

from ..errors import (
    AmbiguousError,
    AmbiguousWindowError,
    ConnectionClosed,
    NoClientError,
    NotVisibleError,
    QtDriverError,
    ReplyError,
    RequestTimeout,
    WidgetNotFoundError,
    WindowBlockedError,
    WindowNotFoundError,
)
from ..errors.commandline import NoApplicationError, UsageError
from ..protocol.wire import Rect

OK, FAILED, USAGE, NOT_FOUND, AMBIGUOUS, BLOCKED, NO_APPLICATION, HANGS = range(8)
HUNG_UP = 128 + 1
INTERRUPTED = 128 + signal.SIGINT

EXIT_STATUSES = (
    (OK, "done"),
    (FAILED, "the application refused it, or something else went wrong"),
    (USAGE, "the command line is wrong"),
    (NOT_FOUND, "no such window or widget, or it is hidden"),
    (AMBIGUOUS, "several windows or widgets have the name"),
    (BLOCKED, "a popup or a modal dialog is in front"),
    (NO_APPLICATION, "no application is held, or it has ended"),
    (HANGS, "the application did not answer in time"),
    (HUNG_UP, "the terminal was closed (SIGHUP)"),
    (INTERRUPTED, "interrupted"),
    (128 + signal.SIGTERM, "terminated (SIGTERM)"),
)


_STATUS_OF: Tuple[Tuple[Type[QtDriverError], int], ...] = (
    (UsageError, USAGE),
    (WindowNotFoundError, NOT_FOUND),
    (WidgetNotFoundError, NOT_FOUND),
    (NotVisibleError, NOT_FOUND),
    (AmbiguousError, AMBIGUOUS),
    (AmbiguousWindowError, AMBIGUOUS),
    (WindowBlockedError, BLOCKED),
    (NoApplicationError, NO_APPLICATION),
    (ConnectionClosed, NO_APPLICATION),
    (NoClientError, NO_APPLICATION),
    (RequestTimeout, HANGS),
)


@dataclass(frozen=True)
class Outcome:
    """The end of a command.

    Attributes:
        text: the result for a person; of a failure, the message.
        data: the result for a program, in types of JSON.
        status: the exit status.
    """

    text: str
    data: Any = None
    status: int = OK

    @classmethod
    def of_error(cls, error: QtDriverError) -> "Outcome":
        """The outcome of an error. Its data: {"error": its kind, "message": its text, "code": the agent's, or null}."""
        status = next((status for kind, status in _STATUS_OF if isinstance(error, kind)), FAILED)
        code: Optional[str] = error.code if isinstance(error, ReplyError) else None
        data: Dict[str, Any] = {"error": type(error).__name__, "message": str(error), "code": code}
        return cls(str(error), data, status)

    def shown(self, *, as_json: bool) -> str:
        """The line or lines to print."""
        return json.dumps(self.data, ensure_ascii=False) if as_json else self.text

    def to_line(self) -> str:
        """The outcome as one line, for another process."""
        return json.dumps({"text": self.text, "data": self.data, "status": self.status})

    @classmethod
    def from_line(cls, line: str) -> "Outcome":
        """Reads the line that to_line() writes."""
        return cls(**json.loads(line))


def json_value(value: Any) -> Any:
    """A value of a property in types of JSON: a rectangle as its edges, a picture as its XPM text."""
    if isinstance(value, Rect):
        return {"left": value.left, "top": value.top, "right": value.right, "bottom": value.bottom}
    return value.decode("latin-1") if isinstance(value, bytes) else value
