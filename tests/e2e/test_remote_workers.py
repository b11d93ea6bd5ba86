"""Workers on other machines: they have desktops of their own, and what they keep of tests comes back."""

import json
import os
import socket
import subprocess
import sys
from pathlib import Path
from types import SimpleNamespace

import pytest

from machines import SSHD, make_machines
from pytestrun import RUNNER, Project
from qtdriver.desktop.desktop import MARK_OF_WORKERS
from qtdriver.plugin.parallel import Workers
from qtdriver.plugin.remote import ArtifactSender, receive
from qtdriver.report.results import RunResults

PYTHON = f"env PYTHONPATH={RUNNER} {sys.executable}"

TESTS = """
import socket
@pytest.mark.parametrize("number", range(4))
def test_clicks(app, number):
    app.window(name="showcase").widget("brewButton").activate()
    eventually(app.window(name="showcase").widget("clickCount")).has(text="1")
    place = [socket.gethostname(), os.readlink("/proc/self/ns/net"), app.display]
    Path.home().joinpath(f"place-{os.environ['PYTEST_XDIST_WORKER']}").write_text(" ".join(place))
    eventually(lambda: len(list(Path.home().glob("place-*"))) == WORKERS, timeout=60).is_true()
    if number == 2:
        if READONLY:
            with pytest.raises(OSError): Path(PROJECT, "written").touch()
        app.window(name="showcase").widget("nothing").click(timeout=0)
"""


@pytest.fixture
def project(tmp_path):
    return Project(tmp_path)


def write_tests(project, readonly):
    project.write(f"WORKERS, PROJECT, READONLY = 2, {str(project.folder)!r}, {readonly}" + TESTS)


def places(home):
    """The host, network and display of each worker, which wrote them into its home folder."""
    return [path.read_text().split() for path in home.glob("place-*")]


def check_evidence(project, run):
    """The evidence of the test that failed is here, told with its path of here, and in the page."""
    kept = project.bundle("test_clicks-2")
    shown = f"test-results/{kept.name}"
    assert f"{shown}: error.txt, screenshot.png, stderr.txt, stdout.txt, trace" in run.output
    assert f"qtdriver: kept of a failure: {shown}" in run.output
    paths = run.properties("test_clicks[2]")
    assert paths == {"qtdriver_bundle": str(kept), "qtdriver_trace": str(kept / "trace")}
    steps = json.loads((kept / "trace" / "trace.json").read_text())["steps"]
    assert (kept / "trace" / steps[0]["after"]).stat().st_size > 1000
    assert "nothing" in (kept / "error.txt").read_text()
    page = (project.results / "report.html").read_text()
    assert all(f"test_clicks[{number}]" in page for number in range(4)) and "data:image/" in page
    passed = [path.parent.parent.name for path in project.results.glob("*/trace/trace.js")]
    assert len(passed) == 4, "passed tests have traces, too"
    assert not (project.folder / "written").exists()


@pytest.mark.skipif(SSHD is None, reason="there is no sshd (Debian: openssh-server)")
def test_workers_on_two_machines_have_desktops_and_their_evidence_comes_back(project, tmp_path):
    machines = tmp_path / "machines"
    config = make_machines(machines, project.folder, {"LANG": "C.UTF-8", "TMPDIR": "/tmp"})
    write_tests(project, readonly=True)
    specs = [f"ssh={host}//ssh_config={config}//python={PYTHON}" for host in ("lab1", "lab2")]
    run = project.run(
        *["--dist=load", "--qtdriver-trace=on", f"--rsyncdir={project.folder / 'test_project.py'}"],
        *[word for spec in specs for word in ("--tx", spec)],
        project.folder / "test_project.py",
    )
    print((machines / "sshd.log").read_text())
    workers = {result.worker for result in RunResults(project.results / "results.jsonl")}
    assert workers == {"gw0 on lab1", "gw1 on lab2"}
    assert run.outcomes.startswith("1 failed, 3 passed")
    here = [socket.gethostname(), os.readlink("/proc/self/ns/net"), os.environ["DISPLAY"]]
    hosts, networks, displays = (set(column) for column in zip(*places(machines / "home")))
    assert hosts == {"lab1", "lab2"}
    of_machines = {path.read_text().strip() for path in machines.glob("network-*")}
    assert len(networks) == len(displays) == len(of_machines) == 2
    assert not (networks | displays) & {*here, *of_machines}, "each worker has a network within its machine"
    check_evidence(project, run)
    assert project.processes() == {}


@pytest.fixture
def worker_server(project, tmp_path):
    """The address of a server of workers, with a home folder of its own."""
    home = tmp_path / "home"
    home.mkdir()
    server = subprocess.Popen(
        [sys.executable, "-m", "qtdriver.desktop", "--listen", "127.0.0.1:0"],
        cwd=home,
        env={**os.environ, "PYTHONPATH": str(RUNNER), "HOME": str(home), "TMPDIR": str(home)},
        stdout=subprocess.PIPE,
        text=True,
    )
    try:
        yield server.stdout.readline().split()[-1]
    finally:
        server.kill()
        server.communicate()


