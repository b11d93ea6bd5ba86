"""The steps that were made with applications."""

from __future__ import annotations

from dataclasses import dataclass, field
from typing import Dict, Optional, Tuple, Union


@dataclass(frozen=True)
class Launch:
    """The start of an application.

    Attributes:
        app: its name.
        command: the program and its arguments.
        qt: its Qt version, where that has to be told.
    """

    app: str
    command: Tuple[str, ...]
    qt: Optional[int] = None


@dataclass(frozen=True)
class Secret:
    """A text that is not to be written down. `number` tells it from others, from 1."""

    number: int


@dataclass(frozen=True)
class Part:
    """A text that has only to be a part of what is read."""

    text: str


@dataclass(frozen=True)
class Target:
    """A widget or an item of it as an argument: the call that makes its window, and the call on that."""

    window: str
    call: str


Argument = Union[str, int, float, bool, None, Secret, Part, Target, Tuple[str, ...], Tuple[float, float]]


@dataclass(frozen=True)
class Step:
    """An action, or a check.

    Attributes:
        app: the name of the application.
        window: the call on the application that makes the window, such as 'window("Orders")'.
        widget: the call on the window that makes the widget, or more calls joined by dots; empty for the window itself.
        method: the method of that, or for a check the condition.
        arguments, keywords: those of the method.
        is_check: whether it is a condition that is waited for.
        reads: for a check of what the widget's method returns: the call of that method; empty otherwise.
        comment: a line about it, which is written before it; alone where there is no method.
    """

    app: str
    window: str
    widget: str
    method: str
    arguments: Tuple[Argument, ...] = ()
    keywords: Dict[str, Argument] = field(default_factory=dict)
    is_check: bool = False
    reads: str = ""
    comment: str = ""


Recorded = Union[Launch, Step]
