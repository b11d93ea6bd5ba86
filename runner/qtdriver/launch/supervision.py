"""Ending everything that was started for an application, whatever it started in turn."""

from __future__ import annotations

import os
import secrets
import subprocess
import sys
from typing import Dict, Mapping, Optional

from . import linux as watchman

_MARK = "QTDRIVER_LAUNCH"
_WATCHMAN_SECONDS = 10.0


class Custody:
    """Knows the processes of one launch by a mark in their environment, and by the session that the started process
    leads: some programs clear their environment, and that of some cannot be read. A watchman, a process of its own,
    ends them if this process dies without having done so.
    """

    def __init__(self) -> None:
        """Starts the watchman, which ends with this process, or with end()."""
        self._launch = watchman.Launch(_MARK, secrets.token_hex(16))
        self._watchman: Optional["subprocess.Popen[bytes]"] = subprocess.Popen(
            [sys.executable, "-I", "-S", watchman.__file__, _MARK],
            stdin=subprocess.PIPE,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
            bufsize=0,
            start_new_session=True,  # Ctrl-C in the terminal is for the test, which then ends its applications
            env={name: value for name, value in os.environ.items() if name not in (_MARK, "LD_PRELOAD")},
        )
        self._tell_watchman(self._launch.value)

    def environment(self, environment: Mapping[str, str]) -> Dict[str, str]:
        """`environment` with the mark, for the process to start."""
        return {**environment, _MARK: self._launch.value}

    def take_session(self, leader: int) -> None:
        """Takes in the session of the started process, `leader`, which is not to be reaped before end() has returned:
        its id could be given to another process then."""
        self._launch = self._launch._replace(session=leader)
        self._tell_watchman(str(leader))

    def _tell_watchman(self, line: str) -> None:
        assert self._watchman is not None and self._watchman.stdin is not None
        self._watchman.stdin.write(f"{line}\n".encode())

    def holds(self, pid: int) -> bool:
        """Whether this living process belongs to the launch."""
        return self._launch.holds(pid)

    def has_any(self) -> bool:
        """Whether any living process belongs to the launch."""
        return any(self._launch.processes())

    def end(self, grace: float) -> None:
        """Ends every process of the launch: SIGTERM, and SIGKILL after `grace` seconds; gives up on those that may
        not be signalled. Then sends the watchman home."""
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
