"""The bundle of a failed test: the screen, and the windows, the requests and the output of its applications.

Everything here has a short time limit: applications may hang, and so may the X server when one of them has grabbed it.
"""

from __future__ import annotations

import os
import subprocess
import sys
from pathlib import Path
from typing import Callable, Dict, Iterable, List, Optional, Sequence

from ..api.app import App
from ..errors import QtDriverError
from ..errors.endings import describe_exit
from ..lookup.windows import describe_windows, last_windows, walk_windows
from ..protocol.extensions import readable_request
from ..protocol.records import WidgetRecord
from ..protocol.waiting import Deadline
from ..protocol.wire import LIST_MARK

_SCREENSHOT_SECONDS = 15.0
_WINDOWS_SECONDS = 5.0
_SAVE = "import sys; from qtdriver.api.pictures import save_screenshot; save_screenshot(sys.argv[1], sys.argv[2] or None)"


def write_bundle(apps: Sequence[App], folder: Path, began: float) -> List[str]:
    """Writes the files; those of a second application have names that end in "-2".

    Args:
        apps: the applications of the test.
        folder: where to write.
        began: when the test began, a time of time.monotonic(); times in the files count from it.

    Returns notes for a person, such as which file could not be written.
    """
    notes: List[str] = []
    if not apps:
        return ["no application was started"]
    displays = dict.fromkeys(app.display for app in apps)
    for number, display in enumerate(displays, 1):
        path = folder / _numbered("screenshot", number, "png")
        _attempt(notes, f"no {path.name}", lambda: _save_screenshot(path, display))
    for number, app in enumerate(apps, 1):
        writers: Dict[str, Callable[[], Iterable[str]]] = {
            "transcript": lambda: _describe_transcript(app, began),
            "windows": lambda: _describe_windows(app, notes),
            "stdout": lambda: () if app.process is None else app.process.output.lines(),
            "stderr": lambda: () if app.process is None else app.process.errors.lines(),
        }
        for name, write in writers.items():
            path = folder / _numbered(name, number, "txt")
            _attempt(notes, f"no {path.name}", lambda: _write(path, write()))
    return notes


def _numbered(name: str, number: int, ending: str) -> str:
    return f"{name}.{ending}" if number == 1 else f"{name}-{number}.{ending}"


def _attempt(notes: List[str], failure: str, action: Callable[[], None]) -> None:
    """Runs `action`; an error becomes a note, since a test must not fail because of its bundle."""
    try:
        action()
    except Exception as error:
        notes.append(f"{failure}: {error}")


def _write(path: Path, lines: Iterable[str]) -> None:
    path.write_text("".join(f"{line}\n" for line in lines), encoding="utf-8", errors="backslashreplace")


def _save_screenshot(path: Path, display: Optional[str]) -> None:
    """Takes the picture in a process of its own, which can be killed when the X server does not answer."""
    environment = {**os.environ, "PYTHONPATH": os.pathsep.join(filter(None, sys.path))}
    command = [sys.executable, "-c", _SAVE, str(path), display or ""]
    try:
        done = subprocess.run(
            command,
            env=environment,
            stdin=subprocess.DEVNULL,
            capture_output=True,
            text=True,
            timeout=_SCREENSHOT_SECONDS,
            check=False,
        )
    except subprocess.TimeoutExpired:
        raise QtDriverError(f"the display has not answered within {_SCREENSHOT_SECONDS:g} seconds") from None
    if done.returncode != 0:
        raise QtDriverError((done.stderr.strip().splitlines() or ["it could not be taken"])[-1])


def _describe_windows(app: App, notes: List[str]) -> List[str]:
    """Lines that list the windows and their widgets; those of the last listing when the application cannot be asked."""
    status = None if app.process is None else app.process.status()
    if status is not None:
        return _not_asked(app, f"the application had ended ({describe_exit(status)})", notes)
    connection, usual = app.connection, app.connection.timeout
    deadline = Deadline(_WINDOWS_SECONDS)
    lines: List[str] = []
    try:
        connection.timeout = _WINDOWS_SECONDS
        windows = connection.list_windows()
        connection.timeout = max(deadline.remaining(), 0.1)
        for window in walk_windows(connection, windows):
            connection.timeout = max(deadline.remaining(), 0.1)
            lines += ["", *describe_windows([window.record])]
            lines += [_describe_widget(record) for record in window.widgets]
            if window.error is not None:
                lines.append(f"    its widgets could not be listed: {window.error}")
    except QtDriverError as error:
        return lines or _not_asked(app, str(error), notes)
    finally:
        connection.timeout = usual
    return lines[1:] or ["no visible window"]


def _not_asked(app: App, reason: str, notes: List[str]) -> List[str]:
    notes.append(f"{reason}: no list of its windows")
    seen = describe_windows(last_windows(app.connection.transcript.exchanges()))
    return [reason, "", "the windows that were last seen:", *seen]


def _describe_widget(record: WidgetRecord) -> str:
    name = f'"{record.object_name}" ' if record.object_name else ""
    hidden = "" if record.visible else ", hidden"
    return f"    {'  ' * record.depth}{name}({record.class_name}{hidden})"


def _describe_transcript(app: App, began: float) -> Iterable[str]:
    """Lines with each request and when it was sent, and its reply and how long that took, in seconds."""
    yield f"process {app.pid}; > request, < reply, ! no reply; seconds since the test began, and of waiting for a reply"
    for refusal in app.connection.transcript.refusals:
        yield f"refused before it: {refusal}"
    for exchange in app.connection.transcript.exchanges():
        yield f"{exchange.started - began:10.3f}  > {_on_one_line(readable_request(exchange.request))}"
        answer = f"! {exchange.error}" if exchange.reply is None else f"< {_on_one_line(exchange.reply)}"
        yield f"{exchange.seconds:+10.3f}  {answer}"


def _on_one_line(reply: str) -> str:
    return reply.replace(LIST_MARK, " | ").replace("\n", "\\n")
