"""Workers on other machines (pytest-xdist's `--tx ssh=...`, `--tx socket=...`): they have desktops of their own, as those of
this machine do, and what they keep of tests comes back with the reports.
"""

from __future__ import annotations

import os
import shutil
import tempfile
from pathlib import Path, PurePosixPath
from typing import Any, Dict, Optional, Tuple

import pytest

from ..desktop.desktop import MARK_OF_WORKERS
from . import folders
from .settings import OUTPUT, OUTPUT_OF_WORKERS

SENDER = "qtdriver-artifacts"
"""The name under which ArtifactSender is registered as a plugin; only workers of other machines have it."""

_BASE_KEY = "qtdriver_base"
_FILES = "qtdriver_files"
"""Attribute of a report: the contents of files by their paths below the output folder."""


def is_remote(spec: Any) -> bool:
    """Whether an execution environment may be on another machine."""
    return not spec.popen or bool(spec.via)


def wrap_remote(spec: Any) -> None:
    """Makes the interpreter of a worker that is started by ssh begin on a desktop of its own.

    One that is reached by a socket runs already: its server is started with `python3 -m qtdriver.desktop --listen`.
    """
    if spec.ssh:
        interpreter = spec.python or "python3"
        spec.python = f"{interpreter} -m qtdriver.desktop {interpreter}"


def tell_base(node: Any, base: Path) -> None:
    """Tells a worker of another machine from where the controller shows paths; so the worker knows that it is one."""
    if is_remote(node.gateway.spec):
        node.workerinput[_BASE_KEY] = str(base)


class ArtifactSender:
    """Sends what tests leave on this machine to the controller.

    Attributes:
        base: the folder from which the controller shows paths.
    """

    def __init__(self, told: Dict[str, Any]) -> None:
        """`told` is what the controller tells its worker."""
        self.base = Path(told[_BASE_KEY])
        # On a desktop of its own that is removed with the desktop, also where this process is killed.
        folder = os.environ.get("XDG_RUNTIME_DIR") if MARK_OF_WORKERS in os.environ else None
        self.output = Path(tempfile.mkdtemp(prefix="qtdriver-", dir=folder))
        self._there = Path(told[OUTPUT_OF_WORKERS])
        self._sent: Dict[Path, Tuple[int, int]] = {}

    def path_there(self, path: Path) -> Path:
        """Where a file of the output will be on the machine of the controller; any other one stays where it is."""
        return self._there / path.relative_to(self.output) if self.output in path.parents else path

    def attach(self, report: pytest.TestReport, folder: Path) -> None:
        """Adds the files of a test to its report, those that have changed since the last one.

        Raises the OSError of one that cannot be read; the others are added all the same.
        """
        files: Dict[str, bytes] = {}
        problem: Optional[OSError] = None
        for file in sorted(folder.rglob("*")):
            if not file.is_file() or self.output not in file.parents:
                continue
            try:
                state = (file.stat().st_mtime_ns, file.stat().st_size)
                if self._sent.get(file) != state:
                    files[str(file.relative_to(self.output))] = file.read_bytes()
                    self._sent[file] = state
            except OSError as error:
                problem = error
        if files:
            setattr(report, _FILES, files)
        if problem is not None:
            raise problem

    def forget(self, folder: Path) -> None:
        """Removes the files of a test that has ended. The folder stays, for its name is taken."""
        for file in [one for one in self._sent if folder in one.parents]:
            del self._sent[file]
        if folder.parent == self.output:
            shutil.rmtree(folder, ignore_errors=True)
            folders.make(folder)

    def pytest_unconfigure(self) -> None:
        """Removes the output of this machine."""
        shutil.rmtree(self.output, ignore_errors=True)


def begin_sending(config: pytest.Config) -> None:
    """In a worker of another machine, registers the ArtifactSender, and makes its folder the output folder of the tests."""
    told: Optional[Dict[str, Any]] = getattr(config, "workerinput", None)
    if told is not None and _BASE_KEY in told:
        sender = ArtifactSender(told)
        config.stash[OUTPUT] = sender.output
        config.pluginmanager.register(sender, SENDER)


def sender_of(config: pytest.Config) -> Optional[ArtifactSender]:
    """The sender in a worker of another machine; None elsewhere."""
    plugin = config.pluginmanager.get_plugin(SENDER)
    return plugin if isinstance(plugin, ArtifactSender) else None


def receive(report: pytest.TestReport, output: Path) -> None:
    """Writes the files that a worker of another machine has sent with a report, which does not keep them.

    Raises OSError.
    """
    files: Dict[str, bytes] = vars(report).pop(_FILES, {})
    for name, content in files.items():
        path = PurePosixPath(name)
        if path.is_absolute() or ".." in path.parts or len(path.parts) < 2:
            continue  # a worker may be wrong, but it writes into the folders of its tests only
        folders.make(output / path.parts[0])
        (output / path).parent.mkdir(parents=True, exist_ok=True)
        (output / path).write_bytes(content)
