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

    def observe(self, value: object) -> bool:
        """Notes the value. Returns whether it has been the same at each call for 0.3 seconds."""
        now = time.monotonic()
        if value != self._last:
            self._last, self._since = value, now
        return now - self._since >= _SECONDS
