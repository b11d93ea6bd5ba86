"""The Qt, style and platform of an application, on which its look depends, as far as the runner knows them."""

from __future__ import annotations

import re
import sys
from pathlib import Path
from typing import Iterator, Mapping, NamedTuple, Optional, Sequence

from .plainlook import STYLES
from ..launch.process import Process
from ..launch.qtversion import WIDGETS_LIBRARIES
from ..protocol.peers import load_psutil

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_DEFAULT_STYLE = "default"
_STYLE_OPTION = re.compile(r"--?style(?:=(.*))?")
_UNFIT = re.compile(r"[^a-z0-9]+")


class Look(NamedTuple):
    """The look of an application, by what it depends on.

    Attributes:
        qt: the major version of its Qt; None where that is not known.
        style: the style that it was told to have, in small letters; "default" where it was told none.
        platform: "linux" or "windows".
    """

    qt: Optional[int] = None
    style: str = _DEFAULT_STYLE
    platform: str = "linux"

    def names(self) -> Iterator[str]:
        """Names for pictures of this look, the most exact one first: "qt5-fusion-linux", ..., "qt5", ""."""
        parts = ["qt" if self.qt is None else f"qt{self.qt}", self.style, self.platform]
        for count in range(len(parts), -1, -1):
            yield "-".join(parts[:count])


def look_of_launched(
    process: Process, arguments: Sequence[str], environment: Mapping[str, str], plain: bool
) -> Look:
    """The look of a program that was started.

    Args:
        process: its process.
        arguments: its arguments.
        environment: its environment.
        plain: whether it has the plain look.
    """
    is_windows = process.under_wine or sys.platform == "win32"
    style = _asked_style(arguments)
    if not style and process.qt_major == 4:
        style = STYLES[4] if plain and not is_windows else ""
    elif not style:
        style = environment.get("QT_STYLE_OVERRIDE", "")
    return Look(process.qt_major, _plain_word(style), "windows" if is_windows else "linux")


def look_of_attached(pid: int) -> Look:
    """The look of a program that came by itself, whose Qt is told by the libraries that it has loaded."""
    platform = "windows" if sys.platform == "win32" else "linux"
    psutil = load_psutil()
    try:
        loaded = {Path(mapped.path).name for mapped in psutil.Process(pid).memory_maps()}
    except psutil.Error:
        return Look(platform=platform)  # it has ended, or belongs to another user
    # The links that programs name are resolved in these names: "libQt5Widgets.so.5.15.8".
    majors = (
        major
        for library, major in WIDGETS_LIBRARIES.items()
        if any(f"{name}.".startswith(f"{library}.") for name in loaded)
    )
    return Look(next(majors, None), platform=platform)


def display_of_attached(pid: int) -> Optional[str]:
    """The X display that a program that came by itself was started with; None where it had none, or that is hidden."""
    psutil = load_psutil()
    try:
        environment: Mapping[str, str] = psutil.Process(pid).environ()
    except psutil.Error:
        return None
    return environment.get("DISPLAY")


def _asked_style(arguments: Sequence[str]) -> str:
    """The style that the program's arguments ask for, as Qt reads them."""
    for number, argument in enumerate(arguments):
        match = _STYLE_OPTION.fullmatch(argument)
        if match is not None and match[1] is not None:
            return match[1]
        if match is not None and number + 1 < len(arguments):
            return arguments[number + 1]
    return ""


def _plain_word(style: str) -> str:
    return _UNFIT.sub("", style.lower()) or _DEFAULT_STYLE
