"""The results of a run with all its workers: writes the page, and says in the terminal where it is."""

from __future__ import annotations

from dataclasses import dataclass, replace
from pathlib import Path
from typing import Any, Dict, List, Optional

import pytest

from ..report.page import FLAKY, TestResult, write_page
from . import folders
from .hookimpl import hookimpl
from .hooks import BUNDLE_PROPERTY, MARK, TRACE_PROPERTY
from .output import Output
from .settings import OUTPUT, OUTPUT_OF_WORKERS, TRACE_OFF, Settings, read_settings

_CRASHED_WORKER = "???"
"""The phase in the report of a test whose worker has died."""

_RERUN = "rerun"
"""The outcome that plugins which run tests again give to the failure of an attempt that is not the last one."""

_RANKS = ("", "passed", "skipped", "error", "failed")
"""Outcomes of the phases of a test, in ascending order: the test has the highest of its phases."""


@dataclass
class _Attempt:
    """The result of one attempt at a test, as far as its reports have come."""

    outcome: str = ""
    seconds: float = 0.0
    message: str = ""
    trace: Optional[Path] = None
    bundle: Optional[Path] = None

    def add(self, report: pytest.TestReport) -> None:
        outcome: str = report.outcome
        if outcome in ("failed", _RERUN):
            outcome = "failed" if report.when in ("call", _CRASHED_WORKER) else "error"
        if outcome in _RANKS:
            self.outcome = max(self.outcome, outcome, key=_RANKS.index)
        self.seconds += getattr(report, "duration", 0.0)
        if not report.passed:
            self.message = "\n".join(filter(None, [self.message, _message(report)]))
        paths: Dict[str, str] = getattr(report, MARK, {})
        self.trace = _path(paths.get(TRACE_PROPERTY)) or self.trace
        self.bundle = _path(paths.get(BUNDLE_PROPERTY)) or self.bundle


class _Attempts(List[_Attempt]):
    """The attempts at a test, oldest first."""

    def add(self, report: pytest.TestReport) -> None:
        """Adds a phase; each attempt begins with its setup."""
        if report.when == "setup" or not self:
            self.append(_Attempt())
        self[-1].add(report)

    def result(self, name: str) -> TestResult:
        """The result of the test `name`: that of its last attempt, or flaky if only an earlier one has failed."""
        results = [
            TestResult(name, one.outcome, one.seconds, one.message, one.trace, one.bundle) for one in self
        ]
        last = results[-1]
        is_flaky = last.outcome == "passed" and len(self) > 1
        return replace(last, outcome=FLAKY if is_flaky else last.outcome, earlier=tuple(results[:-1]))


class Results:
    """Collects the reports in the process that has them all, and writes the page when the run is over."""

    def __init__(self, settings: Settings, base: Path) -> None:
        """Paths are shown as seen from the folder `base`."""
        self._settings = settings
        self._base = base
        self._tests: Dict[str, _Attempts] = {}
        self._lines: List[str] = []
        self._output: Optional[Output] = None

    @hookimpl(tryfirst=True)
    def pytest_sessionstart(self, session: pytest.Session) -> None:
        """Takes the output folder, before workers are started, and removes what an earlier run has left."""
        if session.config.option.collectonly:
            return
        wanted = self._settings.output
        try:
            self._output = Output(wanted)
        except OSError:
            return  # nothing can be kept there; the first failure says so
        session.config.stash[OUTPUT] = self._output.folder
        self._settings = read_settings(session.config)
        terminal = session.config.pluginmanager.getplugin("terminalreporter")
        if self._output.folder != wanted and terminal is not None:
            taken, own = (folders.displayed_path(path, self._base) for path in (wanted, self._output.folder))
            terminal.write_line(f"qtdriver: another run uses {taken}: results of this one are in {own}")

    @hookimpl(optionalhook=True)
    def pytest_configure_node(self, node: Any) -> None:
        """Tells a worker the output folder."""
        node.workerinput[OUTPUT_OF_WORKERS] = str(self._settings.output)

    def pytest_runtest_logreport(self, report: pytest.TestReport) -> None:
        """Adds a phase of a test that uses a driver, or whose worker crashed, so that nobody knows whether it does."""
        if hasattr(report, MARK) or report.when == _CRASHED_WORKER:
            self._tests.setdefault(report.nodeid, _Attempts()).add(report)

    @hookimpl(trylast=True)
    def pytest_sessionfinish(self) -> None:
        """Writes the page, also of a run that was interrupted."""
        if self._tests and self._settings.trace != TRACE_OFF:
            self._write_page()
        if self._output is not None:
            self._output.release()

    def _write_page(self) -> None:
        page = self._settings.report
        try:
            page.parent.mkdir(parents=True, exist_ok=True)
            write_page([attempts.result(name) for name, attempts in self._tests.items()], page)
        except Exception as error:  # the results of the tests are not to be lost for the sake of a page
            self._lines.append(f"no page of the results: {error}")
        else:
            self._lines.append(f"page of the results: {folders.displayed_path(page, self._base)}")

    def pytest_terminal_summary(self, terminalreporter: Any) -> None:
        """Prints the flaky tests, the paths of the bundles, and that of the page."""
        for name, attempts in self._tests.items():
            if attempts.result(name).outcome == FLAKY:
                terminalreporter.write_line(
                    f"qtdriver: flaky: {name} passed at attempt {len(attempts)}", yellow=True
                )
        for path in [one.bundle for attempts in self._tests.values() for one in attempts if one.bundle]:
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
