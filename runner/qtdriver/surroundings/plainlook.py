"""The plain look: what an application's pictures depend on is set to the same on every machine.

Each version of Qt reads it from what is prepared here, without knowing of the test:

    style       Qt 5 and 6: QT_STYLE_OVERRIDE. Qt 4: Trolltech.conf
    font        a file for fontconfig, which finds DejaVu only and smooths it in one way, and as the font of the
                application kdeglobals (Qt 5 and 6) and Trolltech.conf (Qt 4)
    resolution  Qt 5 and 6: QT_FONT_DPI, QT_SCALE_FACTOR and others. Qt 4: the X resource Xft.dpi
    caret       a cursor that does not blink: kdeglobals (Qt 5 and 6), Trolltech.conf (Qt 4)
    colours     those of the style: no desktop is found whose settings Qt would follow
    animations  off, as KDE's platform theme has it when nothing else is set (Qt 5 and 6), and as Qt 4 has it
    locale      LC_ALL
"""

from __future__ import annotations

import os
from pathlib import Path
from typing import Dict, Mapping, NamedTuple, Optional

from ..errors import PictureError
from .inifile import ini_text

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

STYLES = {4: "plastique", 5: "fusion", 6: "fusion"}
"""The style of each major version of Qt, one that it draws itself."""

_FONT = "DejaVu Sans"
_FONT_POINTS = 9
_FONT_FILE = "DejaVuSans.ttf"
_FONT_PACKAGE = "Debian: fonts-dejavu-core"
_FONT_FOLDERS = ("/usr/share/fonts", "/usr/local/share/fonts")
_DPI = 96

# A platform theme of Qt's own, which reads its settings from a file. Without a theme the caret blinks.
_THEME = {"QT_QPA_PLATFORMTHEME": "kde", "KDE_SESSION_VERSION": "5"}
_NO_COMPLAINT = "qt.qpa.theme.dbus=false"
"""Qt 6 would write on standard error that there is no session bus by which to learn of changes of the theme."""

_SCALE = {
    "QT_FONT_DPI": str(_DPI),
    "QT_SCALE_FACTOR": "1",
    "QT_ENABLE_HIGHDPI_SCALING": "0",
    "QT_AUTO_SCREEN_SCALE_FACTOR": "0",
}
_REMOVED = (
    "DESKTOP_SESSION",
    "GNOME_DESKTOP_SESSION_ID",
    "KDE_FULL_SESSION",
    "KDEHOME",
    "LANGUAGE",
    "QT_DEVICE_PIXEL_RATIO",
    "QT_SCREEN_SCALE_FACTORS",
    "QT_SCALE_FACTOR_ROUNDING_POLICY",
    "XDG_CURRENT_DESKTOP",
    "XDG_SESSION_DESKTOP",
)

_FONTCONFIG = """<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig>
  <dir>{fonts}</dir>
  <cachedir>{cache}</cachedir>
  <match target="pattern">
    <edit name="family" mode="append" binding="weak"><string>{family}</string></edit>
  </match>
  <match target="font">
    <edit name="antialias" mode="assign"><bool>true</bool></edit>
    <edit name="hinting" mode="assign"><bool>false</bool></edit>
    <edit name="hintstyle" mode="assign"><const>hintnone</const></edit>
    <edit name="autohint" mode="assign"><bool>false</bool></edit>
    <edit name="rgba" mode="assign"><const>none</const></edit>
    <edit name="lcdfilter" mode="assign"><const>lcdnone</const></edit>
  </match>
</fontconfig>
"""
_RESOURCES = f"""Xft.dpi: {_DPI}
Xft.antialias: 1
Xft.hinting: 0
Xft.hintstyle: hintnone
Xft.autohint: 0
Xft.rgba: none
"""


class _Files(NamedTuple):
    """Where the files of the plain look are in the home folder of an application."""

    fontconfig: Path
    resources: Path
    qt4: Path
    kde: Path


def prepare_plain_look(home: Path, surroundings: Mapping[str, str]) -> Dict[str, Optional[str]]:
    """Writes the files of the plain look into an application's home folder.

    Args:
        home: the folder.
        surroundings: the environment that the application would have.

    Returns the variables of its environment; those with None are to be removed. Raises PictureError where the font is
    missing.
    """
    config = home / ".config"
    files = _Files(
        config / "plain-fonts.conf",
        config / "plain-resources",
        config / "Trolltech.conf",
        config / "kdeglobals",
    )
    files.fontconfig.write_text(
        _FONTCONFIG.format(fonts=_font_folder(), cache=home / ".cache" / "fontconfig", family=_FONT)
    )
    files.resources.write_text(_RESOURCES)
    files.qt4.write_text(
        ini_text(
            {
                "Qt/style": STYLES[4],
                "Qt/font": f"{_FONT},{_FONT_POINTS},-1,5,50,0,0,0,0,0",
                "Qt/cursorFlashTime": 0,
                "Qt/GUIEffects": ["none"],
            }
        )
    )
    files.kde.write_text(_kde_settings())
    return {
        **dict.fromkeys(_REMOVED),
        **_THEME,
        **_SCALE,
        "QT_STYLE_OVERRIDE": STYLES[6],
        "FONTCONFIG_FILE": str(files.fontconfig),
        "XENVIRONMENT": str(files.resources),
        "LC_ALL": "C.UTF-8",
        "LANG": "C.UTF-8",
        "QT_LOGGING_RULES": ";".join(filter(None, [surroundings.get("QT_LOGGING_RULES"), _NO_COMPLAINT])),
    }


def with_changes(environment: Mapping[str, str], changes: Mapping[str, Optional[str]]) -> Dict[str, str]:
    """The environment with these variables, and without those that are None."""
    changed: Dict[str, Optional[str]] = {**environment, **changes}
    return {name: value for name, value in changed.items() if value is not None}


def _kde_settings() -> str:
    font = f"{_FONT},{_FONT_POINTS},-1,5,50,0,0,0,0,0"
    fonts = "\n".join(
        f"{name}={font}" for name in ("font", "menuFont", "toolBarFont", "smallestReadableFont")
    )
    return f"[General]\n{fonts}\n\n[KDE]\nCursorBlinkRate=0\nwidgetStyle={STYLES[6]}\n"


def _font_folder() -> Path:
    for folder in map(Path, _FONT_FOLDERS):
        for path, _, names in os.walk(folder):
            if _FONT_FILE in names:
                return Path(path)
    raise PictureError(
        f"plain_look needs the font {_FONT} ({_FONT_PACKAGE}): {_FONT_FILE} is not below {' or '.join(_FONT_FOLDERS)}"
    )
