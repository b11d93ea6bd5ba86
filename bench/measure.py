#!/usr/bin/env python3
"""Measures one build and writes its bench.json (bench-quick.json): measure.py BUILD [--quick]

Needs a desktop of its own (scripts/with-desktop.sh). Quick mode takes a few seconds and its figures mean nothing: it
shows that everything runs.
"""

import argparse
import json
import re
import subprocess
from pathlib import Path

import awaited
import inprocess
import roundtrips
import startup


def processor() -> str:
    names = re.findall(r"^model name\s*: (.*)$", Path("/proc/cpuinfo").read_text(), re.MULTILINE)
    return f"{names[0]}, {len(names)} cores" if names else "unknown"


def qt_version(build: Path) -> str:
    """The version of Qt that the build links, as its library's name says."""
    cache = (build / "CMakeCache.txt").read_text()
    major = re.search(r"^QTDRIVER_QT:\w+=(\d)$", cache, re.MULTILINE)
    assert major, "not a build of qtdriver"
    library = {"4": "libQtCore.so.4", "5": "libQt5Core.so.5", "6": "libQt6Core.so.6"}[major[1]]
    listing = subprocess.run(
        ["ldd", build / "bin" / "benchmarks"], stdout=subprocess.PIPE, check=True, text=True
    ).stdout
    path = next(line.split()[2] for line in listing.splitlines() if line.split()[0] == library)
    return Path(path).resolve().name.split(".so.")[1]


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("build", type=Path)
    parser.add_argument("--quick", action="store_true")
    options = parser.parse_args()
    build = options.build.resolve()
    results = startup.measure(build, options.quick)
    results += roundtrips.measure(build, options.quick)
    results += awaited.measure(build, options.quick)
    results += inprocess.measure(build / "bin" / "benchmarks", options.quick)
    report = {"qt": qt_version(build), "processor": processor(), "quick": options.quick, "results": results}
    name = "bench-quick.json" if options.quick else "bench.json"
    (build / name).write_text(json.dumps(report, indent=1) + "\n")


if __name__ == "__main__":
    main()
