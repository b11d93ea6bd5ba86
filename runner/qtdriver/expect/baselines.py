"""Where the expected texts of tests are kept: the baselines, in files beside the test."""

from __future__ import annotations

import os
from contextlib import contextmanager
from contextvars import ContextVar
from dataclasses import dataclass, field
from pathlib import Path
from typing import Callable, Iterable, Iterator, List, Optional

from ..callers.callers import calling_frame

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

FOLDER = "snapshots"
"""The folder beside a test in which its baselines are, in a folder with the name of the test's file."""

_FAILURES = "test-results/pictures"
_FORBIDDEN = set('/\\:*?"<>|\0\n')


@dataclass
class Baselines:
    """The baselines of a test.

    Attributes:
        test_file: the file of the test.
        update: whether what is shown is written as the new baseline, in place of being compared.
        update_option: how the user says so, for messages.
        make_folder: makes the folder for pictures that are not as expected, and returns it.
        written: the baselines that were written so far.
    """

    test_file: Path
    update: bool = False
    update_option: str = "QTDRIVER_UPDATE=1"
    make_folder: Callable[[], Path] = lambda: _made(Path(_FAILURES))
    written: List[Path] = field(default_factory=list)

    def path(self, name: str, suffix: str) -> Path:
        """The file of a baseline. Raises ValueError for a name that is no file name."""
        if not name or name.startswith(".") or _FORBIDDEN & set(name):
            raise ValueError(f'{name!r} cannot be the name of a file: leave out / \\ : * ? " < > |')
        return self.test_file.parent / FOLDER / self.test_file.stem / f"{name}{suffix}"

    def find(self, name: str, suffixes: Iterable[str]) -> Optional[Path]:
        """The first of these files of a baseline that is there. Raises ValueError as path()."""
        return next(
            (path for path in (self.path(name, suffix) for suffix in suffixes) if path.is_file()), None
        )

    def write(self, path: Path, write: Callable[[Path], object]) -> None:
        """Writes a baseline.

        Args:
            path: its file, whose folder is made.
            write: writes the file.
        """
        path.parent.mkdir(parents=True, exist_ok=True)
        write(path)
        self.written.append(path)


_current: "ContextVar[Optional[Baselines]]" = ContextVar("baselines", default=None)


@contextmanager
def use_baselines(baselines: Baselines) -> Iterator[Baselines]:
    """A context in which checks use these baselines."""
    token = _current.set(baselines)
    try:
        yield baselines
    finally:
        _current.reset(token)


def current_baselines() -> Baselines:
    """The baselines of the test that runs; without pytest, those beside the file that has called the runner."""
    baselines = _current.get()
    if baselines is not None:
        return baselines
    file = Path(calling_frame().f_code.co_filename).absolute()
    return Baselines(file, os.environ.get("QTDRIVER_UPDATE") == "1")


def _made(folder: Path) -> Path:
    folder.mkdir(parents=True, exist_ok=True)
    return folder
