"""eventually(): conditions that a test waits for, since an application reacts in its own time."""

from __future__ import annotations

import re
import warnings
from typing import Callable, Generic, List, Optional, Pattern, TypeVar, Union, overload

from ..errors import (
    RETRYABLE_ERRORS,
    AmbiguousError,
    ConditionError,
    NotVisibleError,
    ReplyError,
    WidgetNotFoundError,
    WindowNotFoundError,
)
from ..protocol.locators import Containing
from ..protocol.waiting import Deadline, attempts
from ..protocol.wire import Value
from .steps import run_step
from .widget import Widget
from .window import Window

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

Expected = Union[Value, List[str], Pattern[str], Containing, Callable[[Value], object]]
"""A value, items, a pattern or a part to be found in a text, or a function that returns whether it is satisfied."""

_Result = TypeVar("_Result")


@overload
def eventually(subject: Widget, *, timeout: Optional[float] = None) -> "WidgetConditions":
    ...


@overload
def eventually(subject: Window, *, timeout: Optional[float] = None) -> "WindowConditions":
    ...


@overload
def eventually(
    subject: Callable[[], _Result], *, timeout: Optional[float] = None
) -> "ResultConditions[_Result]":
    ...


def eventually(
    subject: "Widget | Window | Callable[[], _Result]", *, timeout: Optional[float] = None
) -> "WidgetConditions | WindowConditions | ResultConditions[_Result]":
    """Waits for a condition of a widget, of a window, or of what a function returns.

    Args:
        subject: a widget, a window, or a function without arguments.
        timeout: seconds to wait, by default those of the application, and 5 for a function.

    Returns an object with the conditions as methods. They return as soon as their condition is true; at the end of the
    time they raise ConditionError, an AssertionError, which says what was there instead.

    Example:

        eventually(window.widget("status")).has(text="Saved")
        eventually(app.window("Editor")).is_closed()
        eventually(lambda: path.exists()).is_true()
    """
    if isinstance(subject, Widget):
        return WidgetConditions(subject, timeout)
    if isinstance(subject, Window):
        return WindowConditions(subject, timeout)
    return ResultConditions(subject, timeout)


class WidgetConditions:
    """Conditions of a widget."""

    def __init__(self, widget: Widget, timeout: Optional[float]) -> None:
        self._widget = widget
        self._timeout = timeout

    def __repr__(self) -> str:
        return f"eventually({self._widget})"

    def has(self, **properties: Expected) -> None:
        """Waits until each of these properties has its value, or fits its pattern or function: has(text="Saved")."""
        for name, expected in properties.items():
            self.has_property(name, expected)

    def has_property(self, name: str, expected: Expected, argument: Optional[str] = None) -> None:
        """Waits until a property fits.

        Args:
            name: the property.
            expected: its value, a pattern to be found in it, or a function that returns whether it fits.
            argument: for the properties that take one.
        """
        shown = name if argument is None else f"{name}({argument!r})"
        self._wait(
            f"{shown} {_wanted(expected)}",
            lambda: self._widget.read(name, argument, timeout=0),
            lambda value: _fits(value, expected),
        )

    def reads(self, name: str, expected: Expected, argument: Optional[str] = None) -> None:
        """The name of has_property() until version 2; it goes with version 3."""
        warnings.warn("reads() is has_property() now", DeprecationWarning, stacklevel=2)
        self.has_property(name, expected, argument)

    def is_visible(self) -> None:
        """Waits until the user can see it."""
        self._wait("it to be visible", lambda: self._widget.class_name(timeout=0), lambda _: True)

    def is_hidden(self) -> None:
        """Waits until the user cannot see it: it is hidden, or there is no such widget."""
        self._wait("it to be hidden", self._is_hidden, bool)

    def _is_hidden(self) -> bool:
        try:
            self._widget.class_name(timeout=0)
        except (WindowNotFoundError, WidgetNotFoundError, NotVisibleError):
            return True
        except AmbiguousError:
            pass  # several are visible
        return False

    def is_enabled(self) -> None:
        """Waits until it can be used."""
        self.has_property("enabled", True)

    def is_disabled(self) -> None:
        """Waits until it cannot be used."""
        self.has_property("enabled", False)

    def is_checked(self, on: bool = True) -> None:
        """Waits until it is checked; with False, until it is not."""
        self.has_property("checked", on)

    def _wait(self, wanted: str, read: Callable[[], _Result], satisfied: Callable[[_Result], object]) -> None:
        _wait_in(self._widget.window, self._widget, wanted, read, satisfied, self._timeout)


