"""The program `qtdriver inspect`."""

from __future__ import annotations

import argparse
import asyncio
import os
import select
import signal
import stat
import subprocess
import sys
import threading
from typing import Callable, Mapping

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
    if parsed.pid is not None:
        with Driver(
            build=parsed.build, request_timeout=parsed.timeout, start_timeout=parsed.timeout
        ) as driver:
            return _serve(LaunchedTarget(driver.attach(pid=parsed.pid, load_agent=True)), parsed, tell)
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

    if sys.__stdout__ is not None:
        end_with_reader(sys.__stdout__.fileno())
    return asyncio.run(serve())


def end_with_reader(descriptor: int) -> None:
    """Ends this program by SIGHUP, as the end of its terminal does, once nobody can read any more what it writes to a pipe.

    Without it a program that was started by ssh without a terminal would run on when the connection is cut.
    """
    if sys.platform == "win32":
        return
    kind = os.fstat(descriptor).st_mode
    if not (stat.S_ISFIFO(kind) or stat.S_ISSOCK(kind)):
        return

    def watch() -> None:
        poll = select.poll()
        poll.register(descriptor, 0)  # its end is told nevertheless
        poll.poll()
        signal.pthread_kill(threading.main_thread().ident or 0, signal.SIGHUP)

    threading.Thread(target=watch, daemon=True).start()


def open_browser(address: str, environment: Mapping[str, str]) -> bool:
    """Opens the address in the user's browser, if the environment has a screen or names a browser. Does not wait for it.

    Returns whether it does. Without a screen there may be a browser for terminals, which would take this one.
    """
    names = ("DISPLAY", "WAYLAND_DISPLAY", "BROWSER")
    if sys.platform.startswith("linux") and not any(environment.get(name) for name in names):
        return False
    subprocess.Popen(
        [sys.executable, "-m", "webbrowser", address],
        env=dict(environment),
        stdin=subprocess.DEVNULL,
        stdout=subprocess.DEVNULL,
        stderr=subprocess.DEVNULL,
        start_new_session=True,
    )
    return True
