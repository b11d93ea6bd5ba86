"""The connection: greeting, framing of requests and replies, loss of the server."""

import os
import re
import select
from pathlib import Path

import pytest

from hostapp import CLOSED, WINDOWS, eventually, listen


@pytest.fixture
def app(launch):
    return launch("corehost")


def check_that_nobody_comes(app):
    """The application lives on, and while its event loop turns fifty times nobody connects to its server."""
    app.do("startTicking")
    eventually(lambda: len(app.events("tick")) > 50, True)
    assert app.agent_state() == CLOSED
    assert select.select([app.server], [], [], 0)[0] == [], "the agent must not try again"


@pytest.mark.shared
def test_the_greeting_names_process_hook_port_and_build(app):
    assert re.fullmatch(r"\+client\+ 2\.1\.0 [1-9]\d* -1 qt486_vs2015_x64", app.greeting)
    if not WINDOWS:  # where Wine has numbers of its own for processes
        assert app.greeting.split(" ")[2] == str(app.process.pid)


def test_without_a_server_the_application_runs_and_the_agent_stays_closed(launch):
    app = launch("corehost", serve=False)
    app.wait_for("agent loaded")
    app.wait_until_agent_is_closed()
    app.server = listen()
    check_that_nobody_comes(app)


def test_a_remote_close_closes_the_agent_for_good(app):
    app.socket.close()
    app._reader.close()
    app.server.close()
    app.wait_until_agent_is_closed()
    app.server = listen()
    check_that_nobody_comes(app)


def test_a_child_process_does_not_hold_the_connection(app):
    app.do("startChild")
    app.do("deleteAgent")
    assert app.read_line() is None
    app.do("endChild")


def test_the_socket_is_not_inherited_by_child_processes(app):
    app.do("startChild")
    descriptors = Path(f"/proc/{app.process.pid}/fd")
    inodes = {os.readlink(entry): entry.name for entry in descriptors.iterdir() if entry.exists()}
    connection = re.compile(r"^ *\d+: \S+ 0100007F:1092 01 (?:\S+ +){5}(\d+)", re.MULTILINE)
    inode = connection.search(Path(f"/proc/{app.process.pid}/net/tcp").read_text()).group(1)
    flags = Path(f"/proc/{app.process.pid}/fdinfo/{inodes[f'socket:[{inode}]']}").read_text()
    assert int(re.search(r"flags:\s*(\d+)", flags).group(1), 8) & os.O_CLOEXEC
    app.start("quit")
    assert app.read_line() is None, "the child must not hold the connection open"
    assert app.wait_for_end() == 0


def test_deleting_the_agent_closes_the_connection_and_the_application_runs_on(app):
    app.do("deleteAgent")
    assert app.read_line() is None
    assert app.get("main", "visible") == "true"


@pytest.mark.shared
@pytest.mark.parametrize("line_end", [b"\n", b"\r\n"])
def test_both_line_ends_end_a_request(app, line_end):
    app.send(b"8,Editor" + line_end)
    assert app.read_line() == "0,Editor"


def test_requests_that_arrive_together_are_all_answered_in_order(app):
    app.send(b"8,Editor\nnonsense\r\n7,Editor,edit,,objectName,\n8,Nowhere\n")
    assert [app.read_line() for _ in range(4)] == [
        "0,Editor",
        "8,Command not found",
        "0,u:" + b"edit".hex(),
        "2,Window (Nowhere) not found",
    ]


@pytest.mark.shared
def test_many_requests_in_one_packet_are_all_answered(app):
    app.send(b"8,Editor\n" * 500 + b"5,Editor,a/ok,,,\n" * 20 + b"8,Editor\n")
    replies = [app.read_line() for _ in range(521)]
    assert replies == ["0,Editor"] * 500 + ["0,QPushButton"] * 20 + ["0,Editor"]


@pytest.mark.shared
def test_a_request_may_arrive_in_pieces(app):
    for byte in b"8,Editor\n":
        app.send(bytes([byte]))
        app.settle()
    assert app.read_line() == "0,Editor"


@pytest.mark.shared
def test_a_request_of_one_mebibyte_is_answered(app):
    path = "x" * (1 << 20)
    assert app.request(f"7,Editor,{path},,text,") == f"5,Widget ({path}) not found"


@pytest.mark.shared
@pytest.mark.parametrize("line", ["", "13", ",,,,", "0", " 1", "1,", "1,2", "3,", "01", "one", "\0", "1\0"])
def test_an_unknown_command_is_answered(app, line):
    assert app.request(line) == "8,Command not found"


@pytest.mark.shared
@pytest.mark.parametrize("number", [2, 4, 5, 6, 7, 8, 9, 10, 11])
def test_missing_sections_are_empty(app, number):
    app.show("showNames", "names")  # the empty window name fits every window
    reply = app.request(str(number))
    assert reply == "3,Window () visible,2"


@pytest.mark.shared
def test_every_byte_is_answered_and_comes_back_as_latin_1(app):
    text = bytes(set(range(256)) - set(b"\n\r,"))
    app.send(b"8," + text + b"\n")
    assert app.read_line() == "2,Window (" + text.decode("latin-1") + ") not found"


@pytest.mark.shared
def test_replies_carry_latin_1_and_a_question_mark_beyond_it(app):
    assert app.read("Editor", "canvas", "aStringList") == "0,l:\fone, two\f\xe9\f"


def test_a_second_application_is_a_second_client(launch):
    first = launch("corehost")
    first.server.close()
    second = launch("corehost")
    assert first.request("8,Editor") == second.request("8,Editor") == "0,Editor"
    assert first.greeting != second.greeting


def test_the_application_may_quit_with_the_connection_open(launch):
    app = launch("corehost")
    app.start("quit")
    assert app.read_line() is None
    assert app.wait_for_end() == 0
