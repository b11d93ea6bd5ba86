"""`doctor`: checks what usually goes wrong, and says how to mend it."""

from __future__ import annotations

import importlib.util
import os
import shutil
import subprocess
import sys
from dataclasses import dataclass
from pathlib import Path
from typing import Callable, Iterator, List, Optional

from ..agent import QT_MAJORS, AgentNotBuiltError, agent_library, require_same_architecture
from ..errors import PortInUseError, QtDriverError
from ..program import find_program
from ..qtversion import qt_major
from ..server import HOST, PORT, Server
from .listeners import listener_of
from .outcome import FAILED, OK, Outcome

_MARKS = {"ok": "ok     ", "note": "note   ", "problem": "PROBLEM"}
_PACKAGES = (
    ("elftools", "python3-pyelftools", "finding out which Qt a program uses"),
    ("pytest", "python3-pytest", "tests"),
    ("xdist", "python3-pytest-xdist", "tests side by side"),
    ("PIL", "python3-pil", "screenshots"),
    ("jinja2", "python3-jinja2", "the page of a run"),
    ("prompt_toolkit", "python3-prompt-toolkit", "completion in the console"),
    ("Xlib", "python3-xlib", "picking with the mouse"),
)


@dataclass(frozen=True)
class Finding:
    """What one check found.

    Attributes:
        check: what was looked at.
        result: "ok"; "note" for what is missing but may not be needed; "problem".
        text: what is there, or is not.
        remedy: what to do; empty when there is nothing to do.
    """

    check: str
    result: str
    text: str
    remedy: str = ""


def examine(build: Optional[Path], program: Optional[Path]) -> Outcome:
    """Makes every check; `program` adds those of an application. The status is 1 when there is a problem."""
    findings: List[Finding] = []
    for check in _CHECKS:
        findings += check(build)
    if program is not None:
        findings += _program(build, program)
    lines = []
    for finding in findings:
        lines.append(f"{_MARKS[finding.result]}  {finding.check}: {finding.text}")
        if finding.remedy:
            lines.append(f"{' ' * len(_MARKS['ok'])}  -> {finding.remedy}")
    problems = sum(finding.result == "problem" for finding in findings)
    lines.append(f"{problems} problem{'' if problems == 1 else 's'}")
    return Outcome("\n".join(lines), [vars(finding) for finding in findings], FAILED if problems else OK)


def _python(_: Optional[Path]) -> Iterator[Finding]:
    version = ".".join(map(str, sys.version_info[:3]))
    if sys.version_info >= (3, 9):
        yield Finding("Python", "ok", version)
    else:
        yield Finding(
            "Python", "problem", version, "use Python 3.9 or newer: QTDRIVER_PYTHON=/path/to/python3"
        )
    for module, package, purpose in _PACKAGES:
        if importlib.util.find_spec(module) is None:
            yield Finding(package, "note", f"is missing; it is for {purpose}", f"apt install {package}")


def _agents(build: Optional[Path]) -> Iterator[Finding]:
    found = 0
    for major in QT_MAJORS:
        try:
            yield Finding(f"agent for Qt {major}", "ok", str(agent_library(major, build)))
            found += 1
        except AgentNotBuiltError as error:
            tools = _qt_tools(major)
            where = f"; {tools}" if tools else ""
            yield Finding(
                f"agent for Qt {major}",
                "note",
                f"is not built{where}",
                str(error).partition(": ")[2] or "build it",
            )
        except QtDriverError as error:
            yield Finding(f"agent for Qt {major}", "problem", str(error), "move the build folder")
    if not found:
        yield Finding(
            "agents", "problem", "there is none for any Qt", "scripts/build.sh 5, or the number of your Qt"
        )


def _qt_tools(major: int) -> str:
    """Whether this Qt could be built for."""
    if major == 4:
        qmake = os.environ.get("QMAKE4", "")
        return "QMAKE4 names a Qt 4.8" if qmake and os.access(qmake, os.X_OK) else "QMAKE4 names no Qt 4.8"
    installed = list(Path("/usr/lib").glob(f"*/cmake/Qt{major}Widgets"))
    return f"Qt {major} is installed" if installed else f"Qt {major} for development is not installed"


def _port(_: Optional[Path]) -> Iterator[Finding]:
    place = f"{HOST}:{PORT}"
    try:
        Server().close()
    except PortInUseError:
        owner = listener_of(PORT)
        yield Finding(
            f"port {PORT}",
            "problem",
            f"{place} is taken by {owner or 'a process of another user'}",
            "end that process, or use --headless, which has a network of its own",
        )
        return
    except QtDriverError as error:
        yield Finding(
            f"port {PORT}", "problem", str(error), "bring the loopback interface up: ip link set lo up"
        )
        return
    yield Finding(f"port {PORT}", "ok", f"{place} is free")


def _screen(_: Optional[Path]) -> Iterator[Finding]:
    name = os.environ.get("DISPLAY", "")
    if not name:
        yield Finding("display", "note", "DISPLAY is not set", "use --headless, or log in to a desktop")
        return
    try:
        from Xlib import display  # type: ignore[import]
        from Xlib.error import DisplayError  # type: ignore[import]
    except ImportError:
        yield Finding("display", "note", f"{name} (not looked at: python3-xlib is missing)")
        return
    try:
        connection = display.Display(name)
    except (DisplayError, OSError) as error:
        yield Finding(
            "display", "problem", f"{name} cannot be reached: {error}", "check DISPLAY and XAUTHORITY"
        )
        return
    check = connection.intern_atom("_NET_SUPPORTING_WM_CHECK")
    manager = connection.screen().root.get_full_property(check, 0)
    connection.close()
    yield Finding("display", "ok", name)
    if manager is None:
        yield Finding(
            "window manager",
            "problem",
            f"none runs on {name}: windows do not become active",
            "start one, such as openbox",
        )
    else:
        yield Finding("window manager", "ok", "one runs")


def _headless(_: Optional[Path]) -> Iterator[Finding]:
    for tool, package in (
        ("Xvfb", "xvfb"),
        ("openbox", "openbox"),
        ("xdotool", "xdotool"),
        ("ip", "iproute2"),
    ):
        if shutil.which(tool) is None and not Path(f"/usr/sbin/{tool}").exists():
            yield Finding(tool, "note", "is missing; --headless needs it", f"apt install {package}")
    unshare = shutil.which("unshare")
    allowed = (
        unshare is not None and subprocess.run([unshare, "-Urn", "true"], capture_output=True).returncode == 0
    )
    if allowed:
        yield Finding("namespaces", "ok", "runs side by side can have networks of their own")
    else:
        yield Finding(
            "namespaces",
            "note",
            "the system forbids them (unshare -Urn true): runs take turns, and pytest -n is serial",
            "sysctl kernel.unprivileged_userns_clone=1, or the container's security profile",
        )


def _program(build: Optional[Path], program: Path) -> Iterator[Finding]:
    try:
        file = find_program(str(program))
        if file.stat().st_mode & 0o6000:
            yield Finding(
                str(program),
                "problem",
                "starts with another user's rights, which drops LD_PRELOAD",
                "copy it without them",
            )
        major = qt_major(file)
        library = agent_library(major, build)
        require_same_architecture(file, library)
        yield Finding(str(program), "ok", f"{file} uses Qt {major}, and there is an agent for it")
    except QtDriverError as error:
        message, _, remedy = str(error).partition(": ")
        yield Finding(str(program), "problem", message, remedy)


_CHECKS: "tuple[Callable[[Optional[Path]], Iterator[Finding]], ...]" = (
    _python,
    _agents,
    _port,
    _screen,
    _headless,
)
