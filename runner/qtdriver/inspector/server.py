"""The server of the page: files, and one WebSocket for all that goes to and fro."""

from __future__ import annotations

import asyncio
from pathlib import Path
from typing import Any, Awaitable, Callable, Optional

from ..errors import QtDriverError
from ..report.page import TEMPLATES
from .access import content_policy, new_token, refusal
from .session import PageSession
from .target import Target
from .worker import Worker

_PAGE = Path(__file__).with_name("page")
_SHARED = ("page.css", "dom.js")
"""Files that the page of a run has, too."""

_KINDS = {".html": "text/html", ".js": "text/javascript", ".css": "text/css"}
_FIRST = "index.html"
_LIVE = "live"
_LOOPBACK = "127.0.0.1"
_TAKEN = 4409
"""The code by which a page learns that there is another one."""

_TURN_SECONDS = 1.0
"""How long a page waits for the one before it: that may be its own, which is loaded anew."""

_HEARTBEAT_SECONDS = 20.0
_CLOSING_SECONDS = 1.0
_MAX_MESSAGE = 1 << 20
_WATCH_SECONDS = 0.5


def require_aiohttp() -> None:
    """Raises QtDriverError where aiohttp is missing."""
    try:
        import aiohttp  # noqa: F401
    except ImportError as error:
        raise QtDriverError(
            "the inspector needs aiohttp",
            hint="install it: apt install python3-aiohttp, or pip install aiohttp",
        ) from error


class PageServer:
    """Serves the page of one application. Made within the loop that serves it."""

    def __init__(self, target: Target) -> None:
        self._target = target
        self._worker = Worker()
        self._token = new_token()
        self._turn = asyncio.Lock()
        self._files = {_FIRST: _PAGE / _FIRST}
        self._files.update({file.name: file for file in _PAGE.iterdir() if file.suffix in _KINDS})
        self._files.update({name: TEMPLATES / name for name in _SHARED})
        self._session: Optional[PageSession] = None

    async def serve(self, announce: Callable[[str], None]) -> str:
        """Serves until the application has ended. `announce` is called with the address. Returns how the application ended."""
        from aiohttp import web

        @web.middleware
        async def guard(request: Any, handler: Callable[[Any], Awaitable[Any]]) -> Any:
            return await self._guard(request, handler)

        application = web.Application(middlewares=[guard])
        application.router.add_get("/{token}/" + _LIVE, self._live)
        application.router.add_get("/{token}/{file:.*}", self._file)
        runner = web.AppRunner(application, access_log=None, handle_signals=False)
        await runner.setup()
        try:
            await web.TCPSite(runner, _LOOPBACK, 0).start()
            announce(f"http://{_LOOPBACK}:{runner.addresses[0][1]}/{self._token}/")
            return await self._end_of_application()
        finally:
            self._worker.close()
            if self._session is not None:
                await self._session.close()
            await runner.cleanup()

    async def _end_of_application(self) -> str:
        while not await self._worker.run(self._target.is_gone):
            await asyncio.sleep(_WATCH_SECONDS)
        end = await self._worker.run(self._target.describe_end)
        if self._session is not None:
            await self._session.tell({"told": "ended", "text": end})
        return end

    async def _guard(self, request: Any, handler: Callable[[Any], Awaitable[Any]]) -> Any:
        """Refuses what may not be asked, and says in each answer what a page may do."""
        from aiohttp import web

        host = request.headers.get("Host")
        is_live = request.path.endswith(f"/{_LIVE}")
        reason = refusal(self._token, request.path, host, request.headers.get("Origin"), needs_origin=is_live)
        if reason:
            return web.Response(status=403, text=f"{reason}\n")
        try:
            return await handler(request)
        except web.HTTPException as error:
            return web.Response(status=error.status, text=f"{error.reason}\n")

    async def _file(self, request: Any) -> Any:
        from aiohttp import web

        file = self._files.get(request.match_info["file"] or _FIRST)
        if file is None:
            return web.Response(status=404, text="no such file\n")
        headers = {
            "Content-Security-Policy": content_policy(request.headers["Host"]),
            "X-Content-Type-Options": "nosniff",
            "Referrer-Policy": "no-referrer",
            "Cache-Control": "no-store",
            "Cross-Origin-Resource-Policy": "same-origin",
        }
        text = file.read_text(encoding="utf-8")
        return web.Response(text=text, content_type=_KINDS[file.suffix], charset="utf-8", headers=headers)

    async def _live(self, request: Any) -> Any:
        from aiohttp import web

        socket = web.WebSocketResponse(
            timeout=_CLOSING_SECONDS, heartbeat=_HEARTBEAT_SECONDS, max_msg_size=_MAX_MESSAGE
        )
        await socket.prepare(request)
        try:
            await asyncio.wait_for(self._turn.acquire(), _TURN_SECONDS)
        except asyncio.TimeoutError:
            await socket.close(code=_TAKEN, message=b"another page shows this application")
            return socket
        try:
            self._session = PageSession(socket, self._target, self._worker)
            await self._session.run()
        finally:
            self._session = None
            self._turn.release()
        return socket
