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
_MAX_WAIT = 0.1
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
        """Waits for the agent of a process.

        The system tells which process has connected; only where it hides that, the user and the greeting decide.

        Args:
            wanted: whether it is the agent of this process; None takes any process of this user. A process of another user
                is refused unless it is wanted.
            deadline: when to stop waiting.
            request_timeout: seconds that each request of the connection may take.
            given_up: whether to stop earlier.

        Returns the connection of the first such agent, whose transcript says who was refused meanwhile; None when there is
        none.
        """
        while True:
            over = deadline.passed() or given_up()
            self._receive(wanted, 0.0 if over else min(deadline.remaining(), _MAX_WAIT))
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
        """Lines for an error message: which processes were refused, and whose agents wait. Empty without any."""
        lines = [f"refused a connection: {refusal}" for refusal in self._refusals]
        lines += [f"{describe_process(connection.pid)} has connected, too" for connection in self._waiting]
        return "\n".join(lines)

    def _receive(self, wanted: Optional[Callable[[int], bool]], seconds: float) -> None:
        """Waits `seconds` at most for a connection, and accepts all that are there."""
        arriving = Deadline(_MAX_WAIT)
        while select.select([self._server], [], [], seconds)[0]:
            try:
                admits = wanted if wanted is not None else lambda pid: False
                self._waiting.append(self._server.accept(_GREETING_SECONDS, admits=admits))
            except (ClientRefusedError, ConnectionClosed, ProtocolError, RequestTimeout) as error:
                self._refusals.append(str(error))
            if arriving.passed():
                return  # a process that connects again and again must not block the caller
            seconds = 0.0

    def close(self) -> None:
        """Closes the connections that nobody has asked for; their applications go on."""
        for connection in self._waiting:
            connection.close()
        self._waiting.clear()
