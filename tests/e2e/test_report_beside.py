"""The page of a large run: what went well is in files beside it, which are loaded when they are opened."""

import gc
import os
import tracemalloc
from pathlib import Path
from types import SimpleNamespace

import pytest
from PIL import Image

from qtdriver.plugin.hooks import MARK, TRACE_PROPERTY
from qtdriver.plugin.results import Results
from qtdriver.report import embedding, page
from qtdriver.report.page import write_page
from qtdriver.report.results import ResultsWriter, TestResult

from chromium import browser, quiet  # noqa: F401 (fixtures)
from madetraces import made, make_trace  # noqa: F401 (fixture)

OPEN_SECONDS = 2.0
"""A page is there after so much work of a processor; whatever else the machine has to do, it takes no more."""

SLOWEST_MACHINE = 5
"""How many times slower a machine may be."""

PAGE_BYTES = 50_000_000


def files_beside(browser):
    """Names of the files that the page has loaded since the last call."""
    requested = [address for address in browser.requested() if address.startswith("file:")]
    names = [Path(address.partition("#")[0]).name for address in requested]
    return [name for name in names if not name.endswith(".html")]


def seconds_to_open(browser, file, fragment=""):
    """Opens a page; the seconds that the browser's process for pages has worked until it was there, with its first test."""
    before = worked(browser)
    browser.open(file, fragment)
    after = worked(browser)
    return after - before if after >= before else after  # a process of its own can be started for the page


def worked(browser):
    browser.command("Performance.enable")
    metrics = browser.command("Performance.getMetrics")["metrics"]
    return next(metric["value"] for metric in metrics if metric["name"] == "ProcessTime")


def test_the_trace_of_a_test_that_went_well_is_loaded_when_it_is_opened(browser, made, tmp_path):
    for colour in ("red", "blue"):
        trace = made([dict(title=f"paint {colour}", after=f"{colour}.png")], f"a folder/{colour} & more")
        Image.new("RGB", (50, 50), colour).save(trace / f"{colour}.png")
    results = [
        TestResult(f"a.py::{name}", outcome, 1, "why", tmp_path / "a folder" / f"{colour} & more", None)
        for name, outcome, colour in (("bad", "failed", "red"), ("good", "passed", "blue"))
    ]
    write_page(results, tmp_path / "page.html")
    assert "paint red" in (tmp_path / "page.html").read_text()
    assert "paint blue" not in (tmp_path / "page.html").read_text()
    browser.open(tmp_path / "page.html")
    assert browser.texts(".steps .title") == ["paint red"] and len(browser.shown_pictures()) == 1
    assert files_beside(browser) == []
    browser.click("#tests li", "good")
    browser.wait_until("return document.querySelector('.steps .title')")
    assert browser.texts(".steps .title") == ["paint blue"]
    (picture,) = browser.shown_pictures()
    assert picture.endswith("/blue%20%26%20more/blue.png")
    assert files_beside(browser) == ["trace.js", "blue.png"]


def test_the_page_and_the_folders_can_be_moved_together(browser, tmp_path):
    trace = make_trace(tmp_path / "here" / "good" / "trace", [dict(title="wait")])
    write_page([TestResult("a.py::good", "passed", 1, "", trace, None)], tmp_path / "here" / "page.html")
    (tmp_path / "here").rename(tmp_path / "there")
    browser.open(tmp_path / "there" / "page.html")
    browser.wait_until("return document.querySelector('.steps .title')")
    assert browser.texts(".steps .title") == ["wait"]
    assert files_beside(browser) == ["trace.js"]


@pytest.mark.parametrize("content", [None, "", "qtdriverTrace(", "document.title = 'taken'"])
def test_a_trace_that_is_not_there_or_broken_is_noted(browser, made, tmp_path, content):
    trace = made([dict(title="wait")])
    if content is None:
        (trace / "trace.js").unlink()
    else:
        (trace / "trace.js").write_text(content)
    write_page([TestResult("a.py::good", "passed", 1, "", trace, None)], tmp_path / "page.html")
    browser.open(tmp_path / "page.html")
    browser.wait_until("return document.querySelector('.notes')")
    reason = "it is not there" if content is None else "it holds no data"
    assert browser.text(".notes") == f"the trace could not be loaded from trace/trace.js: {reason}"
    assert files_beside(browser) == ["trace.js"]
    browser.log("browser")  # the browser tells the same


