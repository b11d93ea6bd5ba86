"""The call of a tool, as the tool sees it."""

from __future__ import annotations

from typing import Protocol


class Call(Protocol):
    """The client that waits for the answer of a tool."""

    def tell(self, words: str) -> None:
        """Tells the client how far the tool is, in a few words."""
