"""The program `qtdriver inspect`."""

from __future__ import annotations

import argparse
import asyncio
import os
import sys
import threading
import webbrowser
from typing import Callable, Mapping, Optional

from ..api.app import App
from ..api.driver import Driver
from .server import PageServer, require_aiohttp
from .target import AskHolder, HeldTarget, LaunchedTarget, Target


def inspect(parsed: argparse.Namespace, ask_holder: AskHolder, tell: Callable[[str], None]) -> str:
    """Serves the page of an application until that has ended.

    Args:
        parsed: the arguments.
        ask_holder: asks the process that holds an application.
        tell: called with the address of the page.

    Returns how the application ended. Raises QtDriverError.
    """
    require_aiohttp()
    if not parsed.command:
        return _serve(HeldTarget(ask_holder), parsed, tell)
    is_private = not parsed.headed and sys.platform != "win32"
    with Driver(
        qt=parsed.qt,
        build=parsed.build,
        headless=is_private,
        load_by=parsed.load_by,
        request_timeout=parsed.timeout,
        start_timeout=parsed.timeout,
    ) as driver:

        def start_again() -> App:
            driver.apps[-1].terminate()
            return driver.launch(*parsed.command)

        return _serve(LaunchedTarget(driver.launch(*parsed.command), start_again), parsed, tell)


def _serve(target: Target, parsed: argparse.Namespace, tell: Callable[[str], None]) -> str:
    def announce(address: str) -> None:
        tell(address)
        if not parsed.no_browser:
            open_browser(address, os.environ)

    async def serve() -> str:
        return await PageServer(target).serve(announce)

    return asyncio.run(serve())


def open_browser(address: str, environment: Mapping[str, str]) -> Optional[threading.Thread]:
    """Opens the address in the user's browser, if there is a screen for one. Does not wait for it.

    Without a screen there may be a browser for terminals, which would take this one.
    """
    if sys.platform.startswith("linux") and not (
        environment.get("DISPLAY") or environment.get("WAYLAND_DISPLAY")
    ):
        return None
    opening = threading.Thread(target=webbrowser.open, args=(address,), daemon=True)
    opening.start()
    return opening
