"""The base of all errors."""

from __future__ import annotations


class QtDriverError(Exception):
    """Base of every error that this package raises on purpose. Its text is for the person at the test."""