class WindowConditions:
    """Conditions of a window."""

    def __init__(self, window: Window, timeout: Optional[float]) -> None:
        self._window = window
        self._timeout = timeout

    def __repr__(self) -> str:
        return f"eventually({self._window})"

    def is_open(self) -> None:
        """Waits until there is such a window."""
        self._wait("it to be open", self._window.is_open, lambda opened: opened)

    def is_closed(self) -> None:
        """Waits until there is no such window."""
        self._wait("it to be closed", lambda: not self._window.is_open(), lambda closed: closed)

    def has_title(self, expected: "str | Pattern[str]") -> None:
        """Waits until its whole title is this, or the pattern is found in it."""
        self._wait(
            f"title {_wanted(expected)}",
            lambda: self._window.title(timeout=0),
            lambda title: _fits(title, expected),
        )

    def _wait(self, wanted: str, read: Callable[[], _Result], satisfied: Callable[[_Result], object]) -> None:
        _wait_in(self._window, None, wanted, read, satisfied, self._timeout)


class ResultConditions(Generic[_Result]):
    """Conditions of what a function returns."""

    def __init__(self, function: Callable[[], _Result], timeout: Optional[float]) -> None:
        self._function = function
        self._seconds = 5.0 if timeout is None else timeout

    def __repr__(self) -> str:
        return f"eventually({_function_name(self._function)})"

    def is_true(self) -> None:
        """Waits until the function returns something true."""
        self.satisfies(bool)

    def equals(self, expected: object) -> None:
        """Waits until the function returns this."""
        _wait_for(f"expected {expected!r}", self._function, lambda value: value == expected, self._seconds)

    def satisfies(self, condition: Callable[[_Result], object]) -> None:
        """Waits until `condition`, called with what the function returns, is true."""
        name = _function_name(condition)
        _wait_for(f"expected {name} of it to be true", self._function, condition, self._seconds)


def _wait_in(
    window: Window,
    widget: Optional[Widget],
    wanted: str,
    read: Callable[[], _Result],
    satisfied: Callable[[_Result], object],
    timeout: Optional[float],
) -> None:
    app = window.app
    seconds = app.timeout if timeout is None else timeout
    subject = window if widget is None else widget
    path = "" if widget is None else widget.path
    with run_step(app, f"eventually({subject}): {wanted}", True), app.watched():
        _wait_for(
            f"{subject}: expected {wanted}",
            read,
            satisfied,
            seconds,
            lambda error: app.explained(error, window.address, path, seconds),
        )


def _wait_for(
    wanted: str,
    read: Callable[[], _Result],
    satisfied: Callable[[_Result], object],
    seconds: float,
    explained: Callable[[ReplyError], ReplyError] = lambda error: error,
) -> None:
    refusal: Optional[ReplyError] = None
    found = ""
    for _ in attempts(Deadline(seconds)):
        try:
            value = read()
        except RETRYABLE_ERRORS as error:
            refusal = error
            continue
        if satisfied(value):
            return
        refusal, found = None, f"it was {value!r}"
    if refusal is not None:
        found = f"it could not be read: {explained(refusal)}"
    raise ConditionError(f"{wanted}, but after {seconds:g} s {found}")


def _wanted(expected: Expected) -> str:
    if isinstance(expected, re.Pattern):
        return f"to match {expected.pattern!r}"
    if isinstance(expected, Containing):
        return f"to have {expected.part!r} in it"
    if callable(expected):
        return f"to satisfy {_function_name(expected)}"
    return f"to be {expected!r}"


def _function_name(function: Callable[..., object]) -> str:
    """The function's name; "<lambda>" for one that has none."""
    return str(getattr(function, "__name__", repr(function)))


def _fits(value: Value, expected: Expected) -> bool:
    if isinstance(expected, re.Pattern):
        return isinstance(value, str) and expected.search(value) is not None
    if isinstance(expected, Containing):
        return isinstance(value, str) and expected.part in value
    if callable(expected):
        return bool(expected(value))
    if isinstance(expected, list):
        expected = tuple(expected)  # as read() has the values
    # True is 1 to Python, but a checked box is no number.
    return value == expected and isinstance(value, bool) == isinstance(expected, bool)
