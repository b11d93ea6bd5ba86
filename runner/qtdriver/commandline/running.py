"""`run`: a dialogue with an application from a terminal, a pipe or a script."""

from __future__ import annotations

import argparse
import sys
from contextlib import nullcontext
from pathlib import Path
from typing import ContextManager, Iterator, Optional, TextIO

from ..api.app import App
from ..api.driver import Driver
from ..errors import QtDriverError
from ..errors.endings import describe_exit
from .console import prompted_lines
from .dialogue import Dialogue
from .outcome import FAILED, OK

_END_SECONDS = 5.0


def _say(text: str) -> None:
    print(text, flush=True)


def _complain(text: str) -> None:
    print(f"qtdriver: {text}", file=sys.stderr, flush=True)


def run_dialogue(parsed: argparse.Namespace) -> int:
    """Runs the dialogue. Returns the exit status."""
    driver = Driver(qt=parsed.qt, build=parsed.build, load_by=parsed.load_by, request_timeout=parsed.timeout)
    with _open_script(parsed.script) as script, driver:
        application = driver.launch(*parsed.command, start_timeout=parsed.timeout)
        typing = script is None and sys.stdin.isatty()
        if typing and not parsed.json:
            _introduce(application)
        dialogue = Dialogue(
            application, _say, _complain, echo=not typing and not parsed.json, as_json=parsed.json
        )
        try:
            dialogue.run(prompted_lines(application) if typing else _read_lines(script or sys.stdin))
        except UnicodeDecodeError as error:
            raise QtDriverError(f"the requests are not UTF-8 text: {error}") from error
        return _conclude(application, dialogue, parsed)


def _open_script(path: Optional[Path]) -> ContextManager[Optional[TextIO]]:
    if path is None:
        return nullcontext()
    try:
        return path.open(encoding="utf-8")
    except OSError as error:
        raise QtDriverError(f"cannot read the script {path}: {error.strerror}") from error


def _read_lines(stream: TextIO) -> Iterator[str]:
    for line in stream:
        yield line.rstrip("\r\n")


def _introduce(application: App) -> None:
    greeting = application.connection.greeting
    _say(f"connected to process {greeting.pid} (agent {greeting.version}, {greeting.build_tag}); try help")


def _conclude(application: App, dialogue: Dialogue, parsed: argparse.Namespace) -> int:
    """Prints how the application ended, if it did so by itself. Returns the exit status."""
    process = application.process
    assert process is not None
    # A closed connection comes a moment before the end of its process.
    status = process.status() if dialogue.connected else process.wait(_END_SECONDS)
    well = dialogue.all_answered and not (parsed.strict and dialogue.any_refused)
    if status is None:
        if not dialogue.connected:
            _complain("the application closed the connection, with a request unanswered, but still runs")
        return OK if well else FAILED
    ending = f"the application ended ({describe_exit(status)})"
    if not dialogue.connected:
        ending += " with a request unanswered"
    if status == 0 and well:
        if not parsed.json:
            _say(ending)
        return OK
    last_output = process.last_output()
    _complain(f"{ending}; its last output:\n{last_output}" if last_output else ending)
    return FAILED
