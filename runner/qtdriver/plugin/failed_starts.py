"""Notes what there is to see of an application that does not start, before it is ended."""

from __future__ import annotations

import tempfile
from dataclasses import dataclass
from pathlib import Path
from typing import List

from ..api.steps import StepListener
from ..desktop.screen_process import SCREENS, display_name
from ..errors import QtDriverError
from ..launch.process import FailedStart


@dataclass(frozen=True)
class SeenStart:
    """A start that has failed, and what was seen before the application was ended.

    Attributes:
        start: the start.
        screenshot: a PNG file; empty where there is none.
        windows: lines that list the windows of the application as the window manager knows them.
        notes: what could not be seen, for a person.
    """

    start: FailedStart
    screenshot: bytes
    windows: List[str]
    notes: List[str]


class FailedStarts(StepListener):
    """Looks at applications that do not start. Add it to the listeners of a driver.

    Attributes:
        starts: those that have failed.
    """

    def __init__(self) -> None:
        self.starts: List[SeenStart] = []

    def start_failed(self, start: FailedStart) -> None:
        """Looks at the screen and the windows."""
        notes: List[str] = []
        display = display_name(start.display)
        screenshot, windows = b"", ["the windows could not be listed"]
        try:
            screenshot = _screenshot(display)
        except (QtDriverError, OSError) as error:
            notes.append(f"no screenshot of it: {error}")
        try:
            told = SCREENS.windows(display)
            windows = [f"  {text}" for pid, text in told if start.process.launched.owns(pid)]
        except QtDriverError as error:
            notes.append(f"no list of its windows: {error}")
        self.starts.append(SeenStart(start, screenshot, windows or ["no visible window"], notes))


def _screenshot(display: str) -> bytes:
    with tempfile.TemporaryDirectory(prefix="qtdriver-") as folder:
        file = Path(folder) / "screenshot.png"
        SCREENS.save_picture(display, file).wait()
        return file.read_bytes()
