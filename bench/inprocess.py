"""Runs the benchmarks of one process, each pair of ours and floor in turns."""

import json
import re
import subprocess
from pathlib import Path
from typing import Any, Dict, List, Tuple

from rows import BENCHMARKS

MICROSECONDS = {"ns": 0.001, "us": 1.0, "ms": 1000.0, "s": 1000000.0}


def pairs(program: Path) -> List[Tuple[str, int]]:
    """The names and sizes that the program can measure, in its order."""
    listing = subprocess.run(
        [program, "--benchmark_list_tests=true"], stdout=subprocess.PIPE, check=True, text=True
    ).stdout
    found = [re.match(r"(\w+)\|ours\|(\d+)\|", line) for line in listing.splitlines()]
    return [(match[1], int(match[2])) for match in found if match]


def run_pair(
    program: Path, name: str, size: int, repetitions: int, seconds: float
) -> Dict[str, Dict[str, Any]]:
    """The fastest of the repetitions for ours and the floor: disturbances can only make them slower."""
    command = [
        program,
        rf"--benchmark_filter=^{name}\|(ours|floor|qt)\|{size}\|",
        f"--benchmark_repetitions={repetitions}",
        "--benchmark_enable_random_interleaving=true",
        f"--benchmark_min_time={seconds}",
        "--benchmark_format=json",
    ]
    output = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, check=False)
    if output.returncode != 0:
        raise RuntimeError(f"{name} of {size} failed:\n{output.stderr}")
    best: Dict[str, Dict[str, Any]] = {}
    for run in json.loads(output.stdout)["benchmarks"]:
        if run["run_type"] != "iteration":
            continue
        side = run["name"].split("|")[1]
        clock = "real_time" if run["name"].endswith("/real_time") else "cpu_time"
        microseconds = run[clock] * MICROSECONDS[run["time_unit"]]
        if side not in best or microseconds < best[side]["microseconds"]:
            best[side] = {"microseconds": microseconds, "bytes_per_second": run.get("bytes_per_second", 0)}
    return best


def measure(program: Path, quick: bool) -> List[Dict[str, Any]]:
    """One result for each pair; in quick mode of the smallest size only, one short repetition each."""
    results = []
    to_measure = pairs(program)
    if quick:
        to_measure = list({name: (name, size) for name, size in reversed(to_measure)}.values())[::-1]
    for name, size in to_measure:
        best = run_pair(program, name, size, 1 if quick else 7, 0.001 if quick else 0.03)
        result = {
            "name": name,
            "what": BENCHMARKS[name].what,
            "size": size,
            "unit": "µs",
            "ours": best["ours"]["microseconds"],
            "floor": best["floor"]["microseconds"],
        }
        if "qt" in best:
            result["qt"] = best["qt"]["microseconds"]
        if best["ours"]["bytes_per_second"]:
            result["megabytes_per_second"] = best["ours"]["bytes_per_second"] / 1e6
        results.append(result)
    return results
