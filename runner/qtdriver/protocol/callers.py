"""The call of a test that a step belongs to: the line of the test, and the call as the test wrote it."""

from __future__ import annotations

import inspect
import re
import sys
from types import CodeType, FrameType
from typing import Any, List, NamedTuple, Optional

_RUNNER = __name__.partition(".")[0]
_BETWEEN = ("_pytest", "pluggy", "contextlib", "unittest", "asyncio", "concurrent", "threading")
"""Packages whose lines are not those of a test, though they may stand between a test and the runner."""

_MAX_LENGTH = 80
"""Characters of an argument that are shown."""


class Caller(NamedTuple):
    """Where a test made a call.

    Attributes:
        call: the call as the test wrote it; empty where that cannot be told.
        file: the path of the test's file, empty where no test made it.
        line: its line.
    """

    call: str = ""
    file: str = ""
    line: int = 0


def find_caller() -> Caller:
    """The innermost line outside the runner, and the runner's method that it calls."""
    frame: Optional[FrameType] = sys._getframe(1)
    outermost = frame
    while frame is not None and _package(frame) in (_RUNNER, "contextlib"):
        outermost, frame = (frame if _package(frame) == _RUNNER else outermost), frame.f_back
    while frame is not None and _package(frame) in _BETWEEN:
        frame = frame.f_back
    if frame is None or outermost is None or _package(frame) == _RUNNER:
        return Caller()
    return Caller(_written(outermost), frame.f_code.co_filename, frame.f_lineno)


def calling_frame() -> FrameType:
    """The innermost frame outside the runner, which is the test's as long as the test calls; the outermost without any."""
    frame = sys._getframe(1)
    while frame.f_back is not None and _package(frame) == _RUNNER:
        frame = frame.f_back
    return frame


def _package(frame: FrameType) -> str:
    return str(frame.f_globals.get("__name__", "")).partition(".")[0]


def _written(frame: FrameType) -> str:
    """The call of the method that the frame runs; empty for a function, a generator and a private method."""
    code, values = frame.f_code, frame.f_locals
    owner = values.get("self")
    if owner is None or code.co_name.startswith("_") or code.co_flags & inspect.CO_GENERATOR:
        return ""
    name = repr(owner)
    if name.startswith("<"):
        return ""
    prefix = "" if re.fullmatch(r"app\(\d+\)", name) else f"{name}."
    function = getattr(type(owner), code.co_name, None)
    return f"{prefix}{code.co_name}({', '.join(_arguments(function, code, values))})"


def _arguments(function: Any, code: CodeType, values: "dict[str, Any]") -> List[str]:
    """The arguments that differ from their defaults, as a test writes them."""
    if getattr(function, "__code__", None) is not code:
        return []
    written: List[str] = []
    by_name = False
    for parameter in list(inspect.signature(function).parameters.values())[1:]:
        value = values.get(parameter.name, parameter.default)
        if parameter.kind is parameter.VAR_POSITIONAL:
            written += map(_shown, value)
        elif parameter.kind is parameter.VAR_KEYWORD:
            written += [f"{name}={_shown(one)}" for name, one in value.items()]
        elif value is parameter.default or _equal(value, parameter.default):
            by_name = True  # it was left out, so that those after it cannot go by their position
        elif parameter.kind is parameter.KEYWORD_ONLY or by_name:
            written.append(f"{parameter.name}={_shown(value)}")
        else:
            written.append(_shown(value))
    return written


def _equal(value: Any, default: Any) -> bool:
    return type(value) is type(default) and isinstance(value, (str, int, float, tuple)) and value == default


def _shown(value: Any) -> str:
    if callable(value) and hasattr(value, "__name__"):
        return str(value.__name__)
    if isinstance(value, re.Pattern):
        return f"re.compile({value.pattern!r})"
    text = repr(value)
    return text if len(text) <= _MAX_LENGTH else f"{text[:_MAX_LENGTH]}..."
