"""Agents that are sockets of the test itself."""

import contextlib
import socket
import threading

GREETING = b"+client+ 2.1.0 4711 -1 fake\n"
ECHO_MODE = (b"echoMode", b"echoMode".hex().encode("ascii"))


@contextlib.contextmanager
def connected_agent(server, serve=lambda agent: None, greeting=GREETING, timeout=5.0):
    """A connection to an agent whose side `serve` runs in a thread; the agent closes when `serve` returns."""

    def run():
        with socket.create_connection(("127.0.0.1", server.port)) as agent:
            agent.sendall(greeting)
            serve(agent)

    thread = threading.Thread(target=run)
    thread.start()
    try:
        with server.accept(timeout, timeout) as connection:
            yield connection
    finally:
        thread.join(10)
        assert not thread.is_alive()


def answering(*replies):
    """A `serve` that reads a request before each reply; it keeps the requests in its attribute.

    It has nothing to tell of passwords, for which the runner asks around each text; those requests are not kept.
    """

    def is_about_passwords(request):
        is_after_text = bool(serve.requests) and serve.requests[-1].startswith(b"6,")
        return any(word in request for word in ECHO_MODE) or (is_after_text and request == b"+hidden\n")

    def serve(agent):
        remaining = list(replies)
        with agent.makefile("rb") as requests:
            for request in requests:
                if is_about_passwords(request):
                    agent.sendall(b"8,Command not found\n")
                elif remaining:
                    serve.requests.append(request)
                    agent.sendall(remaining.pop(0))

    serve.requests = []
    return serve
