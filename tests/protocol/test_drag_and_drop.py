"""Drag and drop that Qt runs itself, in an event loop of its own: rows, texts, and how it ends."""

import socket

import pytest

from extensions import extension
from hostapp import QT, eventually

WINDOW = "Drags"


@pytest.fixture
def app(launch):
    return launch("draghost")


def mouse(app, widget, kind, button="", at=":", item="", modifier=""):
    """A mouse command at a place of a widget, with item or not, as `drag_to` of the runner sends them."""
    command = f"s:{kind}:{button}:{at}:{modifier}"
    as_class = "" if item else "QWidget"
    reply = app.request(extension("+9", WINDOW, f"name={widget}", as_class, command, "force", item))
    assert reply.startswith("0,"), reply


def drag(app, source, target, to, item="", at=":", modifier=""):
    mouse(app, source, "MousePress", "LeftButton", at, item, modifier)
    mouse(app, target, "MouseMove", "", to, modifier=modifier)
    mouse(app, target, "MouseRelease", "LeftButton", to, modifier=modifier)


def rows(app, widget):
    app.do("rows")
    return [line for line in app.journal if line.startswith(widget + " ")][-1].split(" ", 1)[1].split("|")


def test_a_row_is_dragged_from_one_list_to_another(app):
    drag(app, "left", "right", "0.5:0.9", item="s:left 1")
    eventually(
        lambda: rows(app, "right"),
        ["right 0", "right 1", "right 2", "right 3", "left 1"],
    )
    eventually(lambda: rows(app, "left"), ["left 0", "left 2", "left 3"])


def test_with_ctrl_a_row_is_copied_as_far_as_qt_looks_at_the_mouses_modifiers(app):
    drag(app, "left", "right", "0.5:0.9", item="s:left 1", modifier="ControlModifier")
    eventually(
        lambda: rows(app, "right"),
        ["right 0", "right 1", "right 2", "right 3", "left 1"],
    )
    if QT == 4:  # it asks the keyboard for the modifiers
        assert rows(app, "left") == ["left 0", "left 2", "left 3"]
    else:
        assert rows(app, "left") == ["left 0", "left 1", "left 2", "left 3"]


def test_a_row_of_a_tree_is_dragged_into_another_one(app):
    scroll = extension("+scroll", WINDOW, "name=tree", "", "s:Branch 2")
    left, top, right, bottom = map(int, app.request(scroll)[4:].split(","))
    tree = app.rect(WINDOW, "tree")
    x = ((left + right) / 2 - tree[0]) / (tree[2] - tree[0] + 1)
    y = ((top + bottom) / 2 - tree[1]) / (tree[3] - tree[1] + 1)
    drag(app, "tree", "tree", f"{x}:{y}", item="s:Branch 0/Leaf")
    eventually(lambda: rows(app, "tree"), ["Branch 0", "Branch 1", "Branch 2", "Branch 2/Leaf"])


def test_a_selected_text_is_dragged_from_one_field_to_another(app):
    app.do("selectTexts")
    drag(app, "line", "edit", "0.9:0.8", at="0.1:0.5")
    app.wait_until("edit", "plainText", "sentencewords")


def test_a_selected_text_is_dropped_on_what_takes_texts(app):
    app.do("selectTexts")
    drag(app, "edit", "label", "0.5:0.5", at="0.1:0.1", modifier="ControlModifier")
    app.wait_for("dropped sentence")
    assert app.events("entered", "left") == ["entered sentence"]


def test_nothing_is_dropped_where_nothing_is_taken(app):
    drag(app, "source", "plain", "0.5:0.5")
    app.wait_for("drag over 0")
    app.forget()
    drag(app, "source", "label", "0.5:0.5")
    app.wait_for("drag over 1")
    assert app.events() == [
        "drag began",
        "entered Drag me",
        "dropped Drag me",
        "drag over 1",
    ]


def test_a_list_without_drag_and_drop_selects_what_the_mouse_passes(app):
    drag(app, "fixed", "fixed", "0.5:0.9", item="s:fixed 0")
    assert rows(app, "fixed") == ["fixed 0", "fixed 1", "fixed 2", "fixed 3"]


