"""Text snapshots: the outline of a window or a widget, compared with a file beside the test."""

from __future__ import annotations

import difflib
import re
from pathlib import Path
from typing import List, Optional, Pattern, Sequence, Union

from ..api.widget import Widget
from ..api.window import Window
from ..errors.paths import shown_path
from ..lookup.reading_order import in_reading_order
from ..lookup.snapshot import whole_outline
from .baselines import Baselines, current_baselines
from .fulfilment import wait_in
from .steady import Steady

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

Patterns = Union[str, Pattern[str], Sequence[Union[str, Pattern[str]]]]
"""Regular expressions, as texts or compiled."""

_LEFT_OUT = "***"
_CONTEXT_LINES = 2
_SUFFIX = ".txt"


def wait_for_outline(
    window: Window, widget: Optional[Widget], name: str, ignoring: Patterns, timeout: Optional[float]
) -> None:
    """Waits until a window, or the widget in it, looks like the text snapshot of this name.

    Raises ConditionError with the difference, and where there is no such snapshot yet; TypeError and ValueError for
    arguments that nothing can fulfil.
    """
    baselines = current_baselines()
    path = baselines.path(name, _SUFFIX)
    patterns = _compiled(ignoring)
    expected = path.read_text(encoding="utf-8") if path.exists() else None
    steady = Steady()
    last = ""

    def read() -> str:
        nonlocal last
        snapshot = window.snapshot(timeout=0) if widget is None else widget.snapshot(timeout=0)
        last = _without(patterns, f"{whole_outline(in_reading_order(snapshot.root))}\n")
        return last

    def accept(text: str) -> bool:
        return text == expected or (baselines.update and steady.observe(text))

    def give_up(text: str) -> bool:
        """Returns whether to stop waiting: nothing is expected, and the text does not change any more."""
        return expected is None and steady.observe(text)

    def shown(text: str) -> str:
        return (
            _as_new(baselines, path, text)
            if expected is None
            else _difference(baselines, path, expected, text)
        )

    wait_in(window, widget, f'it to look like "{name}"', read, accept, timeout, shown, give_up)
    if baselines.update and last != expected:
        baselines.write(path, lambda place: place.write_text(last, encoding="utf-8"))


def _compiled(patterns: Patterns) -> List[Pattern[str]]:
    listed = [patterns] if isinstance(patterns, (str, re.Pattern)) else patterns
    try:
        return [re.compile(pattern) for pattern in listed]
    except (TypeError, re.error) as error:
        raise type(error)(f"looks_like: ignoring: {patterns!r}: {error}") from None


def _without(patterns: Sequence[Pattern[str]], text: str) -> str:
    for pattern in patterns:
        text = pattern.sub(_LEFT_OUT, text)
    return text


def _difference(baselines: Baselines, path: Path, expected: str, text: str) -> str:
    lines = difflib.unified_diff(expected.splitlines(), text.splitlines(), lineterm="", n=_CONTEXT_LINES)
    shown = "\n".join("..." if line.startswith("@@") else line for line in list(lines)[2:])
    return (
        f"it differs (- expected, + shown):\n{shown}\n"
        f"{baselines.update_option} writes {shown_path(path)} anew, if it is right so"
    )


def _as_new(baselines: Baselines, path: Path, text: str) -> str:
    return (
        f"there was no such snapshot: {baselines.update_option} writes {shown_path(path)}, if it is right so:\n"
        f"{text.rstrip()}"
    )
