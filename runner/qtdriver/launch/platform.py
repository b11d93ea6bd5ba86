"""The parts of starting and ending processes that differ between operating systems, under the same names."""

from __future__ import annotations

import sys

if sys.platform == "win32":
    from .windows import CREATION_FLAGS, LaunchedProcesses

    RUNS_WINDOWS_PROGRAMS = True
else:
    from .supervision import LaunchedProcesses

    CREATION_FLAGS = 0
    RUNS_WINDOWS_PROGRAMS = False  # but by Wine

__all__ = ["CREATION_FLAGS", "RUNS_WINDOWS_PROGRAMS", "LaunchedProcesses"]
