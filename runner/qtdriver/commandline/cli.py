"""The command line `qtdriver`."""

from __future__ import annotations

import argparse
import io
import os
import signal
import sys
from pathlib import Path
from types import FrameType
from typing import Any, Callable, Dict, List, Optional, Sequence

from ..desktop import desktop
from ..desktop.session import WAYLAND_NOTE, needs_x11
from ..errors import QtDriverError
from ..errors.settingnames import ON_COMMAND_LINE, use_setting_names
from ..launch.progress import show_progress_on
from ..project.initialising import initialise
from ..shell.completion import complete, complete_in_bash
from ..shell.manual import manual_page
from ..trace.summary import describe_summary, read_summary
from . import control, holding
from .arguments import FIRST_STEPS, parse_arguments, parsers, wants_json
from .doctor import examine
from .outcome import FAILED, INTERRUPTED, OK, Outcome
from .reporting import report
from .running import run_dialogue
from .versions import VERSION

if sys.platform == "win32":
    _ENDING_SIGNALS = (signal.SIGTERM,)
else:
    _ENDING_SIGNALS = (signal.SIGTERM, signal.SIGHUP)
_MANUAL = "manual"
"""A hidden command, by which the packages get their manual page; control.COMPLETE is the one for shells."""

_NOT_FOR_THE_HOLDER = ("action", "name", "json")


def main(arguments: Optional[Sequence[str]] = None) -> int:
    """Runs the command line.

    `arguments` come without the program's name, by default those of this process. Returns the exit status.
    """
    words = list(sys.argv[1:] if arguments is None else arguments)
    use_setting_names(ON_COMMAND_LINE)
    show_progress_on(sys.stderr)
    for number in _ENDING_SIGNALS:
        signal.signal(number, _leave)
    for stream in (sys.stdout, sys.stderr):
        if isinstance(stream, io.TextIOWrapper):
            stream.reconfigure(errors="backslashreplace")
    as_json = wants_json(words)
    try:
        if words[:1] == [holding.HOLD]:
            return holding.hold(words[1], words[2:])
        if words[:1] == [control.COMPLETE]:
            return _complete(words[1], words[2:])
        if words == [_MANUAL]:
            return _finish(Outcome(manual_page(parsers()[0], VERSION).rstrip("\n")), as_json=False)
        if not words:
            return _finish(Outcome(FIRST_STEPS), as_json=False)
        parsed = parse_arguments(words)
        as_json = parsed.json
        return _ACTIONS.get(parsed.action, _one_shot)(parsed)
    except QtDriverError as error:
        return _finish(Outcome.of_error(error), as_json=as_json)
    except KeyboardInterrupt:
        return INTERRUPTED
    except BrokenPipeError:
        # Nobody reads the output any more; Python would report that once more when it flushes at the end.
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
        return FAILED


def _leave(number: int, _frame: Optional[FrameType]) -> None:
    """Exits in order at a signal, so that the application is ended, too."""
    sys.exit(128 + number)


def _finish(outcome: Outcome, *, as_json: bool) -> int:
    """Prints an outcome, errors to standard error. Returns its exit status."""
    if as_json:
        print(outcome.shown(as_json=True), flush=True)
    elif outcome.status:
        print(f"qtdriver: {outcome.text}", file=sys.stderr, flush=True)
    elif outcome.text:
        print(outcome.text, flush=True)
    return outcome.status


def _complete(shell: str, words: Sequence[str]) -> int:
    """Prints how the last word may go on; bash hands over its whole line, zsh the words."""
    parser = parsers()[0]
    if shell == "bash":
        found = complete_in_bash(words[0], parser, _ask_application)
    else:
        found = complete(words, parser, _ask_application)
    print(found.to_lines(), flush=True)
    return 0


def _ask_application(name: Optional[str], words: Sequence[str]) -> Sequence[str]:
    """The words that may come behind these within the application that is held; nothing where none is."""
    try:
        outcome = control.ask(name or control.DEFAULT_NAME, control.COMPLETE, {"words": list(words)})
    except (QtDriverError, ValueError):
        return ()
    return list(outcome.data) if outcome.status == 0 else ()


def _one_shot(parsed: argparse.Namespace) -> int:
    values = {name: value for name, value in vars(parsed).items() if name not in _NOT_FOR_THE_HOLDER}
    return _finish(control.ask(parsed.name, parsed.action, values), as_json=parsed.json)


def _run(parsed: argparse.Namespace) -> int:
    if not parsed.headless and needs_x11(os.environ):
        print(f"qtdriver: {WAYLAND_NOTE}", file=sys.stderr, flush=True)
    if parsed.background:
        return _finish(holding.start_holding(parsed), as_json=parsed.json)
    if parsed.headless:
        _continue_headless(parsed)
    return run_dialogue(parsed)


def _attach(parsed: argparse.Namespace) -> int:
    return _finish(holding.start_attached(parsed), as_json=parsed.json)


def _continue_headless(parsed: argparse.Namespace) -> None:
    """Replaces this process by the same run on a desktop of its own."""
    arguments: List[str] = [str(desktop.SCRIPT), sys.executable, "-c", holding.START, holding.RUNNER]
    arguments += ["run", "--timeout", str(parsed.timeout)]
    for name in ("qt", "load_by", "script", "build"):
        value = getattr(parsed, name)
        if value is not None:
            arguments += [f"--{name.replace('_', '-')}", str(value)]
    arguments += [f"--{option}" for option in ("strict", "json") if getattr(parsed, option)]
    os.execve(arguments[0], [*arguments, "--", *parsed.command], desktop.environment_for_own_network())


def _doctor(parsed: argparse.Namespace) -> int:
    outcome = examine(parsed.build, Path(parsed.command[0]) if parsed.command else None)
    print(outcome.shown(as_json=parsed.json), flush=True)
    return outcome.status


def _init(parsed: argparse.Namespace) -> int:
    text, data, passed = initialise(parsed.folder, parsed.command, build=parsed.build, run=not parsed.no_run)
    print(Outcome(text, data).shown(as_json=parsed.json), flush=True)
    return OK if passed else FAILED


def _trace(parsed: argparse.Namespace) -> int:
    summary = read_summary(parsed.folder)
    return _finish(Outcome(describe_summary(summary), summary), as_json=parsed.json)


def _report(parsed: argparse.Namespace) -> int:
    return _finish(report(parsed), as_json=parsed.json)


def _inspect(parsed: argparse.Namespace) -> int:
    from ..inspector.program import inspect  # it takes a while, for which other commands need not wait

    def ask(operation: str, values: Dict[str, Any]) -> Any:
        return control.ask_data(parsed.name, control.INSPECT, {"operation": operation, "values": values})

    def tell(address: str) -> None:
        text = f"the inspector is at {address}\nPress Ctrl+C to end it."
        print(Outcome(text, {"address": address}).shown(as_json=parsed.json), flush=True)

    end = inspect(parsed, ask, tell)
    return _finish(Outcome(end, {"end": end}), as_json=parsed.json)


def _mcp(parsed: argparse.Namespace) -> int:
    from ..mcp.program import serve  # slow to import, as above

    return serve(parsed, VERSION, [sys.executable, "-c", holding.START, holding.RUNNER])


_ACTIONS: Dict[str, Callable[[argparse.Namespace], int]] = {
    "run": _run,
    "attach": _attach,
    "doctor": _doctor,
    "init": _init,
    "trace": _trace,
    "report": _report,
    "inspect": _inspect,
    "mcp": _mcp,
}
