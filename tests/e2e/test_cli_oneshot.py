"""The commands that talk to an application which `run --background` holds: the showcase, for real."""

import json
import os
import signal
import socket
import stat
import subprocess
from contextlib import contextmanager
from pathlib import Path

import pytest
from PIL import Image

from qtdriver import eventually
from qtdriver.commandline.arguments import parse_arguments
from qtdriver.commandline.control import ask, peer_user, socket_path
from qtdriver.commandline.outcome import NoApplicationError
from qtdriver.commandline.verbs import all_verbs

from showcase import AGENTS, PROGRAM, QT

QTDRIVER = str(Path(__file__).resolve().parents[2] / "scripts" / "qtdriver")


def qtdriver(*arguments, status=0):
    """What a command prints, which ends with this status."""
    finished = subprocess.run([QTDRIVER, *arguments], capture_output=True, text=True, timeout=60)
    assert finished.returncode == status, finished.stdout + finished.stderr
    return (finished.stderr if status else finished.stdout).rstrip("\n")


def data(*arguments, status=0):
    """What a command prints as JSON."""
    finished = subprocess.run([QTDRIVER, *arguments, "--json"], capture_output=True, text=True, timeout=60)
    assert finished.returncode == status, finished.stdout + finished.stderr
    return json.loads(finished.stdout)


def hold(*options, program=PROGRAM, status=0):
    """Holds an application; answers what is told of it."""
    command = [
        QTDRIVER,
        "run",
        "--background",
        "--json",
        "--build",
        str(AGENTS),
        *options,
        "--",
        str(program),
    ]
    finished = subprocess.run(command, capture_output=True, text=True, timeout=60)
    assert finished.returncode == status, finished.stdout + finished.stderr
    return json.loads(finished.stdout)


@pytest.fixture(autouse=True)
def runtime(tmp_path, monkeypatch):
    """A runtime folder of its own for the control sockets."""
    monkeypatch.setenv("XDG_RUNTIME_DIR", str(tmp_path))
    return tmp_path


@pytest.fixture
def held():
    """A showcase that is held, with its page of buttons in front."""
    told = hold("--qt", str(QT))
    yield told
    subprocess.run([QTDRIVER, "stop"], capture_output=True, timeout=60)


def is_running(pid):
    try:
        return Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()[0] not in "ZX"
    except OSError:
        return False


def test_an_application_is_looked_at_and_driven_from_a_shell(held):
    assert qtdriver("windows") == 'MainWindow : "Roastery"'
    assert data("windows") == [{"class": "MainWindow", "modal": False, "title": "Roastery"}]
    assert qtdriver("get", "Roastery", "brewButton", "text") == "Brew a cup"
    assert data("get", "Roastery", "brewButton", "text", "enabled") == {"text": "Brew a cup", "enabled": True}
    assert qtdriver("activate", "Roastery", "milkCheck", "b:true") == "QCheckBox"
    eventually(lambda: data("get", "Roastery", "milkCheck", "checked")).equals(True)
    qtdriver("activate", "Widget:showcase", "pages/qt_tabwidget_tabbar", "Entry fields")
    qtdriver("enter", "Roastery", "customerEdit", "Ada", "--return")
    eventually(lambda: qtdriver("get", "Roastery", "lastEvent", "text")).equals("entered: customerEdit Ada")
    qtdriver("menu", "Roastery", "Order/New order...")
    eventually(lambda: len(data("windows"))).equals(2)
    qtdriver("activate", "Widget:ActiveModalWidget:New order", "cancelOrderButton")


def test_the_tree_shows_names_classes_and_what_is_unique(held):
    lines = qtdriver("tree", "Roastery", "--paths").splitlines()
    assert lines[0] == "showcase (MainWindow) *"
    assert "  menuBar (QMenuBar) *" in lines
    assert any(line.strip() == "brewButton (QPushButton) *" for line in lines)
    assert any(line.endswith("startButton (QPushButton, hidden)  firstRoaster/startButton") for line in lines)
    assert lines[-1] == "* marks a name that finds only this widget"
    rows = {row["object_name"]: row for row in data("tree", "Roastery", "--paths")}
    assert rows["brewButton"] == {
        "depth": rows["counterBox"]["depth"] + 1,
        "class": "QPushButton",
        "name": "brewButton",
        "object_name": "brewButton",
        "visible": True,
        "unique": True,
        "path": "brewButton",
    }
    assert "hidden" not in qtdriver("tree", "Roastery", "--visible")


def test_what_is_under_the_cursor_is_picked(held):
    qtdriver("mouse", "Roastery", "brewButton", "move")
    picked = data("pick", "--countdown", "0")
    assert picked["path"].endswith("/brewButton") and picked["unique"] is True
    assert (picked["window"], picked["window_name"], picked["class"]) == (
        "Roastery",
        "showcase",
        "QPushButton",
    )
    assert picked["properties"]["text"] == "Brew a cup"
    text = qtdriver("pick", "--countdown", "0.1")
    assert "window by its object name: Widget:showcase" in text and "(unique)" in text


