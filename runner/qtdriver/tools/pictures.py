"""The tools for what only eyes can see: screenshot, pick."""

from __future__ import annotations

import tempfile
from pathlib import Path
from typing import List, Tuple

from ..desktop.screen_process import SCREENS, display_name
from ..errors import PictureError
from ..lookup.snapshot import SnapshotNode, headline_with_ref
from ..lookup.survey import Survey, SurveyedWindow
from ..protocol.wire import Rect
from .answers import Answer, ToolError
from .call import Call
from .changes import title
from .running import Picture, RunningApplication
from .session import Session
from .tool import APP, TARGET, WINDOW, Arguments, Tool

_USUAL_WIDTH = 800


def _screenshot(session: Session, call: Call, arguments: Arguments) -> Answer:
    try:
        from PIL import Image  # type: ignore[import]
    except ImportError as error:
        raise PictureError("pictures need Pillow (Debian: python3-pil)") from error
    running = session.running(arguments)
    running.look()
    rect, words = _part(running, arguments)
    with tempfile.TemporaryDirectory(prefix="qtdriver-mcp-") as folder:
        file = Path(folder, "screen.png")
        SCREENS.save_picture(display_name(running.app.display), file).wait()
        with Image.open(file) as screen:
            part = (0, 0, *screen.size) if rect is None else _within(rect, screen.size)
            picture = screen.convert("RGB").crop(part)
        scale = max(1.0, (part[2] - part[0]) / arguments.get("width", _USUAL_WIDTH))
        size = (max(1, round(picture.width / scale)), max(1, round(picture.height / scale)))
        if scale > 1:
            picture = picture.resize(size)
        picture.save(file, optimize=True)
        data = file.read_bytes()
    running.picture = Picture(part[0], part[1], scale)
    told = f"{words}, {size[0]} x {size[1]} pixels; pick tells which widget is at a point of it"
    return Answer(told, data)


def _part(running: RunningApplication, arguments: Arguments) -> Tuple["Rect | None", str]:
    if arguments.get("screen", False):
        return None, "the whole screen"
    if "target" in arguments:
        target = running.target(arguments["target"], arguments.get("window"))
        return target.node.rect, str(target)
    window = running.window(arguments.get("window"))
    return (None if window.root is None else window.root.rect), title(window)


def _within(rect: Rect, size: Tuple[int, int]) -> Tuple[int, int, int, int]:
    """The part of a widget that is on the screen. Raises ToolError where nothing is."""
    left, top = max(rect.left, 0), max(rect.top, 0)
    right, bottom = min(rect.right + 1, size[0]), min(rect.bottom + 1, size[1])
    if left >= right or top >= bottom:
        raise ToolError("it is not on the screen: take a screenshot of the whole screen")
    return left, top, right, bottom


def _pick(session: Session, call: Call, arguments: Arguments) -> Answer:
    running = session.running(arguments)
    if running.picture is None:
        raise ToolError("take a screenshot first: the point is one of its pixels")
    left, top, scale = running.picture
    x, y = left + round(arguments["x"] * scale), top + round(arguments["y"] * scale)
    survey = running.look()
    for window in _front_first(survey):
        way = _way_to(window.root, x, y) if window.root is not None else []
        if way:
            lines = [
                headline_with_ref(way[-1]),
                *(f"in {headline_with_ref(node)}" for node in reversed(way[:-1])),
            ]
            return Answer("\n".join([*lines[:4], f"window: {title(window)}"]))
    raise ToolError(f"no window of the application is at {arguments['x']}, {arguments['y']} of the picture")


def _front_first(survey: Survey) -> List[SurveyedWindow]:
    front = survey.in_front()
    return sorted(survey.windows, key=lambda window: window is not front)


def _way_to(node: SnapshotNode, x: int, y: int) -> List[SnapshotNode]:
    """The widgets at a point, from the outermost to the innermost; of those beside each other the last one, which is above."""
    rect = node.rect
    if not (rect.left <= x <= rect.right and rect.top <= y <= rect.bottom):
        return []
    for child in reversed(node.children):
        way = _way_to(child, x, y)
        if way:
            return [node, *way]
    return [node]


_PIXEL = {"type": "number", "minimum": 0}
TOOLS = (
    Tool(
        "screenshot",
        "Take a picture",
        "Takes a picture of the window in front, a widget, or the whole screen. Only for what an outline cannot tell: colours, "
        "drawings, layout.",
        _screenshot,
        {
            "target": TARGET,
            "window": WINDOW,
            "screen": {"type": "boolean", "description": "The whole screen."},
            "width": {
                "type": "integer",
                "minimum": 50,
                "maximum": 2000,
                "description": "Most pixels. Default: 800.",
            },
            "app": APP,
        },
        reads_only=True,
    ),
    Tool(
        "pick",
        "Widget at a point",
        "Tells which widget is at a point of the last screenshot, with its number.",
        _pick,
        {
            "x": {**_PIXEL, "description": "Pixels from the left of the picture."},
            "y": {**_PIXEL, "description": "Pixels from its top."},
            "app": APP,
        },
        ("x", "y"),
        reads_only=True,
    ),
)
