"""The call of a tool, as the tool sees it."""

from __future__ import annotations

from typing import Protocol


class Call(Protocol):
    """Somebody waits for the answer."""

    def tell(self, words: str) -> None:
        """Tells how far the tool is."""
