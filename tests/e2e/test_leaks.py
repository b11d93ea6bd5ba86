"""However a run ends, nothing of it stays: no process, no socket, no namespace, no X server, no folder."""

import glob
import os
import re
import signal
from pathlib import Path

import pytest

from pytestrun import Project
from qtdriver import eventually

NAMESPACES = ("net", "mnt")

LONG = """
def note(name, *values):
    Path(name).write_text("".join(f"{value}\\n" for value in values))

@pytest.fixture
def noted(qtdriver, app):
    program = app.process._popen.args[0]
    qtdriver.launch("/bin/sh", "-c", f"sleep 1000 & exec {program}")  # sleep needs no display: who ends it?
    note("started", os.getpid(), app.display, os.readlink("/proc/self/ns/net"), os.readlink("/proc/self/ns/mnt"))
    yield
    note("ending", "now")
    time.sleep(PAUSE)

def test_long(noted):
    time.sleep(1000)
"""


@pytest.fixture
def project(tmp_path):
    return Project(tmp_path)


def start(project, *arguments, pause=0):
    """Starts a run whose test goes on for long, and waits until its application is there. Answers the run, the process
    with the test, its display and its namespaces, of the network and of mounts."""
    project.write(LONG.replace("PAUSE", str(pause)))
    run = project.start(*arguments)
    worker, display, *namespaces = project.line("started")
    running = " ".join(project.processes().values())
    for name in ("Xvfb", "openbox", "desktop_keeper.py", "linux.py", "showcase", "sleep"):
        assert name in running
    assert Path(f"/proc/{worker}/root/tmp/.X{display[1:]}-lock").exists()
    return run, int(worker), display, namespaces


def check_nothing_stays(project, display, namespaces):
    """Waits until all is gone."""
    eventually(project.processes, timeout=60).equals({})
    assert os.listdir(project.temporary) == []
    number = display[1:]
    assert not Path(f"/tmp/.X{number}-lock").exists()
    assert not Path(f"/tmp/.X11-unix/X{number}").exists()
    assert f"/tmp/.X11-unix/X{number}" not in Path("/proc/net/unix").read_text()
    assert not listening(4242)
    own = {os.readlink(f"/proc/self/ns/{kind}") for kind in NAMESPACES}
    assert not living_namespaces() & (set(namespaces) - own)


def listening(port):
    """Whether anything listens on the port, in this network namespace."""
    return re.search(rf":{port:04X} [0-9A-F:]+ 0A ", Path("/proc/net/tcp").read_text()) is not None


def living_namespaces():
    """The namespaces that processes are in."""
    found = set()
    for kind in NAMESPACES:
        for link in glob.glob(f"/proc/[0-9]*/ns/{kind}"):
            try:
                found.add(os.readlink(link))
            except OSError:
                pass
    return found


@pytest.mark.parametrize("workers", [0, 2])
def test_nothing_stays_of_a_run_that_ends_by_itself(project, workers):
    project.write(
        """
        def note(app):
            with open("started", "a") as file:
                file.write(f"{app.display} {os.readlink('/proc/self/ns/net')} {os.readlink('/proc/self/ns/mnt')}\\n")

        def test_passes(app):
            note(app)

        def test_fails(app):
            note(app)
            assert 0

        def test_crashes(app):
            note(app)
            os.kill(app.pid, signal.SIGSEGV)
            app.windows()

        def test_starts_what_goes_on(qtdriver, app):
            note(app)
            program = app.process._popen.args[0]
            qtdriver.launch("/bin/sh", "-c", f"sleep 1000 & exec {program}")
        """
    )
    run = project.run("-n", workers, "--tb=no")
    assert run.outcomes == "2 failed, 2 passed"
    for display, *namespaces in {tuple(line.split()) for line in project.line("started")}:
        check_nothing_stays(project, display, namespaces)


PLACES = pytest.mark.parametrize("arguments", [(), ("-n", 1)], ids=["here", "in a worker"])


@PLACES
def test_nothing_stays_of_a_run_that_is_interrupted(project, arguments):
    run, _, display, namespaces = start(project, *arguments)
    project.interrupt(run)
    assert "KeyboardInterrupt" in project.finish(run).output
    check_nothing_stays(project, display, namespaces)
    assert (project.bundle("test_long") / "trace" / "trace.json").exists()


@PLACES
def test_nothing_stays_of_a_run_that_is_interrupted_again_while_it_ends(project, arguments):
    run, _, display, namespaces = start(project, *arguments, pause=1000)
    project.interrupt(run)
    project.line("ending")
    project.interrupt(run)
    project.finish(run)
    check_nothing_stays(project, display, namespaces)


@pytest.mark.parametrize(
    "number, arguments",
    [(signal.SIGTERM, ()), (signal.SIGKILL, ()), (signal.SIGKILL, ("-n", 1))],
    ids=["asked to end", "here", "in a worker"],
)
def test_nothing_stays_of_a_run_that_is_killed(project, number, arguments):
    run, _, display, namespaces = start(project, *arguments)
    run.send_signal(number)
    project.finish(run)
    check_nothing_stays(project, display, namespaces)


def test_nothing_stays_of_a_worker_that_is_killed(project):
    run, worker, display, namespaces = start(project, "-n", 2)
    os.kill(worker, signal.SIGKILL)
    finished = project.finish(run)
    assert "crashed while running 'test_project.py::test_long'" in finished.output
    assert "test_long" in (project.results / "report.html").read_text()
    check_nothing_stays(project, display, namespaces)


def test_nothing_stays_of_a_desktop_whose_server_is_killed(project):
    run, _, display, namespaces = start(project)
    (server,) = [pid for pid, command in project.processes().items() if command.startswith("Xvfb")]
    os.kill(server, signal.SIGKILL)
    project.interrupt(run)
    project.finish(run)
    check_nothing_stays(project, display, namespaces)
