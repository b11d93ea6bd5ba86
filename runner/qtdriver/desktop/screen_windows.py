"""The windows on a display as the window manager knows them, for applications that cannot be asked."""

from __future__ import annotations

from typing import Any, List, NamedTuple


class ScreenWindow(NamedTuple):
    """A window of a program.

    Attributes:
        pid: the process that it belongs to, as that says; 0 when it does not say.
        text: its title, its class, its size and its place in pixels.
    """

    pid: int
    text: str


def list_screen_windows(name: str) -> List[ScreenWindow]:
    """The windows that programs have on the X display `name`.

    Waits as long as the X server takes. Raises OSError when it cannot be asked.
    """
    try:
        from Xlib import X  # type: ignore[import]
        from Xlib.display import Display  # type: ignore[import]
        from Xlib.error import DisplayError, XError  # type: ignore[import]
    except ImportError as error:
        raise OSError("it needs python3-xlib") from error
    try:
        display = Display(name)
    except DisplayError as error:
        raise OSError(str(error)) from error
    found = []
    root = display.screen().root
    listed = root.get_full_property(display.intern_atom("_NET_CLIENT_LIST"), X.AnyPropertyType)
    for window in () if listed is None else listed.value:
        try:
            found.append(_describe(display, display.create_resource_object("window", window)))
        except XError:
            continue  # it was closed meanwhile
    display.close()
    return found


def _describe(display: Any, window: Any) -> ScreenWindow:
    from Xlib import X

    def read(name: str) -> Any:
        found = window.get_full_property(display.intern_atom(name), X.AnyPropertyType)
        return None if found is None else found.value

    title = read("_NET_WM_NAME") or read("WM_NAME") or ""
    title = title.decode("utf-8", "replace") if isinstance(title, bytes) else str(title)
    owner = read("_NET_WM_PID")
    kind = (window.get_wm_class() or ("", ""))[1]
    place = window.get_geometry()
    corner = window.translate_coords(place.root, 0, 0)
    text = f'"{title}" ({kind}), {place.width} x {place.height} at {-corner.x}, {-corner.y}'
    return ScreenWindow(int(owner[0]) if owner is not None and len(owner) else 0, text)
