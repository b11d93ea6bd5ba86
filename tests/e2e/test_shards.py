"""Shards: each test is in one of them, they take about as long as each other, and their results become one."""

import random
import subprocess
import xml.etree.ElementTree as ElementTree
from pathlib import Path

import pytest

from qtdriver import QtDriverError
from qtdriver.commandline.arguments import parse_arguments
from qtdriver.commandline.reporting import report
from qtdriver.plugin.shards import read_times, split
from qtdriver.report.results import ResultsWriter, SplitTests, TestResult

from pytestrun import Project

QTDRIVER = str(Path(__file__).resolve().parents[2] / "scripts" / "qtdriver")
NAMES = [f"tests/test_{number % 7}.py::test_{number}" for number in range(100)]


def sums(shards, times):
    return [sum(times[name] for name in shard) for shard in shards]


@pytest.mark.parametrize("count", [1, 2, 5, 7, 100, 120])
def test_each_test_is_in_exactly_one_shard(count):
    times = {name: number / 3 for number, name in enumerate(NAMES[:60])}
    for known in ({}, times):
        shards = split(NAMES, known, count).shards
        assert len(shards) == count
        assert sorted(name for shard in shards for name in shard) == sorted(NAMES)


def test_the_split_is_the_same_in_whatever_order_the_tests_come():
    times = {name: 1.0 for name in NAMES[::3]}
    mixed = random.Random(1).sample(NAMES, len(NAMES))
    assert split(mixed, dict(reversed(times.items())), 5) == split(NAMES, times, 5)
    assert split(NAMES, times, 5).digest != split(NAMES[1:], times, 5).digest
    assert split(NAMES, times, 5).digest != split(NAMES, {**times, NAMES[0]: 9.0}, 5).digest


def test_shards_take_as_long_as_each_other_by_the_times_of_the_last_run():
    times = {name: 0.1 + (number % 10) ** 2 for number, name in enumerate(NAMES)}
    loads = sums(split(NAMES, times, 5).shards, times)
    assert max(loads) - min(loads) <= 1.0 < sum(loads) / 100
    long = {**times, NAMES[3]: 10_000.0}
    (alone,) = [shard for shard in split(NAMES, long, 5).shards if NAMES[3] in shard]
    assert alone == [NAMES[3]]


def test_without_times_shards_have_as_many_tests_and_a_new_test_counts_as_a_usual_one():
    assert [len(shard) for shard in split(NAMES, {}, 5).shards] == [20] * 5
    times = {name: 4.0 for name in NAMES[:50]}
    assert [len(shard) for shard in split(NAMES, times, 5).shards] == [20] * 5
    assert split(NAMES, times, 5).known == 50


def write_results(folder, results, status=0, **shard):
    folder.mkdir(parents=True, exist_ok=True)
    told = SplitTests(**{"tests": 3, "digest": "one", **shard}) if shard else None
    writer = ResultsWriter(folder, (told.shard, told.count) if told else None)
    for result in results:
        writer.add(result)
    writer.close(told, status)
    return folder


def test_the_times_of_a_run_are_those_of_all_attempts_and_a_missing_file_has_none(tmp_path):
    first = TestResult("a.py::b", "failed", 2.0, "why", None, None)
    flaky = TestResult("a.py::b", "flaky", 0.5, "", None, None, (first,))
    folder = write_results(tmp_path, [flaky, TestResult("a.py::c", "passed", 1.0, "", None, None)])
    assert read_times(folder / "results.jsonl") == {"a.py::b": 2.5, "a.py::c": 1.0}
    assert read_times(folder / "nothing.jsonl") == {}
    (folder / "other.jsonl").write_text("{}\n")
    with pytest.raises(pytest.UsageError, match="other.jsonl:1 is not a line of results"):
        read_times(folder / "other.jsonl")


@pytest.fixture
def merge(tmp_path):
    """Merges folders, and answers the exit status and the result."""

    def run(*folders):
        words = ["report", "merge", *map(str, folders), "--output", str(tmp_path / "all")]
        outcome = report(parse_arguments(words))
        return outcome.status, outcome.data

    return run


@pytest.fixture
def shards(tmp_path):
    """The folders of two shards: one test has failed in each, and one has passed at its second attempt."""
    bundle = tmp_path / "one" / "test_bad-1"
    bundle.mkdir(parents=True)
    first = TestResult("tests/a.py::Class::test_flaky", "failed", 1.0, "first", None, None)
    one = [
        TestResult("tests/a.py::test_bad[x::y]", "failed", 1.0, "E   Error: \x00 milk\nbehind", None, bundle),
        TestResult("tests/a.py::Class::test_flaky", "flaky", 1.0, "", None, None, (first,)),
    ]
    plain = TestResult("b.py::test_c", "skipped", 0.0, "no tray", None, None, (), (("k", "v"),), False)
    return [
        write_results(tmp_path / "one", one, 1, shard=1, count=2),
        write_results(tmp_path / "two", [plain], 0, shard=2, count=2),
    ]


