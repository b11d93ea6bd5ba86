"""Makes the error for an application whose connection is closed, or that does not answer."""

from __future__ import annotations

from typing import TYPE_CHECKING, Optional

from ..crashes.stacks import Stacks
from ..errors import (
    ApplicationEndedError,
    ApplicationHangsError,
    ConnectionClosed,
    QtDriverError,
    RequestTimeout,
    endings,
)
from ..launch.supervision import end_foreign_process
from ..lookup.windows import describe_windows, last_windows
from ..protocol.extensions import readable_request

if TYPE_CHECKING:
    from .app import App

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_EXIT_SECONDS = 5.0
_GRACE_SECONDS = 2.0


class EndWatch:
    """A context in which ConnectionClosed and RequestTimeout become errors that say what happened to the application.

    It is a class, since the frames of contextlib would appear in tracebacks.
    """

    def __init__(self, app: "App") -> None:
        self._app = app

    def __repr__(self) -> str:
        return f"<watch for the end of {self._app}>"

    def __enter__(self) -> None:
        """Does nothing: only a request can show that the application has ended."""

    def __exit__(self, kind: object, error: Optional[BaseException], traceback: object) -> None:
        if isinstance(error, (ConnectionClosed, RequestTimeout)):
            self._app.end_is_known = True
            raise error_for(self._app, error) from None


def error_for(app: "App", error: QtDriverError) -> QtDriverError:
    """The error to raise in place of a ConnectionClosed or a RequestTimeout. Ends an application that does not answer."""
    if isinstance(error, (ApplicationEndedError, ApplicationHangsError)):
        return error
    if not isinstance(error, RequestTimeout) or _has_ended(app):
        return ended_error(app)
    seen = last_windows(app.connection.transcript.exchanges())
    windows = [] if seen is None else describe_windows(seen)
    where = _where(app.stacks(hangs=True))
    return endings.hangs(_describe_silence(app, error), app.pid, _end_process(app), windows, where)


def _has_ended(app: "App") -> bool:
    """Whether the application's own process has ended. Its connection need not: another process can hold the socket too."""
    process = app.process
    return process is not None and process.pid == app.connection.process and process.status() is not None


def _where(stacks: Optional[Stacks]) -> str:
    """The innermost call that is the application's own; empty where it is not known."""
    frame = None if stacks is None else stacks.own_frame()
    return "" if frame is None else str(frame)


def ended_error(app: "App") -> ApplicationEndedError:
    """The error for an application whose connection is closed, or whose process has ended."""
    place = _describe_place(app)
    process = app.process
    if process is None:
        return endings.ended_elsewhere(app.pid, place)
    # A closed connection comes a moment before the end of its process.
    status = process.wait(_EXIT_SECONDS)
    if status is None:
        return endings.closed_its_connection(app.pid, place, process.pid)
    return endings.ended(status, place, process.last_output(), _where(app.stacks()))


def _describe_place(app: "App") -> str:
    """Words that say at which call, or after which one, the application ended; empty before the first request."""
    exchanges = app.connection.transcript.exchanges()
    if not exchanges:
        return ""
    latest = exchanges[-1]
    call = _latest_call(app) or f"the request {readable_request(latest.request)!r}"
    return f" {'at' if latest.error else 'after'} {call}"


def _describe_silence(app: "App", error: RequestTimeout) -> str:
    call = _latest_call(app)
    return f"no reply to {call} within {error.seconds:g} seconds" if call else str(error)


def _latest_call(app: "App") -> str:
    """The call that made the latest request, as the test wrote it if that can be told; empty for one without a step."""
    step = app.connection.transcript.last_step
    if step is None:
        return ""
    written = "" if step.call is None else step.call.caller().call
    return app.connection.secrets.hide(written or step.title)


def _end_process(app: "App") -> bool:
    """Ends the application, also one that came by itself. Returns whether it has ended."""
    app.terminate(_GRACE_SECONDS)
    if app.process is not None:
        return app.process.has_ended()
    if app.connection.process is None:
        return False  # only the greeting says which process it is, and a greeting proves nothing
    return end_foreign_process(app.connection.process, _GRACE_SECONDS)
