"""The files that one test leaves: the bundle of a failure, and the trace of its steps."""

from __future__ import annotations

import time
from contextlib import suppress
from pathlib import Path
from typing import List, Optional, Tuple

from ..api.app import App
from ..api.disconnection import ended_error
from ..api.driver import Driver
from ..crashes.cores import is_crash
from ..errors import ApplicationEndedError
from ..protocol.secrets import Secrets
from ..trace.differing import add_difference
from ..trace.recorder import Recorder
from . import folders
from .bundle import write_bundle
from .failed_starts import FailedStarts
from .passed_runs import PassedRuns
from .settings import TRACE_OFF, TRACE_ON, Settings

_TRACE = "trace"
_ERROR = "error.txt"
_PICTURES = "pictures"


class TestArtifacts:
    """Records one test with its driver, and writes the bundle and the trace that are kept of it.

    Attributes:
        folder: the folder of the bundle and the trace, if any is kept.
        bundle: the same folder once it holds the bundle of a failure.
        trace: the folder of the trace once it is written.
        passed: whether the body of the test has passed.
        is_open: whether the driver is open, so that applications may still run.
    """

    __test__ = False  # pytest takes classes with such names for tests

    def __init__(self, driver: Driver, settings: Settings, node_id: str, attempt: int = 1) -> None:
        """Begins to record the steps of the driver, if the settings say so.

        Args:
            driver: the driver of the test.
            settings: those of the run; its output folder has been cleared when it began.
            node_id: the name of the test.
            attempt: its number, from 1; tests that are run again keep what each attempt has left.
        """
        self.folder = folders.next_folder_of(settings.output, node_id, attempt)
        self.bundle: Optional[Path] = None
        self.trace: Optional[Path] = None
        self.passed = False
        self._driver = driver
        self._began = time.monotonic()
        self._notes: List[str] = []
        self._node_id = node_id
        # An attempt that passes after one that failed is compared with that.
        self._keeps_trace = settings.trace == TRACE_ON or (settings.trace != TRACE_OFF and attempt > 1)
        self._passed_runs = None if settings.history is None else PassedRuns(settings.history)
        self._recorder: Optional[Recorder] = None
        self.is_open = True
        self._failed_starts = FailedStarts()
        driver.listeners.append(self._failed_starts)
        if settings.trace != TRACE_OFF:
            self._recorder = Recorder(self.folder / _TRACE)
            driver.listeners.append(self._recorder)

    def apps(self) -> Tuple[App, ...]:
        """The applications of the test."""
        return self._driver.apps

    def collect(self) -> None:
        """Writes the bundle of a failure, once, from the applications as they are now."""
        if self.bundle is not None:
            return
        self.bundle = self.folder
        folders.make(self.folder)
        if not self.is_open:
            self._notes.append(
                "the applications had been ended before this failure: it came after the driver's end"
            )
        self._notes += write_bundle(self._driver.apps, self._failed_starts.starts, self.folder, self._began)
        self._keeps_trace = True
        self._end_recording()
        self._compare_with_passed()

    def make_pictures_folder(self) -> Path:
        """Makes the folder for the pictures that are not as expected, and returns it."""
        folders.make(self.folder)
        folder = self.folder / _PICTURES
        folder.mkdir(exist_ok=True)
        return folder

    def add_error(self, phase: str, text: str) -> None:
        """Adds an error of "setup", "call" or "teardown" to the bundle."""
        with (self.folder / _ERROR).open("a", encoding="utf-8", errors="backslashreplace") as file:
            file.write(f"error in {phase}:\n{text}\n")

    def secrets(self) -> Secrets:
        """The passwords that the test has typed."""
        return Secrets.of_all(app.connection.secrets for app in self._driver.apps)

    def describe(self, shown: str) -> str:
        """A text on the bundle: its path as `shown` to the user, its files, and what could not be written."""
        names = sorted(path.name for path in self.folder.iterdir() if not path.name.startswith("."))
        return "\n".join([f"{shown}: {', '.join(names)}", *self._notes])

    def close_driver(self) -> Optional[ApplicationEndedError]:
        """Ends the applications.

        Returns an error when the test passed although an application crashed or ended with an error status.
        """
        ends = [error for error in (app.unexpected_end() for app in self._driver.apps) if error is not None]
        if ends and self.passed:
            self.collect()
        if self._keeps_trace or self._is_to_be_compared_with():
            self._end_recording()
        running = [
            app for app in self._driver.apps if app.process is not None and app.process.status() is None
        ]
        self._driver.close()
        self.is_open = False
        ends += [error for error in map(_crash, running) if error is not None]
        return ends[0] if ends and self.passed else None

    def finish(self, *, keep_trace: bool = False) -> None:
        """Ends the recording. Its trace is kept if the test failed, the settings keep all, or `keep_trace` is set."""
        self._keeps_trace = self._keeps_trace or keep_trace
        self._end_recording()
        if not keep_trace:
            self._keep_passed()
        if self.bundle is None and not self._keeps_trace:
            # There may be a trace for later failures, and pictures of a failure that the test has expected.
            folders.remove(self.folder)
            self.trace = None

    def _end_recording(self) -> None:
        recorder, self._recorder = self._recorder, None
        if recorder is None:
            return
        self._driver.listeners.remove(recorder)
        keeps = self._keeps_trace or self._is_to_be_compared_with()
        if keeps:
            folders.make(self.folder)
        try:
            # The pictures of a failure have to be there when it is reported, and those of a run for comparison when that is
            # packed. Those of other tests that passed are written while the run goes on.
            later = self.bundle is None and not self._is_to_be_compared_with()
            recorder.close(keep=keeps, pictures_later=later)
        except OSError as error:
            self._notes.append(f"no trace: {error}")
            return
        if keeps:
            self.trace = self.folder / _TRACE

    def _is_to_be_compared_with(self) -> bool:
        """Whether later failures of the test are compared with this run."""
        return self._passed_runs is not None and self.passed and self.bundle is None

    def _keep_passed(self) -> None:
        if self._passed_runs is not None and self._is_to_be_compared_with() and self.trace is not None:
            with suppress(OSError):  # a test that passed does not fail for that
                self._passed_runs.keep(self._node_id, self.trace)

    def _compare_with_passed(self) -> None:
        """Adds the first difference from the last run that passed to the trace, and a note of it."""
        found = None if self._passed_runs is None else self._passed_runs.find(self._node_id)
        if found is None or self.trace is None:
            return
        try:
            note = add_difference(self.trace, *found)
        except Exception as error:  # whatever the file is: it is no part of the test
            note = f"no comparison with the last run that passed: {error}"
        self._notes += filter(None, [note])


def _crash(app: App) -> Optional[ApplicationEndedError]:
    """The error for an application that was to end and crashed instead; None for any other one."""
    status = None if app.process is None else app.process.status()
    if status is None or not is_crash(status):
        return None
    return ended_error(app)
