"""Processes that are not our own children but descend from one: the application behind a wrapper."""

from __future__ import annotations

import os
from typing import NamedTuple, Optional


class _Status(NamedTuple):
    parent: int
    start: str


def _read_status(pid: int) -> Optional[_Status]:
    """Parent and start time of a living process; None when it has ended, even if nobody has asked how."""
    try:
        with open(f"/proc/{pid}/stat", encoding="latin-1") as file:
            # The fields count from behind the program's name, which may hold blanks and parentheses.
            fields = file.read().rpartition(")")[2].split()
    except OSError:
        return None
    state, parent, start = fields[0], int(fields[1]), fields[19]
    return None if state in "ZX" else _Status(parent, start)


def descends_from(pid: int, ancestor: int) -> bool:
    """Whether the living process `pid` is a child of `ancestor`, or a child of its children, and so on."""
    while pid > 1:
        status = _read_status(pid)
        if status is None:
            return False
        if status.parent == ancestor:
            return True
        pid = status.parent
    return False


class Descendant:
    """A living process, known by its id and its start time, so that a reused id is not taken for it."""

    def __init__(self, pid: int) -> None:
        """Raises ProcessLookupError when there is no such process."""
        status = _read_status(pid)
        if status is None:
            raise ProcessLookupError(f"no process {pid}")
        self.pid = pid
        self._start = status.start

    def is_alive(self) -> bool:
        """Whether this very process still runs."""
        status = _read_status(self.pid)
        return status is not None and status.start == self._start

    def send_signal(self, number: int) -> None:
        """Sends a signal; does nothing when the process has ended."""
        if not self.is_alive():
            return
        try:
            os.kill(self.pid, number)
        except ProcessLookupError:
            pass
