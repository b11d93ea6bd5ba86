"""Who is at the other end: the system is asked which process has the socket, whatever a greeting says."""

import contextlib
import os
import re
import signal
import socket
import subprocess
import sys
import threading
import time
from pathlib import Path

import pytest

from qtdriver import (
    ClientRefusedError,
    ConnectionClosed,
    NoClientError,
    NoGreetingError,
    PeerReaderMissingError,
    ProtocolError,
    Server,
    eventually,
)
from qtdriver.launch.supervision import is_within
from qtdriver.protocol.peers import describe_process
from qtdriver.protocol.pending_agents import PendingAgents
from qtdriver.protocol.waiting import Deadline

RUNNER = str(Path(__file__).resolve().parents[2] / "runner")
NO_MORE_RIGHTS = ("setpriv", "--bounding-set=-all", "--inh-caps=-all")

LATE = 'echo $$ >"$0/pid"; until [ -e "$0/go" ]; do sleep 0.01; done; exec "$@"'
"""A shell script that says its process id, and becomes the program in its arguments when it may."""

ATTACHING = """
import sys
sys.path.insert(0, sys.argv[1])
from qtdriver import ApplicationHangsError, Driver
with Driver() as driver:
    {before}
    app = driver.attach({arguments})
    {rest}
"""
"""A program that attaches what comes."""

TELL = "print(app.pid, app.connection.process, app.windows()[0].title)"
HANG = """
    app.connection.timeout = 0.3
    try:
        app.window("title").title()
    except ApplicationHangsError as error:
        print(str(error).splitlines()[0].rpartition("hangs, and ")[2])
    print("victim:", victim.poll())
    victim.kill()
"""


@pytest.fixture
def as_another_user(monkeypatch):
    """Has the runner believe that it is of another user than all processes here."""
    user = os.geteuid() + 4711
    monkeypatch.setattr(os, "geteuid", lambda: user)


@contextlib.contextmanager
def connected(greeting=b"+client+ 2.1.0 1 -1 fake\n"):
    """A connection to the driver that is this process's own, with a greeting."""
    with socket.create_connection(("127.0.0.1", 4242)) as client:
        client.sendall(greeting)
        yield client


def is_lost(client):
    """Whether the connection ends without a word."""
    with contextlib.suppress(ConnectionResetError):
        return client.recv(100) == b""
    return True


@pytest.fixture
def impostor(tmp_path):
    """Connects when the application of the test is about to start, and says that it is the application. Only when that
    is done may the application connect."""
    got = []

    def pose():
        note = tmp_path / "pid"
        eventually(lambda: note.exists() and note.read_text().endswith("\n"), timeout=20).is_true()
        with connected(f"+client+ 2.1.0 {note.read_text().strip()} -1 fake\n".encode()) as client:
            (tmp_path / "go").touch()
            client.settimeout(30)
            got.append(client.recv(100))

    thread = threading.Thread(target=pose)
    thread.start()
    yield got
    thread.join(30)
    assert not thread.is_alive()


def test_who_says_to_be_the_application_is_not_taken_for_it(driver, fake_agent, impostor, tmp_path):
    app = driver.launch("/bin/sh", "-c", LATE, str(tmp_path), *fake_agent)
    assert app.windows()[0].title == "Editor"
    assert f"{app.pid}\n" == (tmp_path / "pid").read_text()
    assert app.connection.process == app.pid == app.connection.greeting.pid
    driver.close()
    eventually(lambda: impostor).equals([b""])  # no request went to the impostor


def test_who_says_to_be_the_process_to_attach_is_not_taken_for_it(driver, fake_agent, impostor, tmp_path):
    with subprocess.Popen(["/bin/sh", "-c", LATE, str(tmp_path), *fake_agent]) as process:
        app = driver.attach(pid=process.pid)
        assert app.windows()[0].title == "Editor"
        driver.close()
    eventually(lambda: impostor).equals([b""])


def test_who_came_instead_is_told_when_the_application_does_not_come(driver, tmp_path):
    with connected(b"GET / HTTP/1.1\r\n\n"), connected():
        with pytest.raises(NoGreetingError) as caught:
            driver.launch("/bin/sh", "-c", "sleep 1000", start_timeout=0.5)
        assert re.search(r"\nrefused a connection: not an agent's greeting: 'GET /", str(caught.value))
        assert re.search(rf"\nprocess {os.getpid()} \(.*\) has connected, too$", caught.value.context)
        with subprocess.Popen(["sleep", "1000"]) as another:
            with pytest.raises(NoClientError, match="has connected, too"):
                driver.attach(pid=another.pid, start_timeout=0)
            another.kill()


