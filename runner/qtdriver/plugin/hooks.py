"""Follows a test through its phases: writes the bundle when one fails, and the trace after the last one."""

from __future__ import annotations

import sys
from pathlib import Path
from typing import Any, Generator, Optional

import pytest
from _pytest._code.code import ExceptionRepr

from .artifacts import TestArtifacts
from .hookimpl import hookimpl

ARTIFACTS = pytest.StashKey[TestArtifacts]()
"""The key of the artifacts in the stash of a test that has a driver."""

BUNDLE_PROPERTY, TRACE_PROPERTY = "qtdriver_bundle", "qtdriver_trace"
"""Properties of a test in its reports, and so in a JUnit XML file: paths of folders."""

MARK = "qtdriver"
"""Attribute of the reports of tests that use a driver; it travels from workers to the controller."""

RESULTS = "qtdriver-results"
"""The name under which Results is registered as a plugin; workers have no such plugin."""

_FIXTURE = "qtdriver"
_SECTION = "qtdriver"


class TestHooks:
    """The hooks around a single test, in the process that runs it."""

    @hookimpl(hookwrapper=True, tryfirst=True)
    def pytest_runtest_makereport(self, item: pytest.Item) -> Generator[None, Any, None]:
        """Writes the bundle of a failure while the applications still run, and adds its path to the report."""
        outcome = yield
        report: pytest.TestReport = outcome.get_result()
        if _FIXTURE not in getattr(item, "fixturenames", ()):
            return
        setattr(report, MARK, True)
        artifacts = item.stash.get(ARTIFACTS, None)
        if artifacts is None:
            return
        if report.failed:
            _add_failure(artifacts, report, item.config.invocation_params.dir)
        elif report.when == "call":
            artifacts.passed = report.passed
        if report.when == "teardown":
            artifacts.finish()
            del item.stash[ARTIFACTS]
        _set_property(item, report, BUNDLE_PROPERTY, artifacts.bundle)
        _set_property(item, report, TRACE_PROPERTY, artifacts.trace)

    def pytest_fixture_post_finalizer(self, request: pytest.FixtureRequest) -> None:
        """Writes the bundle when a fixture that uses the driver fails in its teardown.

        The failure is reported only after the applications have been ended. Up to pytest 7 the error is the one that is
        being handled here; later versions do not tell it, and the bundle then has only what ended applications leave.
        """
        artifacts = request.node.stash.get(ARTIFACTS, None)
        if artifacts is not None and artifacts.is_open and sys.exc_info()[1] is not None:
            artifacts.collect()

    @hookimpl(trylast=True)
    def pytest_sessionfinish(self, session: pytest.Session) -> None:
        """Keeps the trace of a test that was interrupted, and gives it a result where there are results."""
        results = session.config.pluginmanager.get_plugin(RESULTS)
        for item in getattr(session, "items", ()):
            artifacts = item.stash.get(ARTIFACTS, None)
            if artifacts is not None:
                artifacts.finish(keep_trace=True)
                if results is not None:
                    results.pytest_runtest_logreport(_interrupted(item, artifacts))


def _add_failure(artifacts: TestArtifacts, report: pytest.TestReport, base: Path) -> None:
    try:
        artifacts.collect()
        artifacts.add_error(report.when or "", report.longreprtext)
        text = artifacts.describe(base)
    except OSError as error:
        text = f"nothing could be kept of this failure: {error}"
    if isinstance(report.longrepr, ExceptionRepr):
        report.longrepr.addsection(_SECTION, text)
    else:
        report.sections.append((_SECTION, text))


def _interrupted(item: pytest.Item, artifacts: TestArtifacts) -> pytest.TestReport:
    report = pytest.TestReport(item.nodeid, item.location, {}, "failed", "interrupted", "call")
    setattr(report, MARK, True)
    _set_property(item, report, TRACE_PROPERTY, artifacts.trace)
    return report


def _set_property(item: pytest.Item, report: pytest.TestReport, name: str, path: Optional[Path]) -> None:
    """Adds a property to this report and to those of the later phases."""
    if path is not None and name not in dict(item.user_properties):
        item.user_properties.append((name, str(path)))
        report.user_properties.append((name, str(path)))
