"""Steps of a test, and the listeners that are notified of them."""

from __future__ import annotations

import time
from contextlib import contextmanager
from typing import TYPE_CHECKING, Iterator, Optional

from ..launch.process import FailedStart
from ..protocol.transcript import Step
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


@contextmanager
def run_step(app: "App", title: str, reads: bool) -> Iterator[Optional[Step]]:
    """A context whose requests are one step of the test. Within another step it yields None: they belong to that."""
    step = Step(title, reads)
    if not app.connection.transcript.begin(step):
        yield None
        return
    with bounded_by(None):
        for listener in app.listeners:
            listener.step_started(app, step)
    step.started = time.monotonic()
    try:
        yield step
    except BaseException as error:
        step.error = str(error) or type(error).__name__
        raise
    finally:
        step.seconds = time.monotonic() - step.started
        app.connection.transcript.end()
        with bounded_by(None):
            for listener in app.listeners:
                listener.step_ended(app, step)
