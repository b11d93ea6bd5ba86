"""Follows a test through its phases: writes the bundle when one fails, and the trace after the last one."""

from __future__ import annotations

import warnings
from pathlib import Path
from typing import Any, Callable, Generator, Optional

import pytest
from _pytest._code.code import ExceptionRepr

from ..desktop.screen_process import SCREENS
from ..errors import PictureError
from ..errors.paths import shown_path
from .artifacts import TestArtifacts
from .hidden import hide_secrets
from .hookimpl import hookimpl
from .remote import sender_of

ARTIFACTS = pytest.StashKey[TestArtifacts]()
"""The key of the artifacts in the stash of a test that has a driver."""

ATTEMPT = pytest.StashKey[int]()
"""The key of the number of the attempt in the stash of a test; plugins that run tests again count from 1, too."""

BUNDLE_PROPERTY, TRACE_PROPERTY = "qtdriver_bundle", "qtdriver_trace"
"""Properties of a test in a JUnit XML file: paths of folders, of each attempt that has left one."""

MARK = "qtdriver"
"""Attribute of the reports of tests that use a driver, a dictionary by the names of the properties: the paths of this
attempt. It travels from workers to the controller."""

RESULTS = "qtdriver-results"
"""The name under which Results is registered as a plugin; workers have no such plugin."""

_FIXTURE = "qtdriver"
_SECTION = "qtdriver"
_ADD = "addfinalizer"


class TestHooks:
    """The hooks around a single test, in the process that runs it."""

    @hookimpl(tryfirst=True)
    def pytest_runtest_setup(self, item: pytest.Item) -> None:
        """Counts the attempts."""
        item.stash[ATTEMPT] = item.stash.get(ATTEMPT, 0) + 1

    @hookimpl(hookwrapper=True, tryfirst=True)
    def pytest_runtest_makereport(self, item: pytest.Item) -> Generator[None, Any, None]:
        """Writes the bundle of a failure while the applications still run, and adds its path to the report."""
        outcome = yield
        report: pytest.TestReport = outcome.get_result()
        if _FIXTURE not in getattr(item, "fixturenames", ()):
            return
        artifacts = item.stash.get(ARTIFACTS, None)
        if artifacts is None:
            setattr(report, MARK, {})
            return
        if not report.passed:
            hide_secrets(report, artifacts.secrets())
        if report.failed:
            _add_failure(artifacts, report, item.config)
        elif report.when == "call":
            artifacts.passed = report.passed
        if report.when == "teardown":
            artifacts.finish()
            del item.stash[ARTIFACTS]
        _mark(report, artifacts, item)
        _send(report, artifacts, item.config)

    @hookimpl(hookwrapper=True)
    def pytest_fixture_setup(
        self, fixturedef: Any, request: pytest.FixtureRequest
    ) -> Generator[None, None, None]:
        """Writes the bundle when a fixture that uses the driver fails in its teardown.

        The failure is reported only after the applications have been ended, and from pytest 8.1 on no hook tells of it
        before that. So the finalizers of fixtures are watched.
        """
        item = request.node

        def add_watched(finalizer: Callable[[], object]) -> None:
            type(fixturedef).addfinalizer(fixturedef, lambda: _finalize(item, finalizer))

        if isinstance(item, pytest.Item) and _FIXTURE in getattr(item, "fixturenames", ()):
            setattr(fixturedef, _ADD, add_watched)
        yield

    def pytest_fixture_post_finalizer(self, fixturedef: Any) -> None:
        """Ends the watch."""
        vars(fixturedef).pop(_ADD, None)

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
        problem = _finish_pictures()
        if problem:
            warnings.warn(f"qtdriver: {problem}", stacklevel=1)


def _finalize(item: pytest.Item, finalizer: Callable[[], object]) -> None:
    """Runs the finalizer of a fixture; when it fails, the bundle is written first, as long as applications may run."""
    try:
        finalizer()
    except Exception:
        artifacts = item.stash.get(ARTIFACTS, None)
        if artifacts is not None and artifacts.is_open:
            artifacts.collect()
        raise


def _add_failure(artifacts: TestArtifacts, report: pytest.TestReport, config: pytest.Config) -> None:
    sender = sender_of(config)
    base = config.invocation_params.dir if sender is None else sender.base
    try:
        artifacts.collect()
        artifacts.add_error(report.when or "", report.longreprtext)
        text = artifacts.describe(shown_path(_path_there(artifacts.folder, config), base))
    except OSError as error:
        text = f"nothing could be kept of this failure: {error}"
    if isinstance(report.longrepr, ExceptionRepr):
        report.longrepr.addsection(_SECTION, text)
    else:
        report.sections.append((_SECTION, text))


def _interrupted(item: pytest.Item, artifacts: TestArtifacts) -> pytest.TestReport:
    report = pytest.TestReport(item.nodeid, item.location, {}, "failed", "interrupted", "call")
    _mark(report, artifacts, item)
    return report


def _mark(report: pytest.TestReport, artifacts: TestArtifacts, item: pytest.Item) -> None:
    """Tells the paths of this attempt with the report, and adds them as properties, once, to those of later phases."""
    paths = {
        BUNDLE_PROPERTY: _text(artifacts.bundle, item.config),
        TRACE_PROPERTY: _text(artifacts.trace, item.config),
    }
    setattr(report, MARK, paths)
    for entry in paths.items():
        if entry[1] and entry not in item.user_properties:
            item.user_properties.append(entry)
            report.user_properties.append(entry)


def _send(report: pytest.TestReport, artifacts: TestArtifacts, config: pytest.Config) -> None:
    """In a worker of another machine, attaches the files of the test to the report, which brings them to the controller."""
    sender = sender_of(config)
    if sender is None or not (artifacts.bundle or artifacts.trace):
        return
    _finish_pictures()
    try:
        sender.attach(report, artifacts.folder)
    except OSError as error:
        report.sections.append((_SECTION, f"not all files of this test could be sent: {error}"))
    if report.when == "teardown":
        sender.forget(artifacts.folder)


def _finish_pictures() -> str:
    """Waits until the pictures of tests that passed are written. Returns what is wrong, empty for nothing."""
    try:
        SCREENS.finish()
    except (OSError, PictureError) as error:
        return f"not all pictures could be written: {error}"
    return ""


def _text(path: Optional[Path], config: pytest.Config) -> str:
    return "" if path is None else str(_path_there(path, config))


def _path_there(path: Path, config: pytest.Config) -> Path:
    """The path on the machine of the controller."""
    sender = sender_of(config)
    return path if sender is None else sender.path_there(path)
