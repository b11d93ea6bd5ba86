"""Who may talk to the page's server: the user who was told its address, from a page that it has served itself.

Every program on the machine can connect to the loopback address, and every page in the browser can have the browser do it. So a
request needs the token, which only the user is told; its Host must be a name of this machine, or a page elsewhere could give its
own name our address; and its Origin, which browsers do not let pages choose, must be the server itself.
"""

from __future__ import annotations

import hmac
import re
import secrets
from typing import Optional

_TOKEN_BYTES = 24
_HOST = re.compile(r"(127\.0\.0\.1|localhost|\[::1\])(:\d{1,5})?", re.IGNORECASE)


def new_token() -> str:
    """A token that nobody can guess, in characters of an address."""
    return secrets.token_urlsafe(_TOKEN_BYTES)


def refusal(
    token: str, path: str, host: Optional[str], origin: Optional[str], *, needs_origin: bool = False
) -> str:
    """Why a request is refused; empty when it is not.

    Args:
        token: that of the server.
        path: the path of the request, which begins with its token: /TOKEN/file.
        host, origin: these headers of the request. The port of the host is free: a tunnel has another one at its beginning.
        needs_origin: whether there has to be an origin, as browsers send it with a WebSocket.
    """
    # compare_digest() takes as long for a token that is nearly right as for any other of its length.
    offered = path.split("/", 2)[1] if path.startswith("/") else ""
    if not hmac.compare_digest(offered.encode("utf-8", "replace"), token.encode()):
        return "the address has no token, or a wrong one: open the one that qtdriver inspect has printed"
    if host is None or not _HOST.fullmatch(host):
        return "the page is for 127.0.0.1 and localhost only"
    if origin is None:
        return "this is for the page only" if needs_origin else ""
    if origin.lower() != f"http://{host}".lower():
        return "another page may not use this one"
    return ""


def content_policy(host: str) -> str:
    """The Content-Security-Policy of the page at this host: nothing from elsewhere, nothing in line, in no frame."""
    return (
        "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' blob: data:; "
        f"connect-src 'self' ws://{host}; base-uri 'none'; form-action 'none'; frame-ancestors 'none'"
    )
