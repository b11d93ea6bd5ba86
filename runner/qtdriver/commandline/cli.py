"""The command line `qtdriver`."""

from __future__ import annotations

import argparse
import io
import os
import signal
import sys
from contextlib import nullcontext
from pathlib import Path
from types import FrameType
from typing import ContextManager, List, Optional, Sequence, TextIO

from .. import desktop
from ..app import App
from .arguments import parse_arguments
from .dialogue import Dialogue, typed_lines
from ..errors import QtDriverError
from ..driver import Driver
from ..process import describe_exit

_OK, _FAILED, _INTERRUPTED = 0, 1, 130
_ENDING_SIGNALS = (signal.SIGTERM, signal.SIGHUP)
_END_SECONDS = 5.0


def main(arguments: Optional[Sequence[str]] = None) -> int:
    """Runs the command line and answers the exit status; `arguments` without the program's name."""
    parsed = parse_arguments(sys.argv[1:] if arguments is None else arguments)
    for number in _ENDING_SIGNALS:
        signal.signal(number, _leave)
    try:
        if parsed.headless:
            _continue_headless(parsed)
        return _run(parsed)
    except QtDriverError as error:
        _complain(str(error))
        return _FAILED
    except KeyboardInterrupt:
        return _INTERRUPTED
    except BrokenPipeError:
        # Who read our output has gone; Python would complain once more when it flushes at the end.
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
        return _FAILED


def _leave(number: int, _frame: Optional[FrameType]) -> None:
    """A signal to end takes the normal way out, on which the application is ended."""
    sys.exit(128 + number)


def _say(text: str) -> None:
    print(text, flush=True)


def _complain(text: str) -> None:
    print(f"qtdriver: {text}", file=sys.stderr, flush=True)


def _continue_headless(parsed: argparse.Namespace) -> None:
    """Replaces this process by the same run on a desktop of its own."""
    runner = str(Path(__file__).resolve().parents[2])
    start = "import sys; sys.path[0] = sys.argv.pop(1); from qtdriver.commandline.cli import main; sys.exit(main())"
    arguments: List[str] = [str(desktop.SCRIPT), sys.executable, "-c", start, runner]
    arguments += ["run", "--timeout", str(parsed.timeout)]
    for option in ("qt", "script", "build"):
        value = getattr(parsed, option)
        if value is not None:
            arguments += [f"--{option}", str(value)]
    os.execv(arguments[0], [*arguments, "--", *parsed.command])


def _run(parsed: argparse.Namespace) -> int:
    for stream in (sys.stdout, sys.stderr):
        if isinstance(stream, io.TextIOWrapper):
            stream.reconfigure(errors="backslashreplace")
    with _open_script(parsed.script) as script, _driver(parsed) as driver:
        application = _launch(parsed, driver)
        typing = script is None and sys.stdin.isatty()
        if typing:
            _introduce(application)
        dialogue = Dialogue(application.connection, _say, _complain, echo=not typing)
        try:
            dialogue.run(typed_lines(script))
        except UnicodeDecodeError as error:
            raise QtDriverError(f"the requests are not UTF-8 text: {error}") from error
        return _conclude(application, dialogue)


def _open_script(path: Optional[Path]) -> ContextManager[Optional[TextIO]]:
    if path is None:
        return nullcontext()
    try:
        return path.open(encoding="utf-8")
    except OSError as error:
        raise QtDriverError(f"cannot read the script {path}: {error.strerror}") from error


def _driver(parsed: argparse.Namespace) -> Driver:
    return Driver(qt=parsed.qt, build=parsed.build, request_timeout=parsed.timeout)


def _launch(parsed: argparse.Namespace, driver: Driver) -> App:
    return driver.launch(*parsed.command, start_timeout=parsed.timeout)


def _introduce(application: App) -> None:
    greeting = application.connection.greeting
    _say(f"connected to process {greeting.pid} (agent {greeting.version}, {greeting.build_tag}); try help")


def _conclude(application: App, dialogue: Dialogue) -> int:
    """Says how the application ended, if it did so by itself, and answers the exit status."""
    process = application.process
    assert process is not None
    # A closed connection comes a moment before the end of its process.
    status = process.status() if dialogue.connected else process.wait(_END_SECONDS)
    answered = dialogue.all_answered
    if status is None:
        if not dialogue.connected:
            _complain("the application closed the connection, with a request unanswered, but still runs")
        return _OK if answered else _FAILED
    ending = f"the application ended ({describe_exit(status)})"
    if not dialogue.connected:
        ending += " with a request unanswered"
    if status == 0 and answered:
        _say(ending)
        return _OK
    last_words = process.last_words()
    _complain(f"{ending}; its last output:\n{last_words}" if last_words else ending)
    return _FAILED
