"""Finds and ends the processes of one launch on Linux. As a program, it ends them when its parent has died.

`supervision` needs two things of the operating system, and both are here: `Launch`, and the watchdog.

The watchdog is this file, started as `linux.py NAME FOLDER...`. It reads its standard input, which ends when the process that
started it ends, for whatever reason. Until then it reads the value of the mark and, once the program was started, the
session of the launch, a line each. The value is no argument, since every user can read arguments and could pass for a
process of the launch. When the processes have ended it removes the folders.

The file uses the standard library alone, so that it starts quickly and with any Python.
"""

from __future__ import annotations

import os
import shutil
import signal
import sys
import time
from contextlib import contextmanager
from typing import Iterator, List, NamedTuple, Optional

_GRACE_SECONDS = 2.0
_KILL_SECONDS = 5.0
_FIRST_PAUSE = 0.005
_MAX_PAUSE = 0.1


def has_variable(pid: int, name: str, value: str) -> bool:
    """Whether a living process was started with `name=value` in its environment; False where that cannot be read."""
    try:
        with open(f"/proc/{pid}/environ", "rb") as file:
            return f"{name}={value}".encode() in file.read().split(b"\0")
    except OSError:
        return False


def status_of(pid: int) -> Optional[List[str]]:
    """The fields of /proc/PID/stat from the state on; None when the process has ended or is a zombie."""
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
    """The marks by which the processes of one launch are recognised. Children inherit both.

    Attributes:
        name, value: the variable in their environment; programs that clear their environment lack it.
        session: the session that the started process leads; programs that begin a session of their own are not in it.
    """

    name: str
    value: str
    session: Optional[int] = None

    def owns(self, pid: int) -> bool:
        """Whether this living process belongs to the launch."""
        if self.session is not None and session_of(pid) == self.session:
            return True
        return has_variable(pid, self.name, self.value)

    def processes(self) -> Iterator[int]:
        """The ids of the processes of the launch, without the calling one."""
        for entry in os.listdir("/proc"):
            if entry.isdigit() and int(entry) != os.getpid() and self.owns(int(entry)):
                yield int(entry)

    def end(self, grace: float) -> None:
        """Ends all processes of the launch: SIGTERM, and SIGKILL for those that still run after `grace` seconds.

        Leaves processes that this user may not signal, because they run with the rights of another one.
        """
        if sys.platform == "win32":
            return  # there it is a job that ends them
        for number, seconds in ((signal.SIGTERM, grace), (signal.SIGKILL, _KILL_SECONDS)):
            if not self._send(number):
                return
            self._wait(seconds)

    def _send(self, number: int) -> bool:
        """Sends a signal to all. Returns whether any process got it."""
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
            pause = min(pause * 2, _MAX_PAUSE)


@contextmanager
def locked(path: "str | os.PathLike[str]") -> Iterator[None]:
    """Holds the lock that this file stands for; waits while another process has it. Raises OSError."""
    if sys.platform == "win32":
        raise OSError("locks need a system that has fcntl")
    import fcntl

    with open(path, "a") as file:
        fcntl.flock(file, fcntl.LOCK_EX)
        yield


if __name__ == "__main__":
    told = sys.stdin.read().splitlines()
    if told:
        Launch(sys.argv[1], told[0], int(told[1]) if told[1:] else None).end(_GRACE_SECONDS)
    for folder in sys.argv[2:]:
        shutil.rmtree(folder, ignore_errors=True)
