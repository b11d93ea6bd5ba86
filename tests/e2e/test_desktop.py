"""A desktop without a screen: what its command gets, and that it goes when the command has gone."""

import fcntl
import os
import re
import signal
import stat
import subprocess
import sys
from pathlib import Path

import psutil
import pytest

from qtdriver import Desktop, DesktopError, PortInUseError, Server, eventually
from qtdriver.desktop.desktop import SCRIPT
from qtdriver.launch import linux

MARK = "QTDRIVER_TESTED_DESKTOP"
TELL = 'echo "$DISPLAY"; echo "$XDG_RUNTIME_DIR"; echo $$; readlink /proc/self/ns/net; exec cat'


@pytest.fixture
def environment(tmp_path):
    """That of a desktop in a network of its own, marked as this test's."""
    environment = {**os.environ, MARK: str(tmp_path), "TMPDIR": str(tmp_path)}
    del environment["QTDRIVER_IN_NAMESPACE"]
    return environment


@pytest.fixture
def refusing(environment, tmp_path):
    """The same on a system where `unshare` is refused."""
    folder = tmp_path / "bin"
    folder.mkdir()
    (folder / "unshare").write_text("#!/bin/sh\nexit 1\n")
    (folder / "unshare").chmod(0o755)
    return {**environment, "PATH": f"{folder}:{environment['PATH']}"}


def lock_of(environment):
    """The file by which the desktops of this user take turns."""
    return Path(environment["TMPDIR"]) / f"qtdriver-desktop-{os.getuid()}.lock"


def run(environment, *command, **options):
    return subprocess.run(
        [SCRIPT, *command],
        env=environment,
        capture_output=True,
        text=True,
        timeout=100,
        check=False,
        **options,
    )


def has_left_its_display(display):
    """Whether an X server that has ended left its lock file or its socket. A lock of a living server is none: other tests
    run at the same time, and a number that is free is soon another desktop's."""
    number = display.lstrip(":")
    try:
        owner = int(Path(f"/tmp/.X{number}-lock").read_text())
    except FileNotFoundError:
        return os.path.exists(f"/tmp/.X11-unix/X{number}")
    return not psutil.pid_exists(owner)


def is_gone(environment, display):
    """Whether no process, no file and no socket of the desktop is left."""
    return (
        not list(linux.Launch(MARK, environment[MARK]).processes())
        and not list(Path(environment["TMPDIR"]).iterdir())
        and not has_left_its_display(display)
    )


def test_the_command_has_its_streams_and_its_exit_status(environment):
    done = run(environment, "sh", "-c", "cat; echo complaint >&2; exit 7", input="hello")
    assert (done.returncode, done.stdout, done.stderr) == (7, "hello", "complaint\n")


def test_the_command_has_a_display_with_a_window_manager_and_a_network_of_its_own(environment):
    done = run(
        environment,
        "sh",
        "-c",
        "xprop -root _NET_SUPPORTING_WM_CHECK; xdpyinfo; readlink /proc/self/ns/net; cat /proc/net/tcp",
    )
    assert "dimensions:    1280x1024 pixels" in done.stdout
    assert re.search("_NET_SUPPORTING_WM_CHECK.*window id # 0x", done.stdout)
    assert os.readlink("/proc/self/ns/net") not in done.stdout


def test_the_command_is_its_users_and_has_no_capability(environment):
    done = run(environment, "sh", "-c", "id -u; grep ^Cap /proc/self/status")
    user, *_, inherited, permitted, effective, bounding, ambient = done.stdout.splitlines()
    assert user == str(os.getuid())
    assert {line.split()[1] for line in (inherited, permitted, effective, bounding, ambient)} == {"0" * 16}


def test_a_file_that_nobody_may_read_stays_so(environment, tmp_path):
    secret = tmp_path / "secret"
    secret.touch(mode=0)
    done = run(environment, "cat", str(secret))
    assert done.returncode == 1 and "Permission denied" in done.stderr
    secret.unlink()


def test_nothing_is_left_when_its_output_has_ended(environment):
    display, folder, *_ = run(environment, "sh", "-c", TELL, input="").stdout.split()
    assert Path(folder).parent == Path(environment["TMPDIR"])
    assert is_gone(environment, display)


@pytest.mark.parametrize("number", [signal.SIGTERM, signal.SIGINT, signal.SIGKILL])
def test_a_signal_ends_the_command_and_the_desktop(environment, number):
    process = subprocess.Popen(
        [SCRIPT, "sh", "-c", TELL], env=environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True
    )
    display, _, pid, _ = (process.stdout.readline().strip() for _ in range(4))
    assert int(pid) == process.pid
    assert not is_gone(environment, display)
    process.send_signal(number)
    assert process.wait(60) == -number
    process.communicate()
    eventually(lambda: is_gone(environment, display), timeout=60).is_true()


