"""Tests side by side (pytest-xdist): each worker has a network, an X server and a window manager of its own."""

from __future__ import annotations

import shlex
import shutil
import subprocess
import sys
from typing import Any, List, Sequence

import pytest

from ..desktop.desktop import NAMESPACE_CHECK, SCRIPT
from .hookimpl import hookimpl
from .settings import OWN_DESKTOPS, Settings

_NEEDED = ("Xvfb", "openbox", "xdotool", "setpriv", "setsid")
_WORKER_KEY = "qtdriver_desktop"


def has_own_desktop(config: pytest.Config) -> bool:
    """Whether this process is a worker that was started on a desktop of its own."""
    return bool(getattr(config, "workerinput", {}).get(_WORKER_KEY, False))


def prepare(config: pytest.Config, settings: Settings) -> str:
    """Makes a run with several workers a run without them, where the system does not allow network namespaces.

    Returns the reason, for the user; empty where the run stays as it is. Raises pytest.UsageError for options that do
    not go with several workers, and for missing programs.
    """
    if not _is_distributed(config) or settings.workers != OWN_DESKTOPS:
        return ""
    if not settings.headless:
        raise pytest.UsageError(
            "--qtdriver-headed does not go with several workers: they would share one mouse and one keyboard. Leave out "
            "-n to watch the tests, or --qtdriver-headed to run them side by side"
        )
    missing = [name for name in _NEEDED if shutil.which(name) is None]
    if missing:
        raise pytest.UsageError(
            f"workers on desktops of their own need {', '.join(missing)} (Debian: xvfb, openbox, xdotool, util-linux)"
        )
    refusal = _refusal()
    if refusal:
        _run_without_workers(config)
    return refusal


def _is_distributed(config: pytest.Config) -> bool:
    return (
        any(_is_local(spec) for spec in config.getoption("tx", None) or ())
        and config.getoption("dist") != "no"
    )


def _is_local(spec: str) -> bool:
    """Whether an execution environment, such as "popen" or "3*popen//python=python3.9", is on this machine."""
    return spec.rpartition("*")[2].startswith("popen") and "//via=" not in spec


def _refusal() -> str:
    """Why there are no network namespaces; empty if there are."""
    try:
        done = subprocess.run(
            NAMESPACE_CHECK, stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False
        )
    except OSError as error:
        reason = str(error)
    else:
        if done.returncode == 0:
            return ""
        reason = done.stderr.strip() or f"it ends with status {done.returncode}"
    return (
        f"this system allows no network namespaces ('{' '.join(NAMESPACE_CHECK)}' fails: {reason}), and agents know one port "
        "only: the tests run one after the other"
    )


def _run_without_workers(config: pytest.Config) -> None:
    remote = [spec for spec in config.option.tx if not _is_local(spec)]
    config.option.tx = remote
    config.option.numprocesses = None
    if not remote:
        config.option.dist = "no"


class Workers:
    """The hooks that start workers on desktops of their own."""

    @hookimpl(optionalhook=True)
    def pytest_xdist_setupnodes(self, specs: Sequence[Any]) -> None:
        """Has with-desktop.sh run the interpreter of each worker on this machine."""
        for spec in specs:
            if spec.popen and not spec.via:
                interpreter = spec.python or shlex.quote(sys.executable)
                spec.python = f"{_wrapper()} {interpreter}"

    @hookimpl(optionalhook=True)
    def pytest_configure_node(self, node: Any) -> None:
        """Tells the worker whether it runs on a desktop of its own; has_own_desktop() reads that."""
        python: str = node.gateway.spec.python or ""
        node.workerinput[_WORKER_KEY] = python.startswith(_wrapper())


def _wrapper() -> str:
    words: List[str] = ["env", "-u", "QTDRIVER_IN_NAMESPACE", str(SCRIPT)]
    return " ".join(map(shlex.quote, words))
