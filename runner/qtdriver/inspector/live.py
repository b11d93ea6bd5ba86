"""The live picture of a desktop: what has changed on it, and nothing while nothing changes."""

from __future__ import annotations

import asyncio
import time
from typing import Awaitable, Callable, Optional, Tuple

from ..desktop.screen import Screen
from .changes import ChangedPart, PictureChanges
from ..desktop.damage import Damage, open_damage
from .worker import Worker

_SHARE = 0.1
"""The part of a processor that the picture may cost."""

_PAUSE = 0.04
"""Seconds from one picture to the next one, at least."""

_CALM = 0.25
"""Seconds without a change after which parts that were sent with a loss are sent once more without."""

_LOOKING = 0.2
"""Seconds from one look to the next where the display does not tell of changes."""


class LivePicture:
    """Sends pictures of a display as it changes, each when the one before has been drawn."""

    def __init__(self, display: str, worker: Worker, send: Callable[[bytes], Awaitable[None]]) -> None:
        """`worker` has the thread that looks; `send` sends a picture: see ChangedPart.to_bytes()."""
        self._display = display
        self._worker = worker
        self._send = send
        self._shown = asyncio.Event()
        self._changed = asyncio.Event()
        self._changes = PictureChanges()
        self._screen: Optional[Screen] = None

    def shown(self) -> None:
        """Says that the page has drawn the last picture."""
        self._shown.set()

    async def run(self) -> None:
        """Sends pictures until it is cancelled. Raises PictureError."""
        loop = asyncio.get_running_loop()
        damage = await self._worker.run(lambda: open_damage(self._display))
        if damage is None:
            looking = asyncio.ensure_future(self._look_again())
        else:
            loop.add_reader(damage.fileno(), self._note_damage, damage)
            self._note_damage(damage)  # what has been read already makes the descriptor readable no more
        try:
            await self._send_first_and_further()
        finally:
            if damage is None:
                looking.cancel()
            else:
                loop.remove_reader(damage.fileno())
                damage.close()

    async def _send_first_and_further(self) -> None:
        self._changed.set()
        while True:
            sharpen = await self._wait_for_change()
            part, seconds = await self._worker.run(lambda: self._take(sharpen))
            if part is not None:
                self._shown.clear()
                await self._send(part)
                await self._shown.wait()
            await asyncio.sleep(max(_PAUSE, seconds / _SHARE))

    async def _wait_for_change(self) -> bool:
        """Waits for a change. Returns whether there is none, but parts that were sent with a loss."""
        try:
            await asyncio.wait_for(self._changed.wait(), _CALM if self._changes.has_losses else None)
        except asyncio.TimeoutError:
            return True
        self._changed.clear()
        return False

    def _take(self, sharpen: bool) -> Tuple[Optional[bytes], float]:
        """The next picture, None if there is nothing new; and the seconds of a processor that it took."""
        began = time.thread_time()
        if self._screen is None:
            self._screen = Screen(self._display)
        part: Optional[ChangedPart]
        part = self._changes.losses() if sharpen else self._changes.update(self._screen.grab())
        data = None if part is None else part.to_bytes()
        return data, time.thread_time() - began

    def _note_damage(self, damage: Damage) -> None:
        try:
            if damage.has_changed():
                self._changed.set()
        except OSError:
            asyncio.get_running_loop().remove_reader(damage.fileno())
            self._changed.set()  # the next picture says that the display has ended

    async def _look_again(self) -> None:
        while True:
            await asyncio.sleep(_LOOKING)
            self._changed.set()
