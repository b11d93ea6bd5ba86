"""The attempts at a test as the page has them: with the trace in the page, or beside it, to be loaded when it is opened."""

from __future__ import annotations

import hashlib
import json
import os
from contextlib import suppress
from pathlib import Path
from typing import Dict, List, Optional
from urllib.parse import quote

from ..trace.trace import TRACE_FILE
from .embedding import Embedding
from .results import FLAKY, TestResult

_KEPT_MESSAGE = 50_000
"""Characters of a message, and of another text, that are kept: half of them from its beginning, half from its end."""

_SEEN = ("stderr", "stdout", "windows")
"""The texts of a bundle that tell why an application has not started."""


def data_of(result: TestResult, folder: Path, embedding: Optional[Embedding]) -> Dict[str, object]:
    """A test in types of JSON.

    Args:
        result: the test.
        folder: that of the page.
        embedding: takes the traces and pictures of the page; None to leave the trace of the test beside the page.
    """
    file, _, name = result.node_id.rpartition("::")
    attempts = [_attempt(attempt, folder, embedding) for attempt in (*result.earlier, result)]
    if result.outcome == FLAKY:
        attempts[-1]["outcome"] = "passed"
    return {
        "file": file,
        "name": name,
        "outcome": result.outcome,
        "seconds": result.total_seconds(),
        "attempts": attempts,
    }


def in_script(data: object) -> str:
    """JSON that can stand in a script element: nothing in it ends the element or begins a comment."""
    text = json.dumps(data, separators=(",", ":"))
    return text.replace("<", "\\u003c").replace(">", "\\u003e").replace("&", "\\u0026")


def _attempt(result: TestResult, folder: Path, embedding: Optional[Embedding]) -> Dict[str, object]:
    trace = None if embedding is None or result.trace is None else _trace(result.trace, embedding)
    if trace is not None:
        trace["folder"] = _link(result.trace, folder)
    return {
        "outcome": result.outcome,
        "seconds": result.seconds,
        "worker": result.worker,
        "message": _shortened(result.message),
        "bundle": _link(result.bundle, folder),
        "trace": trace,
        "beside": _link(result.trace, folder) if trace is None else None,
        "stacks": _stacks(result.bundle),
        "kept": _kept(result.bundle, folder),
        "seen": _seen(result.bundle, embedding) if trace is not None and not trace["steps"] else None,
    }


def _trace(trace_folder: Path, embedding: Embedding) -> "Optional[Dict[str, object]]":
    """The trace for the page; None when there is no room for it."""
    try:
        text = (trace_folder / TRACE_FILE).read_text(encoding="utf-8")
        trace = json.loads(text)
        steps: List[Dict[str, object]] = trace["steps"]
        if not embedding.add_text(len(text)):
            return None
        for step in steps:
            for moment in ("before", "after"):
                step[f"{moment}_file"] = step[moment]
                step[moment] = embedding.add(trace_folder, str(step[moment])) if step[moment] else ""
            compared = step.get("comparison")
            if isinstance(compared, dict):
                step["comparison"] = {
                    kind: embedding.add(trace_folder, name) for kind, name in compared.items()
                }
        differs = trace.get("differs") or {}
        for picture in ("picture", "passed_picture"):
            if differs.get(picture):
                differs[picture] = embedding.add(trace_folder, differs[picture])
    except (OSError, ValueError, LookupError, TypeError, RecursionError) as error:
        trace = {"steps": [], "trees": {}, "notes": [f"the trace could not be read: {error}"]}
    return dict(trace)


def _shortened(message: str) -> str:
    if len(message) <= _KEPT_MESSAGE:
        return message
    half = _KEPT_MESSAGE // 2
    return f"{message[:half]}\n... {len(message) - 2 * half} characters ...\n{message[-half:]}"


def _link(path: Optional[Path], folder: Path) -> "Optional[Dict[str, str]]":
    """A path, and the page's link to it, which is relative, so that page and folder can be copied together."""
    if path is None:
        return None
    relative = os.path.relpath(path.absolute(), folder)
    return {"path": relative, "href": quote(os.fsencode(relative))}


def _kept(bundle: Optional[Path], folder: Path) -> "List[Dict[str, str]]":
    """Links to the files of a bundle."""
    try:
        found = sorted(bundle.iterdir() if bundle else ())
        files = [file for file in found if file.is_file() and not file.name.startswith(".")]
    except OSError:
        return []
    return [{**link, "path": file.name} for file in files for link in [_link(file, folder)] if link]


def _seen(bundle: Optional[Path], embedding: Optional[Embedding]) -> "Optional[Dict[str, object]]":
    """Screens and texts that were kept of applications with which the test did nothing, as they did not start."""
    if bundle is None or embedding is None:
        return None
    pictures, texts = [], {}
    with suppress(OSError):
        for file in sorted(bundle.glob("screenshot*.png")):
            digest = hashlib.sha1(file.read_bytes()).hexdigest()
            pictures.append(embedding.add(bundle, file.name, key=f"{digest[:20]}.png"))
        for file in sorted(file for kind in _SEEN for file in bundle.glob(f"{kind}*.txt")):
            text = _shortened(file.read_text(encoding="utf-8", errors="replace")).strip()
            if text and embedding.add_text(len(text)):
                texts[file.name] = text
    return {"pictures": [key for key in pictures if key], "texts": texts}


def _stacks(bundle: Optional[Path]) -> List[str]:
    """The stacks of the applications that crashed or hung, as texts, in the order in which these were started."""
    if bundle is None:
        return []
    texts = []
    for file in sorted(bundle.glob("stack*.txt"), key=lambda file: (len(file.name), file.name)):
        try:
            texts.append(_shortened(file.read_text(encoding="utf-8", errors="replace")))
        except OSError:
            continue
    return texts
