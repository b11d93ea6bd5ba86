"""The results of a run as a file: a line for each test, written as the tests end, and read without keeping them."""

from __future__ import annotations

import json
import os
import re
from contextlib import suppress
from dataclasses import dataclass
from pathlib import Path
from typing import Any, Dict, Iterator, List, Optional, Tuple

from ..errors.paths import shown_path

FLAKY = "flaky"
"""The outcome of a test that passed at a later attempt."""

OUTCOMES = ("failed", "error", FLAKY, "skipped", "passed")
"""In the order in which the page shows them: first those that need attention."""

RESULTS_FILE = "results.jsonl"
"""The results of a whole run, in its output folder."""

FORMAT = 1

_SHARD_FILE = re.compile(r"shard-\d+-of-\d+\.jsonl")


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
        properties: names and values, as they stand in a JUnit XML file.
        drives: whether the test uses a driver; the page shows no others.
        worker: the worker that ran it, with its machine where that is another one; empty where there are no workers.
    """

    __test__ = False  # pytest takes classes with such names for tests

    node_id: str
    outcome: str
    seconds: float
    message: str
    trace: Optional[Path]
    bundle: Optional[Path]
    earlier: "Tuple[TestResult, ...]" = ()
    properties: Tuple[Tuple[str, str], ...] = ()
    drives: bool = True
    worker: str = ""

    def total_seconds(self) -> float:
        """How long all attempts took."""
        return self.seconds + sum(attempt.seconds for attempt in self.earlier)


@dataclass(frozen=True)
class SplitTests:
    """How the tests of a run were split among shards.

    Attributes:
        shard: the number of this shard, from 1.
        count: the number of shards.
        tests: the number of tests of all shards.
        digest: tells splits apart; all shards of one split have the same.
    """

    shard: int
    count: int
    tests: int
    digest: str


class ResultsWriter:
    """Writes the results of a run. The file of an earlier one stays until close().

    Attributes:
        drives: whether one of the tests uses a driver.
    """

    def __init__(self, folder: Path, shard: "Tuple[int, int] | None" = None) -> None:
        """Begins the file in the folder. Raises OSError.

        `shard` is the number of a shard and of all shards, None for a whole run. A shard has a file of its own, so that
        the times by which the next shard is split stay the same.
        """
        self.drives = False
        self._is_shard = shard is not None
        self.file = folder / (f"shard-{shard[0]}-of-{shard[1]}.jsonl" if shard else RESULTS_FILE)
        self._unfinished = self.file.with_name(f"{self.file.name}.part")
        self._output = self._unfinished.open("w", encoding="ascii")
        self._write({"format": FORMAT})

    def add(self, result: TestResult) -> None:
        """Adds the result of a test."""
        self.drives = self.drives or result.drives
        data = _data_of(result, self.file.parent)
        if result.earlier:
            data["earlier"] = [_data_of(attempt, self.file.parent) for attempt in result.earlier]
        self._write(data)

    def close(self, split: Optional[SplitTests], status: int, *, keep: bool = False) -> None:
        """Ends the file. It is kept if it is that of a shard, or if tests use a driver.

        Args:
            split: how the tests were split among shards; None for a whole run.
            status: the exit status of the run.
            keep: whether to keep the file in any case.

        Raises OSError.
        """
        self._write({"split": None if split is None else vars(split), "status": status})
        self._output.close()
        if keep or self._is_shard or self.drives:
            os.replace(self._unfinished, self.file)
        else:
            self._unfinished.unlink()

    def read(self) -> "RunResults":
        """The results that have been added so far."""
        self._output.flush()
        return RunResults(self._unfinished if self._unfinished.exists() else self.file)

    def _write(self, data: Dict[str, object]) -> None:
        self._output.write(f"{json.dumps(data)}\n")


class RunResults:
    """The results of a run in a file; each iteration reads it anew, so that few of them are in memory."""

    def __init__(self, file: Path) -> None:
        self.file = file

    def __iter__(self) -> Iterator[TestResult]:
        """The tests. Raises OSError, and ValueError where it is no such file."""
        for data in self._lines():
            if "test" in data:
                earlier = tuple(_result_of(one, self.file.parent) for one in data.get("earlier", ()))
                yield _result_of(data, self.file.parent, earlier)

    def ending(self) -> "Tuple[Optional[SplitTests], Optional[int]]":
        """How the tests were split, None for a whole run; and the exit status, None where the run has not ended."""
        last: Dict[str, Any] = {}
        for last in self._lines():
            pass
        split = last.get("split")
        return (SplitTests(**split) if split else None), last.get("status")

    def _lines(self) -> Iterator[Dict[str, Any]]:
        with self.file.open(encoding="utf-8") as lines:
            for number, line in enumerate(lines):
                with suppress(ValueError):
                    data = json.loads(line)
                    if isinstance(data, dict) and (number or data.get("format") == FORMAT):
                        yield data
                        continue
                raise ValueError(f"{self.file}:{number + 1} is not a line of results")


def remove_shards(folder: Path) -> None:
    """Removes the results of shards that an earlier run has left in an output folder. Raises OSError."""
    for file in _shard_files(folder):
        file.unlink()


def results_files(folder: Path) -> List[Path]:
    """The files of results in an output folder: those of shards, or else that of a whole run."""
    return _shard_files(folder) or [file for file in [folder / RESULTS_FILE] if file.is_file()]


def _shard_files(folder: Path) -> List[Path]:
    return sorted(file for file in folder.glob("shard-*") if _SHARD_FILE.fullmatch(file.name))


def _data_of(result: TestResult, folder: Path) -> Dict[str, object]:
    data: Dict[str, object] = {
        "test": result.node_id,
        "outcome": result.outcome,
        "seconds": round(result.seconds, 6),
        "drives": result.drives,
    }
    more = {
        "message": result.message,
        "trace": "" if result.trace is None else shown_path(result.trace, folder),
        "bundle": "" if result.bundle is None else shown_path(result.bundle, folder),
        "worker": result.worker,
    }
    data.update({name: value for name, value in more.items() if value})
    if result.properties:
        data["properties"] = result.properties
    return data


def _result_of(data: Dict[str, Any], folder: Path, earlier: Tuple[TestResult, ...] = ()) -> TestResult:
    return TestResult(
        data["test"],
        data["outcome"],
        data["seconds"],
        data.get("message", ""),
        folder / data["trace"] if "trace" in data else None,
        folder / data["bundle"] if "bundle" in data else None,
        earlier,
        tuple((name, value) for name, value in data.get("properties", ())),
        data["drives"],
        data.get("worker", ""),
    )
