"""Where and with which keys the mouse was pressed, as a test says it."""

from __future__ import annotations

from typing import Dict, Tuple

from .events import Event
from .steps import Argument

_MODIFIERS = {"Shift": "shift", "Ctrl": "control", "Alt": "alt"}
_MAX_CLICK_DISTANCE = 10


def is_click(press: Event, release: Event) -> bool:
    """Whether the mouse has hardly moved between the two."""
    return max(abs(a - b) for a, b in zip(press.at, release.at)) <= _MAX_CLICK_DISTANCE


def modifier_of(event: Event) -> Dict[str, Argument]:
    """The keyword for the modifier that was held; nothing without one. The mouse of a test takes one, the first of several."""
    words = [_MODIFIERS[word] for word in event.modifiers if word in _MODIFIERS]
    return {"modifier": words[0]} if words else {}


def share_of(event: Event) -> Tuple[float, float]:
    """The place of an event as shares of the widget's width and height."""
    (x, y), (width, height) = event.at, event.size
    return round(x / max(width, 1), 2), round(y / max(height, 1), 2)
