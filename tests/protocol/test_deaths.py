"""Widgets, windows and applications that end during a command: one reply or a closed connection, never a crash."""

import pytest

from extensions import extension
from hostapp import eventually


@pytest.fixture
def app(launch):
    app = launch("corehost")
    app.show("showDeadly", "deadly")
    return app


def test_a_button_that_deletes_itself_when_pressed(app):
    assert app.activate("Deadly", "deleteSelf") == "0,QPushButton"
    eventually(lambda: app.get("deleteSelf", "text"), "<no object deleteSelf>")
    assert app.activate("Deadly", "deleteSelf") == "5,Widget (deleteSelf) not found"


def test_a_button_that_deletes_itself_within_a_press(app):
    assert app.mouse("Deadly", "deleteSelf", "MousePress:LeftButton:::") == "0,QPushButton"
    assert app.get("deleteSelf", "text") == "<no object deleteSelf>"
    app.mouse("Deadly", "dialog", "MouseRelease:LeftButton:::")


def test_a_button_that_deletes_itself_when_clicked(app):
    assert app.activate("Deadly", "deleteOnClick") == "0,QPushButton"
    app.wait_for("clicked deleteOnClick")
    eventually(lambda: app.get("deleteOnClick", "text"), "<no object deleteOnClick>")


@pytest.mark.parametrize("name", ["closeWindow", "closeOnPress"])
def test_a_button_that_deletes_its_window(app, name):
    assert app.activate("Deadly", name, class_name="QAbstractButton") == "0,QAbstractButton"
    eventually(lambda: app.request("8,Deadly"), "2,Window (Deadly) not found")
    assert app.request("8,Editor") == "0,Editor"


def test_a_double_click_on_a_button_that_deletes_its_window_when_clicked(app):
    double_click = "MouseDoubleClick:LeftButton:::"
    assert app.mouse("Deadly", "closeWindow", double_click, class_name="QWidget") == "0,QWidget"
    eventually(lambda: app.request("8,Deadly"), "2,Window (Deadly) not found")
    assert app.events("clicked") == ["clicked closeWindow"]
    assert app.request("8,Editor") == "0,Editor"


def test_a_window_that_is_deleted_within_a_press(app):
    assert app.mouse("Deadly", "closeOnPress", "MousePress:LeftButton:::") == "0,QPushButton"
    assert app.request("8,Deadly") == "2,Window (Deadly) not found"


def test_a_window_that_is_deleted_when_the_mouse_moves_within_a_drag(app):
    app.do("dieOnMove")
    app.mouse("Deadly", "mover", "MousePress:LeftButton:0.1:0.1:")
    assert app.mouse("Deadly", "mover", "MouseMove::0.9:0.9:") == "0,QWidget"
    assert app.request("8,Deadly") == "2,Window (Deadly) not found"
    app.mouse("Editor", "canvas", "MouseRelease:LeftButton:::")


def test_a_window_that_is_deleted_when_it_is_activated(app):
    app.do("dieOnActivate")
    app.show("showNames", "names")
    reply = app.activate("Deadly", "deleteOnClick")
    assert reply in ("8,Exception : Internal error, proxy without widget", "0,QPushButton")
    eventually(lambda: app.request("8,Deadly"), "2,Window (Deadly) not found")


@pytest.fixture
def half_deleted(app):
    """An application that is deleting a pane: one child of it is gone, and two are still there. Nothing looks for an object
    in it other than through the agent: Qt 6 itself would crash."""
    app.do("addAskingPane")
    app.wait_until("waiting", "visible", "true")
    app.start("deletePane")
    app.wait_for("asking")
    yield app
    app.start("answer")
    app.wait_for("done deletePane")
    assert app.activate("Deadly", "waiting") == "5,Widget (waiting) not found"


@pytest.mark.parametrize("path", ["waiting", "pane/waiting", "UnnamedOne_dialog_button"])
def test_a_widget_beside_one_that_is_being_deleted_is_found(half_deleted, path):
    assert half_deleted.request(f"7,Deadly,{path},,enabled,") == "0,b:true"


def test_a_tree_in_which_a_widget_is_being_deleted_is_listed(half_deleted):
    tree = half_deleted.request("2,Deadly")
    assert '"waiting"' in tree and '"asking"' not in tree


def test_a_widget_beside_one_that_is_being_deleted_is_located(half_deleted):
    assert half_deleted.request("4,Deadly,waiting") == "0,QPushButton"


@pytest.mark.parametrize(
    "locator", ["name=waiting", "QPushButton text=Waiting", "path=pane/waiting", "label=Answer:"]
)
def test_a_widget_beside_one_that_is_being_deleted_has_a_locator(half_deleted, locator):
    assert half_deleted.request(extension("+7", "Deadly", locator, "", "enabled")) == "0,b:true"


def test_a_snapshot_in_which_a_widget_is_being_deleted_is_taken(half_deleted):
    reply = half_deleted.request(extension("+2", "Deadly", ""))
    assert '"waiting"' in reply and '"asking"' not in reply


def test_a_group_that_is_being_deleted_labels_nothing(half_deleted):
    assert half_deleted.request(extension("+7", "Deadly", "label=Pane", "", "enabled")).startswith("5,")


def test_a_tray_icon_beside_an_object_that_is_being_deleted_is_found(app):
    app.do("addAskingTray")
    app.start("deleteTray")
    app.wait_for("asking")
    assert app.request("12,,trayIcon") == "6,Object (trayIcon) not visible"
    app.start("answerTray")
    app.wait_for("done deleteTray")
    assert app.request("12,,trayIcon") == "2,Object (trayIcon) not found"


def test_an_application_that_quits(app):
    assert app.activate("Deadly", "quit") == "0,QPushButton"
    assert app.read_line() is None
    assert app.wait_for_end() == 0


def test_an_application_that_exits_at_once(app):
    app.send(b"5,Deadly,exit,,,\n")
    assert app.read_line() in ("0,QPushButton", None)
    assert app.wait_for_end() == 7


def test_the_agent_is_deleted_in_an_event_loop_of_a_slot(app):
    assert app.enter("Deadly", "retire", "s:x") == "0,QLineEdit"
    assert app.read_line() is None
    app.start("quit")
    assert app.wait_for_end() == 0


def test_the_server_goes_while_a_command_runs(app):
    app.send(b"5,Deadly,dialog,,,\n")
    app.socket.close()
    app._reader.close()
    app.wait_until("dialog1", "visible", "true")
    app.wait_until_agent_is_closed()
    app.start("quit")
    assert app.wait_for_end() == 0
