"""The checks for Windows programs by the command `doctor`: Wine, its prefix, and the agents."""

from __future__ import annotations

import os
from pathlib import Path
from typing import Iterator, List, Optional

from ..errors import AgentNotBuiltError, WineError
from ..launch.agent import QT_MAJORS, windows_agent
from ..launch.wine import find_wine, pattern_folder, system_folder
from .finding import Finding

_INSTALL = "apt install wine wine64"


def check_windows(build: Optional[Path]) -> Iterator[Finding]:
    """Checks whether Windows programs can be driven. It finds no problems, only notes: Linux programs need nothing of this."""
    try:
        yield Finding("Wine", "ok", str(find_wine()))
        yield _prefix()
    except WineError as error:
        yield Finding("Wine", "note", error.message, _INSTALL)
    yield _agents(build)


def _prefix() -> Finding:
    """The prefix that a Windows program would start from."""
    named = os.environ.get("WINEPREFIX", "")
    if named:
        if system_folder(Path(named)).is_dir():
            return Finding("Wine's prefix", "ok", f"{named}, which WINEPREFIX names")
        return Finding(
            "Wine's prefix",
            "note",
            f"WINEPREFIX names {named}, where there is none",
            f"make it, WINEPREFIX={named} wineboot, or have WINEPREFIX unset",
        )
    folder = pattern_folder()
    if folder.is_dir():
        return Finding("Wine's prefix", "ok", str(folder))
    return Finding(
        "Wine's prefix",
        "note",
        f"{folder} is not made yet",
        "nothing: the first Windows program makes it, which takes some seconds and 700 MB",
    )


def _agents(build: Optional[Path]) -> Finding:
    built: List[str] = []
    for major in QT_MAJORS:
        try:
            windows_agent(major, build)
            built.append(f"Qt {major}")
        except AgentNotBuiltError:
            pass
    if built:
        return Finding("agents for Windows", "ok", ", ".join(built))
    return Finding(
        "agents for Windows", "note", "none is built", "QT5_WINDOWS=/path/to/qt scripts/build.sh 5 --windows"
    )
