"""Steps of a test, and who is told of them."""

from __future__ import annotations

import time
from contextlib import contextmanager
from typing import TYPE_CHECKING, Iterator, Optional

from ..protocol.transcript import Step

if TYPE_CHECKING:
    from .app import App

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own


class StepListener:
    """Is told of the steps of applications; see App.listeners. Its methods do nothing here.

    They may ask the application themselves, through its connection.
    """

    def __repr__(self) -> str:
        return f"<{type(self).__name__}>"

    def step_started(self, app: "App", step: Step) -> None:
        """The step begins: nothing has been asked yet."""

    def step_ended(self, app: "App", step: Step) -> None:
        """The step is complete, also when it failed."""


@contextmanager
def run_step(app: "App", title: str, reads: bool) -> Iterator[Optional[Step]]:
    """Puts what is done within it under one title. A step within a step belongs to the outer one, and yields None."""
    step = Step(title, reads)
    if not app.connection.transcript.begin(step):
        yield None
        return
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
        for listener in app.listeners:
            listener.step_ended(app, step)
