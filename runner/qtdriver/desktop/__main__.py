"""`python3 -m qtdriver.desktop COMMAND ARGS...` runs a command on a desktop and in a network of its own.

`python3 -m qtdriver.desktop --listen HOST:PORT` waits for pytest-xdist (`--tx socket=HOST:PORT`), and gives each connection a
worker on a desktop of its own. Whoever can connect runs programs as this user: listen where only you can.
"""

from __future__ import annotations

import os
import socket
import subprocess
import sys
from typing import Callable, List, NoReturn

from .desktop import MARK_OF_WORKERS, SCRIPT, environment_for_own_network, namespaces_refusal

_LISTEN = "--listen"
_USAGE = "usage: python3 -m qtdriver.desktop COMMAND ARGS... | --listen HOST:PORT"

_SERVE = """
import socket, sys
from execnet.gateway_base import get_execmodel
clientsock = socket.socket(fileno=int(sys.argv.pop(1)))
with clientsock.makefile("rb") as lines:
    source = eval(lines.readline())
exec(source, {"clientsock": clientsock, "address": None, "execmodel": get_execmodel("thread")})
"""
"""Serves one connection as pytest-xdist's (execnet's) own server of sockets does: the first line is a program."""


def main(words: List[str]) -> None:
    """Runs the command, or serves until the process is ended."""
    if not words or (words[0] == _LISTEN and len(words) != 2):
        sys.exit(_USAGE)
    host, _, port = words[-1].rpartition(":")
    if words[0] == _LISTEN and not (host and port.isdigit()):  # without a host everybody could connect
        sys.exit(_USAGE)
    refusal = namespaces_refusal()
    if refusal:
        sys.exit(f"qtdriver: no worker on a desktop of its own here: {refusal}")
    environment = {**environment_for_own_network(), MARK_OF_WORKERS: "1"}
    if words[0] == _LISTEN:
        serve(host, int(port), environment=environment, say=lambda text: print(text, flush=True))
    os.execve(str(SCRIPT), [str(SCRIPT), *words], environment)


def serve(host: str, port: int, *, environment: "dict[str, str]", say: Callable[[str], None]) -> NoReturn:
    """Serves connections, each by a process of its own; those go on when this one is ended."""
    workers: "List[subprocess.Popen[bytes]]" = []
    with socket.create_server((host, port)) as server:
        say(f"qtdriver: listening at {host}:{server.getsockname()[1]}")
        while True:
            connection, _ = server.accept()
            with connection:
                number = connection.fileno()
                command = [str(SCRIPT), sys.executable, "-c", _SERVE, str(number)]
                workers.append(subprocess.Popen(command, pass_fds=[number], env=environment))
            workers = [worker for worker in workers if worker.poll() is None]


if __name__ == "__main__":
    main(sys.argv[1:])
