"""Where a Windows program finds the libraries that it links, without running it."""

from __future__ import annotations

import os
from collections import deque
from pathlib import Path
from typing import Dict, Iterable, Iterator, List, Mapping, Optional, Set, Tuple

from .pe import PeFile, read_pe
from .platform import RUNS_WINDOWS_PROGRAMS
from .windows import search_path

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

WINEPATH = "WINEPATH"
"""The variable with the folders that Wine puts in front of a program's search path."""

_ROOT_DRIVE = "Z:"
_MINGW_FOLDERS = ("/usr/lib/gcc/x86_64-w64-mingw32/*-posix", "/usr/x86_64-w64-mingw32/lib")


def windows_path(path: Path) -> str:
    """How a program under Wine names a file of Linux."""
    if RUNS_WINDOWS_PROGRAMS:
        return str(path)
    return _ROOT_DRIVE + str(path).replace("/", "\\")


def qt_folder(major: int, environment: Mapping[str, str]) -> Optional[Path]:
    """The Qt for Windows that the variable QTN_WINDOWS names, for programs that do not bring their own."""
    value = environment.get(f"QT{major}_WINDOWS", "")
    return Path(os.path.abspath(value)) if value else None


def further_folders(major: int, environment: Mapping[str, str]) -> Tuple[Path, ...]:
    """Where libraries are that are not beside a program: those of Qt, and those of MinGW's compiler."""
    qt = qt_folder(major, environment)
    found = [] if qt is None else [qt / "bin"]
    for pattern in _MINGW_FOLDERS:
        found += sorted(Path("/").glob(pattern[1:]), reverse=True)[:1]
    return tuple(found)


class DllFolders:
    """Folders in which libraries are looked for in turn. Upper and lower case are the same in their names.

    Attributes:
        used: the folders that something was found in.
    """

    def __init__(self, folders: Iterable[Path]) -> None:
        self._folders = tuple(folders)
        self._files: Dict[Path, Dict[str, Path]] = {}
        self.used: Set[Path] = set()

    def find(self, name: str) -> Optional[Path]:
        """The file of a library, None where it is in none of them."""
        for folder in self._folders:
            path = self._listing(folder).get(name.lower())
            if path is not None:
                self.used.add(folder)
                return path
        return None

    def _listing(self, folder: Path) -> Dict[str, Path]:
        if folder not in self._files:
            try:
                self._files[folder] = {
                    entry.name.lower(): folder / entry.name for entry in os.scandir(folder)
                }
            except OSError:
                self._files[folder] = {}
        return self._files[folder]


def program_folders(program: Path, environment: Mapping[str, str]) -> List[Path]:
    """The folders that Windows searches for the program's own libraries: its own, and those of WINEPATH."""
    if RUNS_WINDOWS_PROGRAMS:
        return [program.parent, *search_path(environment)]
    entries = environment.get(WINEPATH, "").split(";")
    on_linux = [entry[len(_ROOT_DRIVE) :] for entry in entries if entry.upper().startswith(_ROOT_DRIVE)]
    return [program.parent, *(Path(entry.replace("\\", "/")) for entry in on_linux)]


def linked_libraries(programs: Iterable[Path], folders: DllFolders) -> Iterator[Tuple[str, Optional[Path]]]:
    """The names of all libraries of a process, breadth first, each once, with their files.

    The file is None for a library that is in none of the folders, as those of Windows itself are. Raises the errors of
    read_pe() for the programs; what cannot be read of a library is left out.
    """
    seen: Set[str] = set()
    users: "deque[PeFile]" = deque(map(read_pe, programs))
    while users:
        for name in users.popleft().needed:
            if name.lower() in seen:
                continue
            seen.add(name.lower())
            path = folders.find(name)
            yield name, path
            if path is not None:
                try:
                    users.append(read_pe(path))
                except (OSError, ValueError):
                    pass
