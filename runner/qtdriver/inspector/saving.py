"""Saving the test in the page's editor, below the folder in which `qtdriver inspect` was started."""

from __future__ import annotations

import os
from typing import Any, Dict

from ..recording.files import TestFileExistsError, write_below

Values = Dict[str, Any]


def save(values: Values) -> Any:
    """Writes {"text"} to the file {"path"}, over one that is there only with {"overwrite": true}.

    Returns {"saved": its path, "exists": whether there is a file that would have to be overwritten}.
    """
    path = str(values["path"]).strip()
    try:
        write_below(os.getcwd(), path, str(values["text"]), overwrite=bool(values.get("overwrite")))
    except TestFileExistsError:
        return {"saved": "", "exists": True}
    return {"saved": path, "exists": False}
