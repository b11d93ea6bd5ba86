"""One-shot commands for a test, and the application that they talk to."""

import json
import signal
import subprocess
from contextlib import contextmanager
from functools import partial
from pathlib import Path

import pytest

from qtdriver.launch.linux import session_of

from showcase import AGENTS, PROGRAM, QT

QTDRIVER = str(Path(__file__).resolve().parents[2] / "scripts" / "qtdriver")


def qtdriver(*arguments, status=0):
    """The output of a command, which ends with this status."""
    finished = subprocess.run([QTDRIVER, *arguments], capture_output=True, text=True, timeout=60)
    assert finished.returncode == status, finished.stdout + finished.stderr
    return (finished.stderr if status else finished.stdout).rstrip("\n")


def data(*arguments, status=0):
    """The JSON that a command prints."""
    finished = subprocess.run([QTDRIVER, *arguments, "--json"], capture_output=True, text=True, timeout=60)
    assert finished.returncode == status, finished.stdout + finished.stderr
    return json.loads(finished.stdout)


def hold(*options, program=(PROGRAM,), status=0):
    """Holds an application; answers what is told of it."""
    command = [
        QTDRIVER,
        "run",
        "--background",
        "--json",
        "--build",
        str(AGENTS),
        *options,
        "--",
        *map(str, program),
    ]
    finished = subprocess.run(command, capture_output=True, text=True, timeout=60)
    assert finished.returncode == status, finished.stdout + finished.stderr
    return json.loads(finished.stdout)


def is_running(pid):
    """Whether the process lives."""
    return session_of(pid) is not None


@contextmanager
def to_interrupt(*arguments):
    """A command that still runs, and can be interrupted."""
    # Where the tests run in the background of a shell, SIGINT is ignored, and would be by the command, too.
    listen = partial(signal.signal, signal.SIGINT, signal.SIG_DFL)
    pipe = subprocess.PIPE
    with subprocess.Popen([QTDRIVER, *arguments], stdout=pipe, stderr=pipe, preexec_fn=listen) as process:
        try:
            yield process
        finally:
            process.kill()


def interrupt(process):
    """Presses Ctrl-C; checks that the command ends and says nothing."""
    process.send_signal(signal.SIGINT)
    output = process.communicate(timeout=30)
    assert (process.returncode, *output) == (130, b"", b"")


@contextmanager
def holding(*options, program=(PROGRAM,)):
    """Within it an application is held, by default a showcase; yields what is told of it."""
    told = hold("--qt", str(QT), *options, program=program)
    try:
        yield told
    finally:
        subprocess.run([QTDRIVER, "stop"], capture_output=True, timeout=60)


@pytest.fixture(autouse=True)
def runtime(tmp_path, monkeypatch):
    """A runtime folder of its own for the control sockets."""
    monkeypatch.setenv("XDG_RUNTIME_DIR", str(tmp_path))
    return tmp_path


@pytest.fixture
def held():
    """A showcase that is held, with its page of buttons in front."""
    with holding() as told:
        yield told
