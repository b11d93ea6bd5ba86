"""The test server, to which agents connect."""

from __future__ import annotations

import errno
import socket
import sys
import time
from typing import Callable

from ..errors import ClientRefusedError, ConnectionClosed, NoClientError, PortInUseError, QtDriverError
from .channel import DEFAULT_TIMEOUT
from .closing import ClosedOnLeaving
from .connection import Connection
from .peers import Peer

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

HOST = "127.0.0.1"
PORT = 4242
_BACKLOG = 16


class Server(ClosedOnLeaving):
    """Listens at the port to which agents connect. A context manager: leaving it stops listening, not the connections.

    An agent looks for its server once, when its application starts, so the server has to listen before that.
    """

    def __init__(self, host: str = HOST, port: int = PORT) -> None:
        """Starts to listen.

        Args:
            host, port: agents always connect to the defaults; other values are for a program that forwards connections.

        Raises PortInUseError when another process already listens, and QtDriverError when it cannot for another reason.
        """
        self._socket = socket.socket(socket.AF_INET, socket.SOCK_STREAM)
        try:
            if sys.platform == "win32":  # where another process could take a port that may be reused
                self._socket.setsockopt(socket.SOL_SOCKET, socket.SO_EXCLUSIVEADDRUSE, 1)
            else:
                self._socket.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
            self._socket.bind((host, port))
            self._socket.listen(_BACKLOG)
        except OSError as error:
            self._socket.close()
            if error.errno == errno.EADDRINUSE:
                raise PortInUseError(host, port) from None
            raise QtDriverError(f"cannot listen on {host}:{port}: {error.strerror}") from error
        self.port: int = self._socket.getsockname()[1]

    def __repr__(self) -> str:
        return f'<server at port {self.port}, {"listening" if self.fileno() >= 0 else "closed"}>'

    def close(self) -> None:
        """Stops listening. Closing twice is harmless."""
        self._socket.close()

    def drop_waiting(self) -> None:
        """Closes the connections of the clients that wait to be accepted."""
        self._socket.settimeout(0)
        try:
            while True:
                self._socket.accept()[0].close()
        except OSError:
            pass  # nobody waits any more

    def fileno(self) -> int:
        """The descriptor of the listening socket; it is readable when a client waits to be accepted."""
        return self._socket.fileno()

    def accept(
        self,
        timeout: float = DEFAULT_TIMEOUT,
        request_timeout: float = DEFAULT_TIMEOUT,
        *,
        admits: Callable[[int], bool] = lambda pid: False,
    ) -> Connection:
        """Waits for an agent and its greeting.

        Args:
            timeout: seconds for both together.
            request_timeout: seconds that each later request may take.
            admits: whether to accept the process of another user; all others are refused before anything is read.

        Raises NoClientError when nobody connects, ClientRefusedError for another user's process, and RequestTimeout,
        ConnectionClosed or ProtocolError when a client sends no greeting.
        """
        deadline = time.monotonic() + timeout
        self._socket.settimeout(max(timeout, 0))
        try:
            connected, _ = self._socket.accept()
        except (socket.timeout, BlockingIOError):
            raise NoClientError(f"no agent connected within {timeout:g} seconds") from None
        try:
            peer = Peer(connected)
            if not peer.is_of_this_user():
                pid = peer.process()
                if pid is None or not admits(pid):
                    raise ClientRefusedError(f"{peer.description()}: another user's")
        except OSError as error:
            connected.close()
            raise ConnectionClosed(f"a client closed the connection before its greeting: {error}") from error
        except BaseException:
            connected.close()
            raise
        return Connection.greet(connected, deadline, request_timeout, peer)
