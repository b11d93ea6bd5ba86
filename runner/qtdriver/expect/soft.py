"""Soft assertions: a block whose failed conditions are told together, at its end."""

from __future__ import annotations

import linecache
from contextvars import ContextVar
from pathlib import Path
from typing import List, NamedTuple, Optional

from ..callers.callers import calling_frame
from ..errors import ConditionError

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own


class _Failure(NamedTuple):
    place: str
    message: str

    def lines(self, number: int) -> str:
        message = self.message.replace("\n", "\n   ")
        return f"{number}. {self.place}\n   {message}"


def soft() -> "SoftAssertions":
    """A context in which failed conditions do not end the test: all of them are told together when it ends.

    Each condition of eventually() counts, and the `assert` that ends the block. Raises ConditionError at the end, if there
    was a failure.

    Example:

        with soft():
            eventually(window.widget("name")).has(text="Ada")
            eventually(window.widget("total")).has(text="12.50")
    """
    return SoftAssertions()


class SoftAssertions:
    """The context that soft() returns."""

    def __init__(self) -> None:
        self._failures: List[_Failure] = []

    def __repr__(self) -> str:
        return f"<soft assertions: {len(self._failures)} failed>"

    def __enter__(self) -> "SoftAssertions":
        self._outer = _block.set(self)
        return self

    def __exit__(self, kind: object, error: Optional[BaseException], traceback: object) -> None:
        _block.reset(self._outer)
        if error is not None and not isinstance(error, Exception):
            return  # the run is being interrupted, or the test skipped
        if error is not None and self._failures:
            words = str(error) if isinstance(error, AssertionError) else f"{type(error).__name__}: {error}"
            self._failures.append(_Failure("the block ended here:", words))
        if not self._failures:
            return
        failure = ConditionError(self._message())
        outer = _block.get()
        if outer is None or error is not None:
            raise failure from error
        outer._failures += self._failures

    def _message(self) -> str:
        failed = len(self._failures)
        listed = "\n".join(failure.lines(number) for number, failure in enumerate(self._failures, start=1))
        return f"{failed} soft assertion{'' if failed == 1 else 's'} failed:\n{listed}"

    def _add(self, error: ConditionError) -> None:
        self._failures.append(_Failure(_place(), str(error)))


_block: "ContextVar[Optional[SoftAssertions]]" = ContextVar("soft_block", default=None)


class softly:
    """A context in which the failure of a condition goes to the block of soft() that it is in, if there is one.

    It is a class, since the frames of contextlib would appear in tracebacks.
    """

    def __enter__(self) -> None:
        """Does nothing: only the end of the context counts."""

    def __exit__(self, kind: object, error: Optional[BaseException], traceback: object) -> bool:
        block = _block.get()
        if block is None or not isinstance(error, ConditionError):
            return False
        block._add(error)
        return True


def _place() -> str:
    """The line of the test that is being executed: "test_order.py:12: eventually(total).has(text='12')"."""
    frame = calling_frame()
    file, line = frame.f_code.co_filename, frame.f_lineno
    return f"{Path(file).name}:{line}: {linecache.getline(file, line).strip()}"
