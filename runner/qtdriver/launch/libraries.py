"""Where the dynamic loader finds a library: its search order, without running the program."""

from __future__ import annotations

import os
import re
import subprocess
from collections import deque
from dataclasses import dataclass, field
from functools import lru_cache
from pathlib import Path
from typing import Dict, Iterator, List, Mapping, Optional, Tuple

from .elf import ElfFile, read_elf

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_DEFAULT_DIRECTORIES = ("/lib64", "/usr/lib64", "/lib", "/usr/lib")
_CACHE_TOOLS = ("/sbin/ldconfig", "/usr/sbin/ldconfig", "ldconfig")


@dataclass(frozen=True)
class LoadedFile:
    """A program or library of a process.

    Attributes:
        elf: the file.
        rpath_chain: the DT_RPATH directories of the file and of those that loaded it; they count for what it links.
    """

    elf: ElfFile
    rpath_chain: Tuple[Path, ...] = field(default=())


def load_program(path: Path) -> LoadedFile:
    """The program that starts a process. `$ORIGIN` in it is the folder of the file behind all links."""
    elf = read_elf(path.resolve())
    return LoadedFile(elf, _rpath_directories(elf))


def linked_libraries(
    program: LoadedFile, environment: Mapping[str, str]
) -> Iterator[Tuple[str, Optional[LoadedFile]]]:
    """All libraries of the process, breadth first, each once: its name, and the file if there is one."""
    seen = set()
    users = deque([program])
    while users:
        user = users.popleft()
        new_names = [name for name in user.elf.needed if name not in seen]
        seen.update(new_names)
        for name in new_names:
            library = find_library(name, user, environment)
            yield name, library
            if library is not None:
                users.append(library)


def find_library(name: str, user: LoadedFile, environment: Mapping[str, str]) -> Optional[LoadedFile]:
    """The library that the dynamic loader would find.

    It looks in DT_RPATH of the user and of those that loaded it, unless the user has DT_RUNPATH; in LD_LIBRARY_PATH;
    in DT_RUNPATH of the user; in the system's cache; in the default directories. A name with a slash is a file.

    Args:
        name: the library, as `user` links it.
        user: the program or library that links it.
        environment: the environment of the process.

    Returns None where there is no such library of the user's architecture. Raises ElfReaderMissingError.
    """
    for candidate in _candidates(name, user, environment):
        try:
            elf = read_elf(candidate)
        except (OSError, ValueError):
            continue
        if elf.architecture == user.elf.architecture:
            return LoadedFile(elf, _rpath_directories(elf) + user.rpath_chain)
    return None


def _candidates(name: str, user: LoadedFile, environment: Mapping[str, str]) -> Iterator[Path]:
    if "/" in name:
        yield _expanded(name, user.elf)
        return
    if not user.elf.runpath:
        yield from (directory / name for directory in user.rpath_chain)
    for entry in re.split("[:;]", environment.get("LD_LIBRARY_PATH", "")):
        if entry:
            yield _expanded(entry, user.elf) / name
    yield from (_expanded(directory, user.elf) / name for directory in user.elf.runpath)
    yield from _system_cache().get(name, ())
    yield from (Path(directory) / name for directory in _DEFAULT_DIRECTORIES)


def _rpath_directories(elf: ElfFile) -> Tuple[Path, ...]:
    if elf.runpath:
        return ()
    return tuple(_expanded(directory, elf) for directory in elf.rpath)


def _expanded(text: str, elf: ElfFile) -> Path:
    origin = os.path.abspath(elf.path.parent)
    return Path(text.replace("${ORIGIN}", origin).replace("$ORIGIN", origin))


@lru_cache(maxsize=1)
def _system_cache() -> Dict[str, List[Path]]:
    """The loader's cache: file name of a library to its places; empty where the system has no such cache."""
    places: Dict[str, List[Path]] = {}
    for tool in _CACHE_TOOLS:
        try:
            listing = subprocess.run(
                [tool, "-p"], stdin=subprocess.DEVNULL, capture_output=True, text=True, errors="replace"
            )
        except OSError:
            continue
        for line in listing.stdout.splitlines():
            entry, arrow, path = line.strip().partition(" => ")
            if arrow:
                places.setdefault(entry.split(" ")[0], []).append(Path(path))
        break
    return places
