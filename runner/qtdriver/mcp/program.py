"""The program `qtdriver mcp`."""

from __future__ import annotations

import argparse
import gc
import os
import sys
from pathlib import Path
from typing import List

from ..desktop import desktop
from ..tools.options import Options
from ..tools.session import Session
from .arguments import ON_DESKTOP
from .offer import QtOffer
from .server import McpServer
from .wire import Wire

_OBJECTS = 100_000


def serve(parsed: argparse.Namespace, version: str, start: List[str]) -> int:
    """Serves the client at standard input and output until that closes its end.

    Args:
        parsed: the arguments.
        version: that of the runner.
        start: the command that starts the command line anew, for a process on a desktop of its own.

    Returns the exit status.
    """
    _enter_folder(parsed)
    if sys.platform != "win32" and not parsed.headed and not parsed.on_desktop:
        _continue_on_desktop(parsed, start)
    # A snapshot makes thousands of objects that all live: by default the collector looks at each of them several times.
    gc.set_threshold(_OBJECTS)
    options = Options(Path.cwd(), parsed.build, parsed.qt, parsed.timeout)
    session = Session(options)
    server = {"name": "qtdriver", "title": "qtdriver: Qt applications", "version": version}
    try:
        McpServer(Wire.of_process(), QtOffer(session), server).run()
    finally:
        session.close()
    return 0


def _enter_folder(parsed: argparse.Namespace) -> None:
    """Makes the folder of the project the current one. A relative folder of agents counts from where it was named."""
    if parsed.folder is None:
        return
    if parsed.build is not None:
        parsed.build = parsed.build.absolute()
    try:
        os.chdir(parsed.folder)
    except OSError as error:
        sys.exit(f"qtdriver: the folder {parsed.folder} cannot be used: {error.strerror}")


def _continue_on_desktop(parsed: argparse.Namespace, start: List[str]) -> None:
    """Replaces this process by the same on a desktop of its own."""
    # Nestable: a test that is saved is run on a desktop beside this one.
    words = [str(desktop.SCRIPT), "--nestable", *start, "mcp", ON_DESKTOP, "--timeout", str(parsed.timeout)]
    words += [] if parsed.qt is None else ["--qt", str(parsed.qt)]
    words += [] if parsed.build is None else ["--build", str(parsed.build)]
    os.execve(words[0], words, desktop.environment_for_own_network())
