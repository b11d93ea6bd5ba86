"""The control socket of an application that is held."""

import os
import signal
import socket
import stat

import pytest

from qtdriver import eventually
from qtdriver.commandline.control import ControlSocket, ask, peer_user, socket_path
from qtdriver.errors.commandline import ControlSocketError

from oneshot import held, hold, is_running, qtdriver, runtime  # noqa: F401
from showcase import QT


def test_a_stale_socket_does_not_keep_a_new_application_away(held):
    os.kill(held["holder"], signal.SIGKILL)
    eventually(lambda: is_running(held["pid"]), timeout=10).equals(False)
    assert hold("--qt", str(QT))["pid"] != held["pid"]


def test_the_socket_is_for_its_user_alone(held, runtime):
    path = runtime / "qtdriver" / "default.sock"
    assert stat.S_IMODE(path.stat().st_mode) == 0o600
    assert stat.S_IMODE(path.parent.stat().st_mode) == 0o700
    with socket.socket(socket.AF_UNIX) as control:
        control.connect(str(path))
        assert peer_user(control) == os.getuid()


def test_a_folder_that_others_can_enter_is_refused(runtime):
    (runtime / "qtdriver").mkdir(mode=0o755)
    (runtime / "qtdriver").chmod(0o755)
    with pytest.raises(ControlSocketError, match="not a folder of yours alone"):
        socket_path("default")


def test_no_socket_is_made_in_a_folder_that_others_can_enter(runtime):
    path = socket_path("default")
    path.parent.chmod(0o755)
    with pytest.raises(ControlSocketError, match="not a folder of yours alone"):
        ControlSocket(path)
    assert not path.exists()


def test_a_socket_has_its_name_only_when_it_listens(runtime, monkeypatch):
    path = socket_path("default")
    there = []
    listen = socket.socket.listen
    monkeypatch.setattr(
        socket.socket, "listen", lambda self, *count: (there.append(path.exists()), listen(self, *count))
    )
    with ControlSocket(path), socket.socket(socket.AF_UNIX) as client:
        client.connect(str(path))
        assert [entry.name for entry in path.parent.iterdir()] == ["default.sock"]
    assert there == [False]


@pytest.fixture(params=["too long", "not writable", "a link to nothing"])
def unusable(request, runtime, monkeypatch):
    """Where the sockets belong there can be none; the words with which that is told."""
    if request.param == "too long":
        folder = runtime / ("x" * 100)
        folder.mkdir()
        monkeypatch.setenv("XDG_RUNTIME_DIR", str(folder))
        return "too long for a socket: set XDG_RUNTIME_DIR"
    if request.param == "not writable":
        monkeypatch.setenv("XDG_RUNTIME_DIR", "/proc")
        return "cannot make the folder /proc/qtdriver: No such file or directory: set XDG_RUNTIME_DIR"
    monkeypatch.delenv("XDG_RUNTIME_DIR")
    monkeypatch.setenv("TMPDIR", str(runtime))
    (runtime / f"qtdriver-{os.getuid()}").symlink_to(runtime / "missing")
    return "is not a folder of yours alone (mode 0700): remove it"


def test_a_folder_without_room_for_a_socket_is_reported(unusable):
    assert unusable in qtdriver("windows", status=1)
    failure = hold(status=1)
    assert failure["error"] == "ControlSocketError" and unusable in failure["message"]


def test_what_is_no_request_is_hung_up_on_and_the_next_one_served(held, runtime):
    with socket.socket(socket.AF_UNIX) as control:
        control.connect(str(runtime / "qtdriver" / "default.sock"))
        control.sendall(b"hello\n")
        assert control.recv(100) == b""
    assert ask("default", "dance", {}).status == 1
    assert qtdriver("windows")