def test_workers_that_are_reached_by_a_socket_have_desktops_and_their_evidence_comes_back(
    project, worker_server, tmp_path
):
    write_tests(project, readonly=False)
    run = project.run(
        *["--dist=load", "--qtdriver-trace=on", f"--rsyncdir={project.folder / 'test_project.py'}"],
        *["--tx", f"socket={worker_server}//id=one//chdir=one"],
        *["--tx", f"socket={worker_server}//id=two//chdir=two"],
        project.folder / "test_project.py",
    )
    assert run.outcomes.startswith("1 failed, 3 passed")
    _, networks, displays = (set(column) for column in zip(*places(tmp_path / "home")))
    assert len(networks) == len(displays) == 2
    workers = {result.worker for result in RunResults(project.results / "results.jsonl")}
    assert workers == {f"one on {worker_server}", f"two on {worker_server}"}
    check_evidence(project, run)


def test_a_machine_without_namespaces_says_so(tmp_path):
    (tmp_path / "unshare").write_text("#!/bin/sh\necho 'Operation not permitted' >&2\nexit 1\n")
    (tmp_path / "unshare").chmod(0o755)
    environment = {**os.environ, "PYTHONPATH": str(RUNNER), "PATH": f"{tmp_path}:{os.environ['PATH']}"}
    command = [sys.executable, "-m", "qtdriver.desktop", "touch", str(tmp_path / "started")]
    done = subprocess.run(command, env=environment, capture_output=True, text=True)
    assert done.returncode == 1 and not (tmp_path / "started").exists()
    assert "qtdriver: no worker on a desktop of its own here: this system allows no network" in done.stderr


@pytest.mark.parametrize("place", ["4000", ":4000", "here:"])
def test_a_server_of_workers_wants_to_know_from_where_it_can_be_reached(place):
    command = [sys.executable, "-m", "qtdriver.desktop", "--listen", place]
    environment = {**os.environ, "PYTHONPATH": str(RUNNER)}
    done = subprocess.run(command, env=environment, capture_output=True, text=True, timeout=60)
    assert done.returncode == 1 and done.stderr.startswith("usage: ") and "HOST:PORT" in done.stderr


def spec(**attributes):
    return SimpleNamespace(**{"popen": None, "ssh": None, "via": None, "python": None, **attributes})


def test_the_interpreter_of_a_worker_by_ssh_begins_on_a_desktop():
    usual, chosen, connected = spec(ssh="host"), spec(ssh="host", python="py -X dev"), spec(socket="host:1")
    Workers().pytest_xdist_setupnodes(SimpleNamespace(stash={}), [usual, chosen, connected])
    assert usual.python == "python3 -m qtdriver.desktop python3"
    assert chosen.python == "py -X dev -m qtdriver.desktop py -X dev"
    assert connected.python is None


def test_a_report_brings_each_file_once_and_again_when_it_has_changed(tmp_path):
    sender = ArtifactSender({"qtdriver_base": str(tmp_path), "qtdriver_output": str(tmp_path / "here")})
    folder = sender.output / "test-1"
    (folder / "trace").mkdir(parents=True)
    (folder / "error.txt").write_bytes(b"one")
    (folder / "trace" / "trace.js").write_bytes(b"\0\xff")
    for content, received in ((b"one", {"error.txt", "trace.js"}), (b"one, two", {"error.txt"})):
        (folder / "error.txt").write_bytes(content)
        report = SimpleNamespace()
        sender.attach(report, folder)
        assert {name.rpartition("/")[2] for name in report.qtdriver_files} == received
        receive(report, tmp_path / "here")
        assert vars(report) == {}, "the report does not keep them"
    assert (tmp_path / "here" / "test-1" / "error.txt").read_bytes() == b"one, two"
    assert (tmp_path / "here" / "test-1" / "trace" / "trace.js").read_bytes() == b"\0\xff"
    assert sender.path_there(folder) == tmp_path / "here" / "test-1"
    sender.pytest_unconfigure()
    assert not sender.output.exists()


def test_a_file_that_cannot_be_read_holds_up_no_other(tmp_path, monkeypatch):
    """Those before it would never be sent: they count as sent, and are removed with the folder of the test."""
    sender = ArtifactSender({"qtdriver_base": str(tmp_path), "qtdriver_output": str(tmp_path / "here")})
    folder = sender.output / "test-1"
    folder.mkdir()
    for name in "abc":
        (folder / name).write_text(name)
    read = Path.read_bytes
    with monkeypatch.context() as patched:
        patched.setattr(Path, "read_bytes", lambda path: read(path / "no file" if path.name == "b" else path))
        report = SimpleNamespace()
        with pytest.raises(OSError, match="no file"):
            sender.attach(report, folder)
    assert set(report.qtdriver_files) == {"test-1/a", "test-1/c"}
    later = SimpleNamespace()
    sender.attach(later, folder)
    sender.pytest_unconfigure()
    assert set(later.qtdriver_files) == {"test-1/b"}


def test_files_of_a_worker_with_a_desktop_are_removed_with_that_also_when_it_is_killed(tmp_path, monkeypatch):
    monkeypatch.setenv("XDG_RUNTIME_DIR", str(tmp_path))
    monkeypatch.setenv(MARK_OF_WORKERS, "1")
    sender = ArtifactSender({"qtdriver_base": str(tmp_path), "qtdriver_output": str(tmp_path / "here")})
    assert sender.output.parent == tmp_path


@pytest.mark.parametrize("name", ["../out", "/tmp/out", "test-1/../../out", "alone"])
def test_a_worker_cannot_write_beside_the_folders_of_tests(tmp_path, name):
    receive(SimpleNamespace(qtdriver_files={name: b"x"}), tmp_path / "deep" / "here")
    assert [path for path in tmp_path.rglob("*") if path.is_file()] == []
