"""The bundle of a failed test: the screen, and the windows, the requests and the output of its applications.

Everything here has a short time limit: applications may hang, and so may the X server when one of them has grabbed it.
"""

from __future__ import annotations

from pathlib import Path
from typing import Callable, Dict, Iterable, List, Optional, Sequence, Tuple

from ..api.app import App
from ..desktop.screen_process import SCREENS, display_name
from ..crashes.stacks import Stacks
from ..errors import QtDriverError, RequestTimeout
from ..errors.endings import describe_exit
from ..lookup.windows import describe_windows, last_windows, walk_windows
from ..protocol.extensions import readable_request
from ..protocol.records import WidgetRecord
from ..protocol.secrets import Secrets
from ..protocol.waiting import Deadline
from ..protocol.wire import LIST_MARK
from .failed_starts import SeenStart

_SCREENSHOT_SECONDS = 15.0
_WINDOWS_SECONDS = 5.0
_Writers = Dict[str, Callable[[], Iterable[str]]]


def write_bundle(
    apps: Sequence[App], failed_starts: Sequence[SeenStart], folder: Path, began: float
) -> List[str]:
    """Writes the files; those of a second application have names that end in "-2".

    Args:
        apps: the applications of the test.
        failed_starts: those that did not start, which are numbered after the others.
        folder: where to write.
        began: when the test began, a time of time.monotonic(); times in the files count from it.

    Returns notes for a person, such as which file could not be written.
    """
    notes: List[str] = []
    if not apps and not failed_starts:
        return ["no application was started"]
    displays = dict.fromkeys(app.display for app in apps)
    for number, display in enumerate(displays, 1):
        path = folder / _numbered("screenshot", number, "png")
        _attempt(notes, f"no {path.name}", lambda: _save_screenshot(path, display))
    secrets = Secrets.of_all(app.connection.secrets for app in apps)
    for number, app in enumerate(apps, 1):
        stacks = folder / _numbered("stack", number, "txt")
        writers: _Writers = {
            "transcript": lambda: _describe_transcript(app, secrets, began),
            "windows": lambda: _describe_windows(app, notes),
            "stdout": lambda: () if app.process is None else app.process.output.lines(),
            "stderr": lambda: () if app.process is None else app.process.errors.lines(),
        }
        _write_all(writers, folder, number, notes, secrets)
        _attempt(notes, f"no {stacks.name}", lambda: _write_stacks(stacks, app.stacks(), notes, secrets))
    for number, seen in enumerate(failed_starts, 1):
        _write_failed_start(seen, folder, (len(displays) + number, len(apps) + number), notes, secrets)
    return [secrets.hide(note) for note in notes]


def _write_failed_start(
    seen: SeenStart, folder: Path, numbers: Tuple[int, int], notes: List[str], secrets: Secrets
) -> None:
    notes += [f"{seen.start.program} was started, but its agent did not connect", *seen.notes]
    if seen.screenshot:
        path = folder / _numbered("screenshot", numbers[0], "png")
        _attempt(notes, f"no {path.name}", lambda: path.write_bytes(seen.screenshot))
    writers: _Writers = {
        "windows": lambda: seen.windows,
        "stdout": seen.start.process.output.lines,
        "stderr": seen.start.process.errors.lines,
    }
    _write_all(writers, folder, numbers[1], notes, secrets)
    stacks = folder / _numbered("stack", numbers[1], "txt")
    _attempt(
        notes, f"no {stacks.name}", lambda: _write_stacks(stacks, seen.start.process.crash(), notes, secrets)
    )


def _write_stacks(path: Path, stacks: Optional[Stacks], notes: List[str], secrets: Secrets) -> None:
    """Writes the stacks of an application that has crashed or hangs."""
    if stacks is None:
        return
    if stacks.note:
        notes.append(stacks.note)
    if stacks.threads:
        _write(path, stacks.lines(), secrets)


def _write_all(writers: "_Writers", folder: Path, number: int, notes: List[str], secrets: Secrets) -> None:
    for name, write in writers.items():
        path = folder / _numbered(name, number, "txt")
        _attempt(notes, f"no {path.name}", lambda: _write(path, write(), secrets))


def _numbered(name: str, number: int, ending: str) -> str:
    return f"{name}.{ending}" if number == 1 else f"{name}-{number}.{ending}"


def _attempt(notes: List[str], failure: str, action: Callable[[], object]) -> None:
    """Runs `action`; an error becomes a note, since a test must not fail because of its bundle."""
    try:
        action()
    except Exception as error:
        notes.append(f"{failure}: {error}")


def _write(path: Path, lines: Iterable[str], secrets: Secrets) -> None:
    path.write_text(
        "".join(f"{secrets.hide(line)}\n" for line in lines), encoding="utf-8", errors="backslashreplace"
    )


def _save_screenshot(path: Path, display: Optional[str]) -> None:
    SCREENS.save_picture(display_name(display), path).wait(_SCREENSHOT_SECONDS)


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
        if isinstance(error, RequestTimeout):
            app.stacks(hangs=True)
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


def _describe_transcript(app: App, secrets: Secrets, began: float) -> Iterable[str]:
    """Lines with each request and when it was sent, and its reply and how long that took, in seconds."""
    yield f"process {app.pid}; > request, < reply, ! no reply; seconds since the test began, and of waiting for a reply"
    for refusal in app.connection.transcript.refusals:
        yield f"refused before it: {refusal}"
    hide = secrets.hide_in_line
    for exchange in app.connection.transcript.exchanges():
        request = readable_request(hide(exchange.request))
        yield f"{exchange.started - began:10.3f}  > {_on_one_line(request)}"
        answer = (
            f"! {exchange.error}" if exchange.reply is None else f"< {_on_one_line(hide(exchange.reply))}"
        )
        yield f"{exchange.seconds:+10.3f}  {answer}"


def _on_one_line(reply: str) -> str:
    return reply.replace(LIST_MARK, " | ").replace("\n", "\\n")
