#!/usr/bin/env python3
"""Puts the suites of all builds into one queue for ctest: suites.py FOLDER [--only REGEX] BUILD...

A BUILD is the name of a folder below build/ that CMake has configured, such as qt5 or qt5-asan. FOLDER gets
  - CTestTestfile.cmake, which ctest runs: each build as a test that the suites of this build wait for, and the suites;
  - suites.json, the same as a list, by which count_tests.py sees that none is missing.
A suite labelled "once" does not depend on the Qt, runs for the first build only, and waits for no build but one that it
names itself. Builds with sanitizers run the suites that talk to the agent where there are plain builds beside them, else
all. Several files of protocol/ or e2e/ are one suite, "qt5/protocol/test_a+test_b". --only leaves the suites whose names the
expression is found in, and their builds.
"""

import argparse
import json
import os
import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
# Suites for the sanitizers: they look at the agent while it is driven in an application.
SANITIZED = ("protocol/", "hostile/", "sanitized/")
SANITIZED_FOLDERS = ("src", "tests/hosts", "tests/testtool")
BUILD_COMMANDS = {"qt5-fuzz": [str(ROOT / "scripts" / "fuzz.sh"), "--build"]}
BUILD_SECONDS = 3600
CORES = str(os.cpu_count())
ONCE = "once for all Qts"
# Small files of tests share a desktop and a pytest, which take half a second of a processor to start.
SHARING = re.compile("/(?:protocol|e2e)/test_")
SHARED_BYTES = 30000  # about two of the longer files


def group_of(build):
    """The name of a build for people, with the whole version of its Qt."""
    cache = (ROOT / "build" / build / "CMakeCache.txt").read_text()
    version = re.search(r"^QTDRIVER_QT_VERSION:\w+=(.*)$", cache, re.MULTILINE).group(1)
    return f"Qt {version}" + (
        " with sanitizers"
        if build.endswith("-asan")
        else " for Windows"
        if build.startswith("windows-")
        else ""
    )


def registered(build):
    """The tests that CMake has registered in a build: name, command, and properties of each."""
    command = ["ctest", "--test-dir", str(ROOT / "build" / build), "--show-only=json-v1"]
    listing = subprocess.run(command, check=True, capture_output=True, text=True).stdout
    for test in json.loads(listing)["tests"]:
        yield test["name"], test["command"], {entry["name"]: entry["value"] for entry in test["properties"]}


def is_beside_plain(build, builds):
    """Whether this is one with sanitizers, which then runs a part of what a plain one runs."""
    return build.endswith("-asan") and not all(other.endswith("-asan") for other in builds)


def is_made(build, builds):
    """Whether a build is one of this run's. A suite does not wait for a build that is not made."""
    return build in builds or build in BUILD_COMMANDS


def suites_of(build, builds):
    """The suites of one of the builds."""
    group = group_of(build)
    beside_plain = is_beside_plain(build, builds)
    for name, command, properties in registered(build):
        once = "once" in properties.get("LABELS", [])
        if (once and build != builds[0]) or (beside_plain and not name.startswith(SANITIZED)):
            continue
        needed = properties.setdefault("FIXTURES_REQUIRED", [] if once else [f"build/{build}"])
        properties["FIXTURES_REQUIRED"] = [name for name in needed if is_made(name.partition("/")[2], builds)]
        yield {
            "name": name if once else f"{build}/{name}",
            "group": ONCE if once else group,
            "kind": "tests",
            "command": command,
            "properties": properties,
        }


def put_together(suites):
    """The same tests as fewer suites: of files that run alike, one after the other, until they are long enough."""
    result, sizes = [], []
    for suite in suites:
        size = sum(Path(word).stat().st_size for word in suite["command"] if word.endswith(".py"))
        last = result[-1] if result and SHARING.search(suite["name"]) else None
        if last and how_it_runs(last) == how_it_runs(suite) and sizes[-1] + size <= SHARED_BYTES:
            last["name"] += "+" + suite["name"].rpartition("/")[2]
            last["command"].append(suite["command"][-1])
            sizes[-1] += size
        else:
            result.append(suite)
            sizes.append(size)
    return result


def how_it_runs(suite):
    """All of a suite but its files."""
    command = [word for word in suite["command"] if not word.endswith(".py")]
    return suite["name"].rpartition("/")[0], command, suite["properties"]


def build_command(build, builds):
    targets = [f"{folder}/all" for folder in SANITIZED_FOLDERS] if is_beside_plain(build, builds) else ["all"]
    return [
        "cmake",
        "--build",
        str(ROOT / "build" / build),
        "--target",
        *targets,
        "--parallel",
        CORES,
        "--",
        "--quiet",
    ]


def builds_for(suites, builds):
    """The builds that the suites wait for, one after the other, so that suites run beside them."""
    for name in dict.fromkeys(name for suite in suites for name in suite["properties"]["FIXTURES_REQUIRED"]):
        build = name.partition("/")[2]
        yield {
            "name": name,
            "group": "builds",
            "kind": "build",
            "command": BUILD_COMMANDS.get(build) or build_command(build, builds),
            "properties": {
                "FIXTURES_SETUP": [name],
                "PROCESSORS": CORES,
                "RESOURCE_LOCK": ["builds"],
                "TIMEOUT": BUILD_SECONDS,
            },
        }


def quoted(value):
    """A value as an argument in CMake's language, a list as a list there."""
    if isinstance(value, list):
        value = ";".join(value)
    elif isinstance(value, bool):
        value = "TRUE" if value else "FALSE"
    return f"[==[{value}]==]"


def in_cmake(suite):
    """The lines of a CTestTestfile.cmake for a suite."""
    name = quoted(suite["name"])
    properties = (f"{key} {quoted(value)}" for key, value in suite["properties"].items())
    yield f"add_test({name} {' '.join(map(quoted, suite['command']))})"
    yield f"set_tests_properties({name} PROPERTIES {' '.join(properties)})"


def guess_costs(suites):
    """Has ctest begin with the long files, until a whole run has measured how long each suite takes."""
    for suite in suites:
        sizes = [
            Path(word).stat().st_size
            for word in suite["command"]
            if word.endswith(".py") and Path(word).exists()
        ]
        suite["properties"].setdefault("COST", sum(sizes) / 1000)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("folder", type=Path)
    parser.add_argument("--only", default="")
    parser.add_argument("builds", nargs="+")
    options = parser.parse_args()
    suites = put_together(
        suite
        for build in options.builds
        for suite in suites_of(build, options.builds)
        if re.search(options.only, suite["name"])
    )
    if not (options.folder / "Testing" / "Temporary" / "CTestCostData.txt").exists():
        guess_costs(suites)
    suites = [*builds_for(suites, options.builds), *suites]
    options.folder.mkdir(parents=True, exist_ok=True)
    (options.folder / "suites.json").write_text(json.dumps(suites, indent=1))
    text = "\n".join(line for suite in suites for line in in_cmake(suite))
    (options.folder / "CTestTestfile.cmake").write_text(text + "\n")


if __name__ == "__main__":
    sys.exit(main())
