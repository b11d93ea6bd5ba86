"""`doctor`: what is found, and how it is said."""

import json
import os
import shutil
import signal
import stat
import subprocess
from contextlib import closing
from pathlib import Path

import pytest

from qtdriver import Desktop, Server, eventually
from qtdriver.desktop.desktop import namespaces_remedy
from qtdriver.launch import linux
from qtdriver.protocol.peers import describe_listener

MARK = "QTDRIVER_TESTED_DOCTOR"
QTDRIVER = str(Path(__file__).resolve().parents[2] / "scripts" / "qtdriver")


@pytest.fixture
def examine(build):
    """Runs the doctor with a build folder that has an agent for Qt 5 only; answers findings by check, and the status."""

    def call(*program, environment=()):
        command = [QTDRIVER, "doctor", "--json", "--build", str(build)]
        command += ["--", *program] if program else []
        finished = subprocess.run(
            command, capture_output=True, text=True, timeout=60, env={**os.environ, **dict(environment)}
        )
        assert finished.stderr == ""
        return {finding["check"]: finding for finding in json.loads(finished.stdout)}, finished.returncode

    return call


@pytest.fixture
def refusing(tmp_path):
    """An environment on a system where `unshare` is refused."""
    fake = tmp_path / "unshare"
    fake.write_text("#!/bin/sh\nexit 1\n")
    fake.chmod(0o755)
    return {"PATH": f"{tmp_path}:{os.environ['PATH']}"}


@pytest.fixture
def bare(tmp_path):
    """An environment without any tool, any Python package and any display."""
    tools = tmp_path / "tools"
    tools.mkdir()
    for name in ("bash", "dirname", "readlink"):  # what starts the command line itself
        (tools / name).symlink_to(shutil.which(name))
    python = tmp_path / "python3"
    python.write_text('#!/bin/bash\nexec /usr/bin/python3 -S "$@"\n')
    python.chmod(0o755)
    return {"PATH": str(tools), "QTDRIVER_PYTHON": str(python), "DISPLAY": ""}


def test_a_healthy_place_has_no_problem(examine, build):
    findings, status = examine()
    assert status == 0
    assert findings["Python"]["result"] == "ok"
    assert findings["agent for Qt 5"]["text"] == f"{build}/qt5/lib/libqtdriver-preload.so"
    assert findings["port 4242"]["text"] == "127.0.0.1:4242 is free"
    assert findings["display"]["text"] == os.environ["DISPLAY"]
    assert findings["window manager"]["result"] == "ok"


def test_a_missing_agent_is_told_with_the_command_that_builds_it(examine):
    findings, _ = examine()
    missing = findings["agent for Qt 6"]
    assert missing["result"] == "note" and missing["text"].startswith("is not built")
    assert missing["remedy"] == "scripts/build.sh 6, or name another build folder with --build DIR"


def test_no_agent_at_all_is_a_problem(tmp_path):
    finished = subprocess.run([QTDRIVER, "doctor", "--build", str(tmp_path)], capture_output=True, text=True)
    assert finished.returncode == 1
    assert "PROBLEM  agents: there is none for any Qt" in finished.stdout
    assert "scripts/build.sh 5, or the number of your Qt" in finished.stdout
    assert finished.stdout.splitlines()[-1] == "1 problem"


def test_a_taken_port_is_told_with_its_owner(examine):
    with Server():
        findings, status = examine()
    assert status == 1
    assert findings["port 4242"]["result"] == "problem"
    assert f"(process {os.getpid()})" in findings["port 4242"]["text"]
    assert findings["port 4242"]["remedy"] == (
        "end that process, or wait for its end; 'scripts/with-desktop.sh COMMAND' and 'qtdriver run --headless' have a "
        "network of their own"
    )


def test_without_namespaces_a_taken_port_can_only_be_waited_for(examine, refusing):
    with Server():
        findings, _ = examine(environment=refusing)
    assert findings["port 4242"]["remedy"] == "end that process, or wait for its end"


def test_nobody_listens_on_a_free_port():
    assert describe_listener(4242) is None


def test_a_display_that_is_not_there_is_a_problem(examine):
    findings, status = examine(environment={"DISPLAY": ":4321"})
    assert (findings["display"]["result"], status) == ("problem", 1)
    assert ":4321 cannot be reached" in findings["display"]["text"]
    assert findings["display"]["remedy"] == "check DISPLAY and XAUTHORITY"


def test_no_display_at_all_is_a_note(examine):
    findings, status = examine(environment={"DISPLAY": ""})
    assert (findings["display"]["result"], status) == ("note", 0)
    assert findings["display"]["remedy"] == "use 'qtdriver run --headless', or log in to a desktop"


def test_a_window_manager_that_has_ended_is_missed(examine, tmp_path, monkeypatch):
    monkeypatch.setenv(MARK, str(tmp_path))
    with closing(Desktop()) as desktop:
        (manager,) = [
            pid
            for pid in linux.Launch(MARK, str(tmp_path)).processes()
            if Path(f"/proc/{pid}/comm").read_text() == "openbox\n"
        ]
        os.kill(manager, signal.SIGTERM)
        found = eventually(lambda: examine(environment=desktop.environment), timeout=20)
        found.satisfies(lambda found: found[0]["window manager"]["result"] == "problem")
        findings, status = examine(environment=desktop.environment)
    assert status == 1
    assert findings["window manager"]["text"].startswith(f"none runs on {desktop.environment['DISPLAY']}")
    assert findings["window manager"]["remedy"] == "start one, such as openbox"


