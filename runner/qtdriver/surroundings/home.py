"""Folders of its own for an application under test, in place of those of the user."""

from __future__ import annotations

import os
import tempfile
from pathlib import Path
from typing import Dict, Mapping

from .inifile import SettingsFiles, ini_text
from ..launch.linux import Launch
from ..launch.supervision import Watchdog

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_CONFIG = "XDG_CONFIG_HOME"
_FOLDERS = {
    "HOME": ".",
    _CONFIG: ".config",
    "XDG_DATA_HOME": ".local/share",
    "XDG_STATE_HOME": ".local/state",
    "XDG_CACHE_HOME": ".cache",
    "TMPDIR": "tmp",
}
"""The variables by which programs find the folders of their user, and where these are in the home folder."""


class IsolatedHome:
    """A home folder that is empty at first: settings, data, caches and temporary files of an application are in it.

    It is removed with close(), or when this process dies before. Processes that then still use it are ended first.

    Attributes:
        folder: the home folder.
    """

    def __init__(self) -> None:
        self.folder = Path(tempfile.mkdtemp(prefix="qtdriver-home-"))
        for place in _FOLDERS.values():
            (self.folder / place).mkdir(mode=0o700, parents=True, exist_ok=True)
        folder = str(self.folder)
        self._watchdog = Watchdog(Launch("HOME", folder), folder)

    def __repr__(self) -> str:
        return f"<home {self.folder}>"

    def environment(self, surroundings: Mapping[str, str]) -> Dict[str, str]:
        """The variables for an application that would have `surroundings`.

        The user's permission for the X server, and Python packages that the user has installed, are still found.
        """
        users = Path(surroundings.get("HOME") or os.path.expanduser("~"))
        found = {"XAUTHORITY": users / ".Xauthority", "PYTHONUSERBASE": users / ".local"}
        kept = {name: str(path) for name, path in found.items() if name not in surroundings and path.exists()}
        return {**{name: str(self.folder / place) for name, place in _FOLDERS.items()}, **kept}

    def close(self) -> None:
        """Removes the folder with all that is in it. Closing twice is harmless."""
        self._watchdog.end()


def write_settings(settings: SettingsFiles, environment: Mapping[str, str]) -> None:
    """Writes the INI files that a program in this environment reads by QSettings.

    Args:
        settings: by the organisation and application that the program gives QSettings, as "Organisation/Application", the
            settings, or the text of the file. The file has the suffix ".conf" unless the name has ".ini".
        environment: that of the program.

    Raises ValueError for a name that leads out of the folder of settings, TypeError for a value that no INI file has.
    """
    folder = Path(environment.get(_CONFIG) or Path(environment["HOME"]) / ".config")
    for name, content in settings.items():
        path = folder / (name if name.endswith((".ini", ".conf")) else f"{name}.conf")
        if os.path.isabs(name) or ".." in Path(name).parts:
            raise ValueError(f'settings: {name!r} is not "Organisation/Application"')
        path.parent.mkdir(parents=True, exist_ok=True)
        text = content if isinstance(content, str) else ini_text(content)
        path.write_text(text, encoding="utf-8")
