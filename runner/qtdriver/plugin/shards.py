"""Shards: a run of a part of the tests, so that several machines share them."""

from __future__ import annotations

import hashlib
from pathlib import Path
from statistics import median
from typing import Any, Dict, Iterable, List, NamedTuple, Optional, Sequence, Tuple

import pytest

from ..report.results import RunResults, SplitTests
from .hookimpl import hookimpl
from .settings import Settings

SHARDS = "qtdriver-shards"
"""The name under which Shards is registered as a plugin."""

_TIMES_KEY, _SPLIT_KEY = "qtdriver_times", "qtdriver_split"

_USUAL_SECONDS = 1.0
"""The time of a test where none is known."""


class Split(NamedTuple):
    """The tests of each shard.

    Attributes:
        shards: names of tests, in no order.
        known: the number of tests whose times are known.
        digest: the same where the same tests were split in the same way.
    """

    shards: List[List[str]]
    known: int
    digest: str


def split(names: Iterable[str], times: Dict[str, float], count: int) -> Split:
    """Splits tests among shards that take about as long as each other.

    The longest are given out first, each to the shard that has least to do. A test without a known time counts as one of
    the usual length. The result does not depend on the order of the names.
    """
    different = sorted(set(names))
    known = [times[name] for name in different if name in times]
    usual = median(known) if known else _USUAL_SECONDS
    loads: List[Tuple[float, int, int]] = [(0.0, 0, number) for number in range(count)]
    shards: List[List[str]] = [[] for _ in range(count)]
    for name in sorted(different, key=lambda name: (-times.get(name, usual), name)):
        load, size, number = min(loads)
        loads[number] = (load + times.get(name, usual), size + 1, number)
        shards[number].append(name)
    text = "\n".join(f"{number} {name}" for number, shard in enumerate(shards) for name in sorted(shard))
    return Split(shards, len(known), hashlib.sha1(text.encode("utf-8", "replace")).hexdigest()[:12])


def read_times(file: Path) -> Dict[str, float]:
    """The times of the tests in a file of results; empty where there is none. Raises pytest.UsageError for another file."""
    try:
        return {result.node_id: result.total_seconds() for result in RunResults(file)}
    except FileNotFoundError:
        return {}
    except (OSError, ValueError, LookupError, TypeError) as error:
        raise pytest.UsageError(f"--qtdriver-times: {error}") from None


class Shards:
    """Leaves the tests of one shard. Workers are told the times by the controller, so that all of them split alike.

    Attributes:
        split_tests: how the tests were split, once that is known.
    """

    def __init__(self, config: pytest.Config, settings: Settings) -> None:
        """Reads the times, before the run overwrites them."""
        assert settings.shard is not None
        self._number, self._count = settings.shard
        told = getattr(config, "workerinput", {}).get(_TIMES_KEY)
        self._times: Dict[str, float] = read_times(settings.times) if told is None else told
        self._note = ""
        self.split_tests: Optional[SplitTests] = None

    @hookimpl(trylast=True)
    def pytest_collection_modifyitems(self, config: pytest.Config, items: List[pytest.Item]) -> None:
        """Deselects the tests of the other shards, after what the user deselects."""
        done = split((item.nodeid for item in items), self._times, self._count)
        chosen = set(done.shards[self._number - 1])
        left_out = [item for item in items if item.nodeid not in chosen]
        self._take(
            [self._number, self._count, len(items), done.digest],
            f"shard {self._number}/{self._count}: {len(items) - len(left_out)} of {len(items)} tests, "
            + (f"split by the times of {done.known}" if done.known else "split without times"),
        )
        output = getattr(config, "workeroutput", None)
        if output is not None:
            output[_SPLIT_KEY] = [vars(self.split_tests), self._note]
        if left_out:
            config.hook.pytest_deselected(items=left_out)
            items[:] = [item for item in items if item.nodeid in chosen]

    def _take(self, told: Sequence[Any], note: str) -> None:
        self.split_tests = SplitTests(*told)
        self._note = note

    @hookimpl(optionalhook=True)
    def pytest_configure_node(self, node: Any) -> None:
        """Tells a worker the times."""
        node.workerinput[_TIMES_KEY] = self._times

    @hookimpl(optionalhook=True)
    def pytest_testnodedown(self, node: Any) -> None:
        """Reads from a worker how it has split the tests."""
        told = getattr(node, "workeroutput", {}).get(_SPLIT_KEY)
        if told is not None:
            self._take(list(told[0].values()), told[1])

    @hookimpl(tryfirst=True)
    def pytest_sessionfinish(self, session: pytest.Session) -> None:
        """Ends a shard for which there was no test with the status of success."""
        nothing_left = self.split_tests is not None and self.split_tests.tests > 0
        if nothing_left and session.exitstatus == pytest.ExitCode.NO_TESTS_COLLECTED:
            session.exitstatus = pytest.ExitCode.OK

    def pytest_terminal_summary(self, terminalreporter: Any) -> None:
        """Says which part of the tests this was."""
        if self._note:
            terminalreporter.write_line(f"qtdriver: {self._note}")
