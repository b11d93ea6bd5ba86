"""The closing line counts what ran, and every way in which a suite can fail or get lost makes it tell of a failure."""

import json
import sys
from pathlib import Path
from xml.sax.saxutils import escape

import pytest

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "scripts"))

import count_tests  # noqa: E402

GOOD_PYTEST = """\
============================= test session starts ==============================
collected 3 items

tests/test_a.py ..s                                                      [100%]
========================= 2 passed, 1 skipped in 0.12s =========================
"""
BAD_PYTEST = """\
collected 4 items
test_a.py ..FE                                                           [100%]
==================== 1 failed, 2 passed, 1 error in 0.10s =====================
"""
GOOD_QTTEST = """\
********* Start testing of TstPath *********
PASS   : TstPath::initTestCase()
PASS   : TstPath::finds(by name)
PASS   : TstPath::finds(by title)
SKIP   : TstPath::grabs() no screen
PASS   : TstPath::cleanupTestCase()
Totals: 4 passed, 0 failed, 1 skipped, 0 blacklisted, 3ms
********* Finished testing of TstPath *********
"""
BAD_QTTEST = GOOD_QTTEST.replace(
    "PASS   : TstPath::finds(by title)", "FAIL!  : TstPath::finds(by title) no"
).replace("4 passed, 0 failed", "3 passed, 1 failed")
ONE_GOOD = "collected 1 item\n===== 1 passed in 1.00s =====\n"


def suite(name="qt5/suite", group="Qt 5", kind="tests"):
    return {"name": name, "group": group, "kind": kind}


def result(output, name="qt5/suite", status="run"):
    return f'<testcase name="{name}" status="{status}"><system-out>{escape(output)}</system-out></testcase>'


@pytest.fixture
def count(tmp_path, capsys):
    """Counts made-up results, and returns the exit status, the closing line and all lines."""

    def run(*cases, suites=None, status=0):
        listed, results = tmp_path / "suites.json", tmp_path / "results.xml"
        listed.write_text(json.dumps(suites or [suite()]))
        results.write_text(f"<testsuite>{''.join(cases)}</testsuite>")
        returned = count_tests.main(str(listed), str(results), str(status))
        lines = capsys.readouterr().out.splitlines()
        return returned, lines[-1], lines

    return run


@pytest.mark.parametrize(
    "output, closing",
    [
        (GOOD_PYTEST, "2 passed, 0 failed, 1 skipped"),
        (GOOD_QTTEST, "2 passed, 0 failed, 1 skipped"),
        (ONE_GOOD, "1 passed, 0 failed"),
        (ONE_GOOD.replace("1.00s", "61.00s (0:01:01)"), "1 passed, 0 failed"),
        (ONE_GOOD.replace("1 item", "5 items / 4 deselected / 1 selected"), "1 passed, 0 failed"),
        (ONE_GOOD.replace("1 passed", "1 passed, 2 warnings"), "1 passed, 0 failed"),
    ],
)
def test_what_passed_and_what_was_skipped_is_counted(count, output, closing):
    status, line, _ = count(result(output))
    assert (status, line) == (0, closing)


@pytest.mark.parametrize(
    "output, closing",
    [(BAD_PYTEST, "2 passed, 2 failed"), (BAD_QTTEST, "1 passed, 1 failed, 1 skipped")],
)
def test_what_failed_is_counted_and_its_suite_named(count, output, closing):
    status, line, lines = count(result(output, status="fail"))
    assert (status, line) == (1, closing)
    assert any(line.startswith("failed: qt5/suite: ") for line in lines)


@pytest.mark.parametrize(
    "output, closing",
    [
        pytest.param("", "0 passed, 1 failed", id="before it wrote anything"),
        pytest.param(
            "collected 3 items\n\ntests/test_a.py ..", "0 passed, 1 failed", id="between two tests of pytest"
        ),
        pytest.param(GOOD_PYTEST, "2 passed, 1 failed, 1 skipped", id="after the last test of pytest"),
        pytest.param(GOOD_QTTEST[:120], "1 passed, 1 failed", id="between two tests of QtTest"),
        pytest.param(GOOD_QTTEST, "2 passed, 1 failed, 1 skipped", id="after the last test of QtTest"),
    ],
)
def test_a_suite_that_crashes_or_is_killed_is_a_failure(count, output, closing):
    status, line, _ = count(result(output, status="fail"))
    assert (status, line) == (1, closing)


