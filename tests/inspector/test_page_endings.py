"""How `qtdriver inspect` starts an application, and how all ends."""

import os
import re
import subprocess
from pathlib import Path

import psutil

from qtdriver import eventually

from inspecting import AGENTS, PROGRAM, QTDRIVER, holding, inspecting


def showcase_of(running):
    """The application that the command has started."""
    (showcase,) = (
        process
        for process in psutil.Process(running.process.pid).children(recursive=True)
        if process.name() == "showcase"
    )
    return showcase


def test_ctrl_c_ends_the_application_and_its_own_desktop():
    with inspecting("--", str(PROGRAM)) as running:
        showcase = showcase_of(running)
        display = showcase.environ()["DISPLAY"]
        socket = Path(f"/tmp/.X11-unix/X{display[1:]}")
        assert display != os.environ["DISPLAY"] and socket.exists()
        status, told = running.interrupt()
    assert (status, told) == (130, "")
    assert not showcase.is_running() and not socket.exists()


def test_the_end_of_the_pipe_that_it_writes_to_ends_all():
    """As when the connection of an ssh without a terminal is cut."""
    with inspecting("--headed", "--", str(PROGRAM)) as running:
        showcase = showcase_of(running)
        running.process.stdout.close()
        assert running.process.wait(timeout=60) == 129
        assert not showcase.is_running() and running.process.stderr.read() == ""


def test_an_application_that_ends_ends_the_page_and_its_status_is_told():
    with inspecting("--headed", "--", str(PROGRAM)) as running:
        showcase = showcase_of(running)
        assert showcase.environ()["DISPLAY"] == os.environ["DISPLAY"]
        showcase.kill()
        output, errors = running.process.communicate(timeout=60)
    assert "the application ended (signal SIGKILL)" in output + errors


def test_the_end_of_the_application_that_is_held_ends_the_page(tmp_path):
    with holding(tmp_path), inspecting() as running:
        subprocess.run([QTDRIVER, "stop"], check=True, capture_output=True)
        output, errors = running.process.communicate(timeout=60)
    assert "default" in output + errors and running.process.returncode == 0


def test_ctrl_c_leaves_the_application_that_is_held(tmp_path):
    with holding(tmp_path) as showcase, inspecting() as running:
        assert running.interrupt()[0] == 130
        assert showcase.read("brewButton", "text") == "Brew a cup"


def test_without_an_application_it_says_how_to_start_one(tmp_path, monkeypatch):
    monkeypatch.setenv("XDG_RUNTIME_DIR", str(tmp_path))
    command = [QTDRIVER, "inspect", "--build", str(AGENTS)]
    done = subprocess.run(command, capture_output=True, text=True, timeout=60)
    assert done.returncode == 6 and "no application is held" in done.stderr


def test_a_program_that_runs_already_is_inspected_and_runs_on():
    with subprocess.Popen([str(PROGRAM)]) as showcase:
        libraries = Path(f"/proc/{showcase.pid}/maps")
        eventually(libraries.read_text, timeout=60).satisfies(
            lambda told: re.search("libQt(.Widgets|Gui)", told)
        )
        with inspecting("--pid", str(showcase.pid)) as running:
            assert running.interrupt()[0] == 130
        assert showcase.poll() is None
        showcase.kill()


def test_a_program_that_runs_and_one_to_start_are_not_asked_for_at_once():
    command = [QTDRIVER, "inspect", "--pid", "1", "--", "speedcrunch"]
    done = subprocess.run(command, capture_output=True, text=True, timeout=60)
    assert done.returncode == 2 and "takes --pid or an application, not both" in done.stderr
