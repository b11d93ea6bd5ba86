"""Starts programs as a new user of them would find them: with no settings, and no names given for a test."""

import os
import shutil
import sys
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "runner"))
BUILD = Path(os.environ.get("QTDRIVER_BUILD", ROOT / "build" / "qt5"))
QT = int(os.environ.get("QTDRIVER_QT", "5"))
SETTINGS = {"LC_ALL": "C.UTF-8", "QT_XCB_GL_INTEGRATION": "none", "QT_QPA_PLATFORMTHEME": ""}


@pytest.fixture
def start(tmp_path):
    """Starts a program, by its name or the first of several paths that there is, in a home of its own."""
    from qtdriver import Driver

    home = tmp_path / "home"
    home.mkdir()
    environment = {**SETTINGS, "HOME": str(home), "XDG_CONFIG_HOME": str(home / ".config")}
    environment["USER"] = f"tester-{os.getpid()}"  # KeePassXC runs once for each user, whatever the desktop
    environment.update(XDG_DATA_HOME=str(home / ".local"), XDG_CACHE_HOME=str(home / ".cache"))

    with Driver(build=BUILD / "agents", timeout=20) as driver:

        def run(program, *arguments):
            if not shutil.which(program):
                pytest.skip(f"{program} is not installed")
            return driver.launch(program, *map(str, arguments), qt=QT, environment=environment)

        yield run
