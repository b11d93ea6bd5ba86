"""The operations that the page asks for: functions of an app and values of JSON, which also the process that holds it can run."""

from __future__ import annotations

import os
from typing import Any, Callable, Dict

from ..api.app import App
from ..errors import QtDriverError
from . import playing, recording, widgets
from .console import run_python
from .survey import survey

Values = Dict[str, Any]


def describe_app(app: App) -> Dict[str, Any]:
    """All about an application that the page shows first, without a request to it."""
    return {
        "pid": app.pid,
        "agent": app.connection.greeting.version,
        "display": app.display or os.environ.get("DISPLAY", ""),
        "restarts": False,
        "recording": recording.is_recording(app),
    }


_OPERATIONS: Dict[str, Callable[[App, Values], Any]] = {
    "about": lambda app, values: describe_app(app),
    "survey": survey,
    "address": widgets.address,
    "addresses": widgets.addresses,
    "properties": widgets.properties,
    "matches": widgets.matches,
    "python": run_python,
    "record": recording.record,
    "recorded": recording.recorded,
    "checks": recording.checks,
    "check": recording.check,
    "plan": playing.plan,
    "play": playing.play,
}


def perform(app: App, operation: str, values: Values) -> Any:
    """Performs an operation with the values that it needs. Returns its result, in types of JSON.

    Raises QtDriverError, also for an operation that is not known, and for values that do not fit.
    """
    if operation not in _OPERATIONS:
        raise QtDriverError(f"no such operation: {operation}")
    try:
        return _OPERATIONS[operation](app, values)
    except (KeyError, TypeError, ValueError) as error:
        raise QtDriverError(f"{operation}: {error}") from error
