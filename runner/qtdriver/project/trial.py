"""Runs the tests of a new folder once."""

from __future__ import annotations

import subprocess
import sys
from pathlib import Path
from typing import List, NamedTuple, Sequence

from ..launch.agent import default_build
from ..launch.progress import run_with_progress

_PLUGIN = "qtdriver.plugin"
_RUNNER = str(Path(__file__).resolve().parents[2])
_START = "import sys; sys.path[0] = sys.argv.pop(1); import pytest; sys.exit(pytest.main())"
_SUMMARY_MARK = "="


class Trial(NamedTuple):
    """How the tests ended.

    Attributes:
        passed: whether all passed.
        summary: the closing line of pytest.
        output: all that pytest printed.
    """

    passed: bool
    summary: str
    output: str


def run_tests(folder: Path, options: List[str]) -> Trial:
    """Runs the tests of the folder with pytest and these options."""
    text = f"running the tests of {folder}"
    ended = run_with_progress(pytest_command(options), text, cwd=folder, stdin=subprocess.DEVNULL)
    return trial_of(ended.returncode, ended.stdout.decode(errors="replace"))


def pytest_command(options: Sequence[str]) -> List[str]:
    """The command that runs pytest with the plugin and these options, in the folder that it is started in."""
    return [
        sys.executable,
        "-c",
        _START,
        _RUNNER,
        *_plugin_options(),
        "-p",
        "no:cacheprovider",
        *options,
    ]


def trial_of(status: int, output: str) -> Trial:
    """How the tests ended, from the exit status of pytest and all that it printed."""
    lines = [line for line in output.splitlines() if line.startswith(_SUMMARY_MARK)]
    summary = lines[-1].strip("= ") if lines else f"pytest ended with status {status}"
    return Trial(status == 0, summary, output)


def again_command() -> str:
    """The command that runs the tests, in their folder."""
    if is_installed():
        return "python3 -m pytest"
    options = f"-p {_PLUGIN} --qtdriver-build={default_build()}"
    return f"PYTHONPATH={_RUNNER} /usr/bin/python3 -m pytest {options}"


def is_installed() -> bool:
    """Whether pytest finds the plugin by itself."""
    from importlib.metadata import distributions  # slow to import, and most commands need not wait for it

    return any(
        entry.group == "pytest11" and entry.value == _PLUGIN
        for distribution in distributions()
        for entry in distribution.entry_points
    )


def _plugin_options() -> List[str]:
    return [] if is_installed() else ["-p", _PLUGIN]