def test_requests_are_answered_while_something_is_dragged(app):
    app.do("selectTexts")
    mouse(app, "line", "MousePress", "LeftButton", "0.1:0.5")
    mouse(app, "label", "MouseMove", "", "0.5:0.5")
    app.wait_for("entered words")
    assert app.read(WINDOW, "line", "text") == "u:words"
    mouse(app, "edit", "MouseMove", "", "0.9:0.8")
    app.wait_for("left")
    mouse(app, "label", "MouseMove", "", "0.2:0.5")
    mouse(app, "label", "MouseRelease", "LeftButton", "0.2:0.5")
    app.wait_for("dropped words")


def test_the_picture_of_what_is_dragged_is_no_obstacle(app):
    mouse(app, "left", "MousePress", "LeftButton", item="s:left 1")
    for y in ("0.5", "0.9"):
        command = f"s:MouseMove::0.3:{y}:"
        assert app.request(extension("+9", WINDOW, "name=right", "QWidget", command)) == "0,QWidget"
    mouse(app, "right", "MouseRelease", "LeftButton", "0.3:0.9")
    eventually(lambda: len(rows(app, "right")), 5)


def test_a_dialog_that_a_drop_opens_does_not_hold_the_reply(app):
    app.do("openDialogAtDrop")
    app.do("selectTexts")
    drag(app, "line", "label", "0.5:0.5", at="0.1:0.5")
    eventually(lambda: app.request("8,Dropped"), "0,Dropped")
    close = extension("+press", "Dropped", "", "Escape", "")
    assert app.request(close) == "0,QDialog"
    app.wait_for("dialog closed")
    assert app.request(f"8,{WINDOW}") == f"0,{WINDOW}"


def test_requests_that_arrive_together_are_a_drag(app):
    app.do("selectTexts")

    def line(widget, kind, button, at):
        return extension(
            "+9",
            WINDOW,
            f"name={widget}",
            "QWidget",
            f"s:{kind}:{button}:{at}:",
            "force",
        )

    lines = [
        line("line", "MousePress", "LeftButton", "0.1:0.5"),
        line("label", "MouseMove", "", "0.5:0.5"),
        line("label", "MouseRelease", "LeftButton", "0.5:0.5"),
    ]
    app.send("".join(text + "\n" for text in lines).encode())
    assert [app.read_line()[:2] for _ in lines] == ["0,", "0,", "0,"]
    app.wait_for("dropped words")


def test_a_drag_by_the_commands_ends_without_a_drop_and_holds_no_reply(app):
    assert app.mouse(WINDOW, "source", "MousePress:LeftButton:0.1:0.5:", "QWidget") == "0,QWidget"
    assert app.mouse(WINDOW, "source", "MouseMove::0.9:0.5:", "QWidget") == "0,QWidget"
    app.wait_for("drag over 0")
    assert app.mouse(WINDOW, "label", "MouseRelease:LeftButton:0.5:0.5:", "QWidget") == "0,QWidget"
    drag(app, "source", "label", "0.5:0.5")
    app.wait_for("drag over 1")


def test_the_end_of_the_connection_ends_a_drag_without_a_drop(app):
    mouse(app, "source", "MousePress", "LeftButton")
    mouse(app, "label", "MouseMove", "", "0.5:0.5")
    app.wait_for("entered Drag me")
    app.socket.shutdown(socket.SHUT_RDWR)
    app.wait_for("drag over 0")
    assert app.events("dropped") == []


def test_a_connection_that_ends_right_after_a_move_leaves_no_drag(app):
    mouse(app, "source", "MousePress", "LeftButton")
    command = "s:MouseMove::0.5:0.5:"
    app.send(extension("+9", WINDOW, "name=label", "QWidget", command, "force").encode() + b"\n")
    app.socket.shutdown(socket.SHUT_RDWR)
    app.wait_until_agent_is_closed()
    eventually(lambda: app.events("drag") in ([], ["drag began", "drag over 0"]), True)


def test_the_end_of_the_agent_ends_a_drag_without_a_drop(app):
    mouse(app, "source", "MousePress", "LeftButton")
    mouse(app, "label", "MouseMove", "", "0.5:0.5")
    app.wait_for("entered Drag me")
    app.do("deleteAgent")
    app.wait_for("drag over 0")
    assert app.read_line() is None
    assert app.events("dropped") == []


def test_an_agent_that_ends_as_something_is_dragged_in_leaves_no_drag(app):
    app.do("deleteAgentWithinDrag")
    mouse(app, "source", "MousePress", "LeftButton")
    mouse(app, "label", "MouseMove", "", "0.5:0.5")
    app.wait_for("drag over 0")
    assert app.read_line() is None
