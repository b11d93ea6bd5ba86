"""Mouse commands as the protocol writes them, and repeating them when the mouse has missed."""

from __future__ import annotations

from contextlib import suppress
from typing import Callable, Dict, Iterable, Literal, Optional, Tuple, TypeVar

from ..errors import NotReadyError, ObscuredError
from ..protocol.connection import Connection
from ..protocol.locators import Address, as_locator

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_Result = TypeVar("_Result")

MouseButton = Literal["left", "right", "middle", ""]
Modifier = Literal["", "shift", "control", "alt"]
Position = Tuple[float, float]
"""Shares of a widget's width and height, from the top left: (0.5, 0.5) is the centre; 1.0 is one pixel beyond."""

_BUTTONS: Dict[str, str] = {"left": "LeftButton", "right": "RightButton", "middle": "MidButton", "": ""}
_MODIFIERS: Dict[str, str] = {
    "": "",
    "shift": "ShiftModifier",
    "control": "ControlModifier",
    "alt": "AltModifier",
}
RETRYABLE_KINDS = ("MousePress", "MouseClick", "MouseDoubleClick")
"""The kinds that can be repeated after the mouse has missed the widget: they begin by moving it there."""

_ASIDE = "{}:{}:0.27:0.23:"  # a place that no test is likely to use
_KINDS = ("MousePress", "MouseRelease", "MouseClick", "MouseDoubleClick", "MouseMove")


def mouse_command(kind: str, button: str, at: Optional[Position], modifier: str) -> str:
    """A mouse command as the protocol writes it.

    Args:
        kind: "MousePress", "MouseRelease", "MouseClick", "MouseDoubleClick" or "MouseMove".
        button: the mouse button; empty for a move.
        at: the position; None where the widget's class chooses it.
        modifier: the key that is held meanwhile.

    Returns "type:button:x:y:modifier". Raises ValueError for an unknown word, and for a share beyond 0.0 to 1.0.
    """
    _check_words((kind, _KINDS), (button, _BUTTONS), (modifier, _MODIFIERS))
    return f"{kind}:{_BUTTONS[button]}:{_shares(at)}:{_MODIFIERS[modifier]}"


def wheel_command(horizontal: int, vertical: int, at: Optional[Position], modifier: str) -> str:
    """The command "x:y:modifier:horizontal:vertical", in steps to the left and upwards. Raises as mouse_command()."""
    _check_words((modifier, _MODIFIERS))
    return f"{_shares(at)}:{_MODIFIERS[modifier]}:{horizontal}:{vertical}"


def _check_words(*choices: Tuple[str, Iterable[str]]) -> None:
    for word, words in choices:
        if word not in words:
            raise ValueError(f"{word!r} is not known here, but {', '.join(filter(None, words))}")


def _shares(at: Optional[Position]) -> str:
    if at is None:
        return ":"
    if not all(0.0 <= share <= 1.0 for share in at):
        raise ValueError(f"a position has shares from 0.0 to 1.0 of width and height, not {at}")
    return ":".join(format(float(share), ".6g") for share in at)


def repeatable(
    connection: Connection, window: str, act: Callable[[Address], _Result], button: MouseButton = "left"
) -> Callable[[Address], _Result]:
    """Wraps a call that presses a mouse button so that it can be repeated after an ObscuredError.

    After a miss the mouse stands where it was to go. If the call was repeated from there, the agent would have no move to
    make and press at once, and a press that misses, too, leaves the button held: the next move would be a drag. So the
    mouse is moved aside first. A call that missed has reached no widget, unless its press made the window disappear: when
    that is back, it is pressed again.

    Args:
        connection: the connection to the agent.
        window: the window of the widget.
        act: the call; it takes the address of the widget.
        button: the button that it presses.

    Returns the call to repeat.
    """
    missed = False

    def act_again(path: Address) -> _Result:
        nonlocal missed
        place = (window, as_locator(path))
        if missed:
            aside = _ASIDE.format("MouseMove", "")
            connection.mouse_widget(window, path, aside, widget_class="QWidget", force=True)
        may_have_been_there = place in connection.visited
        connection.visited.add(place)
        try:
            return act(path)
        except NotReadyError:  # the mouse has not moved
            if not may_have_been_there:
                connection.visited.remove(place)
            raise
        except ObscuredError:
            if may_have_been_there and not missed and button:
                _release(connection, window, path, button)
            missed = True
            raise

    return act_again


def _release(connection: Connection, window: str, path: Address, button: MouseButton) -> None:
    """Releases the button of a press that may have missed.

    The first request moves the mouse there and may fail for that; the second one releases the button where it is.
    """
    command = _ASIDE.format("MouseRelease", _BUTTONS[button])
    for _ in range(2):
        with suppress(ObscuredError):
            connection.mouse_widget(window, path, command, widget_class="QWidget", force=True)
            return
