"""The demonstration that scripts/demo.sh ends with."""

import os
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
