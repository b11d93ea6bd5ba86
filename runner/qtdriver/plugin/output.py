"""The output folder of a run, which no other run uses at the same time."""

from __future__ import annotations

import os
import shutil
import sys
from contextlib import suppress
from itertools import count
from pathlib import Path
from typing import IO, Optional

from . import folders

_LOCK = ".qtdriver-run"
"""A file in the folder that the run has locked, as long as it goes on."""

_OTHER_RUNS = "run-*"


class Output:
    """A folder that this run has to itself: the one of the settings, or one below where another run has that.

    Attributes:
        folder: the folder.
    """

    def __init__(self, wanted: Path) -> None:
        """Takes the folder, and removes what an earlier run has left there. Raises OSError."""
        for number in count(1):
            self.folder = wanted if number == 1 else wanted / _OTHER_RUNS.replace("*", str(number))
            self._lock = _lock(self.folder)
            if self._lock is not None:
                break
        folders.clear(self.folder)
        for other in self.folder.glob(_OTHER_RUNS):
            lock = _lock(other) if (other / _LOCK).is_file() else None
            if lock is not None:
                shutil.rmtree(other, ignore_errors=True)
                lock.close()

    def release(self) -> None:
        """Leaves the folder to other runs; removes it when nothing is in it."""
        if self._lock is not None:
            with suppress(OSError):
                if [file.name for file in self.folder.iterdir()] == [_LOCK]:
                    shutil.rmtree(self.folder)
            self._lock.close()
            self._lock = None


def _lock(folder: Path) -> "Optional[IO[str]]":
    """The locked file of a folder, which is made; None when another run has it."""
    while True:
        folder.mkdir(parents=True, exist_ok=True)
        try:
            file = (folder / _LOCK).open("a")
        except FileNotFoundError:
            continue  # another run has just removed the folder
        try:
            _lock_file(file)
            if os.path.samestat(os.fstat(file.fileno()), (folder / _LOCK).stat()):
                return file
        except FileNotFoundError:
            pass
        except OSError:
            file.close()
            return None
        file.close()


def _lock_file(file: "IO[str]") -> None:
    """Locks the file. Raises OSError when another process has it locked."""
    if sys.platform == "win32":
        import msvcrt

        msvcrt.locking(file.fileno(), msvcrt.LK_NBLCK, 1)
    else:
        import fcntl

        fcntl.flock(file, fcntl.LOCK_EX | fcntl.LOCK_NB)
