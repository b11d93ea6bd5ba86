"""The process of an application that was started with the agent inside."""

from __future__ import annotations

import os
import subprocess
import sys
import warnings
from dataclasses import dataclass
from typing import Optional

from ..crashes.cores import CoreFile, is_crash
from ..crashes.stacks import Stacks
from ..errors.endings import describe_exit
from ..protocol.waiting import Deadline, attempts
from .output import OutputTail
from .platform import LaunchedProcesses

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_QUOTED_LINES = 20
"""Lines of output that a message quotes."""

GRACE_SECONDS = 5.0
"""Seconds that a process has to end at SIGTERM, before it gets SIGKILL."""

_OUTPUT_SECONDS = 1.0
_EXIT_SECONDS = 1.0


@dataclass(frozen=True)
class FailedStart:
    """An application that was started, and whose agent has not come.

    Attributes:
        program: the program as the test named it.
        process: its process, with the end of its output; it has been ended since.
        display: its X display, None for that of this process.
    """

    program: str
    process: "Process"
    display: Optional[str]


class Process:
    """The process that was started, with the end of its output.

    Attributes:
        pid: its id.
        output: the end of its standard output.
        errors: the end of its standard error.
        launched: the process, and what was started for it in turn.
        under_wine: whether it is a Windows program under Wine.
        qt_major: the major version of its Qt; None where that is not known.
    """

    def __init__(
        self,
        popen: "subprocess.Popen[bytes]",
        launched: LaunchedProcesses,
        *,
        under_wine: bool = False,
        qt_major: Optional[int] = None,
    ) -> None:
        """Owns the process from now on.

        Args:
            popen: the process; its standard output and error are pipes, and it leads a session.
            launched: the process and everything that it starts.
            under_wine, qt_major: the attributes.
        """
        assert popen.stdout is not None and popen.stderr is not None
        self._popen = popen
        self.pid = popen.pid
        self.output = OutputTail(popen.stdout)
        self.errors = OutputTail(popen.stderr)
        self.launched = launched
        self.under_wine = under_wine
        self.qt_major = qt_major
        self._core = CoreFile(popen.pid)
        self._crash: Optional[Stacks] = None
        launched.set_session_leader(popen.pid)

    def __repr__(self) -> str:
        status = self.status()
        return f'<process {self.pid}, {"running" if status is None else f"ended: {describe_exit(status)}"}>'

    def status(self) -> Optional[int]:
        """The exit status, negative for a signal; None while the process runs."""
        if self._popen.returncode is not None:
            return self._popen.returncode
        if sys.platform == "win32":
            return self._popen.poll()
        try:  # WNOWAIT leaves it a zombie: reaping it would free its id before end() has used it
            ended = os.waitid(os.P_PID, self.pid, os.WEXITED | os.WNOHANG | os.WNOWAIT)
        except ChildProcessError:  # somebody else has reaped it
            return self._popen.poll()
        if ended is None:
            return None
        return ended.si_status if ended.si_code == os.CLD_EXITED else -ended.si_status

    def wait(self, timeout: float) -> Optional[int]:
        """Waits at most `timeout` seconds for the end. Returns what status() returns then."""
        for _ in attempts(Deadline(timeout)):
            if self.status() is not None:
                break
        return self.status()

    def has_ended(self) -> bool:
        """Whether it has ended, and with it everything that it started."""
        return self.status() is not None and not self.launched.has_any()

    def agent_came(self, pid: int) -> None:
        """Notes that the agent has greeted, and that `pid` is the application's process, whose core file tells of a crash."""
        self._core = CoreFile(pid, self._core.is_ours)

    def crash(self) -> Optional[Stacks]:
        """The stacks of the application, once it has crashed; None otherwise.

        They are read from its core file when first asked for, which takes a second or two.
        """
        status = self.status()
        if self._crash is None and status is not None and (is_crash(status) or is_crash(128 - status)):
            self._crash = self._core.stacks()
        return self._crash

    def last_output(self) -> str:
        """The last 20 lines of standard error, or of standard output when there are none; empty without output."""
        for tail in (self.errors, self.output):
            tail.wait_for_end(_OUTPUT_SECONDS if self.status() is not None else 0)
            if tail.lines():
                return "\n".join(tail.lines()[-_QUOTED_LINES:])
        return ""

    def last_words(self) -> str:
        """The name of last_output() until version 2; version 3 removes it."""
        warnings.warn("last_words() is last_output() now", DeprecationWarning, stacklevel=2)
        return self.last_output()

    def terminate(self, grace: float = GRACE_SECONDS) -> Optional[int]:
        """Ends the process and everything that it started: SIGTERM, and SIGKILL after `grace` seconds.

        Returns its exit status, negative for a signal; None if it still runs, because this user may not end it.
        """
        self.launched.end(grace)
        self.crash()  # or its core file would stay
        try:
            return self._popen.wait(_EXIT_SECONDS)
        except subprocess.TimeoutExpired:
            return None