@pytest.mark.parametrize(
    "output",
    [
        pytest.param(
            GOOD_PYTEST.replace("3 items", "4 items") + "!!!!!! _pytest.outcomes.Exit: enough !!!!!!",
            id="by pytest.exit()",
        ),
        pytest.param(GOOD_PYTEST[:150], id="without the closing line of pytest"),
        pytest.param(GOOD_QTTEST.replace("Totals", "Total"), id="without the closing line of QtTest"),
        pytest.param(
            GOOD_QTTEST.replace("PASS   : TstPath::finds(by title)\n", ""), id="with lines that are missing"
        ),
    ],
)
def test_a_suite_that_is_cut_is_a_failure_even_if_it_ends_with_status_0(count, output):
    status, line, _ = count(result(output))
    assert (status, ", 1 failed" in line) == (1, True)


@pytest.mark.parametrize(
    "output",
    [
        "collected 0 items\n\n============ no tests ran in 0.01s ============\n",
        "Totals: 0 passed, 0 failed, 0 skipped\n",
        "PASS   : T::initTestCase()\nPASS   : T::cleanupTestCase()\nTotals: 2 passed, 0 failed, 0 skipped\n",
        "an interpreter that printed something else\n",
    ],
)
def test_a_suite_without_a_test_is_a_failure(count, output):
    status, line, _ = count(result(output))
    assert (status, line) == (1, "0 passed, 1 failed")


def test_what_a_test_prints_is_not_taken_for_the_closing_line(count):
    inner = "collected 90 items\n===== 80 passed in 1.00s =====\n"
    output = (
        f"collected 2 items\ntest_a.py F\n--- Captured stdout ---\n{inner}== 1 failed, 1 passed in 2.00s ==\n"
    )
    status, line, _ = count(result(output, status="fail"))
    assert (status, line) == (1, "1 passed, 1 failed")


def test_a_suite_without_a_result_is_a_failure(count):
    suites = [suite("qt5/there"), suite("qt5/lost")]
    status, line, lines = count(result(ONE_GOOD, "qt5/there"), suites=suites)
    assert (status, line) == (1, "1 passed, 1 failed")
    assert "failed: qt5/lost: 0 passed, 1 failed" in lines


def test_a_suite_that_did_not_run_is_a_failure(count):
    status, line, _ = count(result("Failed test dependencies: build/qt5", status="notrun"))
    assert (status, line) == (1, "0 passed, 1 failed")


def test_a_build_is_no_test_unless_it_fails(count):
    suites = [suite("build/qt5", "builds", "build"), suite()]
    assert count(result("", "build/qt5"), result(ONE_GOOD), suites=suites)[:2] == (0, "1 passed, 0 failed")
    failed = count(result("", "build/qt5", "fail"), result(ONE_GOOD), suites=suites)
    assert failed[:2] == (1, "1 passed, 1 failed")


def test_a_run_that_was_killed_before_it_wrote_results_is_a_failure(tmp_path, capsys):
    listed = tmp_path / "suites.json"
    listed.write_text(json.dumps([suite("qt5/a"), suite("qt5/b")]))
    for text in (None, "", "<testsuite><testcase"):
        if text is not None:
            (tmp_path / "results.xml").write_text(text)
        assert count_tests.main(str(listed), str(tmp_path / "results.xml"), "137") == 1
        assert capsys.readouterr().out.splitlines()[-1] == "0 passed, 2 failed"


def test_a_run_that_failed_without_a_failed_suite_is_a_failure(count):
    status, line, _ = count(result(ONE_GOOD), status=8)
    assert (status, line) == (1, "1 passed, 1 failed")


def test_each_group_has_a_line_of_its_own(count):
    suites = [suite("qt5/a", "Qt 5.15.8"), suite("qt4/a", "Qt 4.8.7"), suite("qt4/b", "Qt 4.8.7")]
    cases = [result(GOOD_PYTEST, "qt5/a"), result(ONE_GOOD, "qt4/a"), result(ONE_GOOD, "qt4/b")]
    _, line, lines = count(*cases, suites=suites)
    assert lines == [
        "Qt 5.15.8: 2 passed, 0 failed, 1 skipped",
        "Qt 4.8.7: 2 passed, 0 failed",
        "4 passed, 0 failed, 1 skipped",
    ]
