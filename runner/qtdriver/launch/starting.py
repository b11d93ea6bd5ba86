"""Starting an application with the agent inside and waiting for its greeting."""

from __future__ import annotations

import os
import subprocess
from pathlib import Path
from typing import Callable, Mapping, Optional, Sequence, Tuple

from ..errors import EarlyExitError, NoGreetingError, ProgramNotExecutableError
from ..protocol.channel import DEFAULT_TIMEOUT
from ..protocol.connection import Connection
from ..protocol.pending_agents import PendingAgents
from ..protocol.waiting import Deadline
from .loading import Start, start_of
from .platform import CREATION_FLAGS, LaunchedProcesses
from .process import Process
from .program import find_program
from .progress import Progress
from .wine import WineDesktops

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own


def start(
    command: Sequence[str],
    *,
    pending_agents: PendingAgents,
    wine: WineDesktops,
    qt: Optional[int] = None,
    build: "Optional[Path | str]" = None,
    start_timeout: float = DEFAULT_TIMEOUT,
    request_timeout: float = DEFAULT_TIMEOUT,
    environment: Optional[Mapping[str, str]] = None,
    working_directory: "Optional[Path | str]" = None,
    load_by: Optional[str] = None,
    failed: Callable[[Process], None] = lambda process: None,
) -> Tuple[Connection, Process]:
    """Starts a program with the agent inside, and waits until the agent has greeted.

    Args:
        command: the program and its arguments.
        pending_agents: those of a server that listens already, since the agent looks for its server once.
        wine: Wine for Windows programs; it has to stay open as long as they run.
        qt: the major version of the application's Qt; None finds it out from the program's libraries.
        build: the folder with the agents; see agent_library().
        start_timeout: seconds that the greeting may take.
        request_timeout: seconds that each later request may take.
        environment: the environment of the application; by default that of this process.
        working_directory: the current folder of the application; by default that of this process.
        load_by: one of LOAD_WAYS; by default the one for programs of this kind.
        failed: called with the process when no agent has greeted, before the process is ended.

    Returns the connection and the process.

    Raises ProgramError subclasses, AgentNotBuiltError, AgentPathError, WineError, EarlyExitError and NoGreetingError,
    after everything that was started has been ended.
    """
    program = find_program(command[0])
    variables = os.environ if environment is None else environment
    how = start_of(program, command[1:], variables, wine=wine, qt=qt, build=build, load_by=load_by)
    process = _start(program, how, working_directory)

    def wait() -> Optional[Connection]:
        return _wait_for_greeting(command[0], process, pending_agents, start_timeout, request_timeout)

    try:
        connection = wait()
        if connection is None and how.under_wine and _ended_silently(process):
            process.terminate()
            process = _start(program, how, working_directory)
            connection = wait()
        if connection is None:
            failed(process)
            raise _start_error(command[0], process, pending_agents, start_timeout)
    except BaseException:
        process.terminate()
        raise
    if connection.process is not None:
        process.agent_came(connection.process)
    return connection, process


def _start(
    program: Path,
    how: Start,
    working_directory: "Optional[Path | str]",
) -> Process:
    launched = LaunchedProcesses()
    try:
        popen = subprocess.Popen(
            how.command,
            env=launched.environment(how.environment),
            cwd=working_directory,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            bufsize=0,
            creationflags=CREATION_FLAGS,
            # By the session LaunchedProcesses recognises processes that have cleared their environment.
            start_new_session=True,
        )
    except OSError as error:
        launched.end(0)
        raise ProgramNotExecutableError(f"{program} cannot be executed: {error.strerror}") from error
    return Process(popen, launched, under_wine=how.under_wine, qt_major=how.qt_major)


def _wait_for_greeting(
    program: str,
    process: Process,
    pending_agents: PendingAgents,
    timeout: float,
    request_timeout: float,
) -> Optional[Connection]:
    """The connection of the first agent in the process that was started, or in one that it has started in turn.

    None when they end before, or the time is over.
    """
    with Progress(f"waiting for the agent in {program}") as shown:

        def has_ended() -> bool:
            shown.tick()
            return process.has_ended()

        return pending_agents.wait_for(
            process.launched.owns, Deadline(timeout), request_timeout, given_up=has_ended
        )


def _ended_silently(process: Process) -> bool:
    """Whether a program has ended with status 1 and no output.

    Under Wine, on a busy machine, one start in some hundred ends so. Nobody knows why, so it is repeated once.
    """
    return process.status() == 1 and not process.last_output()


def _start_error(
    program: str, process: Process, pending_agents: PendingAgents, timeout: float
) -> "EarlyExitError | NoGreetingError":
    """The error for a program in which no agent has greeted. Ends it."""
    status = process.status()
    if status is not None:
        return EarlyExitError(program, status, process.last_output(), pending_agents.others())
    last_output = process.last_output()
    ended = process.terminate() is not None
    return NoGreetingError(
        program, timeout, last_output, None if ended else process.pid, pending_agents.others()
    )
