"""Failures that are seen as differences, in the page of a run in a browser: snapshots, and the last run that passed."""

import json
import subprocess
import sys
from pathlib import Path

import pytest

from chromium import ESCAPE, RIGHT, browser, quiet  # noqa: F401 (fixtures)
from pytestrun import Project
from showcase import PROGRAM

TESTS = f"""
SECONDS = 3 if "BREW" in os.environ else 60

@pytest.fixture
def window(qtdriver):
    running = qtdriver.launch({str(PROGRAM)!r}, plain_look=True)
    return running.window(name="showcase")

def brew(window):
    if "BREW" in os.environ:
        window.widget("brewButton").click()
        eventually(window.widget("clickCount")).has(text="1")
    return window.widget("counterBox")

def test_picture(window):
    eventually(brew(window), timeout=SECONDS).matches_picture("counter")

def test_text(window):
    eventually(brew(window), timeout=SECONDS).looks_like("counter")

def test_order(window):
    if "BREW" in os.environ:
        window.app.connection.activate_widget("Widget:showcase", "pages/qt_tabwidget_tabbar", "Entry fields")
    window.resize(1000, 700)
    eventually(window.widget("brewButton"), timeout=SECONDS).is_visible()

def test_new(window):
    with pytest.raises(AssertionError, match="no such picture"):
        eventually(window.widget("clickCount")).matches_picture("never written")
"""


@pytest.fixture(scope="module")
def failed(tmp_path_factory):
    """A project after a run in which both snapshots differ from those of the run before; and what that run said."""
    project = Project(tmp_path_factory.mktemp("differing"))
    project.write(TESTS)
    history = "--qtdriver-history=history"
    assert project.run("--qtdriver-update", "-k", "not new", history).outcomes == "3 passed, 1 deselected"
    assert not list(
        project.results.glob("*test_*")
    ), "what is kept of a test that passed is in the other folder"
    project.environment["BREW"] = "1"
    run = project.run(history)
    assert run.outcomes == "3 failed, 1 passed"
    return project, run


def choose(browser, project, test):
    browser.open(project.results / "report.html")
    browser.click("#tests li", test)


def test_the_three_pictures_stand_side_by_side_where_the_step_failed(browser, failed):
    project, _ = failed
    choose(browser, project, "picture")
    browser.run("document.querySelector('.differs').remove()")
    assert browser.texts(".pictures figcaption") == ["Expected", "Actual", "What differs"]
    expected, actual, difference = browser.shown_pictures()
    assert len({expected, actual, difference}) == 3
    assert browser.texts(".modes button")[0] == "Snapshot"
    browser.click(".modes button", "After")
    assert browser.texts(".pictures figcaption") == ["The screen after the step"]
    browser.click(".steps li", "brewButton")
    assert "Snapshot" not in browser.texts(".modes button"), "the other steps have none"


def test_each_of_them_is_shown_in_its_full_size(browser, failed):
    project, _ = failed
    choose(browser, project, "picture")
    browser.shown_pictures()
    browser.run("document.querySelectorAll('.compared button')[1].click()")
    assert browser.text("#zoom .zoom-bar span").startswith("Actual (2 of 4")
    browser.press(RIGHT)
    assert browser.text("#zoom .zoom-bar span").startswith("What differs (3 of 4")
    browser.press(ESCAPE)


def test_the_bundle_has_the_pictures_and_a_test_that_passed_leaves_none(failed):
    project, run = failed
    folder = project.bundle("test_picture") / "pictures"
    names = ["counter.actual.png", "counter.difference.png", "counter.expected.png"]
    assert sorted(path.name for path in folder.iterdir()) == names
    told = f"pictures: {folder.relative_to(project.folder)}/counter.expected.png, counter.actual.png"
    assert told in run.output
    assert not list(project.results.glob("*test_new*"))


def test_programs_read_where_the_pictures_are(failed):
    project, _ = failed
    command = [sys.executable, "-m", "qtdriver", "trace", project.bundle("test_picture"), "--json"]
    told = subprocess.run(
        command, check=True, capture_output=True, text=True, env={"PYTHONPATH": str(project.runner)}
    )
    step = json.loads(told.stdout)["steps"][-1]
    assert set(step["comparison"]) == {"expected", "actual", "difference"}
    assert all(Path(path).is_file() for path in step["comparison"].values())


def test_the_page_names_the_first_step_that_differs_from_the_last_run_that_passed(browser, failed):
    project, _ = failed
    choose(browser, project, "order")
    assert browser.text(".differs code") == '1. window(name="showcase").resize(1000, 700)'
    assert browser.text(".differs li") == "2 widgets differ"
    assert browser.text(".differs pre").splitlines() == [
        '- ButtonsPage "buttonsPage", which is hidden now',
        '+ EntryPage "entryPage", which was hidden',
    ]
    assert browser.texts(".differs figcaption") == ["The run that passed", "This run"]
    pictures = browser.run("return [...document.querySelectorAll('.differs img')].map((one) => one.src)")
    assert len(set(pictures)) == 2
    assert browser.text(".evidence .step-title").startswith("2.")
    browser.click(".differs button", "Show step 1")
    assert browser.text(".evidence .step-title").startswith("1.")
    assert browser.run("return document.querySelectorAll('.differs').length") == 1


def test_the_terminal_and_programs_are_told_it_too(failed):
    project, run = failed
    assert "the first step that differs from the last run that passed (" in run.output
    command = [sys.executable, "-m", "qtdriver", "trace", project.bundle("test_order"), "--json"]
    told = subprocess.run(
        command, check=True, capture_output=True, text=True, env={"PYTHONPATH": str(project.runner)}
    )
    differs = json.loads(told.stdout)["differs"]
    assert (
        differs["step"] == 1
        and Path(differs["picture"]).is_file()
        and Path(differs["passed_picture"]).is_file()
    )


def test_lines_that_are_gone_and_new_are_told_apart_by_colour_in_a_text_snapshot(browser, failed):
    project, _ = failed
    choose(browser, project, "text")
    for place in (".message", ".step-error"):
        removed, added = (browser.texts(f"{place} .{kind}") for kind in ("removed", "added"))
        assert ["'0'" in line for line in removed if "#clickCount" in line] == [True]
        assert ["'1'" in line for line in added if "#clickCount" in line] == [True]
    colours = browser.run(
        "return ['removed', 'added'].map((kind) => getComputedStyle(document.querySelector(`.step-error .${kind}`)).color)"
    )
    assert len(set(colours)) == 2
