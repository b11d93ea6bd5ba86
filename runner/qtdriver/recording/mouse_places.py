"""Where and with which keys the mouse was pressed, as a test says it."""

from __future__ import annotations

from typing import Dict, Optional, Tuple

from .events import Event
from .steps import Argument
from .typing_runs import FIELDS

_STILL = ("scroll bar", "size grip", "label", "group", "window", "dialog", "scroll area", "tabs")
PASSIVE = (*_STILL, "splitter handle")
"""A click on these does nothing that a test has to repeat."""
NEVER_DRAGGED = (*_STILL, "menu bar", *FIELDS)
"""A drag that begins on these does nothing that a test has to repeat: a field is filled whatever was selected in it."""
VIEWS = ("list", "tree", "table", "view")
"""Their rows can be dragged and dropped."""
_MODIFIERS = {"Shift": "shift", "Ctrl": "control", "Alt": "alt"}
_MAX_CLICK_DISTANCE = 10
_WHEEL_STEP = 120
_OPENING_MILLISECONDS = 400
"""Qt's interval of double clicks, for which the list takes no release after it was opened."""


def is_click(press: Event, release: Event) -> bool:
    """Whether the mouse has hardly moved between the two."""
    return max(abs(a - b) for a, b in zip(press.at, release.at)) <= _MAX_CLICK_DISTANCE


def chooses_in_list(press: Event, release: Event) -> bool:
    """Whether a release in the open list of a combo box chooses there, and does not belong to the click that has opened it."""
    return press.is_in_list or release.time - press.time > _OPENING_MILLISECONDS


def modifier_of(event: Event) -> Dict[str, Argument]:
    """The keyword for the modifier that was held; nothing without one. The mouse of a test takes one, the first of several."""
    words = [_MODIFIERS[word] for word in event.modifiers if word in _MODIFIERS]
    return {"modifier": words[0]} if words else {}


def unplayed_modifiers(event: Event) -> str:
    """A comment about modifiers that were held and that modifier_of() leaves out; empty without such."""
    is_of_mouse = event.kind in ("press", "double click", "wheel")
    if not is_of_mouse or len(event.modifiers) <= len(modifier_of(event)):
        return ""
    return f"{'+'.join(event.modifiers)} was held: the mouse of a test takes one of Shift, Ctrl and Alt"


def share_of(event: Event) -> Tuple[float, float]:
    """The place of an event as shares of the widget's width and height."""
    (x, y), (width, height) = event.at, event.size
    return round(x / max(width, 1), 2), round(y / max(height, 1), 2)


def turn_of(event: Event) -> Optional[Tuple[str, int]]:
    """The direction and the steps in which a wheel was turned; None for less than a step."""
    horizontal, vertical = event.angle[0] // _WHEEL_STEP, event.angle[1] // _WHEEL_STEP
    if vertical:
        return "up" if vertical > 0 else "down", abs(vertical)
    return ("left" if horizontal > 0 else "right", abs(horizontal)) if horizontal else None
