#!/usr/bin/env python3
"""Measures round trips to an application beside an echo in the same application: roundtrips.py BUILD

Prints a Markdown table and writes BUILD/bench.json. Times are medians of 500 in microseconds, taken in turns with
the echo, so that both see the same machine.
"""

import json
import statistics
import subprocess
import sys
from pathlib import Path

from wire import Line, listen

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
