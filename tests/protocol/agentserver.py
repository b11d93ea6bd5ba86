"""Where agents look for their server."""

import socket


def listen() -> socket.socket:
    """A server socket there."""
    return socket.create_server(("127.0.0.1", 4242), backlog=4)
