"""The page for all kinds of results and traces: hostile texts, much of everything, nothing at all."""

import json
from dataclasses import replace

import pytest
from PIL import Image

from qtdriver.crashes.stacks import Frame, Stacks, Thread
from qtdriver.report import embedding, page
from qtdriver.report.page import TestResult, in_script, readable_duration, write_page

from chromium import DOWN, browser, quiet  # noqa: F401 (fixtures)
from madetraces import made  # noqa: F401 (fixture)

HOSTILE = (
    "</script><script>document.title='taken'</script><!-- \"quotes' & \x00 NUL \x1b[31m <b>bold</b> \ud800"
)


def test_hostile_texts_are_shown_and_do_nothing(browser, made, tmp_path):
    exchange = dict(
        request=HOSTILE, asks=HOSTILE, reply=HOSTILE, answers="", start=0.1, seconds=0.1, error=""
    )
    step = dict(title=HOSTILE, error=HOSTILE, exchanges=[exchange], widgets="a")
    trace = made([step], trees={"a": f"window {HOSTILE}\n  {HOSTILE}"}, notes=[HOSTILE])
    result = TestResult(
        f"{HOSTILE}::{HOSTILE}",
        "failed",
        1.0,
        HOSTILE,
        trace,
        tmp_path / HOSTILE.replace("\0", "").replace("\ud800", "\udcff"),
    )
    write_page([result], tmp_path / "page.html")
    browser.open(tmp_path / "page.html")
    readable = (
        "</script><script>document.title='taken'</script><!-- \"quotes' & \u2400 NUL \u241b[31m <b>bold</b>"
    )
    assert browser.run("return document.title") == "1 failed - test report"
    for selector in (
        "h2",
        ".message",
        ".steps .title",
        ".step-title",
        ".step-error",
        ".requests summary",
        ".notes",
    ):
        assert readable in browser.text(selector), selector
    browser.click(".tabs button", "Widgets")
    assert readable in browser.text(".tree .window > summary")
    assert browser.run("return document.querySelectorAll('b').length") == 0
    assert readable in browser.text("#tests .name")


def test_left_out_exchanges_are_counted(browser, made, tmp_path):
    exchanges = [
        dict(
            request=f"{n}",
            asks=f"ask {n}",
            reply="5,Widget () not found",
            answers="",
            start=0.1,
            seconds=0.1,
            error="",
        )
        for n in range(10)
    ]
    trace = made([dict(title="waits", exchanges=exchanges, skipped=37)])
    write_page([TestResult("a::b", "failed", 1.0, "", trace, None)], tmp_path / "page.html")
    browser.open(tmp_path / "page.html")
    rows = browser.texts(".requests tbody tr")
    assert len(rows) == 11 and rows[5] == "37 more like these were left out"
    assert "Requests 47" in browser.texts(".tabs button")


def test_pictures_beyond_the_room_of_a_page_are_named_instead(browser, made, tmp_path, monkeypatch):
    traces = []
    for name, colour in (("one", "red"), ("two", "blue")):
        traces.append(made([dict(title="acts", after=f"{colour}.png")], name))
        Image.new("RGB", (50, 50), colour).save(traces[-1] / f"{colour}.png")
    monkeypatch.setattr(embedding.Embedding.__init__, "__defaults__", (200, 10_000))
    results = [TestResult(f"a::{trace.name}", "failed", 1.0, "", trace, None) for trace in traces]
    write_page(results, tmp_path / "page.html")
    browser.open(tmp_path / "page.html")
    assert len(browser.shown_pictures()) == 1
    browser.click("#tests li", "two")
    assert browser.text(".nothing") == "This screenshot had no room in the page. It is two/blue.png."


@pytest.mark.parametrize("widgets, shown", [("a", "After"), ("", "Before")])
def test_an_application_that_has_ended_is_shown_as_it_was_before(browser, made, tmp_path, widgets, shown):
    """Its widgets cannot be listed, and the screen without it tells nothing."""
    trace = made(
        [dict(title="act", error="no", before="red.png", after="red.png", widgets=widgets)], trees={"a": ""}
    )
    Image.new("RGB", (60, 40), "red").save(trace / "red.png")
    write_page([TestResult("a.py::bad", "failed", 1.0, "", trace, None)], tmp_path / "page.html")
    browser.open(tmp_path / "page.html")
    assert browser.text(".modes [aria-pressed=true]") == shown
    browser.click(".modes button", "Side by side")
    assert len(browser.shown_pictures()) == 2


def test_the_stack_of_a_crash_is_folded_and_named_by_the_first_call_of_the_application(browser, tmp_path):
    brewing = (Frame("raise", "", "/lib/libc.so.6"), Frame("Order::brew()", "order.cpp:12", ""))
    crash = Stacks((Thread(7, "coffee", brewing), Thread(8, "pump", (Frame("pause", "", "/lib/libc.so.6"),))))
    for name, stacks in (("stack.txt", crash), ("stack-2.txt", Stacks(crash.threads[1:]))):
        (tmp_path / name).write_text("\n".join(stacks.lines()))
    write_page([TestResult("a.py::bad", "failed", 1.0, "", None, tmp_path)], tmp_path / "page.html")
    browser.open(tmp_path / "page.html")
    first, second = browser.texts(".stack summary")
    assert first == "Stack of the application: Order::brew() at order.cpp:12" and "pause" in second
    assert browser.run("return document.querySelector('.stack').open") is False
    browser.click(".stack summary", "Order::brew()")
    assert browser.text(".stack[open] pre").split() == " ".join(crash.lines()).split()


