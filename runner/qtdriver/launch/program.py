"""Finding the program that was named, and telling what kind of file it is."""

from __future__ import annotations

import os
import shutil
from pathlib import Path

from ..errors import ProgramNotExecutableError, ProgramNotFoundError, ScriptProgramError, UnknownFormatError
from ..errors.settingnames import setting_names
from .elf import is_elf
from .pe import is_pe

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_WINDOWS_ENDING = ".exe"
_OWN_TMP = "QTDRIVER_OWN_TMP"
"""Set in the environment of a worker with a /tmp of its own."""

_HIDDEN = "This worker has a /tmp of its own: put the program elsewhere, or run with --qtdriver-tmp shared"


def find_program(name: str) -> Path:
    """The file of a program, looked up in PATH unless the name has a slash.

    A Windows program need not be executable for Linux, and is looked for in the current folder, too, as Windows does.

    Raises ProgramNotFoundError and ProgramNotExecutableError.
    """
    if not os.path.dirname(name):
        found = shutil.which(name)
        if found is None and name.lower().endswith(_WINDOWS_ENDING) and is_windows_program(Path(name)):
            found = name
        if found is None:
            raise ProgramNotFoundError(
                f"{name}: no such program in PATH", hint="Give its path if it is elsewhere"
            )
        return Path(os.path.abspath(found))
    path = Path(os.path.abspath(name))
    if not path.exists():
        hidden = _OWN_TMP in os.environ and Path("/tmp") in path.parents
        raise ProgramNotFoundError(f"{name}: no such file", hint=_HIDDEN if hidden else "")
    if not path.is_file() or not (os.access(path, os.X_OK) or is_windows_program(path)):
        raise ProgramNotExecutableError(f"{name} is not an executable file")
    return path


def is_windows_program(program: Path) -> bool:
    """Whether the file is a program of Windows, or of DOS; not if it cannot be read."""
    try:
        return is_pe(program)
    except OSError:
        return False


def require_elf(program: Path) -> None:
    """Raises an error for a program that is no ELF file.

    Raises ScriptProgramError, UnknownFormatError, and ProgramNotExecutableError when the file cannot be read.
    """
    try:
        if is_elf(program):
            return
        with program.open("rb") as file:
            first_line = file.readline(200)
    except OSError as error:
        raise ProgramNotExecutableError(f"{program} cannot be read: {error.strerror}") from error
    if first_line.startswith(b"#!"):
        interpreter = first_line[2:].decode("latin-1").strip()
        raise ScriptProgramError(
            f"{program} is a script (run by {interpreter})",
            hint="Name the binary that it starts, or the Qt version that this binary uses, with "
            f"{setting_names().qt}",
        )
    raise UnknownFormatError(f"{program} is neither a program of Linux or Windows nor a script")
