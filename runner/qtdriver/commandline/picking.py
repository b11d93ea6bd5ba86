"""The command `pick`, which tells the address of the widget under the mouse."""

from __future__ import annotations

import argparse
from typing import Any, Dict, Optional

from ..api.app import App
from ..api.window import Window
from ..errors import CommandError, ReplyError
from ..errors.commandline import PickError
from ..lookup.picked import stable_locator
from ..protocol.locators import as_address
from ..protocol.waiting import Deadline, attempts
from ..trace.readable import describe_value
from .outcome import NOT_FOUND, Outcome, json_value
from .verbs import Arguments, Verb, seconds

_CLICK_SECONDS = 60.0
_GRAB_SECONDS = 1.0


def _add_pick(parser: argparse.ArgumentParser) -> None:
    parser.add_argument(
        "--countdown",
        type=seconds,
        metavar="SECONDS",
        help="wait so long for the cursor to be put there, instead of for a click: for menus, which a click closes",
    )


def _pick(app: App, arguments: Arguments) -> Outcome:
    if arguments["countdown"] is None:
        wait_for_click(app.display, _CLICK_SECONDS)
    else:
        for _ in attempts(Deadline(arguments["countdown"])):
            pass  # attempts, not a sleep: the user may give up
    found = app.widget_at_cursor()
    if found is None:
        return Outcome("no widget of the application is under the cursor", None, NOT_FOUND)
    best = stable_locator(app.connection, found)
    data: Dict[str, Any] = {
        "window": found.window,
        "window_name": found.window_name,
        "path": found.path,
        "address": None if best is None else as_address(best),
        "python": None if best is None else best.call,
        "class": found.class_name,
        "same_name": found.count,
        "visible": found.visible_count,
        "unique": found.visible_count == 1,
        "properties": _properties(app, found.window, found.path),
    }
    return Outcome(_describe(data), data)


def _properties(app: App, window: str, path: str) -> Dict[str, Any]:
    widget = Window(app, window, f'window("{window}")').widget(path)
    try:
        return {name: json_value(value) for name, value in widget.properties(timeout=0).items()}
    except (ReplyError, CommandError, ValueError):
        return {}  # its path finds other widgets, too, or contains a character that no request can carry


def _describe(data: Dict[str, Any]) -> str:
    unique = "unique" if data["unique"] else f'not unique: {data["visible"]} visible ones have the name'
    lines = [
        f'window: {data["window"]}',
        f'path: {data["path"]} ({unique})',
        f'class: {data["class"]}',
    ]
    if data["address"]:
        lines[1:1] = [f'address: {data["address"]}', f'in Python: window.{data["python"]}']
    if data["window_name"]:
        lines.insert(1, f'window by its object name: Widget:{data["window_name"]}')
    for name, value in data["properties"].items():
        lines.append(f"  {name}: {describe_value(value) if not isinstance(value, dict) else value}")
    return "\n".join(lines)


def wait_for_click(display_name: Optional[str], timeout: float) -> None:
    """Waits until the user clicks somewhere. The cursor is a cross meanwhile, and the click reaches no window.

    Args:
        display_name: the X display, by default that of this process.
        timeout: seconds to wait.

    Raises PickError when python-xlib is missing, the display cannot be reached, or nobody clicks in time.
    """
    try:
        from Xlib import X, display  # type: ignore[import]
        from Xlib.error import DisplayError  # type: ignore[import]
    except ImportError as error:
        raise PickError("waiting for a click needs python3-xlib; use --countdown without it") from error
    try:
        connection = display.Display(display_name)
    except (DisplayError, OSError) as error:
        raise PickError(
            f"the X display {display_name!r} cannot be asked: {error}; use --countdown"
        ) from error
    try:
        _wait_for_press(connection, X, Deadline(timeout))
    finally:
        connection.close()


def _wait_for_press(connection: Any, constants: Any, deadline: Deadline) -> None:
    font = connection.open_font("cursor")
    crosshair = font.create_glyph_cursor(font, 34, 35, (0, 0, 0), (65535, 65535, 65535))
    root = connection.screen().root
    mask = constants.ButtonPressMask | constants.ButtonReleaseMask
    # A mouse button that is still down, or a menu that is closing, holds the mouse for a moment.
    for _ in attempts(Deadline(_GRAB_SECONDS)):
        status = root.grab_pointer(
            False,
            mask,
            constants.GrabModeAsync,
            constants.GrabModeAsync,
            constants.NONE,
            crosshair,
            constants.CurrentTime,
        )
        if status == constants.GrabSuccess:
            break
    else:
        raise PickError("another program holds the mouse: close its menu, or use --countdown")
    for _ in attempts(deadline):
        while connection.pending_events():
            # The release, not the press: the application shall not see half a click.
            if connection.next_event().type == constants.ButtonRelease:
                connection.ungrab_pointer(constants.CurrentTime)
                connection.sync()
                return
    raise PickError(f"nobody clicked within {deadline.seconds:g} seconds")


PICK = Verb(
    "pick", "tells what is under the mouse and how to address it", "pick --countdown 3", _add_pick, _pick
)
