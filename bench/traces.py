#!/usr/bin/env python3
"""Measures what traces cost the sample suite: traces.py [--pairs N] [--build DIR], on a desktop of its own

    scripts/with-desktop.sh /usr/bin/python3 bench/traces.py

It runs the sample suite with traces and without, in turns, and prints for the clock and for the processor time of all
processes: how much longer a step takes, and the share of the suite's time. Medians of the pairs, and the difference between
the fastest runs, which is more reliable on a busy machine.
"""

import argparse
import ctypes
import json
import os
import re
import resource
import statistics
import subprocess
import sys
import tempfile
from pathlib import Path
from typing import Dict, List, NamedTuple

ROOT = Path(__file__).resolve().parents[1]
PR_SET_CHILD_SUBREAPER = 36


class Run(NamedTuple):
    """Elapsed seconds, as pytest prints them, and processor time."""

    clock: float
    processor: float


def run(build: Path, trace: str, output: Path) -> Run:
    """A run of the sample suite. Ends this process if a test fails, since the rest of it is not run then."""
    before = processor_time()
    command = [sys.executable, "-m", "pytest", "-q", "-p", "no:cacheprovider", "examples/tests"]
    command += [
        f"--qtdriver-trace={trace}",
        f"--qtdriver-build={build.parent}",
        f"--qtdriver-output={output}",
    ]
    environment = {**os.environ, "QTDRIVER_BUILD": str(build)}
    done = subprocess.run(command, cwd=ROOT, env=environment, stdout=subprocess.PIPE, text=True)
    seconds = re.search(r" in ([0-9.]+)s", done.stdout)
    if done.returncode or seconds is None:
        sys.exit(done.stdout)
    reap_all()
    return Run(float(seconds[1]), processor_time() - before)


def processor_time() -> float:
    used = resource.getrusage(resource.RUSAGE_CHILDREN)
    return used.ru_utime + used.ru_stime


def reap_all() -> None:
    """Waits for the end of the processes that the run has left to this one, such as the X server."""
    while True:
        try:
            os.wait()
        except ChildProcessError:
            return


def steps_in(output: Path) -> int:
    """The number of steps in the traces of a run."""
    return sum(len(json.loads(path.read_text())["steps"]) for path in output.glob("*/trace/trace.json"))


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--pairs", type=int, default=8)
    parser.add_argument("--build", type=Path, default=ROOT / "build" / "qt5")
    options = parser.parse_args()
    ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1)
    runs: Dict[str, List[Run]] = {"on": [], "off": []}
    with tempfile.TemporaryDirectory() as folder:
        output = Path(folder) / "results"
        for number in range(options.pairs):
            for trace in ("off", "on") if number % 2 else ("on", "off"):
                runs[trace].append(run(options.build.resolve(), trace, output))
                if trace == "on":
                    steps = steps_in(output)
    for name in Run._fields:
        pairs = [(getattr(on, name), getattr(off, name)) for on, off in zip(runs["on"], runs["off"])]
        step = statistics.median((on - off) / steps for on, off in pairs)
        share = statistics.median(on / off - 1 for on, off in pairs)
        without = statistics.median(off for _, off in pairs)
        fastest = {trace: min(getattr(one, name) for one in found) for trace, found in runs.items()}
        least = (fastest["on"] - fastest["off"]) / steps
        print(
            f"{name}: {1000 * step:.1f} ms a step, {share:.1%} of {without:.1f} s without traces, {steps} steps; "
            f"the fastest: {1000 * least:.1f} ms a step, {fastest['on'] / fastest['off'] - 1:.1%}"
        )


if __name__ == "__main__":
    main()
