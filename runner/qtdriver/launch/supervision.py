"""Ends the processes of a launch with everything that they started in turn, and processes that are not our children."""

from __future__ import annotations

import os
import secrets
import subprocess
import sys
from typing import Any, Dict, Mapping, Optional

from ..protocol.peers import load_psutil
from ..protocol.waiting import Deadline, attempts
from . import linux

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_MARK = "QTDRIVER_LAUNCH"
_WATCHDOG_SECONDS = 10.0


class Watchdog:
    """A process that ends marked processes when this process dies, for whatever reason."""

    def __init__(self, launch: linux.Launch, *folders: str) -> None:
        """Starts the watchdog. It does its work when this process ends, or at end(): it ends the processes of `launch`, and
        removes `folders`."""
        self._process: Optional["subprocess.Popen[bytes]"] = subprocess.Popen(
            [sys.executable, "-I", "-S", linux.__file__, launch.name, *folders],
            stdin=subprocess.PIPE,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
            bufsize=0,
            start_new_session=True,  # Ctrl-C in the terminal is for the test, which then ends its applications
            env={name: value for name, value in os.environ.items() if name not in (_MARK, "LD_PRELOAD")},
        )
        self.tell(launch.value)

    def tell(self, line: str) -> None:
        """Writes a line to it."""
        assert self._process is not None and self._process.stdin is not None
        self._process.stdin.write(f"{line}\n".encode())

    def end(self) -> None:
        """Lets the watchdog do its work now, and waits until it has. Ending it twice is harmless."""
        if self._process is None:
            return
        assert self._process.stdin is not None
        self._process.stdin.close()
        try:
            self._process.wait(_WATCHDOG_SECONDS)
        except subprocess.TimeoutExpired:
            self._process.kill()
        self._process = None


class LaunchedProcesses:
    """The processes of one launch: the one that was started, and all that it starts in turn.

    They are recognised by a mark in their environment and by the session that the started process leads, since some
    programs clear their environment, and that of others cannot be read. A watchdog ends them if this process dies before
    it has done so.
    """

    def __init__(self) -> None:
        """Starts the watchdog, which ends with this process, or with end()."""
        self._launch = linux.Launch(_MARK, secrets.token_hex(16))
        self._watchdog = Watchdog(self._launch)

    def __repr__(self) -> str:
        return f"<processes of launch {self._launch.value}>"

    def environment(self, environment: Mapping[str, str]) -> Dict[str, str]:
        """`environment` with the mark, for the process to start."""
        return {**environment, _MARK: self._launch.value}

    def set_session_leader(self, leader: int) -> None:
        """Adds the session that the started process leads.

        `leader` must not be reaped before end() has returned, since the system could give its id to another process.
        """
        self._launch = self._launch._replace(session=leader)
        self._watchdog.tell(str(leader))

    def owns(self, pid: int) -> bool:
        """Whether this living process belongs to the launch."""
        return self._launch.owns(pid)

    def has_any(self) -> bool:
        """Whether any living process belongs to the launch."""
        return any(self._launch.processes())

    def end(self, grace: float) -> None:
        """Ends every process of the launch, then the watchdog.

        Sends SIGTERM, and SIGKILL after `grace` seconds; leaves processes that this user may not signal.
        """
        self._launch.end(grace)
        self._watchdog.end()
        self._launch = self._launch._replace(session=None)


def is_within(ancestor: int, pid: int) -> bool:
    """Whether the living process `pid` is `ancestor`, or was started by it or by what it started in turn.

    Raises PeerReaderMissingError.
    """
    psutil = load_psutil()
    if pid == ancestor:
        return True
    try:
        return any(above.pid == ancestor for above in psutil.Process(pid).parents())
    except psutil.Error:
        return False


def end_foreign_process(pid: int, grace: float) -> bool:
    """Ends a process that was not started here: SIGTERM, and SIGKILL after `grace` seconds.

    A later process that got the same id is left alone. Returns whether it has ended. Raises PeerReaderMissingError.
    """
    psutil = load_psutil()
    try:
        process = psutil.Process(pid)
        for send in (process.terminate, process.kill):
            send()
            for _ in attempts(Deadline(grace)):
                if _has_ended(psutil, process):
                    return True
        return False
    except psutil.NoSuchProcess:
        return True
    except psutil.AccessDenied:
        return False


def _has_ended(psutil: Any, process: Any) -> bool:
    """Whether the process has ended. Leaves its exit status, which is for its parent to collect."""
    return not process.is_running() or process.status() in (psutil.STATUS_ZOMBIE, psutil.STATUS_DEAD)
