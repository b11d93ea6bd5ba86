"""Reads from PE files, the programs and libraries of Windows, what their loader needs to know of them."""

from __future__ import annotations

from contextlib import closing, contextmanager
from dataclasses import dataclass
from functools import lru_cache
from pathlib import Path
from typing import Any, Iterator, Tuple

from ..errors import ExeReaderMissingError

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_DOS_MAGIC = b"MZ"
_IMPORTS = "IMAGE_DIRECTORY_ENTRY_IMPORT"
_MACHINES = {0x8664: "x86-64", 0x014C: "x86", 0xAA64: "ARM64", 0x01C4: "ARM"}
_LIBRARY_FLAG = 0x2000
_COMPILERS = ((b"?", "Microsoft's compiler"), (b"_Z", "MinGW"))
"""How the names of C++ functions begin, by which compilers find each other's."""


@dataclass(frozen=True)
class PeFile:
    """A program or library of Windows.

    Attributes:
        path: the file.
        architecture: the processor, for example "x86-64"; files of one process share it.
        is_library: whether it is a DLL.
        needed: the libraries that it links, as written.
    """

    path: Path
    architecture: str
    is_library: bool
    needed: Tuple[str, ...]


def is_pe(path: Path) -> bool:
    """Whether the file begins as one of Windows, or of DOS. Raises OSError when it cannot be read."""
    with path.open("rb") as file:
        return file.read(len(_DOS_MAGIC)) == _DOS_MAGIC


def read_pe(path: Path) -> PeFile:
    """Reads the file, or remembers what it read while the file stays unchanged.

    Raises OSError when it cannot be read, ValueError when it is damaged or a program of DOS, and
    ExeReaderMissingError.
    """
    status = path.stat()
    return _read_pe(path, status.st_mtime_ns, status.st_size)


@lru_cache(maxsize=1024)
def _read_pe(path: Path, _modified: int, _size: int) -> PeFile:
    with _opened(path, names_only=True) as pe:
        machine = pe.FILE_HEADER.Machine
        return PeFile(
            path=path,
            architecture=_MACHINES.get(machine, f"machine {machine:#06x}"),
            is_library=bool(pe.FILE_HEADER.Characteristics & _LIBRARY_FLAG),
            needed=tuple(entry.dll.decode("latin-1") for entry in _imports(pe)),
        )


def compiler_of_qt(path: Path) -> str:
    """The compiler whose names of Qt's functions the file links, which is the compiler of that Qt; empty if it links none.

    Raises as read_pe() does.
    """
    status = path.stat()
    return _compiler_of_qt(path, status.st_mtime_ns, status.st_size)


@lru_cache(maxsize=1024)
def _compiler_of_qt(path: Path, _modified: int, _size: int) -> str:
    with _opened(path, names_only=False) as pe:
        for entry in _imports(pe):
            if not entry.dll.lower().startswith(b"qt"):
                continue
            for imported in entry.imports:
                for beginning, compiler in _COMPILERS:
                    if imported.name and imported.name.startswith(beginning):
                        return compiler
    return ""


@contextmanager
def _opened(path: Path, *, names_only: bool) -> Iterator[Any]:
    """pefile's view of a file with its imports, of the libraries alone with `names_only`."""
    try:
        import pefile  # type: ignore[import]
    except ImportError:
        raise ExeReaderMissingError() from None
    try:
        with closing(pefile.PE(str(path), fast_load=True)) as pe:
            directory = pefile.DIRECTORY_ENTRY[_IMPORTS]
            pe.parse_data_directories([directory], import_dllnames_only=names_only)
            yield pe
    except OSError:
        raise
    except Exception as error:  # on damaged files the errors of its parsers get through
        raise ValueError(
            f"{path} is no readable program of Windows: {error or type(error).__name__}"
        ) from error


def _imports(pe: Any) -> Any:
    return getattr(pe, "DIRECTORY_ENTRY_IMPORT", ())
