"""The text on the clipboard of an application's desktop."""

from __future__ import annotations

import os
import subprocess
from typing import Optional

from ..errors import ClipboardError

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_SECONDS = 5.0


def read_clipboard(display: Optional[str] = None) -> str:
    """The text on the clipboard of an X display, by default that of this process; empty when there is none.

    Raises ClipboardError when there is no display, no xclip (Debian: xclip), or no answer from the clipboard's owner.
    """
    name = os.environ.get("DISPLAY", "") if display is None else display
    if not name:
        raise ClipboardError("there is no X display whose clipboard could be read (DISPLAY is not set)")
    command = ["xclip", "-o", "-selection", "clipboard", "-display", name]
    try:
        finished = subprocess.run(command, capture_output=True, timeout=_SECONDS)
    except FileNotFoundError as error:
        raise ClipboardError("reading the clipboard needs xclip (Debian: xclip)") from error
    except subprocess.TimeoutExpired as error:
        raise ClipboardError(
            f"the owner of the clipboard has not answered in {_SECONDS:g} seconds"
        ) from error
    if b"open display" in finished.stderr:
        raise ClipboardError(f"the display {name} cannot be reached")
    # Another failure says that the clipboard is empty, or holds no text.
    return finished.stdout.decode("utf-8", "replace") if finished.returncode == 0 else ""
