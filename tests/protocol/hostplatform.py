"""Where the programs of a build are, and what starts them: directly, or by Wine where they are for Windows."""

import os
import random
import subprocess
import sys
from contextlib import contextmanager
from functools import lru_cache
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
BUILD = Path(os.environ.get("QTDRIVER_BUILD", ROOT / "build" / "qt5"))
QT = int(os.environ.get("QTDRIVER_QT", "5"))
WINDOWS = BUILD.name.startswith("windows-")
sys.path.insert(0, str(ROOT / "runner"))


def windows_path(path):
    """A path of this machine as programs under Wine have it."""
    return "Z:" + str(path).replace("/", "\\")


def shown(path):
    """A path of this machine as Qt shows it in programs of the build."""
    return f"Z:{path}" if WINDOWS else str(path)


def command(program):
    """Starts a program of the build with the agent's library for it."""
    if WINDOWS:
        agent = windows_path(BUILD / "bin" / "qtdriver.dll")
        return ["wine", str(BUILD / "bin" / f"{program}.exe"), "--agent", agent]
    return [str(BUILD / "bin" / program), "--agent", str(BUILD / "lib" / "libqtdriver.so")]


@lru_cache
def environment():
    """Variables that programs of the build need."""
    if not WINDOWS:
        # No host uses OpenGL, without which an application of Qt 5 or 6 starts in half the time, nor D-Bus, for which it
        # has a thread.
        return {"QT_XCB_GL_INTEGRATION": "none", "DBUS_SESSION_BUS_ADDRESS": "disabled:"}
    qt = Path(os.environ[f"QT{QT}_WINDOWS"])
    query = ["x86_64-w64-mingw32-g++-posix", "-print-file-name=libstdc++-6.dll"]
    compiler = Path(subprocess.run(query, check=True, capture_output=True, text=True).stdout.strip()).parent
    folders = (BUILD / "bin", qt / "bin", compiler, "/usr/x86_64-w64-mingw32/lib")
    return {
        "WINEPATH": ";".join(map(windows_path, folders)),
        "QT_PLUGIN_PATH": windows_path(qt / "plugins"),
        "QT_QPA_PLATFORM": "windows",
        # Without OpenGL, which Qt 5 and 6 look for by Direct3D, an application starts in half the time.
        "WINE_D3D_CONFIG": "renderer=no3d",
        "XENVIRONMENT": str(ROOT / "tests" / "windows" / "xresources"),
    }


def as_programs_take_them(variables):
    """Variables under the names by which programs of the build get them: Wine keeps those of Linux's Qt to itself."""
    return {
        f"WINE{name}" if WINDOWS and name.startswith("QT_") else name: variables[name] for name in variables
    }


@contextmanager
def wine():
    """Wine of the tests' own, on the desktop that they run on, and with its network. Programs that the process starts
    meanwhile use it."""
    from qtdriver.launch.wine import WineDesktop

    # A program asks Wine's server for everything, which costs a third less where both take turns on one processor.
    os.sched_setaffinity(0, {random.choice(sorted(os.sched_getaffinity(0)))})
    desktop = WineDesktop(os.environ)
    os.environ.update(desktop.environment({}))
    try:
        yield
    finally:
        # Also what the tests' programs have had Wine start, of which the desktop does not know.
        subprocess.run(["wineserver", "-k"], check=False)
        desktop.close()
