"""Makes the one table of all Qt versions out of the results of measure.py."""

import itertools
from typing import Any, Dict, List, Optional, Tuple

from rows import BENCHMARKS, RUNNER, START, TRIPS, TRIPS_OF_COMMANDS, WINE, Row

Result = Dict[str, Any]
Report = Dict[str, Any]

ECHO = "an echo"
MEASURED_OUTSIDE = {
    f"command_{trip.command}": Row(TRIPS, "", ECHO, ratio=trip.ratio, qt_ratio=trip.qt_ratio)
    for trip in TRIPS_OF_COMMANDS
}
MEASURED_OUTSIDE["click_read"] = Row(TRIPS, "", "Qt's calls for it, and an echo", limit=1000)
MEASURED_OUTSIDE["awaited_click"] = Row(RUNNER, "", "the same over a bare socket", ratio=1.1)
MEASURED_OUTSIDE["preload_time"] = Row(START, "", "a library that connects a QTcpSocket", limit=5000)
MEASURED_OUTSIDE["preload_resident"] = Row(START, "", "a library that connects a QTcpSocket", limit=1024)
MEASURED_OUTSIDE["preload_heap"] = Row(START, "", "a library that connects a QTcpSocket", limit=1024)
ROWS: Dict[str, Row] = {**BENCHMARKS, **MEASURED_OUTSIDE}
# Without targets: those are for Windows itself, and Wine's part in a round trip is the largest.
UNDER_WINE: Dict[str, Row] = {
    f"wine_{name}": Row(WINE, "", row.floor) for name, row in MEASURED_OUTSIDE.items() if row.group == TRIPS
}
ALL_ROWS: Dict[str, Row] = {**ROWS, **UNDER_WINE}


def in_figures(value: float) -> str:
    """Three digits, without exponents."""
    for digits, least in ((0, 100.0), (1, 10.0), (2, 0.0)):
        if abs(value) >= least:
            return f"{value:,.{digits}f}"
    raise AssertionError(value)


def is_met(row: Row, result: Result) -> Optional[bool]:
    """Whether the row's target is met; None when it has none for this size."""
    met: List[bool] = []
    if row.ratio is not None:
        met.append(result["ours"] <= row.ratio * result["floor"])
    if row.qt_ratio is not None:
        met.append(result["ours"] <= row.qt_ratio * result["qt"])
    if row.limit is not None and row.limit_size in (None, result.get("size")):
        met.append(result["ours"] <= row.limit)
    return all(met) if met else None


def target(row: Row, size: Optional[int], unit: str) -> str:
    texts = []
    if row.ratio is not None:
        texts.append(f"≤ {row.ratio:g} × floor")
    if row.qt_ratio is not None:
        texts.append(f"≤ {row.qt_ratio:g} × Qt")
    if row.limit is not None and row.limit_size in (None, size):
        texts.append(f"≤ {row.limit:,g} {unit}")
    return ", ".join(texts)


def cells(result: Result, row: Row, growth: Optional[float]) -> List[str]:
    """Ours, floor, ratio, growth of one Qt."""
    ours = in_figures(result["ours"])
    if "megabytes_per_second" in result:
        ours += f" ({in_figures(result['megabytes_per_second'])} MB/s)"
    if is_met(row, result) is False:
        ours = f"**{ours}**"
    floor = in_figures(result["floor"])
    if "qt" in result:
        floor += f" (Qt {in_figures(result['qt'])})"
    ratio = f"{result['ours'] / result['floor']:.2f}" if result["floor"] > 0 else ""
    return [ours, floor, ratio, f"×{growth:.1f}" if growth else ""]


def growths(results: List[Result]) -> Dict[Tuple[str, Optional[int]], float]:
    """How ours grows from a tenth of the size, by name and size."""
    ours = {(result["name"], result.get("size")): result["ours"] for result in results}
    return {
        (name, size): value / ours[name, size // 10]
        for (name, size), value in ours.items()
        if size and (name, size // 10) in ours
    }


def memory_text(result: Result) -> str:
    memory = result.get("memory")
    if not memory:
        return ""
    return (
        f"{memory['allocations']:.0f} allocations, {memory['peak_bytes'] / 1024:.1f} KiB at most, "
        f"{memory['retained_bytes']:.0f} bytes kept"
    )


def markdown(reports: List[Report]) -> str:
    """The table: one row for each measurement and size, four columns for each Qt."""
    lines = []
    names = [f"Qt {report['qt']}" for report in reports]
    head = ["what", "size", "unit", "floor"]
    for name in names:
        head += [f"{name}: ours", "floor", "ratio", "×10"]
    head += ["target", "memory of one"]
    lines.append("| " + " | ".join(head) + " |")
    lines.append("| --- | ---: | --- | --- |" + " ---: |" * 4 * len(reports) + " --- | --- |")
    by_key = [
        {(result["name"], result.get("size")): result for result in report["results"]} for report in reports
    ]
    growth = [growths(report["results"]) for report in reports]
    group = ""
    for key in dict.fromkeys(itertools.chain(*by_key)):
        first = next(results[key] for results in by_key if key in results)
        row = ALL_ROWS[first["name"]]
        if row.group != group:
            group = row.group
            lines.append(f"| **{group}** |" + " |" * (len(head) - 1))
        size = first.get("size")
        line = [first["what"], f"{size:,}" if size and size > 1 else "", first["unit"], row.floor]
        for results, growing in zip(by_key, growth):
            result = results.get(key)
            line += cells(result, row, growing.get(key)) if result else [""] * 4
        lines.append("| " + " | ".join([*line, target(row, size, first["unit"]), memory_text(first)]) + " |")
    return "\n".join(lines)


def not_met(reports: List[Report]) -> List[str]:
    """A line for each target that is not met."""
    return [
        f"Qt {report['qt']}: {result['what']}, {result.get('size', 1):,}: {in_figures(result['ours'])} {result['unit']}"
        for report in reports
        for result in report["results"]
        if is_met(ALL_ROWS[result["name"]], result) is False
    ]
