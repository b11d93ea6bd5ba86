"""Receiving the agents that connect, and telling them apart by their processes."""

from __future__ import annotations

import select
from collections import deque
from typing import Callable, Deque, List, Optional

from ..errors import ClientRefusedError, ConnectionClosed, ProtocolError, RequestTimeout
from .connection import Connection
from .peers import describe_process
from .server import Server
from .waiting import Deadline

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_GREETING_SECONDS = 5.0
_LONGEST_WAIT = 0.1
_KEPT_REFUSALS = 20


class PendingAgents:
    """Keeps the agents that have connected until somebody asks for them. Other users' processes are refused."""

    def __init__(self, server: Server) -> None:
        """Agents come to `server`, which stays the caller's."""
        self._server = server
        self._waiting: List[Connection] = []
        self._refusals: Deque[str] = deque(maxlen=_KEPT_REFUSALS)

    def wait_for(
        self,
        wanted: Optional[Callable[[int], bool]],
        deadline: Deadline,
        request_timeout: float,
        given_up: Callable[[], bool] = lambda: False,
    ) -> Optional[Connection]:
        """The connection of the first agent whose process is `wanted`, by default of any process of this user; None at
        the deadline, or when `given_up`.

        Which process it is the system tells. Only where that hides the process, its user and what its greeting says
        decide. A process of another user has to be `wanted`. The requests of the connection may take `request_timeout`
        seconds each. Its transcript says who was refused meanwhile.
        """
        while True:
            over = deadline.passed() or given_up()
            self._receive(wanted, 0.0 if over else min(deadline.remaining(), _LONGEST_WAIT))
            for connection in self._waiting:
                if wanted is None or wanted(connection.pid):
                    self._waiting.remove(connection)
                    connection.timeout = request_timeout
                    connection.transcript.refusals = tuple(self._refusals)
                    self._refusals.clear()
                    return connection
            if over:
                return None

    def others(self) -> str:
        """Lines to follow an error message: who was refused, and whose agents wait. Empty for nobody."""
        lines = [f"refused a connection: {refusal}" for refusal in self._refusals]
        lines += [f"{describe_process(connection.pid)} has connected, too" for connection in self._waiting]
        return "".join(f"\n{line}" for line in lines)

    def _receive(self, wanted: Optional[Callable[[int], bool]], seconds: float) -> None:
        """Waits `seconds` at most for somebody to connect, and takes in who has."""
        arriving = Deadline(_LONGEST_WAIT)
        while select.select([self._server], [], [], seconds)[0]:
            try:
                admits = wanted if wanted is not None else lambda pid: False
                self._waiting.append(self._server.accept(_GREETING_SECONDS, admits=admits))
            except (ClientRefusedError, ConnectionClosed, ProtocolError, RequestTimeout) as error:
                self._refusals.append(str(error))
            if arriving.passed():
                return  # who connects again and again does not keep the caller
            seconds = 0.0

    def close(self) -> None:
        """Closes the connections that nobody has asked for; their applications go on."""
        for connection in self._waiting:
            connection.close()
        self._waiting.clear()
