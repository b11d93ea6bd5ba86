"""The base of all errors."""

from __future__ import annotations


class QtDriverError(Exception):
    """Base of every error that this package raises for its users. The text is for the author of the test."""
