"""Requests out and replies in, one at a time."""

from __future__ import annotations

import socket
import time
from contextlib import contextmanager
from typing import Iterator, Optional, Type, TypeVar

from ..errors import ConnectionClosed, QtDriverError, RequestTimeout
from ..errors.internal import NoReplyYet
from .closing import ClosedOnLeaving
from .extensions import readable_request
from .greeting import Greeting
from .lines import LineSocket
from .peers import Peer
from .secrets import Secrets
from .transcript import KEPT_REPLY, Exchange, Transcript
from .typed_secrets import TypedSecrets
from .waiting import bounded
from .wire import Reply, encode_line

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

DEFAULT_TIMEOUT = 30.0
"""Seconds that a greeting or a request may take where nothing else is said."""

_MAX_GREETING = 1000

_Self = TypeVar("_Self", bound="Channel")


class Channel(ClosedOnLeaving):
    """The connection to an agent that has greeted, in raw lines. It belongs to one thread.

    Attributes:
        greeting: what the agent said of itself.
        process: id of the process at the other end, as this process sees it; None where the system hides it.
        timeout: seconds that a request may take, including the wait for the late reply to an earlier one.
        transcript: the requests and their replies.
        secrets: texts that were typed into password fields; the transcript and messages are without them.
    """

    def __init__(
        self,
        lines: LineSocket,
        greeting: Greeting,
        timeout: float = DEFAULT_TIMEOUT,
        process: Optional[int] = None,
    ) -> None:
        """Owns `lines` from now on, from which the greeting has been read. The others are the attributes."""
        self.greeting = greeting
        self.process = process
        self.timeout = timeout
        self.transcript = Transcript()
        self.secrets = Secrets()
        self._typed = TypedSecrets(self)
        self._lines = lines
        self._unanswered: Optional[str] = None

    @classmethod
    def greet(
        cls: Type[_Self], connected: socket.socket, deadline: float, timeout: float, peer: Peer
    ) -> _Self:
        """Waits for the greeting on a new connection.

        Args:
            connected: the socket; it is closed when no greeting comes.
            deadline: when to give up, a time of time.monotonic().
            timeout: seconds that each later request may take.
            peer: the process at the other end.

        Raises RequestTimeout, ConnectionClosed or ProtocolError when no greeting comes.
        """
        lines = LineSocket(connected)
        try:
            line = lines.read_line(deadline, _MAX_GREETING)
            if line is None:
                raise ConnectionClosed("the client closed the connection before its greeting")
            greeting = Greeting.parse(line)
            return cls(lines, greeting, timeout, peer.process(greeting.pid))
        except BaseException as error:
            lines.close()
            if isinstance(error, socket.timeout):
                raise RequestTimeout("a client connected, but sent no greeting in time") from None
            if isinstance(error, OSError):
                raise ConnectionClosed(f"the connection broke before the greeting: {error}") from error
            raise

    def __repr__(self) -> str:
        state = "closed" if self.is_closed() else "open"
        return f"<{type(self).__name__.lower()} to process {self.pid}, {state}>"

    @property
    def pid(self) -> int:
        """Id of the application's process, as this process sees it; from the greeting where the system hides it."""
        return self.greeting.pid if self.process is None else self.process

    def close(self) -> None:
        """Ends the connection; the application goes on without it. Closing twice is harmless."""
        self._lines.close()

    def fileno(self) -> int:
        """The descriptor of the socket: readable when the application has ended, since agents never speak unasked."""
        return self._lines.fileno()

    def is_closed(self) -> bool:
        """Whether the application has ended or closed the connection. Does not wait."""
        return not self._lines.is_open()

    def request(self, line: str, timeout: Optional[float] = None) -> Reply:
        """Sends one request line and waits for its reply, whatever its code.

        Args:
            line: the request without a line end.
            timeout: seconds that it may take, by default those of the connection.

        Raises RequestTimeout, within bounded_by() NoReplyYet, ConnectionClosed, ProtocolError for a line that is no reply,
        and UnsupportedTextError, before anything is sent, for a request that cannot be sent.
        """
        encode_line(line)
        started = time.monotonic()
        answer, failure = None, ""
        try:
            with self._asking_for(line):
                expected = self._typed.expect(line)
            answer = self.exchange(line, timeout)
            reply = Reply.parse(answer)
            with self._asking_for(line):
                self._typed.learn(line, reply, expected)
            return reply
        except QtDriverError as error:
            failure = str(error)
            raise
        finally:
            kept = None if answer is None else self.secrets.hide_in_beginning(answer, KEPT_REPLY)
            shown = self.secrets.hide_in_line(line)
            self.transcript.add(Exchange(shown, kept, started, time.monotonic() - started, failure))

    @contextmanager
    def _asking_for(self, line: str) -> Iterator[None]:
        """A context of questions on behalf of a request, whose errors name that."""
        try:
            yield
        except RequestTimeout:
            raise self._timeout(line, self.timeout) from None

    def exchange(self, line: str, timeout: Optional[float] = None) -> str:
        """Sends one line and waits for its reply, a line as it is. The transcript does not have it.

        Takes the arguments of request(). Raises its errors but for ProtocolError.
        """
        data, seconds = encode_line(line), self.timeout if timeout is None else timeout
        allowed = bounded(seconds)
        deadline = time.monotonic() + allowed
        try:
            self._discard_late_replies(deadline)
            self._unanswered = "" if self.transcript.is_paused else line
            self._lines.send(data, deadline)
            return self._read_reply(deadline)
        except socket.timeout:
            # An unanswered request of a listener is kept as "", since the test does not know it.
            waiting_for = self._unanswered or line
            if allowed < seconds:
                raise NoReplyYet(f"no reply to {self._shown(waiting_for)!r} yet") from None
            raise self._timeout(waiting_for, seconds) from None
        except OSError as error:
            raise ConnectionClosed(
                f"the application ended before it answered {self._shown(line)!r} ({error})"
            ) from error

    def _timeout(self, line: str, seconds: float) -> RequestTimeout:
        return RequestTimeout(
            f"no reply to {self._shown(line)!r} within {seconds:g} seconds", seconds=seconds
        )

    def _shown(self, line: str) -> str:
        """A request for a message."""
        return readable_request(self.secrets.hide_in_line(line))

    def _discard_late_replies(self, deadline: float) -> None:
        """Reads and drops replies to earlier requests, so that the next reply belongs to this one."""
        if self._unanswered is not None:
            self._read_reply(deadline)
        if not self._lines.discard_arrived():
            raise ConnectionResetError("the connection is closed")

    def _read_reply(self, deadline: float) -> str:
        """Reads the one reply that is due.

        The agent sends nothing unasked, so further lines that have arrived are the rest of this reply: a window title or
        an object name in it has a line break.
        """
        reply = self._read_line(deadline)
        while self._lines.has_more:
            reply += "\n" + self._read_line(deadline)
        self._unanswered = None
        return reply

    def _read_line(self, deadline: float) -> str:
        line = self._lines.read_line(deadline)
        if line is None:
            raise ConnectionResetError("the connection is closed")
        return line
