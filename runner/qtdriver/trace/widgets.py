"""Lists the widgets of an application as text, without effect on the test."""

from __future__ import annotations

import json
import time
from contextlib import contextmanager
from typing import Iterator, List, Optional

from ..api.app import App
from ..errors import ConnectionClosed, QtDriverError, RequestTimeout
from ..errors.internal import TooSlow
from ..lookup.windows import walk_windows
from ..protocol.connection import Connection
from ..protocol.records import WidgetRecord
from ..protocol.transcript import Step
from .trace import Place

KEPT_LINES = 3000
"""The number of widgets that are listed; a table has a few, a page of a settings dialog some hundreds."""

SECONDS = 0.5
"""How long an application may take to answer a recorder's request."""

SLOW_SECONDS = 0.25
"""An application whose widgets take longer than this to list is too slow to be asked after each step."""

_MAX_SLOW_LISTINGS = 2

_ENCODER = json.JSONEncoder(ensure_ascii=False)


class WidgetLister:
    """Lists the widgets of one application, as long as it answers quickly."""

    def __init__(self, connection: Connection) -> None:
        self._connection = connection
        self._slow_listings = 0

    def list(self) -> str:
        """A line for each window and each of its widgets, indented by two blanks for each level.

        The requests are not in the transcript. Returns an empty text when the application has ended or does not answer.
        Raises TooSlow when the application has taken too long twice; after that it is asked no more, and the text is
        empty.
        """
        if self._slow_listings >= _MAX_SLOW_LISTINGS:
            return ""
        started = time.monotonic()
        try:
            with _unnoticed(self._connection):
                text = "\n".join(_list_windows(self._connection))
        except ConnectionClosed:
            return ""
        except RequestTimeout:
            text = ""
        if time.monotonic() - started > SLOW_SECONDS:
            self._slow_listings += 1
            if self._slow_listings == _MAX_SLOW_LISTINGS:
                raise TooSlow(
                    f"its widgets take longer than {SLOW_SECONDS:g} s to list: they are no longer recorded"
                )
        return text


def place_of(app: App, step: Step, *, asks_agent: bool = False) -> Optional[Place]:
    """The place of the widget that a step is about: left, top, width and height in pixels of the screen.

    None where the step is about no widget, the agent cannot tell its place, or the widget is not there. An agent that has
    not been asked for its extensions yet is only asked with `asks_agent`: the test may do so in the step itself.
    """
    connection = app.connection
    if step.target is None:
        return None
    try:
        with _unnoticed(connection):
            known = connection.extensions if asks_agent else connection.known_extensions
            if "+2" not in (known or ()):
                return None
            rect = connection.snapshot(step.window, step.target).get("rect")
    except QtDriverError:
        return None
    return (rect[0], rect[1], rect[2], rect[3]) if isinstance(rect, list) and len(rect) == 4 else None


@contextmanager
def _unnoticed(connection: Connection) -> Iterator[None]:
    """A context for requests that are no part of the test: they are not in the transcript, and have a short timeout."""
    usual = connection.timeout
    connection.timeout = min(usual, SECONDS)
    try:
        with connection.transcript.paused():
            yield
    finally:
        connection.timeout = usual


def _list_windows(connection: Connection) -> List[str]:
    lines: List[str] = []
    for window in walk_windows(connection):
        if isinstance(window.error, (ConnectionClosed, RequestTimeout)):
            raise window.error
        modal = " modal" if window.record.modal else ""
        lines.append(f"window {_quoted(window.record.title)}{modal}")
        lines += map(_line, window.widgets)
        if window.error is not None:
            lines.append(f"  (its widgets cannot be listed: {window.error})")
        if len(lines) > KEPT_LINES:
            more = len(lines) - KEPT_LINES
            return [*lines[:KEPT_LINES], f"(and {more} more, and the windows behind this one)"]
    return lines


def _line(record: WidgetRecord) -> str:
    name = f" {_quoted(record.object_name)}" if record.object_name else ""
    return f"{'  ' * (record.depth + 1)}{record.class_name}{name}{'' if record.visible else ' hidden'}"


def _quoted(text: str) -> str:
    """In quotes and on one line."""
    return _ENCODER.encode(text)
