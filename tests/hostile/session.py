"""One run of a hostile application: requests in, one reply each, until enough were played or the application ended."""

from __future__ import annotations

import collections
import os
import resource
import select
import socket
import subprocess
import tempfile
import time
from dataclasses import dataclass, field
from pathlib import Path
from typing import IO, Counter, Deque, List, Optional

from qtdriver.errors import ProtocolError
from qtdriver.protocol.greeting import Greeting
from qtdriver.protocol.lines import LineSocket
from qtdriver.protocol.wire import Reply, encode_line

from player import Player

SCENARIOS = (
    "buttons",
    "entries",
    "containers",
    "lists",
    "trees",
    "tables",
    "generic",
    "menus",
    "dialogs",
    "properties",
)
DEADLINE = 20.0
"""Seconds within which a reply, the greeting and the end of the application have to come, if the machine is not busy."""

REMEMBERED = 12
MESSAGE_WITH_LINE_END = " validate error"
"""Some of the messages that end so have a line end of their own: the reply is followed by an empty line."""

SANITIZER_MARKS = ("AddressSanitizer", "runtime error:", "UndefinedBehavior", "terminate called", "ASSERT")


def patience() -> float:
    """The deadline for the machine as it is: where many processes share a processor, each has its share of the time."""
    return DEADLINE * max(1.0, os.getloadavg()[0] / (os.cpu_count() or 1))


class Finding(Exception):
    """Something that must not happen, with all that is known of it."""


class Ended(Exception):
    """The application has closed the connection."""


@dataclass
class Result:
    """The outcome of a session."""

    played: int = 0
    ended_early: bool = False
    codes: Counter[str] = field(default_factory=collections.Counter)
    faults: Counter[str] = field(default_factory=collections.Counter)


class Session:
    """A running host and the connection of its agent."""

    def __init__(self, build: Path, scenario: str, seed: int, server: socket.socket) -> None:
        self._dialogue: Deque[List[str]] = collections.deque(maxlen=REMEMBERED)
        self._told = f"scenario {scenario}, session seed {seed}"
        self._previous = ""
        self._folder = tempfile.TemporaryDirectory(prefix="qtdriver-hostile-")
        self._program = build / "bin" / "hostilehost"
        self._errors = tempfile.TemporaryFile()
        self._journal = tempfile.TemporaryFile()
        library = build / "lib" / "libqtdriver.so"
        command = [str(self._program), "--agent", str(library), "--scenario", scenario, "--seed", str(seed)]
        self._process = subprocess.Popen(
            command,
            stdin=subprocess.PIPE,
            stdout=self._journal,
            stderr=self._errors,
            cwd=self._folder.name,
            preexec_fn=_allow_core_files,
            env={**_environment(), "QT_LOGGING_RULES": "*=false"},
        )
        try:
            self._connect(server)
        except BaseException:
            self._process.kill()
            self._process.wait()
            raise
        self.player = Player(seed, self.ask)

    def _connect(self, server: socket.socket) -> None:
        server.settimeout(patience())
        try:
            self._socket, _ = server.accept()
            self._lines = LineSocket(self._socket)
            greeting = self._lines.read_line(time.monotonic() + patience())
        except socket.timeout:
            if self._process.poll() == 0:
                raise Ended from None  # the application was faster than its agent
            raise self.finding(f"the agent did not connect within {DEADLINE:g} seconds") from None
        if greeting is None:
            self.wait()
            raise Ended
        Greeting.parse(greeting)

    def ask(self, request: str) -> Reply:
        """Sends a request and returns its one reply."""
        return self.ask_together([request])[0]

    def ask_together(self, requests: List[str]) -> List[Reply]:
        """Sends requests in one piece and returns their replies. Raises Ended or a Finding."""
        self._must_be_silent()
        dialogue = [[request, "no reply"] for request in requests]
        self._dialogue.extend(dialogue)
        deadline = time.monotonic() + patience() * len(requests)
        try:
            self._lines.send(b"".join(map(encode_line, requests)), deadline)
            return [self._read(entry, deadline) for entry in dialogue]
        except socket.timeout:
            raise self.finding("a request was not answered in time") from None
        except ConnectionError:
            raise Ended from None

    def _read(self, entry: List[str], deadline: float) -> Reply:
        line = self._lines.read_line(deadline)
        if line is None:
            raise Ended
        if not line and self._previous.endswith(MESSAGE_WITH_LINE_END):
            line = self._lines.read_line(deadline)
            if line is None:
                raise Ended
        self._previous = line
        entry[1] = line[:300]
        try:
            return Reply.parse(line)
        except ProtocolError as error:
            raise self.finding(f"{error}") from None

    def _must_be_silent(self) -> None:
        """Nothing may come without a request; the end of the connection may."""
        readable, _, _ = select.select([self._socket], [], [], 0)
        more = self._socket.recv(100, socket.MSG_PEEK) if readable else b""
        if self._previous.endswith(MESSAGE_WITH_LINE_END):
            return
        if self._lines.has_more or more:
            raise self.finding("the agent has sent more than one reply")

    def close(self) -> None:
        """Ends the application. Raises a Finding when it does not end in order."""
        self._process.stdin.close()
        self.wait()

    def wait(self) -> None:
        """Waits for the application, which is about to end."""
        try:
            status = self._process.wait(patience())
        except subprocess.TimeoutExpired:
            raise self.finding(f"the application did not end within {DEADLINE:g} seconds") from None
        finally:
            self._socket.close()
        if status != 0 or any(mark in self._report() for mark in SANITIZER_MARKS):
            raise self.finding(f"the application ended with status {status}")

    def kill(self) -> None:
        """Makes sure that nothing is left."""
        if self._process.poll() is None:
            self._process.kill()
            self._process.wait()
        self._errors.close()
        self._journal.close()
        self._folder.cleanup()

    def faults(self) -> List[str]:
        """The application's faults to itself so far, a line for each."""
        return [line for line in _text(self._journal).splitlines() if line.startswith("fault ")]

    def _report(self) -> str:
        return _text(self._errors)

    def finding(self, what: str) -> Finding:
        """Everything to know about a finding; the application is ended to get at its last words."""
        if self._process.poll() is None:
            time.sleep(0.5)  # a sanitizer takes its time to write
            stack = _stack_of(self._process.pid)
            self._process.kill()
        else:
            stack = _stack_of_core(self._program, Path(self._folder.name))
        status = self._process.wait()
        lines = [f"{what} ({self._told}; status {status})", "last requests:"]
        lines += [f"  > {request!r}\n  < {reply!r}" for request, reply in self._dialogue]
        lines += ["last faults:", *(f"  {fault[5:]}" for fault in self.faults()[-REMEMBERED:]), stack]
        return Finding("\n".join([*lines, self._report()[-12000:]]))


