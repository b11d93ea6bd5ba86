"""Whether what is shown has come to rest."""

from __future__ import annotations

import time
from typing import Optional

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_SECONDS = 0.3


class Steady:
    """Finds out whether something stays as it is."""

    def __init__(self) -> None:
        self._last: Optional[object] = None
        self._since = 0.0

    def __repr__(self) -> str:
        return f"<steady since {self._since:g}>"

    def has_stayed(self, value: object) -> bool:
        """Whether it has had this value at each call for a while."""
        now = time.monotonic()
        if value != self._last:
            self._last, self._since = value, now
        return now - self._since >= _SECONDS
