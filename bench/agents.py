"""Measures what a language model waits for: bench/agents.py BUILD, such as build/qt5. It is no part of the table.

Run it on a desktop: scripts/with-desktop.sh --nestable /usr/bin/python3 bench/agents.py build/qt5. A click is one on a button of
the showcase, with the changes that the answer tells; a snapshot is one of a window with 5,000 widgets. Both are by
`qtdriver mcp`, from the request to its answer, in milliseconds of a clock.
"""

import os
import re
import statistics
import sys
import time
from pathlib import Path
from typing import Callable, List

ROUNDS = 50
MOST_MILLISECONDS = {"click": 60, "snapshot": 50}


def timed(call: Callable[[], object], rounds: int) -> List[float]:
    """How long each of some calls takes, in milliseconds, after one that does not count."""
    call()
    taken = []
    for _ in range(rounds):
        began = time.monotonic()
        call()
        taken.append((time.monotonic() - began) * 1000)
    return taken


def measure(build: Path, rounds: int) -> "dict[str, List[float]]":
    """The times of clicks and of snapshots, with the programs of a build."""
    os.environ["QTDRIVER_BUILD"] = str(build)
    sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "tests" / "agents"))
    from mcpclient import KIOSK, McpClient

    with McpClient("--headed", "--build", build / "agents") as client:
        client.initialize()
        client.call("launch", program=str(build / "bin" / "showcase"), app="showcase")
        found = client.call("find", text="brewButton")
        button = int(re.search(r"\[(\d+)\].*#brewButton", found)[1])
        clicks = timed(lambda: client.call("click", target=button), rounds)
        client.call("close", app="showcase")
        client.call("launch", program="/usr/bin/python3", arguments=[str(KIOSK), "many"], qt=5)
        return {"click": clicks, "snapshot": timed(lambda: client.call("snapshot"), rounds)}


def main() -> None:
    """Prints a line for each; the exit status tells whether the medians are below their targets."""
    times = measure(Path(sys.argv[1]).absolute(), ROUNDS)
    for name, taken in times.items():
        print(
            f"{name}: median {statistics.median(taken):.1f} ms, slowest {max(taken):.1f} ms of {len(taken)}, "
            f"target {MOST_MILLISECONDS[name]} ms"
        )
    sys.exit(any(statistics.median(taken) >= MOST_MILLISECONDS[name] for name, taken in times.items()))


if __name__ == "__main__":
    main()
