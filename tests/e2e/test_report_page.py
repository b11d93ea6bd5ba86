"""The page of a run in a browser: what a user sees, clicks and presses there."""

import json
import re

import pytest

from qtdriver import WindowNotFoundError
from qtdriver.report.page import TestResult, write_page
from qtdriver.trace.recorder import Recorder

from chromium import DOWN, ESCAPE, HOME, RIGHT, UP, browser, quiet  # noqa: F401 (fixtures)
from showcase import running

NARROWEST_BAR = 3
"""Pixels: a shorter step is still seen."""


@pytest.fixture(scope="module")
def order_page(tmp_path_factory):
    """The page of a run with a test of the showcase that failed, recorded for real, and tests without a trace."""
    folder = tmp_path_factory.mktemp("run")
    recorder = Recorder(folder / "traces" / "order")
    with running(timeout=0.3) as (driver, app):
        driver.listeners.append(recorder)
        window = app.window(name="showcase")
        window.widget("brewButton").activate()
        window.widget("clickCount").text()
        window.widget("pages/qt_tabwidget_tabbar").select("Entry fields")
        with pytest.raises(WindowNotFoundError) as caught:
            app.window("Roostery").widget("customerEdit").enter("Ada")
        recorder.close(keep=True)
    message = f"E   qtdriver.errors.WindowNotFoundError: {caught.value}"
    results = [
        TestResult("tests/test_menu.py::test_first", "passed", 0.25, "", None, None),
        TestResult("tests/test_tray.py::test_icon", "skipped", 0.0, "no tray here", None, None),
        TestResult(
            "tests/test_order.py::test_an_order",
            "failed",
            1.5,
            message,
            folder / "traces" / "order",
            folder / "bundles" / "an order",
        ),
        TestResult("tests/test_menu.py::test_second", "passed", 61.0, "", None, None),
        TestResult("tests/test_menu.py::test_setup", "error", 0.1, "fixture 'nix' not found", None, None),
    ]
    write_page(results, folder / "report.html")
    return folder / "report.html"


def step_titles(browser):
    return [re.sub(r"\s+", "", title) for title in browser.texts(".steps .title")]


def chosen_step(browser):
    return browser.text(".evidence .step-title").split(".")[0]


def test_tests_that_failed_come_first_and_the_others_in_their_order(browser, order_page):
    browser.open(order_page)
    assert browser.texts("#tests .name") == [
        "test_an_order",
        "test_setup",
        "test_icon",
        "test_first",
        "test_second",
    ]
    assert browser.texts("#tests .time") == ["1.5 s", "100 ms", "0 ms", "250 ms", "1 min 1 s"]
    assert browser.text(".summary .total") == "5 tests"
    assert browser.texts(".summary .count") == ["1 failed", "1 error", "1 skipped", "2 passed"]
    assert browser.run("return document.title") == "1 failed, 1 error, 1 skipped, 2 passed - test report"


def test_the_first_failure_is_open_with_its_message_its_error_and_its_bundle(browser, order_page):
    browser.open(order_page)
    assert browser.text("h2") == "test_an_order"
    assert "Window (Roostery) not found" in browser.text(".message")
    assert browser.text(".step-error").startswith("Window (Roostery) not found\nwaited 0.3 s")
    assert '"Roastery" (MainWindow)' in browser.text(".step-error")
    href = browser.run("return document.querySelector('.facts a').getAttribute('href')")
    assert (browser.text(".facts a"), href) == ("bundles/an order", "bundles/an%20order")


def test_the_steps_are_listed_in_order_and_the_failed_one_is_chosen(browser, order_page):
    browser.open(order_page)
    assert step_titles(browser) == [
        'window(name="showcase").widget("brewButton").activate()',
        """window(name="showcase").widget("clickCount").text()""",
        """window(name="showcase").widget("pages/qt_tabwidget_tabbar").select('Entryfields')""",
        """window("Roostery").widget("customerEdit").enter('Ada')""",
    ]
    assert chosen_step(browser) == "4"
    assert browser.texts(".steps .problem") == ["Window (Roostery) not found"]


