"""Long work on a terminal: it is told while it lasts, and nothing of it stays. In a pipe nothing is told."""

import os
import shlex
import subprocess
import sys
import textwrap
from pathlib import Path

import pyte
import pytest

import winestandin
from showcase import AGENTS, PROGRAM
from terminal import in_terminal
from windowsprograms import Workshop, agents

ROOT = Path(__file__).resolve().parents[2]
QTDRIVER = str(ROOT / "scripts" / "qtdriver")
PYTEST = ["/usr/bin/python3", "-m", "pytest", "-p", "no:cacheprovider", "-p", "qtdriver.plugin"]
SIZE = (100, 300)


def environment(**variables):
    columns, lines = map(str, SIZE)
    return {**os.environ, "PYTHONPATH": str(ROOT / "runner"), "COLUMNS": columns, "LINES": lines, **variables}


def slowly(folder, seconds, *command):
    """A program that starts another one after so many seconds."""
    script = folder / "slow"
    script.write_text(f"#!/bin/sh\nsleep {seconds}\nexec {shlex.join(map(str, command))}\n")
    script.chmod(0o755)
    return script


def shown(seen):
    """The lines of the screen in the end, without empty ones."""
    screen = pyte.Screen(*SIZE)
    pyte.Stream(screen).feed(seen)
    return [line.rstrip() for line in screen.display if line.strip()]


def on_terminal(command, folder, *awaited, **variables):
    """All that a command has written, after each of the texts was awaited, and the screen in the end."""
    words = shlex.join(map(str, command))
    # The shell keeps the terminal open until the last text has been read.
    script = f"cd {shlex.quote(str(folder))}; {words}; echo ended with $?; read line"
    with in_terminal(["sh", "-c", script], environment(**variables)) as (_, screen):
        for text in awaited:
            screen.wait_for(text, 60)
        screen.wait_for("ended with ", 60)
        return screen.seen, shown(screen.seen)


def in_pipe(command, folder, **variables):
    """All that a command writes where nobody looks."""
    ended = subprocess.run(
        list(map(str, command)),
        cwd=folder,
        env=environment(TERM="xterm", **variables),
        stdin=subprocess.DEVNULL,
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
        text=True,
    )
    return ended.stdout


@pytest.mark.parametrize("options", [[], ["--background", "--name", "slow"]])
def test_waiting_for_the_agent_is_told_and_gone_afterwards(tmp_path, options):
    slow = slowly(tmp_path, 3, "sleep", "300")
    command = [QTDRIVER, "run", *options, "--timeout", "4", "--qt", "5", "--build", AGENTS, "--", slow]
    told = f"waiting for the agent in {slow}"
    seen, screen = on_terminal(command, tmp_path, f"{told}, 1 s", f"{told}, 2 s")
    assert not any(told in line for line in screen)
    assert "has not connected" in "".join(screen) and screen[-1] == "ended with 1"
    alone = in_pipe(command, tmp_path)
    assert told not in alone and "\x1b" not in alone


def test_an_application_that_is_there_at_once_is_waited_for_without_a_word(tmp_path):
    command = [QTDRIVER, "run", "--timeout", "30", "--build", AGENTS, "--", PROGRAM]
    with in_terminal(list(map(str, command)), environment()) as (_, screen):
        screen.wait_for("connected to process", 60)
        assert "\x1b7" not in screen.seen.partition("connected to process")[0]


def test_a_dumb_terminal_is_spared(tmp_path):
    command = [
        "env",
        "TERM=dumb",
        QTDRIVER,
        "run",
        "--timeout",
        "2",
        "--qt",
        "5",
        "--build",
        AGENTS,
        "--",
        "sleep",
        "9",
    ]
    seen, _ = on_terminal(command, tmp_path)
    assert "waiting" not in seen and "\x1b" not in seen


def test_a_long_text_does_not_leave_a_part_behind(tmp_path):
    folder = tmp_path / ("deep" * 30)
    folder.mkdir()
    slow = slowly(folder, 3, "sleep", "300")
    command = [QTDRIVER, "run", "--timeout", "3", "--qt", "5", "--build", AGENTS, "--", slow]
    _, screen = on_terminal(command, tmp_path, "waiting for the agent in")
    assert not any("waiting for the agent" in line for line in screen)


def test_the_run_of_the_first_test_is_told(tmp_path):
    (tmp_path / "tests").mkdir()
    (tmp_path / "tests" / "test_slow.py").write_text("import time\n\ndef test_slow():\n    time.sleep(2)\n")
    command = [QTDRIVER, "init", "tests", "--build", AGENTS, "--", PROGRAM]
    seen, screen = on_terminal(command, tmp_path, "running the tests of tests, 1 s", "2 passed")
    assert not any("running the tests" in line for line in screen)
    (tmp_path / "more").mkdir()
    assert "running the tests" not in in_pipe([*command[:2], "more", *command[3:]], tmp_path)


def test_wines_first_start_is_told(tmp_path, monkeypatch):
    (tmp_path / "app").mkdir()
    workshop = Workshop(tmp_path / "app")
    program = workshop.program(workshop.import_library("Qt5Widgets.dll"))
    workshop.library("Qt5Widgets.dll")
    build = agents(workshop, tmp_path / "build", 5)
    winestandin.install(tmp_path, monkeypatch)
    command = [QTDRIVER, "run", "--timeout", "1", "--build", build, "--", program]
    told = "Wine makes its prefix, once for this version"
    _, screen = on_terminal(command, tmp_path, f"{told}, 1 s", SLOWLY="3")
    assert not any(told in line for line in screen)


TEST = """
    def test_waiting(qtdriver):
        print("captured")
        qtdriver.launch({slow!r}, qt=5, start_timeout=3)
"""


@pytest.mark.parametrize("options", [[], ["-v"], ["-s"]])
def test_pytest_shows_it_behind_its_own_line_and_captures_none_of_it(tmp_path, options):
    slow = str(slowly(tmp_path, 0, "sleep", "300"))
    (tmp_path / "test_slow.py").write_text(textwrap.dedent(TEST).format(slow=slow))
    command = [*PYTEST, f"--qtdriver-build={AGENTS}", *options]
    told = "waiting for the agent in "
    seen, screen = on_terminal(command, tmp_path, told, "1 failed")
    assert not any("\x1b7" in line or ", 1 s" in line for line in screen)
    assert (
        any(line.startswith("test_slow.py") and line.endswith("[100%]") for line in screen) or "-s" in options
    )
    alone = in_pipe(command, tmp_path)
    assert told not in alone and "\x1b" not in alone


def test_a_library_user_sees_nothing(tmp_path):
    script = textwrap.dedent(
        f"""
        import sys
        sys.path.insert(0, {str(ROOT / "runner")!r})
        from qtdriver import Driver, QtDriverError
        with Driver(build={str(AGENTS)!r}) as driver:
            try:
                driver.launch("sleep", "30", qt=5, start_timeout=2)
            except QtDriverError:
                print("refused")
        """
    )
    (tmp_path / "own.py").write_text(script)
    seen, _ = on_terminal([sys.executable, "own.py"], tmp_path, "refused")
    assert "\x1b" not in seen and "waiting" not in seen
