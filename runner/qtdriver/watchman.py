"""The processes of one launch, known by a mark in their environment. As a program: ends them when its parent is gone.

Started as `watchman.py NAME VALUE`, it waits for the end of its standard input, which comes with the end of the process
that started it, however that ends. Stands on the standard library alone, so that it starts quickly.
"""

from __future__ import annotations

import os
import signal
import sys
import time
from typing import Iterator

_GRACE_SECONDS = 2.0
_FIRST_PAUSE = 0.005
_LONGEST_PAUSE = 0.1


def carries(pid: int, name: str, value: str) -> bool:
    """Whether a living process was started with this in its environment."""
    try:
        with open(f"/proc/{pid}/environ", "rb") as file:
            return f"{name}={value}".encode() in file.read().split(b"\0")
    except OSError:
        return False


def carriers(name: str, value: str) -> Iterator[int]:
    """The processes that carry it, this one left out."""
    for entry in os.listdir("/proc"):
        if entry.isdigit() and int(entry) != os.getpid() and carries(int(entry), name, value):
            yield int(entry)


def end_all(name: str, value: str, grace: float) -> None:
    """SIGTERM for every carrier, and SIGKILL for those that are still there after `grace` seconds."""
    _send(signal.SIGTERM, name, value)
    deadline = time.monotonic() + grace
    pause = _FIRST_PAUSE
    while any(True for _ in carriers(name, value)):
        if time.monotonic() > deadline:
            _send(signal.SIGKILL, name, value)
            return
        time.sleep(pause)
        pause = min(pause * 2, _LONGEST_PAUSE)


def _send(number: int, name: str, value: str) -> None:
    for pid in list(carriers(name, value)):
        try:
            os.kill(pid, number)
        except ProcessLookupError:
            pass


if __name__ == "__main__":
    sys.stdin.buffer.read()
    end_all(sys.argv[1], sys.argv[2], _GRACE_SECONDS)
