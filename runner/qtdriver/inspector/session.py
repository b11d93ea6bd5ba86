"""One page that is open: its questions, its input, and the pictures that it gets."""

from __future__ import annotations

import asyncio
import json
import os
from functools import partial
from typing import Any, Dict, Optional, Set

from ..errors import QtDriverError
from .input import Input, open_input
from .live import LivePicture
from .saving import save
from .target import Target
from .worker import Worker

_GOING_AWAY = 1001


class PageSession:
    """Talks to one page. Messages are objects in JSON, pictures are binary.

    The page asks {"id": N, "do": OPERATION, "values": {...}} and gets {"answers": N, "result": ...} or {"answers": N,
    "error": TEXT}. It tells {"input": {...}} for the mouse and the keyboard, and {"shown": true} when it has drawn a picture.
    It is told {"told": "ended", "text": TEXT} when the application has ended, and {"told": "problem", "text": TEXT}.
    """

    def __init__(self, socket: Any, target: Target, worker: Worker) -> None:
        """`socket` is the WebSocket, which has been prepared; `worker` has the thread that the target belongs to."""
        self._socket = socket
        self._target = target
        self._worker = worker
        self._looking = Worker()
        self._picture = LivePicture(target.display, self._looking, self._socket.send_bytes)
        self._input: Optional[Input] = None
        self._answers: "Set[asyncio.Future[None]]" = set()

    async def run(self) -> None:
        """Serves the page until it is closed."""
        picture = asyncio.ensure_future(self._show())
        try:
            async for message in self._socket:
                if message.type.name == "TEXT":
                    await self._receive(message.data)
        finally:
            picture.cancel()
            await asyncio.gather(picture, return_exceptions=True)
            if self._input is not None:
                self._input.close()
            self._looking.close()

    async def tell(self, told: Dict[str, Any]) -> None:
        """Tells the page something that it has not asked for."""
        if not self._socket.closed:
            await self._socket.send_json(told)

    async def close(self) -> None:
        """Ends the session, since the server ends."""
        await self._socket.close(code=_GOING_AWAY, message=b"qtdriver inspect has ended")

    async def _show(self) -> None:
        try:
            await self._picture.run()
        except Exception as error:  # the page goes on without a picture
            await self.tell({"told": "problem", "text": f"no picture any more: {error or repr(error)}"})

    async def _receive(self, text: str) -> None:
        try:
            message = json.loads(text)
            if "shown" in message:
                self._picture.shown()
            elif "input" in message:
                await self._act(message["input"])
            else:
                answer = self._answer(message["id"], str(message["do"]), dict(message["values"]))
                # Not awaited here: the mouse moves on while the application is asked. Kept, since the loop keeps no task.
                task = asyncio.ensure_future(answer)
                self._answers.add(task)
                task.add_done_callback(self._answers.discard)
        except (AttributeError, KeyError, TypeError, ValueError) as error:
            await self.tell({"told": "problem", "text": f"a message that is none: {error!r}"})

    async def _act(self, told: Dict[str, Any]) -> None:
        try:
            if self._input is None:
                self._input = await self._looking.run(partial(open_input, self._target.display))
            self._input.play(told)
        except QtDriverError as error:
            await self.tell({"told": "problem", "text": str(error)})

    async def _answer(self, number: Any, operation: str, values: Dict[str, Any]) -> None:
        if operation == "play":
            values["path"] = os.path.abspath(values["path"])
        ask = partial(save, values) if operation == "save" else partial(self._target.ask, operation, values)
        try:
            answer = {"answers": number, "result": await self._worker.run(ask)}
        except QtDriverError as error:
            answer = {"answers": number, "error": str(error)}
        except Exception as error:  # a question without an answer would have the page wait for ever
            answer = {"answers": number, "error": f"{operation}: {error!r}"}
        await self.tell(answer)
