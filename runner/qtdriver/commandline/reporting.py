"""`qtdriver report merge`: one page and one JUnit file of all shards of a run."""

from __future__ import annotations

import argparse
from pathlib import Path

from .outcome import FAILED, OK, Outcome

_MERGE = "merge"


def add_report_arguments(parser: argparse.ArgumentParser) -> None:
    """Declares the arguments of the command."""
    parser.add_argument("what", choices=[_MERGE], help="what to do")
    parser.add_argument(
        "folders",
        nargs="+",
        type=Path,
        metavar="DIR",
        help="the output folder of a shard, or of a whole run",
    )
    parser.add_argument(
        "--output",
        type=Path,
        default=Path("test-results"),
        metavar="DIR",
        help="the folder for report.html, junit.xml and results.jsonl (default: %(default)s)",
    )


def report(parsed: argparse.Namespace) -> Outcome:
    """Merges the results. The status is 1 where tests may be missing."""
    from ..report.merge import merge  # slow to import, and other commands need not wait for it

    merged = merge(parsed.folders, parsed.output)
    counts = ", ".join(f"{count} {outcome}" for outcome, count in merged.counts.items()) or "no tests"
    lines = [f"{counts}: {merged.page}, {merged.junit}", *merged.problems]
    data = {
        "page": str(merged.page),
        "junit": str(merged.junit),
        "results": str(merged.results),
        "counts": merged.counts,
        "problems": merged.problems,
    }
    return Outcome("\n".join(lines), data, FAILED if merged.problems else OK)
