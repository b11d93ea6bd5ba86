"""The desktop session that this process is in, where applications appear that are not on a desktop without a screen."""

from __future__ import annotations

from typing import Dict, Mapping

WAYLAND_NOTE = (
    "this is a Wayland session, in which no program may move the mouse: applications run on its X server "
    "(QT_QPA_PLATFORM=xcb)"
)

_PLATFORM = "QT_QPA_PLATFORM"
_WAYLAND = "wayland"


def needs_x11(environment: Mapping[str, str]) -> bool:
    """Whether a Qt application would appear as a client of Wayland."""
    platform = environment.get(_PLATFORM, "")
    in_wayland = bool(environment.get("WAYLAND_DISPLAY")) or environment.get("XDG_SESSION_TYPE") == _WAYLAND
    return platform.startswith(_WAYLAND) or (in_wayland and not platform)


def session_settings(environment: Mapping[str, str]) -> Dict[str, str]:
    """The variables with which applications on this screen can be driven."""
    return {_PLATFORM: "xcb"} if needs_x11(environment) else {}
