"""The tool that waits for conditions."""

from __future__ import annotations

import re
from typing import Any, Dict, Optional, Pattern, Tuple

from ..api.window import Window
from ..errors import ConditionError
from ..expect.conditions import eventually
from ..lookup.survey import Survey
from ..recording.steps import Argument, Part
from .answers import Answer, ToolError, limited
from .call import Call
from .running import RunningApplication, Target
from .session import Session
from .tool import APP, TARGET, WINDOW, Arguments, Tool

_MAX_SECONDS = 120
_OF_WIDGETS: Dict[str, str] = {
    "visible": "is_visible",
    "hidden": "is_hidden",
    "enabled": "is_enabled",
    "disabled": "is_disabled",
    "checked": "is_checked",
    "unchecked": "is_not_checked",
}
_OF_WINDOWS: Dict[str, str] = {"open": "is_open", "closed": "is_closed"}


def _wait(session: Session, call: Call, arguments: Arguments) -> Answer:
    running = session.running(arguments)
    running.look()
    seconds = arguments.get("timeout", 5)
    if "text" in arguments:
        return _wait_for_text(session, running, arguments, seconds)
    if arguments.get("state") in _OF_WINDOWS or "target" not in arguments:
        return _wait_for_window(session, running, arguments, seconds)
    target = running.target(arguments["target"], arguments.get("window"))
    method, given = _condition(arguments)
    words = running.call_for_test(target) if arguments.get("state") == "hidden" else None
    _fulfil(target.widget, seconds, method, given)
    running.look()
    if words is None:
        words = running.call_for_test(_again(running, target))
    note = session.record(running, target, words, method, given, is_check=True)
    return _fulfilled(running, f"it is so: {target}", note)


def _fulfilled(running: RunningApplication, words: str, note: str) -> Answer:
    """The answer, with what has changed since the last one."""
    lines = running.changes_since_answer()
    return Answer(limited([words, *lines], "take a snapshot") + note)


def _again(running: RunningApplication, target: Target) -> Target:
    """The widget as it is now: a condition may have been about the text by which a test knows it."""
    found = running.survey.found.get(target.node.ref)
    return target if found is None else target._replace(node=found[0], window=found[1])


def _condition(arguments: Arguments) -> Tuple[str, Tuple[Argument, ...]]:
    state, name = arguments.get("state"), arguments.get("property", "text")
    if state is not None:
        return _OF_WIDGETS[state], ()
    if "equals" in arguments:
        return "has_property", (name, arguments["equals"])
    if "contains" in arguments:
        return "has_property", (name, Part(arguments["contains"]))
    raise ToolError("say what to wait for: state, equals, contains, or text")


def _fulfil(subject: Any, seconds: float, method: str, given: Tuple[Argument, ...]) -> None:
    values = [_contains(one) if isinstance(one, Part) else one for one in given]
    getattr(eventually(subject, timeout=seconds), method)(*values)


def _contains(part: Part) -> "Pattern[str]":
    return re.compile(re.escape(part.text))


def _wait_for_text(
    session: Session, running: RunningApplication, arguments: Arguments, seconds: float
) -> Answer:
    window = _named_window(running, arguments.get("window"))
    widget = window.find(text=arguments["text"])
    method = _OF_WIDGETS.get(arguments.get("state", "visible"), "is_visible")
    _fulfil(widget, seconds, method, ())
    running.look()
    note = session.record(running, repr(window), widget.call(), method, is_check=True)
    return _fulfilled(running, f"it is so: {arguments['text']!r}", note)


def _wait_for_window(
    session: Session, running: RunningApplication, arguments: Arguments, seconds: float
) -> Answer:
    state: Optional[str] = arguments.get("state")
    wanted = arguments.get("window")
    window = _named_window(running, wanted, keeps=state == "closed")
    if state in _OF_WINDOWS:
        method, given = _OF_WINDOWS[state], ()  # type: Tuple[str, Tuple[Argument, ...]]
    elif "equals" in arguments:
        method, given = "has_title", (arguments["equals"],)
    elif "contains" in arguments:
        method, given = "has_title", (Part(arguments["contains"]),)
    else:
        raise ToolError(
            "say what to wait for: a target with state, equals or contains; text; or a window with state"
        )
    try:
        _fulfil(window, seconds, method, given)
    except ConditionError as error:
        running.look()
        raise ToolError(f"{error}; open are:\n{running.windows_in_lines()}") from None
    running.look()
    note = session.record(running, repr(window), "", method, given, is_check=True)
    return _fulfilled(running, f"it is so: {window}", note)


def _named_window(running: RunningApplication, wanted: "int | str | None", *, keeps: bool = False) -> Window:
    """The open window that the client means; where none has the title, any window of that title, which may still come.

    With `keeps` it is the one that was seen last, also if it is gone by now.
    """
    seen = running.window_seen(wanted) if keeps and wanted is not None else None
    if seen is not None:
        return running.window_of(seen)
    if isinstance(wanted, str) and not _is_open(running.look(), wanted):
        return running.app.window(wanted)
    return running.window_of(running.window(wanted))


def _is_open(survey: Survey, wanted: str) -> bool:
    """Whether a window has this name, or a title that begins so."""
    return any(
        one.record.title.startswith(wanted) or (one.root is not None and one.root.name == wanted)
        for one in survey.windows
    )


TOOLS = (
    Tool(
        "wait",
        "Wait for something",
        "Waits until a widget has a state or value, a text is shown, or a window is open or closed; tells at the end of the "
        "time what was there instead. What came true becomes a check of the test that save_test writes.",
        _wait,
        {
            "target": TARGET,
            "state": {
                "type": "string",
                "enum": [*_OF_WIDGETS, *_OF_WINDOWS],
                "description": "The state of the target or the text; open and closed of the window.",
            },
            "text": {
                "type": "string",
                "description": "The whole text of a widget that shall be shown, without a target.",
            },
            "property": {
                "type": "string",
                "description": "The property of Qt that equals or contains is about. Default: text.",
            },
            "equals": {
                "type": ["string", "number", "boolean"],
                "description": "The value; without a target the window's title.",
            },
            "contains": {"type": "string", "description": "A part of it."},
            "window": WINDOW,
            "app": APP,
            "timeout": {
                "type": "number",
                "minimum": 0,
                "maximum": _MAX_SECONDS,
                "description": "Seconds. Default: 5.",
            },
        },
        reads_only=True,
    ),
)
