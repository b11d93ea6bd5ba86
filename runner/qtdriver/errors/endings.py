"""Makes the errors for an application that ended or hangs."""

from __future__ import annotations

import signal
from typing import Sequence

from .connection import ApplicationEndedError, ApplicationHangsError


def describe_exit(status: int) -> str:
    """An exit status of subprocess in words: "exit status 3", or "signal SIGSEGV" for a negative one."""
    if status >= 0:
        return f"exit status {status}"
    try:
        return f"signal {signal.Signals(-status).name}"
    except ValueError:
        return f"signal {-status}"


def ended(status: int, place: str, last_output: str, where: str = "") -> ApplicationEndedError:
    """The error for an application that was started by the test.

    Args:
        status: its exit status, negative for a signal.
        place: words that name the latest call or request, such as ' at window("Editor").title()'; empty before the first one.
        last_output: the last lines that it has printed.
        where: the call of its own in which it crashed; empty where that is not known.
    """
    own_call = f", in {where}" if where else ""
    output = "; its last output:" if last_output else ", without any output"
    return ApplicationEndedError(
        f"the application ended ({describe_exit(status)}){place}{own_call}{output}", context=last_output
    )


def ended_elsewhere(pid: int, place: str) -> ApplicationEndedError:
    """The error for an application, process `pid`, that was not started by the test."""
    return ApplicationEndedError(
        f"the application (process {pid}) ended{place}; it was not started by this test, so its exit "
        "status and its output are not known"
    )


def closed_its_connection(pid: int, place: str, process: int) -> ApplicationEndedError:
    """The error for an application, process `pid`, that closed its connection while the started `process` still runs."""
    return ApplicationEndedError(
        f"the application (process {pid}) closed its connection{place}, but process {process} still runs"
    )


def hangs(
    silence: str, pid: int, was_ended: bool, windows: Sequence[str], where: str = ""
) -> ApplicationHangsError:
    """The error for an application that did not answer a request.

    Args:
        silence: words that name the call or the request, and the time that it had.
        pid: the process of the application.
        was_ended: whether the runner could end it.
        windows: lines that describe the windows of the last listing; none where there was none.
        where: the call of its own that its main thread was in; empty where that is not known.
    """
    place = f" in {where}" if where else ""
    end = "was ended" if was_ended else "could not be ended"
    seen = ["the windows that were last seen:", *windows] if windows else []
    return ApplicationHangsError(
        f"{silence}; the application hangs{place}, and process {pid} {end}", context="\n".join(seen)
    )
