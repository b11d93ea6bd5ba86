"""Used by all benchmarks: connections to an application that is measured."""

import socket
import time


class Line:
    """One connection, a line there and a line back."""

    def __init__(self, server: socket.socket) -> None:
        self._socket, _ = server.accept()
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
