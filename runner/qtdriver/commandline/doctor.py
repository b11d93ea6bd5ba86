"""`doctor`: checks what usually goes wrong, and says how to mend it."""

from __future__ import annotations

import importlib.util
import os
import shutil
import subprocess
import sys
from pathlib import Path
from typing import Any, Callable, Iterator, List, Optional

from ..desktop.desktop import NAMESPACE_CHECK, namespaces_remedy
from ..desktop.session import WAYLAND_NOTE, needs_x11
from ..crashes.cores import core_problem
from ..errors import AgentNotBuiltError, AgentPathError, PortInUseError, QtDriverError
from ..launch.agent import QT_MAJORS, agent_library, command_for_agent
from ..protocol.peers import describe_listener
from ..protocol.server import HOST, PORT, Server
from .application_check import MOVE_BUILD, check_application
from .finding import Finding
from .outcome import FAILED, OK, Outcome
from .windows_check import check_windows

_MARKS = {"ok": "ok     ", "note": "note   ", "problem": "PROBLEM"}
_NEEDED_PACKAGES = (("psutil", "python3-psutil", "telling which process has connected"),)
_PACKAGES = (
    ("elftools", "python3-pyelftools", "finding out which Qt a program uses"),
    ("pefile", "python3-pefile", "finding out which Qt a Windows program uses"),
    ("pytest", "python3-pytest", "tests"),
    ("xdist", "python3-pytest-xdist", "tests side by side"),
    ("PIL", "python3-pil", "screenshots"),
    ("jinja2", "python3-jinja2", "the page of a run"),
    ("prompt_toolkit", "python3-prompt-toolkit", "completion in the console"),
    ("Xlib", "python3-xlib", "picking with the mouse, and the inspector"),
    ("aiohttp", "python3-aiohttp", "the inspector"),
)
_TOOLS = (
    ("Xvfb", "xvfb", "desktops without a screen"),
    ("openbox", "openbox", "desktops without a screen"),
    ("xdotool", "xdotool", "desktops without a screen"),
    ("setpriv", "util-linux", "desktops without a screen"),
    ("setsid", "util-linux", "desktops without a screen"),
    ("flock", "util-linux", "runs that take turns"),
    ("unshare", "util-linux", "networks of their own for runs"),
    ("ip", "iproute2", "networks of their own for runs"),
    ("xclip", "xclip", "reading the clipboard"),
    ("gdb", "gdb", "the stacks of applications that crash or hang, and attaching to those that run"),
)
_OWN_NETWORK = "; 'scripts/with-desktop.sh COMMAND' and 'qtdriver run --headless' have a network of their own"


def examine(build: Optional[Path], program: Optional[Path]) -> Outcome:
    """Makes all checks.

    Args:
        build: the folder with the agents; None for the checkout's.
        program: an application to check, too.

    Returns an outcome whose status is 1 when there is a problem.
    """
    findings: List[Finding] = []
    for check in _CHECKS:
        findings += check(build)
    if program is not None:
        findings += check_application(build, program)
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
    for result, packages in (("problem", _NEEDED_PACKAGES), ("note", _PACKAGES)):
        for module, package, purpose in packages:
            if importlib.util.find_spec(module) is None:
                yield Finding(package, result, f"is missing; it is for {purpose}", f"apt install {package}")


def _agents(build: Optional[Path]) -> Iterator[Finding]:
    found = 0
    for major in QT_MAJORS:
        try:
            yield Finding(f"agent for Qt {major}", "ok", str(agent_library(major, build)))
            found += 1
        except AgentNotBuiltError:
            yield Finding(
                f"agent for Qt {major}",
                "note",
                f"is not built; {_qt_tools(major)}",
                f"{command_for_agent(major)}, or name another build folder with --build DIR",
            )
        except AgentPathError as error:
            yield Finding(f"agent for Qt {major}", "problem", error.message, MOVE_BUILD)
    if not found:
        yield Finding(
            "agents", "problem", "there is none for any Qt", "scripts/build.sh 5, or the number of your Qt"
        )


