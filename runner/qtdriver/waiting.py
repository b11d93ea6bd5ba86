"""Waiting for something until a deadline, without sleeping longer than it takes."""

from __future__ import annotations

import time
from typing import Callable, Iterator, Tuple, Type, TypeVar

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_Result = TypeVar("_Result")

_FIRST_PAUSE = 0.003
_GROWTH = 1.5
_LONGEST_PAUSE = 0.1


class Deadline:
    """A point in time some seconds from now, on the monotonic clock: setting the system's time does not move it."""

    def __init__(self, seconds: float) -> None:
        """`seconds` from now; 0 or less has passed already."""
        self.seconds = seconds
        self._end = time.monotonic() + seconds

    def remaining(self) -> float:
        """Seconds that are left, 0 when it has passed."""
        return max(self._end - time.monotonic(), 0.0)

    def passed(self) -> bool:
        """Whether no time is left."""
        return self.remaining() == 0.0


def attempts(deadline: Deadline) -> Iterator[None]:
    """Yields for each attempt: at once, then after pauses that grow from 3 to 100 milliseconds, for the last time
    at the deadline. There is one attempt at least."""
    pause = _FIRST_PAUSE
    while True:
        last = deadline.passed()
        yield
        if last:
            return
        time.sleep(min(pause, deadline.remaining()))
        pause = min(pause * _GROWTH, _LONGEST_PAUSE)


def retry(
    call: Callable[[], _Result], errors: Tuple[Type[BaseException], ...], deadline: Deadline
) -> _Result:
    """What `call` returns as soon as it raises none of `errors`; at the deadline the last error is raised."""
    for _ in attempts(deadline):
        try:
            return call()
        except errors as error:
            failure = error
    raise failure
