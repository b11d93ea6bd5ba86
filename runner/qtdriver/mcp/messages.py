"""Messages of JSON-RPC 2.0, one on each line."""

from __future__ import annotations

import json
from dataclasses import dataclass, field
from typing import Any, Dict, NoReturn, Optional, Union

PARSE_ERROR = -32700
INVALID_REQUEST = -32600
METHOD_NOT_FOUND = -32601
INVALID_PARAMS = -32602
INTERNAL_ERROR = -32603
UNSUPPORTED_VERSION = -32022

MAX_LINE = 4 * 1024 * 1024
"""Bytes of a message; a longer one is refused."""

Id = Union[str, int]
_Object = Dict[str, Any]


class RpcError(Exception):
    """An error for the client, which answers a request.

    Attributes:
        code: its number.
        data: more of it, for programs.
        id: the request, as far as it is known.
    """

    def __init__(
        self, code: int, message: str, data: Optional[_Object] = None, id: Optional[Id] = None
    ) -> None:
        super().__init__(message)
        self.code = code
        self.data = data
        self.id = id


@dataclass(frozen=True)
class Message:
    """A request, or a notification: that has no id.

    Attributes:
        method: its name.
        params: its parameters.
        id: the id that its response has.
    """

    method: str
    params: _Object = field(default_factory=dict)
    id: Optional[Id] = None

    @property
    def meta(self) -> _Object:
        """The fields about the message itself. Raises RpcError where they are no object."""
        meta = self.params.get("_meta", {})
        if not isinstance(meta, dict):
            raise RpcError(INVALID_PARAMS, "_meta is not an object", id=self.id)
        return meta


def parse_line(line: bytes) -> Optional[Message]:
    """The message on a line; None for a response, since this side asks nothing. Raises RpcError for anything else."""
    if len(line) > MAX_LINE:
        raise RpcError(INVALID_REQUEST, f"a message has at most {MAX_LINE} bytes")
    try:
        told = json.loads(line.decode("utf-8"), parse_constant=_refuse_constant)
    except (ValueError, RecursionError) as error:
        raise RpcError(PARSE_ERROR, f"not JSON: {error}") from None
    if isinstance(told, list):
        raise RpcError(INVALID_REQUEST, "batches are not part of the protocol: send one message on each line")
    if not isinstance(told, dict):
        raise RpcError(INVALID_REQUEST, "a message is a JSON object")
    return _message(told)


def _message(told: _Object) -> Optional[Message]:
    known = told.get("id")
    number = known if is_id(known) else None
    if told.get("jsonrpc") != "2.0":
        raise RpcError(INVALID_REQUEST, 'a message has "jsonrpc": "2.0"', id=number)
    if "method" not in told and ("result" in told or "error" in told):
        return None
    if not isinstance(told.get("method"), str):
        raise RpcError(INVALID_REQUEST, 'a request has a "method", a text', id=number)
    if "id" in told and number is None:
        raise RpcError(INVALID_REQUEST, "an id is a text or an integer")
    params = told.get("params", {})
    if not isinstance(params, dict):
        raise RpcError(INVALID_PARAMS, '"params" is not an object', id=number)
    return Message(told["method"], params, number)


def is_id(value: object) -> bool:
    """Whether a value can be the id of a request."""
    return isinstance(value, (str, int)) and not isinstance(value, bool)


def result_line(number: Id, result: _Object) -> bytes:
    """The response of a request that was fulfilled."""
    return _line({"id": number, "result": result})


def error_line(error: RpcError) -> bytes:
    """The response of a request that was refused; without an id where that could not be read."""
    told: _Object = {"code": error.code, "message": str(error)}
    if error.data is not None:
        told["data"] = error.data
    return _line({"error": told} if error.id is None else {"id": error.id, "error": told})


def notification_line(method: str, params: _Object) -> bytes:
    """A notification."""
    return _line({"method": method, "params": params})


def _line(told: _Object) -> bytes:
    # ASCII: a line break of Unicode in a text would end the line for some readers.
    return json.dumps({"jsonrpc": "2.0", **told}, separators=(",", ":")).encode("ascii") + b"\n"


def _refuse_constant(name: str) -> NoReturn:
    raise ValueError(f"{name} is no JSON")
