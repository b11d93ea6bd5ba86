"""The commands that talk to an application which `run --background` holds: the showcase, for real."""

import os
import shlex
import signal
import socket
from contextlib import suppress
from pathlib import Path

import pytest
from PIL import Image

from qtdriver import eventually
from qtdriver.commandline.arguments import parse_arguments
from qtdriver.commandline.verbs import all_verbs

from oneshot import (
    data,
    held,
    hold,
    holding,
    interrupt,
    is_running,
    qtdriver,
    runtime,
    to_interrupt,
)  # noqa: F401
from showcase import QT


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
    lines = qtdriver("tree", "Roastery").splitlines()
    assert lines[0] == "showcase (MainWindow) *"
    assert "  menuBar (QMenuBar) *" in lines
    assert any(line.strip() == "brewButton (QPushButton) *" for line in lines)
    assert any(line.strip() == "startButton (QPushButton, hidden)" for line in lines)
    assert lines[-1] == "* marks a name that finds only this widget"
    rows = {row["object_name"]: row for row in data("tree", "Roastery")}
    assert rows["brewButton"] == {
        "depth": rows["counterBox"]["depth"] + 1,
        "class": "QPushButton",
        "name": "brewButton",
        "object_name": "brewButton",
        "visible": True,
        "unique": True,
    }
    assert "hidden" not in qtdriver("tree", "Roastery", "--visible")


def test_the_tree_has_an_address_for_every_visible_widget_that_finds_it_alone(held):
    rows = data("tree", "Roastery", "--paths")
    brew = next(row for row in rows if row["name"] == "brewButton")
    assert (brew["path"], brew["python"]) == ("brewButton", 'widget("brewButton")')
    assert '    button "Brew a cup" (QPushButton)  brewButton  widget("brewButton")' in [
        line[line.index("button") - 4 :]
        for line in qtdriver("tree", "Roastery", "--paths").splitlines()
        if "Brew a cup" in line
    ]
    assert len({row["path"] for row in rows}) == len(rows)
    for row in rows[:: len(rows) // 8]:
        assert data("get", "Roastery", row["path"], "className", "visible") == {
            "className": row["class"],
            "visible": True,
        }


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
    refused = hold("--qt", str(QT), status=1)
    assert refused["error"] == "AlreadyHeldError"
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


def test_what_is_interrupted_is_given_up(held):
    idle = sockets_of(held["holder"])
    # Where it is not given up, the next command waits as long, and the button is pressed.
    with to_interrupt("activate", "New order", "cancelOrderButton", "--timeout", "120") as process:
        eventually(lambda: sockets_of(held["holder"]), timeout=30).equals(idle + 1)
        interrupt(process)
    qtdriver("menu", "Roastery", "Order/New order...")
    eventually(lambda: qtdriver("get", "New order", "cancelOrderButton", "visible")).equals("true")


def test_who_has_hung_up_while_others_were_served_is_not_served(held, runtime):
    idle = sockets_of(held["holder"])
    with to_interrupt("activate", "New order", "cancelOrderButton", "--timeout", "120") as process:
        eventually(lambda: sockets_of(held["holder"]), timeout=30).equals(idle + 1)
        with socket.socket(socket.AF_UNIX) as control:
            control.connect(str(runtime / "qtdriver" / "default.sock"))
            control.sendall(b'{"verb": "stop", "values": {}}\n')
        interrupt(process)
    assert qtdriver("windows")


def test_a_holder_that_is_killed_while_commands_wait_is_told(held):
    idle = sockets_of(held["holder"])
    with to_interrupt("activate", "New order", "cancelOrderButton", "--timeout", "120") as served:
        eventually(lambda: sockets_of(held["holder"]), timeout=30).equals(idle + 1)
        with to_interrupt("windows") as queued:
            eventually(lambda: sockets_of(queued.pid), timeout=30).equals(1)
            os.kill(held["holder"], signal.SIGKILL)
            for process in (served, queued):
                _, complaint = process.communicate(timeout=30)
                assert process.returncode == 6
                assert complaint.startswith(b'qtdriver: the process that held the application "default"')


def sockets_of(pid):
    """How many sockets a process has: one more while it serves a command."""
    count = 0
    for link in Path(f"/proc/{pid}/fd").iterdir():
        with suppress(FileNotFoundError):  # it has been closed just now
            count += os.readlink(link).startswith("socket:")
    return count


def test_an_application_whose_start_is_interrupted_is_ended(tmp_path, build):
    started = tmp_path / "pid"
    script = f"echo $$ > {started}.new; mv {started}.new {started}; exec sleep 600"
    options = ["--qt", "5", "--build", str(build), "--timeout", "600"]
    with to_interrupt("run", "--background", *options, "--", "/bin/sh", "-c", script) as process:
        eventually(started.exists, timeout=30).is_true()
        interrupt(process)
    eventually(lambda: is_running(int(started.read_text())), timeout=30).equals(False)


def test_an_application_that_does_not_answer_is_told_and_ended(build, fake_agent):
    with holding("--qt", "5", "--build", str(build), "--timeout", "5", program=fake_agent) as held:
        os.kill(held["pid"], signal.SIGSTOP)
        assert data("windows", status=7)["error"] == "ApplicationHangsError"
        eventually(lambda: is_running(held["pid"]) or is_running(held["holder"]), timeout=10).equals(False)


def test_an_application_that_cannot_be_started_is_reported(tmp_path):
    failure = hold(program=[tmp_path / "missing"], status=1)
    assert failure["error"] == "ProgramNotFoundError"


@pytest.mark.parametrize("name", [verb.name for verb in all_verbs()] + ["stop", "doctor", "run"])
def test_every_command_has_help_with_an_example_that_is_right(name, capsys):
    with pytest.raises(SystemExit) as ended:
        parse_arguments([name, "--help"])
    assert ended.value.code == 0
    lines = capsys.readouterr().out.splitlines()
    examples = [line.strip() for line in lines if line.strip().startswith("qtdriver ")]
    assert examples, "there is an example"
    for example in examples:
        assert parse_arguments(shlex.split(example)[1:]).action == name
    assert any("--json" in line for line in lines)
    assert "exit status:" in lines
