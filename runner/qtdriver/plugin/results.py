"""The results of a run with all its workers: writes them and the page, and says in the terminal where they are.

Tests that went well are in the file of the results, and no longer in memory, as soon as they have ended.
"""

from __future__ import annotations

from contextlib import suppress
from pathlib import Path
from typing import Any, Dict, List, Optional

import pytest

from ..errors.paths import shown_path
from ..report.page import write_page
from ..report.results import FLAKY, ResultsWriter, SplitTests, remove_shards
from .attempts import Attempt, Attempts
from .hookimpl import hookimpl
from .output import Output
from .passed_runs import PassedRuns
from .remote import receive, tell_base
from .settings import OUTPUT, OUTPUT_OF_WORKERS, TRACE_OFF, Settings, read_settings
from .shards import SHARDS, Shards


class Results:
    """Collects the reports in the process that has them all, and writes the page when the run is over."""

    def __init__(self, settings: Settings, base: Path) -> None:
        """Paths are shown as seen from the folder `base`."""
        self._settings = settings
        self._base = base
        self._tests: Dict[str, Attempts] = {}
        self._lines: List[str] = []
        self._output: Optional[Output] = None
        self._writer: Optional[ResultsWriter] = None

    @hookimpl(tryfirst=True)
    def pytest_sessionstart(self, session: pytest.Session) -> None:
        """Takes the output folder, before workers are started, and removes what an earlier run has left."""
        if session.config.option.collectonly:
            return
        wanted = self._settings.output
        try:
            self._output = Output(wanted)
            remove_shards(self._output.folder)
            self._writer = ResultsWriter(self._output.folder, self._settings.shard)
        except OSError:
            return  # nothing can be kept there; the first failure says so
        session.config.stash[OUTPUT] = self._output.folder
        self._settings = read_settings(session.config)
        terminal = session.config.pluginmanager.getplugin("terminalreporter")
        if self._output.folder != wanted and terminal is not None:
            taken, own = (shown_path(path, self._base) for path in (wanted, self._output.folder))
            terminal.write_line(f"qtdriver: another run uses {taken}: results of this one are in {own}")

    @hookimpl(optionalhook=True)
    def pytest_configure_node(self, node: Any) -> None:
        """Tells a worker the output folder."""
        node.workerinput[OUTPUT_OF_WORKERS] = str(self._settings.output)
        tell_base(node, self._base)

    @hookimpl(tryfirst=True)
    def pytest_runtest_logreport(self, report: pytest.TestReport) -> None:
        """Adds a phase of a test. A test that has failed may be run again, and is written at the end."""
        try:
            receive(report, self._settings.output)
        except OSError as error:
            self._lines.append(f"the files of {report.nodeid} could not be written: {error}")
        attempts = self._tests.setdefault(report.nodeid, Attempts())
        attempts.add(report)
        if report.when == "teardown" and not attempts.failed():
            self._write(report.nodeid, self._tests.pop(report.nodeid))

    def pytest_collectreport(self, report: pytest.CollectReport) -> None:
        """Adds a file that could not be read as a test with an error, once: every worker reports it."""
        if report.failed:
            self._tests[report.nodeid] = Attempts([Attempt("error", message=report.longreprtext)])

    @hookimpl(trylast=True)
    def pytest_sessionfinish(self, session: pytest.Session) -> None:
        """Writes the page, also of a run that was interrupted."""
        for name, attempts in self._tests.items():
            self._write(name, attempts)
        if self._writer is not None and self._writer.drives and self._settings.trace != TRACE_OFF:
            self._write_page(self._writer)
        shards = session.config.pluginmanager.get_plugin(SHARDS)
        split = shards.split_tests if isinstance(shards, Shards) else None
        self._close(split, int(session.exitstatus))
        if self._settings.history is not None:
            with suppress(OSError):
                PassedRuns(self._settings.history).prune()
        if self._output is not None:
            self._output.release()

    def _write(self, name: str, attempts: Attempts) -> None:
        try:
            if self._writer is not None:
                self._writer.add(attempts.result(name))
        except OSError as error:
            self._give_up(error)

    def _close(self, split: Optional[SplitTests], status: int) -> None:
        try:
            if self._writer is not None:
                self._writer.close(split, status)
        except OSError as error:
            self._give_up(error)

    def _give_up(self, error: OSError) -> None:
        self._writer = None
        self._lines.append(f"the results could not be written: {error}")

    def _write_page(self, writer: ResultsWriter) -> None:
        page = self._settings.report
        try:
            page.parent.mkdir(parents=True, exist_ok=True)
            write_page(writer.read(), page)
        except Exception as error:  # the results of the tests are not to be lost for the sake of a page
            self._lines.append(f"no page of the results: {error}")
        else:
            self._lines.append(f"page of the results: {shown_path(page, self._base)}")

    def pytest_terminal_summary(self, terminalreporter: Any) -> None:
        """Prints the flaky tests, the paths of the bundles, and that of the page."""
        for name, attempts in self._tests.items():
            if attempts.result(name).outcome == FLAKY and attempts[-1].drives:
                terminalreporter.write_line(
                    f"qtdriver: flaky: {name} passed at attempt {len(attempts)}", yellow=True
                )
        for path in [one.bundle for attempts in self._tests.values() for one in attempts if one.bundle]:
            shown = shown_path(path, self._base)
            terminalreporter.write_line(f"qtdriver: kept of a failure: {shown}")
        for line in self._lines:
            terminalreporter.write_line(f"qtdriver: {line}")
