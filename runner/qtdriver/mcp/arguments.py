"""The arguments of `qtdriver mcp`: apart, since every command line declares them, and the server is slow to import."""

from __future__ import annotations

import argparse
from pathlib import Path

from ..launch.agent import QT_MAJORS
from ..protocol.channel import DEFAULT_TIMEOUT

ON_DESKTOP = "--on-desktop"
"""Hidden: the process is on its private desktop already."""


def add_mcp_arguments(parser: argparse.ArgumentParser) -> None:
    """Declares the arguments of the command."""
    where = parser.add_mutually_exclusive_group()
    where.add_argument(
        "--headless",
        action="store_true",
        help="applications appear on a private desktop, in a private network (the default)",
    )
    where.add_argument(
        "--headed", action="store_true", help="applications appear on the screen, to be watched"
    )
    where.add_argument(ON_DESKTOP, action="store_true", help=argparse.SUPPRESS)
    parser.add_argument(
        "--folder",
        type=Path,
        metavar="DIR",
        help="the folder of the project: applications start in it, and tests are saved below it (default: the current one)",
    )
    parser.add_argument(
        "--qt", type=int, choices=QT_MAJORS, help="Qt version of applications whose files do not tell it"
    )
    parser.add_argument(
        "--timeout",
        type=float,
        default=DEFAULT_TIMEOUT,
        metavar="SECONDS",
        help="how long an application may take to start, and to answer a request (default: %(default)g)",
    )
