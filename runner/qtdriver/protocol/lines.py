"""Reading lines from a socket against a deadline."""

from __future__ import annotations

import socket
import time
from typing import Optional

from ..errors import ProtocolError

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_CHUNK_BYTES = 65536


class LineSocket:
    """A connected socket that is written and read in lines of Latin-1 text. It belongs to one thread.

    Received bytes are searched for a line end once, however many pieces a long line arrives in.
    """

    def __init__(self, connected: socket.socket) -> None:
        connected.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        self._socket = connected
        self._buffer = bytearray()
        self._searched = 0

    def send(self, data: bytes, deadline: float) -> None:
        """Sends all of `data`. Raises socket.timeout at the deadline, OSError when the other side is gone."""
        self._socket.settimeout(_remaining(deadline))
        self._socket.sendall(data)

    def read_line(self, deadline: float, longest: Optional[int] = None) -> Optional[str]:
        """The next line without its line end; None when the other side closed before the line was complete.

        Args:
            deadline: when to give up, a time of time.monotonic().
            longest: bytes that may arrive without a line end; None for any number.

        Raises socket.timeout at the deadline (bytes that have arrived are kept), OSError when the connection breaks, and
        ProtocolError for a longer line.
        """
        while True:
            end = self._buffer.find(b"\n", self._searched)
            if end >= 0:
                line = self._buffer[:end].decode("latin-1")
                del self._buffer[: end + 1]
                self._searched = 0
                return line
            self._searched = len(self._buffer)
            if longest is not None and self._searched > longest:
                raise ProtocolError(f"no line: {self._buffer[:200].decode('latin-1')!r}")
            self._socket.settimeout(_remaining(deadline))
            chunk = self._socket.recv(_CHUNK_BYTES)
            if not chunk:
                return None
            self._buffer += chunk

    @property
    def has_more(self) -> bool:
        """Whether bytes have arrived after the last line that was read."""
        return bool(self._buffer)

    def discard_arrived(self) -> bool:
        """Discards the bytes that have arrived, without waiting. Returns False when the other side has closed."""
        self._buffer.clear()
        self._searched = 0
        self._socket.settimeout(0)
        try:
            while self._socket.recv(_CHUNK_BYTES):
                pass
            return False
        except BlockingIOError:
            return True

    def fileno(self) -> int:
        """The descriptor of the socket."""
        return self._socket.fileno()

    def is_open(self) -> bool:
        """Whether the other side has not closed. Does not wait, and leaves arrived bytes to be read."""
        try:
            self._socket.settimeout(0)
            return bool(self._socket.recv(1, socket.MSG_PEEK))
        except BlockingIOError:
            return True
        except OSError:
            return False

    def close(self) -> None:
        """Closes the socket; closing twice is harmless."""
        self._socket.close()


def _remaining(deadline: float) -> float:
    remaining = deadline - time.monotonic()
    if remaining <= 0:
        raise socket.timeout("the deadline has passed")
    return remaining
