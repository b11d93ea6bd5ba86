"""The tools that start and end applications."""

from __future__ import annotations

import shlex

from ..errors.endings import describe_exit
from ..lookup.snapshot import outline_length, outline_with_refs
from ..protocol.waiting import Deadline, attempts
from .answers import MAX_LINES, Answer, limited
from .call import Call
from .running import RunningApplication
from .session import DEFAULT_NAME, Session
from .tool import APP, Arguments, Tool

_WINDOW_SECONDS = 10.0


def _launch(session: Session, call: Call, arguments: Arguments) -> Answer:
    command = [arguments["program"], *arguments.get("arguments", [])]
    call.tell(f"starting {shlex.join(command)}")
    for running in session.ended():
        session.forget(running)
    name = arguments.get("app", DEFAULT_NAME)
    running = session.launch(name, command, arguments.get("qt"))
    call.tell("waiting for its window")
    for _ in attempts(Deadline(_WINDOW_SECONDS)):
        if running.look().windows:
            break
    running.changes_after_action()
    return Answer(
        f"{shlex.join(command)} is running as {name!r} (process {running.app.pid})\n{overview(running)}"
    )


def overview(running: RunningApplication) -> str:
    """The window in front, and the names of the others."""
    front = running.survey.in_front()
    if front is None or front.root is None:
        return "it shows no window yet"
    lines = outline_with_refs(front.root, most=MAX_LINES)
    hint = f"snapshot with target {front.root.ref} and first_line {{}}"
    shown = limited(lines, hint, count=outline_length(front.root))
    if len(running.survey.windows) == 1:
        return shown
    return f"windows:\n{running.windows_in_lines()}\nin front:\n{shown}"


def _close(session: Session, call: Call, arguments: Arguments) -> Answer:
    running = session.running(arguments)
    status = running.app.terminate()
    session.forget(running)
    ended = "" if status is None else f" ({describe_exit(status)})"
    return Answer(f"{running.name} was ended{ended}; still running: {', '.join(session.names) or 'none'}")


TOOLS = (
    Tool(
        "launch",
        "Start an application",
        "Starts a Qt widgets application and answers with an outline of its window. Each widget has a number in brackets, "
        "which the other tools take as target; it stays the same as long as the widget lives. The application has an empty "
        "home folder, so it starts as for a new user.",
        _launch,
        {
            "program": {"type": "string", "description": "Path, or name in PATH."},
            "arguments": {"type": "array", "items": {"type": "string"}, "description": "Its arguments."},
            "app": {"type": "string", "description": "Name for it, to tell several apart. Default: app."},
            "qt": {
                "type": "integer",
                "enum": [4, 5, 6],
                "description": "Its Qt version; only for scripts, whose file does not tell it.",
            },
        },
        ("program",),
    ),
    Tool(
        "close",
        "End an application",
        "Ends an application that launch has started, without asking it to save. To close a dialog, click its button or "
        "press Escape instead.",
        _close,
        {"app": APP},
        destroys=True,
    ),
)