def test_the_results_of_shards_become_one_page_and_one_junit_file(shards, merge, tmp_path):
    status, told = merge(*shards)
    assert (status, told["problems"]) == (0, [])
    assert told["counts"] == {"failed": 1, "flaky": 1, "skipped": 1}
    page = Path(told["page"]).read_text()
    assert '"../one/test_bad-1"' in page
    suite = ElementTree.parse(told["junit"]).find("testsuite")
    numbers = [suite.get(name) for name in ("tests", "failures", "errors", "skipped")]
    assert numbers == ["3", "1", "0", "1"]
    cases = {(case.get("classname"), case.get("name")): case for case in suite}
    assert list(cases) == [("tests.a", "test_bad[x::y]"), ("tests.a.Class", "test_flaky"), ("b", "test_c")]
    bad, flaky, skipped = cases.values()
    assert bad.find("failure").get("message") == "Error: #x00 milk"
    assert "behind" in bad.find("failure").text
    properties = [
        {one.get("name"): one.get("value") for one in case.iter("property")} for case in (bad, flaky, skipped)
    ]
    assert properties == [
        {"qtdriver_bundle": str(shards[0] / "test_bad-1")},
        {"qtdriver_attempts": "2"},
        {"k": "v"},
    ]
    assert read_times(Path(told["results"])) == read_times(shards[0] / "shard-1-of-2.jsonl") | {
        "b.py::test_c": 0.0
    }


def test_a_shard_that_is_missing_or_there_twice_is_told_and_the_others_are_merged(shards, merge, tmp_path):
    status, told = merge(shards[0])
    assert (status, told["problems"]) == (1, ["shard 2/2 is missing"])
    assert "test_bad" in Path(told["junit"]).read_text()
    (tmp_path / "empty").mkdir()
    status, told = merge(shards[0], shards[0], tmp_path / "empty")
    assert status == 1 and told["problems"][0].startswith(f"{tmp_path / 'empty'} holds no results")
    assert told["problems"][1:] == ["shard 2/2 is missing", "shard 1/2 is there 2 times"]


def test_shards_that_were_split_in_other_ways_or_have_lost_tests_are_told(shards, merge, tmp_path):
    write_results(tmp_path / "two", [], 0, shard=2, count=2)
    assert merge(*shards)[1]["problems"] == ["only 2 of 3 tests have results"]
    write_results(tmp_path / "two", [], 0, shard=2, count=2, digest="two")
    assert merge(*shards)[1]["problems"][0].startswith("the shards are not of one split")
    write_results(tmp_path / "two", [], 2, shard=2, count=2)
    assert merge(*shards)[1]["problems"][0].endswith("its run was interrupted, with exit status 2")


def test_a_person_reads_how_many_tests_went_how_and_what_is_missing(shards):
    command = [QTDRIVER, "report", "merge", shards[1].name, "--output", "all"]
    done = subprocess.run(command, cwd=shards[1].parent, capture_output=True, text=True)
    assert done.returncode == 1
    assert done.stderr == "qtdriver: 1 skipped: all/report.html, all/junit.xml\nshard 1/2 is missing\n"


def test_without_any_results_nothing_is_merged(merge, tmp_path):
    with pytest.raises(QtDriverError, match="holds no results"):
        merge(tmp_path)
    assert not (tmp_path / "all").exists()


PROJECT = """
import time
@pytest.mark.parametrize("number", range(6))
def test_quick(number): Path(f"ran-{number}").open("a").write("x")
def test_long(qtdriver): time.sleep(0.5)
def test_bad(qtdriver): assert 0
"""


@pytest.fixture
def project(tmp_path):
    return Project(tmp_path)


@pytest.mark.parametrize("workers", [(), ("-n", 2)])
def test_the_shards_of_a_run_with_and_without_workers_hold_each_test_once(project, merge, workers):
    project.write(PROJECT)
    whole = project.run()
    assert whole.outcomes == "1 failed, 7 passed"
    times = project.results / "results.jsonl"
    assert read_times(times)["test_project.py::test_long"] > 0.5
    runs = [
        project.run(
            f"--qtdriver-shard={n}/2", f"--qtdriver-times={times}", f"--qtdriver-output=s{n}", *workers
        )
        for n in (1, 2)
    ]
    assert (
        "qtdriver: shard 1/2: " in runs[0].output and "of 8 tests, split by the times of 8" in runs[0].output
    )
    assert [len((project.folder / f"ran-{n}").read_text()) for n in range(6)] == [2] * 6
    status, told = merge(project.folder / "s1", project.folder / "s2")
    assert (status, told["problems"], told["counts"]) == (0, [], {"failed": 1, "passed": 7})


def test_a_shard_leaves_the_times_of_the_last_whole_run_and_one_without_tests_passes(project):
    project.write("def test_one(qtdriver): pass")
    project.run()
    before = (project.results / "results.jsonl").read_text()
    run = project.run("--qtdriver-shard", "2/2")
    assert (run.status, "shard 2/2: 0 of 1 tests" in run.output) == (0, True)
    assert (project.results / "results.jsonl").read_text() == before
    assert project.run("--qtdriver-shard", "1/2").outcomes == "1 passed"
    assert sorted(file.name for file in project.results.glob("*.jsonl")) == [
        "results.jsonl",
        "shard-1-of-2.jsonl",
    ]


@pytest.mark.parametrize("shard", ["0/2", "3/2", "2", "a/b", "1/2/3"])
def test_a_shard_that_cannot_be_is_refused(project, shard):
    project.write("def test_one(): pass")
    run = project.run("--qtdriver-shard", shard)
    assert run.status == pytest.ExitCode.USAGE_ERROR
    assert f'--qtdriver-shard: "{shard}" is not a shard such as 2/5' in run.output


def test_a_file_that_cannot_be_read_is_an_error_of_its_shard(project, merge):
    project.write("def test_one(qtdriver): pass")
    project.write("import nothing_like_that", "test_broken.py")
    project.run("--qtdriver-shard", "1/1")
    status, told = merge(project.results)
    assert status == 1 and told["counts"]["error"] == 1
    assert "nothing_like_that" in Path(told["junit"]).read_text()
