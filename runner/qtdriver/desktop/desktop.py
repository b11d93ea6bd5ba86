"""A desktop without a screen: an X server and a window manager of one's own."""

from __future__ import annotations

import os
import subprocess
import sys
from pathlib import Path
from typing import Dict, Optional, Sequence

from ..errors import DesktopError

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

SCRIPT = Path(__file__).with_name("with-desktop.sh")
"""Runs a command on a desktop of its own, in a network namespace of its own."""

NAMESPACE_CHECK = ("unshare", "--user", "--map-current-user", "--net", "true")
"""Succeeds where SCRIPT can give its command a network of its own."""

_OWN_TMP_CHECK = (
    *("unshare", "--user", "--map-current-user", "--mount", "--keep-caps"),
    *("mount", "-t", "tmpfs", "qtdriver", "/tmp"),
)
"""Succeeds where SCRIPT can give its command a /tmp of its own."""

_FORBIDDING = (
    (
        "kernel/apparmor_restrict_unprivileged_userns",
        "1",
        "Ubuntu restricts them: sysctl kernel.apparmor_restrict_unprivileged_userns=0, or an AppArmor profile with the rule "
        "'userns,' for /usr/bin/unshare",
    ),
    ("kernel/unprivileged_userns_clone", "0", "sysctl kernel.unprivileged_userns_clone=1"),
    ("user/max_user_namespaces", "0", "sysctl user.max_user_namespaces=10000"),
)
"""Settings of the kernel, below /proc/sys, whose value forbids namespaces, and how to allow them."""

MARK_OF_WORKERS = "QTDRIVER_WORKER_HAS_DESKTOP"
"""Set in the environment of a worker that was started by `python3 -m qtdriver.desktop`."""

_NAMESPACE = "QTDRIVER_IN_NAMESPACE"
_SETTINGS = ("DISPLAY", "XDG_RUNTIME_DIR", "QT_QPA_PLATFORM", "NO_AT_BRIDGE")
_PRINT_AND_WAIT = "; ".join(f'echo "${{{name}}}"' for name in _SETTINGS) + "; exec cat >/dev/null"


def namespaces_remedy(settings: Path = Path("/proc/sys")) -> str:
    """How to allow namespaces on a system that forbids them. `settings` is the folder of the kernel's settings."""
    for name, forbidding, remedy in _FORBIDDING:
        try:
            if (settings / name).read_text().strip() == forbidding:
                return remedy
        except OSError:
            pass  # not a setting of this kernel
    return "see the container's security profile, which has to allow the system call unshare"


def namespaces_refusal() -> str:
    """Why the system allows no network namespaces; empty if it does."""
    return _refusal("network namespaces", NAMESPACE_CHECK)


def own_tmp_refusal() -> str:
    """Why the system allows no /tmp of one's own; empty if it does."""
    return _refusal("/tmp of one's own", _OWN_TMP_CHECK)


def _refusal(wanted: str, check: Sequence[str]) -> str:
    try:
        done = subprocess.run(check, stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False)
    except OSError as error:
        reason = str(error)
    else:
        if done.returncode == 0:
            return ""
        reason = done.stderr.strip() or f"it ends with status {done.returncode}"
    return f"this system allows no {wanted} ('{' '.join(check)}' fails: {reason})"


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
            [str(SCRIPT), "sh", "-c", _PRINT_AND_WAIT],
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
