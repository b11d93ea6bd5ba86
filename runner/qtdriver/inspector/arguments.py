"""The arguments of `qtdriver inspect`: apart, since every command line declares them, and what serves the page is slow to import."""

from __future__ import annotations

import argparse

from ..launch.agent import QT_MAJORS
from ..launch.loading import LOAD_WAYS
from ..protocol.channel import DEFAULT_TIMEOUT


def add_inspect_arguments(parser: argparse.ArgumentParser) -> None:
    """Declares the arguments of the command, but for those that all commands have."""
    parser.add_argument(
        "--headed",
        action="store_true",
        help="the application appears on the screen, not on a private desktop that only the page shows",
    )
    parser.add_argument(
        "--no-browser", action="store_true", help="print the address only, and open no browser"
    )
    parser.add_argument(
        "--pid", type=int, help="attach to this process, a program that runs, and let it go at the end"
    )
    parser.add_argument(
        "--qt", type=int, choices=QT_MAJORS, help="Qt version of APP, where its file does not tell"
    )
    parser.add_argument("--load-by", choices=LOAD_WAYS, help="as for run")
    parser.add_argument(
        "--timeout",
        type=float,
        default=DEFAULT_TIMEOUT,
        metavar="SECONDS",
        help="how long APP may take to start, and to answer a request (default: %(default)g)",
    )
    parser.add_argument(
        "command",
        nargs=argparse.REMAINDER,
        metavar="-- APP ARGS...",
        help="what to start; without it, the application that run --background holds",
    )
