"""The arguments of the command line and their help."""

from __future__ import annotations

import argparse
from pathlib import Path
from typing import List, Sequence, Tuple

from ..agent import QT_MAJORS
from ..channel import DEFAULT_TIMEOUT

_DESCRIPTION = """\
Starts a Qt widgets application with the qtdriver agent inside and talks to the agent.

  qtdriver run [options] -- APP ARGS...    start APP and run requests against it

'qtdriver run --help' explains the options and the requests."""

_RUN_USAGE = (
    "qtdriver run [--headless] [--qt N] [--timeout SECONDS] [--script FILE] [--build DIR] -- APP ARGS..."
)

_RUN_DESCRIPTION = """\
Starts APP with the agent inside, then reads requests from the terminal, from a pipe or from a script file,
sends each to the agent, and prints its reply in readable form. When the input ends, APP is ended.

Requests are lines of the protocol, for example '1' (list the windows) or '2,Main' (the widgets of the window
whose title begins with Main). 'help' in the dialogue lists all of them. A part that the protocol wants as
hexadecimal text may be typed as plain text behind '=':  5,Main,dialog/ok,,=b:true,
Blank lines and lines that start with # are skipped; 'quit' or the end of the input ends the dialogue."""

_RUN_EPILOG = """\
exit status:
  0    the dialogue ended, and so did APP, with status 0 if it ended by itself
  1    one message on standard error says what went wrong: port 4242 is taken, APP cannot be started or
       driven, ended early, did not connect in time, ended with a request unanswered or with another
       status than 0; or a line could not be sent or was not answered in time
  2    the command line is wrong
  130  interrupted

examples:
  qtdriver run -- speedcrunch
  qtdriver run --headless --script requests.txt -- ./editor notes.txt
  echo 1 | qtdriver run --qt 5 -- ./start-editor.sh"""


def parse_arguments(arguments: Sequence[str]) -> argparse.Namespace:
    """Parses the command line without the program's name. Exits with status 2 and a message when it is wrong.

    The result has headless, qt, timeout, script, build, and command: the application with its arguments.
    """
    ours, application = _split(arguments)
    parser, run = _parsers()
    parsed = parser.parse_args(ours)
    if parsed.command and application:
        application.insert(0, "--")  # behind the application's name it is one of the application's arguments
    parsed.command += application
    if not parsed.command:
        run.error("name the application to start: qtdriver run [options] -- APP ARGS...")
    return parsed


def _split(arguments: Sequence[str]) -> Tuple[List[str], List[str]]:
    if "--" not in arguments:
        return list(arguments), []
    position = list(arguments).index("--")
    return list(arguments[:position]), list(arguments[position + 1 :])


def _parsers() -> Tuple[argparse.ArgumentParser, argparse.ArgumentParser]:
    raw = argparse.RawDescriptionHelpFormatter
    parser = argparse.ArgumentParser(prog="qtdriver", description=_DESCRIPTION, formatter_class=raw)
    commands = parser.add_subparsers(metavar="run", dest="action", required=True)
    run = commands.add_parser(
        "run",
        help="start an application and run requests against it",
        usage=_RUN_USAGE,
        description=_RUN_DESCRIPTION,
        epilog=_RUN_EPILOG,
        formatter_class=raw,
        allow_abbrev=False,
    )
    run.add_argument(
        "--headless",
        action="store_true",
        help="use a private desktop and a private network instead of the screen (needs the source checkout)",
    )
    run.add_argument(
        "--qt",
        type=int,
        choices=QT_MAJORS,
        help="Qt version of APP; without it the version is found out from the libraries that APP links",
    )
    run.add_argument(
        "--timeout",
        type=_seconds,
        default=DEFAULT_TIMEOUT,
        metavar="SECONDS",
        help="how long APP may take to connect, and each request to be answered (default: %(default)g)",
    )
    run.add_argument("--script", type=Path, metavar="FILE", help="read the requests from FILE (UTF-8)")
    run.add_argument(
        "--build",
        type=Path,
        metavar="DIR",
        help="folder with the built agents qt4, qt5, qt6 (default: build)",
    )
    run.add_argument("command", nargs=argparse.REMAINDER, metavar="APP ARGS...", help="what to start")
    return parser, run


def _seconds(text: str) -> float:
    seconds = float(text)
    if not 0 < seconds < 1e6:
        raise ValueError(text)
    return seconds


_seconds.__name__ = "number of seconds"
