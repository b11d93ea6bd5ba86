"""Keys that choose in a combo box, in its open list or without it."""

from __future__ import annotations

from typing import Iterable, List, Optional

from .events import Event
from .typing_runs import OPENING, in_tree

_CHOOSING = ("Return", "Enter", "Num+Enter", "Select")


def makes_choice(run: List[Event]) -> bool:
    """Whether keys for a combo box that takes no text can have changed what is chosen: its list may have been given up."""
    return last_choice(run) is not None or any(
        not event.is_in_list and event.key not in (*OPENING, "Space") for event in run
    )


def last_choice(run: List[Event]) -> Optional[int]:
    """The number of the last key that has chosen in the open list; None without one."""
    chosen = [number for number, event in enumerate(run) if event.is_in_list and event.key in _CHOOSING]
    return chosen[-1] if chosen else None


def typed_in(run: List[Event]) -> List[Event]:
    """The keys for the field of a combo box, without those for its list."""
    return [event for event in run if not event.is_in_list and event.key not in OPENING]


def choice_told(following: Iterable[Event], ref: int) -> Optional[str]:
    """The choice in a combo box, as the first event tells it that does; None where none does."""
    for event in following:
        node = in_tree(event, ref)
        told = event.previous[1] if event.previous is not None and event.previous[0] == ref else None
        value = node.value if told is None and node is not None else told
        if value is not None:
            return str(value)
    return None
