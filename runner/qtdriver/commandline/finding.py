"""The findings of the command `doctor`."""

from __future__ import annotations

from dataclasses import dataclass


@dataclass(frozen=True)
class Finding:
    """The finding of one check.

    Attributes:
        check: what was looked at.
        result: "ok"; "note" for what is missing but may not be needed; "problem".
        text: what is there, or is not.
        remedy: what to do; empty only where the result is "ok".
    """

    check: str
    result: str
    text: str
    remedy: str = ""
