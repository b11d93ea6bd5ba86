"""Used by all benchmarks: connections to an application that is measured."""

import socket
import time

READY_SECONDS = 20


class Line:
    """One connection, a line there and a line back."""

    def __init__(self, connected: socket.socket) -> None:
        self._socket = connected
        self._socket.settimeout(30)
        self._socket.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        self._reader = self._socket.makefile("rb")

    def read(self) -> bytes:
        return self._reader.readline()

    def ask(self, line: bytes) -> bytes:
        """The reply to a line, both without line end."""
        self._socket.sendall(line + b"\n")
        reply = self._reader.readline()
        assert reply.endswith(b"\n"), "the application ended"
        return reply[:-1]

    def microseconds(self, line: bytes) -> float:
        start = time.perf_counter_ns()
        self.ask(line)
        return (time.perf_counter_ns() - start) / 1000


def listen(port: int) -> socket.socket:
    server = socket.create_server(("127.0.0.1", port))
    server.settimeout(30)
    return server


def accept(server: socket.socket) -> Line:
    """The next connection to a server."""
    return Line(server.accept()[0])


def wait_until_ready(agent: Line, request: str, expected: str) -> None:
    """Asks until the reply begins as expected, as long as the agent says that its widget is not ready yet: a window that
    has only just appeared still moves."""
    deadline = time.monotonic() + READY_SECONDS
    reply = agent.ask(request.encode())
    while reply.startswith(b"9,") and time.monotonic() < deadline:
        reply = agent.ask(request.encode())
    assert reply.startswith(expected.encode()), f"{request} is answered {reply!r}"
