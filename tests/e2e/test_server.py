"""The server and the connection, against agents that are sockets of the test itself or the fake agent."""

import socket
import threading

import pytest

from agents import GREETING, answering, connected_agent
from qtdriver import Rect, Server, WidgetRecord, WindowRecord, errors


def test_a_taken_port_is_reported_with_what_to_do(server):
    with pytest.raises(errors.PortInUseError, match="(?s)4242 is taken.*--headless"):
        Server()


def test_the_port_is_free_again_at_once_after_a_connection():
    for _ in range(2):
        with Server() as server, connected_agent(server, answering(b"0,x\n")) as connection:
            assert connection.request("8,w").payload == "x"


def test_the_greeting_is_known_after_accept(server):
    with connected_agent(server, lambda agent: agent.recv(1)) as connection:
        assert (connection.greeting.pid, connection.greeting.hook_port) == (4711, -1)
        assert (connection.greeting.version, connection.greeting.build_tag) == ("2.1.0", "fake")


def test_accept_ends_in_time_when_nobody_connects(server):
    with pytest.raises(errors.NoClientError, match="within 0.05 seconds"):
        server.accept(0.05)


def test_accept_ends_in_time_when_a_client_says_nothing(server):
    with socket.create_connection(("127.0.0.1", server.port)):
        with pytest.raises(errors.RequestTimeout, match="no greeting"):
            server.accept(0.05)


def test_a_client_that_leaves_or_speaks_otherwise_is_refused(server):
    with pytest.raises(errors.ConnectionClosed, match="before its greeting"):
        with connected_agent(server, greeting=b"+client+"):
            pass
    with pytest.raises(errors.ProtocolError, match="GET /"):
        with connected_agent(server, lambda agent: agent.recv(1), greeting=b"GET / HTTP/1.1\n"):
            pass


def test_requests_and_replies_are_latin_1(server):
    serve = answering("0,Größe\n".encode("latin-1"))
    with connected_agent(server, serve) as connection:
        assert connection.request("8,Gr\xf6").payload == "Größe"
    assert serve.requests == [b"8,Gr\xf6\n"]


@pytest.mark.parametrize("line", ["8,€", "8,a\nb", "8,a\r"])
def test_a_line_that_cannot_be_sent_is_refused_and_nothing_is_sent(server, line):
    serve = answering(b"0,x\n")
    with connected_agent(server, serve) as connection:
        with pytest.raises(ValueError):
            connection.request(line)
        connection.request("8,w")
    assert serve.requests == [b"8,w\n"]


def test_a_long_reply_in_many_pieces_arrives_whole(server):
    text = "\x0c".join(f"item {number}" for number in range(200_000))

    def serve(agent):
        agent.recv(100)
        data = f"0,l:\x0c{text}\n".encode()
        for start in range(0, len(data), 50_000):
            agent.sendall(data[start : start + 50_000])

    with connected_agent(server, serve) as connection:
        assert connection.request("2,w").value()[-1] == "item 199999"


def test_a_line_break_inside_a_reply_belongs_to_it(server):
    with connected_agent(server, answering(b"0,first\nsecond\n", b"0,next\n")) as connection:
        assert connection.request("8,w").payload == "first\nsecond"
        assert connection.request("8,w").payload == "next"


def test_a_raw_request_does_not_raise_for_a_refusal(server):
    with connected_agent(server, answering(b"8,Command not found\n")) as connection:
        reply = connection.request("99")
    assert (reply.ok, reply.code, reply.payload) == (False, "8", "Command not found")


def test_a_late_reply_is_not_taken_for_the_reply_to_the_next_request(server):
    may_answer = threading.Event()

    def serve(agent):
        with agent.makefile("rb") as requests:
            requests.readline()
            may_answer.wait(10)
            agent.sendall(b"0,late\n")
            agent.sendall(b"0,reply to " + requests.readline())

    with connected_agent(server, serve) as connection:
        with pytest.raises(errors.RequestTimeout, match="8,one.*within 0.05 seconds"):
            connection.request("8,one", timeout=0.05)
        may_answer.set()
        assert connection.request("8,two").payload == "reply to 8,two"


