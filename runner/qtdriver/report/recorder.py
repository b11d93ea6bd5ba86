"""Records the steps of one test."""

from __future__ import annotations

import json
from pathlib import Path
from typing import TYPE_CHECKING, Dict, List

from ..steps import StepListener
from ..transcript import Step

if TYPE_CHECKING:
    from ..app import App


class Recorder(StepListener):
    """Records the steps of a test from its creation to close()."""

    def __init__(self, folder: Path, *, screenshots: bool = True) -> None:
        """`folder` is for the trace, if it is kept."""
        self._folder = folder
        self._steps: List[Dict[str, str]] = []

    def step_ended(self, app: "App", step: Step) -> None:
        """Takes the step in."""
        self._steps.append({"title": step.title, "error": step.error})

    def close(self, keep: bool) -> None:
        """Ends the recording. With `keep` the trace is in the folder then; without, nothing is."""
        if keep:
            self._folder.mkdir(parents=True, exist_ok=True)
            (self._folder / "trace.json").write_text(json.dumps({"steps": self._steps}), encoding="utf-8")
