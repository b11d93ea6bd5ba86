"""The last run of each test that passed, as a file for each test and branch, to compare failures with."""

from __future__ import annotations

import hashlib
import json
import os
import re
import subprocess
import zipfile
from contextlib import suppress
from functools import lru_cache
from pathlib import Path
from typing import List, Optional, Tuple

from ..trace.trace import TRACE_FILE
from . import folders

RUN_BYTES = 10_000_000
"""Bytes of pictures that are kept of a run: those of its first steps."""

HISTORY_BYTES = 500_000_000
"""Bytes of all runs; beyond that the oldest ones are removed."""

BRANCH = "QTDRIVER_BRANCH"
"""The variable that names the branch, where neither the CI system nor git does."""

_BRANCHES = (BRANCH, "GITHUB_HEAD_REF", "GITHUB_REF_NAME", "CI_COMMIT_REF_NAME", "BRANCH_NAME")
_DEFAULT_BRANCHES = ("main", "master")
_UNKNOWN_BRANCH = "no-branch"
_SUFFIX = ".zip"
_GIT_SECONDS = 5.0


class PassedRuns:
    """The folder with the last passing runs: BRANCH/TEST.zip, each with a trace and its pictures."""

    def __init__(self, folder: Path) -> None:
        self._folder = folder

    def __repr__(self) -> str:
        return f"<passed runs in {self._folder}>"

    def keep(self, node_id: str, trace: Path) -> None:
        """Keeps a run that passed, in place of the one before. `trace` is the folder of its trace. Raises OSError."""
        file = self._file(current_branch(), node_id)
        file.parent.mkdir(parents=True, exist_ok=True)
        unfinished = file.with_name(f"{file.name}.{os.getpid()}.part")
        try:
            with zipfile.ZipFile(unfinished, "w") as archive:
                archive.write(trace / TRACE_FILE, TRACE_FILE, zipfile.ZIP_DEFLATED)
                room = RUN_BYTES
                for picture in _pictures(trace):
                    room -= picture.stat().st_size
                    if room < 0:
                        break
                    archive.write(picture, picture.name)
            os.replace(unfinished, file)
        finally:
            unfinished.unlink(missing_ok=True)

    def find(self, node_id: str) -> Optional[Tuple[Path, str]]:
        """The last passing run of a test, and its branch: the current one, or where that has none, main or master."""
        for branch in dict.fromkeys((current_branch(), *_DEFAULT_BRANCHES)):
            file = self._file(branch, node_id)
            if file.is_file():
                return file, branch
        return None

    def prune(self, most: int = HISTORY_BYTES) -> None:
        """Removes the oldest runs, until all together have no more bytes than `most`."""
        found = [(path.stat(), path) for path in self._folder.glob(f"*/*{_SUFFIX}")]
        total = sum(stat.st_size for stat, _ in found)
        for stat, path in sorted(found, key=lambda entry: entry[0].st_mtime):
            if total <= most:
                return
            path.unlink(missing_ok=True)
            total -= stat.st_size

    def _file(self, branch: str, node_id: str) -> Path:
        return self._folder / _folder_name(branch) / f"{folders.folder_of(Path(), node_id).name}{_SUFFIX}"


def _pictures(trace: Path) -> List[Path]:
    """The pictures of the steps in their order."""
    steps = json.loads((trace / TRACE_FILE).read_text(encoding="utf-8"))["steps"]
    names = dict.fromkeys(step[moment] for step in steps for moment in ("before", "after") if step[moment])
    return [trace / name for name in names]


def _folder_name(branch: str) -> str:
    """The branch as the name of a folder; two branches never have the same."""
    plain = re.sub(r"[^A-Za-z0-9._]+", "-", branch).lstrip(".")
    return plain if plain == branch else f"{plain}-{hashlib.sha1(branch.encode()).hexdigest()[:6]}"


@lru_cache(maxsize=1)
def current_branch() -> str:
    """The branch that is tested, as the CI system or git tells it."""
    for variable in _BRANCHES:
        if os.environ.get(variable):
            return os.environ[variable]
    with suppress(OSError, subprocess.SubprocessError):
        told = subprocess.run(
            ["git", "branch", "--show-current"],
            stdin=subprocess.DEVNULL,
            capture_output=True,
            text=True,
            timeout=_GIT_SECONDS,
        )
        return told.stdout.strip() or _UNKNOWN_BRANCH
    return _UNKNOWN_BRANCH
