"""Reads from ELF files what the dynamic loader needs to know of them."""

from __future__ import annotations

import mmap
import os
from contextlib import contextmanager
from dataclasses import dataclass
from functools import lru_cache
from pathlib import Path
from typing import Any, FrozenSet, Iterator, Mapping, NamedTuple, Optional, Tuple

from ..errors import ElfReaderMissingError

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

ELF_MAGIC = b"\x7fELF"
_SYMBOL_NAMES = (".strtab", ".dynstr")
_NAMES_OF_QT_SYMBOLS = (b"\0_ZN7QWidget", b"\0qVersion\0")
# A text of the constructor of QWidget that every Qt has; it survives stripping.
_WARNING_OF_QWIDGET = b"QWidget: Must construct a QApplication before"


@dataclass(frozen=True)
class ElfFile:
    """The dynamic section of a program or library.

    Attributes:
        path: the file.
        architecture: class and machine, for example "ELFCLASS64 EM_X86_64"; files of one process share it.
        interpreter: the dynamic loader that the file asks for, None for a statically linked program.
        needed: the libraries it links (DT_NEEDED).
        rpath: directories of DT_RPATH, as written.
        runpath: directories of DT_RUNPATH, as written; where it is given, DT_RPATH does not count.
    """

    path: Path
    architecture: str
    interpreter: Optional[str]
    needed: Tuple[str, ...]
    rpath: Tuple[str, ...]
    runpath: Tuple[str, ...]


def is_elf(path: Path) -> bool:
    """Whether the file begins as an ELF file. Raises OSError when it cannot be read."""
    with path.open("rb") as file:
        return file.read(len(ELF_MAGIC)) == ELF_MAGIC


def read_elf(path: Path) -> ElfFile:
    """Reads a file, and keeps the result until the file changes.

    Raises OSError when it cannot be read, ValueError when it is damaged or neither program nor library, and
    ElfReaderMissingError.
    """
    status = path.stat()
    return _read_elf(path, status.st_mtime_ns, status.st_size)


@lru_cache(maxsize=1024)
def _read_elf(path: Path, _modified: int, _size: int) -> ElfFile:
    with path.open("rb") as file:
        return _describe(path, _open_elf(file))


def _open_elf(file: Any) -> Any:
    """The file as pyelftools reads it. The import is here so that clients of the protocol alone do not need it."""
    try:
        from elftools.elf.elffile import ELFFile  # type: ignore[import]
    except ImportError:
        raise ElfReaderMissingError() from None
    with _refusing_damage(Path(file.name)):
        return ELFFile(file)


@contextmanager
def _refusing_damage(path: Path) -> Iterator[None]:
    """Turns every exception into a ValueError: on damaged files pyelftools lets the errors of its parsers through."""
    try:
        yield
    except Exception as error:
        raise ValueError(f"{path} is no readable ELF file: {error or type(error).__name__}") from error


def _describe(path: Path, elf: Any) -> ElfFile:
    interpreter = None
    entries = []
    if elf["e_type"] not in ("ET_EXEC", "ET_DYN"):
        raise ValueError(f"{path} is neither a program nor a shared library")
    with _refusing_damage(path):
        for segment in elf.iter_segments():
            if segment["p_type"] == "PT_INTERP":
                interpreter = str(segment.get_interp_name())
            elif segment["p_type"] == "PT_DYNAMIC":
                entries = list(segment.iter_tags())

    def directories(tag: str, attribute: str) -> Tuple[str, ...]:
        texts = [getattr(entry, attribute) for entry in entries if entry.entry.d_tag == tag]
        return tuple(directory for text in texts for directory in text.split(":") if directory)

    return ElfFile(
        path=path,
        architecture=f"{elf['e_ident']['EI_CLASS']} {elf['e_machine']}",
        interpreter=interpreter,
        needed=tuple(entry.needed for entry in entries if entry.entry.d_tag == "DT_NEEDED"),
        rpath=directories("DT_RPATH", "rpath"),
        runpath=directories("DT_RUNPATH", "runpath"),
    )


class SymbolVersions(NamedTuple):
    """The versions that mark the symbols of a file.

    Attributes:
        needed: those that it asks of each library that it links, by the library's name.
        defined: those that it has itself.
    """

    needed: Mapping[str, FrozenSet[str]]
    defined: FrozenSet[str]


def symbol_versions(path: Path) -> SymbolVersions:
    """The versions of a file's symbols. Raises the errors of read_elf()."""
    status = path.stat()
    return _symbol_versions(path, status.st_mtime_ns, status.st_size)


@lru_cache(maxsize=1024)
def _symbol_versions(path: Path, _modified: int, _size: int) -> SymbolVersions:
    with path.open("rb") as file:
        elf = _open_elf(file)
        with _refusing_damage(path):
            asked, own = map(elf.get_section_by_name, (".gnu.version_r", ".gnu.version_d"))
            needed = {
                str(library.name): frozenset(str(version.name) for version in versions)
                for library, versions in (asked.iter_versions() if asked is not None else ())
            }
            defined = frozenset(
                str(auxiliary.name)
                for _, auxiliaries in (own.iter_versions() if own is not None else ())
                for auxiliary in auxiliaries
            )
    return SymbolVersions(needed, defined)


def contains_qt_widgets(path: Path) -> bool:
    """Whether Qt's widgets are inside the file itself: their symbols, or a text of theirs if it is stripped.

    Raises the errors of read_elf().
    """
    with path.open("rb") as file:
        elf = _open_elf(file)
        with _refusing_damage(path):
            for name in _SYMBOL_NAMES:
                section = elf.get_section_by_name(name)
                if section is not None and _holds_any(section.data(), _NAMES_OF_QT_SYMBOLS):
                    return True
    return contains_qt_text(path)


def contains_qt_text(path: Path) -> bool:
    """Whether a text of Qt's widgets is inside the file, of whatever format. Raises OSError when it cannot be read."""
    with path.open("rb") as file:
        if os.fstat(file.fileno()).st_size == 0:
            return False
        with mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ) as content:
            return content.find(_WARNING_OF_QWIDGET) >= 0


def _holds_any(data: bytes, names: Tuple[bytes, ...]) -> bool:
    return any(name in data for name in names)
