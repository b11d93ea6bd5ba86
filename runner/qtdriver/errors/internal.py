"""Errors that no test sees: the runner raises and catches them."""

from __future__ import annotations

from .base import QtDriverError


class GivenUpError(QtDriverError):
    """Waiting was given up, since nobody needs the result any more."""


class NoReplyYet(QtDriverError):
    """The time of the condition is over, and the application has still to answer. It does not count as hanging."""


class TooSlow(QtDriverError):
    """The application does not answer quickly enough to be asked after each step."""
