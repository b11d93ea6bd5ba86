"""The application that a page shows."""

from __future__ import annotations

import os
from abc import ABC, abstractmethod
from typing import Any, Callable, Dict, Optional

from ..api.app import App
from ..errors import QtDriverError
from ..errors.commandline import NoApplicationError
from ..errors.endings import describe_exit
from .operations import perform
from .recording import move_recording

Values = Dict[str, Any]
"""Values that JSON can hold, by their names."""

AskHolder = Callable[[str, Values], Any]
"""Has the process that holds an application perform an operation with its values."""

_END_SECONDS = 5.0


class Target(ABC):
    """An application. `ask()` belongs to one thread.

    Attributes:
        display: the X display that it is on; empty where there is none.
    """

    display: str

    @abstractmethod
    def ask(self, operation: str, values: Values) -> Any:
        """Performs an operation of `operations`. Returns its result, in types of JSON. Raises QtDriverError."""

    @abstractmethod
    def is_gone(self) -> bool:
        """Whether it has ended, or cannot be asked any more. Does not wait."""

    @abstractmethod
    def describe_end(self) -> str:
        """How it ended, once it is gone."""


class LaunchedTarget(Target):
    """An application of this process."""

    def __init__(self, app: App, start_again: Optional[Callable[[], App]] = None) -> None:
        """`start_again` ends the application and starts it anew; None where nobody may do that."""
        self._app = app
        self._start_again = start_again
        self.display = app.display or os.environ.get("DISPLAY") or ""

    def ask(self, operation: str, values: Values) -> Any:
        if self._start_again is not None and operation == "restart":
            return self._restart(self._start_again)
        result = perform(self._app, operation, values)
        return {**result, "restarts": self._start_again is not None} if operation == "about" else result

    def _restart(self, start_again: Callable[[], App]) -> Values:
        before = self._app
        self._app = start_again()
        move_recording(before, self._app)
        return {"pid": self._app.pid}

    def is_gone(self) -> bool:
        return self._app.connection.is_closed()

    def describe_end(self) -> str:
        process = self._app.process
        status = None if process is None else process.wait(_END_SECONDS)
        if status is None:
            return "the application closed the connection, but still runs"
        return f"the application ended ({describe_exit(status)})"


class HeldTarget(Target):
    """An application that another process holds."""

    def __init__(self, ask: AskHolder) -> None:
        """Raises NoApplicationError where there is none."""
        self._ask = ask
        self._end: Optional[str] = None
        self.display = str(ask("about", {})["display"])

    def ask(self, operation: str, values: Values) -> Any:
        try:
            return self._ask(operation, values)
        except NoApplicationError as error:
            self._end = str(error)
            raise

    def is_gone(self) -> bool:
        if self._end is None:
            try:
                self.ask("about", {})
            except QtDriverError:
                pass  # it has said so, or hangs
        return self._end is not None

    def describe_end(self) -> str:
        return self._end or ""
