"""Gives each parallel worker a /tmp of its own, so that tests that write the same file there do not meet."""

from __future__ import annotations

import os
import re
import sys
from pathlib import Path
from typing import Iterable, Iterator, List, Optional

import pytest

from ..desktop.desktop import own_tmp_refusal
from .settings import OWN_TMP, Settings

_TMP = Path("/tmp")
_NAMED = re.compile(r"(?<![\w.])/tmp/([^/:;,\s]+)")
_NEVER_KEPT = re.compile(r"\.\.?|\.X.*")
"""The folder itself, its parent, and the X servers' files: each worker has an X server that makes its own."""

_SHARED_PREFIX = "WINEPREFIX"
"""Wine finds the one server of a prefix by a folder in /tmp. With two servers the prefix would be damaged."""


def reason_to_share(config: pytest.Config, settings: Settings) -> Optional[str]:
    """Why the workers share the one /tmp, empty where the user wants it so; None where each can have its own."""
    if settings.tmp != OWN_TMP:
        return ""
    if _TMP in (config.rootpath, config.invocation_params.dir):
        return "the tests are in /tmp itself"
    if os.environ.get(_SHARED_PREFIX):
        return f"{_SHARED_PREFIX} names a prefix of Wine, whose server is found in /tmp"
    return own_tmp_refusal() or None


def kept_names(config: pytest.Config, settings: Settings) -> List[str]:
    """The entries of /tmp that the workers share all the same, since this run uses them; sorted.

    Those are what the command line, the environment, the settings or Python's paths name, and pytest's own temporary files.
    """
    paths = [config.rootpath, config.invocation_params.dir, settings.output, settings.report.parent]
    paths += [path for path in (settings.history, settings.build) if path is not None]
    temporary = getattr(config, "_tmp_path_factory", None)
    if temporary is not None:
        paths.append(temporary.getbasetemp())
    for path in filter(_is_below, paths):
        path.mkdir(parents=True, exist_ok=True)
    paths += [Path(text) for text in (*sys.path, sys.prefix, sys.executable) if text]
    named = _named_in([*map(str, config.invocation_params.args), *os.environ.values()])
    used = {path.parts[2] for path in (*paths, *(path.resolve() for path in paths)) if _is_below(path)}
    return sorted(name for name in used.union(named) if not _NEVER_KEPT.fullmatch(name))


def _is_below(path: Path) -> bool:
    return _TMP in path.parents


def _named_in(texts: Iterable[str]) -> Iterator[str]:
    for text in texts:
        yield from _NAMED.findall(text)
