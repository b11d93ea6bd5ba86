#!/usr/bin/env python3
"""Prints the table of what measure.py has measured: report.py [--document FILE] BENCH.JSON...

With --document the table, and on what it was measured, are also written between the two marks of that file.
"""

import argparse
import json
from pathlib import Path

import table

BEGIN = "<!-- figures: scripts/bench.sh --document writes from here -->"
END = "<!-- to here -->"


def by_version(reports: list) -> list:
    """One report for each Qt: what was measured under Wine comes behind the rest."""
    whole: dict = {}
    for report in sorted(reports, key=lambda report: "wine" in report):
        known = whole.setdefault(report["qt"], {**report, "results": []})
        known["results"] = [*known["results"], *report["results"]]
    return list(whole.values())


def text_of(measured: list) -> str:
    reports = by_version(measured)
    versions = ", ".join(f"Qt {report['qt']}" for report in reports)
    wines = "".join(f"; under Wine: {name}" for name in sorted({r["wine"] for r in measured if "wine" in r}))
    lines = [f"Measured on {reports[0]['processor']}, with {versions}{wines}.", "", table.markdown(reports)]
    missed = table.not_met(reports)
    lines += ["", "Targets not met:" if missed else "All targets are met."]
    lines += [f"- {line}" for line in missed]
    return "\n".join(lines)


def write_between_marks(document: Path, text: str) -> None:
    before, rest = document.read_text().split(BEGIN)
    after = rest.split(END)[1]
    document.write_text(f"{before}{BEGIN}\n\n{text}\n\n{END}{after}")


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("reports", type=Path, nargs="+")
    parser.add_argument("--document", type=Path)
    options = parser.parse_args()
    reports = [json.loads(path.read_text()) for path in options.reports]
    text = text_of(reports)
    print(text)
    if options.document and not any(report["quick"] for report in reports):
        write_between_marks(options.document, text)


if __name__ == "__main__":
    main()
