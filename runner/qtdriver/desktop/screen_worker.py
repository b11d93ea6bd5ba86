"""Takes pictures of screens for another process, and keeps them there: `python -m qtdriver.desktop.screen_worker`.

It reads orders from its standard input, JSON texts of a line each, and answers each on its standard output. It ends with
its standard input. Each display has a thread of its own: one whose X server does not answer holds up no other.

Orders are {"id": N, "do": NAME, ...}, answers {"id": N, "result": ...} or {"id": N, "error": TEXT}:

    grab     display, store, delay,     takes a picture into a store, after so many seconds or when the next one is
             kept_bytes                 asked for; is answered as soon as it is taken. Its name is its id. The store takes
                                        no more memory than kept_bytes
    picture  display, path, format,     saves a picture of the screen, or of a part of it; format is empty where the path
             part                       tells it, part is null or [left, top, right, bottom]
    windows  display                    lists the windows as [process, text]
    save     store, folder, pictures, later
                                        writes pictures; the result is {"files": {id: [name, place]}, "dropped": N,
                                        "problem": TEXT}, which tells why some that were taken are not there, or is empty.
                                        With `later` it comes before they are written, which takes less time then
    finish                              is answered when all pictures have been written, or after five seconds; the result
                                        is how many have not, the error that of one that could not be
    forget   store                      drops the store
"""

from __future__ import annotations

import json
import os
import sys
import threading
import time
from contextlib import suppress
from pathlib import Path
from queue import Empty, Queue
from typing import Any, Callable, Dict, List, Optional, TextIO, Tuple

from ..errors import PictureError
from .bands import Band, BandCutter, Pixels, Size
from .screen import Screen
from .screen_windows import list_screen_windows
from .screenshots import Picture, ScreenshotStore, UnwrittenPicture
from .strips import StripWriter

Order = Dict[str, Any]

_SAVE_SECONDS = 5.0
_FINISH_SECONDS = 5.0
_PRIORITY = 10
"""Pictures of tests that passed are written while nothing else wants the processor."""

_MAX_LOOSE = 40
"""How many pictures may wait to be written without being compressed."""

_MAX_UNWRITTEN = 200
"""How many pictures may wait to be written; beyond that a test waits for them, so that they take no more memory."""


class _Writing(threading.Thread):
    """The thread that writes pictures while the tests go on."""

    def __init__(self) -> None:
        super().__init__(daemon=True)
        self._files: "Queue[UnwrittenPicture]" = Queue(_MAX_UNWRITTEN)
        self._error: Optional[Exception] = None
        self.start()

    def run(self) -> None:
        """Writes them in their order."""
        strips = StripWriter()
        if sys.platform == "linux":  # where a thread has a priority of its own
            with suppress(OSError):  # the whole process may have a lower one already
                os.setpriority(os.PRIO_PROCESS, threading.get_native_id(), _PRIORITY)
        while True:
            file = self._files.get()
            try:
                file.write(strips)
            except Exception as error:  # whatever it is: the other pictures are to be written
                self._error = error
            self._files.task_done()

    def put(self, files: List[UnwrittenPicture]) -> None:
        """Takes files to be written."""
        for file in files:
            if self._files.qsize() >= _MAX_LOOSE:
                file.compress()
            self._files.put(file)

    def finish(self, _: Order) -> int:
        """Waits a while until all are written. Returns how many are not. Raises the error of one that could not be."""
        with self._files.all_tasks_done:
            self._files.all_tasks_done.wait_for(lambda: not self._files.unfinished_tasks, _FINISH_SECONDS)
            left = self._files.unfinished_tasks
        if not left and self._error is not None:
            error, self._error = self._error, None
            raise error
        return left


class _Stores:
    """The pictures by the stores that they are in."""

    def __init__(self, writing: _Writing) -> None:
        self._writing = writing
        self._stores: Dict[int, ScreenshotStore] = {}
        self._pictures: Dict[int, Dict[int, Picture]] = {}
        self._problems: Dict[int, str] = {}
        self._taken = 0
        self._changed = threading.Condition()

    def announce(self) -> None:
        """Says that a picture was taken that is yet to be added."""
        with self._changed:
            self._taken += 1

    def add(self, orders: List[Order], size: Size, bands: Tuple[Band, ...]) -> None:
        """Adds the picture that was announced, to the store of each order."""
        with self._changed:
            for order in orders:
                number = order["store"]
                store = self._stores.setdefault(number, ScreenshotStore(order["kept_bytes"]))
                self._pictures.setdefault(number, {})[order["id"]] = store.add(size, bands, order["display"])

    def lose(self, orders: List[Order], error: Exception) -> None:
        """Notes why the picture that was announced cannot be added."""
        with self._changed:
            for order in orders:
                self._problems[order["store"]] = f"{type(error).__name__}: {error}".rstrip(": ")

    def added(self) -> None:
        """Says that the picture that was announced has been added, or cannot be."""
        with self._changed:
            self._taken -= 1
            self._changed.notify_all()

    def save(self, order: Order) -> object:
        """Writes pictures, once those that were taken have been added."""
        with self._changed:
            self._changed.wait_for(lambda: not self._taken, _SAVE_SECONDS)
            store = self._stores.get(order["store"])
            problem = self._problems.pop(order["store"], "")
            if store is None:
                return {"files": {}, "dropped": 0, "problem": problem}
            known = self._pictures[order["store"]]
            wanted = {number: known[number] for number in order["pictures"] if number in known}
            saved, unwritten = store.plan(Path(order["folder"]), wanted.values(), quickly=order["later"])
            told = {number: saved[picture] for number, picture in wanted.items() if picture in saved}
            dropped = store.dropped
        if order["later"]:
            self._writing.put(unwritten)
        else:
            strips = StripWriter()
            for file in unwritten:
                file.write(strips)
        return {"files": told, "dropped": dropped, "problem": problem}

    def forget(self, order: Order) -> None:
        """Drops a store."""
        with self._changed:
            self._stores.pop(order["store"], None)
            self._pictures.pop(order["store"], None)
            self._problems.pop(order["store"], None)


