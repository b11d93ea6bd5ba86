"""Pausing a test: its page, and how it goes on."""

from __future__ import annotations

import asyncio
import linecache
import sys
import threading
from types import FrameType
from typing import Any, Callable, Dict, Optional

from ..api.app import App
from ..callers.callers import calling_frame
from ..inspector.program import open_browser
from ..inspector.server import PageServer, require_aiohttp
from . import terminal
from .target import STEP, PausedTarget, Place

_TARGET = "paused target"


def pause(app: App) -> None:
    """Pauses the test that has called the runner, until the person at its page has it go on. See App.pause()."""
    terminal.check_person()
    _pause_at(app, calling_frame())


def pause_after_failure(app: App, file: str, line: int, error: str, names: Dict[str, Any]) -> None:
    """Pauses a test that has failed.

    Args:
        app: its application.
        file, line: the path of its source, and the number of the line from 1.
        error: why it has failed.
        names: the variables of the test, for the console.
    """
    terminal.check_person()
    place = Place(file, line, "".join(linecache.getlines(file)), error, can_step=False)
    _target_of(app, place).pause(place, names)


def _pause_at(app: App, frame: FrameType) -> None:
    file = frame.f_code.co_filename
    place = Place(file, frame.f_lineno, "".join(linecache.getlines(file)))
    order = _target_of(app, place).pause(place, {**frame.f_globals, **frame.f_locals})
    if order == STEP:
        _stop_at_next_line(frame, lambda: _pause_at(app, frame))


def _stop_at_next_line(frame: FrameType, stop: Callable[[], None]) -> None:
    """Calls `stop` in front of the next line of a function that runs. Another tracer, such as that of a debugger, rests until then."""
    before, before_in_frame = sys.gettrace(), frame.f_trace

    def trace(_: FrameType, event: str, __: Any) -> Any:
        sys.settrace(before)
        frame.f_trace = before_in_frame
        if event == "line":
            stop()
            return frame.f_trace
        return None

    frame.f_trace = trace
    sys.settrace(lambda *_: None)


def _target_of(app: App, place: Place) -> PausedTarget:
    """The target of the application; its page is served from the first pause to the end of the application."""
    target: Optional[PausedTarget] = app.companions.get(_TARGET)
    if target is None:
        require_aiohttp()
        target = PausedTarget(app)
        _serve(target, place)
        app.companions[_TARGET] = target
    return target


def _serve(target: PausedTarget, place: Place) -> None:
    served = threading.Event()

    def announce(address: str) -> None:
        reason = "has failed, and is paused" if place.error else "is paused"
        terminal.tell(
            f"qtdriver: the test {reason} at {place.file}:{place.line}\n"
            f"It goes on from its page, or ends with Ctrl+C: {address}"
        )
        open_browser(address, terminal.ENVIRONMENT)
        served.set()

    async def serve() -> str:
        return await PageServer(target).serve(announce)

    def run() -> None:
        try:
            asyncio.run(serve())
        finally:
            served.set()

    threading.Thread(target=run, daemon=True).start()
    served.wait()
