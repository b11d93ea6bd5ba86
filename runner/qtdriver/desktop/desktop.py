"""A desktop without a screen: an X server and a window manager of one's own."""

from __future__ import annotations

import os
import subprocess
import sys
from pathlib import Path
from typing import Dict, Optional

from ..errors import DesktopError

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

SCRIPT = Path(__file__).with_name("with-desktop.sh")
"""Runs a command on a desktop of its own, in a network namespace of its own."""

NAMESPACE_CHECK = ("unshare", "--user", "--map-current-user", "--net", "true")
"""Succeeds where SCRIPT can give its command a network of its own."""

_NAMESPACE = "QTDRIVER_IN_NAMESPACE"
_SETTINGS = ("DISPLAY", "XDG_RUNTIME_DIR", "QT_QPA_PLATFORM", "NO_AT_BRIDGE")
_SAY_AND_STAY = "; ".join(f'echo "${{{name}}}"' for name in _SETTINGS) + "; exec cat >/dev/null"


def environment_for_own_network() -> Dict[str, str]:
    """The environment in which SCRIPT gives its command a network of its own, also where this process has one already.

    Where the system allows no namespaces, the script has noted that in the environment, and the note stays.
    """
    return {name: value for name, value in os.environ.items() if (name, value) != (_NAMESPACE, "1")}


class Desktop:
    """A running desktop in this process's network namespace. It ends with close(), or with this process.

    Attributes:
        environment: the variables that make an application appear there.
    """

    def __init__(self) -> None:
        """Starts it. Raises DesktopError with the reason when it does not come up."""
        if sys.platform == "win32":
            raise DesktopError("desktops without a screen are there on Linux only: use headless=False")
        self._process: Optional["subprocess.Popen[str]"] = subprocess.Popen(
            [str(SCRIPT), "sh", "-c", _SAY_AND_STAY],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            text=True,
            start_new_session=True,  # it must outlive the applications on it; the end of its standard input ends it
            env={**os.environ, _NAMESPACE: "shared"},
        )
        assert self._process.stdout is not None
        values = [self._process.stdout.readline().rstrip("\n") for _ in _SETTINGS]
        if not values[-1]:
            _, complaint = self._process.communicate()
            raise DesktopError(f"no desktop without a screen: {complaint.strip()}")
        self.environment: Dict[str, str] = dict(zip(_SETTINGS, values))

    def __repr__(self) -> str:
        return (
            f'<desktop {self.environment["DISPLAY"]}, {"running" if self._process is not None else "closed"}>'
        )

    def close(self) -> None:
        """Ends the X server and the window manager, and waits until they are gone. Closing twice is harmless."""
        if self._process is not None:
            self._process.communicate()  # standard error ends with the keeper, when the desktop is gone
            self._process = None
