"""The results of tests, made of the reports of their phases as these come."""

from __future__ import annotations

from dataclasses import dataclass, replace
from pathlib import Path
from typing import Dict, List, Optional, Tuple

import pytest

from ..report.results import FLAKY, TestResult
from .hooks import BUNDLE_PROPERTY, MARK, TRACE_PROPERTY

CRASHED_WORKER = "???"
"""The phase in the report of a test whose worker has died."""

_RERUN = "rerun"
"""The outcome that plugins which run tests again give to the failure of an attempt that is not the last one."""

_PATHS = (BUNDLE_PROPERTY, TRACE_PROPERTY)
"""Properties that the results have as paths."""

_RANKS = ("", "passed", "skipped", "error", "failed")
"""Outcomes of the phases of a test, in ascending order: the test has the highest of its phases."""


@dataclass
class Attempt:
    """The result of one attempt at a test, as far as its reports have come."""

    outcome: str = ""
    seconds: float = 0.0
    message: str = ""
    trace: Optional[Path] = None
    bundle: Optional[Path] = None
    properties: Tuple[Tuple[str, str], ...] = ()
    drives: bool = False
    worker: str = ""

    def add(self, report: pytest.TestReport) -> None:
        """Adds a phase."""
        outcome: str = report.outcome
        if outcome in ("failed", _RERUN):
            outcome = "failed" if report.when in ("call", CRASHED_WORKER) else "error"
        if outcome in _RANKS:
            self.outcome = max(self.outcome, outcome, key=_RANKS.index)
        self.seconds += getattr(report, "duration", 0.0)
        if not report.passed:
            self.message = "\n".join(filter(None, [self.message, _message(report)]))
        # Nobody knows whether a test uses a driver whose worker has crashed.
        self.drives = self.drives or hasattr(report, MARK) or report.when == CRASHED_WORKER
        told = getattr(report, "user_properties", ())
        self.properties = tuple((str(name), str(value)) for name, value in told if name not in _PATHS)
        self.worker = _worker(report) or self.worker
        paths: Dict[str, str] = getattr(report, MARK, {})
        self.trace = _path(paths.get(TRACE_PROPERTY)) or self.trace
        self.bundle = _path(paths.get(BUNDLE_PROPERTY)) or self.bundle


class Attempts(List[Attempt]):
    """The attempts at a test, oldest first."""

    def add(self, report: pytest.TestReport) -> None:
        """Adds a phase; each attempt begins with its setup."""
        if report.when == "setup" or not self:
            self.append(Attempt())
        self[-1].add(report)

    def failed(self) -> bool:
        """Whether an attempt has failed."""
        return any(one.outcome in ("failed", "error") for one in self)

    def result(self, name: str) -> TestResult:
        """The result of the test `name`: that of its last attempt, or flaky if only an earlier one has failed."""
        results = [TestResult(name, **vars(one)) for one in self]
        last = results[-1]
        is_flaky = last.outcome == "passed" and len(self) > 1
        return replace(last, outcome=FLAKY if is_flaky else last.outcome, earlier=tuple(results[:-1]))


def _worker(report: pytest.TestReport) -> str:
    """The worker of pytest-xdist that ran the test, with its machine where that is another one; empty without workers."""
    gateway = getattr(getattr(report, "node", None), "gateway", None)
    if gateway is None:
        return ""
    machine = str(gateway.spec.ssh or gateway.spec.socket or "").rpartition(" ")[2]
    return f"{gateway.id} on {machine}" if machine else str(gateway.id)


def _path(text: Optional[object]) -> Optional[Path]:
    return Path(str(text)) if text else None


def _message(report: pytest.TestReport) -> str:
    """The error with its traceback, or the reason for skipping."""
    longrepr = report.longrepr
    return str(longrepr[2]) if isinstance(longrepr, tuple) else report.longreprtext
