"""Pictures of screens, taken by a process of its own: an X server that does not answer holds up no test."""

from __future__ import annotations

import atexit
import json
import os
import subprocess
import sys
import threading
import time
from pathlib import Path
from typing import Any, Dict, Iterable, List, NamedTuple, Optional, Tuple

from ..errors import PictureError
from .screenshots import SavedPicture

_PACKAGE = Path(__file__).resolve().parents[1]

_START = """
import sys, types
package = sys.modules["qtdriver"] = types.ModuleType("qtdriver")
package.__path__ = sys.argv[1:]
from qtdriver.desktop.screen_worker import main
main()
"""
"""The package's own module would import all of the runner, which takes more time than all else at the start."""

ANSWER_SECONDS = 5.0
"""How long a display may take to answer; after that it is not asked again."""

_SAVE_SECONDS = 30.0


def display_name(display: Optional[str]) -> str:
    """The X display; None stands for that of this process. Empty where there is none."""
    return os.environ.get("DISPLAY", "") if display is None else display


class SavedPictures(NamedTuple):
    """The outcome of saving pictures.

    Attributes:
        files: the files by the numbers of the orders, without those that have been dropped to save memory.
        dropped: how many these are.
        problem: why others are missing; empty where none is.
    """

    files: Dict[int, SavedPicture]
    dropped: int
    problem: str


class Pending:
    """An order that was given: its answer, when it is there."""

    def __init__(self, number: int, display: str) -> None:
        self.number = number
        self.display = display
        self.answered_at = 0.0
        self.result: Any = None
        self.error = ""
        self.file_error = 0
        self.path = ""
        self._done = threading.Event()

    def __repr__(self) -> str:
        return f"<order {self.number}, {'done' if self.is_done() else 'under way'}>"

    def answer(self, result: object, error: str, file_error: int = 0) -> None:
        """Sets the answer. `file_error` is the number of the system's error for a file that cannot be written."""
        self.result, self.error, self.file_error = result, error, file_error
        self.answered_at = time.monotonic()
        self._done.set()

    def is_done(self) -> bool:
        """Whether the answer is there."""
        return self._done.is_set()

    def wait(self, seconds: float = ANSWER_SECONDS) -> Any:
        """The result. Raises OSError for a file that cannot be written, PictureError for another error, and when there is no
        answer in time."""
        if not self._done.wait(seconds):
            raise PictureError(f"the display {self.display} has not answered within {seconds:g} seconds")
        if self.file_error:
            raise OSError(self.file_error, os.strerror(self.file_error), self.path)
        if self.error:
            raise PictureError(self.error)
        return self.result


