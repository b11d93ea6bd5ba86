"""Expected values: the kinds of them, when a value fits one, and how messages tell it."""

from __future__ import annotations

import math
import re
from typing import Callable, List, Optional, Pattern, Union

from ..protocol.locators import Containing
from ..protocol.wire import Rect, Value

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

Expected = Union[Value, float, List[str], Pattern[str], Containing, Callable[[Value], object]]
"""A value, items, a pattern or a part to be found in a text, or a function that returns whether it is satisfied."""

_VALUES = (str, bool, int, float, tuple, list, Rect, bytes, Containing)
_NEARLY = 1e-9
"""Relative difference of equal numbers: a property is read as decimal digits."""


def check_expected(argument: str, expected: object) -> None:
    """Raises TypeError, with the name of the argument, for what no value can fit."""
    if isinstance(expected, re.Pattern):
        if not isinstance(expected.pattern, str):
            raise TypeError(f"{argument}: {expected!r} is a pattern of bytes, and properties are texts")
    elif not isinstance(expected, _VALUES) and not callable(expected):
        raise TypeError(
            f"{argument}: {expected!r} ({type(expected).__name__}) is none of a text, a number, True or False, a list of "
            "texts, a pattern, a function"
        )


def check_timeout(timeout: Optional[float]) -> None:
    """Raises TypeError or ValueError for what is no number of seconds."""
    if timeout is None:
        return
    if isinstance(timeout, bool) or not isinstance(timeout, (int, float)):
        raise TypeError(f"timeout: {timeout!r} ({type(timeout).__name__}) is no number of seconds")
    if not 0 <= timeout < math.inf:
        raise ValueError(f"timeout: {timeout!r} is no number of seconds from 0")


def fits(value: object, expected: Expected) -> bool:
    """Whether a value is as expected."""
    if isinstance(expected, re.Pattern):
        return isinstance(value, str) and expected.search(value) is not None
    if isinstance(expected, Containing):
        return isinstance(value, str) and expected.part in value
    if callable(expected):
        return bool(expected(value))  # type: ignore[arg-type]
    if isinstance(value, bool) or isinstance(expected, bool):
        # True is 1 to Python, but a checked box is no number.
        return isinstance(value, bool) and isinstance(expected, bool) and value == expected
    if isinstance(expected, (int, float)):
        number = _number(value)
        return number is not None and math.isclose(number, expected, rel_tol=_NEARLY)
    if isinstance(expected, list):
        expected = tuple(expected)  # as read() has the values
    return value == expected


def _number(value: object) -> Optional[float]:
    """The number that a value is, or that its text says: properties with decimals are read as texts."""
    if isinstance(value, (int, float)):
        return value
    try:
        return float(value) if isinstance(value, str) else None
    except ValueError:
        return None


def describe(expected: Expected) -> str:
    """An expected value as the end of a sentence: "to be 'Saved'"."""
    if isinstance(expected, re.Pattern):
        return f"to match {expected.pattern!r}"
    if isinstance(expected, Containing):
        return f"to have {expected.part!r} in it"
    if callable(expected):
        return f"to satisfy {function_name(expected)}"
    return f"to be {expected!r}"


def function_name(function: Callable[..., object]) -> str:
    """The function's name; "<lambda>" for one that has none."""
    return str(getattr(function, "__name__", repr(function)))
