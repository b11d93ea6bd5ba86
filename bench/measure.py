#!/usr/bin/env python3
"""Measures one build and writes its bench.json (bench-quick.json): measure.py BUILD [--quick]

Needs a desktop of its own (scripts/with-desktop.sh). Quick mode takes a few seconds and its figures mean nothing: it
shows that everything runs.
"""

import argparse
import json
import re
from pathlib import Path
from typing import Any, Dict

import awaited
import inprocess
import roundtrips
import startup
import underwine


def processor() -> str:
    names = re.findall(r"^model name\s*: (.*)$", Path("/proc/cpuinfo").read_text(), re.MULTILINE)
    return f"{names[0]}, {len(names)} cores" if names else "unknown"


def qt_version(build: Path) -> str:
    """The version of Qt that CMake has found for the build."""
    cache = (build / "CMakeCache.txt").read_text()
    version = re.search(r"^QTDRIVER_QT_VERSION:\w+=(.+)$", cache, re.MULTILINE)
    assert version, "not a build of qtdriver"
    return version[1]


def measure(build: Path, quick: bool) -> Dict[str, Any]:
    """The report of a build: of one for Windows the round trips, of others all."""
    version = qt_version(build)
    report = {"qt": version, "processor": processor(), "quick": quick}
    if build.name.startswith("windows-"):
        return {**report, "wine": underwine.version(), "results": underwine.measure(build, version[0], quick)}
    command = [str(build / "bin" / "benchhost"), str(build / "lib" / "libqtdriver.so")]
    results = startup.measure(build, quick)
    results += roundtrips.measure(command, quick)
    results += awaited.measure(build, quick)
    results += inprocess.measure(build / "bin" / "benchmarks", quick)
    return {**report, "results": results}


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("build", type=Path)
    parser.add_argument("--quick", action="store_true")
    options = parser.parse_args()
    build = options.build.resolve()
    report = measure(build, options.quick)
    name = "bench-quick.json" if options.quick else "bench.json"
    (build / name).write_text(json.dumps(report, indent=1) + "\n")


if __name__ == "__main__":
    main()
