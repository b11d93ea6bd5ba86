#!/usr/bin/env python3
"""Measures round trips to an application beside an echo in the same application: roundtrips.py BUILD

Prints a Markdown table and writes BUILD/bench.json. Times are medians of 500 in microseconds, taken in turns with
the echo, so that both see the same machine.
"""

import json
import socket
import statistics
import subprocess
import sys
import time
from pathlib import Path

ROUNDS = 500
WARM_UP = 50
REQUESTS = [
    ("read a property by name (7)", "7,Bench,button77,,text,"),
    ("read a property by path (7)", "7,Bench,window/button77,,text,"),
    ("check a window (8)", "8,Bench"),
    ("list the windows (1)", "1"),
    ("list the tree of 101 widgets (2)", "2,Bench"),
    ("locate a widget (4)", "4,Bench,button77"),
    ("move the mouse onto a widget (9)", "9,Bench,window,,733a3a3a3a3a,"),
]


class Line:
    """One connection, a line there and a line back."""

    def __init__(self, server):
        self._socket, _ = server.accept()
        self._socket.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        self._reader = self._socket.makefile("rb")

    def read(self):
        return self._reader.readline()

    def microseconds(self, data):
        start = time.perf_counter_ns()
        self._socket.sendall(data)
        reply = self._reader.readline()
        assert reply.endswith(b"\n"), "the application ended"
        return (time.perf_counter_ns() - start) / 1000


def listen(port):
    server = socket.socket()
    server.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
    server.bind(("127.0.0.1", port))
    server.listen()
    server.settimeout(30)
    return server


def measure(agent, echo, request):
    """The medians of a request and of the echo."""
    data = request.encode() + b"\n"
    for _ in range(WARM_UP):
        agent.microseconds(data)
        echo.microseconds(data)
    pairs = [(agent.microseconds(data), echo.microseconds(data)) for _ in range(ROUNDS)]
    return [statistics.median(times) for times in zip(*pairs)]


def main(build):
    agents, echoes = listen(4242), listen(0)
    command = [build / "bin" / "benchhost", build / "lib" / "libqtdriver.so", str(echoes.getsockname()[1])]
    host = subprocess.Popen(command)
    try:
        echo, agent = Line(echoes), Line(agents)
        assert agent.read().startswith(b"+client+")
        print(f"| {build.name}: request | median µs | echo µs | ratio |")
        print("| --- | ---: | ---: | ---: |")
        rows = []
        for name, request in REQUESTS:
            ours, floor = measure(agent, echo, request)
            rows.append({"request": name, "microseconds": ours, "echo": floor, "ratio": ours / floor})
            print(f"| {name} | {ours:.1f} | {floor:.1f} | {ours / floor:.2f} |", flush=True)
        (build / "bench.json").write_text(json.dumps(rows, indent=2) + "\n")
    finally:
        host.kill()
        host.wait()


if __name__ == "__main__":
    main(Path(sys.argv[1]))
