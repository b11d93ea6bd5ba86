"""Closing an object at the end of its `with` block."""

from __future__ import annotations

from typing import TypeVar

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_Self = TypeVar("_Self", bound="ClosedOnLeaving")


class ClosedOnLeaving:
    """Base of context managers that call close() at the end of the block."""

    def close(self) -> None:
        """Closes the object. Closing twice is harmless."""
        raise NotImplementedError

    def __enter__(self: _Self) -> _Self:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()