@pytest.fixture
def flaky_page(made, tmp_path):
    """A page with a test that passed at its third attempt, and one that failed twice."""
    attempts = []
    for number, colour in enumerate(("red", "blue", "green"), 1):
        trace = made([dict(title=f"act {number}", after=f"{colour}.png"), dict(title="wait")], colour)
        Image.new("RGB", (60, 40), colour).save(trace / f"{colour}.png")
        outcome, message = ("passed", "") if number == 3 else ("failed", f"line\nE   Error: number {number}")
        bundle = None if number == 3 else tmp_path / f"bundle-{number}"
        attempts.append(TestResult("a.py::flaky", outcome, number / 4, message, trace, bundle))
    flaky = replace(attempts[2], outcome="flaky", earlier=tuple(attempts[:2]))
    failed = replace(attempts[1], node_id="a.py::failed", earlier=(attempts[0],))
    write_page([TestResult("a.py::good", "passed", 1, "", None, None), flaky, failed], tmp_path / "page.html")
    return tmp_path / "page.html"


def test_the_attempts_at_a_test_are_shown_side_by_side(browser, flaky_page):
    browser.open(flaky_page)
    assert browser.texts("#tests .name") == ["failed", "flaky", "good"]
    assert browser.texts(".summary .count") == ["1 failed", "1 flaky", "1 passed"]
    assert browser.texts(".filter button") == ["All 3", "Failed 1", "Flaky 1", "Passed 1", "Skipped 0"]
    browser.click("#tests li", "flaky")
    assert browser.text(".facts .outcome") == "flaky"
    assert browser.texts(".attempt-title") == ["Attempt 1", "Attempt 2", "Attempt 3"]
    assert browser.texts(".attempt .outcome") == ["failed", "failed", "passed"]
    assert browser.texts(".attempt .complaint") == ["Error: number 1", "Error: number 2"]
    tops = browser.run("return [...document.querySelectorAll('.attempt')].map((one) => one.offsetTop)")
    assert len(set(tops)) == 1, "they are in one row"
    pictures = browser.run("return [...document.querySelectorAll('.attempt img')].map((one) => one.src)")
    assert len(set(pictures)) == 3


def test_choosing_an_attempt_shows_its_steps_its_message_and_its_bundle(browser, flaky_page):
    browser.open(flaky_page)
    browser.click("#tests li", "flaky")
    assert "number 2" in browser.text(".message") and browser.text(".facts a") == "bundle-2"
    browser.click(".attempt", "Attempt 1")
    assert "number 1" in browser.text(".message") and browser.text(".facts a") == "bundle-1"
    assert browser.texts(".steps .title") == ["act 1", "wait"]
    browser.click(".attempt", "Attempt 3")
    assert browser.texts(".message") == browser.texts(".facts a") == []
    assert browser.texts(".steps .title") == ["act 3", "wait"]
    address = browser.run("return location.hash")
    browser.open(flaky_page, address)
    pressed = browser.texts(".attempt[aria-pressed=true] .attempt-title")
    assert (browser.text("h2"), pressed) == ("flaky", ["Attempt 3"])


def test_a_test_without_another_attempt_shows_none(browser, flaky_page):
    browser.open(flaky_page, "#test=3")
    assert browser.text("h2") == "good" and browser.texts(".attempt") == []


def test_the_page_says_which_worker_has_run_a_test_and_finds_those_of_one(
    browser, made, tmp_path, monkeypatch
):
    monkeypatch.setattr(page, "KEPT_ROWS", 1)
    results = [
        TestResult("a.py::bad", "failed", 1, "", made([dict(title="act")]), None, worker="gw0 on lab2"),
        TestResult("a.py::good", "passed", 1, "", None, None, worker="gw1"),
        TestResult("a.py::beside", "passed", 1, "", None, None, worker="gw0"),
        TestResult("a.py::alone", "passed", 1, "", None, None),
    ]
    write_page(results, tmp_path / "page.html")
    browser.open(tmp_path / "page.html")
    assert "worker gw0 on lab2" in browser.texts(".facts span")
    browser.click("#more")
    browser.wait_until("return document.getElementById('tests').children.length === 4")
    assert browser.texts("#tests .worker") == ["gw0 on lab2", "gw1", "gw0"]
    browser.type_into("#search", "gw0")
    assert browser.texts("#tests .name") == ["bad", "beside"]
    assert "page-more.js" in browser.requested()[-1]