def test_desktops_at_the_same_time_have_different_displays(environment):
    processes = [
        subprocess.Popen(
            [SCRIPT, "sh", "-c", TELL], env=environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE
        )
        for _ in range(4)
    ]
    displays = {process.stdout.readline() for process in processes}
    for process in processes:
        process.communicate()
    assert len(displays) == 4


def test_without_namespaces_desktops_take_turns(refusing, tmp_path):
    log = tmp_path / "log"
    script = f'echo "in $1" >>{log}; [ "$(readlink /proc/self/ns/net)" = {os.readlink("/proc/self/ns/net")} ] || exit 1; '
    script += f'xprop -root >/dev/null; echo "out $1" >>{log}'
    processes = [
        subprocess.Popen([SCRIPT, "sh", "-c", script, "sh", str(number)], env=refusing) for number in range(3)
    ]
    assert [process.wait(100) for process in processes] == [0, 0, 0]
    lines = log.read_text().split()
    assert len(lines) == 12
    assert all(lines[at + 1] == lines[at + 3] for at in range(0, 12, 4))


def test_a_turn_that_is_waited_for_is_said_to_be(refusing):
    with open(lock_of(refusing), "w") as turn:
        fcntl.flock(turn, fcntl.LOCK_EX)
        process = subprocess.Popen([SCRIPT, "true"], env=refusing, stderr=subprocess.PIPE, text=True)
        said = process.stderr.readline()
    assert said == (
        "with-desktop: another run has the network, and this system allows no second one: waiting for its end\n"
    )
    assert process.communicate(timeout=100)[1] == ""
    assert process.returncode == 0


def test_a_turn_that_is_free_is_taken_without_a_word(refusing):
    done = run(refusing, "true")
    assert (done.returncode, done.stderr) == (0, "")
    status = lock_of(refusing).lstat()
    assert (stat.S_IMODE(status.st_mode), status.st_uid) == (0o600, os.getuid())


@pytest.mark.parametrize("kind", ["file", "nothing yet"])
def test_a_lock_that_is_a_link_is_refused_and_not_followed(refusing, tmp_path, kind):
    target = tmp_path / "target"
    if kind == "file":
        target.write_text("precious")
    lock_of(refusing).symlink_to(target)
    done = run(refusing, "true")
    assert done.returncode == 1
    assert done.stderr == f"with-desktop: {lock_of(refusing)} is not a file of yours: remove it\n"
    assert (target.read_text() == "precious") if kind == "file" else not target.exists()


def test_where_the_port_is_taken_a_desktop_of_its_own_is_named_and_has_a_free_one(environment):
    listen = "import sys; sys.path.insert(0, sys.argv[1]); from qtdriver import Server; Server()"
    with Server():
        with pytest.raises(PortInUseError) as caught:
            Server()
        beside = run(environment, sys.executable, "-c", listen, str(SCRIPT.parents[2]))
    assert str(caught.value).endswith(
        "or wait for its end. Where the system allows network namespaces, you can also run 'scripts/with-desktop.sh "
        "COMMAND' or 'qtdriver run --headless', which has a network of its own"
    )
    assert (beside.returncode, beside.stderr) == (0, "")


def test_an_unknown_command_is_status_127_and_leaves_nothing(environment):
    done = run(environment, "no-such-command")
    assert done.returncode == 127 and "no-such-command" in done.stderr
    assert list(linux.Launch(MARK, environment[MARK]).processes()) == []
    assert os.listdir(environment["TMPDIR"]) == []


def test_an_x_server_that_does_not_start_is_told_and_leaves_nothing(environment):
    done = run({**environment, "QTDRIVER_SCREEN": "tiny"}, "true")
    assert done.returncode == 1
    assert done.stderr.startswith("with-desktop: Xvfb ended with status 1: Invalid screen configuration tiny")
    assert os.listdir(environment["TMPDIR"]) == []


def test_a_desktop_that_does_not_come_up_is_an_error_with_the_reason(monkeypatch):
    monkeypatch.setenv("QTDRIVER_SCREEN", "tiny")
    with pytest.raises(DesktopError, match="no desktop without a screen: with-desktop: Xvfb ended.*tiny"):
        Desktop()


def test_a_closed_desktop_is_gone(environment, monkeypatch):
    for name in (MARK, "TMPDIR"):
        monkeypatch.setenv(name, environment[name])
    desktop = Desktop()
    assert not is_gone(environment, desktop.environment["DISPLAY"])
    assert repr(desktop) == f'<desktop {desktop.environment["DISPLAY"]}, running>'
    desktop.close()
    assert repr(desktop) == f'<desktop {desktop.environment["DISPLAY"]}, closed>'
    assert is_gone(environment, desktop.environment["DISPLAY"])
    desktop.close()
