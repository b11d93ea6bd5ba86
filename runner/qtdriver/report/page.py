"""The page of a run: one HTML file with all that failed, and files beside it for what went well."""

from __future__ import annotations

import base64
import hashlib
import json
import os
import time
from collections import Counter
from contextlib import contextmanager
from dataclasses import dataclass
from itertools import islice
from pathlib import Path
from typing import TYPE_CHECKING, Iterable, Iterator, Optional, Sequence, TextIO
from urllib.parse import quote

from .attempts import data_of, in_script
from .embedding import Embedding
from .results import FLAKY, OUTCOMES, TestResult

if TYPE_CHECKING:
    from jinja2 import Environment

ATTENTION = ("failed", "error", FLAKY)
"""The outcomes of tests that are in the page with all that is known of them."""

KEPT_ROWS = 1000
"""The number of other tests that are listed in the page itself."""

_MORE = "qtdriverMore("
"""The beginning of the script with the tests that are not in the page."""

TEMPLATES = Path(__file__).with_name("templates")
"""The folder with the parts of pages."""

_STYLES = ("page.css", "detail.css")
_SCRIPTS = (
    "dom.js",
    "tests.js",
    "timeline.js",
    "pictures.js",
    "evidence.js",
    "differs.js",
    "attempts.js",
    "trace.js",
    "beside.js",
    "main.js",
)
_VISIBLE = {**{code: 0x2400 + code for code in range(0x20)}, 0x7F: 0x2421}
"""Replaces control characters by Unicode's symbols for them."""


@dataclass(frozen=True)
class _Row:
    """A test in the list of the page; `data` is the JSON text from which the page makes its details."""

    number: int
    file: str
    name: str
    outcome: str
    duration: str
    worker: str
    data: str


def write_page(results: Iterable[TestResult], file: Path) -> None:
    """Writes the page of a run, which shows the tests that use a driver, and needs no network.

    Tests that failed come first, the others in their order. What failed is in the page, as far as there is room. The traces
    of the others, and the tests beyond the first ones that went well, are files beside it, which the page loads when they
    are opened. The page notes traces that cannot be read, and pictures for which there is no room.

    Args:
        results: those of all tests; they are iterated several times, and few are kept in memory.
        file: where to write.

    Raises OSError when `file` cannot be written.
    """
    folder = file.absolute().parent
    folder.mkdir(parents=True, exist_ok=True)
    counts: "Counter[str]" = Counter()
    seconds = 0.0
    for result in _driving(results):
        counts[result.outcome] += 1
        seconds += result.total_seconds()
    embedding = Embedding()
    ordered = _ordered(results, counts)
    rows = [
        _row(number, result, folder, embedding if result.outcome in ATTENTION else None)
        for number, result in enumerate(islice(ordered, _rows_in_page(counts)))
    ]
    total = sum(counts.values())
    more = _write_more(ordered, file, total - len(rows))
    style, script = (_read(_STYLES), _read(_SCRIPTS))
    stream = (
        _environment()
        .get_template("page.html")
        .stream(
            rows=rows,
            counts=[(outcome, counts[outcome]) for outcome in OUTCOMES if counts[outcome]],
            flaky=counts[FLAKY],
            total=total,
            more=more,
            left_out=total - len(rows),
            duration=readable_duration(seconds),
            written=time.strftime("%Y-%m-%d %H:%M"),
            style=style,
            script=script,
            style_digest=_digest(style),
            script_digest=_digest(script),
            pictures=_data_uris(embedding),
        )
    )
    with _replacing(file) as output:
        output.writelines(stream)


def _driving(results: Iterable[TestResult]) -> Iterator[TestResult]:
    """The tests that use a driver: the page shows no others."""
    return (result for result in results if result.drives)


def _ordered(results: Iterable[TestResult], counts: "Counter[str]") -> Iterator[TestResult]:
    """The tests, those first that need attention."""
    for rank in sorted({_rank(outcome) for outcome in counts}):
        yield from (result for result in _driving(results) if _rank(result.outcome) == rank)


def _rows_in_page(counts: "Counter[str]") -> int:
    return KEPT_ROWS + sum(counts[outcome] for outcome in ATTENTION)


def _write_more(results: Iterable[TestResult], page: Path, count: int) -> str:
    """Writes the tests that are not in the page into a script beside it. Returns its address, empty where there are none."""
    file = page.with_name(f"{page.stem}-more.js")
    if not count:
        if file.is_file() and file.open("rb").read(len(_MORE)) == _MORE.encode():
            file.unlink()  # of an earlier page
        return ""
    folder = page.absolute().parent
    with _replacing(file) as output:
        output.write(f"{_MORE}[\n")
        for result in results:
            output.write(f"{json.dumps(data_of(result, folder, None), separators=(',', ':'))},\n")
        output.write("]);\n")
    return quote(file.name)


@contextmanager
def _replacing(file: Path) -> "Iterator[TextIO]":
    """A file to write, whose readers find the whole of it or none."""
    unfinished = file.with_name(f"{file.name}.part")
    with unfinished.open("w", encoding="utf-8", errors="backslashreplace") as output:
        yield output
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
        loader=FileSystemLoader(TEMPLATES), autoescape=True, trim_blocks=True, lstrip_blocks=True
    )


def _read(names: Sequence[str]) -> str:
    return "\n".join((TEMPLATES / name).read_text(encoding="utf-8") for name in names)


def _digest(text: str) -> str:
    """The digest by which the page's Content-Security-Policy allows its one style and its one script."""
    return "sha256-" + base64.b64encode(hashlib.sha256(text.encode()).digest()).decode()


def _data_uris(embedding: Embedding) -> Iterator["tuple[str, str]"]:
    for name, kind, data in embedding.pictures():
        yield name, f"data:image/{kind};base64,{base64.b64encode(data).decode()}"


def _row(number: int, result: TestResult, folder: Path, embedding: Optional[Embedding]) -> _Row:
    file, _, name = result.node_id.rpartition("::")
    return _Row(
        number,
        file.translate(_VISIBLE),
        name.translate(_VISIBLE),
        result.outcome,
        readable_duration(result.total_seconds()),
        result.worker.translate(_VISIBLE),
        in_script(data_of(result, folder, embedding)),
    )
