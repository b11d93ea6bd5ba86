"""Failures that are seen as differences: snapshots of pictures and texts, in the page of a run in a browser."""

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

def test_new(window):
    with pytest.raises(AssertionError, match="no such picture"):
        eventually(window.widget("clickCount")).matches_picture("never written")
"""


@pytest.fixture(scope="module")
def failed(tmp_path_factory):
    """A project after a run in which both snapshots differ from those of the run before; and what that run said."""
    project = Project(tmp_path_factory.mktemp("differing"))
    project.write(TESTS)
    assert project.run("--qtdriver-update", "-k", "not new").outcomes == "2 passed, 1 deselected"
    project.environment["BREW"] = "1"
    run = project.run()
    assert run.outcomes == "2 failed, 1 passed"
    return project, run


def choose(browser, project, test):
    browser.open(project.results / "report.html")
    browser.click("#tests li", test)


def test_the_three_pictures_stand_side_by_side_where_the_step_failed(browser, failed):
    project, _ = failed
    choose(browser, project, "picture")
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
