"""The dialogue of `qtdriver run`: requests and commands in, readable replies out."""

from __future__ import annotations

import json
import shlex
from typing import Any, Callable, Iterable

from ..api.app import App
from ..errors import ConnectionClosed, ProtocolError, RequestTimeout
from ..protocol.wire import Reply
from ..trace.readable import describe_commands, describe_reply
from .arguments import verb_parser
from .outcome import json_value
from .typed_line import to_request
from .verbs import FAILURES, Verb, all_verbs, verb_named

Say = Callable[[str], None]


class Dialogue:
    """Runs lines against an application.

    Attributes:
        all_answered: whether every request so far was sent and has got its reply.
        any_refused: whether the agent has refused one.
        connected: False once the application has ended or closed the connection.
    """

    def __init__(self, app: App, say: Say, complain: Say, *, echo: bool, as_json: bool = False) -> None:
        """Prepares a dialogue.

        Args:
            app: the application.
            say: prints replies.
            complain: prints messages about requests that cannot be sent or are not answered.
            echo: whether to print each request before its reply, for a script whose lines are not on the screen.
            as_json: whether to print each reply as one line of JSON.
        """
        self._app = app
        self._say = say
        self._complain = complain
        self._echo = echo
        self._as_json = as_json
        self.all_answered = True
        self.any_refused = False
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
                self._say(f"{describe_commands()}\n\n{describe_verbs()}")
                continue
            self._answer(typed)
            if not self.connected:
                return

    def _answer(self, typed: str) -> None:
        if self._echo:
            self._say(f"> {typed}")
        verb = verb_named(typed.split(None, 1)[0])
        try:
            if verb is not None:
                self._run_verb(verb, typed)
            else:
                self._run_request(typed)
        except ValueError as error:
            self._fail(f"not sent: {error}")
        except ConnectionClosed:
            self.all_answered = False
            self.connected = False
        except (ProtocolError, RequestTimeout) as error:
            self._fail(str(error))

    def _run_request(self, typed: str) -> None:
        request = to_request(typed)
        reply = self._app.connection.request(request)
        self.any_refused = self.any_refused or not reply.ok
        self._say(
            json.dumps(_reply_data(request, reply)) if self._as_json else describe_reply(request, reply)
        )

    def _run_verb(self, verb: Verb, typed: str) -> None:
        try:
            values = vars(verb_parser(verb).parse_args(shlex.split(typed)[1:]))
        except SystemExit:
            return  # the help has been shown
        try:
            outcome = verb.run(self._app, values)
        except ConnectionClosed:
            raise
        except FAILURES as error:
            outcome = verb.failure(error)
        self.any_refused = self.any_refused or outcome.status != 0
        self._say(outcome.shown(as_json=self._as_json))

    def _fail(self, message: str) -> None:
        self.all_answered = False
        self._complain(message)


def _reply_data(request: str, reply: Reply) -> Any:
    value: Any = reply.payload
    if reply.ok and reply.code == "0":
        try:
            value = json_value(reply.value())
        except ProtocolError:
            pass
    return {"request": request, "code": reply.code, "value": value}


def describe_verbs() -> str:
    """A list of the commands, for the help of the dialogue."""
    rows = [f"  {verb.example:<66}  {verb.summary}" for verb in all_verbs()]
    return "\n".join(["Or these words (NAME --help explains one):", *rows])