def test_bars_are_as_long_and_as_far_apart_as_the_steps(browser, order_page):
    browser.open(order_page)
    trace = json.loads((order_page.parent / "traces" / "order" / "trace.json").read_text())
    track, *boxes = browser.run(
        """return [...document.querySelectorAll('.track, .bar')].map((element) => element.getBoundingClientRect())
            .map((box) => [box.left, box.width])"""
    )
    assert len(boxes) == len(trace["steps"]) == 4
    scale = track[1] / trace["seconds"]
    for step, (left, width) in zip(trace["steps"], boxes):
        assert left - track[0] == pytest.approx(step["start"] * scale, abs=1)
        assert width == pytest.approx(max(step["seconds"] * scale, NARROWEST_BAR), abs=1)
    assert boxes[3][1] > 2 * NARROWEST_BAR, "the step that waited is long enough to be measured"
    assert [left for left, _ in boxes] == sorted(left for left, _ in boxes)
    assert browser.run("return document.querySelectorAll('.bar.failed').length") == 1


def test_choosing_a_step_by_a_click_shows_its_own_picture(browser, order_page):
    browser.open(order_page)
    browser.click(".steps li", "brewButton")
    browser.click(".modes button", "After")
    after_press = browser.shown_pictures()
    browser.click(".steps li", "Entry fields")
    after_tab = browser.shown_pictures()
    assert len(after_press) == len(after_tab) == 1 and after_press != after_tab
    browser.click(".modes button", "Before")
    assert browser.shown_pictures() != after_tab
    browser.click(".modes button", "Side by side")
    assert len(browser.shown_pictures()) == 2 and browser.shown_pictures()[1:] == after_tab


def test_arrow_keys_choose_steps_and_tests(browser, order_page):
    browser.open(order_page)
    browser.run("document.querySelector('.steps ol').focus()")
    browser.press(UP, UP)
    assert chosen_step(browser) == "2"
    browser.press(HOME, DOWN, DOWN)
    assert chosen_step(browser) == "3"
    browser.run("document.querySelector('#tests').focus()")
    browser.press(DOWN)
    assert browser.text("h2") == "test_setup"
    assert browser.text(".message") == "fixture 'nix' not found"
    active = browser.run("return document.querySelector('#tests').getAttribute('aria-activedescendant')")
    assert browser.run("return document.getElementById(arguments[0]).ariaSelected", active) == "true"


def test_a_bar_of_the_time_line_chooses_its_step(browser, order_page):
    browser.open(order_page)
    browser.run("document.querySelectorAll('.bar')[0].click()")
    assert chosen_step(browser) == "1"


def test_a_click_on_a_picture_shows_it_in_full_size_until_escape(browser, order_page):
    browser.open(order_page)
    browser.click(".steps li", "Entry fields")
    browser.click(".modes button", "After")
    browser.click(".pictures button")
    width = "const one = document.querySelector('#zoom img'); return one && one.complete && one.naturalWidth"
    assert browser.wait_until(width) == browser.run("return document.querySelector('#zoom img').width")
    first = browser.run("return document.querySelector('#zoom img').src")
    browser.press(RIGHT, RIGHT)
    assert browser.text("#zoom .zoom-bar span").startswith("Before")
    assert browser.run("return document.querySelector('#zoom img').src") != first
    browser.press(ESCAPE)
    assert browser.texts("#zoom img") == []


def test_requests_and_replies_are_told_with_their_times(browser, order_page):
    browser.open(order_page)
    browser.click(".steps li", "clickCount")
    browser.click(".tabs button", "Requests")
    asked = browser.texts(".requests tbody summary")
    assert asked[0] == "readProperty  Widget:showcase  clickCount  text"
    first = browser.texts(".requests tbody tr")[0]
    assert re.search(r"^[\d.]+ ms\s+[\d.]+ ms\s", first) and first.rstrip().endswith("1")
    browser.click(".requests summary", "readProperty")
    assert "< 0,u:31" in browser.texts(".requests details")[0]


