"""The call of a test that a step belongs to: the line of the test, and the call as the test wrote it."""

from __future__ import annotations

import inspect
import re
import sys
from functools import lru_cache
from types import CodeType, FrameType
from typing import Any, Dict, List, NamedTuple, Optional, Tuple

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


class RunningCall(NamedTuple):
    """A call of the runner by a test, from which the words are made only when they are needed: they take long.

    Attributes:
        code: that of the runner's method.
        arguments: the method's own, by their names.
        file, line: where the test made the call.
    """

    code: CodeType
    arguments: Dict[str, Any]
    file: str
    line: int

    def caller(self) -> Caller:
        """Where the test made the call, and the call as it wrote it."""
        return Caller(_written(self.code, self.arguments), self.file, self.line)


def running_call() -> Optional[RunningCall]:
    """The call by the innermost line outside the runner; None where no such line made it."""
    frame: Optional[FrameType] = sys._getframe(1)
    outermost, package = frame, _RUNNER
    while frame is not None and package in (_RUNNER, "contextlib"):
        if package == _RUNNER:
            outermost = frame
        frame = frame.f_back
        package = _package(frame)
    while frame is not None and package in _BETWEEN:
        frame = frame.f_back
        package = _package(frame)
    if frame is None or outermost is None or package == _RUNNER:
        return None
    # Not the frame itself, which would keep all that the test has alive.
    code, values = outermost.f_code, outermost.f_locals
    arguments = {name: values[name] for name in _names(code) if name in values}
    return RunningCall(code, arguments, frame.f_code.co_filename, frame.f_lineno)


def _names(code: CodeType) -> Tuple[str, ...]:
    """The names of the arguments of a function."""
    count = code.co_argcount + code.co_kwonlyargcount
    count += bool(code.co_flags & inspect.CO_VARARGS) + bool(code.co_flags & inspect.CO_VARKEYWORDS)
    return code.co_varnames[:count]


def calling_frame() -> FrameType:
    """The innermost frame outside the runner, which is the test's as long as the test calls; the outermost without any."""
    frame = sys._getframe(1)
    while frame.f_back is not None and _package(frame) == _RUNNER:
        frame = frame.f_back
    return frame


def _package(frame: Optional[FrameType]) -> str:
    return "" if frame is None else _first_part(str(frame.f_globals.get("__name__", "")))


@lru_cache(maxsize=1024)
def _first_part(module: str) -> str:
    return module.partition(".")[0]


def _written(code: CodeType, values: Dict[str, Any]) -> str:
    """The call of the method that has this code; empty for a function, a generator and a private method."""
    owner = values.get("self")
    if owner is None or code.co_name.startswith("_") or code.co_flags & inspect.CO_GENERATOR:
        return ""
    name = repr(owner)
    if name.startswith("<"):
        return ""
    prefix = "" if re.fullmatch(r"app\(\d+\)", name) else f"{name}."
    function = getattr(type(owner), code.co_name, None)
    return f"{prefix}{code.co_name}({', '.join(_arguments(function, code, values))})"


def _arguments(function: Any, code: CodeType, values: Dict[str, Any]) -> List[str]:
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
