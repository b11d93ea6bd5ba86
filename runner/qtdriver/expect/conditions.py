"""eventually(): conditions that a test waits for, since an application reacts in its own time."""

from __future__ import annotations

import inspect
import warnings
from typing import Callable, Generic, NamedTuple, Optional, Pattern, Sequence, Tuple, TypeVar, overload

from ..api.widget import Widget
from ..api.window import Window
from ..errors import AmbiguousError, NotVisibleError, WidgetNotFoundError, WindowNotFoundError
from ..protocol.wire import Value
from .comparison import Limits
from .expected import Expected, check_expected, check_timeout, describe, fits, function_name
from .fulfilment import wait_for, wait_in
from .picturesnapshots import DEFAULT_LIMITS, Masks, wait_for_picture
from .textsnapshots import Patterns, wait_for_outline

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

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

    Raises TypeError and ValueError at once for arguments that nothing can fulfil.
    """
    check_timeout(timeout)
    if isinstance(subject, Widget):
        return WidgetConditions(subject, timeout)
    if isinstance(subject, Window):
        return WindowConditions(subject, timeout)
    if not callable(subject) or inspect.iscoroutinefunction(subject):
        raise TypeError(
            f"eventually: {subject!r} ({type(subject).__name__}) is no widget, no window and no function that can be called "
            "without arguments: give the function itself, not its result"
        )
    return ResultConditions(subject, timeout)


class _Property(NamedTuple):
    """A property, and the value that it is to have."""

    name: str
    expected: Expected
    argument: Optional[str] = None

    def __str__(self) -> str:
        return self.name if self.argument is None else f"{self.name}({self.argument!r})"


class WidgetConditions:
    """Conditions of a widget."""

    def __init__(self, widget: Widget, timeout: Optional[float]) -> None:
        self._widget = widget
        self._timeout = timeout

    def __repr__(self) -> str:
        return f"eventually({self._widget})"

    def has(self, **properties: Expected) -> None:
        """Waits until all of these properties have their values, or fit their patterns or functions, at one moment.

        Example: eventually(window.widget("status")).has(text="Saved", enabled=True)
        """
        self._wait_for_properties(_properties("has", properties), wanted=True)

    def has_not(self, **properties: Expected) -> None:
        """Waits until none of these properties has its value, or fits its pattern or function, at one moment."""
        self._wait_for_properties(_properties("has_not", properties), wanted=False)

    def has_property(self, name: str, expected: Expected, argument: Optional[str] = None) -> None:
        """Waits until a property fits.

        Args:
            name: the property.
            expected: its value, a pattern to be found in it, or a function that returns whether it fits.
            argument: for the properties that take one.
        """
        check_expected("has_property: expected", expected)
        self._wait_for_properties([_Property(name, expected, argument)], wanted=True)

    def has_not_property(self, name: str, expected: Expected, argument: Optional[str] = None) -> None:
        """Waits until a property does not fit. The arguments are those of has_property()."""
        check_expected("has_not_property: expected", expected)
        self._wait_for_properties([_Property(name, expected, argument)], wanted=False)

    def reads(self, name: str, expected: Expected, argument: Optional[str] = None) -> None:
        """The name of has_property() until version 2; version 3 removes it."""
        warnings.warn("reads() is has_property() now", DeprecationWarning, stacklevel=2)
        self.has_property(name, expected, argument)

    def is_visible(self) -> None:
        """Waits until the user can see it."""
        self._wait("it to be visible", lambda: self._widget.class_name(timeout=0), lambda _: True)

    def is_hidden(self) -> None:
        """Waits until the user cannot see it: it is hidden, or there is no such widget."""
        self._wait("it to be hidden", self._is_hidden, bool)

    is_not_visible, is_not_hidden = is_hidden, is_visible

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

    is_not_enabled, is_not_disabled = is_disabled, is_enabled

    def is_checked(self, on: bool = True) -> None:
        """Waits until it is checked; with False, until it is not."""
        if not isinstance(on, bool):
            raise TypeError(f"is_checked: on: {on!r} ({type(on).__name__}) is neither True nor False")
        self.has_property("checked", on)

    def is_not_checked(self) -> None:
        """Waits until it is not checked."""
        self.has_property("checked", False)

    def looks_like(self, name: str, *, ignoring: Patterns = ()) -> None:
        """Waits until the outline of the widget and all in it is that of a file beside the test.

        The arguments and errors are those of WindowConditions.looks_like().
        """
        wait_for_outline(self._widget.window, self._widget, name, ignoring, self._timeout)

    def matches_picture(
        self,
        name: str,
        *,
        masks: Masks = (),
        tolerance: int = DEFAULT_LIMITS.tolerance,
        share: float = DEFAULT_LIMITS.share,
    ) -> None:
        """Waits until the widget rests and is on the screen as in a picture beside the test. Its window is raised.

        Args:
            name: of the picture, in snapshots/TEST_FILE/NAME.qt5-fusion-linux.png beside the test, or .qt5-fusion.png,
                .qt5.png, .png, whichever is there first; --qtdriver-update writes the first.
            masks: widgets whose pixels do not count.
            tolerance: by how much each channel of a pixel may differ, from 0 to 255.
            share: the share of the pixels that may differ by more, from 0 to 1.

        Raises PictureError where the widget reaches beyond the screen, and without Pillow.

        Example: eventually(window.widget("gauge")).matches_picture("gauge", masks=window.widget("clock"), share=0.001)
        """
        limits = Limits(tolerance, share)
        wait_for_picture(self._widget.window, self._widget, name, masks, limits, self._timeout)

    def _wait_for_properties(self, properties: Sequence[_Property], *, wanted: bool) -> None:
        def unmet(values: Tuple[Value, ...]) -> "list[int]":
            return [
                at
                for at, (value, entry) in enumerate(zip(values, properties))
                if fits(value, entry.expected) is not wanted
            ]

        def read() -> Tuple[Value, ...]:
            values = tuple(self._read(entry) for entry in properties)
            if unmet(values):
                return values
            # A property that had its value before the last one was read, and has it now, had it at that moment.
            return (*(self._read(entry) for entry in properties[:-1]), values[-1])

        def describe_values(values: Tuple[Value, ...]) -> str:
            if len(properties) == 1:
                return f"it was {values[0]!r}"
            return " and ".join(f"{properties[at]} was {values[at]!r}" for at in unmet(values))

        negation = "" if wanted else "not "
        self._wait(
            " and ".join(f"{entry} {negation}{describe(entry.expected)}" for entry in properties),
            read,
            lambda values: not unmet(values),
            describe_values,
        )

    def _read(self, entry: _Property) -> Value:
        return self._widget.read(entry.name, entry.argument, timeout=0)

    def _wait(
        self,
        wanted: str,
        read: Callable[[], _Result],
        satisfied: Callable[[_Result], object],
        shown: Callable[[_Result], str] = "it was {!r}".format,
    ) -> None:
        wait_in(self._widget.window, self._widget, wanted, read, satisfied, self._timeout, shown)


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

    is_not_open, is_not_closed = is_closed, is_open

    def looks_like(self, name: str, *, ignoring: Patterns = ()) -> None:
        """Waits until the outline of the window, its widgets, texts and states, is that of a file beside the test.

        Args:
            name: of the snapshot, in snapshots/TEST_FILE/NAME.txt beside the test; --qtdriver-update writes it.
            ignoring: regular expressions for what differs from run to run; each match becomes "***".

        Example: eventually(window).looks_like("order dialog", ignoring=r"No\\. \\d+")
        """
        wait_for_outline(self._window, None, name, ignoring, self._timeout)

    def matches_picture(
        self,
        name: str,
        *,
        masks: Masks = (),
        tolerance: int = DEFAULT_LIMITS.tolerance,
        share: float = DEFAULT_LIMITS.share,
    ) -> None:
        """Waits until the window, without its frame, rests and is on the screen as in a picture beside the test.

        The arguments and errors are those of WidgetConditions.matches_picture(). The window is not raised: what is in
        front of it is in the picture.
        """
        wait_for_picture(self._window, None, name, masks, Limits(tolerance, share), self._timeout)

    def has_title(self, expected: "str | Pattern[str]") -> None:
        """Waits until its whole title is this, or the pattern is found in it."""
        self._wait_for_title(expected, wanted=True)

    def has_not_title(self, expected: "str | Pattern[str]") -> None:
        """Waits until its whole title is another one, or the pattern is not found in it."""
        self._wait_for_title(expected, wanted=False)

    def _wait_for_title(self, expected: "str | Pattern[str]", *, wanted: bool) -> None:
        check_expected("has_title: expected" if wanted else "has_not_title: expected", expected)
        self._wait(
            f"title {'' if wanted else 'not '}{describe(expected)}",
            lambda: self._window.title(timeout=0),
            lambda title: fits(title, expected) is wanted,
        )

    def _wait(self, wanted: str, read: Callable[[], _Result], satisfied: Callable[[_Result], object]) -> None:
        wait_in(self._window, None, wanted, read, satisfied, self._timeout)


class ResultConditions(Generic[_Result]):
    """Conditions of what a function returns."""

    def __init__(self, function: Callable[[], _Result], timeout: Optional[float]) -> None:
        self._function = function
        self._seconds = 5.0 if timeout is None else timeout

    def __repr__(self) -> str:
        return f"eventually({function_name(self._function)})"

    def is_true(self) -> None:
        """Waits until the function returns something true."""
        self._wait("something true", bool)

    def is_false(self) -> None:
        """Waits until the function returns something false."""
        self._wait("something false", lambda value: not value)

    def equals(self, expected: object) -> None:
        """Waits until the function returns this."""
        self._wait(f"{expected!r}", lambda value: value == expected)

    def does_not_equal(self, expected: object) -> None:
        """Waits until the function returns something else."""
        self._wait(f"another value than {expected!r}", lambda value: value != expected)

    def satisfies(self, condition: Callable[[_Result], object]) -> None:
        """Waits until `condition`, called with what the function returns, is true."""
        self._wait(f"{_condition_name('satisfies', condition)} of it to be true", condition)

    def does_not_satisfy(self, condition: Callable[[_Result], object]) -> None:
        """Waits until `condition`, called with what the function returns, is false."""
        name = _condition_name("does_not_satisfy", condition)
        self._wait(f"{name} of it to be false", lambda value: not condition(value))

    def _wait(self, wanted: str, satisfied: Callable[[_Result], object]) -> None:
        wait_for(f"expected {wanted}", self._function, satisfied, self._seconds)


def _properties(method: str, properties: "dict[str, Expected]") -> Sequence[_Property]:
    if not properties:
        raise TypeError(f'{method}: no property is named: {method}(text="Saved")')
    for name, expected in properties.items():
        check_expected(f"{method}: {name}", expected)
    return [_Property(name, expected) for name, expected in properties.items()]


def _condition_name(method: str, condition: Callable[..., object]) -> str:
    if not callable(condition):
        raise TypeError(
            f"{method}: {condition!r} ({type(condition).__name__}) is no function of one argument"
        )
    return function_name(condition)
