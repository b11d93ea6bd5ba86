"""Tests that are paused: app.pause() and --qtdriver-pause-on-failure, with their page in a browser."""

import os
import subprocess
import sys

import pytest

from qtdriver import eventually

from chromium import ENTER, running_browser
from inspecting import AGENTS
from pausing import HEAD, RUNNER, pytest_on_terminal

PAUSE_LINE = HEAD.count("\n") + 1
HERE = "return document.querySelector('#source .here')?.textContent"


@pytest.fixture(scope="module")
def browser(tmp_path_factory):
    with running_browser(tmp_path_factory.mktemp("profile")) as running:
        running.size(1800, 1250)
        yield running


def show(browser, terminal):
    """Opens the page whose address is on the terminal, and waits until the paused test is there."""
    browser.go(terminal.wait_for(r"http://\S+")[0])
    browser.wait_until("return document.querySelector('#source .here') !== null", seconds=60)


def run_line(browser, text):
    """Runs a line in the console, and answers what it says."""
    browser.run("document.getElementById('log').replaceChildren()")
    browser.type_into("#line", text)
    browser.press(ENTER)
    answer = "return document.querySelector('#log pre:not(.typed):not(.quiet)')?.textContent"
    return browser.wait_until(answer, seconds=60)


def test_a_paused_test_shows_its_line_and_goes_on_by_steps_and_at_once(browser, tmp_path):
    statements = ["app.pause()", "number = 7", 'window.widget("brewButton").click()', "assert number == 7"]
    with pytest_on_terminal(tmp_path, statements) as terminal:
        show(browser, terminal)
        assert f"paused at {tmp_path / 'test_it.py'}:{PAUSE_LINE}" in terminal.output.replace("\r\n", "\n")
        assert browser.run(HERE).strip() == "app.pause()"
        assert run_line(browser, 'window.widget("brewButton").text()') == "'Brew a cup'"
        for line in statements[1:3]:
            browser.click("#next")
            eventually(lambda: (browser.run(HERE) or "").strip(), timeout=60).equals(line)
        assert run_line(browser, "number") == "7"
        browser.click("#continue")
        assert terminal.end() == 0 and "1 passed" in terminal.output
        browser.wait_until("return document.getElementById('state').textContent.includes('has ended')")


def test_a_test_that_fails_is_paused_with_its_error_and_its_variables(browser, tmp_path):
    statements = ["cups = 3", 'assert window.widget("clickCount").text() == str(cups)']
    with pytest_on_terminal(tmp_path, statements, "--qtdriver-pause-on-failure") as terminal:
        show(browser, terminal)
        assert "has failed, and is paused at" in terminal.output
        assert browser.run(HERE).strip() == statements[1]
        assert "assert '0' == '3'" in browser.text("#failure")
        assert browser.run("return document.getElementById('next').disabled")
        assert run_line(browser, "cups") == "3"
        browser.click("#continue")
        assert terminal.end() == 1 and "1 failed" in terminal.output


def run_without_terminal(folder, statements, *options, **variables):
    """Runs pytest where there is no terminal. Answers its output."""
    (folder / "test_it.py").write_text(HEAD + "".join(f"    {one}\n" for one in statements))
    command = [sys.executable, "-m", "pytest", "-q", "-p", "no:cacheprovider", "-p", "qtdriver.plugin"]
    command += [
        f"--qtdriver-build={AGENTS}",
        f"--qtdriver-output={folder / 'results'}",
        *options,
        "test_it.py",
    ]
    environment = {key: value for key, value in os.environ.items() if key != "CI"}
    return subprocess.run(
        command,
        cwd=folder,
        env={**environment, "PYTHONPATH": str(RUNNER), **variables},
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
        text=True,
        check=False,
        start_new_session=True,
    ).stdout


def test_without_a_terminal_a_test_is_not_paused_but_fails(tmp_path):
    output = run_without_terminal(tmp_path, ["app.pause()"])
    assert "PauseError: a test cannot be paused without a terminal" in output and "1 failed" in output


def test_in_ci_a_test_is_not_paused_but_fails(tmp_path):
    with pytest_on_terminal(tmp_path, ["app.pause()"], environment={"CI": "true"}) as terminal:
        assert terminal.end() == 1
        assert "PauseError: a test cannot be paused in CI" in terminal.output


def test_a_run_that_could_not_be_paused_is_refused_at_once(tmp_path):
    output = run_without_terminal(tmp_path, ["pass"], "--qtdriver-pause-on-failure")
    assert "--qtdriver-pause-on-failure: a test cannot be paused without a terminal" in output
