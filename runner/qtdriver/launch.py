"""Starting an application with the agent inside and waiting for its greeting."""

from __future__ import annotations

import os
import select
import socket
import subprocess
import threading
import time
from pathlib import Path
from typing import Dict, Mapping, Optional, Sequence

from .agent import agent_library, require_same_architecture
from .application import Application, Process, describe_exit
from .channel import DEFAULT_TIMEOUT
from .connection import Connection
from .errors import ConnectionClosed, QtDriverError, RequestTimeout
from .program import ProgramNotExecutableError, find_program
from .qtversion import qt_major
from .server import Server


class EarlyExitError(QtDriverError):
    """The application ended before its agent greeted.

    Attributes:
        status: the exit status, negative for a signal.
    """

    def __init__(self, program: str, status: int, last_words: str) -> None:
        hint = ""
        if status == 0:
            hint = (
                ". If it started the application and left, name the application itself; if it handed over to "
                "an instance that was running already, end that one"
            )
        output = f"; its last output:\n{last_words}" if last_words else ", without any output"
        super().__init__(
            f"{program} ended ({describe_exit(status)}) before its agent connected{hint}{output}"
        )
        self.status = status


class NoGreetingError(QtDriverError):
    """The application runs, but its agent has not greeted in time."""

    def __init__(self, program: str, timeout: float, last_words: str) -> None:
        output = f"; its last output:\n{last_words}" if last_words else ""
        super().__init__(
            f"{program} runs, but its agent has not connected within {timeout:g} seconds. Is it a Qt widgets "
            "application, of the Qt version given with --qt? Does it show a display error, wait for "
            "something before its event loop starts, start with more rights than this user has (LD_PRELOAD "
            "is dropped then), or need longer (--timeout)? It was ended" + output
        )


def preload_environment(library: Path, environment: Optional[Mapping[str, str]] = None) -> Dict[str, str]:
    """`environment`, by default that of this process, with `library` in front of what LD_PRELOAD names."""
    result = dict(os.environ if environment is None else environment)
    already = result.get("LD_PRELOAD", "")
    result["LD_PRELOAD"] = f"{library}:{already}" if already else str(library)
    return result


def launch(
    command: Sequence[str],
    *,
    server: Server,
    qt: Optional[int] = None,
    build: Optional[Path] = None,
    timeout: float = DEFAULT_TIMEOUT,
    request_timeout: float = DEFAULT_TIMEOUT,
    environment: Optional[Mapping[str, str]] = None,
) -> Application:
    """Starts `command`, program and arguments, with the agent inside, and waits until the agent has greeted.

    `server` listens already: the agent looks for it once. `qt` is the application's Qt major; None finds it
    out from the program's libraries. `build` is the folder with the agents (see agent_library()). `timeout`
    is how long the greeting may take, `request_timeout` how long each later request may, both in seconds.
    `environment` is for the application, by default that of this process.

    Raises ProgramError subclasses, AgentNotBuiltError, AgentPathError, EarlyExitError, NoGreetingError, and
    ProtocolError when something else than an agent connects. The process that was started is ended then.
    """
    program = find_program(command[0])
    if qt is None:
        library = agent_library(qt_major(program, environment), build)
        require_same_architecture(program, library)
    else:
        library = agent_library(qt, build)
    process = _start(program, command, preload_environment(library, environment))
    try:
        connection = _wait_for_greeting(command[0], process, server, timeout, request_timeout)
    except BaseException:
        process.terminate()
        raise
    return Application(process, connection)


def _start(program: Path, command: Sequence[str], environment: Mapping[str, str]) -> Process:
    try:
        popen = subprocess.Popen(
            [str(program), *command[1:]],
            env=environment,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            bufsize=0,
        )
    except OSError as error:
        raise ProgramNotExecutableError(f"{program} cannot be executed: {error.strerror}") from error
    return Process(popen)


def _wait_for_greeting(
    program: str, process: Process, server: Server, timeout: float, request_timeout: float
) -> Connection:
    deadline = time.monotonic() + timeout
    try:
        if _client_comes(process, server, timeout):
            return server.accept(max(deadline - time.monotonic(), 0), request_timeout)
    except ConnectionClosed:
        # The end of the connection comes a moment before the end of the process.
        process.wait(max(deadline - time.monotonic(), 0))
    except RequestTimeout:
        pass
    status = process.status()
    if status is not None:
        raise EarlyExitError(program, status, process.last_words())
    raise NoGreetingError(program, timeout, process.last_words())


def _client_comes(process: Process, server: Server, timeout: float) -> bool:
    """Waits until a client connects. False when the process ends first or the time is over."""
    ended, ends_with_process = socket.socketpair()

    def watch() -> None:
        with ends_with_process:
            process.wait()

    threading.Thread(target=watch, daemon=True, name="qtdriver-exit").start()
    with ended:
        poll = select.poll()
        poll.register(server, select.POLLIN)
        poll.register(ended, select.POLLIN)
        events = poll.poll(timeout * 1000)
    return any(descriptor == server.fileno() for descriptor, _ in events)
