"""Paths as messages and results have them."""

from __future__ import annotations

from pathlib import Path
from typing import Optional


def shown_path(path: Path, folder: Optional[Path] = None) -> str:
    """The path as seen from the folder, by default the current one, where it is below that; else the whole path."""
    try:
        return str(path.relative_to(Path.cwd() if folder is None else folder))
    except ValueError:
        return str(path)
