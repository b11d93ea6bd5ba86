"""Errors of the runner, in the words that a model reads."""

from __future__ import annotations

from typing import List

from ..errors import ApplicationEndedError, ApplicationHangsError, QtDriverError
from .answers import Answer, ToolError, cut
from .running import RunningApplication
from .session import Session

FAILURES = (QtDriverError, ToolError, ValueError, TypeError, OSError)
"""The errors that a tool may raise and a model may learn from."""

_MAX_FRAMES = 15
_MAX_OF_AN_ERROR = 3000


def answer_to(session: Session, error: BaseException) -> Answer:
    """The answer of a tool that failed. An application that has ended is off the list then; a proper end is no failure."""
    lines = [str(error) or type(error).__name__]
    statuses = []
    if isinstance(error, (ApplicationEndedError, ApplicationHangsError)):
        for running in session.ended():
            statuses.append(None if running.app.process is None else running.app.process.status())
            lines += _stack(running)
            session.forget(running)
            lines.append(f"{running.name!r} is off the list: launch starts it again")
    ended_well = bool(statuses) and not any(status != 0 for status in statuses)
    # Hidden before the cut, which could leave the beginning of a password.
    return Answer(cut(session.hide("\n".join(lines)), _MAX_OF_AN_ERROR), is_error=not ended_well)


def _stack(running: RunningApplication) -> List[str]:
    stacks = running.app.stacks()
    if stacks is None:
        return []
    lines = stacks.lines()
    return ["its stack:", *lines[:_MAX_FRAMES]] if lines else []
