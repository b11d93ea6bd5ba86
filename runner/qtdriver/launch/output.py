"""Keeping the end of what an application prints."""

from __future__ import annotations

import os
import threading
import time
from collections import deque
from typing import IO, Deque, Tuple

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

KEPT_LINES = 1000
"""Lines of output that are kept, the last ones."""

_LINE_BYTES = 4096
_CHUNK_BYTES = 65536


class OutputTail:
    """Reads a pipe to its end, in a thread of its own, and keeps the last lines.

    So the application never blocks on a full pipe, and memory stays bounded however much it prints.
    """

    def __init__(self, pipe: IO[bytes], keep: int = KEPT_LINES) -> None:
        """Starts to read `pipe`, which it owns from now on; `keep` is how many lines to keep."""
        self._pipe = pipe
        self._lines: Deque[Tuple[float, bytes]] = deque(maxlen=keep)
        self._unfinished = b""
        self._lock = threading.Lock()
        self._thread = threading.Thread(target=self._read, daemon=True, name="qtdriver-output")
        self._thread.start()

    def __repr__(self) -> str:
        return f"<output, {len(self.lines())} lines kept>"

    def _read(self) -> None:
        with self._pipe:
            while True:
                chunk = os.read(self._pipe.fileno(), _CHUNK_BYTES)
                if not chunk:
                    return
                now = time.monotonic()
                with self._lock:
                    *finished, rest = (self._unfinished + chunk).split(b"\n")
                    self._lines.extend((now, line[:_LINE_BYTES]) for line in finished)
                    self._unfinished = rest[:_LINE_BYTES]

    def lines(self) -> Tuple[str, ...]:
        """The last lines so far, each cut to 4096 bytes; what is not UTF-8 has replacement characters."""
        return tuple(line for _, line in self.timed_lines())

    def timed_lines(self) -> Tuple[Tuple[float, str], ...]:
        """As lines(), each with the time when its end was read, in seconds of time.monotonic()."""
        with self._lock:
            kept = list(self._lines)
            if self._unfinished:
                kept.append((time.monotonic(), self._unfinished))
        last = kept[-(self._lines.maxlen or 0) :]
        return tuple((at, line.decode("utf-8", "replace")) for at, line in last)

    def wait_for_end(self, timeout: float) -> bool:
        """Waits at most `timeout` seconds until all output is read. False when it is not: another process
        that the application has started may keep its output open."""
        self._thread.join(timeout)
        return not self._thread.is_alive()
