"""Writes the files of a new folder for tests."""

from __future__ import annotations

import shlex
from pathlib import Path
from string import Template
from typing import List, NamedTuple, Sequence

_TEMPLATES = Path(__file__).with_name("templates")
_FILES = (
    ("conftest.py", "conftest.py.txt"),
    ("test_first.py", "test_first.py.txt"),
    ("pyproject.toml", "pyproject.toml.txt"),
    (".github/workflows/gui-tests.yml", "github.yml.txt"),
    (".gitlab-ci.yml", "gitlab.yml.txt"),
)


class Written(NamedTuple):
    """The files of the folder, by their paths in it.

    Attributes:
        new: those that were written.
        kept: those that were there before, which stay as they are.
    """

    new: List[str]
    kept: List[str]


def write_project(folder: Path, command: Sequence[str]) -> Written:
    """Writes the files that are not there yet; `command` is the application with its arguments. Raises OSError."""
    written = Written([], [])
    values = {
        "command": ", ".join(map(_python_text, command)),
        "shell_command": shlex.join(command).replace("\\", "\\\\"),
        "install": "" if "/" in command[0] else f" {shlex.quote(command[0])}",
    }
    for name, template in _FILES:
        path = folder / name
        if path.exists():
            written.kept.append(name)
            continue
        path.parent.mkdir(parents=True, exist_ok=True)
        text = Template((_TEMPLATES / template).read_text(encoding="utf-8")).substitute(values)
        path.write_text(text, encoding="utf-8")
        written.new.append(name)
    return written


def _python_text(word: str) -> str:
    return '"' + word.replace("\\", "\\\\").replace('"', '\\"') + '"'
