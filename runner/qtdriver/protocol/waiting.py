"""Waiting for something until a deadline, without sleeping longer than it takes."""

from __future__ import annotations

import time
from contextlib import contextmanager
from contextvars import ContextVar
from typing import Callable, Iterator, Optional, Tuple, Type, TypeVar

from ..errors.internal import GivenUpError

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_Result = TypeVar("_Result")

# With these pauses a condition that takes some time to come true is noticed after at most half of that time more, and a
# wait of seconds takes hardly any processor time.
_FIRST_PAUSE = 0.0005
_GROWTH = 1.5
_MAX_PAUSE = 0.1

_LEAST_REPLY_SECONDS = 0.05
"""Long enough for the reply of an idle application."""

_bound: "ContextVar[Optional[Deadline]]" = ContextVar("bound", default=None)
_is_given_up: "ContextVar[Callable[[], bool]]" = ContextVar("is_given_up", default=lambda: False)


@contextmanager
def given_up_when(condition: Callable[[], bool]) -> Iterator[None]:
    """A context in which attempts() raises GivenUpError once `condition` is true."""
    token = _is_given_up.set(condition)
    try:
        yield
    finally:
        _is_given_up.reset(token)


@contextmanager
def bounded_by(deadline: "Optional[Deadline]") -> Iterator[None]:
    """A context in which nothing waits longer than until `deadline`: no attempts(), and no request for its reply.

    None takes an outer bound away.
    """
    token = _bound.set(deadline)
    try:
        yield
    finally:
        _bound.reset(token)


def bounded(seconds: float) -> float:
    """How long a request may wait for its reply: `seconds`, or less where the deadline of bounded_by() comes before.

    Once that has passed, it is still long enough for an idle application to reply.
    """
    bound = _bound.get()
    return seconds if bound is None else min(seconds, max(bound.remaining(), _LEAST_REPLY_SECONDS))


def is_bound_passed() -> bool:
    """Whether there is a bound, and it has passed."""
    bound = _bound.get()
    return bound is not None and bound.passed()


class Deadline:
    """A point in time some seconds from now, on the monotonic clock: setting the system's time does not move it."""

    def __init__(self, seconds: float) -> None:
        """The point is `seconds` from now; one of 0 or less has passed already."""
        self.seconds = seconds
        self._end = time.monotonic() + seconds

    def remaining(self) -> float:
        """Seconds that are left, 0 when it has passed."""
        return max(self._end - time.monotonic(), 0.0)

    def passed(self) -> bool:
        """Whether no time is left."""
        return self.remaining() == 0.0


def attempts(deadline: Deadline) -> Iterator[None]:
    """Yields once for each attempt: at once, then after pauses that grow from a half to 100 milliseconds.

    The last attempt is at the deadline; there is at least one. Raises GivenUpError within given_up_when().
    """
    pause = _FIRST_PAUSE
    while True:
        if _is_given_up.get()():
            raise GivenUpError("given up")
        last = deadline.passed() or is_bound_passed()
        yield
        if last:
            return
        bound = _bound.get()
        left = deadline.remaining() if bound is None else min(deadline.remaining(), bound.remaining())
        time.sleep(min(pause, left))
        pause = min(pause * _GROWTH, _MAX_PAUSE)


def retry(
    call: Callable[[], _Result], errors: Tuple[Type[BaseException], ...], deadline: Deadline
) -> _Result:
    """Repeats a call until it succeeds.

    Args:
        call: what to call.
        errors: the errors after which it is called again; it raises all others at once.
        deadline: when to give up.

    Returns the result of the call. Raises its last error at the deadline, and GivenUpError within given_up_when().
    """
    for _ in attempts(deadline):
        try:
            return call()
        except errors as error:
            failure = error
    raise failure