def test_the_widget_tree_unfolds_marks_changes_and_finds(browser, order_page):
    browser.open(order_page)
    browser.click(".steps li", "Entry fields")
    browser.click(".tabs button", "Widgets")
    assert 'window "Roastery"' in browser.text(".tree")
    assert browser.run("return document.querySelectorAll('.tree .new:not(.unseen)').length") > 0
    assert 'QLineEdit "customerEdit"' in browser.text(".tree")
    assert '"brewButton"' not in browser.text(".tree")  # its page is hidden
    browser.click(".tree-controls label")
    browser.type_into(".tree-controls input", '"brewb')
    assert browser.texts(".tree .leaf") == ['QPushButton "brewButton" hidden']
    browser.click(".tree .window > summary")
    assert browser.texts(".tree .leaf") == []


def test_the_list_is_filtered_by_outcome_and_searched(browser, order_page):
    browser.open(order_page)
    assert browser.texts(".filter button") == ["All 5", "Failed 2", "Passed 2", "Skipped 1"]
    browser.click(".filter button", "Failed")
    assert browser.texts("#tests .name") == ["test_an_order", "test_setup"]
    browser.press("/", *"menu")
    assert browser.texts("#tests .name") == ["test_setup"]
    browser.click(".filter button", "All")
    assert browser.texts("#tests .name") == ["test_setup", "test_first", "test_second"]
    browser.type_into("#search", "nothing like it")
    assert browser.texts("#tests .name") == [] and browser.text("#none") == "No test fits."


def test_the_address_leads_to_a_test_and_a_step(browser, order_page):
    browser.open(order_page, "#test=1&step=2")
    assert chosen_step(browser) == "2"
    browser.click("#tests li", "test_second")
    address = browser.run("return location.hash")
    browser.open(order_page, address)
    assert browser.text("h2") == "test_second"
    assert "No trace of this test was kept." in browser.text("#detail")


def test_markup_that_gets_into_the_page_would_not_run(browser, order_page):
    """The page's own policy allows its one script only."""
    browser.open(order_page)
    browser.run(
        """const injected = document.createElement('script');
        injected.textContent = "document.title = 'taken'";
        document.body.append(injected)"""
    )
    assert browser.run("return document.title") != "taken"
    (refusal,) = browser.log("browser")
    assert "Content Security Policy" in refusal["message"]


@pytest.mark.parametrize("scheme, light", [("light", True), ("dark", False)])
@pytest.mark.parametrize("width", [360, 800, 1400])
def test_every_width_and_scheme_is_readable_without_scrolling_sideways(
    browser, order_page, width, scheme, light
):
    browser.size(width, 900, scheme)
    try:
        browser.open(order_page)
        assert browser.run("return document.documentElement.scrollWidth") <= width
        ground = browser.run("return getComputedStyle(document.body).backgroundColor")
        assert (min(map(int, re.findall(r"\d+", ground))) > 128) == light
        assert browser.run(CONTRASTS) == []
    finally:
        browser.size(1400, 1000)


CONTRASTS = """
const luminance = (colour) => {
  const [r, g, b] = colour.match(/[\\d.]+/g).map(Number).map((v) => v / 255)
      .map((v) => (v <= 0.03928 ? v / 12.92 : ((v + 0.055) / 1.055) ** 2.4));
  return 0.2126 * r + 0.7152 * g + 0.0722 * b;
};
const ground = (one) => {
  for (; one; one = one.parentElement) {
    const colour = getComputedStyle(one).backgroundColor;
    if (!/, 0\\)$/.test(colour)) return colour;
  }
  return 'rgb(255, 255, 255)';
};
return [...document.querySelectorAll('body *')]
  .filter((one) => one.checkVisibility() && !one.disabled && !one.closest('.skip, dialog, script')
      && [...one.childNodes].some((node) => node.nodeType === 3 && node.data.trim()))
  .map((one) => {
    const [dark, bright] = [luminance(getComputedStyle(one).color), luminance(ground(one))].sort((a, b) => a - b);
    return [one.className + ': ' + one.textContent.slice(0, 30), (bright + 0.05) / (dark + 0.05)];
  })
  .filter(([text, contrast]) => contrast < 4.5)
"""
"""The texts whose contrast is below what the guidelines for accessible pages ask for, with their contrast."""
