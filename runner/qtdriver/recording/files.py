"""Writing the file of a test below a folder, and nowhere else."""

from __future__ import annotations

import errno
import os
import sys
from pathlib import Path, PurePosixPath
from typing import List, Sequence

from ..errors import QtDriverError


class TestFileError(QtDriverError):
    """A path that is no test below the folder, or a file that cannot be written."""

    __test__ = False


class TestFileExistsError(TestFileError):
    """There is a file already, and nobody has said that it can be replaced."""


def parts_below(path: str) -> List[str]:
    """The names of a relative path. Raises TestFileError for a path that is absolute, leads upwards, or is no test."""
    pure = PurePosixPath(path)
    if pure.is_absolute() or ".." in pure.parts or "\\" in path or "\0" in path or not pure.parts:
        raise TestFileError("path has to be relative to the working directory, and stay below it")
    if not (pure.name.startswith("test_") and pure.suffix == ".py"):
        raise TestFileError("path has to end with a file test_NAME.py, as pytest finds it")
    return list(pure.parts)


def write_below(folder: "str | os.PathLike[str]", path: str, text: str, *, overwrite: bool) -> None:
    """Writes a file at a path below a folder, and makes the folders on the way. Follows no symbolic link below `folder`.

    Raises TestFileError where that cannot be done.
    """
    parts = parts_below(path)
    try:
        if sys.platform == "win32":
            write_by_path(Path(folder), parts, text, overwrite=overwrite)
        else:
            _write_by_folders(folder, parts, text, overwrite=overwrite)
    except FileExistsError:
        raise TestFileExistsError(
            f"{path} is there already: choose another name, or give overwrite"
        ) from None
    except OSError as error:
        raise TestFileError(f"{path} cannot be written: {error.strerror}") from None


def write_by_path(folder: Path, parts: Sequence[str], text: str, *, overwrite: bool) -> None:
    """Writes the file where the system opens no files within an open folder, as Windows. Raises OSError.

    Who can change the folders meanwhile could lead it elsewhere; nobody but the user can change the user's own there.
    """
    *folders, name = parts
    if any(":" in part for part in parts):
        raise OSError(errno.EINVAL, "a name has a colon, which begins another drive")
    at = folder.resolve()
    for part in folders:
        at = at / part
        at.mkdir(exist_ok=True)
        _check_no_link(at)
    _check_no_link(at / name)
    with (at / name).open("w" if overwrite else "x", encoding="utf-8", newline="\n") as file:
        file.write(text)


def _check_no_link(path: Path) -> None:
    if path.resolve() != path:
        raise OSError(errno.ELOOP, f"{path.name} is a link")


def _write_by_folders(
    folder: "str | os.PathLike[str]", parts: Sequence[str], text: str, *, overwrite: bool
) -> None:
    """Writes the file within folders that are open, so that none of them can become a link meanwhile. Raises OSError."""
    *folders, name = parts
    at = os.open(folder, os.O_RDONLY | os.O_DIRECTORY)
    try:
        for part in folders:
            inner = _open_folder(part, at)
            os.close(at)
            at = inner
        how = os.O_TRUNC if overwrite else os.O_EXCL
        with open(
            os.open(name, os.O_WRONLY | os.O_CREAT | os.O_NOFOLLOW | how, 0o666, dir_fd=at),
            "w",
            encoding="utf-8",
        ) as file:
            file.write(text)
    finally:
        os.close(at)


def _open_folder(name: str, parent: int) -> int:
    try:
        os.mkdir(name, dir_fd=parent)
    except FileExistsError:
        pass
    return os.open(name, os.O_RDONLY | os.O_DIRECTORY | os.O_NOFOLLOW, dir_fd=parent)
