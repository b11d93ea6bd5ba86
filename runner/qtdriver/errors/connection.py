"""Errors of the connection to an agent: none connects, the wrong one connects, an agent disconnects or is silent."""

from __future__ import annotations

from typing import Optional

from .base import QtDriverError


class ProtocolError(QtDriverError):
    """The other side sent a line that the protocol does not have."""


class PortInUseError(QtDriverError):
    """Another process listens on the port on which the agent looks for its test server."""

    def __init__(
        self,
        host: str,
        port: int,
        way_out: str = "run 'scripts/with-desktop.sh COMMAND' or 'qtdriver run --headless'",
    ) -> None:
        """`way_out` is how a run gets a network of its own."""
        super().__init__(
            f"{host}:{port} is taken: another test run or test server listens there, and the agent knows no "
            "other port",
            hint=f"End that process ('ss -ltnp sport = :{port}' names it) or wait for its end. Where the system allows "
            f"network namespaces, you can also {way_out}, which has a network of its own",
        )


class NoClientError(QtDriverError):
    """No agent connected to the server in the time that was given."""


class ClientRefusedError(QtDriverError):
    """A connection was refused, since it is of another user's process, or was closed at once."""


class PeerReaderMissingError(QtDriverError):
    """psutil is not installed, by which the runner finds out which process has connected."""

    def __init__(self) -> None:
        super().__init__(
            "finding out which process has connected needs psutil, which is not installed",
            hint="Install it (Debian: python3-psutil)",
        )


class ConnectionClosed(QtDriverError):
    """The application ended, or its agent closed the connection: no further request can be answered."""


class RequestTimeout(QtDriverError):
    """The agent has not answered a request in the time that was given.

    The connection stays usable: the next request first waits for the late reply and drops it.

    Attributes:
        seconds: the time that was given; None where the message does not name it.
    """

    def __init__(self, message: str, *, context: str = "", seconds: Optional[float] = None) -> None:
        super().__init__(message, context=context)
        self.seconds = seconds


class ApplicationEndedError(ConnectionClosed):
    """The application ended. The message tells how, the call of the test at which it did, and its last output."""


class ApplicationHangsError(RequestTimeout):
    """The application did not answer a request in time, and was ended.

    The message tells the call of the test, and the windows of the last listing.
    """