def test_of_an_application_that_has_not_started_the_page_shows_what_was_kept(browser, made, tmp_path):
    bundle = tmp_path / "bundle"
    bundle.mkdir()
    for name, text in (("stderr", "no licence"), ("stdout", ""), ("windows", "a dialog"), ("error", "why")):
        (bundle / f"{name}.txt").write_text(text)
    (bundle / ".qtdriver").touch()
    Image.new("RGB", (50, 50), "red").save(bundle / "screenshot.png")
    write_page([TestResult("a.py::mute", "failed", 1.0, "", made([]), bundle)], tmp_path / "page.html")
    browser.open(tmp_path / "page.html")
    assert browser.texts(".seen h3") == ["stderr.txt", "windows.txt"]
    assert browser.texts(".seen pre") == ["no licence", "a dialog"]
    assert len(browser.shown_pictures()) == 1
    assert browser.texts(".files a") == [
        "error.txt", "screenshot.png", "stderr.txt", "stdout.txt", "windows.txt"
    ]  # fmt: skip
    links = browser.run("return [...document.querySelectorAll('.files a')].map((one) => one.href)")
    assert links[0] == (bundle / "error.txt").as_uri()


@pytest.mark.parametrize("margin", ["", "E       ", "E          "], ids=["step", "pytest", "soft"])
def test_entries_of_lists_are_no_lines_that_are_gone(browser, tmp_path, margin):
    """They begin with the mark of one, but further in."""
    lines = [
        "window: it differs (- expected, + shown):",
        "...",
        "   tab bar",
        "     - Buttons",
        "-    - Lists",
        "+    - Tables",
    ]
    message = "\n".join(f"{margin}{line}" for line in lines)
    write_page([TestResult("a.py::b", "failed", 1.0, message, None, None)], tmp_path / "page.html")
    browser.open(tmp_path / "page.html")
    shown = {kind: browser.texts(f".message .{kind}") for kind in ("removed", "added")}
    assert [[line.removeprefix("E").strip() for line in texts] for texts in shown.values()] == [
        ["-    - Lists"], ["+    - Tables"]
    ]  # fmt: skip


def test_a_large_picture_is_embedded_smaller(made, tmp_path):
    trace = made([dict(title="acts", after="large.png")])
    Image.effect_noise((2000, 1500), 90).convert("RGB").save(trace / "large.png")
    write_page([TestResult("a::b", "failed", 1.0, "", trace, None)], tmp_path / "page.html")
    assert (tmp_path / "page.html").stat().st_size < (trace / "large.png").stat().st_size / 3


@pytest.mark.parametrize("text", ["", "{", "[]", '{"steps": 5}', '{"steps": [{"before": "../../x.png"}]}'])
def test_a_trace_that_cannot_be_read_is_noted(browser, tmp_path, text):
    (tmp_path / "trace").mkdir()
    (tmp_path / "trace" / "trace.json").write_text(text)
    write_page([TestResult("a::b", "failed", 1.0, "why", tmp_path / "trace", None)], tmp_path / "page.html")
    browser.open(tmp_path / "page.html")
    assert browser.text(".notes").startswith("the trace could not be read: ")
    assert browser.text(".message") == "why"


def test_five_hundred_tests_open_at_once_and_share_their_pictures(browser, made, tmp_path):
    Image.effect_noise((600, 400), 50).convert("RGB").save(tmp_path / "noise.webp", quality=80)
    results = []
    for number in range(500):
        steps = [dict(title=f"step {n}", start=n / 10, after="noise.webp") for n in range(20)]
        trace = made(steps, f"t{number}")
        (trace / "noise.webp").write_bytes((tmp_path / "noise.webp").read_bytes())
        results.append(TestResult(f"f.py::test_{number}", "failed", 0.1, "", trace, None))
    write_page(results, tmp_path / "page.html")
    browser.open(tmp_path / "page.html")
    assert browser.run("return performance.timing.domComplete - performance.timing.responseStart") < 5000
    assert (tmp_path / "page.html").stat().st_size < 4_000_000
    assert browser.run("return document.querySelectorAll('#tests li').length") == 500
    assert browser.run("return document.images.length") == 1
    browser.run("document.querySelector('#tests').focus()")
    browser.press(DOWN)
    assert browser.text("h2") == "test_1" and len(browser.texts(".steps li")) == 20


def test_a_run_without_tests_has_a_page(browser, tmp_path):
    write_page([], tmp_path / "deep" / "page.html")
    browser.open(tmp_path / "deep" / "page.html")
    assert browser.text(".summary .total") == "0 tests"
    assert browser.text("#detail") == "There was no test."


def test_data_in_a_script_element_cannot_end_it():
    assert json.loads(in_script({"text": HOSTILE})) == {"text": HOSTILE}
    assert not set(in_script({"text": HOSTILE})) & set("<>&")


@pytest.mark.parametrize(
    "seconds, text",
    [
        (0, "0 ms"),
        (0.9994, "999 ms"),
        (0.9996, "1.0 s"),
        (59.94, "59.9 s"),
        (59.96, "1 min 0 s"),
        (3725, "62 min 5 s"),
    ],
)
def test_durations_are_written_for_a_person(seconds, text):
    assert readable_duration(seconds) == text