def test_a_request_during_a_slow_one_names_the_slow_one(server):
    with connected_agent(server, answering(b"")) as connection:
        for line in ("8,one", "8,two"):
            with pytest.raises(errors.RequestTimeout, match="no reply to '8,one'"):
                connection.request(line, timeout=0.05)


def test_the_end_of_the_application_during_a_request_is_reported(server):
    with connected_agent(server, lambda agent: agent.recv(100)) as connection:
        with pytest.raises(errors.ConnectionClosed, match="before it answered '1'"):
            connection.request("1")
        with pytest.raises(errors.ConnectionClosed):
            connection.request("1")


def test_half_a_reply_is_no_reply(server):
    def serve(agent):
        agent.recv(100)
        agent.sendall(b"0,hal")

    with connected_agent(server, serve) as connection:
        with pytest.raises(errors.ConnectionClosed):
            connection.request("8,w")


def test_query_methods_return_records(server):
    replies = (
        b'0,l:\x0cQMainWindow : "Editor"\x0cQDialog (M) : "Save"\n',
        b'0,l:\x0c0 V QMainWindow : "main"\n',
        b"?,,,,\n",
        b"0,QLabel\n",
        b"0,r:1,2,3,4\n",
    )
    serve = answering(*replies)
    with connected_agent(server, serve) as connection:
        windows = (WindowRecord("QMainWindow", False, "Editor"), WindowRecord("QDialog", True, "Save"))
        assert connection.list_windows() == windows
        assert connection.window_tree("Editor") == (WidgetRecord(0, True, "QMainWindow", "main"),)
        assert connection.identify_widget_at_cursor() is None
        assert connection.locate_widget("Editor", "a//b") == "QLabel"
        assert connection.locate_tray_icon("tray") == Rect(1, 2, 3, 4)
    assert serve.requests == [b"1\n", b"2,Editor\n", b"3\n", b"4,Editor,a//b\n", b"12,,tray\n"]


def test_action_methods_send_encoded_typed_values(server):
    serve = answering(*[b"0,QPushButton\n"] * 3)
    with connected_agent(server, serve) as connection:
        assert (
            connection.activate_widget("W", "p", True, "x", widget_class="QAbstractButton") == "QPushButton"
        )
        assert connection.enter_widget("W", "p", "a,b") == "QPushButton"
        assert connection.mouse_widget("W", "p", "MouseClick:LeftButton:::") == "QPushButton"
    mouse = b"s:MouseClick:LeftButton:::".hex().encode()
    assert serve.requests == [
        b"5,W,p,QAbstractButton,623a74727565,733a78\n",
        b"6,W,p,,733a612c62,\n",
        b"9,W,p,," + mouse + b",\n",
    ]


def test_property_and_window_methods_send_plain_sections(server):
    serve = answering(b"0,i:5\n", b"0,b:true\n", b"0,Title\n", b"0,Title\n")
    with connected_agent(server, serve) as connection:
        assert connection.read_property("W", "p", "value", "arg") == 5
        assert connection.check_window("W") == "b:true"
        assert connection.move_window("W", -1, 2) == "Title"
        assert connection.resize_window("W", 300, 200) == "Title"
    assert serve.requests == [b"7,W,p,,value,s:arg\n", b"8,W\n", b"10,W,-1,2\n", b"11,W,300,200\n"]


def test_command_methods_raise_the_refusal_of_the_agent(server):
    with connected_agent(server, answering(b"5,Widget (x) not found\n", b"0,b:true\n")) as connection:
        with pytest.raises(errors.WidgetNotFoundError, match=r"^Widget \(x\) not found$"):
            connection.activate_widget("W", "x")
        with pytest.raises(errors.ProtocolError, match="not a list"):
            connection.list_windows()
