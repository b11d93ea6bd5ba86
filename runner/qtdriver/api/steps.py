"""Steps of a test, and the listeners that are notified of them."""

from __future__ import annotations

import threading
import time
from contextlib import contextmanager
from typing import TYPE_CHECKING, Iterator, List, Optional, Tuple

from ..callers.callers import Caller, RunningCall, running_call
from ..launch.process import FailedStart
from ..protocol.locators import Locator
from ..protocol.transcript import Group, Step
from ..protocol.waiting import bounded_by

if TYPE_CHECKING:
    from .app import App

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own


class StepListener:
    """Base of listeners, which are notified of the steps of applications; see App.listeners.

    The methods do nothing here. In a subclass they may send requests through the application's connection.
    """

    def __repr__(self) -> str:
        return f"<{type(self).__name__}>"

    def step_started(self, app: "App", step: Step) -> None:
        """Called when a step begins, before its first request."""

    def start_failed(self, start: FailedStart) -> None:
        """Called when an application was started and its agent has not come, before the application is ended."""

    def step_ended(self, app: "App", step: Step) -> None:
        """Called when a step is complete, also when it failed."""


class _Local(threading.local):
    """The group and the condition of a function that a thread is in."""

    def __init__(self) -> None:
        self.group: Optional[Group] = None
        self.condition: "Optional[_Condition]" = None

    def __repr__(self) -> str:
        return f"<in {self.group and self.group.title}, {self.condition}>"


_HERE = _Local()


@contextmanager
def step(title: str) -> Iterator[None]:
    """A context whose steps are a group in the trace and in the page of a run. Groups may be in groups.

    Args:
        title: the name of the group.

    Example:

        with step("Log in"):
            window.field("Name:").enter("Ada")
            window.button("OK").click()
    """
    group = Group(title, _HERE.group)
    _HERE.group = group
    try:
        yield
    except BaseException as error:
        group.error = str(error) or type(error).__name__
        raise
    finally:
        group.seconds = time.monotonic() - group.started
        _HERE.group = group.parent


@contextmanager
def run_step(
    app: "App", title: str, *, reads: bool, window: str = "", target: Optional[Locator] = None
) -> Iterator[Optional[Step]]:
    """A context whose requests are one step of the test. Within another step it yields None: they belong to that.

    Args:
        app: the application.
        title: names the step where the test's own call cannot be told.
        reads: whether it only reads.
        window: the window of the widget that it is about.
        target: finds that widget; None where there is none.
    """
    if _HERE.condition is not None and _HERE.condition.begin_step(app):
        # The requests are one attempt of a condition, which is the step of the test.
        yield Step(title, reads, window=window, target=target)
        return
    if app.connection.transcript.is_in_step:
        yield None
        return
    step = Step(title, reads, window=window, target=target)
    app.connection.transcript.begin(step)
    _start(app, step, running_call())
    try:
        yield step
    except BaseException as error:
        step.error = str(error) or type(error).__name__
        raise
    finally:
        _end(app, step)


def _start(app: "App", step: Step, call: Optional[RunningCall]) -> None:
    step.call = call
    if app.listeners:
        caller = Caller() if call is None else call.caller()
        step.title, step.action = caller.call or step.title, step.title
        step.file, step.line, step.group = caller.file, caller.line, _HERE.group
        with bounded_by(None):
            for listener in app.listeners:
                listener.step_started(app, step)
    step.started = time.monotonic()


def _end(app: "App", step: Step) -> None:
    step.seconds = time.monotonic() - step.started
    hide = app.connection.secrets.hide
    step.title, step.action, step.error = hide(step.title), hide(step.action), hide(step.error)
    app.connection.transcript.end()
    if app.listeners:
        with bounded_by(None):
            for listener in app.listeners:
                listener.step_ended(app, step)


class _Condition:
    """The step of a condition on a function, for each application that the function asks."""

    def __init__(self, title: str, call: Optional[RunningCall]) -> None:
        self._title = title
        self._call = call
        self._steps: List[Tuple["App", Step]] = []

    def __repr__(self) -> str:
        return f"<condition {self._title}>"

    def begin_step(self, app: "App") -> bool:
        """Begins the condition's step for an application, unless it has one already.

        Returns whether the requests to the application belong to the condition; not if a step had begun before.
        """
        if any(known is app for known, _ in self._steps):
            return True
        if app.connection.transcript.is_in_step:
            return False
        step = Step(self._title, reads=True)
        app.connection.transcript.begin(step)
        self._steps.append((app, step))
        _start(app, step, self._call)
        return True

    def end(self, error: str) -> None:
        """Ends the steps."""
        for app, step in self._steps:
            step.error = error
            _end(app, step)


@contextmanager
def condition_step(title: str) -> Iterator[None]:
    """A context whose steps are one: the attempts of a condition on a function, which may ask applications.

    Args:
        title: names the step.
    """
    if _HERE.condition is not None:
        yield
        return
    condition = _HERE.condition = _Condition(title, running_call())
    error = ""
    try:
        yield
    except BaseException as failure:
        error = str(failure) or type(failure).__name__
        raise
    finally:
        _HERE.condition = None
        condition.end(error)
