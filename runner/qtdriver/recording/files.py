"""Writing the file of a test below a folder, and nowhere else."""

from __future__ import annotations

import os
from pathlib import PurePosixPath
from typing import List

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
    *folders, name = parts_below(path)
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
    except FileExistsError:
        raise TestFileExistsError(
            f"{path} is there already: choose another name, or give overwrite"
        ) from None
    except OSError as error:
        raise TestFileError(f"{path} cannot be written: {error.strerror}") from None
    finally:
        os.close(at)


def _open_folder(name: str, parent: int) -> int:
    try:
        os.mkdir(name, dir_fd=parent)
    except FileExistsError:
        pass
    return os.open(name, os.O_RDONLY | os.O_DIRECTORY | os.O_NOFOLLOW, dir_fd=parent)
