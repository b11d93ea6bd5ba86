"""Mouse commands as the protocol writes them."""

from __future__ import annotations

from typing import Dict, Literal, Optional, Tuple

MouseButton = Literal["left", "right", "middle", ""]
Modifier = Literal["", "shift", "control", "alt"]
Position = Tuple[float, float]
"""Shares of a widget's width and height, from the top left: (0.5, 0.5) is the centre; 1.0 is one pixel beyond."""

_BUTTONS: Dict[str, str] = {"left": "LeftButton", "right": "RightButton", "middle": "MidButton", "": ""}
_MODIFIERS: Dict[str, str] = {
    "": "",
    "shift": "ShiftModifier",
    "control": "ControlModifier",
    "alt": "AltModifier",
}
_KINDS = ("MousePress", "MouseRelease", "MouseClick", "MouseDoubleClick", "MouseMove")


def mouse_command(kind: str, button: str, at: Optional[Position], modifier: str) -> str:
    """The command "type:button:x:y:modifier". Raises ValueError for an unknown word or a position outside."""
    for word, words in ((kind, _KINDS), (button, _BUTTONS), (modifier, _MODIFIERS)):
        if word not in words:
            raise ValueError(f"{word!r} is not known here, but {', '.join(filter(None, words))}")
    x = y = ""
    if at is not None:
        if not all(0.0 <= share <= 1.0 for share in at):
            raise ValueError(f"a position has shares from 0.0 to 1.0 of width and height, not {at}")
        x, y = (format(float(share), ".6g") for share in at)
    return f"{kind}:{_BUTTONS[button]}:{x}:{y}:{_MODIFIERS[modifier]}"
