"""The server: reads requests, answers them, and runs the tools one after the other."""

from __future__ import annotations

import queue
import threading
from typing import Any, Callable, Dict, NamedTuple, Optional, Protocol

from .calls import Call
from .messages import (
    INTERNAL_ERROR,
    INVALID_PARAMS,
    INVALID_REQUEST,
    METHOD_NOT_FOUND,
    Id,
    Message,
    RpcError,
    error_line,
    is_id,
    notification_line,
    parse_line,
    result_line,
)
from .revisions import CURRENT, SUPPORTED, Revisions
from .wire import Wire

_Object = Dict[str, Any]
_HANDSHAKE, _EACH, _BOTH = "handshake", "each", "both"


class Offer(Protocol):
    """All that the server has for its clients."""

    instructions: str

    def list_tools(self) -> _Object:
        """The result of tools/list."""

    def knows_tool(self, name: object) -> bool:
        """Whether there is a tool of this name."""

    def call_tool(self, call: Call) -> _Object:
        """Runs a tool. Raises GivenUp where the client does not want its result any more."""

    def list_resources(self) -> _Object:
        """The result of resources/list."""

    def read_resource(self, params: _Object) -> _Object:
        """The result of resources/read. Raises RpcError."""

    def list_prompts(self) -> _Object:
        """The result of prompts/list."""

    def get_prompt(self, params: _Object) -> _Object:
        """The result of prompts/get. Raises RpcError."""


class GivenUp(Exception):
    """A tool was given up, since the client does not want its result any more."""


class _Method(NamedTuple):
    """A method: what answers it, and in which revisions there is one."""

    answer: "Callable[[McpServer, Message], _Object]"
    revisions: str = _BOTH


class McpServer:
    """Serves one client until that closes its end.

    A thread reads, and answers at once what needs no application: so a client can cancel a tool, and learn that the server
    is alive, while a tool runs. Tools run in the thread of run(), since an application belongs to one thread.
    """

    def __init__(self, wire: Wire, offer: Offer, server: _Object) -> None:
        """`server` has the name and the version of this program."""
        self._wire = wire
        self._offer = offer
        self._server = server
        self._revisions = Revisions(server)
        self._waiting: "queue.Queue[Optional[Call]]" = queue.Queue()
        self._open: Dict[Id, Call] = {}
        self._lock = threading.Lock()

    def __repr__(self) -> str:
        return f"<server, {len(self._open)} calls>"

    def run(self) -> None:
        """Serves until the client closes its end. Then the tool that runs is given up, and those that wait are not begun."""
        threading.Thread(target=self._read, daemon=True, name="qtdriver-mcp").start()
        while True:
            call = self._waiting.get()
            if call is None:
                return
            line = None if call.cancelled.is_set() else self._line_of(call)
            # Before it is sent: the client may use the id again then.
            self._close(call)
            if line is not None and not call.cancelled.is_set():
                self._wire.send(line)

    def _read(self) -> None:
        try:
            for line in self._wire.lines():
                self._handle(line)
        finally:
            with self._lock:
                for call in self._open.values():
                    call.cancelled.set()
            self._waiting.put(None)

    def _handle(self, line: bytes) -> None:
        """Answers a line, or puts the call of a tool into the queue."""
        number: Optional[Id] = None
        try:
            message = parse_line(line)
            if message is None:
                return
            if message.id is None:
                self._take_notification(message)
                return
            number = message.id
            self._answer(message, number)
        except RpcError as error:
            error.id = number if error.id is None else error.id
            self._wire.send(error_line(error))
        except Exception as error:  # a fault of an answer must not end the reading, and with it the server
            self._wire.send(error_line(RpcError(INTERNAL_ERROR, _fault(error), id=number)))

    def _take_notification(self, message: Message) -> None:
        if message.method == "notifications/cancelled":
            number: Any = message.params.get("requestId")
            with self._lock:
                call = self._open.get(number) if is_id(number) else None
            if call is not None:
                call.cancelled.set()

    def _answer(self, message: Message, number: Id) -> None:
        revision = self._revisions.of(message)
        method = _METHODS.get(message.method)
        if method is None or method.revisions == (_HANDSHAKE if revision in CURRENT else _EACH):
            raise RpcError(METHOD_NOT_FOUND, f"there is no method {message.method!r} here")
        with self._lock:
            if number in self._open:
                raise RpcError(INVALID_REQUEST, f"request {number!r} is still being worked on")
        if message.method == "tools/call":
            self._queue(message, number, revision)
        else:
            result = method.answer(self, message)
            self._wire.send(result_line(number, self._revisions.complete(revision, message.method, result)))

    def _queue(self, message: Message, number: Id, revision: str) -> None:
        name = message.params.get("name")
        if not self._offer.knows_tool(name):
            raise RpcError(INVALID_PARAMS, f"there is no tool {name!r}")
        if not isinstance(message.params.get("arguments", {}), dict):
            raise RpcError(INVALID_PARAMS, "the arguments of a tool are an object")
        call = Call(message, revision, self._notify)
        with self._lock:
            self._open[number] = call
        self._waiting.put(call)

    def _notify(self, method: str, params: _Object) -> None:
        self._wire.send(notification_line(method, params))

    def _line_of(self, call: Call) -> Optional[bytes]:
        """The response to the call of a tool; None where the tool was given up."""
        assert call.message.id is not None
        try:
            result = self._offer.call_tool(call)
            return result_line(
                call.message.id, self._revisions.complete(call.revision, call.message.method, result)
            )
        except GivenUp:
            return None
        except RpcError as error:
            error.id = call.message.id
            return error_line(error)
        except Exception as error:  # a fault of a tool must not end the server with its applications
            return error_line(RpcError(INTERNAL_ERROR, _fault(error), id=call.message.id))

    def _close(self, call: Call) -> None:
        with self._lock:
            if call.message.id is not None:
                self._open.pop(call.message.id, None)

    def initialize(self, message: Message) -> _Object:
        """The result of initialize."""
        return {
            "protocolVersion": self._revisions.agree(message),
            "capabilities": _CAPABILITIES,
            "serverInfo": self._server,
            "instructions": self._offer.instructions,
        }

    def discover(self, message: Message) -> _Object:
        """The result of server/discover."""
        return {
            "supportedVersions": list(SUPPORTED),
            "capabilities": _CAPABILITIES,
            "instructions": self._offer.instructions,
        }

    @property
    def offer(self) -> Offer:
        """All that the server has for its clients."""
        return self._offer


def _fault(error: Exception) -> str:
    return f"{type(error).__name__}: {error}"


_CAPABILITIES: _Object = {"tools": {}, "resources": {}, "prompts": {}}
_METHODS: Dict[str, _Method] = {
    "initialize": _Method(McpServer.initialize, _HANDSHAKE),
    "ping": _Method(lambda server, message: {}, _HANDSHAKE),
    "server/discover": _Method(McpServer.discover, _EACH),
    "tools/list": _Method(lambda server, message: server.offer.list_tools()),
    "tools/call": _Method(lambda server, message: {}),
    "resources/list": _Method(lambda server, message: server.offer.list_resources()),
    "resources/templates/list": _Method(lambda server, message: {"resourceTemplates": []}),
    "resources/read": _Method(lambda server, message: server.offer.read_resource(message.params)),
    "prompts/list": _Method(lambda server, message: server.offer.list_prompts()),
    "prompts/get": _Method(lambda server, message: server.offer.get_prompt(message.params)),
}
