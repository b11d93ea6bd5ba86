"""The round trips of the benchmarks, under Wine."""

import json
import subprocess
import sys

from hostplatform import BUILD, ROOT

sys.path.insert(0, str(ROOT / "bench"))

import table  # noqa: E402


def test_quick_mode_measures_every_round_trip_once():
    subprocess.run([sys.executable, ROOT / "bench" / "measure.py", BUILD, "--quick"], check=True, timeout=250)
    report = json.loads((BUILD / "bench-quick.json").read_text())
    assert {result["name"] for result in report["results"]} == set(table.UNDER_WINE)
    assert all(result["ours"] > 0 and result["floor"] > 0 for result in report["results"])
    lines = table.markdown([report]).splitlines()
    assert len({line.count("|") for line in lines}) == 1, "a row has another number of columns"
    assert not table.not_met([report])
