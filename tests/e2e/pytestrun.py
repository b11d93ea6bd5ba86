"""Runs of pytest with the plugin, as a user starts them: in a process of their own, on small files of tests."""

import os
import secrets
import shlex
import signal
import subprocess
import sys
import textwrap
import xml.etree.ElementTree as ElementTree
from pathlib import Path

from qtdriver import eventually
from qtdriver.launch import linux
from showcase import AGENTS, PROGRAM, QT

RUNNER = Path(__file__).resolve().parents[2] / "runner"
MARK = "QTDRIVER_TESTED_RUN"

PREAMBLE = f"""
import os, signal, subprocess, sys, time
from pathlib import Path
import pytest
from qtdriver import eventually

@pytest.fixture
def app(qtdriver):
    running = qtdriver.launch({str(PROGRAM)!r})
    running.window(name="showcase").title()
    return running
"""


class Finished:
    """A run that has ended."""

    def __init__(self, status, output, junit):
        self.status = status
        self.output = output
        self._junit = junit

    @property
    def outcomes(self):
        """The last line: how many tests went how."""
        return self.output.strip().splitlines()[-1].strip("= ").partition(" in ")[0]

    def properties(self, test):
        """The properties of a test in the JUnit XML file."""
        for case in ElementTree.parse(self._junit).iter("testcase"):
            if case.get("name") == test:
                return {entry.get("name"): entry.get("value") for entry in case.iter("property")}
        raise AssertionError(f"{test} is not in {self._junit}")

    def paths(self, test, name):
        """The values of one of its properties, which may have several."""
        for case in ElementTree.parse(self._junit).iter("testcase"):
            if case.get("name") == test:
                return [entry.get("value") for entry in case.iter("property") if entry.get("name") == name]
        raise AssertionError(f"{test} is not in {self._junit}")


class Project:
    """A folder with tests, and the runs of pytest in it."""

    def __init__(self, folder):
        self.folder = folder / "project"
        self.temporary = folder / "temporary"
        self.results = self.folder / "test-results"
        self.junit = self.folder / "junit.xml"
        self.mark = secrets.token_hex(8)
        self.python = sys.executable
        self.runner = RUNNER
        self.environment = {}
        for made in (self.folder, self.temporary):
            made.mkdir()

    def write(self, text, name="test_project.py"):
        """Writes a file of tests; those of Python begin with the PREAMBLE."""
        text = textwrap.dedent(text)
        (self.folder / name).write_text(PREAMBLE + text if name.endswith(".py") else text)

    def start(self, *arguments):
        """Starts a run."""
        return subprocess.Popen(
            [self.python, "-m", "pytest", "-p", "no:cacheprovider", "-p", "qtdriver.plugin"]
            + [f"--qtdriver-build={AGENTS}", f"--qtdriver-qt={QT}", "--qtdriver-timeout=60"]
            + [f"--junitxml={self.junit}", f"--basetemp={self.folder / 'pytest'}", *map(str, arguments)],
            cwd=self.folder,
            env={
                **os.environ,
                "PYTHONPATH": str(self.runner),
                "PYTHONDONTWRITEBYTECODE": "1",
                "TMPDIR": str(self.temporary),
                MARK: self.mark,
                **self.environment,
            },
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            text=True,
            start_new_session=True,
        )

    @staticmethod
    def interrupt(process):
        """Ctrl-C, as a terminal has it: for the run and all of its processes that are not in a session of their own."""
        os.killpg(process.pid, signal.SIGINT)

    def finish(self, process, seconds=200):
        """Waits for the end of a run, and of everything that has its output open."""
        try:
            output, _ = process.communicate(timeout=seconds)
        finally:
            process.kill()
        print(output)  # for the report, should the test fail
        return Finished(process.returncode, output, self.junit)

    def run(self, *arguments):
        """A whole run."""
        return self.finish(self.start(*arguments))

    def processes(self):
        """Processes that run for this project now: ids and command lines."""
        found = {}
        for pid in linux.Launch(MARK, self.mark).processes():
            try:
                words = (
                    Path(f"/proc/{pid}/cmdline")
                    .read_bytes()
                    .decode(errors="replace")
                    .rstrip("\0")
                    .split("\0")
                )
            except OSError:
                continue
            found[pid] = shlex.join(words)
        return found

    def line(self, name, seconds=60):
        """The lines of a file that a test writes, when it is there and complete."""
        path = self.folder / name
        eventually(lambda: path.exists() and path.read_text().endswith("\n"), timeout=seconds).is_true()
        return path.read_text().splitlines()

    def bundle(self, test):
        """The bundle of a test."""
        (found,) = self.results.glob(f"*-{test}-*")
        return found