def test_a_test_that_is_chosen_while_another_one_loads_is_the_one_that_is_shown(browser, tmp_path):
    results = [
        TestResult(f"a.py::{name}", "passed", 1, "", make_trace(tmp_path / name, [dict(title=name)]), None)
        for name in ("one", "two", "three")
    ]
    write_page(results, tmp_path / "page.html")
    browser.open(tmp_path / "page.html")
    browser.run("for (const entry of document.querySelectorAll('#tests li')) entry.click()")
    browser.wait_until("return document.querySelector('.steps .title')")
    assert browser.texts(".steps .title") == ["three"] and browser.text("h2") == "three"
    assert set(files_beside(browser)) == {"trace.js"}


def test_a_failure_for_whose_trace_there_is_no_room_is_loaded_when_it_is_opened(
    browser, made, tmp_path, monkeypatch
):
    monkeypatch.setattr(embedding.Embedding.__init__, "__defaults__", (10_000, 3_000))
    results = []
    for number in range(3):
        trace = made([dict(title=f"step {number}") for _ in range(10)], str(number))
        results.append(TestResult(f"a.py::test_{number}", "failed", 1, "why", trace, None))
    write_page(results, tmp_path / "page.html")
    browser.open(tmp_path / "page.html")
    assert browser.texts(".steps .title") == ["step 0"] * 10 and files_beside(browser) == []
    browser.click("#tests li", "test_2")
    browser.wait_until("return document.querySelector('.steps .title')")
    assert browser.texts(".steps .title") == ["step 2"] * 10 and browser.text(".message") == "why"
    assert files_beside(browser) == ["trace.js"]


@pytest.fixture
def long_list(tmp_path, monkeypatch):
    """A page that lists two of five tests that went well, beside one that failed."""
    monkeypatch.setattr(page, "KEPT_ROWS", 2)
    results = [TestResult("a.py::bad", "failed", 1, "why", None, None)]
    for number in range(5):
        trace = make_trace(tmp_path / "traces" / str(number), [dict(title=f"step {number}")])
        results.append(TestResult(f"a.py::test_</script>_{number}", "passed", 1, "", trace, None))
    write_page(results, tmp_path / "page.html")
    return tmp_path / "page.html"


def test_tests_beyond_the_first_ones_that_went_well_are_listed_when_they_are_asked_for(browser, long_list):
    browser.open(long_list)
    assert browser.text("#more") == "Show 3 more that went well"
    assert browser.texts(".filter button")[0] == "All 6" and len(browser.texts("#tests li")) == 3
    browser.click("#more")
    browser.wait_until("return document.getElementById('more').hidden")
    names = ["bad", *(f"test_</script>_{number}" for number in range(5))]
    assert browser.texts("#tests .name") == names and browser.texts("#more") == []
    browser.click("#tests li", "_4")
    browser.wait_until("return document.querySelector('.steps .title')")
    assert browser.texts(".steps .title") == ["step 4"] and browser.text("h2") == names[-1]
    address = browser.run("return location.hash")
    browser.open(long_list, address)
    browser.wait_until("return document.querySelector('.steps .title')")
    assert browser.text("h2") == names[-1]
    assert files_beside(browser) == ["page-more.js", "trace.js"]


def test_a_search_finds_tests_that_are_not_in_the_page(browser, long_list):
    browser.open(long_list)
    browser.type_into("#search", "_4")
    browser.wait_until("return document.querySelector('#tests li:not([hidden]) .name')")
    assert browser.texts("#tests .name") == ["test_</script>_4"]
    assert files_beside(browser) == ["page-more.js"]


def test_a_list_that_is_gone_is_told(browser, long_list):
    (long_list.parent / "page-more.js").unlink()
    browser.open(long_list)
    browser.click("#more")
    browser.wait_until("return document.getElementById('more').textContent.includes('loaded')")
    assert browser.text("#more") == "page-more.js could not be loaded: it is not there"
    assert files_beside(browser) == ["page-more.js"]
    browser.log("browser")


def test_a_shorter_run_leaves_no_list_of_the_one_before(long_list):
    results = [TestResult("a.py::good", "passed", 1, "", None, None)]
    write_page(results, long_list)
    assert not (long_list.parent / "page-more.js").exists()
    (long_list.parent / "page-more.js").write_text("of somebody else")
    write_page(results, long_list)
    assert (long_list.parent / "page-more.js").exists()


