"""The command line's arguments and their help."""

from __future__ import annotations

import argparse
from pathlib import Path
from typing import List, NoReturn, Optional, Sequence, Tuple

from ..errors.commandline import UsageError
from ..inspector.arguments import add_inspect_arguments
from ..launch.agent import QT_MAJORS
from ..launch.loading import LOAD_WAYS
from ..mcp.arguments import add_mcp_arguments
from ..project.initialising import add_init_arguments
from ..protocol.channel import DEFAULT_TIMEOUT
from .control import DEFAULT_NAME, DETACH, STOP, valid_name
from .outcome import EXIT_STATUSES
from .reporting import add_report_arguments
from .versions import describe_versions
from .verbs import Verb, all_verbs, seconds

_RAW = argparse.RawDescriptionHelpFormatter

_DESCRIPTION = """\
Starts a Qt widgets application with the qtdriver agent inside, looks at it and drives it.

  qtdriver run -- APP ARGS...                 a console with the application
  qtdriver run --background -- APP ARGS...    hold it for the other commands
  qtdriver tree "Window title"                for example
  qtdriver stop"""

FIRST_STEPS = """\
qtdriver drives Qt widgets applications. Five commands to begin with:

  qtdriver doctor -- APP                      checks this machine and the application
  qtdriver run --background -- APP ARGS...    starts it and holds it for the other commands
  qtdriver tree "Window title" --paths        lists its widgets, each with an address
  qtdriver activate "Window title" ADDRESS    presses, checks, or chooses one of them
  qtdriver stop                               ends it

'qtdriver --help' lists all commands, 'qtdriver COMMAND --help' explains one."""
"""The text for a command line without a word."""

_RUN_USAGE = (
    "qtdriver run [--headless] [--background [--name NAME]] [--qt N] [--load-by WAY] [--timeout SECONDS]\n"
    "                    [--script FILE] [--strict] [--build DIR] [--json] -- APP ARGS..."
)

_RUN_DESCRIPTION = """\
Starts APP, a Qt widgets program of Linux or, under Wine, of Windows, with the agent inside. Then it reads
requests from the terminal, from a pipe or from a script file, sends each to the agent, and prints its reply in
readable form. When the input ends, APP is ended.

Requests are the other commands (tree Main, get Main ok text), or lines of the protocol, for example '1' (list
the windows) or '2,Main' (the widgets of the window whose title begins with Main). 'help' lists all of them. A
part that the protocol wants as hexadecimal text may be typed as plain text behind '=':  5,Main,dialog/ok,,=b:true,
Blank lines and lines that start with # are skipped; 'quit' or the end of the input ends the dialogue."""

_RUN_EPILOG = """\
exit status:
  0    the dialogue ended, and so did APP, with status 0 if it ended by itself; with --background: APP is held
  1    one message on standard error says what went wrong: port 4242 is taken, APP cannot be started or
       driven, ended early, did not connect in time, ended with a request unanswered or with another
       status than 0; or a line could not be sent or was not answered in time; with --strict, or was refused;
       with --background, the name is taken
  2    the command line is wrong
  129  the terminal was closed (SIGHUP)
  130  interrupted
  143  terminated (SIGTERM)

examples:
  qtdriver run -- speedcrunch
  qtdriver run --headless --script requests.txt -- ./editor notes.txt
  qtdriver run --background --headless -- speedcrunch
  echo 1 | qtdriver run --qt 5 -- ./start-editor.sh"""


class _Parser(argparse.ArgumentParser):
    """A parser that raises UsageError, so that a wrong command line is reported like other errors, also as JSON."""

    def error(self, message: str) -> NoReturn:
        """Raises the UsageError for what is wrong."""
        raise UsageError(f"{message}\n{self.format_usage().rstrip()}")


class _Version(argparse.Action):
    """Prints versions and exits. The agents are looked for only then."""

    def __init__(self, option_strings: Sequence[str], dest: str, help: str) -> None:
        """The option takes no argument."""
        super().__init__(option_strings, dest=argparse.SUPPRESS, nargs=0, help=help)

    def __call__(
        self,
        parser: argparse.ArgumentParser,
        namespace: argparse.Namespace,
        values: object,
        option_string: Optional[str] = None,
    ) -> NoReturn:
        print(describe_versions())
        parser.exit()


