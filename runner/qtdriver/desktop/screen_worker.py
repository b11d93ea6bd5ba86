"""Takes pictures of screens for another process, and keeps them there: `python -m qtdriver.desktop.screen_worker`.

It reads orders from its standard input, JSON texts of a line each, and answers each on its standard output. It ends with
its standard input. Each display has a thread of its own: one whose X server does not answer holds up no other.

Orders are {"id": N, "do": NAME, ...}, answers {"id": N, "result": ...} or {"id": N, "error": TEXT}:

    grab     display, store, delay      takes a picture into a store, after so many seconds or when the next one is
                                        asked for; is answered as soon as it is taken. Its name is its id
    picture  display, path, format      saves a picture of the screen; format is empty where the path tells it
    windows  display                    lists the windows as [process, text]
    save     store, folder, pictures    writes pictures; the result is {"files": {id: [name, place]}, "dropped": N}
    forget   store                      drops the store
"""

from __future__ import annotations

import json
import os
import sys
import threading
import time
from pathlib import Path
from queue import Empty, Queue
from typing import Any, Callable, Dict, List, Optional, TextIO

from .screen import Screen
from .screen_windows import list_screen_windows
from .screenshots import Picture, ScreenshotStore

Order = Dict[str, Any]

_SAVE_SECONDS = 5.0


class _Stores:
    """The pictures by the stores that they are in."""

    def __init__(self) -> None:
        self._stores: Dict[int, ScreenshotStore] = {}
        self._pictures: Dict[int, Dict[int, Picture]] = {}
        self._taken = 0
        self._changed = threading.Condition()

    def announce(self) -> None:
        """Says that a picture was taken that is yet to be added."""
        with self._changed:
            self._taken += 1

    def add(self, orders: List[Order], image: Any) -> None:
        """Adds the picture that was announced, to the store of each order."""
        with self._changed:
            for order in orders:
                number = order["store"]
                store = self._stores.setdefault(number, ScreenshotStore(order["kept_bytes"]))
                self._pictures.setdefault(number, {})[order["id"]] = store.add(image, order["display"])
            self._taken -= 1
            self._changed.notify_all()

    def save(self, order: Order) -> object:
        """Writes pictures, once those that were taken have been added."""
        with self._changed:
            self._changed.wait_for(lambda: not self._taken, _SAVE_SECONDS)
            store = self._stores.get(order["store"])
            if store is None:
                return {"files": {}, "dropped": 0}
            known = self._pictures[order["store"]]
            wanted = {number: known[number] for number in order["pictures"] if number in known}
            saved = store.save(Path(order["folder"]), wanted.values())
            told = {number: saved[picture] for number, picture in wanted.items() if picture in saved}
            return {"files": told, "dropped": store.dropped}

    def forget(self, order: Order) -> None:
        """Drops a store."""
        with self._changed:
            self._stores.pop(order["store"], None)
            self._pictures.pop(order["store"], None)


class _Display(threading.Thread):
    """The thread that asks one display."""

    def __init__(self, name: str, answers: _Answers, stores: _Stores) -> None:
        super().__init__(daemon=True)
        self._display = name
        self._answers = answers
        self._stores = stores
        self._screen: Optional[Screen] = None
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
            make = self._grabbed()
        except Exception as error:
            for order in orders:
                self._answers.send(order, error=error)
            return
        self._stores.announce()
        for order in orders:
            self._answers.send(order)
        self._stores.add(orders, make())

    def _grabbed(self) -> "Callable[[], Any]":
        if self._screen is None:
            self._screen = Screen(self._display)
        return self._screen.grab()

    def _picture(self, order: Order) -> None:
        image = self._grabbed()()
        image.save(order["path"], order["format"] or None)

    def _windows(self, _: Order) -> object:
        return list_screen_windows(self._display)


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
    answers, stores = _Answers(sys.stdout), _Stores()
    displays: Dict[str, _Display] = {}
    for line in sys.stdin:
        order = json.loads(line)
        if order["do"] in ("save", "forget"):
            answers.answer(order, getattr(stores, order["do"]))
            continue
        name = order["display"]
        if name not in displays:
            displays[name] = _Display(name, answers, stores)
        displays[name].orders.put(order)
    os._exit(0)  # a thread may wait for an X server that does not answer


if __name__ == "__main__":
    main()
