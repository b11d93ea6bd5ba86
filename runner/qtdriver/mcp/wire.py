"""Standard input and output, which belong to the protocol alone."""

from __future__ import annotations

import os
import sys
import threading
from typing import BinaryIO, Iterator

from .messages import MAX_LINE


class Wire:
    """Lines in and out. Writing is safe from several threads."""

    def __init__(self, reading: BinaryIO, writing: BinaryIO) -> None:
        """Owns both streams from now on."""
        self._reading = reading
        self._writing = writing
        self._lock = threading.Lock()

    def __repr__(self) -> str:
        return "<standard input and output>"

    @classmethod
    def of_process(cls) -> "Wire":
        """The standard input and output of this process, which nothing else uses from now on.

        Output of this process, and of those that it starts, goes to standard error instead; their standard input is empty.
        """
        sys.stdout.flush()
        reading, writing = os.fdopen(os.dup(0), "rb"), os.fdopen(os.dup(1), "wb")
        nowhere = os.open(os.devnull, os.O_RDONLY)
        os.dup2(nowhere, 0)
        os.close(nowhere)
        os.dup2(2, 1)
        return cls(reading, writing)

    def lines(self) -> Iterator[bytes]:
        """The lines until the client closes its end, without blank ones. Of one that is too long it has the beginning."""
        while True:
            line = self._reading.readline(MAX_LINE + 2)
            if not line:
                return
            rest = line
            while rest and not rest.endswith(b"\n"):
                rest = self._reading.readline(MAX_LINE)
            if line.strip():
                yield line.rstrip(b"\r\n")

    def send(self, line: bytes) -> None:
        """Writes a line. Where the client has gone, nothing happens: the end of its input tells the same."""
        with self._lock:
            try:
                self._writing.write(line)
                self._writing.flush()
            except (BrokenPipeError, ValueError):
                pass
