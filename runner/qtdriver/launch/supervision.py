"""Ending what was started for an application, whatever it started in turn, and processes that are not our children."""

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
_WATCHMAN_SECONDS = 10.0


class LaunchedProcesses:
    """The processes of one launch, known by a mark in their environment, and by the session that the started process
    leads: some programs clear their environment, and that of some cannot be read. A watchman, a process of its own,
    ends them if this process dies without having done so.
    """

    def __init__(self) -> None:
        """Starts the watchman, which ends with this process, or with end()."""
        self._launch = linux.Launch(_MARK, secrets.token_hex(16))
        self._watchman: Optional["subprocess.Popen[bytes]"] = subprocess.Popen(
            [sys.executable, "-I", "-S", linux.__file__, _MARK],
            stdin=subprocess.PIPE,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
            bufsize=0,
            start_new_session=True,  # Ctrl-C in the terminal is for the test, which then ends its applications
            env={name: value for name, value in os.environ.items() if name not in (_MARK, "LD_PRELOAD")},
        )
        self._tell_watchman(self._launch.value)

    def __repr__(self) -> str:
        return f"<processes of launch {self._launch.value}>"

    def environment(self, environment: Mapping[str, str]) -> Dict[str, str]:
        """`environment` with the mark, for the process to start."""
        return {**environment, _MARK: self._launch.value}

    def set_session_leader(self, leader: int) -> None:
        """Adds the session of the started process, `leader`, which is not to be reaped before end() has returned: its
        id could be given to another process then."""
        self._launch = self._launch._replace(session=leader)
        self._tell_watchman(str(leader))

    def _tell_watchman(self, line: str) -> None:
        assert self._watchman is not None and self._watchman.stdin is not None
        self._watchman.stdin.write(f"{line}\n".encode())

    def owns(self, pid: int) -> bool:
        """Whether this living process belongs to the launch."""
        return self._launch.owns(pid)

    def has_any(self) -> bool:
        """Whether any living process belongs to the launch."""
        return any(self._launch.processes())

    def end(self, grace: float) -> None:
        """Ends every process of the launch: SIGTERM, and SIGKILL after `grace` seconds; gives up on those that may
        not be signalled. Then ends the watchman."""
        self._launch.end(grace)
        if self._watchman is not None:
            assert self._watchman.stdin is not None
            self._watchman.stdin.close()
            try:
                self._watchman.wait(_WATCHMAN_SECONDS)
            except subprocess.TimeoutExpired:
                self._watchman.kill()
            self._watchman = None
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
    """Ends a process that was not started here: SIGTERM, and SIGKILL after `grace` seconds. Whether it has ended.

    A later process that got the same id is left alone. Raises PeerReaderMissingError.
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
    """Whether only its exit status is left, or not even that. Takes no exit status, which may be another's to take."""
    return not process.is_running() or process.status() in (psutil.STATUS_ZOMBIE, psutil.STATUS_DEAD)