def wants_json(arguments: Sequence[str]) -> bool:
    """Whether a command line asks for JSON, also one that is wrong otherwise."""
    return "--json" in _split(arguments)[0]


def parse_arguments(arguments: Sequence[str]) -> argparse.Namespace:
    """Parses the command line without the program's name. Exits after --help.

    Returns the arguments: `action` is the name of the command; "run", "doctor", "init" and "inspect" have the application
    with its arguments in `command`. Raises UsageError when the command line is wrong.
    """
    ours, application = _split(arguments)
    parser, run = parsers()
    parsed = parser.parse_args(ours)
    if parsed.action not in ("run", "doctor", "init", "inspect"):
        if application:
            parser.error(f"{parsed.action} takes no application: start it with qtdriver run --background")
        return parsed
    if parsed.command and application:
        application.insert(0, "--")  # behind the application's name it is one of the application's arguments
    parsed.command = [*parsed.command, *application]
    if parsed.action == "inspect" and parsed.command and parsed.pid is not None:
        parser.error("inspect takes --pid or an application, not both")
    if parsed.action == "run" and not parsed.command:
        run.error("name the application to start: qtdriver run [options] -- APP ARGS...")
    if parsed.action == "init" and not parsed.command:
        parser.error("name the application to test: qtdriver init FOLDER -- APP ARGS...")
    return parsed


def _split(arguments: Sequence[str]) -> Tuple[List[str], List[str]]:
    if "--" not in arguments:
        return list(arguments), []
    position = list(arguments).index("--")
    return list(arguments[:position]), list(arguments[position + 1 :])


def parsers() -> Tuple[_Parser, _Parser]:
    """The parser of the command line, and that of the command "run"."""
    epilog = "'qtdriver COMMAND --help' explains a command, with an example."
    parser = _Parser(prog="qtdriver", description=_DESCRIPTION, epilog=epilog, formatter_class=_RAW)
    parser.add_argument(
        "--version", action=_Version, help="print the versions of the runner and its agents, and exit"
    )
    commands = parser.add_subparsers(metavar="COMMAND", dest="action", required=True)
    run = _add_run(commands)
    for verb in all_verbs():
        one_shot = _add(commands, verb.name, verb.summary, verb.example)
        _add_holder(one_shot)
        verb.add_arguments(one_shot)
    _add_holder(_add(commands, STOP, "ends what run --background holds", "stop"))
    _add_attach(commands)
    _add_holder(_add(commands, DETACH, "lets go what attach holds, which runs on without an agent", "detach"))
    _add_doctor(commands)
    _add_init(commands)
    _add_trace(commands)
    _add_report(commands)
    _add_inspect(commands)
    _add_mcp(commands)
    return parser, run


def verb_parser(verb: Verb) -> _Parser:
    """The parser of a command in the console."""
    parser = _Parser(prog=verb.name, description=verb.summary)
    verb.add_arguments(parser)
    return parser


def _add(commands: "argparse._SubParsersAction[_Parser]", name: str, summary: str, example: str) -> _Parser:
    statuses = "\n".join(f"  {status:<4} {meaning}" for status, meaning in EXIT_STATUSES)
    epilog = f"example:\n  qtdriver {example}\n\nexit status:\n{statuses}"
    sentence = f"{summary[0].upper()}{summary[1:]}."
    parser = commands.add_parser(
        name, help=summary, description=sentence, epilog=epilog, formatter_class=_RAW, allow_abbrev=False
    )
    _add_json(parser)
    return parser


def _add_attach(commands: "argparse._SubParsersAction[_Parser]") -> None:
    summary = "loads the agent into a program that runs, and holds it for the other commands"
    attach = _add(commands, "attach", summary, "attach 4711")
    _add_holder(attach)
    _add_build(attach)
    attach.add_argument("pid", type=int, metavar="PID", help="the process, of a Qt widgets program of Linux")
    attach.add_argument(
        "--timeout",
        type=_positive_seconds,
        default=DEFAULT_TIMEOUT,
        metavar="SECONDS",
        help="how long the program may be busy first, and take for each request (default: %(default)g)",
    )


