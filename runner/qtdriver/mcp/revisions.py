"""The revisions of the protocol: which one a request is of, and what its result has beyond the result itself.

Until 2025-11-25 a client agrees on a revision once, by `initialize`. Since 2026-07-28 each request names its own.
"""

from __future__ import annotations

from typing import Any, Dict, Optional

from .messages import INVALID_PARAMS, INVALID_REQUEST, UNSUPPORTED_VERSION, Message, RpcError

CURRENT = ("2026-07-28",)
"""Revisions whose requests name them."""

WITH_HANDSHAKE = ("2025-11-25", "2025-06-18")
"""Revisions that are agreed on by `initialize`, the newest first."""

SUPPORTED = (*CURRENT, *WITH_HANDSHAKE)

_PREFIX = "io.modelcontextprotocol/"
VERSION_KEY = f"{_PREFIX}protocolVersion"
CAPABILITIES_KEY = f"{_PREFIX}clientCapabilities"
SERVER_KEY = f"{_PREFIX}serverInfo"

_CACHED = {"ttlMs": 3_600_000, "cacheScope": "public"}
_CACHEABLE = (
    "server/discover",
    "tools/list",
    "prompts/list",
    "resources/list",
    "resources/templates/list",
    "resources/read",
)
_Object = Dict[str, Any]


class Revisions:
    """Tells the revision of each request.

    Attributes:
        agreed: the revision that `initialize` has agreed on; None before.
    """

    def __init__(self, server: _Object) -> None:
        """`server` has the name and the version of this program."""
        self._server = server
        self.agreed: Optional[str] = None

    def __repr__(self) -> str:
        return f"<revision {self.agreed or 'of each request'}>"

    def of(self, message: Message) -> str:
        """The revision of a request. Raises RpcError where it names none that is known, or lacks what that requires."""
        if VERSION_KEY not in message.meta:
            return self._of_handshake(message)
        version = message.meta[VERSION_KEY]
        if version not in CURRENT:
            data = {"supported": list(SUPPORTED), "requested": version}
            raise RpcError(UNSUPPORTED_VERSION, "Unsupported protocol version", data, message.id)
        if not isinstance(message.meta.get(CAPABILITIES_KEY), dict):
            raise RpcError(INVALID_PARAMS, f"_meta lacks the object {CAPABILITIES_KEY}", id=message.id)
        return str(version)

    def _of_handshake(self, message: Message) -> str:
        if self.agreed is not None or message.method in ("initialize", "ping"):
            return self.agreed or WITH_HANDSHAKE[0]
        raise RpcError(
            INVALID_PARAMS,
            f"the request names no revision: give {VERSION_KEY} in _meta, or send initialize first",
            id=message.id,
        )

    def agree(self, message: Message) -> str:
        """The revision for a request `initialize`: the client's if it is known, else the newest."""
        asked = message.params.get("protocolVersion")
        if not isinstance(asked, str):
            raise RpcError(INVALID_PARAMS, "initialize has a protocolVersion, a text", id=message.id)
        if self.agreed is not None:
            raise RpcError(INVALID_REQUEST, "initialize was sent before", id=message.id)
        self.agreed = asked if asked in WITH_HANDSHAKE else WITH_HANDSHAKE[0]
        return self.agreed

    def complete(self, revision: str, method: str, result: _Object) -> _Object:
        """The result as the revision has it."""
        if revision not in CURRENT:
            return result
        more = _CACHED if method in _CACHEABLE else {}
        meta = {**result.get("_meta", {}), SERVER_KEY: self._server}
        return {"resultType": "complete", **more, **result, "_meta": meta}