def test_another_users_process_is_refused_before_it_has_said_anything(server, as_another_user):
    with socket.create_connection(("127.0.0.1", 4242)) as client:
        with pytest.raises(
            ClientRefusedError, match=rf"of user .*, process {os.getpid()} .*: another user's"
        ):
            server.accept(30)
        assert is_lost(client)


def test_attaching_takes_no_process_of_another_user(driver, as_another_user):
    with connected() as client:
        with pytest.raises(
            NoClientError,
            match=rf"\nrefused a connection: 127.0.0.1:.*process {os.getpid()} .*: another user's",
        ):
            driver.attach(start_timeout=0.5)
        assert is_lost(client)


def test_a_process_of_another_user_is_attached_when_it_is_named(driver, as_another_user):
    with connected():
        assert driver.attach(pid=os.getpid()).pid == os.getpid()


def test_what_was_started_here_is_taken_also_with_the_rights_of_another_user(
    driver, as_another_user, fake_agent
):
    with connected() as stranger:
        app = driver.launch(*fake_agent)
        assert app.windows()[0].title == "Editor"
        assert is_lost(stranger)
    (refusal,) = app.connection.transcript.refusals
    assert f"process {os.getpid()} " in refusal and refusal.endswith(": another user's")
    later = driver.launch(*fake_agent)
    assert later.connection.transcript.refusals == (), "each refusal is told once"


def test_an_application_that_a_given_process_has_started_is_attached(driver, fake_agent):
    with subprocess.Popen(["/bin/sh", "-c", '"$@"; true', "sh", *fake_agent]) as wrapper:
        app = driver.attach(pid=wrapper.pid)
        assert app.pid != wrapper.pid and app.windows()[0].title == "Editor"
        driver.close()


def test_a_child_that_has_the_socket_too_does_not_hide_the_application(driver, fake_agent):
    app = driver.launch(*fake_agent, "--fork")
    assert app.pid == app.launched_pid
    assert app.windows()[0].title == "Editor"


def test_an_application_with_process_numbers_of_its_own_is_driven(driver, fake_agent):
    app = driver.launch("unshare", "-Upf", *fake_agent)
    assert app.connection.greeting.pid == 1, "so it sees itself"
    assert fake_agent[-1].encode() in Path(f"/proc/{app.pid}/cmdline").read_bytes()
    assert app.windows()[0].title == "Editor"


@contextlib.contextmanager
def attaching(*prefix, arguments="", before="print(flush=True)", rest=TELL):
    """A program that attaches, in a process of its own behind `prefix`. It listens when it has said something."""
    program = ATTACHING.format(arguments=arguments, before=before, rest=rest)
    command = [*prefix, sys.executable, "-c", program, RUNNER]
    with subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True) as process:
        yield process


HIDING = ("unshare", "-Urpf", "--mount-proc")


@pytest.mark.parametrize("arguments", ["", "pid={pid}"])
def test_an_application_that_the_namespace_hides_is_known_by_its_user(fake_agent, tmp_path, arguments):
    late = subprocess.Popen(["/bin/sh", "-c", LATE, str(tmp_path), *fake_agent])
    with late, attaching(*HIDING, arguments=arguments.format(pid=late.pid)) as test:
        assert test.stdout.readline() == "\n"
        (tmp_path / "go").touch()
        assert test.stdout.readline() == f"{late.pid} None Editor\n"


def test_a_process_is_not_ended_because_a_hidden_application_that_hangs_says_its_number():
    before = "import subprocess; victim = subprocess.Popen(['sleep', '1000']); print(victim.pid, flush=True)"
    with attaching(*HIDING, before=before, rest=HANG) as test:
        victim = int(test.stdout.readline())
        with connected(f"+client+ 2.1.0 {victim} -1 fake\n".encode()) as client:
            assert client.recv(10) == b"8,title\n"
            assert test.communicate(timeout=60)[0] == f"process {victim} could not be ended\nvictim: None\n"


def test_where_no_user_can_be_told_from_another_none_counts_as_this_one():
    """In a user namespace that knows no user all have the same id."""
    with attaching("unshare", "-U", arguments="start_timeout=30") as test:
        assert test.stdout.readline() == "\n"
        with connected() as client:
            assert is_lost(client)
        test.kill()


