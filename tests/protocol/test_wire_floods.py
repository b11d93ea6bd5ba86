"""The server sends more than it should, or does not read what it is sent: the application works on undisturbed."""

import random
import threading

import pytest

from faultapp import CLICK, MEBIBYTE, PRESS, RELEASE, UNKNOWN, FaultApp
from hostapp import WINDOWS, eventually, hexed

READ_AHEAD = 64 * 1024
LONGEST_REQUEST = 16 * MEBIBYTE
UNREAD_REPLIES = 4 * MEBIBYTE
MANY = 10_000 if WINDOWS else 100_000
"""Requests in one write. Under Wine each takes ten times as long."""
KERNEL_BUFFERS = 16 * MEBIBYTE
"""More than the sockets of both ends hold."""


@pytest.fixture
def app():
    app = FaultApp()
    yield app
    app.end()


def in_background(function):
    thread = threading.Thread(target=function, daemon=True)
    thread.start()
    return thread


def test_64_mebibytes_without_a_line_end_end_the_connection(app):
    def flood():
        with pytest.raises(OSError):
            for _ in range(64):
                app.send(b"x" * MEBIBYTE)

    with app.undisturbed(), app.memory_within(3 * LONGEST_REQUEST):
        flood()
        app.wait_until_agent_is_closed()


def test_the_longest_request_is_answered_and_one_more_byte_is_not(app):
    path = "x" * (LONGEST_REQUEST - len("8,\n"))
    reply = app.request(f"8,{path}")
    assert reply == f"2,Window ({path}) not found"
    app.send(b"x" * (LONGEST_REQUEST + 1))
    assert app.read_line() is None
    app.wait_until_agent_is_closed()


@pytest.mark.parametrize("beyond", [-1, 0, 1])
@pytest.mark.parametrize("next_request", [b"", UNKNOWN], ids=["alone", "before another"])
def test_a_request_may_end_where_what_is_read_ahead_ends(app, beyond, next_request):
    app.send(PRESS + RELEASE)
    app.wait_for("dialog opens")
    app.wait_until("question", "visible", "true")
    path = "x" * (READ_AHEAD + beyond - len("8,\n"))
    sent = f"8,{path}\n".encode() + next_request
    app.send(sent)
    eventually(app.unread, max(0, len(sent) - READ_AHEAD))
    app.do("closeDialog")
    expected = ["0,QWidget"] * 2 + [f"2,Window ({path}) not found"]
    assert [app.read_line() for _ in expected] == expected
    if not next_request:
        app.send(UNKNOWN)
    assert app.read_line() == "2,Window (Nowhere) not found"


def test_replies_to_what_came_before_a_request_without_end_are_still_sent(app):
    app.send(b"8,Faults\n")
    assert app.read_line() == "0,Faults"
    app.send(b"x" * LONGEST_REQUEST)
    app.send(b"x")
    assert app.read_line() is None


def test_a_text_of_100_000_characters_is_entered(app):
    assert app.request("6,Faults,edit,," + hexed("s:" + "x" * 100000) + ",") == "0,QLineEdit"
    assert app.get("edit", "text") == "x" * 100000


def test_the_work_for_a_line_in_pieces_grows_with_its_length_alone(app):
    def work(length):
        app.settle()
        before = app.work()
        app.send(b"8,")
        for _ in range(length // 8192):
            app.send(b"x" * 8192)
            app.settle()
        app.send(b"\n")
        assert len(app.read_line()) == len("2,Window () not found") + length
        return app.work() - before

    work(MEBIBYTE)
    short = work(5 * MEBIBYTE // 2)
    long = work(10 * MEBIBYTE)
    assert long < 8 * short, "four times the length takes four times the work"


def test_many_requests_in_one_write_are_all_answered_in_order(app):
    requests = b"".join(b"8,%d\n" % number for number in range(MANY))
    with app.undisturbed():
        writer = in_background(lambda: app.send(requests))
        for number in range(MANY):
            assert app.read_line() == f"2,Window ({number}) not found"
        writer.join()


def test_clicks_sent_together_are_all_delivered(app):
    with app.undisturbed():
        writer = in_background(lambda: app.send(CLICK * 2000))
        assert [app.read_line() for _ in range(2000)] == ["0,QPushButton"] * 2000
        writer.join()
        eventually(lambda: app.events("clicked").count("clicked own"), 2000)
        app.forget()


def test_line_feeds_are_as_many_unknown_commands(app):
    with app.undisturbed():
        writer = in_background(lambda: app.send(b"\n" * MANY))
        for _ in range(MANY):
            assert app.read_line() == "8,Command not found"
        writer.join()


@pytest.mark.parametrize("seed", range(3))
def test_binary_garbage_is_answered_line_by_line(app, seed):
    garbage = random.Random(seed).randbytes(256 * 1024).replace(b"\r\n", b"\r") + b"\n"
    with app.undisturbed():
        writer = in_background(lambda: app.send(garbage))
        for _ in range(garbage.count(b"\n")):
            assert app.read_line() is not None
        writer.join()
        assert app.request("8,Faults") == "0,Faults"


def test_nul_bytes_are_characters_like_others(app):
    with app.undisturbed():
        assert app.request("\0" * MEBIBYTE) == "8,Command not found"
        assert app.request("8,\0" + "\0" * MEBIBYTE).startswith("2,Window (\0\0")


def test_a_server_that_reads_no_replies_is_not_sent_more_than_fits(app):
    requests = b"".join(b"8,%d\n7,Faults,counted,,large,\n" % number for number in range(200))
    with app.undisturbed(), app.memory_within(UNREAD_REPLIES + 8 * MEBIBYTE):
        app.send(requests)
        eventually(lambda: int(app.get("counted", "reads")) > 0, True)
        app.tick(100)
        executed = int(app.get("counted", "reads"))
        assert executed <= (UNREAD_REPLIES + KERNEL_BUFFERS) // 1000000
    with app.undisturbed():
        for number in range(200):
            assert app.read_line() == f"2,Window ({number}) not found"
            assert app.read_line() == "0,u:" + "78" * 500000
    assert int(app.get("counted", "reads")) == 200


def test_a_server_that_writes_and_does_not_read_has_to_wait(app):
    def write():
        for number in range(64):
            app.send(b"8,%d" % number + b"x" * MEBIBYTE + b"\n")

    with app.undisturbed(), app.memory_within(UNREAD_REPLIES + 24 * MEBIBYTE):
        writer = in_background(write)
        app.tick(200)
        assert writer.is_alive(), "it waits for the agent to read"
    with app.undisturbed():
        for number in range(64):
            assert app.read_line() == f"2,Window ({number}" + "x" * MEBIBYTE + ") not found"
        writer.join()


@pytest.mark.parametrize("reset", [False, True], ids=["in order", "by a reset"])
def test_a_server_may_end_that_has_not_read_its_replies(app, reset):
    with app.undisturbed():
        app.send(b"7,Faults,counted,,large,\n" * 100)
        eventually(lambda: int(app.get("counted", "reads")) > 0, True)
        app.tick(50)
        app.disappear(reset)
        app.wait_until_agent_is_closed()


def test_the_application_may_quit_when_replies_are_unread(app):
    app.send(b"7,Faults,counted,,large,\n" * 100)
    eventually(lambda: int(app.get("counted", "reads")) > 0, True)
    app.start("quit")
    app.wait_for("exec returned")
    app.disappear()
    assert app.wait_for_end() == 0
