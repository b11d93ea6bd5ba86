"""The processes of one launch on Linux, and how they are ended. As a program: ends them when its parent is gone.

What supervision needs of an operating system is here: `Launch`, and this file as the watchman.

Started as `linux.py NAME`, it waits for the end of its standard input, which comes with the end of the process that
started it, however that ends. What it reads until then is the value, and the session of the launch if the program was
started, a line each. The value is no argument: every user can read those, and pass for a process of the launch.
Stands on the standard library alone, so that it starts quickly, with any Python and whatever is installed.
"""

from __future__ import annotations

import os
import signal
import sys
import time
from typing import Iterator, List, NamedTuple, Optional

_GRACE_SECONDS = 2.0
_KILL_SECONDS = 5.0
_FIRST_PAUSE = 0.005
_LONGEST_PAUSE = 0.1


def carries(pid: int, name: str, value: str) -> bool:
    """Whether a living process was started with this in its environment, as far as that can be read."""
    try:
        with open(f"/proc/{pid}/environ", "rb") as file:
            return f"{name}={value}".encode() in file.read().split(b"\0")
    except OSError:
        return False


def status_of(pid: int) -> Optional[List[str]]:
    """The fields of /proc/PID/stat from the state on; None when the process has ended, even if nobody has asked how."""
    try:
        with open(f"/proc/{pid}/stat", encoding="latin-1") as file:
            # The fields count from behind the program's name, which may hold blanks and parentheses.
            fields = file.read().rpartition(")")[2].split()
    except OSError:
        return None
    return None if fields[0] in "ZX" else fields


def session_of(pid: int) -> Optional[int]:
    """The session of a living process; None when it has ended."""
    status = status_of(pid)
    return None if status is None else int(status[3])


class Launch(NamedTuple):
    """The marks of the processes of one launch. Children inherit both, also those whose parent has ended.

    Attributes:
        name, value: what they have in their environment, unless it was cleared or cannot be read.
        session: the one that the started process leads, and all are in that have not begun one of their own.
    """

    name: str
    value: str
    session: Optional[int] = None

    def owns(self, pid: int) -> bool:
        """Whether this living process belongs to the launch."""
        if self.session is not None and session_of(pid) == self.session:
            return True
        return carries(pid, self.name, self.value)

    def processes(self) -> Iterator[int]:
        """All of them, the calling process left out."""
        for entry in os.listdir("/proc"):
            if entry.isdigit() and int(entry) != os.getpid() and self.owns(int(entry)):
                yield int(entry)

    def end(self, grace: float) -> None:
        """SIGTERM for all, and SIGKILL for those that are still there after `grace` seconds.

        Gives up on what may not be signalled, because it runs with the rights of another user.
        """
        for number, seconds in ((signal.SIGTERM, grace), (signal.SIGKILL, _KILL_SECONDS)):
            if not self._send(number):
                return
            self._wait(seconds)

    def _send(self, number: int) -> bool:
        """Whether anybody got the signal."""
        sent = False
        for pid in list(self.processes()):
            try:
                os.kill(pid, number)
                sent = True
            except (ProcessLookupError, PermissionError):
                pass
        return sent

    def _wait(self, seconds: float) -> None:
        """Returns when all have ended, after `seconds` at the latest."""
        deadline = time.monotonic() + seconds
        pause = _FIRST_PAUSE
        while any(self.processes()) and time.monotonic() < deadline:
            time.sleep(pause)
            pause = min(pause * 2, _LONGEST_PAUSE)


if __name__ == "__main__":
    told = sys.stdin.read().split()
    if told:
        Launch(sys.argv[1], told[0], int(told[1]) if told[1:] else None).end(_GRACE_SECONDS)