class _Display(threading.Thread):
    """The thread that asks one display."""

    def __init__(self, name: str, answers: _Answers, stores: _Stores) -> None:
        super().__init__(daemon=True)
        self._display = name
        self._answers = answers
        self._stores = stores
        self._screen: Optional[Screen] = None
        self._cutter = BandCutter()
        self.orders: "Queue[Order]" = Queue()
        self.start()

    def run(self) -> None:
        """Takes pictures as they are ordered; those that may wait are one picture."""
        waiting: List[Order] = []
        due = 0.0
        while True:
            try:
                order = self.orders.get(timeout=max(due - time.monotonic(), 0.0) if waiting else None)
            except Empty:
                order = None
            if order is not None and order["do"] == "grab":
                waiting.append(order)
                due = time.monotonic() + order["delay"]
                if order["delay"]:
                    continue
            if waiting:
                self._grab(waiting)
                waiting = []
            if order is not None and order["do"] != "grab":
                self._answers.answer(order, {"picture": self._picture, "windows": self._windows}[order["do"]])

    def _grab(self, orders: List[Order]) -> None:
        try:
            pixels = self._grabbed()
        except Exception as error:
            for order in orders:
                self._answers.send(order, error=error)
            return
        self._stores.announce()
        try:
            for order in orders:
                self._answers.send(order)
            self._stores.add(orders, pixels.size, self._cutter.cut(pixels))
        except Exception as error:  # such as too little memory: the next picture may be possible
            self._stores.lose(orders, error)
        finally:
            self._stores.added()

    def _grabbed(self) -> Pixels:
        if self._screen is None:
            self._screen = Screen(self._display)
        return self._screen.grab()

    def _picture(self, order: Order) -> None:
        image = self._grabbed().image()
        if order["part"] is not None:
            image = _cut_out(image, order["part"])
        image.save(order["path"], order["format"] or None)

    def _windows(self, _: Order) -> object:
        return list_screen_windows(self._display)


def _cut_out(image: Any, part: List[int]) -> Any:
    left, top, right, bottom = part
    if not (0 <= left < right <= image.width and 0 <= top < bottom <= image.height):
        raise PictureError(
            f"a part of {right - left} x {bottom - top} pixels at {left}, {top} is not on the screen of "
            f"{image.width} x {image.height}"
        )
    return image.crop((left, top, right, bottom))


class _Answers:
    """Writes answers, from any thread."""

    def __init__(self, output: TextIO) -> None:
        self._output = output
        self._lock = threading.Lock()

    def answer(self, order: Order, carry_out: Callable[[Order], object]) -> None:
        """Answers with what `carry_out` returns, or its error."""
        try:
            self.send(order, carry_out(order))
        except Exception as error:
            self.send(order, error=error)

    def send(self, order: Order, result: object = None, error: Optional[BaseException] = None) -> None:
        """Sends an answer."""
        answer = {"id": order["id"]}
        if error is None:
            answer["result"] = result
        else:
            answer["error"] = str(error) or type(error).__name__
            answer["file_error"] = isinstance(error, OSError) and error.filename and error.errno
        with self._lock:
            self._output.write(f"{json.dumps(answer)}\n")
            self._output.flush()


def main() -> None:
    """Carries out the orders until there are no more."""
    writing = _Writing()
    answers, stores = _Answers(sys.stdout), _Stores(writing)
    displays: Dict[str, _Display] = {}
    without_display = {"save": stores.save, "forget": stores.forget, "finish": writing.finish}
    for line in sys.stdin:
        order = json.loads(line)
        if order["do"] in without_display:
            answers.answer(order, without_display[order["do"]])
            continue
        name = order["display"]
        if name not in displays:
            displays[name] = _Display(name, answers, stores)
        displays[name].orders.put(order)
    os._exit(0)  # a thread may wait for an X server that does not answer


if __name__ == "__main__":
    main()
