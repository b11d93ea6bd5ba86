"""A line on the terminal that says what takes its time, and is gone when that is over."""

from __future__ import annotations

import os
import select
import shutil
import subprocess
import time
from types import TracebackType
from typing import IO, Any, Callable, List, Optional, TextIO, Type

_PATIENCE = 1.0
_EVERY = 1.0
_KEEP_CURSOR, _BACK_TO_CURSOR, _CLEAR_BEHIND_CURSOR = "\x1b7", "\x1b8", "\x1b[K"
_LEAST_ROOM = 20


class ProgressLine:
    """The end of the terminal's current line, behind what is there already."""

    def __init__(self, stream: TextIO, column: Callable[[], int] = lambda: 0) -> None:
        """`stream` is the terminal, and `column` tells where its cursor is."""
        self._stream = stream
        self._column = column

    def show(self, text: str) -> None:
        """Replaces what is shown; empty for nothing. A text that would not fit is cut: its rest would stay for ever."""
        room = shutil.get_terminal_size().columns - self._column() - 1
        text = text[:room] if room >= _LEAST_ROOM else ""
        try:
            self._stream.write(f"{_KEEP_CURSOR}{text}{_CLEAR_BEHIND_CURSOR}{_BACK_TO_CURSOR}")
            self._stream.flush()
        except (OSError, ValueError):
            pass  # the terminal is gone, or its stream closed: no reason for the work to fail


_line: Optional[ProgressLine] = None


def show_progress_on(stream: Optional[TextIO], column: Callable[[], int] = lambda: 0) -> None:
    """Has each Progress shown on this stream from now on, where that is a terminal that can; None for nowhere."""
    global _line
    able = stream is not None and stream.isatty() and os.environ.get("TERM", "dumb") != "dumb"
    _line = ProgressLine(stream, column) if stream is not None and able else None


class Progress:
    """A context in which something may take its time. After a second it is told, with the seconds.

    Whoever waits in it calls tick() about once a second or oftener.

    Example:

        with Progress("waiting for the printer") as shown:
            while not ready():
                shown.tick()
    """

    def __init__(self, text: str) -> None:
        self._text = text
        self._began = time.monotonic()
        self._next = self._began + _PATIENCE
        self._shown = False

    def __enter__(self) -> "Progress":
        return self

    def tick(self) -> None:
        """Shows the seconds, if it is time to."""
        now = time.monotonic()
        if _line is None or now < self._next:
            return
        self._next = now + _EVERY
        self._shown = True
        _line.show(f"{self._text}, {now - self._began:.0f} s")

    def never(self) -> bool:
        """Ticks, where what is waited for asks again and again whether to give up: never."""
        self.tick()
        return False

    def __exit__(
        self,
        kind: Optional[Type[BaseException]],
        error: Optional[BaseException],
        traceback: Optional[TracebackType],
    ) -> None:
        if self._shown and _line is not None:
            _line.show("")


def is_readable_within(stream: "IO[Any]", seconds: Optional[float], text: str) -> bool:
    """Waits with Progress(text) until a pipe has something to read, or was closed. None waits as long as it takes."""
    end = None if seconds is None else time.monotonic() + seconds
    with Progress(text) as shown:
        while end is None or time.monotonic() < end:
            left = _EVERY if end is None else min(_EVERY, max(end - time.monotonic(), 0))
            if select.select([stream], [], [], left)[0]:
                return True
            shown.tick()
    return False


def run_with_progress(
    command: List[str], text: str, *, timeout: Optional[float] = None, **options: Any
) -> "subprocess.CompletedProcess[bytes]":
    """subprocess.run() with Progress(text), and with the standard error in the output. Raises what that raises."""
    end = None if timeout is None else time.monotonic() + timeout
    with Progress(text) as shown, subprocess.Popen(
        command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, **options
    ) as process:
        try:
            while True:
                try:
                    output, _ = process.communicate(timeout=_EVERY)
                    return subprocess.CompletedProcess(command, process.returncode, output)
                except subprocess.TimeoutExpired:
                    if end is not None and time.monotonic() > end:
                        raise
                    shown.tick()
        except BaseException:
            process.kill()
            raise