def _qt_tools(major: int) -> str:
    """Words that say whether the Qt is there for which the agent would be built."""
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
        owner = describe_listener(PORT)
        yield Finding(
            f"port {PORT}",
            "problem",
            f"{place} is taken by {owner or 'a process that cannot be seen from here'}",
            f"end that process, or wait for its end{_OWN_NETWORK if _namespaces_allowed() else ''}",
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
        yield Finding(
            "display", "note", "DISPLAY is not set", "use 'qtdriver run --headless', or log in to a desktop"
        )
        return
    try:
        from Xlib import display  # type: ignore[import]
        from Xlib.error import DisplayError  # type: ignore[import]
    except ImportError:
        yield Finding(
            "display",
            "note",
            f"{name} (not looked at: python3-xlib is missing)",
            "apt install python3-xlib",
        )
        return
    try:
        connection = display.Display(name)
    except (DisplayError, OSError) as error:
        yield Finding(
            "display", "problem", f"{name} cannot be reached: {error}", "check DISPLAY and XAUTHORITY"
        )
        return
    managed = _has_window_manager(connection)
    connection.close()
    yield Finding("display", "ok", name)
    if managed:
        yield Finding("window manager", "ok", "one runs")
    else:
        yield Finding(
            "window manager",
            "problem",
            f"none runs on {name}: windows do not become active",
            "start one, such as openbox",
        )


def _has_window_manager(connection: Any) -> bool:
    """Whether a window manager runs on this display.

    It announces itself by a property of the root window that names a window of its own. The property stays when the
    window manager ends, so that window is looked at, too.
    """
    from Xlib.error import BadWindow

    check = connection.intern_atom("_NET_SUPPORTING_WM_CHECK")
    announced = connection.screen().root.get_full_property(check, 0)
    if announced is None:
        return False
    window = connection.create_resource_object("window", announced.value[0])
    try:
        return window.get_full_property(check, 0) is not None
    except BadWindow:
        return False


def _tools(_: Optional[Path]) -> Iterator[Finding]:
    for tool, package, purpose in _TOOLS:
        if shutil.which(tool) is None and not Path(f"/usr/sbin/{tool}").exists():
            yield Finding(tool, "note", f"is missing; it is for {purpose}", f"apt install {package}")


def _session(_: Optional[Path]) -> Iterator[Finding]:
    if needs_x11(os.environ):
        yield Finding(
            "session",
            "note",
            WAYLAND_NOTE,
            "log in to an X11 session if their windows misbehave, or run them without a screen: --headless",
        )


def _stacks(_: Optional[Path]) -> Iterator[Finding]:
    scope = _setting("yama/ptrace_scope")
    if scope not in ("", "0") and sys.platform != "win32" and os.geteuid() != 0:
        yield Finding(
            "gdb",
            "note",
            "the system does not let it look into applications, for the stacks of those that hang, nor load the agent into "
            f"those that run, for 'qtdriver attach' (kernel.yama.ptrace_scope is {scope})",
            "sysctl kernel.yama.ptrace_scope=0"
            if scope != "3"
            else "start the machine with kernel.yama.ptrace_scope=0",
        )
    problem, remedy = core_problem()
    if problem:
        yield Finding("stacks of crashes", "note", problem, remedy)


def _setting(name: str) -> str:
    try:
        return Path("/proc/sys/kernel", name).read_text().strip()
    except OSError:
        return ""


def _namespaces(_: Optional[Path]) -> Iterator[Finding]:
    if _namespaces_allowed():
        yield Finding("namespaces", "ok", "runs side by side can have networks of their own")
    else:
        yield Finding(
            "namespaces",
            "note",
            f"the system forbids them ({' '.join(NAMESPACE_CHECK)}): runs take turns, and pytest -n is serial",
            namespaces_remedy(),
        )


def _namespaces_allowed() -> bool:
    return (
        shutil.which(NAMESPACE_CHECK[0]) is not None
        and subprocess.run(NAMESPACE_CHECK, capture_output=True).returncode == 0
    )


_CHECKS: "tuple[Callable[[Optional[Path]], Iterator[Finding]], ...]" = (
    _python,
    _agents,
    _port,
    _screen,
    _session,
    _tools,
    _stacks,
    _namespaces,
    check_windows,
)
