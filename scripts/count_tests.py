#!/usr/bin/env python3
"""Counts the tests that ran: count_tests.py SUITES RESULTS STATUS

SUITES is the list that suites.py has written, RESULTS what ctest has made of it (its JUnit file), STATUS that of ctest.
Prints a line for each group of suites, a Qt or what runs once for all, and, last, "N passed, N failed" for all together,
with ", N skipped" where any was. Besides each test that failed, one failed test is counted for
  - a suite that failed without a word about which of its tests did: by a crash, a time-out, a signal;
  - a suite that was cut: it ran fewer tests than it has, or ended without its closing line;
  - a suite that is lost: there is no result of it, or it ran no test at all;
  - a build that failed. One that succeeded is no test.
Exits with 1 when a test failed.
"""

import json
import re
import sys
from collections import Counter
from pathlib import Path
from xml.etree import ElementTree

# The outcome of a function or a row of its data. The set-up and clean-up of a program are no tests, though its closing
# line counts them.
QTTEST_LINE = re.compile(r"^(PASS|FAIL!|XPASS|BPASS|BFAIL|SKIP) +: \w+::(\w+)\(", re.MULTILINE)
QTTEST_FRAME = ("initTestCase", "cleanupTestCase")
QTTEST_OUTCOMES = {"PASS": "passed", "SKIP": "skipped"}
QTTEST_TOTALS = re.compile(r"^Totals: (\d+) passed, (\d+) failed, (\d+) skipped", re.MULTILINE)

# How many tests pytest has found, and its closing line. The first and the last such line are its own, whatever its
# tests may have written in between.
PYTEST_FOUND = re.compile(
    r"^collected (\d+) items?(?: / (\d+) errors?)?(?: / (\d+) deselected)?(?: / (\d+) skipped)?", re.MULTILINE
)
PYTEST_TOTALS = re.compile(r"^=+ ((?:\d+ [a-z]+(?:, )?)+) in [\d.]+s[^=]*=+$", re.MULTILINE)
PYTEST_OUTCOMES = {
    "passed": "passed",
    "xfailed": "passed",
    "skipped": "skipped",
    "failed": "failed",
    "xpassed": "failed",
    "error": "failed",
    "errors": "failed",
}


def count_qttest(output):
    """The outcomes of a QtTest program, and whether its closing line is there and counts as many."""
    counts = Counter()
    lines = QTTEST_LINE.findall(output)
    for word, function in lines:
        outcome = QTTEST_OUTCOMES.get(word, "failed")
        if outcome != "passed" or function not in QTTEST_FRAME:
            counts[outcome] += 1
    totals = QTTEST_TOTALS.findall(output)
    whole = bool(totals) and sum(map(int, totals[-1])) == len(lines)
    return counts, whole


def count_pytest(output):
    """The outcomes of a run of pytest, and whether they are those of all tests that it had found."""
    counts = Counter()
    totals = PYTEST_TOTALS.findall(output)
    if not totals:
        return counts, False
    for number, word in re.findall(r"(\d+) ([a-z]+)", totals[-1]):
        if word in PYTEST_OUTCOMES:
            counts[PYTEST_OUTCOMES[word]] += int(number)
    found, _, deselected, skipped = (int(number or 0) for number in PYTEST_FOUND.search(output).groups())
    # A test that fails twice, once in its clean-up, counts twice; so there may be more outcomes than tests.
    return counts, counts.total() >= found - deselected + skipped


def count(suite, result):
    """The outcomes of one suite. The result is the element of the JUnit file, None where the file has none."""
    counts, whole = Counter(), False
    ended_well = result is not None and result.get("status") == "run"
    if suite["kind"] == "build":
        whole = True
    elif result is not None:
        output = result.findtext("system-out") or ""
        counts, whole = (count_pytest if PYTEST_FOUND.search(output) else count_qttest)(output)
        whole = whole and counts.total() > 0
    if not counts["failed"] and not (ended_well and whole):
        counts["failed"] = 1
    return counts


def results(path):
    """The elements of the JUnit file by the names of their suites; none where the run was cut before it was written."""
    try:
        return {case.get("name"): case for case in ElementTree.parse(path).iter("testcase")}
    except (OSError, ElementTree.ParseError):
        return {}


def described(counts):
    words = f"{counts['passed']} passed, {counts['failed']} failed"
    return words + f", {counts['skipped']} skipped" if counts["skipped"] else words


def main(suites_path, results_path, status):
    suites = json.loads(Path(suites_path).read_text())
    found = results(results_path)
    groups = {}
    for suite in suites:
        counts = count(suite, found.get(suite["name"]))
        groups.setdefault(suite["group"], Counter()).update(counts)
        if counts["failed"]:
            print(f"failed: {suite['name']}: {described(counts)}")
    for group, counts in groups.items():
        if counts.total():
            print(f"{group}: {described(counts)}")
    total = sum(groups.values(), Counter())
    if not total["failed"] and (int(status) or not total["passed"]):
        total["failed"] = 1
        print(f"failed: the run as a whole: no suite failed, but ctest ended with status {status}")
    print(described(total))
    return 1 if total["failed"] else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
