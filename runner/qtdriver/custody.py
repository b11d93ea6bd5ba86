"""Ending everything that was started for an application, whatever it started in turn."""

from __future__ import annotations

import os
import secrets
import subprocess
import sys
from typing import Dict, Mapping, Optional

from . import watchman

_MARK = "QTDRIVER_LAUNCH"


class Custody:
    """Knows the processes of one launch by a mark in their environment, which children inherit: so those too whose
    parent has ended. A watchman, a process of its own, ends them if this process dies without having done so.
    """

    def __init__(self) -> None:
        """Starts the watchman, which ends with this process, or with end()."""
        self._token = secrets.token_hex(16)
        self._watchman: Optional["subprocess.Popen[bytes]"] = subprocess.Popen(
            [sys.executable, "-I", "-S", watchman.__file__, _MARK, self._token],
            stdin=subprocess.PIPE,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
            start_new_session=True,  # Ctrl-C in the terminal is for the test, which then ends its applications
            env={name: value for name, value in os.environ.items() if name not in (_MARK, "LD_PRELOAD")},
        )

    def environment(self, environment: Mapping[str, str]) -> Dict[str, str]:
        """`environment` with the mark, for the process to start."""
        return {**environment, _MARK: self._token}

    def holds(self, pid: int) -> bool:
        """Whether this living process has the mark."""
        return watchman.carries(pid, _MARK, self._token)

    def has_any(self) -> bool:
        """Whether any living process has the mark."""
        return any(True for _ in watchman.carriers(_MARK, self._token))

    def end(self, grace: float) -> None:
        """Ends every process with the mark: SIGTERM, and SIGKILL after `grace` seconds. Then sends the watchman home."""
        watchman.end_all(_MARK, self._token, grace)
        if self._watchman is not None:
            assert self._watchman.stdin is not None
            self._watchman.stdin.close()
            self._watchman.wait()
            self._watchman = None
