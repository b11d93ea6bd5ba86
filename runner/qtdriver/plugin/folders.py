"""The folders of tests, for the bundles of failures and for traces."""

from __future__ import annotations

import hashlib
import re
import shutil
from pathlib import Path

_MARK = ".qtdriver"
"""A file in each folder that this module has made; only such folders are removed."""

_MAX_NAME = 80


def folder_of(output: Path, node_id: str, attempt: int = 1) -> Path:
    """The folder of an attempt at a test below the folder `output`.

    It is named after the test and a digest of its whole node id, and from the second attempt on after the attempt.
    """
    readable = re.sub(r"[^A-Za-z0-9_]+", "-", node_id.replace(".py::", "-")).strip("-")[:_MAX_NAME]
    digest = hashlib.sha1(node_id.encode("utf-8", "replace")).hexdigest()[:6]
    return output / f"{readable}-{digest}{'' if attempt == 1 else f'-attempt-{attempt}'}"


def next_folder_of(output: Path, node_id: str, attempt: int) -> Path:
    """The folder of an attempt; that of a later one where an earlier attempt, perhaps in another worker, has this one."""
    while is_taken(folder_of(output, node_id, attempt)):
        attempt += 1
    return folder_of(output, node_id, attempt)


def is_taken(folder: Path) -> bool:
    """Whether the folder of a test was made here."""
    return (folder / _MARK).is_file()


def make(folder: Path) -> None:
    """Makes the folder of a test, if it is not there."""
    folder.mkdir(parents=True, exist_ok=True)
    (folder / _MARK).touch()


def remove(folder: Path) -> None:
    """Removes the folder of a test, if it was made here."""
    if is_taken(folder):
        shutil.rmtree(folder, ignore_errors=True)


def clear(output: Path) -> None:
    """Removes the folders of an earlier run's tests, and nothing else."""
    if output.is_dir():
        for folder in output.iterdir():
            remove(folder)
