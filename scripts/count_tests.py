#!/usr/bin/env python3
"""Counts tests in the logs of ctest and pytest: count_tests.py LOG...

Prints a line for each log and, last, "N passed, N failed" for all of them together. A program that failed without
saying which test did, by a crash or a time-out, counts as one failed test. So does a log without any test.
Exits with 1 when a test failed.
"""

import re
import sys
from pathlib import Path

OUTCOMES = ("passed", "failed", "skipped")

# One line of QtTest for a function or a row of its data; the set-up and clean-up of a program are no tests.
QTTEST = re.compile(
    r"^(PASS|FAIL!|XPASS|XFAIL|SKIP) +: \w+::(?!initTestCase\(\)|cleanupTestCase\(\))", re.MULTILINE
)
QTTEST_OUTCOMES = {
    "PASS": "passed",
    "XFAIL": "passed",
    "FAIL!": "failed",
    "XPASS": "failed",
    "SKIP": "skipped",
}

# The closing line of pytest.
PYTEST = re.compile(r"^=* ?((?:\d+ [a-z]+(?:, )?)+) in [\d.]+s.*$", re.MULTILINE)
PYTEST_OUTCOMES = {
    "passed": "passed",
    "failed": "failed",
    "error": "failed",
    "errors": "failed",
    "skipped": "skipped",
}

CTEST_BLOCK = re.compile(r"^\d+/\d+ Testing: (.*)$", re.MULTILINE)


def count(output, ended_well):
    """The outcomes in the output of one test program."""
    counts = dict.fromkeys(OUTCOMES, 0)
    for word in QTTEST.findall(output):
        counts[QTTEST_OUTCOMES[word]] += 1
    for summary in PYTEST.findall(output):
        for number, word in re.findall(r"(\d+) ([a-z]+)", summary):
            if word in PYTEST_OUTCOMES:
                counts[PYTEST_OUTCOMES[word]] += int(number)
    if not counts["failed"] and (not ended_well or not counts["passed"] + counts["skipped"]):
        counts["failed"] = 1
    return counts


def programs(text):
    """The test programs in a log, as pairs of output and whether each ended well."""
    blocks = CTEST_BLOCK.split(text)
    if len(blocks) == 1:
        yield text, True
    for output in blocks[2::2]:
        yield output, bool(re.search(r"^Test Passed\.$", output, re.MULTILINE))


def main(logs):
    total = dict.fromkeys(OUTCOMES, 0)
    for log in logs:
        counts = dict.fromkeys(OUTCOMES, 0)
        path = Path(log)
        text = path.read_text(errors="replace") if path.exists() else ""
        for output, ended_well in programs(text):
            for outcome, number in count(output, ended_well).items():
                counts[outcome] += number
        print(f"{path.parts[1]}: " + ", ".join(f"{counts[outcome]} {outcome}" for outcome in OUTCOMES))
        for outcome in OUTCOMES:
            total[outcome] += counts[outcome]
    if total["skipped"]:
        print(f"skipped in all: {total['skipped']}")
    print(f"{total['passed']} passed, {total['failed']} failed")
    return 1 if total["failed"] else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
