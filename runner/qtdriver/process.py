"""The process of an application that was started with the agent inside."""

from __future__ import annotations

import signal
import subprocess
from typing import Optional

from .custody import Custody
from .output import OutputTail

_LAST_WORDS = 20
"""Lines of output that a message quotes."""

GRACE_SECONDS = 5.0
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
    """The process that was started, with the end of its output.

    Attributes:
        pid: its id.
        output: the end of its standard output.
        errors: the end of its standard error.
        custody: knows what else was started for it.
    """

    def __init__(self, popen: "subprocess.Popen[bytes]", custody: Custody) -> None:
        """Takes over `popen`, whose standard output and error are pipes, and everything in `custody`."""
        assert popen.stdout is not None and popen.stderr is not None
        self._popen = popen
        self.pid = popen.pid
        self.output = OutputTail(popen.stdout)
        self.errors = OutputTail(popen.stderr)
        self.custody = custody

    def status(self) -> Optional[int]:
        """The exit status, negative for a signal; None while the process runs."""
        return self._popen.poll()

    def wait(self, timeout: Optional[float] = None) -> Optional[int]:
        """Waits at most `timeout` seconds for the end, without limit for None. Answers as status()."""
        try:
            return self._popen.wait(timeout)
        except subprocess.TimeoutExpired:
            return None

    def has_ended(self) -> bool:
        """Whether it has ended, and with it everything that it started."""
        return self.status() is not None and not self.custody.has_any()

    def last_words(self) -> str:
        """The last lines of standard error, of standard output when there are none; empty without output."""
        for tail in (self.errors, self.output):
            tail.wait_for_end(_OUTPUT_SECONDS if self.status() is not None else 0)
            if tail.lines():
                return "\n".join(tail.lines()[-_LAST_WORDS:])
        return ""

    def terminate(self, grace: float = GRACE_SECONDS) -> int:
        """Ends the process and everything that it started: SIGTERM, and SIGKILL after `grace` seconds.

        Answers its exit status.
        """
        self.custody.end(grace)
        return self._popen.wait()
