"""The snapshots of tests: where they are, and which of them a run has written."""

from __future__ import annotations

from pathlib import Path
from typing import Any, Callable, List

import pytest

from ..errors.paths import shown_path
from ..expect.baselines import Baselines
from .hookimpl import hookimpl
from .settings import Settings

WRITTEN = "qtdriver_snapshot"
"""Property of a test, in its reports and so in a JUnit XML file: the path of a snapshot that it has written."""


def baselines_of(item: pytest.Item, settings: Settings, make_folder: Callable[[], Path]) -> Baselines:
    """The baselines of a test, beside its file. `make_folder` makes the folder for pictures that are not as expected."""
    return Baselines(item.path, settings.update, "--qtdriver-update", make_folder)


def tell_written(item: pytest.Item, baselines: Baselines) -> None:
    """Adds what the test has written to its report."""
    for path in dict.fromkeys(baselines.written):
        item.user_properties.append((WRITTEN, shown_path(path)))


class WrittenSnapshots:
    """Says at the end of a run which snapshots it has written."""

    @hookimpl()
    def pytest_terminal_summary(self, terminalreporter: Any) -> None:
        """Prints their paths."""
        paths: List[str] = [
            value
            for reports in terminalreporter.stats.values()
            for report in reports
            for name, value in getattr(report, "user_properties", ())
            if name == WRITTEN
        ]
        for path in sorted(set(paths)):
            terminalreporter.write_line(f"qtdriver: snapshot written: {path}")
