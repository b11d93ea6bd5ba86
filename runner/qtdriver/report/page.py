"""The page of a run: one HTML file with everything in it."""

from __future__ import annotations

import base64
import hashlib
import json
import os
import time
from collections import Counter
from dataclasses import dataclass
from pathlib import Path
from typing import TYPE_CHECKING, Dict, Iterator, List, Optional, Sequence, Tuple
from urllib.parse import quote

from ..trace.trace import TRACE_FILE
from .embedding import Embedding

if TYPE_CHECKING:
    from jinja2 import Environment

FLAKY = "flaky"
"""The outcome of a test that passed at a later attempt."""

OUTCOMES = ("failed", "error", FLAKY, "skipped", "passed")
"""In the order in which the page shows them: first those that need attention."""

_TEMPLATES = Path(__file__).with_name("templates")
_STYLES = ("page.css", "detail.css")
_SCRIPTS = ("dom.js", "tests.js", "timeline.js", "pictures.js", "evidence.js", "trace.js", "main.js")
_KEPT_MESSAGE = 50_000
_VISIBLE = {**{code: 0x2400 + code for code in range(0x20)}, 0x7F: 0x2421}
"""Replaces control characters by Unicode's symbols for them."""


@dataclass(frozen=True)
class TestResult:
    """How one test went.

    Attributes:
        node_id: its name, such as tests/test_order.py::test_milk.
        outcome: "passed", "failed", "error", "skipped" or "flaky".
        seconds: how long it took.
        message: why it failed or was skipped, with the part of the traceback that pytest shows.
        trace: the folder that a Recorder has written, None for none.
        bundle: the folder with the other files of a failure, None for none.
        earlier: the attempts before this one, oldest first.
    """

    __test__ = False  # pytest takes classes with such names for tests

    node_id: str
    outcome: str
    seconds: float
    message: str
    trace: Optional[Path]
    bundle: Optional[Path]
    earlier: "Tuple[TestResult, ...]" = ()


@dataclass(frozen=True)
class _Row:
    """A test in the list of the page; `data` is the JSON text from which the page makes its details."""

    number: int
    file: str
    name: str
    outcome: str
    duration: str
    data: str


def write_page(results: Sequence[TestResult], file: Path) -> None:
    """Writes the page of a run, which needs no other file and no network.

    Tests that failed come first, the others in their order. The page notes traces that cannot be read, and pictures for
    which there is no room.

    Raises OSError when `file` cannot be written.
    """
    ordered = sorted(results, key=lambda result: _rank(result.outcome))
    folder = file.absolute().parent
    folder.mkdir(parents=True, exist_ok=True)
    embedding = Embedding()
    rows = [_row(number, result, folder, embedding) for number, result in enumerate(ordered)]
    counts = Counter(result.outcome for result in ordered)
    style, script = (_read(_STYLES), _read(_SCRIPTS))
    stream = (
        _environment()
        .get_template("page.html")
        .stream(
            rows=rows,
            counts=[(outcome, counts[outcome]) for outcome in OUTCOMES if counts[outcome]],
            flaky=counts[FLAKY],
            total=len(rows),
            duration=readable_duration(sum(result.seconds for result in ordered)),
            written=time.strftime("%Y-%m-%d %H:%M"),
            style=style,
            script=script,
            style_digest=_digest(style),
            script_digest=_digest(script),
            pictures=_data_uris(embedding),
        )
    )
    unfinished = file.with_name(f"{file.name}.part")
    with unfinished.open("w", encoding="utf-8", errors="backslashreplace") as output:
        output.writelines(stream)
    os.replace(unfinished, file)


def readable_duration(seconds: float) -> str:
    """A duration for a person: 4 ms, 1.2 s, 3 min 5 s."""
    if seconds < 0.9995:
        return f"{seconds * 1000:.0f} ms"
    if seconds < 59.95:
        return f"{seconds:.1f} s"
    minutes, rest = divmod(round(seconds), 60)
    return f"{minutes} min {rest} s"


def _rank(outcome: str) -> int:
    return OUTCOMES.index(outcome) if outcome in OUTCOMES else 0


def _environment() -> "Environment":
    from jinja2 import Environment, FileSystemLoader

    return Environment(
        loader=FileSystemLoader(_TEMPLATES), autoescape=True, trim_blocks=True, lstrip_blocks=True
    )


def _read(names: Sequence[str]) -> str:
    return "\n".join((_TEMPLATES / name).read_text(encoding="utf-8") for name in names)


def _digest(text: str) -> str:
    """The digest by which the page's Content-Security-Policy allows its one style and its one script."""
    return "sha256-" + base64.b64encode(hashlib.sha256(text.encode()).digest()).decode()


def _data_uris(embedding: Embedding) -> Iterator["tuple[str, str]"]:
    for name, kind, data in embedding.pictures():
        yield name, f"data:image/{kind};base64,{base64.b64encode(data).decode()}"


def _row(number: int, result: TestResult, folder: Path, embedding: Embedding) -> _Row:
    file, _, name = result.node_id.rpartition("::")
    attempts = [_attempt(attempt, folder, embedding) for attempt in (*result.earlier, result)]
    if result.outcome == FLAKY:
        attempts[-1]["outcome"] = "passed"
    data: Dict[str, object] = {
        "file": file,
        "name": name,
        "outcome": result.outcome,
        "seconds": sum(attempt.seconds for attempt in (*result.earlier, result)),
        "attempts": attempts,
    }
    return _Row(
        number,
        file.translate(_VISIBLE),
        name.translate(_VISIBLE),
        result.outcome,
        readable_duration(sum(attempt.seconds for attempt in (*result.earlier, result))),
        in_script(data),
    )


def _attempt(result: TestResult, folder: Path, embedding: Embedding) -> Dict[str, object]:
    return {
        "outcome": result.outcome,
        "seconds": result.seconds,
        "message": _shortened(result.message),
        "bundle": _link(result.bundle, folder),
        "trace": _trace(result, folder, embedding),
        "stacks": _stacks(result.bundle),
    }


def in_script(data: object) -> str:
    """JSON that can stand in a script element: nothing in it ends the element or begins a comment."""
    text = json.dumps(data, separators=(",", ":"))
    return text.replace("<", "\\u003c").replace(">", "\\u003e").replace("&", "\\u0026")


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


def _trace(result: TestResult, folder: Path, embedding: Embedding) -> "Optional[Dict[str, object]]":
    if result.trace is None:
        return None
    try:
        trace = json.loads((result.trace / TRACE_FILE).read_text(encoding="utf-8"))
        steps: List[Dict[str, object]] = trace["steps"]
        for step in steps:
            for moment in ("before", "after"):
                step[f"{moment}_file"] = step[moment]
                step[moment] = embedding.add(result.trace, str(step[moment])) if step[moment] else ""
    except (OSError, ValueError, LookupError, TypeError, RecursionError) as error:
        trace = {"steps": [], "trees": {}, "notes": [f"the trace could not be read: {error}"]}
    trace["folder"] = _link(result.trace, folder)
    return dict(trace)


def _stacks(bundle: Optional[Path]) -> List[str]:
    """The stacks of the applications that crashed or hung, as texts."""
    if bundle is None:
        return []
    texts = []
    for file in sorted(bundle.glob("stack*.txt")):
        try:
            texts.append(_shortened(file.read_text(encoding="utf-8", errors="replace")))
        except OSError:
            continue
    return texts
