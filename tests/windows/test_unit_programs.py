"""The programs of tests/unit, built for Windows."""

import os
import re
import subprocess

import pytest
from hostplatform import BUILD, QT, ROOT, environment, windows_path

SOURCES = sorted((ROOT / "tests" / "unit").glob("tst_*.cpp"))
NOT_FOR_WINDOWS = {"tst_idlesocketfilter": "the filter serves GLib's event loop, which Qt has on Linux only"}
NOT_UNDER_WINE = {
    (
        "tst_stwidgetproxy",
        "aWidgetFarInsideAHugeWindowComesToTheCornerItself",
    ): "Wine puts no window that far out",
    ("tst_testclient", "itIsCreatedWithoutParentAndStartsConnecting"): "Wine refuses a closed port at once",
}
# With the focus back while a popup is open, Qt 5 and 6 do not take the window for the active one again.
LATE_FOCUS = "a moment after a window was shown, Wine takes the focus from it and gives it back"
if QT > 4:
    NOT_UNDER_WINE.update(
        {
            ("tst_pytestproxy", "popupDoesNotBlockTheActiveWindow"): LATE_FOCUS,
            ("tst_pytestproxy", "popupIsFoundByItsSpecialNames"): LATE_FOCUS,
            ("tst_stinputcontrol", "keysWithoutFocusGoNowhere"): LATE_FOCUS,
        }
    )
DEADLINE = 300
FORMAT = "" if QT == 4 else ",txt"
TOTALS = re.compile(r"^Totals: (\d+) passed, (\d+) failed, (\d+) skipped", re.MULTILINE)


def run(folder, name, *arguments):
    """The exit status of a program, what it wrote, and what it wrote as its log: with Qt 5 and 6 that is no standard output
    on Windows, unless it has a console."""
    log, output = folder / "log.txt", folder / "output.txt"
    with output.open("wb") as file:  # no pipe: what Wine starts besides would keep it open
        ended = subprocess.run(
            [
                "wine",
                str(BUILD / "bin" / "unittests.exe"),
                name,
                "-o",
                windows_path(log) + FORMAT,
                *arguments,
            ],
            env={**os.environ, **environment()},
            stdin=subprocess.DEVNULL,
            stdout=file,
            stderr=subprocess.STDOUT,
            timeout=DEADLINE,
            check=False,
        )
    texts = (path.read_text(errors="replace") if path.exists() else "" for path in (output, log))
    return (ended.returncode, *(text.replace("\r", "") for text in texts))


@pytest.mark.parametrize("name", [source.stem for source in SOURCES])
def test_a_unit_program_passes(name, tmp_path):
    if name in NOT_FOR_WINDOWS:
        pytest.skip(NOT_FOR_WINDOWS[name])
    functions = []
    left_out = [function for program, function in NOT_UNDER_WINE if program == name]
    if left_out:
        known = run(tmp_path, name, "-functions")[1].replace("()", "").split()
        assert set(left_out) <= set(known)
        functions = [function for function in known if function not in left_out]
    status, output, log = run(tmp_path, name, *functions)
    wrong = [line for line in log.splitlines() if line.startswith(("FAIL", "XPASS"))]
    totals = TOTALS.findall(log)
    assert totals, f"no closing line: {log[-2000:]}{output[-2000:]}"
    passed, failed, _ = map(int, totals[-1])
    assert (wrong, failed, status) == ([], 0, 0), log
    assert passed > 2  # the set-up and the clean-up are no tests


@pytest.mark.parametrize("program, function", NOT_UNDER_WINE)
def test_a_function_of_a_unit_program_passes(program, function):
    pytest.skip(f"not under Wine: {NOT_UNDER_WINE[program, function]}")
