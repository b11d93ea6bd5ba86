"""The programs of tests/unit, built for Windows."""

import os
import re
import subprocess

import pytest
from hostplatform import BUILD, ROOT, environment

SOURCES = sorted((ROOT / "tests" / "unit").glob("tst_*.cpp"))
NOT_FOR_WINDOWS = {"tst_idlesocketfilter": "the filter serves GLib's event loop, which Qt has on Linux only"}
NOT_UNDER_WINE = {
    (
        "tst_stwidgetproxy",
        "aWidgetFarInsideAHugeWindowComesToTheCornerItself",
    ): "Wine puts no window that far out",
    ("tst_testclient", "itIsCreatedWithoutParentAndStartsConnecting"): "Wine refuses a closed port at once",
}
DEADLINE = 300
TOTALS = re.compile(r"^Totals: (\d+) passed, (\d+) failed, (\d+) skipped", re.MULTILINE)


def run(name, *arguments):
    ended = subprocess.run(
        ["wine", str(BUILD / "bin" / f"{name}.exe"), *arguments],
        env={**os.environ, **environment()},
        capture_output=True,
        text=True,
        timeout=DEADLINE,
        check=False,
    )
    return ended.returncode, ended.stdout.replace("\r", ""), ended.stderr


@pytest.mark.parametrize("name", [source.stem for source in SOURCES])
def test_a_unit_program_passes(name):
    if name in NOT_FOR_WINDOWS:
        pytest.skip(NOT_FOR_WINDOWS[name])
    functions = []
    left_out = [function for program, function in NOT_UNDER_WINE if program == name]
    if left_out:
        known = run(name, "-functions")[1].replace("()", "").split()
        assert set(left_out) <= set(known)
        functions = [function for function in known if function not in left_out]
    status, output, errors = run(name, *functions)
    wrong = [line for line in output.splitlines() if line.startswith(("FAIL", "XPASS"))]
    totals = TOTALS.findall(output)
    assert totals, f"no closing line: {output[-2000:]}{errors[-2000:]}"
    passed, failed, _ = map(int, totals[-1])
    assert (wrong, failed, status) == ([], 0, 0), output
    assert passed > 2  # the set-up and the clean-up are no tests


@pytest.mark.parametrize("program, function", NOT_UNDER_WINE)
def test_a_function_of_a_unit_program_passes(program, function):
    pytest.skip(f"not under Wine: {NOT_UNDER_WINE[program, function]}")