class ScreenProcess:
    """The process that takes the pictures. It starts with the first order, and ends with close() or with this process."""

    def __init__(self) -> None:
        self._process: "Optional[subprocess.Popen[str]]" = None
        self._pending: Dict[int, Pending] = {}
        self._reader: Optional[threading.Thread] = None
        self._number = 0
        self._writes_later = False
        self._lock = threading.Lock()

    def __repr__(self) -> str:
        return f"<pictures of screens, {'not started' if self._process is None else 'running'}>"

    def grab(self, display: str, store: int, kept_bytes: int, delay: float = 0.0) -> Pending:
        """Orders a picture; the order is done when the picture is taken.

        Args:
            display: the X display.
            store: the store that gets the picture; see new_store().
            kept_bytes: how much memory the store may take.
            delay: seconds that the picture may wait, for the next one to replace it.
        """
        return self._order(do="grab", display=display, store=store, kept_bytes=kept_bytes, delay=delay)

    def save_picture(
        self,
        display: str,
        path: Path,
        kind: str = "",
        part: Optional[Tuple[int, int, int, int]] = None,
    ) -> Pending:
        """Orders a picture as a file.

        Args:
            display: the X display.
            path: the file.
            kind: its format where the path does not tell it.
            part: the part of the screen: left, top, right and bottom in pixels, of which right and bottom are the first ones
                outside. One that reaches beyond the screen is an error. None for the whole screen.
        """
        return self._order(do="picture", display=display, path=str(path.absolute()), format=kind, part=part)

    def windows(self, display: str) -> List[Tuple[int, str]]:
        """The windows on a display as list_screen_windows() has them. Raises PictureError."""
        return [(pid, text) for pid, text in self._order(do="windows", display=display).wait()]

    def new_store(self) -> int:
        """The number of a new store."""
        with self._lock:
            self._number += 1
            return self._number

    def save(
        self, store: int, folder: Path, pictures: Iterable[Pending], *, later: bool = False
    ) -> SavedPictures:
        """Writes pictures of a store.

        Args:
            store: the store.
            folder: the folder for the files.
            pictures: the orders that took the pictures.
            later: whether to return before they are written; finish() waits for that.

        Returns the files. Raises OSError and PictureError.
        """
        wanted = sorted({picture.number for picture in pictures})
        path = str(folder.absolute())
        self._writes_later = self._writes_later or later
        order = self._order(do="save", store=store, folder=path, pictures=wanted, later=later)
        told = order.wait(_SAVE_SECONDS)
        saved = {}
        for number, (name, (left, top, width, height)) in told["files"].items():
            saved[int(number)] = SavedPicture(name, (left, top, width, height))
        return SavedPictures(saved, told["dropped"], told["problem"])

    def finish(self) -> None:
        """Waits until all pictures are written, however long that takes, as long as some are.

        Raises OSError for one that could not be, and PictureError.
        """
        before = None
        while self._process is not None and self._writes_later:
            self._writes_later = False
            left = self._order(do="finish").wait(_SAVE_SECONDS)
            if left and left == before:
                raise PictureError(f"{left} pictures are still not written")
            before, self._writes_later = left, left > 0

    def forget(self, store: int) -> None:
        """Drops a store."""
        if self._process is not None:
            self._order(do="forget", store=store)

    def start(self) -> None:
        """Starts the process, which takes a moment in which the caller can do other things."""
        with self._lock:
            self._started()

    def _order(self, **order: object) -> Pending:
        with self._lock:
            self._number += 1
            pending = Pending(self._number, str(order.get("display", "")))
            pending.path = str(order.get("path", ""))
            self._pending[pending.number] = pending
            try:
                process = self._started()
                assert process.stdin is not None
                process.stdin.write(f"{json.dumps({'id': pending.number, **order})}\n")
                process.stdin.flush()
            except OSError as error:
                self._end()
                pending.answer(None, f"the process that takes pictures has ended: {error}")
        return pending

    def _started(self) -> "subprocess.Popen[str]":
        """The process, which is started if it does not run."""
        if self._process is None:
            self._process = subprocess.Popen(
                [sys.executable, "-c", _START, str(_PACKAGE)],
                stdin=subprocess.PIPE,
                stdout=subprocess.PIPE,
                stderr=subprocess.DEVNULL,
                text=True,
                encoding="utf-8",
                start_new_session=True,  # Ctrl-C in the terminal is for the test, which then ends this
                env={**os.environ, "PYTHONPATH": os.pathsep.join(filter(None, sys.path))},
            )
            self._reader = threading.Thread(
                target=self._read, args=(self._process,), daemon=True, name="qtdriver-pictures"
            )
            self._reader.start()
        return self._process

    def _read(self, process: "subprocess.Popen[str]") -> None:
        assert process.stdout is not None
        with process.stdout:
            for line in process.stdout:
                answer = json.loads(line)
                pending = self._pending.pop(answer["id"], None)
                if pending is not None:
                    file_error = answer.get("file_error") or 0
                    pending.answer(answer.get("result"), answer.get("error", ""), file_error)
        for number in list(self._pending):
            pending = self._pending.pop(number, None)
            if pending is not None:
                pending.answer(None, "the process that takes pictures has ended")

    def _end(self) -> None:
        process, self._process = self._process, None
        if process is None or process.stdin is None:
            return
        try:
            process.stdin.close()
            process.wait(ANSWER_SECONDS)
        except (OSError, subprocess.TimeoutExpired):
            process.kill()
            process.wait()
        if self._reader is not None:
            # The reader answers all pending orders as it ends; those of the next process must not be among them.
            self._reader.join(ANSWER_SECONDS)

    def close(self) -> None:
        """Ends the process. The next order starts another one, without the pictures of this one."""
        with self._lock:
            self._end()


SCREENS = ScreenProcess()
"""The one that all drivers and recorders of this process share."""

atexit.register(SCREENS.close)
