"""The answers of tools: text within limits, and pictures."""

from __future__ import annotations

import base64
from dataclasses import dataclass
from typing import Any, Dict, List, Optional, Sequence

MAX_CHARACTERS = 6000
"""Characters of an answer; about four are one token of a model."""

MAX_LINES = 1000
"""Lines that can be in an answer."""

MAX_OF_A_PART = 1600
"""Characters of a window that an answer shows besides something else."""


class ToolError(Exception):
    """A tool could not do it: its text tells the model why, and what to do."""


@dataclass(frozen=True)
class Answer:
    """The result of a tool.

    Attributes:
        text: for the model.
        picture: a PNG file; None for none.
        is_error: whether the tool could not do it.
    """

    text: str
    picture: Optional[bytes] = None
    is_error: bool = False

    def as_result(self) -> Dict[str, Any]:
        """The result of tools/call."""
        content: List[Dict[str, Any]] = [{"type": "text", "text": self.text}]
        if self.picture is not None:
            data = base64.b64encode(self.picture).decode("ascii")
            content.append({"type": "image", "data": data, "mimeType": "image/png"})
        return {"content": content, "isError": self.is_error}


def limited(
    lines: Sequence[str], hint: str, most: int = MAX_CHARACTERS, first: int = 0, count: int = 0
) -> str:
    """As many of the lines as fit, and a line that says how many were left out, and how to get them.

    Args:
        lines: the lines.
        hint: how to get the rest; "{}" in it becomes the number of the first line that was left out.
        most: characters.
        first: the number of the first line.
        count: how many lines there are from that on, if `lines` are only the first ones.
    """
    text = "\n".join(lines)
    count = max(count, len(lines))
    if len(text) <= most and len(lines) == count:
        return text
    if count == 1:
        return cut(text, most)
    kept, size = 0, len(hint) + 40
    while kept < len(lines) and size + len(lines[kept]) + 1 <= most:
        size += len(lines[kept]) + 1
        kept += 1
    last = f"... {count - kept} more lines: {hint.replace('{}', str(first + kept))}"
    return "\n".join([*lines[:kept], last])


def cut(text: str, most: int = MAX_CHARACTERS) -> str:
    """The text, or its beginning with a note of how much was left out."""
    if len(text) <= most:
        return text
    return f"{text[:most]}... ({len(text) - most} more characters)"
