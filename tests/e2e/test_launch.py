"""Starting and ending applications, with the fake agent as the application."""

import os
import subprocess
import sys
import threading
from pathlib import Path

import pytest

from qtdriver import (
    App,
    EarlyExitError,
    NoGreetingError,
    describe_exit,
    eventually,
    preload_environment,
)
from qtdriver.launch import linux
from qtdriver.launch.output import OutputTail
from qtdriver.launch.starting import start as start_application
from qtdriver.launch.wine import WineDesktops
from qtdriver.protocol.pending_agents import PendingAgents


@pytest.fixture
def start(server, build):
    """Starts a command as an application of Qt 5."""
    pending_agents = PendingAgents(server)

    def call(command, **options):
        options.setdefault("start_timeout", 10)
        options = {
            "pending_agents": pending_agents,
            "wine": WineDesktops(),
            "qt": 5,
            "build": build,
            **options,
        }
        return App(*start_application(command, **options))

    return call


def is_alive(pid):
    """Whether there is such a process, and more of it than its exit status."""
    return linux.session_of(pid) is not None


def test_the_application_is_driven_and_ended(start, fake_agent):
    with start(fake_agent) as application:
        assert application.pid == application.launched_pid
        assert [window.title for window in application.connection.list_windows()] == ["Editor", "Save"]
    # The fake agent ends with its connection, which is closed first: the signal may find it gone.
    assert application.process.status() in (0, -15)


def test_the_agent_comes_first_in_the_preload_list(start, fake_agent, build):
    environment = {**os.environ, "LD_PRELOAD": "libm.so.6"}
    with start(fake_agent, environment=environment) as application:
        preload = application.connection.check_window("env:LD_PRELOAD")
    assert preload == f"{build}/qt5/lib/libqtdriver-preload.so:libm.so.6"


def test_a_preload_list_that_is_empty_stays_without_empty_entries():
    assert preload_environment("/a.so", {"LD_PRELOAD": ""}) == {"LD_PRELOAD": "/a.so"}


def test_an_application_that_ignores_the_request_to_end_is_killed(start, fake_agent):
    application = start([*fake_agent, "--stay"])
    assert application.terminate(grace=0.1) == -9


def test_the_application_behind_a_wrapper_is_ended_with_it(start, fake_agent):
    with start(["/bin/sh", "-c", '"$@"; exit 3', "sh", *fake_agent]) as application:
        assert application.pid != application.launched_pid
        assert is_alive(application.pid)
    assert not is_alive(application.pid)


def test_an_early_exit_tells_the_status_and_the_last_lines(start):
    code = "import sys; [print(f'line {n}', file=sys.stderr) for n in range(30)]; sys.exit(3)"
    with pytest.raises(EarlyExitError) as caught:
        start([sys.executable, "-c", code])
    assert caught.value.status == 3
    assert "exit status 3" in str(caught.value)
    assert caught.value.message.endswith("before its agent connected; its last output:")
    assert caught.value.context.splitlines() == [f"line {number}" for number in range(10, 30)]
    assert str(caught.value) == f"{caught.value.message}\n{caught.value.context}"


def test_an_early_exit_by_a_signal_names_the_signal(start):
    with pytest.raises(EarlyExitError, match="signal SIGSEGV.*without any output"):
        start(["/bin/sh", "-c", "kill -SEGV $$"])


def test_an_early_exit_without_an_error_hints_at_another_instance(start):
    with pytest.raises(EarlyExitError, match="exit status 0") as caught:
        start(["/bin/true"])
    assert "an instance that was running already" in caught.value.hint
    assert str(caught.value).splitlines() == [caught.value.message, caught.value.hint]


def test_an_exit_between_connection_and_greeting_is_an_early_exit(start):
    code = "import socket, sys; socket.create_connection(('127.0.0.1', 4242)).close(); sys.exit(4)"
    with pytest.raises(EarlyExitError, match="exit status 4"):
        start([sys.executable, "-c", code])


def test_an_application_that_never_greets_is_ended(start, tmp_path):
    pid_file = tmp_path / "pid"
    command = ["/bin/sh", "-c", f"echo $$ >{pid_file}; echo waiting >&2; exec sleep 100"]
    with pytest.raises(NoGreetingError, match="within 1 seconds"):
        start(command, start_timeout=1)
    assert not is_alive(int(pid_file.read_text()))


class Impatience:
    """In place of the pending agents: gives up as soon as the program has written its note."""

    def __init__(self, note):
        self._note = note

    def wait_for(self, *_, **__):
        eventually(lambda: self._note.exists() and self._note.read_text().endswith("\n")).is_true()

    def others(self):
        """Nobody else has come."""
        return ""


def without_environment(note, *command):
    """A command that clears its environment, starts another program, writes both process ids, and goes on as `command`."""
    return ["env", "-i", "/bin/sh", "-c", 'sleep 1000 & echo $$ $! >"$0"; exec "$@"', str(note), *command]


