"""Which Qt a program's widgets come from, told by the libraries that it links."""

from __future__ import annotations

import os
import re
from pathlib import Path
from typing import Mapping, Optional

from ..errors import (
    NoQtError,
    NoWidgetsError,
    ProgramError,
    StaticProgramError,
    StaticQtError,
    UnknownFormatError,
)
from ..errors.settingnames import setting_names
from .elf import contains_qt_widgets
from .libraries import LoadedFile, linked_libraries, load_program
from .program import is_windows_program, require_elf
from .windowsqt import windows_qt_major

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_QT_LIBRARY = re.compile(r"libQt\d*[A-Z]\w*\.so\.\d+")
WIDGETS_LIBRARIES = {"libQtGui.so.4": 4, "libQt5Widgets.so.5": 5, "libQt6Widgets.so.6": 6}
"""The major version of Qt by the library that has its widgets."""


def qt_major(program: Path, environment: Optional[Mapping[str, str]] = None) -> int:
    """The major version of the Qt whose widgets a program links, itself or through its libraries.

    Args:
        program: its file.
        environment: the environment in which the dynamic loader would look for its libraries; by default that of this
            process.

    Raises the ProgramError subclasses of this file, of windows_qt_major() and of require_elf(), and
    the errors of a missing package.
    """
    environment = os.environ if environment is None else environment
    if is_windows_program(program):
        return windows_qt_major(program, environment)
    require_elf(program)
    try:
        return _qt_major(program, environment)
    except ValueError as error:
        raise UnknownFormatError(str(error)) from error


def _qt_major(program: Path, environment: Mapping[str, str]) -> int:
    loaded = load_program(program)
    other_qt_library = None
    count = 0
    for name, _ in linked_libraries(loaded, environment):
        count += 1
        file_name = os.path.basename(name)
        if file_name in WIDGETS_LIBRARIES:
            return WIDGETS_LIBRARIES[file_name]
        if other_qt_library is None and _QT_LIBRARY.fullmatch(file_name):
            other_qt_library = file_name
    if other_qt_library is not None:
        raise NoWidgetsError(
            f"{program} links {other_qt_library}, but not Qt's widgets, which are what the agent drives",
            hint=f"If it loads them later, as a plugin, name the Qt version with {setting_names().qt}",
        )
    raise _error_without_qt(program, loaded, count)


def _error_without_qt(program: Path, loaded: LoadedFile, count: int) -> ProgramError:
    if contains_qt_widgets(loaded.elf.path):
        return StaticQtError(
            f"Qt is linked into {program} statically, and the agent cannot be loaded beside it",
            hint="Build the application with shared Qt libraries",
        )
    if loaded.elf.interpreter is None:
        return StaticProgramError(
            f"{program} is statically linked, and the agent cannot be loaded into it",
            hint="Build the application with shared libraries",
        )
    return NoQtError(
        f"{program} links no Qt ({count} libraries looked through)",
        hint=f"If it loads Qt later, as a plugin, name the Qt version with {setting_names().qt}",
    )
