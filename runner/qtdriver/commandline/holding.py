"""`run --background`: a process of its own that holds an application for one-shot commands."""

from __future__ import annotations

import argparse
import json
import os
import signal
import subprocess
import sys
from pathlib import Path
from typing import List, Sequence

from ..api.app import App
from ..api.driver import Driver
from ..desktop import desktop
from ..errors import QtDriverError
from ..errors.commandline import NoApplicationError
from ..errors.internal import GivenUpError
from ..launch.progress import is_readable_within
from ..protocol.waiting import given_up_when
from .console import LineCompleter
from .control import COMPLETE, DETACH, INSPECT, STOP, ControlSocket, Request, socket_path
from .outcome import OK, Outcome
from .verbs import FAILURES, Arguments, verb_named

HOLD = "hold"
"""The hidden command that the process in the background runs."""


def start_holding(parsed: argparse.Namespace) -> Outcome:
    """Starts the process in the background, and waits until it has started its application.

    Returns its outcome. Raises QtDriverError when the process ends without one.
    """
    more = {"qt": parsed.qt, "load_by": parsed.load_by}
    return _start_holder(parsed, more, parsed.command, parsed.command[0], headless=parsed.headless)


def start_attached(parsed: argparse.Namespace) -> Outcome:
    """As start_holding(), for a program that runs already, the process `parsed.pid`."""
    return _start_holder(parsed, {"pid": parsed.pid}, (), f"process {parsed.pid}")


def _start_holder(
    parsed: argparse.Namespace, more: Arguments, program: Sequence[str], name: str, *, headless: bool = False
) -> Outcome:
    options = {
        "name": parsed.name,
        "socket": str(socket_path(parsed.name)),
        "timeout": parsed.timeout,
        **more,
    }
    options["build"] = None if parsed.build is None else str(parsed.build)
    command = [sys.executable, "-c", START, RUNNER, HOLD, json.dumps(options), *program]
    if headless:
        command.insert(0, str(desktop.SCRIPT))
    with subprocess.Popen(
        command,
        stdin=subprocess.DEVNULL,
        stdout=subprocess.PIPE,
        stderr=subprocess.PIPE,
        text=True,
        start_new_session=True,
        env=desktop.environment_for_own_network() if headless else None,
    ) as process:
        assert process.stdout is not None and process.stderr is not None
        try:
            is_readable_within(process.stdout, None, f"waiting for the agent in {name}")
            line = process.stdout.readline()
        except BaseException:
            if sys.platform != "win32":
                os.killpg(process.pid, signal.SIGTERM)  # nobody wants the application any more
            raise
        if line:
            # The process goes on: close the pipes, and keep Popen from waiting for its end.
            process.stdout.close()
            process.stderr.close()
            process.returncode = OK
            return Outcome.from_line(line)
        complaint = process.stderr.read().strip()
    raise QtDriverError(complaint or f"the process in the background ended with status {process.returncode}")


RUNNER = str(Path(__file__).resolve().parents[2])
START = (
    "import sys; sys.path[0] = sys.argv.pop(1); from qtdriver.commandline.cli import main; sys.exit(main())"
)
"""Runs the command line from where this package is; the arguments are RUNNER and the command line."""


def hold(options_text: str, command: List[str]) -> int:
    """Holds an application until it ends or somebody stops it.

    Prints one outcome on standard output: that the application is there, or why not. Returns the exit status.
    """
    try:
        return _hold(json.loads(options_text), command)
    except QtDriverError as error:
        outcome = Outcome.of_error(error)
        print(outcome.to_line(), flush=True)
        return outcome.status


def _hold(options: Arguments, command: List[str]) -> int:
    path = Path(options["socket"])
    build = None if options["build"] is None else Path(options["build"])
    with ControlSocket(path) as control, Driver(
        qt=options.get("qt"),
        build=build,
        load_by=options.get("load_by"),
        request_timeout=options["timeout"],
        start_timeout=options["timeout"],
    ) as driver:
        app = driver.launch(*command) if command else driver.attach(pid=options["pid"], load_agent=True)
        data = {"name": options["name"], "pid": app.pid, "holder": os.getpid(), "socket": str(path)}
        end = "end it with: qtdriver stop" if command else "let it go with: qtdriver detach"
        text = f'process {app.pid} is held under the name "{options["name"]}"; {end}'
        if options["name"] != "default":
            text += f' --name {options["name"]}'
        print(Outcome(text, data).to_line(), flush=True)
        _leave_terminal()
        _serve(control, app)
    return OK


def _leave_terminal() -> None:
    """Redirects the output to /dev/null: the process that started this one has closed the pipes."""
    nowhere = os.open(os.devnull, os.O_RDWR)
    for descriptor in (1, 2):
        os.dup2(nowhere, descriptor)
    os.close(nowhere)


def _serve(control: ControlSocket, app: App) -> None:
    while app.connection.fileno() >= 0:  # it is closed when an application that hangs has been ended
        if control.wait_with(app.connection) and app.connection.is_closed():
            return
        request = control.next_request()
        if request is None:
            continue
        if request.verb == STOP:
            app.terminate()
            request.answer(Outcome("stopped", {}))
            return
        if request.verb == DETACH and app.process is None:
            app.terminate()  # which ends nothing but the connection
            request.answer(Outcome(f"process {app.pid} runs on without an agent", {"pid": app.pid}))
            return
        request.answer(_run(app, request, control))


def _run(app: App, request: Request, control: ControlSocket) -> Outcome:
    if request.verb == COMPLETE:
        return Outcome("", LineCompleter(app).candidates(list(request.values.get("words", ()))))
    if request.verb == INSPECT:
        return _inspect(app, request.values)
    if request.verb == DETACH:
        return Outcome.of_error(
            QtDriverError('"run --background" has started it: end it with "qtdriver stop"')
        )
    verb = verb_named(request.verb)
    if verb is None:
        return Outcome.of_error(QtDriverError(f"no such command: {request.verb}"))
    try:
        with given_up_when(lambda: request.is_abandoned() or control.is_stop_waiting()):
            return verb.run(app, request.values)
    except GivenUpError:
        return Outcome.of_error(NoApplicationError('the application is being ended by "qtdriver stop"'))
    except FAILURES as error:
        return verb.failure(error)


def _inspect(app: App, values: Arguments) -> Outcome:
    """An operation of the page that `qtdriver inspect` serves."""
    from ..inspector.operations import perform  # it takes a while, for which other commands need not wait

    try:
        return Outcome("", perform(app, str(values["operation"]), dict(values["values"])))
    except (QtDriverError, KeyError) as error:
        return Outcome.of_error(error if isinstance(error, QtDriverError) else QtDriverError(repr(error)))
