"""Calls of tools: what the client may take back, and what it is told meanwhile."""

from __future__ import annotations

import threading
import time
from typing import Any, Callable, Dict, Optional, Union

from .messages import Message

_PROGRESS_SECONDS = 1.0

Send = Callable[[str, Dict[str, Any]], None]
"""Sends a notification: its method, its parameters."""


class Call:
    """A call of a tool, from the request to its response.

    Attributes:
        message: the request.
        revision: the revision of the protocol.
        cancelled: set when the client does not want the result any more.
    """

    def __init__(self, message: Message, revision: str, send: Send) -> None:
        """`send` sends notifications to the client."""
        self.message = message
        self.revision = revision
        self.cancelled = threading.Event()
        self._send = send
        self._started = self._told = time.monotonic()
        self._progress = 0.0

    def __repr__(self) -> str:
        return f"<call {self.message.id!r} of {self.message.params.get('name')}>"

    @property
    def _token(self) -> Optional[Union[str, int]]:
        token = self.message.meta.get("progressToken")
        return token if isinstance(token, (str, int)) and not isinstance(token, bool) else None

    def tell(self, words: str) -> None:
        """Tells the client how far it is, if it has asked for that."""
        if self._token is None:
            return
        self._told = time.monotonic()
        # It has to grow with each notification, also with two within one tick of the clock.
        self._progress = max(round(self._told - self._started, 3), self._progress + 0.001)
        self._send(
            "notifications/progress",
            {"progressToken": self._token, "progress": self._progress, "message": words},
        )

    def poll(self) -> bool:
        """Tells the client once a second how long it has waited. Returns whether the client has cancelled the call.

        For a wait, which calls it again and again.
        """
        if time.monotonic() - self._told >= _PROGRESS_SECONDS:
            self.tell(f"waiting for {time.monotonic() - self._started:.0f} s")
        return self.cancelled.is_set()
