"""Receiving the agents that connect, and telling them apart by their process."""

from __future__ import annotations

import select
from typing import Callable, List, Optional

from .connection import Connection
from .errors import ConnectionClosed, ProtocolError, RequestTimeout
from .server import Server
from .waiting import Deadline

_GREETING_SECONDS = 5.0
_LONGEST_WAIT = 0.1


class Reception:
    """Keeps the agents that have connected until somebody asks for them."""

    def __init__(self, server: Server) -> None:
        """Agents come to `server`, which stays the caller's."""
        self._server = server
        self._waiting: List[Connection] = []

    def wait_for(
        self,
        wanted: Callable[[int], bool],
        deadline: Deadline,
        request_timeout: float,
        given_up: Callable[[], bool] = lambda: False,
    ) -> Optional[Connection]:
        """The connection of the first agent whose process id is `wanted`; None at the deadline, or when `given_up`.

        Its requests may take `request_timeout` seconds each. Who connects without a greeting is refused.
        """
        while True:
            over = deadline.passed() or given_up()
            self._receive(0.0 if over else min(deadline.remaining(), _LONGEST_WAIT))
            for connection in self._waiting:
                if wanted(connection.greeting.pid):
                    self._waiting.remove(connection)
                    connection.timeout = request_timeout
                    return connection
            if over:
                return None

    def _receive(self, seconds: float) -> None:
        """Waits `seconds` at most for somebody to connect, and takes in everybody who has."""
        while select.select([self._server], [], [], seconds)[0]:
            try:
                self._waiting.append(self._server.accept(_GREETING_SECONDS))
            except (ConnectionClosed, ProtocolError, RequestTimeout):
                pass  # no agent
            seconds = 0.0

    def close(self) -> None:
        """Closes the connections that nobody has asked for; their applications go on."""
        for connection in self._waiting:
            connection.close()
        self._waiting.clear()
