"""The findings of the command `doctor`."""

from __future__ import annotations

from dataclasses import dataclass


@dataclass(frozen=True)
class Finding:
    """The finding of one check.

    Attributes:
        check: the name of the check, such as "display".
        result: "ok"; "note" for something missing that may not be needed; "problem".
        text: the finding itself.
        remedy: advice for the user; empty only where the result is "ok".
    """

    check: str
    result: str
    text: str
    remedy: str = ""
