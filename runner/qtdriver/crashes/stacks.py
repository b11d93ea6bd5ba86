"""Stacks of the threads of a program that has crashed or hangs, by gdb or by eu-stack of elfutils."""

from __future__ import annotations

import json
import os
import re
import shutil
import subprocess
from dataclasses import dataclass
from pathlib import Path
from typing import List, Optional, Sequence, Tuple

from .gdb_stacks import MARK

_SECONDS = 30.0
_SCRIPT = Path(__file__).with_name("gdb_stacks.py")
_GDB = ("gdb", "-nx", "-q", "-batch", "-iex", "set debuginfod enabled off", "-iex", "set auto-load off")
_SYSTEM_FOLDERS = ("/lib", "/usr/lib", "/usr/libexec", "/usr/local/lib")
_OTHERS = ("libqtdriver", "libqttestability", "libQt", "linux-vdso", "[vdso")
"""Beginnings of the names of libraries that are not the application's own, wherever they are."""

_INTERPRETER = re.compile(r"(?:python|perl|ruby|bash|dash|sh)[\d.]*(?:d|m|t|-dbg)?")

_EU_THREAD = re.compile(r"TID (\d+):")
_EU_FRAME = re.compile(r"#\d+ +0x[0-9a-f]+(?: - \d+)?(?: (.*?))?(?: - (\S+))?$")

TOOLS = ("gdb", "eu-stack")
"""The programs that can read stacks, and the packages of Debian that have them: gdb, elfutils."""


@dataclass(frozen=True)
class Frame:
    """A call on a stack.

    Attributes:
        function: the function; "??" where the program does not tell.
        source: file and line, empty where the program does not tell.
        library: the file that has the function; empty for the program itself.
    """

    function: str
    source: str
    library: str

    def __str__(self) -> str:
        place = f" at {self.source}" if self.source else ""
        return f"{self.function}{place}{f' in {self.library}' if self.library else ''}"

    def is_own(self) -> bool:
        """Whether the function is the application's own, and neither Qt's, nor the system's, nor the agent's."""
        name = self.library.rpartition("/")[2]
        if self.function == "??" or name.startswith(_OTHERS):
            return False
        if "/" in self.library:
            return not self.library.startswith(_SYSTEM_FOLDERS)
        return not name or not any(_is_in(folder, name) for folder in _SYSTEM_FOLDERS)


@dataclass(frozen=True)
class Thread:
    """A thread and its stack, the innermost call first.

    Attributes:
        number: its id.
        name: its name, empty where it is not known.
        frames: the calls.
    """

    number: int
    name: str
    frames: Tuple[Frame, ...]


@dataclass(frozen=True)
class Stacks:
    """The stacks of a program.

    Attributes:
        threads: its threads; first the one that has crashed, or that has the GUI.
        note: why there are none; empty otherwise.
        program: the path of the program, as far as it is known.
    """

    threads: Tuple[Thread, ...] = ()
    note: str = ""
    program: str = ""

    def own_frame(self) -> Optional[Frame]:
        """The innermost call of the first thread that is the application's own; None for none.

        An interpreter's calls are not those of the application that it runs.
        """
        if _INTERPRETER.fullmatch(self.program.rpartition("/")[2]):
            return None
        frames = self.threads[0].frames if self.threads else ()
        return next((frame for frame in frames if frame.is_own()), None)

    def lines(self) -> List[str]:
        """Lines for a person: a line for each call."""
        lines: List[str] = [self.note] if self.note else []
        for thread in self.threads:
            lines.append(f"thread {thread.number} {thread.name}".rstrip())
            lines += [f"  #{number:<3} {frame}" for number, frame in enumerate(thread.frames)]
            lines.append("")
        return lines


def stacks_of_process(pid: int) -> Stacks:
    """The stacks of a living process, first that of its main thread. The process stands still for that moment."""
    try:
        program = os.readlink(f"/proc/{pid}/exe")
    except OSError:
        program = ""
    return _read(
        [*_GDB, "-p", str(pid), "-x", str(_SCRIPT)], ["eu-stack", "-m", "-s", "-p", str(pid)], pid, program
    )


def stacks_of_core(core: Path, program: str) -> Stacks:
    """The stacks in a core file of the program, first that of the thread that has crashed."""
    return _read(
        [*_GDB, program, "-c", str(core), "-x", str(_SCRIPT)],
        ["eu-stack", "-m", "-s", "--core", str(core), "-e", program],
        0,
        program,
    )


def _read(gdb: Sequence[str], eu_stack: Sequence[str], first: int, program: str = "") -> Stacks:
    problem = "reading the stack needs gdb, or eu-stack of elfutils, which are not installed"
    for command, parse in ((gdb, _parse_gdb), (eu_stack, _parse_eu_stack)):
        if shutil.which(command[0]) is None:
            continue
        try:
            done = subprocess.run(
                command,
                stdin=subprocess.DEVNULL,
                capture_output=True,
                text=True,
                errors="replace",
                timeout=_SECONDS,
                check=False,
            )
        except (OSError, subprocess.TimeoutExpired) as error:
            problem = f"no stack: {error}"
            continue
        threads = [_named(thread, program) for thread in parse(done.stdout) if thread.frames]
        if threads:
            chosen = first or threads[0].number
            ordered = sorted(threads, key=lambda thread: thread.number != chosen)
            return Stacks(tuple(ordered), program=program)
        complaint = (done.stderr.strip().splitlines() or ["it told none"])[-1]
        problem = f"no stack by {command[0]}: {complaint}"
    return Stacks(note=problem)


def _named(thread: Thread, program: str) -> Thread:
    """The thread with an empty library in the frames of the program itself."""
    if not program:
        return thread
    own = (program, program.rpartition("/")[2])
    frames = (
        Frame(frame.function, frame.source, "" if frame.library in own else frame.library)
        for frame in thread.frames
    )
    return Thread(thread.number, thread.name, tuple(frames))


def _parse_gdb(output: str) -> List[Thread]:
    for line in output.splitlines():
        if line.startswith(MARK):
            return [
                Thread(number, name, tuple(Frame(*row) for row in rows))
                for number, name, rows in json.loads(line[len(MARK) :])
            ]
    return []


def _parse_eu_stack(output: str) -> List[Thread]:
    threads: List[Thread] = []
    for line in output.splitlines():
        begin, call = _EU_THREAD.match(line), _EU_FRAME.match(line)
        if begin:
            threads.append(Thread(int(begin[1]), "", ()))
        elif call and threads:
            _add(threads, Frame(call[1] or "??", "", call[2] or ""))
        elif line.startswith("    ") and threads and threads[-1].frames:
            last = threads[-1].frames[-1]
            place = re.sub(r":\d+$", "", line.strip()) if line.count(":") > 1 else line.strip()
            threads[-1] = Thread(
                threads[-1].number,
                "",
                (*threads[-1].frames[:-1], Frame(last.function, place, last.library)),
            )
    return threads


def _add(threads: List[Thread], frame: Frame) -> None:
    last = threads[-1]
    threads[-1] = Thread(last.number, last.name, (*last.frames, frame))


def _is_in(folder: str, name: str) -> bool:
    return Path(folder, name).exists() or any(True for _ in Path(folder).glob(f"*/{name}"))
