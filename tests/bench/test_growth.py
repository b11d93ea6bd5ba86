"""The times that the benchmarks measure grow as they should.

No figure of a clock is tested, only growths of the processor's time, which other programs beside them hardly change."""

import os
import sys
from pathlib import Path
from typing import Dict, Tuple

import pytest

ROOT = Path(__file__).resolve().parents[2]
BUILD = Path(os.environ.get("QTDRIVER_BUILD", ROOT / "build" / "qt5"))
sys.path.insert(0, str(ROOT / "bench"))

import inprocess  # noqa: E402
from rows import RESOLVE  # noqa: E402

# The time of Qt's own calls for the same grows with the number of widgets, and further where the processor's caches end,
# how far depends on the machine and its other processes. Ours grows as they do; what compares every widget with every
# other one, or copies all for each, grows ten times as much. Where a cache ends, 3.2 times as much has been seen.
MOST_GROWTH = 5
RESOLUTIONS = [name for name, row in inprocess.BENCHMARKS.items() if row.group == RESOLVE]
LISTINGS = ["tree", "list_find", "list_all", "tree_all", "table_find"]


MOST_TRIES = 4


class Growth:
    """How much longer it takes with ten times as many widgets: by the quickest run of each, which others disturb least."""

    def __init__(self, name: str) -> None:
        self.name = name
        self.best: Dict[Tuple[int, str], float] = {}

    def measure(self) -> None:
        for size in (1000, 10000):
            pair = inprocess.run_pair(BUILD / "bin" / "benchmarks", self.name, size, 5, 0.01)
            for side, result in pair.items():
                microseconds = result["microseconds"]
                self.best[size, side] = min(microseconds, self.best.get((size, side), microseconds))

    def of(self, side: str) -> float:
        return self.best[10000, side] / self.best[1000, side]


@pytest.mark.parametrize("name", RESOLUTIONS + LISTINGS)
def test_ten_times_as_much_costs_as_much_more_as_it_costs_qt(name: str) -> None:
    growth = Growth(name)
    for _ in range(MOST_TRIES):
        growth.measure()
        if growth.of("ours") < MOST_GROWTH * growth.of("floor"):
            break
    assert growth.of("ours") < MOST_GROWTH * growth.of("floor"), growth.best
