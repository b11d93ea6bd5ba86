"""Waiting until what is read fulfils a condition, and the error when it does not in time."""

from __future__ import annotations

import time
from typing import Callable, Optional, Tuple, TypeVar

from ..api.steps import condition_step, run_step
from ..api.widget import Widget
from ..api.window import Window
from ..errors import RETRYABLE_ERRORS, ConditionError, ReplyError
from ..errors.internal import NoReplyYet
from ..protocol.locators import is_special
from ..protocol.transcript import Comparison
from ..protocol.waiting import Deadline, attempts, bounded_by
from .soft import softly

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_Result = TypeVar("_Result")
_EXPLAIN_SECONDS = 1.0


def wait_in(
    window: Window,
    widget: Optional[Widget],
    wanted: str,
    read: Callable[[], _Result],
    satisfied: Callable[[_Result], object],
    timeout: Optional[float],
    shown: Callable[[_Result], str] = "it was {!r}".format,
    given_up: Callable[[_Result], bool] = lambda value: False,
    comparison: "Callable[[], Optional[Comparison]]" = lambda: None,
) -> None:
    """Waits for a condition of a window or a widget, as one step.

    Args:
        window: the window.
        widget: the widget in it; None for a condition of the window itself.
        wanted: the condition, in words that follow "expected" in the message of the error.
        read: reads the value; a refusal that can clear counts as not satisfied.
        satisfied: whether a value is as it shall be.
        timeout: seconds to wait; None for those of the application.
        shown: tells what was read instead, in words that follow "but after 5 s".
        given_up: whether to stop waiting at a value, since no other one is to be expected any more.
        comparison: returns the pictures that a failed step has compared.

    Raises ConditionError.
    """
    app = window.app
    seconds = app.timeout if timeout is None else timeout
    subject = window if widget is None else widget
    path = "" if widget is None else widget.path
    target = None if widget is None or is_special(path) else widget.as_locator()
    title = f"eventually({subject}): {wanted}"
    with softly(), run_step(
        app, title, reads=True, window=window.address, target=target
    ) as step, app.watched():
        try:
            _wait(
                f"{subject}: expected {wanted}",
                read,
                satisfied,
                seconds,
                shown,
                given_up,
                lambda error: app.explained(error, window.address, path, seconds),
            )
        except ConditionError:
            if step is not None:
                step.comparison = comparison()
            raise


def wait_for(
    wanted: str, read: Callable[[], _Result], satisfied: Callable[[_Result], object], seconds: float
) -> None:
    """Waits until `satisfied` is true of what `read` returns.

    Args:
        wanted: the condition, in words that begin the message of the error.
        read: reads the value; a refusal that can clear counts as not satisfied.
        satisfied: whether a value is as it shall be.
        seconds: how long at most, also where the application takes longer to answer. With 0 it is read once.

    Raises ConditionError.
    """
    with softly(), condition_step(wanted):
        _wait(
            wanted, read, satisfied, seconds, "it was {!r}".format, lambda value: False, lambda error: error
        )


def _wait(
    wanted: str,
    read: Callable[[], _Result],
    satisfied: Callable[[_Result], object],
    seconds: float,
    shown: Callable[[_Result], str],
    given_up: Callable[[_Result], bool],
    explained: Callable[[ReplyError], ReplyError],
) -> None:
    refusal: Optional[ReplyError] = None
    found = ""
    last: Optional[Tuple[_Result]] = None
    deadline, started = Deadline(seconds), time.monotonic()
    for _ in attempts(deadline):
        try:
            with bounded_by(deadline if seconds else None):
                value = read()
        except RETRYABLE_ERRORS as error:
            refusal = error
            continue
        except NoReplyYet as error:
            found = f"there was {error}"
            break
        if satisfied(value):
            return
        refusal, last = None, (value,)
        if given_up(value):
            seconds = round(time.monotonic() - started, 1)
            break
    if last is not None:
        found = shown(last[0])
    if refusal is not None:
        found = f"it could not be read: {_explained_soon(refusal, explained)}"
    raise ConditionError(f"{wanted}, but after {seconds:g} s {found}")


def _explained_soon(refusal: ReplyError, explained: Callable[[ReplyError], ReplyError]) -> ReplyError:
    try:
        with bounded_by(Deadline(_EXPLAIN_SECONDS)):
            return explained(refusal)
    except NoReplyYet:
        return refusal
