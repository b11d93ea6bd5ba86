"""The command `qtdriver init`."""

from __future__ import annotations

import argparse
import shlex
from importlib.util import find_spec
from pathlib import Path
from typing import Any, Dict, List, Optional, Tuple

from ..errors import QtDriverError
from ..launch.program import find_program
from ..launch.qtversion import qt_major
from .trial import Trial, again_command, run_tests
from .writing import write_project

_REPORT = Path("test-results", "report.html")


def add_init_arguments(parser: argparse.ArgumentParser) -> None:
    """Declares the arguments of the command, but for the application behind "--"."""
    parser.add_argument("folder", type=Path, metavar="FOLDER", help="where to write; made if it is not there")
    parser.add_argument("--no-run", action="store_true", help="do not run the first test")
    parser.set_defaults(command=[])
    parser.usage = "qtdriver init [--no-run] [--build DIR] [--json] FOLDER -- APP ARGS..."


def initialise(
    folder: Path, command: List[str], *, build: Optional[Path], run: bool
) -> Tuple[str, Dict[str, Any], bool]:
    """Writes the folder, and runs its first test.

    Args:
        folder: where to write.
        command: the application with its arguments.
        build: the folder with the agents; None for the default one.
        run: whether to run the first test.

    Returns text for a person, data for a program, and whether the test passed, or was not to be run. Raises QtDriverError
    when the application cannot be driven, before anything is written, and when the folder cannot be written.
    """
    program = find_program(command[0])
    qt_major(program)
    named = [str(program.absolute()) if "/" in command[0] else command[0], *command[1:]]
    try:
        written = write_project(folder, named)
    except OSError as error:
        raise QtDriverError(f"cannot write {folder}: {error.strerror}") from error
    lines = [f"wrote {folder / name}" for name in written.new]
    lines += [f"kept {folder / name}, which was there" for name in written.kept]
    data: Dict[str, Any] = {"new": written.new, "kept": written.kept, "passed": None, "summary": None}
    if not run:
        return "\n".join(lines), data, True
    if find_spec("pytest") is None:
        raise QtDriverError(
            f"{folder} is written, but pytest is missing, which runs it: apt install python3-pytest"
        )
    trial = run_tests(folder, [] if build is None else [f"--qtdriver-build={build.absolute()}"])
    data.update(passed=trial.passed, summary=trial.summary)
    lines += _describe(folder, trial)
    return "\n".join(lines), data, trial.passed


def _describe(folder: Path, trial: Trial) -> List[str]:
    """Lines that say how the tests ended, and how to run them again."""
    lines = [f"the tests of {folder}: {trial.summary}"]
    if not trial.passed:
        lines.append(trial.output)
    if (folder / _REPORT).exists():
        lines.append(f"their report: {folder / _REPORT}")
    lines.append(f"again: cd {shlex.quote(str(folder))} && {again_command()}")
    return lines
