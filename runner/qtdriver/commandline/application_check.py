"""The checks of an application by the command `doctor`, with a remedy for each problem."""

from __future__ import annotations

import os
from pathlib import Path
from typing import Iterator, Optional, Tuple, Type

from ..errors import (
    AgentNotBuiltError,
    AgentPathError,
    ArchitectureError,
    CompilerError,
    ElfReaderMissingError,
    ExeReaderMissingError,
    LibraryMissingError,
    NoQtError,
    NoWidgetsError,
    OldQtError,
    ProgramNotExecutableError,
    ProgramNotFoundError,
    QtDriverError,
    ScriptProgramError,
    StaticProgramError,
    UnknownFormatError,
    WineError,
)
from ..launch.agent import agent_library, require_recent_qt, require_same_architecture, windows_agent
from ..launch.loading import library_folders
from ..launch.program import find_program, is_windows_program
from ..launch.qtversion import qt_major
from ..launch.windowsqt import require_same_kind
from ..launch.wine import pattern_folder, system_folder
from .finding import Finding

MOVE_BUILD = "move the build folder to a path without them, or name another one with --build DIR"
"""The remedy for a path of the agents that LD_PRELOAD cannot hold."""

_SAY_QT = "say which Qt it uses: 'qtdriver run --qt N', or launch(..., qt=N) in a test"
_REMEDIES: Tuple[Tuple[Type[QtDriverError], str], ...] = (
    (ProgramNotFoundError, "install it, or give its path"),
    (ProgramNotExecutableError, "name the application's own file, and let this user read and execute it"),
    (ScriptProgramError, f"name the binary that it starts, or {_SAY_QT}"),
    (NoWidgetsError, _SAY_QT),
    (NoQtError, _SAY_QT),
    (StaticProgramError, "build the application with shared libraries"),
    (CompilerError, "build the agent with the compiler and the Qt of the application: docs/windows.md"),
    (
        LibraryMissingError,
        "put them beside the program, or name the folder of its Qt: QT5_WINDOWS=/path/to/qt",
    ),
    (WineError, "apt install wine wine64"),
    (ExeReaderMissingError, "apt install python3-pefile"),
    (AgentPathError, MOVE_BUILD),
    (OldQtError, "take a build of the application with a newer Qt"),
    (ArchitectureError, "build the agent for the application's processor"),
    (ElfReaderMissingError, "apt install python3-pyelftools"),
    (UnknownFormatError, "name the application's own file"),
    (QtDriverError, "see docs/troubleshooting.md"),
)
"""Remedies for an application that cannot be driven. The first row that fits counts."""


def check_application(build: Optional[Path], program: Path) -> Iterator[Finding]:
    """Checks whether an application can be driven.

    Args:
        build: the folder with the agents; None for the checkout's.
        program: the application.
    """
    try:
        file = find_program(str(program))
        if file.stat().st_mode & 0o6000:
            yield Finding(
                "rights",
                "problem",
                f"{file} starts with another user's rights, which drops LD_PRELOAD",
                "test a copy of it without them: chmod ug-s",
            )
        major = qt_major(file)
        if is_windows_program(file):
            agent = windows_agent(major, build)
            require_same_kind(file, agent)
            prefix = Path(os.environ.get("WINEPREFIX") or pattern_folder())
            library_folders(file, agent, major, os.environ, system_folder(prefix))
        else:
            library = agent_library(major, build)
            require_same_architecture(file, library)
            require_recent_qt(file, library, os.environ)
        yield Finding("program", "ok", f"{file} uses Qt {major}, and there is an agent for it")
    except QtDriverError as error:
        yield Finding("program", "problem", error.message, _remedy(error))


def _remedy(error: QtDriverError) -> str:
    if isinstance(error, AgentNotBuiltError):
        return error.hint[:1].lower() + error.hint[1:]  # it has the command that gets this agent
    return next(remedy for kind, remedy in _REMEDIES if isinstance(error, kind))
