"""Errors that no test sees: who raises them and who catches them are both in this package."""

from __future__ import annotations

from .base import QtDriverError


class GivenUpError(QtDriverError):
    """Nobody waits for the result any more."""


class TooSlow(QtDriverError):
    """The application does not answer quickly enough to be asked after each step."""
