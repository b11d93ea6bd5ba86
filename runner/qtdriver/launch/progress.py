"""A line on the terminal that says what the command waits for, and is gone when the wait is over."""

from __future__ import annotations

import os
import select
import shutil
import subprocess
import time
from types import TracebackType
from typing import IO, Any, Callable, List, Optional, TextIO, Type

_DELAY_SECONDS = 1.0
_INTERVAL_SECONDS = 1.0
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
    """Shows each Progress on a terminal from now on.

    Args:
        stream: the terminal; None shows nothing, as does a stream that is no terminal or a dumb one.
        column: returns where the terminal's cursor is, counted from 0.
    """
    global _line
    able = stream is not None and stream.isatty() and os.environ.get("TERM", "dumb") != "dumb"
    _line = ProgressLine(stream, column) if stream is not None and able else None


class Progress:
    """A context for work that may take long. After the first second, the terminal shows what it is and how long it takes.

    The code that waits in it calls tick() at least once a second.

    Example:

        with Progress("waiting for the printer") as shown:
            while not ready():
                shown.tick()
    """

    def __init__(self, text: str) -> None:
        self._text = text
        self._began = time.monotonic()
        self._next = self._began + _DELAY_SECONDS
        self._shown = False

    def __enter__(self) -> "Progress":
        return self

    def tick(self) -> None:
        """Shows how many seconds it has taken so far, at most once a second."""
        now = time.monotonic()
        if _line is None or now < self._next:
            return
        self._next = now + _INTERVAL_SECONDS
        self._shown = True
        _line.show(f"{self._text}, {now - self._began:.0f} s")

    def tick_and_continue(self) -> bool:
        """Ticks. Returns False, the answer for a wait that asks again and again whether to give up."""
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
    """Waits until a pipe has something to read or was closed, and shows a Progress meanwhile.

    Args:
        stream: the pipe.
        seconds: how long to wait at most; None for as long as it takes.
        text: what the progress line says.

    Returns False when the time is over.
    """
    end = None if seconds is None else time.monotonic() + seconds
    with Progress(text) as shown:
        while end is None or time.monotonic() < end:
            left = (
                _INTERVAL_SECONDS if end is None else min(_INTERVAL_SECONDS, max(end - time.monotonic(), 0))
            )
            if select.select([stream], [], [], left)[0]:
                return True
            shown.tick()
    return False


def run_with_progress(
    command: List[str], text: str, *, timeout: Optional[float] = None, **options: Any
) -> "subprocess.CompletedProcess[bytes]":
    """Runs a command as subprocess.run() does, and shows a Progress meanwhile.

    Args:
        command: the program and its arguments.
        text: what the progress line says.
        timeout: seconds that it may take; None for any time.
        options: those of subprocess.Popen, but for its output.

    Returns the process with its standard output and error, as one. Raises subprocess.TimeoutExpired and OSError.
    """
    end = None if timeout is None else time.monotonic() + timeout
    with Progress(text) as shown, subprocess.Popen(
        command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, **options
    ) as process:
        try:
            while True:
                try:
                    output, _ = process.communicate(timeout=_INTERVAL_SECONDS)
                    return subprocess.CompletedProcess(command, process.returncode, output)
                except subprocess.TimeoutExpired:
                    if end is not None and time.monotonic() > end:
                        raise
                    shown.tick()
        except BaseException:
            process.kill()
            raise