def test_forbidden_namespaces_are_noted(examine, refusing):
    findings, status = examine(environment=refusing)
    assert (findings["namespaces"]["result"], status) == ("note", 0)
    assert "the system forbids them" in findings["namespaces"]["text"]
    assert "security profile" in findings["namespaces"]["remedy"]


@pytest.mark.parametrize(
    "setting, value, remedy",
    [
        (
            "kernel/apparmor_restrict_unprivileged_userns",
            "1",
            "Ubuntu restricts them: sysctl kernel.apparmor",
        ),
        ("kernel/unprivileged_userns_clone", "0", "sysctl kernel.unprivileged_userns_clone=1"),
        ("user/max_user_namespaces", "0", "sysctl user.max_user_namespaces="),
        ("user/max_user_namespaces", "1000", "see the container's security profile"),
    ],
)
def test_the_remedy_for_forbidden_namespaces_is_the_setting_that_forbids_them(
    tmp_path, setting, value, remedy
):
    (tmp_path / setting).parent.mkdir()
    (tmp_path / setting).write_text(f"{value}\n")
    assert namespaces_remedy(tmp_path).startswith(remedy)


def test_a_wayland_session_is_noted(examine):
    findings, status = examine(environment={"WAYLAND_DISPLAY": "wayland-0", "QT_QPA_PLATFORM": ""})
    assert (findings["session"]["result"], status) == ("note", 0)
    assert findings["session"]["text"].startswith("this is a Wayland session")
    assert "session" not in examine()[0]


@pytest.mark.parametrize(
    "tool, package",
    [
        ("Xvfb", "xvfb"),
        ("setpriv", "util-linux"),
        ("setsid", "util-linux"),
        ("xclip", "xclip"),
        ("gdb", "gdb"),
    ],
)
def test_a_missing_tool_is_noted_with_its_package(examine, bare, tool, package):
    findings, _ = examine(environment=bare)
    assert findings[tool]["text"].startswith("is missing; it is for ")
    assert findings[tool]["remedy"] == f"apt install {package}"


@pytest.mark.parametrize("package", ["python3-pyelftools", "python3-pytest", "python3-xlib"])
def test_a_missing_python_package_is_noted(examine, bare, package):
    findings, _ = examine(environment=bare)
    assert findings[package]["text"].startswith("is missing; it is for ")
    assert findings[package]["remedy"] == f"apt install {package}"


def test_without_the_package_that_tells_who_connects_nothing_can_be_driven(examine, bare):
    findings, status = examine(environment=bare)
    assert (findings["python3-psutil"]["result"], status) == ("problem", 1)
    assert findings["python3-psutil"]["remedy"] == "apt install python3-psutil"


def test_without_that_package_a_taken_port_has_an_owner_who_cannot_be_seen(examine, bare):
    with Server():
        findings, _ = examine(environment=bare)
    assert (
        findings["port 4242"]["text"] == "127.0.0.1:4242 is taken by a process that cannot be seen from here"
    )


def test_a_program_with_an_agent_is_well(examine):
    findings, _ = examine("speedcrunch")
    assert "uses Qt 5, and there is an agent for it" in findings["program"]["text"]


def test_a_program_with_the_rights_of_another_user_is_a_problem(examine, tmp_path):
    copy = tmp_path / "speedcrunch"
    shutil.copy(shutil.which("speedcrunch"), copy)
    copy.chmod(0o755 | stat.S_ISUID)
    findings, status = examine(str(copy))
    assert (findings["rights"]["result"], status) == ("problem", 1)
    assert findings["rights"]["text"] == f"{copy} starts with another user's rights, which drops LD_PRELOAD"
    assert findings["rights"]["remedy"] == "test a copy of it without them: chmod ug-s"


@pytest.mark.parametrize(
    "program, text, remedy",
    [
        ("nosuchprogram", "nosuchprogram: no such program in PATH", "install it, or give its path"),
        ("/etc/passwd", "/etc/passwd is not an executable file", "name the application's own file"),
        ("/bin/true", "/bin/true links no Qt", "say which Qt it uses: 'qtdriver run --qt N'"),
        (QTDRIVER, "is a script", "name the binary that it starts"),
    ],
)
def test_a_program_that_cannot_be_driven_is_told_with_its_remedy(examine, program, text, remedy):
    findings, status = examine(program)
    assert (findings["program"]["result"], status) == ("problem", 1)
    assert text in findings["program"]["text"]
    assert findings["program"]["remedy"].startswith(remedy)


def test_every_note_and_every_problem_has_a_remedy(bare, tmp_path):
    command = [QTDRIVER, "doctor", "--json", "--build", str(tmp_path), "--", "/bin/true"]
    with Server():
        finished = subprocess.run(
            command, capture_output=True, text=True, timeout=60, env={**os.environ, **bare}
        )
    complaints = [finding for finding in json.loads(finished.stdout) if finding["result"] != "ok"]
    assert {"agents", "port 4242", "display", "namespaces", "program", "xclip", "python3-xlib"} <= {
        finding["check"] for finding in complaints
    }
    assert [finding for finding in complaints if not finding["remedy"]] == []
