#!/usr/bin/env python3
"""Measures how requests grow with the size of a view or of a text: sizes.py BUILD

Prints a Markdown table and writes BUILD/bench-sizes.json. Times are medians of 5 in milliseconds, for a text one run.
"""

import json
import statistics
import subprocess
import sys
from pathlib import Path

from wire import Line, listen

ROUNDS = 5
SIZES = (1000, 10000, 100000)


def last_of_tree(size):
    """The path of the last item."""
    return f"parent {(size - 1) % 300}/item {size - 1}"


def rows():
    """The rows of the table: what is measured, its request for each size, how often."""
    yield "list all items of a list", [f"7,Sizes,list{size},,itemList," for size in SIZES], ROUNDS
    last = [f"7,Sizes,list{size},,itemIsEnabled,s:item {size - 1}" for size in SIZES]
    yield "find the last item of a list", last, ROUNDS
    yield "list all paths of a tree", [f"7,Sizes,tree{size},,pathList," for size in SIZES], ROUNDS
    last = [f"7,Sizes,tree{size},,itemIsEnabled,s:{last_of_tree(size)}" for size in SIZES]
    yield "find the last item of a tree", last, ROUNDS
    texts = ["s:" + ("x" * 49 + "\n") * (size // 50) for size in SIZES]
    yield "type a text of paragraphs", [f"6,Sizes,text,,{text.encode().hex()}," for text in texts], 1
    texts = ["s:" + "x" * size for size in SIZES]
    yield "enter a text where there is a validator", [
        f"6,Sizes,line,,{text.encode().hex()}," for text in texts
    ], 1


def main(build):
    agents = listen(4242)
    host = subprocess.Popen([build / "bin" / "sizehost", build / "lib" / "libqtdriver.so"])
    try:
        agent = Line(agents)
        assert agent.read().startswith(b"+client+")
        print(
            f"| {build.name}: request, milliseconds | "
            + " | ".join(f"{size:,}" for size in SIZES)
            + " | growth |"
        )
        print("| --- |" + " ---: |" * (len(SIZES) + 1))
        results = []
        for name, requests, rounds in rows():
            times = []
            for request in requests:
                data = request.encode() + b"\n"
                times.append(statistics.median(agent.microseconds(data) / 1000 for _ in range(rounds)))
            growth = times[-1] / times[-2]
            results.append({"request": name, "milliseconds": dict(zip(map(str, SIZES), times))})
            cells = " | ".join(f"{time:.2f}" for time in times)
            print(f"| {name} | {cells} | x{growth:.1f} for x10 |", flush=True)
        (build / "bench-sizes.json").write_text(json.dumps(results, indent=2) + "\n")
    finally:
        host.kill()
        host.wait()


if __name__ == "__main__":
    main(Path(sys.argv[1]))
