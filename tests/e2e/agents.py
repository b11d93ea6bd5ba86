"""Agents that are sockets of the test itself."""

import contextlib
import socket
import threading

GREETING = b"+client+ 2.1.0 4711 -1 fake\n"


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

    It has no echo mode to tell, for which the runner asks before it types; those requests are not kept.
    """

    def serve(agent):
        with agent.makefile("rb") as requests:
            for reply in replies:
                request = requests.readline()
                while b"echoMode" in request or b"echoMode".hex().encode() in request:
                    agent.sendall(b"8,Property not found\n")
                    request = requests.readline()
                serve.requests.append(request)
                agent.sendall(reply)
            requests.read()

    serve.requests = []
    return serve
