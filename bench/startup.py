"""Measures how much the agent adds to the start of an application that knows nothing of it."""

import os
import socket
import statistics
import subprocess
from pathlib import Path
from typing import Any, Dict, List, Optional, Sequence

from wire import accept, listen

FIGURES = {"time": "µs", "resident memory": "KiB", "heap": "KiB"}


def run(command: Sequence[str], preload: str, server: Optional[socket.socket]) -> List[float]:
    """Microseconds, KiB of resident memory and KiB of heap from before the event loop to the first event.

    With a server, a library is expected to connect to it; the agent, which is preloaded, with its greeting.
    """
    environment = dict(os.environ)
    if preload:
        environment["LD_PRELOAD"] = preload
    with subprocess.Popen(
        command, env=environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True
    ) as host:
        assert host.stdout and host.stdin
        figures = host.stdout.readline()
        if server:
            connection = accept(server)
            assert not preload or connection.read().startswith(b"+client+"), "the agent did not start"
        host.stdin.close()
    assert host.returncode == 0, f"the host ended with {host.returncode}"
    microseconds, resident, heap = (float(word) for word in figures.split())
    return [microseconds, resident, heap / 1024]


def measure(build: Path, quick: bool) -> List[Dict[str, Any]]:
    """Three results: time, resident memory and heap, each beside those of a library that only connects a socket."""
    host = str(build / "bin" / "startuphost")
    server = listen(4242)
    variants = {
        "plain": ([host], ""),
        "ours": ([host], str(build / "lib" / "libqtdriver-preload.so")),
        "floor": ([host, str(build / "lib" / "libsocketmodule.so")], ""),
    }
    taken: Dict[str, List[List[float]]] = {variant: [] for variant in variants}
    for _ in range(2 if quick else 15):
        for variant, (command, preload) in variants.items():
            taken[variant].append(run(command, preload, None if variant == "plain" else server))
    server.close()
    medians = {
        variant: [statistics.median(column) for column in zip(*runs)] for variant, runs in taken.items()
    }
    results = []
    for index, (figure, unit) in enumerate(FIGURES.items()):
        plain = medians["plain"][index]
        results.append(
            {
                "name": "preload_" + figure.split()[0],
                "what": f"{figure} that the preloaded agent adds",
                "unit": unit,
                "ours": medians["ours"][index] - plain,
                "floor": medians["floor"][index] - plain,
            }
        )
    return results
