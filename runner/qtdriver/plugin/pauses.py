"""--qtdriver-pause-on-failure: a test that has failed is paused while its applications still run."""

from __future__ import annotations

from typing import Any, Generator

import pytest

from ..errors import PauseError
from ..pausing.pause import pause_after_failure
from ..pausing.terminal import check_person
from .hookimpl import hookimpl
from .hooks import ARTIFACTS


def register_pauses(config: pytest.Config) -> None:
    """Makes tests pause when they fail. Raises pytest.UsageError where nobody could have them go on."""
    try:
        check_person()
    except PauseError as error:
        raise pytest.UsageError(f"--qtdriver-pause-on-failure: {error}") from None
    if config.getoption("numprocesses", None):
        raise pytest.UsageError(
            "--qtdriver-pause-on-failure goes without -n: a person goes on with one test at a time"
        )
    config.pluginmanager.register(Pauses(), "qtdriver-pauses")


class Pauses:
    """Pauses each test that fails, once its bundle is written."""

    @hookimpl(hookwrapper=True, tryfirst=True)
    def pytest_runtest_makereport(
        self, item: pytest.Item, call: "pytest.CallInfo[Any]"
    ) -> Generator[None, Any, None]:
        """Runs around the hook of TestHooks, which is registered earlier."""
        outcome = yield
        report: pytest.TestReport = outcome.get_result()
        artifacts = item.stash.get(ARTIFACTS, None)
        if artifacts is None or not report.failed or report.when != "call" or call.excinfo is None:
            return
        running = [app for app in artifacts.apps() if not app.connection.is_closed()]
        if running:
            entries = [entry for entry in call.excinfo.traceback if str(entry.path) == str(item.path)]
            entry = entries[-1] if entries else call.excinfo.traceback[-1]
            error = call.excinfo.exconly(tryshort=True)
            names = dict(entry.frame.f_locals)
            pause_after_failure(running[-1], str(entry.path), entry.lineno + 1, error, names)
