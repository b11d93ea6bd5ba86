"""The dialogue of `qtdriver run`: typed requests in, readable replies out."""

from __future__ import annotations

import sys
from typing import Callable, Iterable, Iterator, Optional, TextIO

from ..connection import Connection
from ..errors import ConnectionClosed, ProtocolError, RequestTimeout
from .readable import describe_commands, describe_reply
from .typed_line import to_request

PROMPT = "qtdriver> "
Say = Callable[[str], None]


def typed_lines(stream: Optional[TextIO]) -> Iterator[str]:
    """The lines of a script, or of standard input for None: with a prompt when that is a terminal."""
    if stream is None and sys.stdin.isatty():
        yield from _prompted_lines()
        return
    for line in sys.stdin if stream is None else stream:
        yield line.rstrip("\r\n")


def _prompted_lines() -> Iterator[str]:
    import readline  # noqa: F401  (gives input() line editing and a history)

    while True:
        try:
            yield input(PROMPT)
        except EOFError:
            print()
            return


class Dialogue:
    """Runs lines against an application.

    Attributes:
        all_answered: whether every request so far was sent and has got its reply.
        connected: False once the application has ended or closed the connection.
    """

    def __init__(self, connection: Connection, say: Say, complain: Say, echo: bool) -> None:
        """`say` gets the replies, `complain` what cannot be sent or is not answered; with `echo` each request
        is said before its reply, as for a script whose lines are not on the screen."""
        self._connection = connection
        self._say = say
        self._complain = complain
        self._echo = echo
        self.all_answered = True
        self.connected = True

    def run(self, lines: Iterable[str]) -> None:
        """Runs line after line until "quit", the end of the lines, or the end of the connection."""
        for line in lines:
            typed = line.strip(" \t")
            if not typed or typed.startswith("#"):
                continue
            if typed == "quit":
                return
            if typed == "help":
                self._say(describe_commands())
                continue
            self._answer(typed)
            if not self.connected:
                return

    def _answer(self, typed: str) -> None:
        if self._echo:
            self._say(f"> {typed}")
        try:
            request = to_request(typed)
            self._say(describe_reply(request, self._connection.request(request)))
        except ValueError as error:
            self._fail(f"not sent: {error}")
        except (ProtocolError, RequestTimeout) as error:
            self._fail(str(error))
        except ConnectionClosed:
            self.all_answered = False
            self.connected = False

    def _fail(self, message: str) -> None:
        self.all_answered = False
        self._complain(message)
