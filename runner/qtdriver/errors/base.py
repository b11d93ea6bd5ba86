"""The base of all errors."""

from __future__ import annotations

from typing import Dict, Tuple, Type


class QtDriverError(Exception):
    """Base of every error that this package raises for its users. Its text, all three parts, is for the author of the test.

    Attributes:
        message: what happened.
        context: what was there meanwhile, such as the application's last output; empty for none.
        hint: what to do about it; empty where the message says all.
    """

    def __init__(self, message: str = "", *, context: str = "", hint: str = "") -> None:
        super().__init__("\n".join(part for part in (message, context, hint) if part))
        self.message = message
        self.context = context
        self.hint = hint

    def __reduce__(self) -> "tuple[object, ...]":
        """All fields travel when the error is copied to another process, as parallel test runs do."""
        return _copied, (type(self), self.args, self.__dict__)


def _copied(kind: Type[QtDriverError], args: Tuple[object, ...], fields: Dict[str, object]) -> QtDriverError:
    # Not by the constructor: what that takes differs from error to error.
    error = kind.__new__(kind, *args)
    error.__dict__.update(fields)
    return error
