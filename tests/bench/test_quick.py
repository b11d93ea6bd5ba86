"""The benchmarks run, and everything that they measure has a row in their table."""

import json
import os
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
BUILD = Path(os.environ.get("QTDRIVER_BUILD", ROOT / "build" / "qt5"))
sys.path.insert(0, str(ROOT / "bench"))

import inprocess  # noqa: E402
import table  # noqa: E402


def test_all_that_is_measured_has_a_description() -> None:
    assert {name for name, _ in inprocess.pairs(BUILD / "bin" / "benchmarks")} == set(inprocess.BENCHMARKS)


def test_quick_mode_measures_everything_once() -> None:
    subprocess.run([sys.executable, ROOT / "bench" / "measure.py", BUILD, "--quick"], check=True, timeout=250)
    report = json.loads((BUILD / "bench-quick.json").read_text())
    assert {result["name"] for result in report["results"]} == set(table.ROWS)
    # Start-up is the difference of two starts, which on a busy machine says anything.
    measured = [result for result in report["results"] if not result["name"].startswith("preload_")]
    assert [result["name"] for result in measured if not result["ours"] > 0] == []
    lines = table.markdown([report]).splitlines()
    assert len({line.count("|") for line in lines}) == 1, "a row has another number of columns"
