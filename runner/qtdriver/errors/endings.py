"""What is said when an application ended or hangs."""

from __future__ import annotations

import signal
from typing import TYPE_CHECKING, List

from ..errors import (
    ApplicationEndedError,
    ApplicationHangsError,
    ProtocolError,
    QtDriverError,
    ReplyError,
    RequestTimeout,
)
from ..launch.process import describe_exit
from ..launch.processes import Descendant
from ..lookup.explain import describe_windows
from ..protocol.records import WindowRecord
from ..protocol.transcript import Exchange
from ..protocol.waiting import Deadline, attempts
from ..protocol.wire import Reply

if TYPE_CHECKING:
    from ..api.app import App

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_EXIT_SECONDS = 5.0
_GRACE_SECONDS = 2.0


def describe(app: "App", error: QtDriverError) -> QtDriverError:
    """The error to raise for `error`, which is a ConnectionClosed or a RequestTimeout of the application's
    connection. An application that does not answer is ended."""
    if isinstance(error, (ApplicationEndedError, ApplicationHangsError)):
        return error
    return _hang(app, error) if isinstance(error, RequestTimeout) else describe_end(app)


def describe_end(app: "App") -> ApplicationEndedError:
    """The error for an application whose connection is closed, or whose process has ended."""
    exchanges = app.connection.transcript.exchanges()
    request = ""
    if exchanges:
        request = f" {'at' if exchanges[-1].error else 'after'} the request {exchanges[-1].request!r}"
    process = app.process
    if process is None:
        return ApplicationEndedError(
            f"the application (process {app.pid}) ended{request}; it was not started by this test, so its exit "
            "status and its output are not known"
        )
    # A closed connection comes a moment before the end of its process.
    status = process.wait(_EXIT_SECONDS)
    if status is None:
        return ApplicationEndedError(
            f"the application (process {app.pid}) closed its connection{request}, but process {process.pid} "
            "still runs"
        )
    words = process.last_words()
    output = f"; its last output:\n{words}" if words else ", without any output"
    return ApplicationEndedError(f"the application ended ({describe_exit(status)}){request}{output}")


def _hang(app: "App", error: QtDriverError) -> ApplicationHangsError:
    windows = last_windows(app.connection.transcript.exchanges())
    end = "was ended" if _end_process(app) else "could not be ended"
    seen = ["the windows that were last seen:", *describe_windows(windows)]
    return ApplicationHangsError(
        "\n".join([f"{error}; the application hangs, and process {app.pid} {end}", *seen])
    )


def _end_process(app: "App") -> bool:
    """Ends the application, also one that came by itself; whether that could be done."""
    app.terminate(_GRACE_SECONDS)
    if app.process is not None:
        return app.process.has_ended()
    if app.connection.process is None:
        return False  # which process it is only its greeting says: it could be any
    try:
        process = Descendant(app.connection.process)
        for number in (signal.SIGTERM, signal.SIGKILL):
            process.send_signal(number)
            for _ in attempts(Deadline(_GRACE_SECONDS)):
                if not process.is_alive():
                    return True
        return False
    except ProcessLookupError:
        return True
    except PermissionError:
        return False


def last_windows(exchanges: "tuple[Exchange, ...]") -> List[WindowRecord]:
    """The windows of the last listing in a transcript; none if there is no listing."""
    for exchange in reversed(exchanges):
        if exchange.request == "1" and exchange.reply is not None:
            return _parse(exchange.reply)
    return []


def _parse(line: str) -> List[WindowRecord]:
    windows = []
    try:
        items = Reply.parse(line).value()
        for item in items if isinstance(items, tuple) else ():
            windows.append(WindowRecord.parse(item))
    except (ProtocolError, ReplyError):
        pass  # the transcript cuts long replies: what is whole is told
    return windows
