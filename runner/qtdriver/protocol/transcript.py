"""The exchanges with an agent, and the steps of a test that they belong to."""

from __future__ import annotations

import time
from collections import deque
from contextlib import contextmanager
from dataclasses import dataclass, field
from typing import Deque, Iterator, List, NamedTuple, Optional, Tuple

from ..callers.callers import RunningCall
from .locators import Locator

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

KEPT_EXCHANGES = 5000
"""How many exchanges a transcript keeps; the oldest ones go first."""

KEPT_REPLY = 2000
"""Characters of a reply that a transcript keeps: listings and pictures can have millions."""


class Exchange(NamedTuple):
    """One request and its outcome.

    Attributes:
        request: the request line.
        reply: the reply line, cut to KEPT_REPLY characters; None when there was none.
        started: when it was sent, in seconds of time.monotonic().
        seconds: how long it took.
        error: why there was no reply, empty otherwise.
    """

    request: str
    reply: Optional[str]
    started: float
    seconds: float
    error: str = ""


@dataclass(eq=False)
class Group:
    """Steps that a test has put together under a name.

    Attributes:
        title: the name.
        parent: the group that it is in, None for none.
        started: when it began, in seconds of time.monotonic().
        seconds: how long it took; None while it goes on.
        error: the message with which it failed, empty otherwise.
    """

    title: str
    parent: "Optional[Group]" = None
    started: float = field(default_factory=time.monotonic)
    seconds: Optional[float] = None
    error: str = ""


@dataclass(frozen=True)
class Comparison:
    """Two pictures that a step has compared, as PNG files.

    Attributes:
        expected: the one that was expected; empty where there was none.
        actual: the one that was shown.
        difference: a picture of the difference; empty where nothing was expected.
    """

    expected: bytes
    actual: bytes
    difference: bytes


@dataclass
class Step:
    """One call of a test, such as a click: its exchanges and how it went.

    Attributes:
        title: the call as the test wrote it: widget("ok").click().
        reads: whether it only reads; the others act on the application.
        started: when it began, in seconds of time.monotonic().
        seconds: how long it took, waiting included; None while it goes on.
        exchanges: the first ones and the last ones, if there were many while it waited.
        skipped: how many exchanges between these were left out.
        error: the message with which it failed, empty otherwise.
        action: what it does, in the runner's words, where that is not the title.
        file: the file of the test that made the call, empty where that cannot be told.
        line: the line in it.
        group: the group that it is in, None for none.
        window: the window of the widget that it is about, as extensions name it; empty for none.
        target: the locator of that widget.
        comparison: the pictures that differ, where it failed for that.
        call: the call of the test, where the title is the runner's own for now, to be quick.
    """

    title: str
    reads: bool
    started: float = field(default_factory=time.monotonic)
    seconds: Optional[float] = None
    exchanges: List[Exchange] = field(default_factory=list)
    skipped: int = 0
    error: str = ""
    action: str = ""
    file: str = ""
    line: int = 0
    group: Optional[Group] = None
    window: str = ""
    target: Optional[Locator] = None
    comparison: Optional[Comparison] = None
    call: Optional[RunningCall] = None

    def add(self, exchange: Exchange) -> None:
        """Adds an exchange; of more than ten, it keeps the first five and the last five."""
        self.exchanges.append(exchange)
        if len(self.exchanges) > 10:
            del self.exchanges[5]
            self.skipped += 1


class Transcript:
    """Collects the exchanges with one agent, and the step that they belong to.

    Attributes:
        refusals: the processes that had connected before this agent and were refused.
        last_step: the step that the latest exchange belongs to; None where it belongs to none.
    """

    def __init__(self) -> None:
        self.refusals: Tuple[str, ...] = ()
        self.last_step: Optional[Step] = None
        self._exchanges: Deque[Exchange] = deque(maxlen=KEPT_EXCHANGES)
        self._step: Optional[Step] = None
        self._paused = False

    def __repr__(self) -> str:
        return f"<transcript of {len(self._exchanges)} exchanges>"

    def add(self, exchange: Exchange) -> None:
        """Adds an exchange that the connection has just made."""
        if self._paused:
            return
        self._exchanges.append(exchange)
        self.last_step = self._step
        if self._step is not None:
            self._step.add(exchange)

    def exchanges(self) -> Tuple[Exchange, ...]:
        """The exchanges so far, oldest first, KEPT_EXCHANGES at most."""
        return tuple(self._exchanges)

    @property
    def is_in_step(self) -> bool:
        """Whether a step has begun, which gets the exchanges."""
        return self._step is not None

    def begin(self, step: Step) -> None:
        """Begins a step, which gets the exchanges from now on."""
        self._step = step

    def end(self) -> None:
        """Ends the step that began."""
        self._step = None

    @property
    def is_paused(self) -> bool:
        """Whether exchanges are not added now."""
        return self._paused

    @contextmanager
    def paused(self) -> Iterator[None]:
        """A context in which exchanges are not added: for requests of a listener, which are no part of the test."""
        before, self._paused = self._paused, True
        try:
            yield
        finally:
            self._paused = before
