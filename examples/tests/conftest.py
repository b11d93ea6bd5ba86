"""Used by every test of the samples: the plugin, and a fresh showcase."""

import os
import sys
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "runner"))  # an installed qtdriver needs neither this line nor the next
pytest_plugins = ["qtdriver.plugin"]


PROGRAMS = {"linux": ("qt{}", "showcase"), "windows": ("windows-qt{}", "showcase.exe")}
"""By the platform: the folder in which a showcase of each Qt version is built, and its program."""


@pytest.fixture
def showcase(qtdriver, qtdriver_settings):
    """The showcase of the Qt version that --qtdriver-qt names, of Qt 5 by default, for the platform that
    --qtdriver-platform names, started for this test and ended after it."""
    folder, program = PROGRAMS[qtdriver_settings.platform]
    build = ROOT / "build" / folder.format(qtdriver_settings.qt or 5)
    return qtdriver.launch(Path(os.environ.get("QTDRIVER_BUILD", build)) / "bin" / program)


@pytest.fixture
def roastery(showcase):
    """Its main window, by its object name: titles change, and more windows may begin with the same title."""
    return showcase.window(name="showcase")


@pytest.fixture
def open_page(roastery):
    """Brings the page with this title to the front, as a user does it: by its tab."""
    return roastery.widget("pages/qt_tabwidget_tabbar").select
