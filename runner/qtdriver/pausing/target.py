"""The application of a test that is paused, and goes on, by turns."""

from __future__ import annotations

import threading
from dataclasses import dataclass
from typing import Any, Mapping, Optional

from ..api.app import App
from ..errors import QtDriverError
from ..inspector.console import offer_names
from ..inspector.operations import describe_app
from ..inspector.target import LaunchedTarget, Target, Values

CONTINUE, STEP = "continue", "step"
_LOOK_SECONDS = 1.0


@dataclass(frozen=True)
class Place:
    """Where a test stands.

    Attributes:
        file: the path of its source.
        line: the number of its line, from 1.
        source: the text of the file.
        error: why it has failed; empty where it has not.
        can_step: whether it can go on line by line.
    """

    file: str
    line: int
    source: str
    error: str = ""
    can_step: bool = True


class PausedTarget(Target):
    """The application, which belongs to the page while the test is paused, and to the test while it runs."""

    def __init__(self, app: App) -> None:
        self._app = app
        self._target = LaunchedTarget(app)
        self._lock = threading.Lock()
        self._place: Optional[Place] = None
        self._order = ""
        self._ordered = threading.Event()
        self.display = self._target.display

    def pause(self, place: Place, names: Mapping[str, Any]) -> str:
        """Gives the application to the page until that says how the test goes on. `names` are for its console."""
        offer_names(self._app, names)
        self._ordered.clear()
        self._place = place
        try:
            while not self._ordered.wait(_LOOK_SECONDS):  # in turns, so that Ctrl+C ends it on every system
                pass
        finally:
            with self._lock:  # what the page has asked for is done before the test goes on
                self._place = None
        return self._order

    def ask(self, operation: str, values: Values) -> Any:
        if operation == "place":
            return self._told_place()
        if operation in (CONTINUE, STEP):
            return self._go_on(operation)
        with self._lock:
            if self._place is None:
                if operation == "about":
                    return {**describe_app(self._app), "recording": False, "pauses": True}
                raise QtDriverError("the test runs: the application can be asked when it is paused again")
            result = self._target.ask(operation, values)
            return {**result, "pauses": True} if operation == "about" else result

    def is_gone(self) -> bool:
        with self._lock:
            return self._app.connection.fileno() < 0 or (self._place is not None and self._target.is_gone())

    def describe_end(self) -> str:
        return "the test has ended, and the application with it"

    def _told_place(self) -> Values:
        place = self._place
        if place is None:
            return {"paused": False}
        told = {"file": place.file, "line": place.line, "source": place.source, "error": place.error}
        return {"paused": True, "canStep": place.can_step, **told}

    def _go_on(self, order: str) -> Values:
        if self._place is None:
            raise QtDriverError("the test runs already")
        self._order = order
        self._ordered.set()
        return {}
