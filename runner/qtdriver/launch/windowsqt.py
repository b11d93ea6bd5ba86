"""Which Qt a Windows program's widgets come from, and whether the agent for it goes with the program."""

from __future__ import annotations

import re
from pathlib import Path
from typing import Mapping

from ..errors import (
    ArchitectureError,
    CompilerError,
    NoQtError,
    NoWidgetsError,
    ProgramError,
    StaticQtError,
    UnknownFormatError,
)
from ..errors.settingnames import setting_names
from .dlls import DllFolders, linked_libraries, program_folders
from .elf import contains_qt_text
from .pe import compiler_of_qt, read_pe

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_QT_LIBRARY = re.compile(r"qt\d?[a-z]\w*\.dll", re.IGNORECASE)
_WIDGETS_LIBRARIES = {
    "qtgui4.dll": 4,
    "qt5widgets.dll": 5,
    "qt6widgets.dll": 6,
}
_DEBUG_LIBRARIES = ("qtguid4.dll", "qt5widgetsd.dll", "qt6widgetsd.dll")


def windows_qt_major(program: Path, environment: Mapping[str, str]) -> int:
    """The major version of the Qt whose widgets a Windows program links, itself or through its libraries.

    Raises ProgramError subclasses, and ExeReaderMissingError.
    """
    try:
        if read_pe(program).is_library:
            raise UnknownFormatError(
                f"{program} is a library of Windows", hint="Name the program that loads it"
            )
        return _qt_major(program, environment)
    except ValueError as error:
        raise UnknownFormatError(str(error)) from error


def _qt_major(program: Path, environment: Mapping[str, str]) -> int:
    other_qt_library = None
    count = 0
    for name, _ in linked_libraries([program], DllFolders(program_folders(program, environment))):
        count += 1
        if name.lower() in _WIDGETS_LIBRARIES:
            return _WIDGETS_LIBRARIES[name.lower()]
        if name.lower() in _DEBUG_LIBRARIES:
            raise CompilerError(
                f"{program} links {name}, a debug build of Qt, beside which the agent would load the other one",
                hint="Test the application's release build",
            )
        if other_qt_library is None and _QT_LIBRARY.fullmatch(name):
            other_qt_library = name
    if other_qt_library is not None:
        raise NoWidgetsError(
            f"{program} links {other_qt_library}, but not Qt's widgets, which are what the agent drives",
            hint=f"If it loads them later, as a plugin, name the Qt version with {setting_names().qt}",
        )
    raise _error_without_qt(program, count)


def _error_without_qt(program: Path, count: int) -> ProgramError:
    if contains_qt_text(program):
        return StaticQtError(
            f"Qt is linked into {program} statically, and the agent cannot be loaded beside it",
            hint="Build the application with Qt's DLLs",
        )
    return NoQtError(
        f"{program} links no Qt ({count} libraries looked through)",
        hint=f"If it loads Qt later, as a plugin, name the Qt version with {setting_names().qt}",
    )


def require_same_kind(program: Path, agent: Path) -> None:
    """Raises ArchitectureError or CompilerError if the library `agent` cannot be loaded into `program`."""
    try:
        theirs, ours = read_pe(program).architecture, read_pe(agent).architecture
        compilers = compiler_of_qt(program), compiler_of_qt(agent)
    except ValueError as error:
        raise UnknownFormatError(str(error)) from error
    if theirs != ours:
        raise ArchitectureError(
            f"{program} is made for {theirs}, but the agent {agent} for {ours}",
            hint="Build the agent for the application's architecture",
        )
    if all(compilers) and compilers[0] != compilers[1]:
        raise CompilerError(
            f"{program} uses a Qt that was made by {compilers[0]}, but the agent {agent} one that was made by "
            f"{compilers[1]}",
            hint="Build the agent with the compiler and the Qt of the application",
        )
