"""Tests side by side (pytest-xdist): each worker has a network, an X server and a window manager of its own."""

from __future__ import annotations

import os
import shlex
import shutil
import sys
from typing import Any, List, Sequence

import pytest

from ..desktop.desktop import MARK_OF_WORKERS, SCRIPT, namespaces_refusal
from .hookimpl import hookimpl
from .own_tmp import kept_names, reason_to_share
from .remote import is_remote, wrap_remote
from .settings import OWN_DESKTOPS, Settings

_NEEDED = ("Xvfb", "openbox", "xdotool", "setpriv", "setsid")
_WORKER_KEY = "qtdriver_desktop"
_HAS_OWN_TMP = pytest.StashKey[Settings]()
"""In the stash of a controller whose workers of this machine get a /tmp of their own: the settings."""


def has_own_desktop(config: pytest.Config) -> bool:
    """Whether this process is a worker that was started on a desktop of its own, here or on another machine."""
    told = getattr(config, "workerinput", None)
    return told is not None and (bool(told.get(_WORKER_KEY)) or MARK_OF_WORKERS in os.environ)


def prepare(config: pytest.Config, settings: Settings) -> str:
    """Takes the workers of this machine out of the run where the system does not allow network namespaces.

    Returns the reason, for the user; empty where the run stays as it is. Raises pytest.UsageError for options that do
    not go with several workers, and for missing programs.
    """
    specs = config.getoption("tx", None) or ()
    if not specs or config.getoption("dist") == "no" or settings.workers != OWN_DESKTOPS:
        return ""
    if not settings.headless:
        raise pytest.UsageError(
            "--qtdriver-headed does not go with several workers: they would share one mouse and one keyboard. Leave out "
            "-n to watch the tests, or --qtdriver-headed to run them side by side"
        )
    if not any(map(_is_local, specs)):
        return ""
    missing = [name for name in _NEEDED if shutil.which(name) is None]
    if missing:
        raise pytest.UsageError(
            f"workers on desktops of their own need {', '.join(missing)} (Debian: xvfb, openbox, xdotool, util-linux)"
        )
    refusal = namespaces_refusal()
    if not refusal:
        return _prepare_tmp(config, settings)
    _run_without_workers(config)
    return f"{refusal}, and agents know one port only: the tests run one after the other"


def _prepare_tmp(config: pytest.Config, settings: Settings) -> str:
    """Notes whether each worker gets a /tmp of its own. Returns why not, empty where the user wants it so."""
    reason = reason_to_share(config, settings)
    if reason is None:
        config.stash[_HAS_OWN_TMP] = settings
    return f"{reason}: the workers share the one /tmp" if reason else ""


def _is_local(spec: str) -> bool:
    """Whether an execution environment, such as "popen" or "3*popen//python=python3.9", is on this machine."""
    return spec.rpartition("*")[2].startswith("popen") and "//via=" not in spec


def _run_without_workers(config: pytest.Config) -> None:
    remote = [spec for spec in config.option.tx if not _is_local(spec)]
    config.option.tx = remote
    config.option.numprocesses = None
    if not remote:
        config.option.dist = "no"


class Workers:
    """The hooks that start workers on desktops of their own."""

    @hookimpl(optionalhook=True)
    def pytest_xdist_setupnodes(self, config: pytest.Config, specs: Sequence[Any]) -> None:
        """Makes with-desktop.sh run the interpreter of each worker, on this machine and on others."""
        settings = config.stash.get(_HAS_OWN_TMP, None)
        options = [] if settings is None else ["--own-tmp", "/".join(kept_names(config, settings))]
        for spec in specs:
            if is_remote(spec):
                wrap_remote(spec)
            else:
                interpreter = spec.python or shlex.quote(sys.executable)
                spec.python = " ".join([_wrapper(), *map(shlex.quote, options), interpreter])

    @hookimpl(optionalhook=True)
    def pytest_configure_node(self, node: Any) -> None:
        """Tells the worker whether it runs on a desktop of its own; has_own_desktop() reads that."""
        python: str = node.gateway.spec.python or ""
        node.workerinput[_WORKER_KEY] = python.startswith(_wrapper())


def _wrapper() -> str:
    words: List[str] = ["env", "-u", "QTDRIVER_IN_NAMESPACE", str(SCRIPT)]
    return " ".join(map(shlex.quote, words))