def test_a_page_of_two_hundred_failures_opens_at_once_and_is_of_a_bounded_size(browser, tmp_path):
    """Each has steps, requests, widgets and pictures of its own, more than the page has room for."""
    request = dict(request="7,Main,ok,,text,", asks="readProperty  Main  ok", answers="OK" * 50, error="")
    exchange = dict(request, reply="0,u:4f4b" + "20" * 100, start=0.2, seconds=0.1)
    tree = "\n".join(['window "Main"', *(f'  QLabel "label {number}"' for number in range(300))])
    results = []
    for number in range(200):
        names = [f"{number}-{step}.webp" for step in range(10)]
        steps = [
            dict(title=f"step {name}", start=0.1, after=name, widgets="a", exchanges=[exchange] * 20)
            for name in names
        ]
        trace = make_trace(tmp_path / str(number), steps, trees={"a": tree})
        for name in names:
            (trace / name).write_bytes(os.urandom(20_000))
        results.append(TestResult(f"f.py::test_{number}", "failed", 0.1, "E   Error\n" * 100, trace, None))
    write_page(results, tmp_path / "page.html")
    assert PAGE_BYTES / 2 < (tmp_path / "page.html").stat().st_size < PAGE_BYTES
    seconds = seconds_to_open(browser, tmp_path / "page.html")
    print(f"opened with {seconds:.2f} s of work, {(tmp_path / 'page.html').stat().st_size / 1e6:.1f} MB")
    assert seconds < OPEN_SECONDS * SLOWEST_MACHINE
    assert len(browser.texts("#tests li")) == 200 and len(browser.texts(".steps li")) == 10


def run_of(tmp_path, tests):
    """The results of a run of so many tests, with ten failures among them, and the memory in bytes that it has kept."""
    folder = tmp_path / str(tests)
    folder.mkdir()
    results = Results(SimpleNamespace(output=folder, shard=None), folder)
    results._writer = ResultsWriter(folder)
    tracemalloc.start()
    try:
        for number in range(tests):
            bad = number % (tests // 10) == 0
            for phase in ("setup", "call", "teardown"):
                failed = bad and phase == "call"
                report = pytest.TestReport(
                    f"tests/test_{number // 50}.py::test_{number}",
                    ("tests/a.py", number, "a"),
                    {},
                    "failed" if failed else "passed",
                    "E   why\n" * 50 if failed else None,
                    phase,
                    duration=0.01,
                )
                # One folder for all: Python keeps the names in paths, for which it needs memory now and then.
                trace = folder / "trace" if phase == "teardown" else ""
                setattr(report, MARK, {TRACE_PROPERTY: str(trace)})
                results.pytest_runtest_logreport(report)
        for name, attempts in results._tests.items():
            results._write(name, attempts)
        gc.collect()
        kept = tracemalloc.get_traced_memory()[0]
        tracemalloc.reset_peak()
        write_page(results._writer.read(), folder / "report.html")
        peak = tracemalloc.get_traced_memory()[1] - kept
    finally:
        tracemalloc.stop()
    results._writer.close(None, 1)
    return folder, kept, peak


def test_ten_thousand_tests_take_as_much_memory_and_as_large_a_page_as_fewer(browser, tmp_path):
    small, kept, peak = run_of(tmp_path, 1_500)
    large, kept_of_many, peak_of_many = run_of(tmp_path, 10_000)
    sizes = [(folder / "report.html").stat().st_size for folder in (small, large)]
    print(f"kept {kept}, {kept_of_many} bytes; for the page {peak}, {peak_of_many}; pages {sizes}")
    assert kept_of_many < kept + 20_000
    assert peak_of_many < peak * 1.2
    assert sizes[1] < sizes[0] * 1.05 and sizes[1] < 1_500_000
    make_trace(large / "trace", [dict(title="wait")])
    assert seconds_to_open(browser, large / "report.html", "#test=10000") < OPEN_SECONDS * SLOWEST_MACHINE
    browser.wait_until("return document.querySelector('.steps .title')")
    assert browser.text("h2") == "test_9999" and browser.texts(".steps .title") == ["wait"]
    assert files_beside(browser) == ["report-more.js", "trace.js"]
