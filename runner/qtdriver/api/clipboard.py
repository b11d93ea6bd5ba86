"""The text on the clipboard of an application's desktop."""

from __future__ import annotations

import os
import subprocess
from typing import TYPE_CHECKING, Optional

from ..errors import ClipboardError

if TYPE_CHECKING:
    from .app import App

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_SECONDS = 5.0
_EXTENSION = "+clipboard"


class Clipboard:
    """The text on the clipboard of an application's desktop. Calling it is the same as get()."""

    def __init__(self, app: "App") -> None:
        self._app = app

    def __repr__(self) -> str:
        return f"{self._app}.clipboard"

    def __call__(self) -> str:
        return self.get()

    def get(self) -> str:
        """The text; empty when there is none. With an agent without extensions, the program xclip reads it.

        Raises ClipboardError when xclip cannot.
        """
        connection = self._app.connection

        def read() -> str:
            if _EXTENSION in connection.extensions:
                return connection.clipboard()
            return read_clipboard(self._app.display)

        return self._app.perform("clipboard.get()", read)

    def set(self, text: str) -> None:
        """Puts a text on the clipboard, through the application. Raises OldAgentError with an agent without extensions."""
        self._app.perform(
            f"clipboard.set({text!r})", lambda: self._app.connection.set_clipboard(text), reads=False
        )


def read_clipboard(display: Optional[str] = None) -> str:
    """Reads the text on the clipboard of an X display; empty when there is none.

    Args:
        display: the display, by default that of this process.

    Raises ClipboardError without a display, without xclip, and when the clipboard's owner does not answer.
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
