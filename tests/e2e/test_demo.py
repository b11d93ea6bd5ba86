"""scripts/demo.sh: what it installs and builds, and the demonstration that it ends with."""

import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

import pytest

from showcase import BUILD, PROGRAM

ROOT = Path(__file__).resolve().parents[2]


@pytest.mark.skipif(
    not (BUILD.parent / "qt5" / "lib" / "libqtdriver-preload.so").exists(),
    reason="SpeedCrunch needs the agent of Qt 5",
)
def test_the_demonstration_goes_as_expected_and_saves_its_screens(tmp_path):
    ended = subprocess.run(
        [sys.executable, ROOT / "examples" / "demo", PROGRAM.parents[1], tmp_path],
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
        text=True,
        env={**os.environ, "PYTHONPATH": str(ROOT / "runner")},
    )
    print(ended.stdout)  # for the report, should the test fail
    assert (ended.returncode, ended.stdout.splitlines()[-1]) == (0, "demo: all as expected")
    pictures = {path.stem for path in tmp_path.glob("*.png")}
    assert pictures >= {"before", "after", "form", "lists", "tables", "menus", "speedcrunch"}


@pytest.fixture
def steps(tmp_path):
    """Runs scripts/demo.sh where the scripts that it calls only note that; answers these calls, and what it says."""
    (tmp_path / "scripts").mkdir()
    shutil.copy(ROOT / "scripts" / "demo.sh", tmp_path / "scripts")
    for name in ("setup.sh", "build.sh", "with-desktop.sh"):
        script = tmp_path / "scripts" / name
        script.write_text('#!/bin/sh\necho "${0##*/} $*" >>calls\n')
        script.chmod(0o755)

    def run(*arguments, **variables):
        (tmp_path / "calls").write_text("")
        environment = {name: value for name, value in os.environ.items() if not name.endswith("_WINDOWS")}
        ended = subprocess.run(
            [tmp_path / "scripts" / "demo.sh", *arguments],
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            text=True,
            env={**environment, **variables},
        )
        said = [re.sub(r"^demo: +\d+ s  ", "", line) for line in ended.stdout.splitlines()]
        return (
            ended.returncode,
            [line.strip() for line in (tmp_path / "calls").read_text().splitlines()],
            said,
        )

    run.folder = tmp_path
    return run


DRIVE = "with-desktop.sh /usr/bin/python3 examples/demo build"


def test_only_what_is_shown_is_installed_and_built_with_a_line_for_each_step(steps):
    assert steps() == (
        0,
        ["setup.sh --use", "build.sh 5 --lean --together", f"{DRIVE}/qt5 build/demo"],
        ["installing what is missing", "building for Qt 5", "driving the applications"],
    )
    calls = [
        "setup.sh",
        "build.sh 5 --lean --together",
        "build.sh 6 --lean --together",
        f"{DRIVE}/qt6 build/demo",
    ]
    assert steps("6")[:2] == (0, calls)


def test_a_build_with_tests_keeps_them(steps):
    cache = steps.folder / "build" / "qt5" / "CMakeCache.txt"
    cache.parent.mkdir(parents=True)
    cache.write_text("BUILD_TESTING:BOOL=ON\n")
    assert steps()[1][1] == "build.sh 5"


def test_the_demonstration_for_windows_needs_a_qt_for_windows(steps):
    assert steps("windows")[:2] == (2, [])
    calls = ["setup.sh", "build.sh 4 --windows", f"{DRIVE}/windows-qt4 build/demo-windows"]
    assert steps("windows", QT4_WINDOWS="/opt/qt4")[:2] == (0, calls)
