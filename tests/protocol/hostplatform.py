"""Where the programs of a build are, and what starts them: directly, or by Wine where they are for Windows."""

import fcntl
import os
import shutil
import subprocess
from contextlib import contextmanager
from functools import lru_cache
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
BUILD = Path(os.environ.get("QTDRIVER_BUILD", ROOT / "build" / "qt5"))
QT = int(os.environ.get("QTDRIVER_QT", "5"))
WINDOWS = BUILD.name.startswith("windows-")
TEMPLATE = ROOT / "build" / "wine"
"""A fresh prefix of Wine, which takes ten seconds to make, and a copy of which none."""


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
        # Without OpenGL, which no host uses, an application of Qt 5 or 6 starts in half the time.
        return {"QT_XCB_GL_INTEGRATION": "none"}
    qt = Path(os.environ[f"QT{QT}_WINDOWS"])
    query = ["x86_64-w64-mingw32-g++-posix", "-print-file-name=libstdc++-6.dll"]
    compiler = Path(subprocess.run(query, check=True, capture_output=True, text=True).stdout.strip()).parent
    folders = (BUILD / "bin", qt / "bin", compiler, "/usr/x86_64-w64-mingw32/lib")
    return {
        "WINEDEBUG": "-all",
        "WINEDLLOVERRIDES": "mscoree,mshtml=",
        "WINEPATH": ";".join(map(windows_path, folders)),
        "QT_PLUGIN_PATH": windows_path(qt / "plugins"),
        "QT_QPA_PLATFORM": "windows",
    }


def make_template():
    """Makes the prefix that the others are copies of, unless it is there."""
    TEMPLATE.mkdir(parents=True, exist_ok=True)
    prefix, made = TEMPLATE / "prefix", TEMPLATE / "made"
    with open(TEMPLATE / "lock", "w", encoding="ascii") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        if not made.exists():
            shutil.rmtree(prefix, ignore_errors=True)
            variables = {**os.environ, **environment(), "WINEPREFIX": str(prefix)}
            quiet = {"env": variables, "stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
            subprocess.run(["wineboot", "--init"], check=True, **quiet)
            subprocess.run(["wineserver", "-w"], check=True, **quiet)
            made.touch()
    return prefix


@contextmanager
def wine_prefix(folder):
    """A prefix in this folder, with a server of its own, which has the desktop's network and display. Programs that the
    process starts meanwhile use it."""
    template = make_template()
    for name in ("system.reg", "user.reg", "userdef.reg", ".update-timestamp"):
        shutil.copy(template / name, folder)
    (folder / "drive_c").symlink_to(template / "drive_c")
    (folder / "dosdevices").mkdir()
    (folder / "dosdevices" / "c:").symlink_to("../drive_c")
    (folder / "dosdevices" / "z:").symlink_to("/")
    os.environ["WINEPREFIX"] = str(folder)
    variables = {**os.environ, **environment()}
    # It stays between the programs, and ends by itself where the tests are killed.
    subprocess.run(["wineserver", "-p60"], env=variables, check=True)
    try:
        yield
    finally:
        subprocess.run(["wineserver", "-k"], env=variables, check=False)
