"""The page of a run."""

from __future__ import annotations

import html
from dataclasses import dataclass
from pathlib import Path
from typing import Optional, Sequence


@dataclass(frozen=True)
class TestResult:
    """How a test went."""

    node_id: str
    outcome: str
    seconds: float
    message: str
    trace: Optional[Path]
    bundle: Optional[Path]


def write_page(results: Sequence[TestResult], file: Path) -> None:
    """Writes the page."""
    rows = [f"<p>{html.escape(f'{result.node_id}: {result.outcome}')}</p>" for result in results]
    file.write_text("<!DOCTYPE html>\n" + "\n".join(rows), encoding="utf-8")
