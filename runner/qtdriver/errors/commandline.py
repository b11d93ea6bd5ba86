"""Errors of the command line, which become its messages and exit statuses."""

from __future__ import annotations

from .base import QtDriverError


class UsageError(QtDriverError, ValueError):
    """The command line is wrong."""


class NoApplicationError(QtDriverError):
    """There is no application that the command could talk to."""


class ControlSocketError(QtDriverError):
    """There can be no control socket where it belongs."""


class AlreadyHeldError(QtDriverError):
    """Another process holds an application under the name."""


class PickError(QtDriverError):
    """The X server cannot be asked for a click."""


class TraceError(QtDriverError):
    """A folder holds no failure, or one that cannot be read."""
