"""The server ends, at every point of a conversation: the application works on undisturbed."""

import pytest

import faultapp
from faultapp import CLICK, PRESS, RELEASE, UNKNOWN, FaultApp

REQUESTS = b"8,Faults\n7,Faults,own,,text,\r\n" + CLICK
REPLIES = b"0,Faults\n0,u:4f776e\n0,QPushButton\n"
LEADS = pytest.mark.parametrize("lead", [0, 5000], ids=["first of all", "after a pause"])
"""So many requests are sent before the one that matters. After thousands, it is not executed as soon as it arrives."""
ENDS = pytest.mark.parametrize("reset", [False, True], ids=["in order", "by a reset"])


@pytest.fixture
def app():
    app = FaultApp()
    yield app
    app.end()


def read_exactly(connection, count):
    data = b""
    while len(data) < count:
        piece = connection.recv(count - len(data))
        assert piece, "the agent must not end the conversation"
        data += piece
    return data


@ENDS
def test_the_server_may_end_after_any_byte_that_it_has_read(app, reset):
    length = len(app.greeting) + 1 + len(REPLIES)
    app.disappear()
    with app.undisturbed():
        for count in range(length + 1):
            connection = app.connect()
            connection.sendall(REQUESTS)
            read = read_exactly(connection, count)
            assert (app.greeting.encode() + b"\n" + REPLIES).startswith(read)
            app.disappear(reset)
            app.wait_until_agent_is_closed()


@ENDS
def test_the_server_may_end_after_any_byte_that_it_has_written(app, reset):
    app.disappear()
    with app.undisturbed():
        for count in range(len(REQUESTS)):
            connection = app.connect()
            read_exactly(connection, len(app.greeting) + 1)
            connection.sendall(REQUESTS[:count])
            app.disappear(reset)
            app.wait_until_agent_is_closed()
        # The last request of each conversation was not complete.
        assert "clicked own" not in app.events()


@ENDS
def test_the_server_may_end_every_connection_at_once(app, reset):
    # Qt tries once more where the connection is reset before it has noticed that there is one.
    app.disappear()
    with app.undisturbed():
        for _ in range(20):
            app.do("deleteAgent")
            app.do("loadAgent")
            app.end_connections_until_closed(reset)


def test_many_requests_before_an_end_in_order_are_all_answered(app):
    with app.undisturbed():
        app.send(b"".join(b"8,%d\n" % number for number in range(5000)))
        app.socket.shutdown(1)
        replies = [app.read_line() for _ in range(5001)]
        assert replies == [f"2,Window ({number}) not found" for number in range(5000)] + [None]


@LEADS
@ENDS
def test_the_server_may_end_while_a_command_runs_the_event_loop(app, reset, lead):
    app.send(UNKNOWN * lead + PRESS + RELEASE)
    app.wait_for("dialog opens")
    app.wait_until("question", "visible", "true")
    with app.undisturbed():
        app.disappear(reset)
        app.wait_until_agent_is_closed()
        app.tick(5)
    assert app.get("question", "visible") == "true"
    app.do("closeDialog")
    app.wait_for("dialog closed")


@LEADS
def test_requests_that_arrive_while_a_command_runs_the_event_loop_are_executed_after_it(app, lead):
    app.send(UNKNOWN * lead + PRESS + RELEASE + b"8,Faults\n")
    app.wait_for("dialog opens")
    app.wait_until("question", "visible", "true")
    app.send(CLICK + UNKNOWN * 10000)
    with app.undisturbed():
        app.tick(20)
    app.forget()
    app.do("closeDialog")
    app.wait_for("dialog closed")
    replies = [app.read_line() for _ in range(lead + 10004)]
    assert replies[:lead] + replies[lead + 4 :] == ["2,Window (Nowhere) not found"] * (lead + 10000)
    assert replies[lead : lead + 4] == ["0,QWidget"] * 2 + ["0,Faults", "0,QPushButton"]
    app.wait_for("clicked own")


def test_an_event_loop_that_stands_still_would_be_noticed(app, monkeypatch):
    monkeypatch.setattr(faultapp, "crowding", lambda: 1.0)
    with pytest.raises(AssertionError, match="the event loop stood still"):
        with app.undisturbed():
            app.do("sleep")


def test_a_server_that_refuses_the_connection_does_no_harm():
    app = FaultApp(serve=False)
    app.wait_for("agent loaded")
    with app.undisturbed():
        app.wait_until_agent_is_closed()
    assert app.close() == 0


def test_a_server_that_is_silent_does_no_harm(app):
    with app.undisturbed():
        app.tick(100)
    assert app.request("8,Faults") == "0,Faults"


@pytest.mark.parametrize(
    "part, reply",
    [(b"8", "0,Faults"), (b"8,Fau", "0,Faults"), (CLICK[:-1], "0,QPushButton"), (b"8,Faults\r", "0,Faults")],
)
def test_half_a_line_waits_for_its_other_half(app, part, reply):
    app.send(part)
    with app.undisturbed():
        app.tick(50)
    app.send(b"\n")
    assert app.read_line() == reply
