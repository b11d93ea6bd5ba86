"""Loads the agent into a program that runs already, by gdb."""

from __future__ import annotations

import json
import os
import shutil
import subprocess
from pathlib import Path
from typing import Dict, Optional, Tuple

from ..errors import LoadingError
from ..launch.linux import status_of
from ..launch.progress import Progress
from ..protocol.waiting import Deadline, attempts
from .gdb_call import BUSY, CALLED, FAILED, FORBIDDEN, MARK, ORDER, REFUSED
from .process import RunningProgram

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_SCRIPT = Path(__file__).with_name("gdb_call.py")
_SETTINGS = (
    "set debuginfod enabled off",
    "set auto-load off",
    "set auto-solib-add off",  # the script loads the symbols of the few libraries that it needs
    "handle all nostop noprint pass",
)
_FUNCTION = "qtdriver_attach"
_PTRACE_SCOPE = Path("/proc/sys/kernel/yama/ptrace_scope")
_GDB_SECONDS = 60.0


def load_agent(pid: int, build: "Optional[Path | str]" = None, *, timeout: float) -> None:
    """Has a program that runs load the agent, which then connects as that of a program that was started with it.

    The program stands still meanwhile, for some tenths of a second. If the agent cannot be loaded, it goes on as it was.

    Args:
        pid: the process.
        build: the folder with the agents; see agent_library().
        timeout: seconds that its event loop may take until it waits for what happens next.

    Raises LoadingError and other ProgramError subclasses, and AgentNotBuiltError.
    """
    library = RunningProgram(pid).library_for(build)
    if shutil.which("gdb") is None:
        raise LoadingError(
            "loading the agent into a running program needs gdb", hint="Install it (Debian: gdb)"
        )
    with Progress(f"waiting for the event loop of process {pid}") as shown:
        for _ in attempts(Deadline(timeout)):
            shown.tick()
            status = status_of(pid)
            if status is None:
                raise LoadingError(f"process {pid} has ended")
            if status[0] != "S":
                continue
            end, reason = _call(pid, library)
            if end == CALLED:
                return
            if end != BUSY:
                raise _error(pid, end, reason)
    raise LoadingError(
        f"the event loop of process {pid} did not wait for events within {timeout:g} seconds: it is busy, or hangs"
    )


def _call(pid: int, library: Path) -> Tuple[str, str]:
    """Has gdb make the call. Returns how that ended, one of the ends of `gdb_call`, and the reason."""
    order = json.dumps({"pid": pid, "library": str(library), "function": _FUNCTION})
    settings = [word for setting in _SETTINGS for word in ("-iex", setting)]
    gdb = subprocess.Popen(
        ["gdb", "-nx", "-q", "-batch", *settings, "-x", str(_SCRIPT)],
        stdin=subprocess.DEVNULL,
        stdout=subprocess.PIPE,
        stderr=subprocess.PIPE,
        text=True,
        errors="replace",
        env={**_environment(), ORDER: order},
        start_new_session=True,  # Ctrl+C in the terminal must not end gdb in the middle of the call
    )
    try:
        output, complaint = gdb.communicate(timeout=_GDB_SECONDS)
    except subprocess.TimeoutExpired:
        gdb.terminate()  # gdb lets the program go before it ends
        gdb.wait()
        raise LoadingError(
            f"gdb has not loaded the agent into process {pid} in {_GDB_SECONDS:g} seconds"
        ) from None
    for line in output.splitlines():
        if line.startswith(MARK):
            end, reason = json.loads(line[len(MARK) :])
            return str(end), str(reason)
    return FAILED, (complaint.strip().splitlines() or ["it said nothing"])[-1]


def _environment() -> Dict[str, str]:
    """That of this process, without what is meant for the application's own libraries and Python."""
    unfit = ("LD_PRELOAD", "LD_LIBRARY_PATH", "PYTHONHOME", "PYTHONPATH")
    return {name: value for name, value in os.environ.items() if name not in unfit}


def _error(pid: int, end: str, reason: str) -> LoadingError:
    if end == REFUSED:
        return LoadingError(f"process {pid} gets no agent: {reason}")
    if end != FORBIDDEN:
        return LoadingError(f"gdb could not load the agent into process {pid}: {reason}")
    message = f"gdb may not look into process {pid}: {reason}"
    try:
        scope = _PTRACE_SCOPE.read_text(encoding="ascii").strip()
    except OSError:
        scope = ""
    if scope in ("", "0"):
        return LoadingError(message, hint="A container may forbid it: start that with --cap-add=SYS_PTRACE")
    return LoadingError(
        f"{message} (kernel.yama.ptrace_scope is {scope})",
        hint="Allow it until the next start of the machine: sysctl kernel.yama.ptrace_scope=0",
    )
