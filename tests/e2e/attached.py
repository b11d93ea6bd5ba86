"""Programs that run without an agent, for tests that attach to them."""

from pathlib import Path

import pytest

from preloaded import AGENT, WIDGETS_HOST, Program, programs_ended, wait_for
from qtdriver import Driver
from showcase import AGENTS


@pytest.fixture
def start():
    """Starts programs without an agent, and ends those that still run when the test is over."""
    with programs_ended() as programs:

        def call(*command, **variables):
            programs.append(Program(*command, preload=None, **variables))
            return programs[-1]

        yield call


@pytest.fixture
def app(start):
    """A widgets application that runs its event loop, with a timer that ticks and a thread that allocates memory.

    The C library does not keep what is freed for the next request, which would count as used.
    """
    program = start(WIDGETS_HOST, "working", GLIBC_TUNABLES="glibc.malloc.tcache_count=0")
    assert program.next_line() == "start loop"
    return program


@pytest.fixture
def driver():
    """A driver with the real agents."""
    with Driver(build=AGENTS) as running:
        yield running


def attach(driver, program):
    return driver.attach(pid=program.process.pid, load_agent=True)


def work_of(program):
    """How often the timer has ticked, and the bytes of the heap."""
    program.tell("work")
    return tuple(map(int, program.next_line().split()))


def goes_on(program):
    """Checks that the program runs as ever, without an agent, and ends in order."""
    assert AGENT.name not in {path.name for path in program.mapped_files()}
    before = work_of(program)[0]
    wait_for(lambda: work_of(program)[0] > before)
    assert "TracerPid:\t0\n" in Path(f"/proc/{program.process.pid}/status").read_text()
    program.tell("quit")
    assert program.end() == (0, "end loop\ntorn down\n", "")
