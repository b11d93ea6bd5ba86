"""One page and one JUnit file of several runs, such as the shards of one."""

from __future__ import annotations

from collections import Counter
from dataclasses import dataclass
from itertools import chain
from pathlib import Path
from typing import Dict, Iterator, List, Optional, Sequence

from ..errors import QtDriverError
from .junit import write_junit
from .page import write_page
from .results import OUTCOMES, ResultsWriter, RunResults, SplitTests, TestResult, results_files

PAGE, JUNIT = "report.html", "junit.xml"

_ENDED = (0, 1, 5)
"""Exit statuses of runs of pytest that came to their end: passed, failed, no tests."""


@dataclass(frozen=True)
class Merged:
    """The result of merging.

    Attributes:
        page: the page of all tests.
        junit: the JUnit XML file.
        results: the results, for the times of the next shards.
        counts: the number of tests by their outcomes.
        problems: why some of the tests may be missing, for a person.
    """

    page: Path
    junit: Path
    results: Path
    counts: Dict[str, int]
    problems: List[str]


class _Runs:
    """The results of several runs as those of one."""

    def __init__(self, runs: Sequence[RunResults]) -> None:
        self._runs = runs

    def __iter__(self) -> Iterator[TestResult]:
        return chain.from_iterable(self._runs)


def merge(folders: Sequence[Path], output: Path) -> Merged:
    """Makes one page, one JUnit file and one file of results of several runs.

    Args:
        folders: the output folders of the runs; they have to stay where they are, since the page has links into them.
        output: the folder for the files.

    Returns the files. Raises QtDriverError when no folder has results, or they cannot be read or written.
    """
    problems: List[str] = []
    runs: List[RunResults] = []
    for folder in folders:
        files = results_files(folder)
        runs += map(RunResults, files)
        if not files:
            problems.append(f"{folder} holds no results: its run has not ended, or is of another version")
    if not runs:
        raise QtDriverError("; ".join(problems))
    every = _Runs(runs)
    try:
        counts = Counter(result.outcome for result in every)
        problems += _problems(runs, sum(counts.values()))
        output.mkdir(parents=True, exist_ok=True)
        write_page(every, output / PAGE)
        write_junit(every, output / JUNIT)
        writer = ResultsWriter(output)
        for result in every:
            writer.add(result)
        writer.close(None, 1 if counts["failed"] or counts["error"] else 0, keep=True)
    except (OSError, ValueError, LookupError, TypeError) as error:
        raise QtDriverError(f"the results cannot be merged: {error}") from None
    told = {outcome: counts[outcome] for outcome in OUTCOMES if counts[outcome]}
    return Merged(output / PAGE, output / JUNIT, writer.file, told, problems)


def _problems(runs: Sequence[RunResults], tests: int) -> List[str]:
    """Why tests of the shards may be missing."""
    problems = []
    splits: List[SplitTests] = []
    for run in runs:
        split, status = run.ending()
        if status not in _ENDED:
            problems.append(f"{run.file}: its run was interrupted{_status_words(status)}")
        if split is not None:
            splits.append(split)
    if not splits:
        return problems
    if len({(split.count, split.digest) for split in splits}) > 1:
        return [
            *problems,
            "the shards are not of one split: they had other tests, or other times to split them by",
        ]
    numbers = Counter(split.shard for split in splits)
    count = splits[0].count
    missing = [number for number in range(1, count + 1) if not numbers[number]]
    problems += [f"shard {number}/{count} is missing" for number in missing]
    problems += [
        f"shard {number}/{count} is there {times} times" for number, times in numbers.items() if times > 1
    ]
    if not problems and len(splits) == len(runs) and tests < splits[0].tests:
        problems.append(f"only {tests} of {splits[0].tests} tests have results")
    return problems


def _status_words(status: Optional[int]) -> str:
    return "" if status is None else f", with exit status {status}"
