"""The results of a run with all its workers: writes the page, and says in the terminal where it is."""

from __future__ import annotations

from dataclasses import dataclass
from pathlib import Path
from typing import Any, Dict, List, Optional

import pytest

from ..report.page import TestResult, write_page
from . import folders
from .hookimpl import hookimpl
from .hooks import BUNDLE_PROPERTY, MARK, TRACE_PROPERTY
from .settings import TRACE_OFF, Settings

_CRASHED_WORKER = "???"
"""The phase in the report of a test whose worker has died."""

_RANKS = ("", "passed", "skipped", "error", "failed")
"""Outcomes of the phases of a test, in ascending order: the test has the highest of its phases."""


@dataclass
class _Test:
    """The result of a test, as far as its reports have come."""

    outcome: str = ""
    seconds: float = 0.0
    message: str = ""
    trace: Optional[Path] = None
    bundle: Optional[Path] = None

    def add(self, report: pytest.TestReport) -> None:
        outcome: str = report.outcome
        if outcome == "failed" and report.when != "call":
            outcome = "error"
        if outcome in _RANKS:
            self.outcome = max(self.outcome, outcome, key=_RANKS.index)
        self.seconds += getattr(report, "duration", 0.0)
        if not report.passed:
            self.message = "\n".join(filter(None, [self.message, _message(report)]))
        properties = dict(report.user_properties)
        self.trace = _path(properties.get(TRACE_PROPERTY)) or self.trace
        self.bundle = _path(properties.get(BUNDLE_PROPERTY)) or self.bundle


class Results:
    """Collects the reports in the process that has them all, and writes the page when the run is over."""

    def __init__(self, settings: Settings, base: Path) -> None:
        """Paths are shown as seen from the folder `base`."""
        self._settings = settings
        self._base = base
        self._tests: Dict[str, _Test] = {}
        self._lines: List[str] = []

    def pytest_sessionstart(self, session: pytest.Session) -> None:
        """Removes what an earlier run has left."""
        if not session.config.option.collectonly:
            folders.clear(self._settings.output)

    def pytest_runtest_logreport(self, report: pytest.TestReport) -> None:
        """Adds a phase of a test that uses a driver, or whose worker crashed, so that nobody knows whether it does."""
        if getattr(report, MARK, False) or report.when == _CRASHED_WORKER:
            self._tests.setdefault(report.nodeid, _Test()).add(report)

    @hookimpl(trylast=True)
    def pytest_sessionfinish(self) -> None:
        """Writes the page, also of a run that was interrupted."""
        if not self._tests or self._settings.trace == TRACE_OFF:
            return
        results = [
            TestResult(name, test.outcome, test.seconds, test.message, test.trace, test.bundle)
            for name, test in self._tests.items()
        ]
        page = self._settings.report
        try:
            page.parent.mkdir(parents=True, exist_ok=True)
            write_page(results, page)
        except Exception as error:  # the results of the tests are not to be lost for the sake of a page
            self._lines.append(f"no page of the results: {error}")
        else:
            self._lines.append(f"page of the results: {folders.displayed_path(page, self._base)}")

    def pytest_terminal_summary(self, terminalreporter: Any) -> None:
        """Prints the paths of the bundles and of the page."""
        bundles = [test.bundle for test in self._tests.values() if test.bundle is not None]
        for path in bundles:
            shown = folders.displayed_path(path, self._base)
            terminalreporter.write_line(f"qtdriver: kept of a failure: {shown}")
        for line in self._lines:
            terminalreporter.write_line(f"qtdriver: {line}")


def _path(text: Optional[object]) -> Optional[Path]:
    return Path(str(text)) if text else None


def _message(report: pytest.TestReport) -> str:
    """The error with its traceback, or the reason for skipping."""
    longrepr = report.longrepr
    return str(longrepr[2]) if isinstance(longrepr, tuple) else report.longreprtext