def _text(file: IO[bytes]) -> str:
    file.seek(0)
    return file.read().decode("utf-8", "replace")


def _environment() -> "dict[str, str]":
    environment = dict(os.environ)
    options = "detect_leaks=0:verify_asan_link_order=0:halt_on_error=1:quarantine_size_mb=64"
    environment["ASAN_OPTIONS"] = options
    environment["UBSAN_OPTIONS"] = "print_stacktrace=1:halt_on_error=1"
    environment[
        "QT_XCB_GL_INTEGRATION"
    ] = "none"  # which nothing here uses, and which takes half of the time of a start
    return environment


def _allow_core_files() -> None:
    _, most = resource.getrlimit(resource.RLIMIT_CORE)
    resource.setrlimit(resource.RLIMIT_CORE, (most, most))


def _stack_of(process: int) -> str:
    """Where a process is that does not answer, if a debugger is at hand."""
    return _backtrace("-p", str(process))


def _stack_of_core(program: Path, folder: Path) -> str:
    """Where a process crashed, if the system has left the file of it in the process's folder."""
    cores = list(folder.glob("core*"))
    return _backtrace(str(program), str(cores[0])) if cores else ""


def _backtrace(*subject: str) -> str:
    command = ["gdb", *subject, "-batch", "-ex", "thread 1", "-ex", "backtrace 150"]
    try:
        output = subprocess.run(command, capture_output=True, text=True, timeout=60).stdout
    except (OSError, subprocess.TimeoutExpired):
        return ""
    return "\n".join(line for line in output.splitlines() if line.startswith("#"))


def play(build: Path, scenario: str, seed: int, commands: int, server: socket.socket) -> Result:
    """Plays that many commands on one run of the application, or fewer if it ends in order before."""
    try:
        session = Session(build, scenario, seed, server)
    except Ended:
        return Result(ended_early=True)
    result = Result()
    try:
        while result.played < commands:
            requests = [session.player.next_request()]
            if result.played % 10 == 9:
                requests.append(session.player.next_request())
            replies = session.ask_together(requests)
            result.played += len(replies)
            for reply in replies:
                session.player.take(reply)
            result.codes.update(reply.code for reply in replies)
        session.close()
    except Ended:
        result.ended_early = True
        session.wait()
    except ProtocolError as error:
        raise session.finding(str(error)) from None
    finally:
        result.faults.update(fault.split()[1] for fault in session.faults())
        session.kill()
    return result


def derived_seed(seed: int, *parts: Optional[int]) -> int:
    """A seed of its own for a session, from that of the whole run."""
    for part in parts:
        seed = (seed * 6364136223846793005 + 1442695040888963407 + (part or 0)) % 2**64
    return seed >> 33
