"""The agent in programs that run already: attached, let go, attached again."""

import os
import re
import subprocess
from pathlib import Path

import pytest

from attached import app, attach, driver, start, work_of  # noqa: F401: fixtures
from preloaded import AGENT, SANITIZER, WIDGETS_HOST, server_side, serves, wait_for
from qtdriver import LoadingError

ROUNDS = int(os.environ.get("QTDRIVER_ATTACH_ROUNDS", "3"))
BYTES_OF_NO_LEAK = 2000
"""More than the heap of the host varies by, some hundred bytes, and less than what an agent takes that is not deleted."""
SERVER_PORT, TIME_WAIT = ":1092", "06"
"""In the kernel's list of sockets: port 4242, and the state of one that is closed."""
MANY_ROUNDS = 300
BYTES_OF_NONE_LEFT = 3000
"""Less than the smallest piece of memory for each of so many agents."""


def files_of(program):
    """How many files and sockets the process has open."""
    return len(os.listdir(f"/proc/{program.process.pid}/fd"))


def is_agent_connected():
    """Whether an agent has a socket to the server that it has not closed yet."""
    rows = [line.split() for line in Path("/proc/net/tcp").read_text().splitlines()[1:]]
    return any(remote.endswith(SERVER_PORT) and state != TIME_WAIT for _, _, remote, state, *_ in rows)


def is_attached(program):
    """Has the program itself make the call that gdb makes, and tells whether it has a new agent.

    It has none while the one before is connected.
    """
    program.tell(f"attach\n{AGENT.with_name('libqttestability.so')}")
    answer = program.next_line()
    assert answer in ("attached: ", "attached: it has an agent, which is connected")
    return answer == "attached: "


def test_a_running_application_is_driven_and_runs_on(driver, app):
    attached = attach(driver, app)
    assert attached.connection.greeting.pid == app.process.pid and serves(attached.connection)
    attached.close()
    app.tell("quit")
    assert app.end() == (0, "end loop\ntorn down\n", "")


def test_an_application_that_ends_while_it_is_attached_ends_in_order(driver, app):
    attached = attach(driver, app)
    app.tell("quit")
    assert app.end() == (0, "end loop\ntorn down\n", "")
    wait_for(attached.connection.is_closed)


def test_an_application_without_glib_is_attached(driver, start):
    program = start(WIDGETS_HOST, "working", QT_NO_GLIB="1")
    assert program.next_line() == "start loop"
    assert serves(attach(driver, program).connection)


def test_an_application_with_the_address_sanitizer_is_attached(driver, start):
    asked = ["gcc", "-print-file-name=libasan.so"]
    runtime = Path(subprocess.run(asked, capture_output=True, text=True, check=True).stdout.strip()).resolve()
    program = start(WIDGETS_HOST, "working", LD_PRELOAD=str(runtime))
    assert program.next_line() == "start loop" and runtime in program.mapped_files()
    assert serves(attach(driver, program).connection)
    program.tell("quit")
    assert program.end() == (0, "end loop\ntorn down\n", "")


def test_attaching_again_and_again_loses_nothing_and_leaks_nothing(driver, app):
    def let_go(attached):
        """Ends the connection, and waits until the agent has seen that: connected, it takes some 50,000 bytes more."""
        assert serves(attached.connection)
        attached.close()
        wait_for(lambda: not is_agent_connected())

    for _ in range(3 * ROUNDS):  # Qt 4 makes some 100 mutexes for the first agents, and keeps them
        wait_for(lambda: is_attached(app))
        driver.attach(pid=app.process.pid).close()
    let_go(attach(driver, app))  # what is allocated once
    files = files_of(app)
    ticks, heap = work_of(app)
    for _ in range(ROUNDS):
        let_go(attach(driver, app))
    wait_for(lambda: files_of(app) <= files)
    now, grown = work_of(app)
    assert now > ticks
    print(f"the heap has grown by {grown - heap} bytes in {ROUNDS} rounds")
    assert SANITIZER or grown - heap < BYTES_OF_NO_LEAK
    app.tell("quit")
    assert app.end() == (0, "end loop\ntorn down\n", "")


def test_hundreds_of_agents_leave_not_one_piece_of_memory_each(server, app):
    """They are created by the program itself, since gdb takes half a second for it."""

    def heap_after_rounds():
        for _ in range(MANY_ROUNDS):
            wait_for(lambda: is_attached(app))
            with server_side(server) as connection, connection.makefile("rb") as lines:
                assert lines.readline().startswith(b"+client+ ")
                connection.sendall(b"1\n")
                assert lines.readline().startswith(b"0,l:")
        wait_for(lambda: not is_agent_connected())
        return work_of(app)[1]

    heap = heap_after_rounds()
    grown = heap_after_rounds() - heap
    print(f"the heap has grown by {grown} bytes in {MANY_ROUNDS} rounds")
    assert SANITIZER or grown < BYTES_OF_NONE_LEFT


def test_an_application_that_is_driven_already_gets_no_second_agent(driver, app):
    attached = attach(driver, app)
    with pytest.raises(LoadingError, match="it has an agent, which is connected"):
        attach(driver, app)
    assert serves(attached.connection)


def test_an_application_is_attached_while_it_shows_a_dialog(driver, start):
    program = start(WIDGETS_HOST, "dialogFirst")
    assert program.next_line() == "start dialog"
    attached = attach(driver, program)
    assert [window.title for window in attached.windows() if window.modal] == ["Dialog"]


def test_an_application_with_widgets_but_without_qapplication_runs_on(driver, start):
    program = start(WIDGETS_HOST.with_name("host_preload_core_widgets"), "run")
    libraries = Path(f"/proc/{program.process.pid}/maps")
    wait_for(lambda: re.search("libQt(.Widgets|Gui)", libraries.read_text()))
    with pytest.raises(LoadingError, match=r"process \d+ gets no agent: it has no QApplication of lib"):
        attach(driver, program)
    assert AGENT.name not in {path.name for path in program.mapped_files()}
    assert program.process.poll() is None
