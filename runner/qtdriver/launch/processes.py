"""Processes that are not our own children."""

from __future__ import annotations

import os
from typing import Optional

from .linux import status_of


def _start_of(pid: int) -> Optional[str]:
    status = status_of(pid)
    return None if status is None else status[19]


def is_within(ancestor: int, pid: int) -> bool:
    """Whether the living process `pid` is `ancestor`, or was started by it or by what it started in turn."""
    while pid != ancestor:
        status = status_of(pid)
        if status is None or pid <= 1:
            return False
        pid = int(status[1])
    return True


class Descendant:
    """One process, told from a later one that got the same id."""

    def __init__(self, pid: int) -> None:
        """Raises ProcessLookupError when there is no such process."""
        start = _start_of(pid)
        if start is None:
            raise ProcessLookupError(f"no process {pid}")
        self.pid = pid
        self._start = start

    def is_alive(self) -> bool:
        """Whether this very process still runs."""
        return _start_of(self.pid) == self._start

    def send_signal(self, number: int) -> None:
        """Sends a signal; does nothing when the process has ended."""
        if not self.is_alive():
            return
        try:
            os.kill(self.pid, number)
        except ProcessLookupError:
            pass