def _add_doctor(commands: "argparse._SubParsersAction[_Parser]") -> None:
    summary = "checks what usually goes wrong, and says how to mend it"
    doctor = _add(commands, "doctor", summary, "doctor -- ./editor")
    _add_build(doctor)
    doctor.add_argument(
        "command", nargs=argparse.REMAINDER, metavar="-- APP", help="look at this program, too"
    )


def _add_init(commands: "argparse._SubParsersAction[_Parser]") -> None:
    summary = "writes a folder with a first test for an application, and runs it"
    init = _add(commands, "init", summary, "init my-tests -- ./editor")
    _add_build(init)
    add_init_arguments(init)


def _add_trace(commands: "argparse._SubParsersAction[_Parser]") -> None:
    summary = "prints the steps, the error, the requests and the pictures of a failure"
    trace = _add(commands, "trace", summary, "trace test-results/test_order-test_milk-0a1b2c --json")
    trace.add_argument(
        "folder", type=Path, metavar="FOLDER", help="the folder of the failure, or of its trace"
    )


def _add_report(commands: "argparse._SubParsersAction[_Parser]") -> None:
    summary = "merges the results of shards: one page and one JUnit file"
    add_report_arguments(
        _add(commands, "report", summary, "report merge shard-1 shard-2 --output test-results")
    )


def _add_inspect(commands: "argparse._SubParsersAction[_Parser]") -> None:
    summary = "shows an application and its widgets on a page in the browser"
    inspect = _add(commands, "inspect", summary, "inspect -- ./editor notes.txt")
    _add_holder(inspect)
    _add_build(inspect)
    add_inspect_arguments(inspect)


def _add_mcp(commands: "argparse._SubParsersAction[_Parser]") -> None:
    summary = "serves a language model, which uses applications and saves tests"
    mcp = _add(commands, "mcp", summary, "mcp --headed")
    _add_build(mcp)
    add_mcp_arguments(mcp)


def _add_json(parser: argparse.ArgumentParser) -> None:
    parser.add_argument(
        "--json", action="store_true", help="print JSON, of errors too: {error, message, code}"
    )


def _add_holder(parser: argparse.ArgumentParser) -> None:
    parser.add_argument(
        "--name",
        type=valid_name,
        default=DEFAULT_NAME,
        help="which of several applications that run --background holds (default: %(default)s)",
    )


def _add_build(parser: argparse.ArgumentParser) -> None:
    parser.add_argument(
        "--build",
        type=Path,
        metavar="DIR",
        help="folder with the built agents qt4, qt5, qt6 (default: build)",
    )


def _add_run(commands: "argparse._SubParsersAction[_Parser]") -> _Parser:
    run = commands.add_parser(
        "run",
        help="starts an application: for a dialogue, for a script, or in the background",
        usage=_RUN_USAGE,
        description=_RUN_DESCRIPTION,
        epilog=_RUN_EPILOG,
        formatter_class=_RAW,
        allow_abbrev=False,
    )
    run.add_argument(
        "--headless",
        action="store_true",
        help="use a private desktop and a private network instead of the screen",
    )
    run.add_argument(
        "--background", action="store_true", help="hold APP in the background, for the other commands"
    )
    _add_holder(run)
    _add_start(run)
    run.add_argument("--script", type=Path, metavar="FILE", help="read the requests from FILE (UTF-8)")
    run.add_argument("--strict", action="store_true", help="a refused request makes the exit status 1")
    _add_build(run)
    _add_json(run)
    run.add_argument("command", nargs=argparse.REMAINDER, metavar="APP ARGS...", help="what to start")
    return run


def _add_start(run: _Parser) -> None:
    run.add_argument(
        "--qt",
        type=int,
        choices=QT_MAJORS,
        help="Qt version of APP; without it the version is found out from the libraries that APP links",
    )
    run.add_argument(
        "--load-by",
        choices=LOAD_WAYS,
        help="how the agent gets into a program of Linux: preload (the default), or testability, which passes the option "
        "-testability, for programs that drop LD_PRELOAD",
    )
    run.add_argument(
        "--timeout",
        type=_positive_seconds,
        default=DEFAULT_TIMEOUT,
        metavar="SECONDS",
        help="how long APP may take to connect, and each request to be answered (default: %(default)g)",
    )


def _positive_seconds(text: str) -> float:
    value = seconds(text)
    if value == 0:
        raise ValueError(text)
    return value


_positive_seconds.__name__ = "number of seconds"