def test_a_connection_through_a_socket_of_the_other_protocol_has_its_process_too(server):
    with socket.socket(socket.AF_INET6) as client:
        client.connect(("::ffff:127.0.0.1", 4242))
        client.sendall(b"+client+ 2.1.0 1 -1 fake\n")
        with server.accept(30) as connection:
            assert (connection.process, connection.greeting.pid) == (os.getpid(), 1)


def test_an_application_that_lets_nobody_look_into_it_is_driven(build, fake_agent, tmp_path):
    program = (
        f"import sys; sys.path.insert(0, {RUNNER!r})\n"
        "from pathlib import Path; from qtdriver import Driver\n"
        f"with Driver(qt=5, build=Path({str(build)!r})) as driver:\n"
        f"    app = driver.launch(*{fake_agent!r}, '--private')\n"
        "    print(app.pid == app.launched_pid, app.connection.process, app.windows()[0].title)\n"
    )
    done = subprocess.run(
        [*NO_MORE_RIGHTS, sys.executable, "-c", program], capture_output=True, text=True, timeout=60
    )
    assert (done.stdout, done.stderr) == ("True None Editor\n", "")


class CrowdedServer(Server):
    """A server at which somebody has always connected and gone again."""

    def accept(self, *_, **__):
        assert time.monotonic() < self.over, "the wait was to be over long ago"
        raise ConnectionClosed("gone")


def test_who_connects_again_and_again_does_not_keep_a_wait_beyond_its_time():
    with CrowdedServer() as server, connected():
        server.over = time.monotonic() + 20
        pending_agents = PendingAgents(server)
        assert pending_agents.wait_for(None, Deadline(0.2), 30) is None
        assert pending_agents.others().count("gone") == 20, "as many are told as a person reads"


def test_a_greeting_without_an_end_is_none(server):
    with connected(b"+" * 3000), pytest.raises(ProtocolError, match="no line: '[+]{200}'"):
        server.accept(30)


def test_without_the_package_that_tells_who_connects_it_is_named(server, monkeypatch):
    monkeypatch.setitem(sys.modules, "psutil", None)
    with connected() as client:
        with pytest.raises(PeerReaderMissingError, match="(?s)needs psutil.*python3-psutil"):
            server.accept(30)
        assert is_lost(client)


def test_a_process_is_within_those_that_have_started_it():
    with subprocess.Popen(["/bin/sh", "-c", "sleep 100 & echo $!; wait"], stdout=subprocess.PIPE) as shell:
        sleep = int(shell.stdout.readline())
        assert is_within(os.getpid(), sleep) and is_within(shell.pid, sleep) and is_within(sleep, sleep)
        assert not is_within(sleep, shell.pid)
        os.kill(sleep, signal.SIGKILL)
        shell.kill()


@pytest.mark.parametrize("pid", [2**31, 9_999_999_999])
def test_a_process_that_there_cannot_be_is_told_by_its_number(pid):
    assert describe_process(pid) == f"process {pid}"
    assert not is_within(os.getpid(), pid)


def test_no_argument_of_a_process_tells_what_marks_a_launch(driver, fake_agent):
    app = driver.launch(*fake_agent)
    mark = app.connection.check_window("env:QTDRIVER_LAUNCH")
    assert len(mark) == 32
    for process in Path("/proc").glob("[0-9]*"):
        with contextlib.suppress(OSError):
            assert mark.encode() not in (process / "cmdline").read_bytes(), process


def test_what_was_started_ends_with_a_test_that_is_killed_right_after_the_start(tmp_path, build, fake_agent):
    """The watchdog has read the mark of the launch by the time that the program runs."""
    program = (
        f"import os, sys; sys.path.insert(0, {RUNNER!r})\n"
        "from pathlib import Path; from qtdriver import Driver\n"
        f"app = Driver(qt=5, build=Path({str(build)!r})).launch(*{fake_agent!r}, '--stay')\n"
        "print(app.pid, flush=True)\n"
        "os.kill(os.getpid(), 9)\n"
    )
    done = subprocess.run([sys.executable, "-c", program], stdout=subprocess.PIPE, text=True, timeout=60)
    assert done.returncode == -signal.SIGKILL
    eventually(Path(f"/proc/{done.stdout.strip()}/exe").exists, timeout=20).equals(False)
