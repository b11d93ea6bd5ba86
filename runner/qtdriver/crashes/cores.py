"""Finds the core files of applications that were started here, wherever the system's settings have them written.

The limit on their size is raised for the application; no setting of the system is changed. A core file that exists only
because of that limit is removed once it has been read.
"""

from __future__ import annotations

import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from contextlib import contextmanager, suppress
from pathlib import Path
from typing import Iterator, Optional, Tuple

from .stacks import Stacks, stacks_of_core

_PATTERN = Path("/proc/sys/kernel/core_pattern")
_WITH_PID = Path("/proc/sys/kernel/core_uses_pid")
_SIGNALS_WITH_CORE = ("QUIT", "ILL", "TRAP", "ABRT", "BUS", "FPE", "SEGV", "XCPU", "XFSZ", "SYS")
_HANDLER_SECONDS = 30


def is_crash(status: int) -> bool:
    """Whether an exit status of subprocess is a signal for which the system writes a core file."""
    numbers = (getattr(signal, f"SIG{name}", None) for name in _SIGNALS_WITH_CORE)
    return status < 0 and any(number is not None and number == -status for number in numbers)


class CoreFile:
    """The core file of one process, should that crash.

    Attributes:
        is_ours: whether it is there only because the limit was raised here.
    """

    def __init__(self, pid: int, is_ours: bool = False) -> None:
        """Raises the limit of the process, so that there is one.

        `is_ours` says that this was done for the process which has started it.
        """
        self.is_ours = is_ours
        self._pid = pid
        self._began = time.time() - 1  # the clock of a file system may be coarse
        self._folder = self._link("cwd")
        self._program = self._link("exe")
        if sys.platform == "linux":
            import resource

            with suppress(OSError, ValueError):
                soft, hard = resource.prlimit(pid, resource.RLIMIT_CORE)
                self.is_ours = is_ours or soft == 0
                resource.prlimit(pid, resource.RLIMIT_CORE, (hard, hard))

    def _link(self, name: str) -> str:
        try:
            return os.readlink(f"/proc/{self._pid}/{name}")
        except OSError:
            return ""

    def stacks(self) -> Stacks:
        """The stacks of the process that has crashed. The core file is gone then, unless the user wants such files."""
        with self._found() as core:
            if core is None:
                return Stacks(note=f"no stack: {self._why_none()}")
            return stacks_of_core(core, self._program)

    def discard(self) -> None:
        """Removes a core file that nobody has asked for."""
        core = self._in_folder()
        if core is not None and self.is_ours:
            with suppress(OSError):
                core.unlink()

    @contextmanager
    def _found(self) -> Iterator[Optional[Path]]:
        core = self._in_folder()
        if core is not None:
            try:
                yield core
            finally:
                self.discard()
            return
        with tempfile.TemporaryDirectory(prefix="qtdriver-") as folder:
            yield self._from_handler(Path(folder) / "core")

    def _in_folder(self) -> Optional[Path]:
        """The file that the system has written by itself."""
        pattern = _read(_PATTERN)
        if not pattern or pattern.startswith("|") or not self._folder:
            return None
        name = re.sub(r"%(.)", lambda found: _expanded(found[1], self._pid), pattern)
        if "%p" not in pattern and _read(_WITH_PID) == "1":
            name += f".{self._pid}"
        path = Path(self._folder, name)
        for core in path.parent.glob(path.name):
            with suppress(OSError):
                if core.stat().st_mtime >= self._began:
                    return core
        return None

    def _from_handler(self, path: Path) -> Optional[Path]:
        """The core that systemd has taken."""
        if "systemd-coredump" not in _read(_PATTERN) or shutil.which("coredumpctl") is None:
            return None
        command = ["coredumpctl", "dump", str(self._pid), f"--output={path}"]
        with suppress(OSError, subprocess.TimeoutExpired):
            subprocess.run(command, capture_output=True, timeout=_HANDLER_SECONDS, check=False)
        return path if path.exists() else None

    def _why_none(self) -> str:
        pattern = _read(_PATTERN)
        if pattern.startswith("|"):
            return f"the system hands core files to a program ({pattern}), which does not give them out"
        return f"the system has written no core file (its pattern is {pattern or 'unknown'})"


def _expanded(letter: str, pid: int) -> str:
    return {"%": "%", "p": str(pid), "P": str(pid), "i": "*", "I": "*"}.get(letter, "*")


def _read(file: Path) -> str:
    try:
        return file.read_text().strip()
    except OSError:
        return ""


def core_problem() -> Tuple[str, str]:
    """Why there would be no core file of an application that crashes, and what helps; empty texts where there would."""
    if sys.platform != "linux":
        return "", ""
    import resource

    pattern = _read(_PATTERN)
    if pattern.startswith("|") and "systemd-coredump" not in pattern:
        return f"the system hands core files to a program: {pattern}", "sysctl kernel.core_pattern=core"
    if pattern.startswith("|") and shutil.which("coredumpctl") is None:
        return "the system keeps core files where only coredumpctl finds them", "apt install systemd-coredump"
    if resource.getrlimit(resource.RLIMIT_CORE)[1] == 0:
        return (
            "this process may not write core files (ulimit -Hc is 0)",
            "a higher limit in /etc/security/limits.conf",
        )
    return "", ""
