"""A running application that was started with the agent inside."""

from __future__ import annotations

import signal
import subprocess
import time
from types import TracebackType
from typing import Optional, Type

from .connection import Connection
from .output import OutputTail
from .processes import Descendant, descends_from

GRACE_SECONDS = 5.0
_LOOK_AGAIN_SECONDS = 0.02
_OUTPUT_SECONDS = 1.0


def describe_exit(status: int) -> str:
    """An exit status of subprocess in words: "exit status 3", or "signal SIGSEGV" for a negative one."""
    if status >= 0:
        return f"exit status {status}"
    try:
        return f"signal {signal.Signals(-status).name}"
    except ValueError:
        return f"signal {-status}"


class Process:
    """The process that was started, with the end of its output."""

    def __init__(self, popen: "subprocess.Popen[bytes]") -> None:
        """Takes over `popen`, whose standard output and error are pipes."""
        assert popen.stdout is not None and popen.stderr is not None
        self._popen = popen
        self.pid = popen.pid
        self.output = OutputTail(popen.stdout)
        self.errors = OutputTail(popen.stderr)

    def status(self) -> Optional[int]:
        """The exit status, negative for a signal; None while the process runs."""
        return self._popen.poll()

    def wait(self, timeout: Optional[float] = None) -> Optional[int]:
        """Waits at most `timeout` seconds for the end, without limit for None. Answers as status()."""
        try:
            return self._popen.wait(timeout)
        except subprocess.TimeoutExpired:
            return None

    def last_words(self) -> str:
        """The last lines of standard error, of standard output when there are none; empty without output."""
        for tail in (self.errors, self.output):
            tail.wait_for_end(_OUTPUT_SECONDS if self.status() is not None else 0)
            if tail.lines():
                return "\n".join(tail.lines())
        return ""

    def terminate(self, application_pid: Optional[int] = None, grace: float = GRACE_SECONDS) -> int:
        """Ends the process: SIGTERM, and SIGKILL if it is still there after `grace` seconds.

        `application_pid` is a second process to end in the same way, if it descends from this one. Answers
        the exit status.
        """
        application = self._descendant(application_pid)
        self._send(signal.SIGTERM, application)
        deadline = time.monotonic() + grace
        ended = self.wait(grace) is not None
        while application is not None and application.is_alive() and time.monotonic() < deadline:
            time.sleep(_LOOK_AGAIN_SECONDS)
        if not ended or (application is not None and application.is_alive()):
            self._send(signal.SIGKILL, application)
        return self._popen.wait()

    def _descendant(self, pid: Optional[int]) -> Optional[Descendant]:
        if pid is None or pid == self.pid or not descends_from(pid, self.pid):
            return None
        try:
            return Descendant(pid)
        except ProcessLookupError:
            return None

    def _send(self, number: int, application: Optional[Descendant]) -> None:
        if application is not None:
            application.send_signal(number)
        self._popen.send_signal(number)


class Application:
    """An application under test: its process and the connection to its agent.

    A context manager: leaving it ends the application.
    """

    def __init__(self, process: Process, connection: Connection) -> None:
        self.process = process
        self.connection = connection

    @property
    def launched_pid(self) -> int:
        """Id of the process that was started; it may be a wrapper."""
        return self.process.pid

    @property
    def pid(self) -> int:
        """Id of the process in which the agent runs, from its greeting."""
        return self.connection.greeting.pid

    def terminate(self, grace: float = GRACE_SECONDS) -> int:
        """Closes the connection and ends the application and the wrapper that started it, if there is one.

        SIGTERM first, SIGKILL after `grace` seconds. Answers the exit status of the process that was started,
        negative for a signal.
        """
        self.connection.close()
        return self.process.terminate(self.pid, grace)

    def __enter__(self) -> "Application":
        return self

    def __exit__(
        self,
        kind: Optional[Type[BaseException]],
        error: Optional[BaseException],
        traceback: Optional[TracebackType],
    ) -> None:
        self.terminate()
