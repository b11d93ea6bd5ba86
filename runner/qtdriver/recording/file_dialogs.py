"""File dialogs of Qt: a path that was entered and accepted is one step."""

from __future__ import annotations

from typing import List, Optional, Sequence

from .steps import Step

_FIELD = 'widget("fileNameEdit")'
"""The field for the path, which has this name in every file dialog of Qt."""

_ACCEPTING = tuple(f'find(text="{word}")' for word in ("Open", "Save", "Choose", "&Open", "&Save", "&Choose"))


def with_files(steps: Sequence[Step]) -> List[Step]:
    """The steps with Window.file() for each path that was typed into a file dialog, and accepted by Return or its button."""
    found: List[Step] = []
    for step in steps:
        before = found[-1] if found else None
        accepted = _accepted(before, step)
        if accepted is not None:
            found[-1] = accepted
        else:
            found.append(step)
    return found


def _accepted(before: Optional[Step], step: Step) -> Optional[Step]:
    if before is None or before.window != step.window or (before.widget, before.method) != (_FIELD, "fill"):
        return None
    by_key = (step.widget, step.method, step.arguments) == (_FIELD, "press", ("Return",))
    by_button = step.widget in _ACCEPTING and step.method == "click"
    return Step(step.app, step.window, "", "file", before.arguments) if by_key or by_button else None
