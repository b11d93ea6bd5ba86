"""Shared by the tests of the runner: the package on the path, a fake agent, a build with an empty agent, drivers."""

import signal
import subprocess
import sys
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "runner"))

# Processes that a shell runs in the background ignore interrupts, and so would all that is started here.
signal.signal(signal.SIGINT, signal.default_int_handler)

FAKE_AGENT = [sys.executable, str(Path(__file__).with_name("fake_agent.py"))]


@pytest.fixture(scope="session")
def build(tmp_path_factory):
    """A build folder whose agent for Qt 5 is a library that does nothing."""
    folder = tmp_path_factory.mktemp("build")
    library = folder / "qt5" / "lib" / "libqtdriver-preload.so"
    library.parent.mkdir(parents=True)
    compile_c(library, "-shared")
    return folder


def compile_c(output, *options, source=""):
    """Compiles C source text with the given options of gcc."""
    command = ["gcc", "-x", "c", "-", "-o", str(output), "-x", "none", *map(str, options)]
    subprocess.run(command, input=source, text=True, check=True)
    return output


@pytest.fixture
def fake_agent():
    """The command that runs the fake agent."""
    return FAKE_AGENT


@pytest.fixture(name="compile_c")
def compile_c_fixture():
    """The function compile_c."""
    return compile_c


@pytest.fixture
def server():
    """A server where agents look for it."""
    from qtdriver import Server

    with Server() as listening:
        yield listening


@pytest.fixture
def driver(build):
    """A driver for applications of Qt 5 that have the empty agent."""
    from qtdriver import Driver

    with Driver(qt=5, build=build) as running:
        yield running


@pytest.fixture(scope="module")
def agents_driver():
    """A driver for applications that have the real agents."""
    from qtdriver import Driver

    from showcase import AGENTS

    with Driver(build=AGENTS, timeout=10) as running:
        yield running
