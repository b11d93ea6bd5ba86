"""How the server starts applications."""

from __future__ import annotations

from dataclasses import dataclass
from pathlib import Path
from typing import Optional


@dataclass(frozen=True)
class Options:
    """The options of the command line.

    Attributes:
        folder: the working directory: tests are saved below it.
        build: the folder with the agents; None for the default one.
        qt: the Qt version of applications whose files do not tell it.
        timeout: seconds that an application may take to start, and to answer a request.
    """

    folder: Path
    build: Optional[Path] = None
    qt: Optional[int] = None
    timeout: float = 30.0
