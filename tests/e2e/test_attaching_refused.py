"""Programs that run already and get no agent, which run on as they were; and the commands that attach."""

import json
import os
import re
import signal
import subprocess
import sys
from pathlib import Path

import pytest

from attached import app, attach, driver, goes_on, start, work_of  # noqa: F401: fixtures
from oneshot import QTDRIVER, data, holding, is_running, qtdriver, runtime  # noqa: F401: a fixture
from preloaded import QT, wait_for, WIDGETS_HOST
from qtdriver import AgentNotBuiltError, Driver, LoadingError, NoQtError, NoWidgetsError, StaticQtError
from qtdriver.attaching import loading
from qtdriver.attaching import process as processes
from qtdriver.attaching.process import RunningProgram
from qtdriver.commandline import doctor
from showcase import AGENTS


def test_an_application_that_does_not_wait_for_events_is_left_alone(driver, app):
    app.tell("wait")
    with pytest.raises(
        LoadingError, match=r"did not wait for events within 0\.5 seconds: it is busy, or hangs"
    ):
        driver.attach(pid=app.process.pid, load_agent=True, start_timeout=0.5)
    app.tell("me")
    assert app.next_line() == "waited for me"
    goes_on(app)


def test_a_program_without_qt_runs_on(driver, start):
    program = start("/bin/cat")
    with pytest.raises(NoQtError, match=r"process \d+ \(.*/cat\) has loaded no Qt"):
        attach(driver, program)
    program.tell("still here")
    assert program.next_line() == "still here"


def test_a_program_with_qt_but_without_widgets_runs_on(driver, start):
    program = start(WIDGETS_HOST.with_name("host_preload_core"), "run")
    libraries = Path(f"/proc/{program.process.pid}/maps")
    wait_for(lambda: "libQt" in libraries.read_text())
    with pytest.raises(NoWidgetsError, match="has loaded libQt.*Core.*, but not Qt's widgets"):
        attach(driver, program)
    assert program.process.poll() is None


def test_an_application_of_a_qt_without_an_agent_runs_on(app, tmp_path):
    with Driver(build=tmp_path) as driver:
        with pytest.raises(
            AgentNotBuiltError, match=f"the application uses Qt {QT}, and there is no agent for it"
        ):
            attach(driver, app)
    goes_on(app)


def test_a_program_with_qt_inside_is_named_so(app, monkeypatch):
    running = RunningProgram(app.process.pid)
    monkeypatch.setattr(running, "_libraries", {Path("/lib/libc.so.6")})
    monkeypatch.setattr(processes, "contains_qt_widgets", lambda program: program == running.program)
    with pytest.raises(StaticQtError, match="Qt is linked into process .* statically"):
        running.qt_major()


def test_a_process_of_another_user_is_refused(app, monkeypatch):
    monkeypatch.setattr(os, "geteuid", lambda: 4711)
    with pytest.raises(
        LoadingError, match=rf"process {app.process.pid} is of another user \(0\)|of another user"
    ):
        RunningProgram(app.process.pid)


def test_a_process_that_is_not_there_is_refused():
    with subprocess.Popen([sys.executable, "-c", ""]) as process:
        process.wait()
    with pytest.raises(LoadingError, match=f"there is no process {process.pid}"):
        RunningProgram(process.pid)


def test_a_process_that_is_stopped_is_refused_and_stays_so(driver, app):
    app.process.send_signal(signal.SIGSTOP)
    state = Path(f"/proc/{app.process.pid}/status")
    wait_for(lambda: "State:\tT" in state.read_text())
    with pytest.raises(LoadingError, match=r"process \d+ is stopped\nLet it go on: kill -CONT \d+"):
        attach(driver, app)
    assert "State:\tT" in state.read_text()
    app.process.send_signal(signal.SIGCONT)
    goes_on(app)


def test_a_process_with_a_debugger_is_refused(driver, app):
    command = ["gdb", "-nx", "-q", "-batch", "-p", str(app.process.pid), "-ex", "shell read line"]
    with subprocess.Popen(
        command, stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL
    ) as gdb:
        status = Path(f"/proc/{app.process.pid}/status")
        wait_for(lambda: f"TracerPid:\t{gdb.pid}" in status.read_text())
        with pytest.raises(LoadingError, match=rf"has a debugger, process {gdb.pid}"):
            attach(driver, app)
        gdb.communicate(b"\n")
    goes_on(app)


@pytest.mark.parametrize("scope, hint", [("1", "kernel.yama.ptrace_scope=0"), ("0", "--cap-add=SYS_PTRACE")])
def test_where_the_system_forbids_it_the_remedy_is_said(driver, app, tmp_path, monkeypatch, scope, hint):
    gdb = tmp_path / "gdb"
    order = {"end": "forbidden", "reason": "ptrace: Operation not permitted."}
    gdb.write_text(f"#!/bin/sh\necho '{loading.MARK}{json.dumps(list(order.values()))}'\n")
    gdb.chmod(0o755)
    monkeypatch.setenv("PATH", f"{tmp_path}:{os.environ['PATH']}")
    setting = tmp_path / "ptrace_scope"
    setting.write_text(f"{scope}\n")
    monkeypatch.setattr(loading, "_PTRACE_SCOPE", setting)
    with pytest.raises(
        LoadingError, match=f"(?s)may not look into process .*not permitted.*{re.escape(hint)}"
    ):
        attach(driver, app)
    goes_on(app)


def test_without_gdb_the_package_is_named(driver, app, tmp_path, monkeypatch):
    monkeypatch.setenv("PATH", str(tmp_path))
    with pytest.raises(LoadingError, match=r"needs gdb\nInstall it \(Debian: gdb\)"):
        attach(driver, app)
    monkeypatch.undo()
    goes_on(app)


def test_an_interrupted_command_leaves_the_application_running(app):
    command = [QTDRIVER, "attach", str(app.process.pid), "--build", str(AGENTS)]
    with subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE) as attaching:
        attaching.send_signal(signal.SIGTERM)
        attaching.communicate(timeout=60)
    before = work_of(app)[0]
    wait_for(lambda: work_of(app)[0] > before)
    app.tell("quit")
    assert app.end()[:2] == (0, "end loop\ntorn down\n")


def test_the_command_holds_a_running_application_until_it_is_let_go(app):
    told = data("attach", str(app.process.pid), "--build", str(AGENTS))
    assert told["pid"] == app.process.pid
    assert "xxxx" in qtdriver("windows")
    assert qtdriver("detach") == f"process {app.process.pid} runs on without an agent"
    assert "no application is held" in qtdriver("windows", status=6)
    before = work_of(app)[0]
    wait_for(lambda: work_of(app)[0] > before)


def test_what_was_started_is_not_let_go():
    with holding() as told:
        assert 'end it with "qtdriver stop"' in qtdriver("detach", status=1)
        assert is_running(told["pid"]) and "Roastery" in qtdriver("windows")


@pytest.mark.parametrize(
    "scope, remedy", [("1", "sysctl kernel.yama.ptrace_scope=0"), ("3", "start the machine with")]
)
def test_the_doctor_says_where_the_system_forbids_it(monkeypatch, scope, remedy):
    monkeypatch.setattr(doctor, "_setting", lambda name: scope)
    monkeypatch.setattr(os, "geteuid", lambda: 4711)
    finding = next(doctor._stacks(None))
    assert (finding.check, finding.result) == ("gdb", "note")
    assert "'qtdriver attach'" in finding.text and finding.remedy.startswith(remedy)
