"""The programs of tests/unit, built for Windows."""

import os
import re
import subprocess

import pytest
from hostplatform import BUILD, ROOT, environment

SOURCES = sorted((ROOT / "tests" / "unit").glob("tst_*.cpp"))
NOT_FOR_WINDOWS = {"tst_idlesocketfilter": "the filter serves GLib's event loop, which Qt has on Linux only"}
DEADLINE = 300
TOTALS = re.compile(r"^Totals: (\d+) passed, (\d+) failed, (\d+) skipped", re.MULTILINE)


@pytest.mark.parametrize("name", [source.stem for source in SOURCES])
def test_a_unit_program_passes(name):
    if name in NOT_FOR_WINDOWS:
        pytest.skip(NOT_FOR_WINDOWS[name])
    ended = subprocess.run(
        ["wine", str(BUILD / "bin" / f"{name}.exe")],
        env={**os.environ, **environment()},
        capture_output=True,
        text=True,
        timeout=DEADLINE,
        check=False,
    )
    output = ended.stdout.replace("\r", "")
    wrong = [line for line in output.splitlines() if line.startswith(("FAIL", "XPASS"))]
    totals = TOTALS.findall(output)
    assert totals, f"no closing line: {output[-2000:]}{ended.stderr[-2000:]}"
    passed, failed, _ = map(int, totals[-1])
    assert (wrong, failed, ended.returncode) == ([], 0, 0), output
    assert passed > 2  # the set-up and the clean-up are no tests