def test_a_click_picks_without_reaching_the_application(held):
    qtdriver("mouse", "Roastery", "brewButton", "move")
    before = qtdriver("get", "Roastery", "clickCount", "text")
    with subprocess.Popen([QTDRIVER, "pick", "--json"], stdout=subprocess.PIPE, text=True) as picking:
        # A click before the grab is an ordinary one: it is made again until it has picked.
        while picking.poll() is None:
            if _is_grabbed():
                subprocess.run(["xdotool", "click", "1"], check=True)
                picking.wait(30)
        assert json.loads(picking.stdout.read())["path"].endswith("/brewButton")
    assert qtdriver("get", "Roastery", "clickCount", "text") == before


def test_a_mouse_that_another_program_holds_is_told(held):
    with _grab() as status:
        assert status == 0
        message = qtdriver("pick", status=1)
    assert "another program holds the mouse: close its menu, or use --countdown" in message


def _is_grabbed():
    """Whether a program holds the mouse."""
    with _grab() as status:
        return status == 1


@contextmanager
def _grab():
    """Holds the mouse, if no other program does: the status is X11's GrabSuccess, 0, or AlreadyGrabbed, 1."""
    from Xlib import X, display

    connection = display.Display()
    root = connection.screen().root
    status = root.grab_pointer(False, 0, X.GrabModeAsync, X.GrabModeAsync, X.NONE, X.NONE, X.CurrentTime)
    try:
        yield status
    finally:
        connection.ungrab_pointer(X.CurrentTime)
        connection.close()


def test_a_screenshot_is_saved_where_the_user_is(held, tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    assert qtdriver("screenshot", "shot.png") == str(tmp_path / "shot.png")
    with Image.open(tmp_path / "shot.png") as picture:
        assert picture.size == (1280, 1024)


def test_failures_have_statuses_and_explain_themselves(held):
    message = qtdriver("get", "Roastery", "brewButtn", "text", "--timeout", "0", status=3)
    assert (
        message.startswith("qtdriver: Widget (brewButtn) not found\n")
        and "  brewButton (QPushButton)" in message
    )
    failure = data("activate", "Roastery", "unnamed", "--timeout", "0", status=4)
    assert (failure["error"], failure["code"]) == ("AmbiguousError", "7")
    assert data("activate", "Roastery", "brewButton", "b:true", status=1)["code"] == "8"
    qtdriver("menu", "Roastery", "Order/New order...")
    eventually(lambda: len(data("windows"))).equals(2)
    qtdriver("activate", "Roastery", "brewButton", "--timeout", "0", status=5)
    assert "VALUE" in qtdriver("activate", "Roastery", "milkCheck", "b:maybe", status=2)


def test_two_applications_are_held_under_their_names(held):
    # They cannot share a port: the second one has a network of its own.
    other = hold("--qt", str(QT), "--headless", "--name", "second")
    assert other["pid"] != held["pid"]
    assert data("windows", "--name", "second") == data("windows")
    assert qtdriver("stop", "--name", "second") == "stopped"
    qtdriver("windows", "--name", "second", status=6)
    assert qtdriver("windows")


def test_a_name_that_is_taken_is_refused(held):
    refused = hold("--qt", str(QT), status=6)
    assert 'an application is held already under the name "default"' in refused["message"]


def test_stop_ends_everything(held, runtime):
    assert is_running(held["pid"])
    qtdriver("stop")
    eventually(lambda: is_running(held["pid"]) or is_running(held["holder"]), timeout=10).equals(False)
    assert list((runtime / "qtdriver").iterdir()) == []
    assert "start one with: qtdriver run --background -- APP" in qtdriver("windows", status=6)


def test_the_end_of_the_application_ends_its_holder(held, runtime):
    os.kill(held["pid"], signal.SIGKILL)
    eventually(lambda: is_running(held["holder"]), timeout=10).equals(False)
    assert list((runtime / "qtdriver").iterdir()) == []


def test_a_killed_holder_leaves_no_application_and_is_recognised(held):
    os.kill(held["holder"], signal.SIGKILL)
    eventually(lambda: is_running(held["pid"]), timeout=10).equals(False)
    assert "was killed" in qtdriver("windows", status=6)
    assert 'no application is held under the name "default"' in qtdriver("windows", status=6)


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
    with pytest.raises(NoApplicationError, match="not a folder of yours alone"):
        socket_path("default")


def test_what_is_no_request_is_hung_up_on_and_the_next_one_served(held, runtime):
    with socket.socket(socket.AF_UNIX) as control:
        control.connect(str(runtime / "qtdriver" / "default.sock"))
        control.sendall(b"hello\n")
        assert control.recv(100) == b""
    assert ask("default", "dance", {}).status == 1
    assert qtdriver("windows")


def test_an_application_that_cannot_be_started_is_reported(tmp_path):
    failure = hold(program=tmp_path / "missing", status=1)
    assert failure["error"] == "ProgramNotFoundError"


@pytest.mark.parametrize("name", [verb.name for verb in all_verbs()] + ["stop", "doctor", "run"])
def test_every_command_has_help_with_an_example_that_is_right(name, capsys):
    with pytest.raises(SystemExit) as ended:
        parse_arguments([name, "--help"])
    assert ended.value.code == 0
    lines = capsys.readouterr().out.splitlines()
    examples = [line.strip() for line in lines if line.strip().startswith("qtdriver ")]
    assert examples, "there is an example"
    import shlex

    for example in examples:
        assert parse_arguments(shlex.split(example)[1:]).action == name
    assert any("--json" in line for line in lines)
