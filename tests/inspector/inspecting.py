"""Starts what the tests of the inspector look at."""

import re
import signal
import subprocess
import sys
from contextlib import contextmanager
from pathlib import Path

import pytest

import oneshot
from oneshot import QTDRIVER
from qtdriver.commandline import control
from qtdriver.desktop import desktop
from showcase import AGENTS, PROGRAM

RUNNER = Path(__file__).resolve().parents[2] / "runner"


class Held:
    """An application that is held."""

    def __init__(self, pid):
        self.pid = pid

    def ask(self, verb, **values):
        """The data of a command; it raises the error of one that fails."""
        return control.ask_data(control.DEFAULT_NAME, verb, values)

    def perform(self, operation, **values):
        """The result of an operation of the page."""
        return self.ask(control.INSPECT, operation=operation, values=values)

    def read(self, path, name):
        """A property of a widget of the showcase."""
        return self.ask("get", window="Roastery", path=path, as_class="", properties=[name], timeout=10)

    def activate(self, path, value=None):
        """Does what a widget of the showcase is for."""
        return self.ask(
            "activate",
            window="Roastery",
            path=path,
            as_class="",
            value=value,
            option=None,
            force=False,
            timeout=10,
        )

    def centre(self, name):
        """The place of a widget's centre on the screen."""
        (node,) = [one for one in self.nodes() if one["name"] == name]
        left, top, width, height = node["rect"]
        return left + width // 2, top + height // 2

    def nodes(self):
        """All widgets of all windows, as the page gets them."""

        def walk(node):
            yield node
            for child in node["children"]:
                yield from walk(child)

        return [
            node
            for window in self.perform("survey")["windows"]
            if window["root"]
            for node in walk(window["root"])
        ]


@contextmanager
def holding(runtime, *program):
    """Within it a program is held, by default the showcase, whose control socket is in the folder `runtime`."""
    with pytest.MonkeyPatch.context() as patch:
        patch.setenv("XDG_RUNTIME_DIR", str(runtime))
        with oneshot.holding(program=program or (PROGRAM,)) as told:
            yield Held(told["pid"])


class Inspecting:
    """A running `qtdriver inspect`."""

    def __init__(self, process, address):
        self.process = process
        self.address = address
        self.port = int(re.search(r":(\d+)/", address)[1])

    def interrupt(self):
        """Presses Ctrl-C. Answers the exit status, and what it has printed since the address."""
        self.process.send_signal(signal.SIGINT)
        output, errors = self.process.communicate(timeout=60)
        return self.process.returncode, output + errors


@contextmanager
def inspecting(*arguments, folder=None):
    """Within it the command runs with these arguments, in that folder, and has told the address of its page."""
    command = [QTDRIVER, "inspect", "--no-browser", "--build", str(AGENTS), *arguments]
    # Where the tests run in the background of a shell, SIGINT is ignored, and would be by the command, too.
    with subprocess.Popen(
        command,
        stdout=subprocess.PIPE,
        stderr=subprocess.PIPE,
        text=True,
        cwd=folder,
        preexec_fn=lambda: signal.signal(signal.SIGINT, signal.default_int_handler),
    ) as process:
        try:
            line = process.stdout.readline()
            assert "http://" in line, line + process.stderr.read()
            assert process.stdout.readline() == "Press Ctrl+C to end it.\n"
            yield Inspecting(process, re.search(r"http://\S+", line)[0])
        finally:
            if process.poll() is None:
                process.terminate()
                process.communicate(timeout=60)


def run_saved_test(folder, **variables):
    """Runs the saved test by pytest: a fresh start, a desktop and a network of its own. Answers the output."""
    command = [
        desktop.SCRIPT,
        sys.executable,
        "-m",
        "pytest",
        "-q",
        "-p",
        "no:cacheprovider",
        "--qtdriver-headed",
    ]
    command += [
        "-p",
        "qtdriver.plugin",
        f"--qtdriver-build={AGENTS}",
        f"--qtdriver-output={folder / 'results'}",
    ]
    return subprocess.run(
        [*command, "test_recorded.py"],
        cwd=folder,
        env={**desktop.environment_for_own_network(), "PYTHONPATH": str(RUNNER), **variables},
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
        text=True,
        check=False,
    ).stdout
