"""A thread that works for a loop which must not wait."""

from __future__ import annotations

import asyncio
import threading
from concurrent.futures import Future
from queue import SimpleQueue
from typing import Any, Callable, Optional, Tuple, TypeVar

from ..protocol.waiting import given_up_when

_Result = TypeVar("_Result")


class Worker:
    """Does one thing after the other in a thread of its own, for which the end of the process does not wait."""

    def __init__(self) -> None:
        self._calls: "SimpleQueue[Optional[Tuple[Callable[[], Any], Future[Any]]]]" = SimpleQueue()
        self._ended = threading.Event()
        threading.Thread(target=self._work, daemon=True).start()

    async def run(self, call: Callable[[], _Result]) -> _Result:
        """Has the thread call something. Returns its result, or raises its error."""
        future: "Future[_Result]" = Future()
        self._calls.put((call, future))
        return await asyncio.wrap_future(future)

    def close(self) -> None:
        """Ends the thread; what waits within attempts() is given up."""
        self._ended.set()
        self._calls.put(None)

    def _work(self) -> None:
        with given_up_when(self._ended.is_set):
            while True:
                order = self._calls.get()
                if order is None:
                    return
                call, future = order
                if not future.set_running_or_notify_cancel():
                    continue
                try:
                    result = call()
                except BaseException as error:  # it is raised again where it was asked for
                    future.set_exception(error)
                else:
                    future.set_result(result)