@pytest.mark.parametrize("goes_on", ["sleep", "true"])
def test_a_program_that_clears_its_environment_is_ended_with_what_it_started(build, tmp_path, goes_on):
    note = tmp_path / "pids"
    with pytest.raises((NoGreetingError, EarlyExitError)):
        start_application(
            without_environment(note, goes_on, "1000"),
            pending_agents=Impatience(note),
            wine=WineDesktops(),
            qt=5,
            build=build,
        )
    assert [is_alive(int(pid)) for pid in note.read_text().split()] == [False, False]


def test_a_program_that_clears_its_environment_is_driven_if_it_has_an_agent(start, fake_agent, tmp_path):
    with start(without_environment(tmp_path / "pids", *fake_agent)) as application:
        assert application.pid == application.launched_pid


def test_a_program_that_clears_its_environment_is_ended_when_the_test_is_killed(build, fake_agent, tmp_path):
    note = tmp_path / "pids"
    program = (
        "import sys, time; from pathlib import Path; from qtdriver import Driver; driver = Driver(qt=5, "
        "build=Path(sys.argv[1])); driver.launch(*sys.argv[2:]); print('started', flush=True); time.sleep(1000)"
    )
    command = without_environment(note, *fake_agent, "--stay")
    with subprocess.Popen(
        [sys.executable, "-c", program, str(build), *command],
        stdout=subprocess.PIPE,
        env={**os.environ, "PYTHONPATH": os.pathsep.join(sys.path)},
    ) as test:
        assert test.stdout.readline() == b"started\n"
        test.kill()
    for pid in map(int, note.read_text().split()):
        eventually(lambda: is_alive(pid), timeout=20).equals(False)


def test_the_id_of_a_program_stays_its_own_until_what_it_started_is_ended(start, fake_agent):
    application = start([*fake_agent, "--status", "3"])
    application.connection.check_window("quit")
    assert application.wait_for_exit(20) == 3
    assert Path(f"/proc/{application.pid}").exists()
    assert application.terminate() == 3
    assert not Path(f"/proc/{application.pid}").exists()


@pytest.fixture
def powerless(monkeypatch, tmp_path):
    """As if what is started ran with the rights of another user: nobody may signal it, nor may the watchdog."""

    def refuse(pid, number):
        raise PermissionError

    idle = tmp_path / "idle.py"
    idle.write_text("import sys; sys.stdin.read()")
    with monkeypatch.context() as patch:
        patch.setattr(linux.os, "kill", refuse)
        patch.setattr(linux, "__file__", str(idle))
        yield


def test_a_program_that_may_not_be_ended_is_told_and_not_waited_for(powerless, build, tmp_path):
    note = tmp_path / "pid"
    command = ["/bin/sh", "-c", f"echo $$ >{note}; exec sleep 1000"]
    with pytest.raises(NoGreetingError) as caught:
        start_application(command, pending_agents=Impatience(note), wine=WineDesktops(), qt=5, build=build)
    pid = int(note.read_text())
    assert f"It could not be ended: process {pid} still runs" in str(caught.value)
    subprocess.run(["kill", "-KILL", str(pid)], check=True)


def test_an_application_that_connects_without_greeting_is_reported(start, fake_agent):
    with pytest.raises(NoGreetingError):
        start([*fake_agent, "--no-greeting", "--stay"], start_timeout=1)


def test_something_else_that_connects_is_no_agent(start):
    code = (
        "import socket; s = socket.create_connection(('127.0.0.1', 4242)); s.sendall(b'hello\\n'); s.recv(1)"
    )
    with pytest.raises(EarlyExitError, match="exit status 0"):
        start([sys.executable, "-c", code])


def test_the_application_reads_nothing_and_is_not_stopped_by_much_output(start):
    code = "import sys; sys.stdin.read(); print('x' * 5_000_000); sys.stderr.write('end'); sys.exit(5)"
    with pytest.raises(EarlyExitError, match="exit status 5.*\nend"):
        start([sys.executable, "-c", code])


def test_the_kept_output_is_bounded_in_lines_and_in_length():
    read_end, write_end = os.pipe()
    tail = OutputTail(os.fdopen(read_end, "rb", 0), keep=2)
    with os.fdopen(write_end, "wb") as pipe:
        writer = threading.Thread(target=pipe.write, args=(b"one\ntwo\n" + b"y" * 1_000_000 + b"\n\xffend",))
        writer.start()
        writer.join()
    assert tail.wait_for_end(10)
    assert tail.lines() == ("y" * 4096, "\ufffdend")


@pytest.mark.parametrize("status, text", [(0, "exit status 0"), (-6, "signal SIGABRT"), (-99, "signal 99")])
def test_exit_statuses_are_told_in_words(status, text):
    assert describe_exit(status) == text
