"""A program that runs already, and why the agent could not be loaded into it."""

from __future__ import annotations

import os
import re
import sys
from pathlib import Path
from typing import Dict, Optional, Set

from ..errors import ArchitectureError, LoadingError, NoQtError, NoWidgetsError, OldQtError, StaticQtError
from ..launch.agent import testability_library
from ..launch.elf import contains_qt_widgets, read_elf, symbol_versions
from ..launch.qtversion import WIDGETS_LIBRARIES

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_QT_LIBRARY = re.compile(r"libQt\d*[A-Z]\w*\.so\.\d")
_START_IT = "Start it with the agent inside: qtdriver run -- APP, or launch() in a test"


class RunningProgram:
    """A process to which a driver attaches.

    Attributes:
        pid: its id.
        program: its file.
    """

    pid: int
    program: Path
    _libraries: Set[Path]

    def __init__(self, pid: int) -> None:
        """Raises LoadingError for a process that is not there, that stands still, or that nobody here may look into."""
        if not sys.platform.startswith("linux"):
            raise LoadingError("the agent is loaded into running programs of Linux only", hint=_START_IT)
        self.pid = pid
        status = self._status()
        if status["State"][0] in "ZX":
            raise LoadingError(f"process {pid} has ended")
        user = int(status["Uid"].split()[1])
        if os.geteuid() not in (0, user):
            raise LoadingError(f"process {pid} is of another user ({user})", hint="Attach as that user")
        if status["TracerPid"] != "0":
            raise LoadingError(
                f"process {pid} has a debugger, process {status['TracerPid']}", hint="End that first"
            )
        if status["State"][0] in "Tt":
            raise LoadingError(f"process {pid} is stopped", hint=f"Let it go on: kill -CONT {pid}")
        try:
            self.program = Path(os.readlink(f"/proc/{pid}/exe"))
            maps = Path(f"/proc/{pid}/maps").read_text(encoding="utf-8", errors="replace")
            networks = [os.readlink(f"/proc/{process}/ns/net") for process in ("self", pid)]
        except OSError as error:
            raise LoadingError(
                f"the system does not let this user look into process {pid}: {error.strerror}", hint=_START_IT
            ) from None
        if networks[0] != networks[1]:
            raise LoadingError(
                f"process {pid} has a network of its own, from which its agent could not connect",
                hint="Attach from within that network: nsenter",
            )
        self._libraries = {Path(line.split(maxsplit=5)[5]) for line in maps.splitlines() if " /" in line}

    def _status(self) -> Dict[str, str]:
        try:
            lines = (
                Path(f"/proc/{self.pid}/status").read_text(encoding="utf-8", errors="replace").splitlines()
            )
        except OSError:
            raise LoadingError(f"there is no process {self.pid}") from None
        return {name: value.strip() for name, _, value in (line.partition(":") for line in lines)}

    def qt_major(self) -> int:
        """The major version of the Qt whose widgets it has loaded. Raises NoQtError, NoWidgetsError and StaticQtError."""
        names = {path.name for path in self._libraries}
        for library, major in WIDGETS_LIBRARIES.items():
            # The links that programs name are resolved in these names: "libQt5Widgets.so.5.15.8".
            if any(f"{name}.".startswith(f"{library}.") for name in names):
                return major
        who = f"process {self.pid} ({self.program})"
        others = sorted(filter(_QT_LIBRARY.match, names))
        if others:
            raise NoWidgetsError(
                f"{who} has loaded {others[0]}, but not Qt's widgets, which are what the agent drives"
            )
        if _contains_widgets(self.program):
            raise StaticQtError(
                f"Qt is linked into {who} statically, and the agent cannot be loaded beside it",
                hint="Build the application with shared Qt libraries",
            )
        raise NoQtError(f"{who} has loaded no Qt")

    def library_for(self, build: "Optional[Path | str]") -> Path:
        """The library that gets the agent into it; `build` as for agent_library().

        Raises the errors of qt_major(), AgentNotBuiltError, ArchitectureError and OldQtError.
        """
        library = testability_library(self.qt_major(), build)
        theirs, ours = read_elf(Path(f"/proc/{self.pid}/exe")).architecture, read_elf(library).architecture
        if theirs != ours:
            raise ArchitectureError(
                f"{self.program} is made for {theirs}, but the agent {library} for {ours}"
            )
        missing = self._missing_versions(library.with_name("libqtdriver.so"))
        if missing:
            raise OldQtError(
                f"process {self.pid} ({self.program}) has loaded a Qt that is older than {', '.join(sorted(missing))}, which "
                f"the agent {library} needs",
                hint="Take a build of the application with that Qt, or build the agent with the application's",
            )
        return library

    def _missing_versions(self, agent: Path) -> Set[str]:
        missing: Set[str] = set()
        loaded = {re.sub(r"(\.so\.\d+).*", r"\1", path.name): path for path in self._libraries}
        for name, versions in symbol_versions(agent).needed.items():
            if name.startswith("libQt") and name in loaded and loaded[name].exists():
                missing |= versions - symbol_versions(loaded[name]).defined
        return {version.replace("_", " ") for version in missing}


def _contains_widgets(program: Path) -> bool:
    try:
        return contains_qt_widgets(program)
    except OSError:
        return False
