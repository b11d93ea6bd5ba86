"""The terminal of the person who has a paused test go on."""

from __future__ import annotations

import os
import sys
from typing import Dict

from ..errors import PauseError

ENVIRONMENT: Dict[str, str] = dict(os.environ)
"""The environment as it was at first: a run of tests sets DISPLAY to that of a desktop without a screen, where no person sees a
browser."""

_TERMINAL = "CON" if sys.platform == "win32" else "/dev/tty"
_HINT = "Run it in a terminal, without -n; or leave out app.pause() and --qtdriver-pause-on-failure"


def check_person() -> None:
    """Raises PauseError where nobody could have a paused test go on, which would hang."""
    if os.environ.get("CI", "").lower() not in ("", "0", "false"):
        raise PauseError("a test cannot be paused in CI: the variable CI is set", hint=_HINT)
    if "PYTEST_XDIST_WORKER" in os.environ:
        raise PauseError("a test cannot be paused in one of several workers", hint=_HINT)
    try:
        with open(_TERMINAL, "w", encoding="utf-8"):
            pass
    except OSError:
        raise PauseError("a test cannot be paused without a terminal", hint=_HINT) from None


def tell(text: str) -> None:
    """Prints lines on the terminal, past what pytest captures."""
    with open(_TERMINAL, "w", encoding="utf-8") as terminal:
        terminal.write(f"\n{text}\n")
