"""The soak test finds what it is there to find: planted faults of an application, and of its agent."""

import stat
import sys

import pytest

import session
from agentserver import listen
from session import Ended, Finding, Session, play

APPLICATION = """#!{python}
import os, socket, sys, threading
threading.Thread(target=lambda: (sys.stdin.read(), os._exit(0)), daemon=True).start()
agent = socket.create_connection(("127.0.0.1", 4242))
{early}
agent.sendall(b"+client+ 2.1.0 1 -1 tag\\n")
requests = agent.makefile("rb")
for number, request in enumerate(requests):
    {fault}
    if request == b"1\\n":
        agent.sendall(b'0,l:\\x0cQWidget : "Window"\\n')
    elif request.startswith(b"2,"):
        agent.sendall(b'0,l:\\x0c0 V QWidget : "name"\\n')
    else:
        agent.sendall(b"0,QWidget\\n")
"""

FAULTS = {
    "sends a reply twice": ("agent.sendall(b'0,x\\n')", "more than one reply|not a list"),
    "sends what is no reply": ("agent.sendall(b'hello\\n')", "not a reply"),
    "does not reply": ("if number > 5: continue", "not answered in time"),
    "crashes": ("if number > 5: os.abort()", "status -6"),
    "ends with an error": ("if number > 5: os._exit(3)", "status 3"),
    "reports a use of freed memory": (
        "if number > 5: sys.stderr.write('ERROR: AddressSanitizer: heap-use-after-free'); sys.exit(0)",
        "heap-use-after-free",
    ),
    "does not end": (
        "if number > 5: agent.shutdown(socket.SHUT_RDWR); threading.Event().wait()",
        "did not end",
    ),
}


@pytest.fixture
def server():
    with listen() as listening:
        yield listening


@pytest.fixture
def build(tmp_path, monkeypatch):
    """Makes a build folder whose host has the fault at each request, or early, before its greeting."""
    monkeypatch.setattr(session, "patience", lambda: 3.0)

    def make(fault, early="pass"):
        program = tmp_path / "bin" / "hostilehost"
        program.parent.mkdir()
        program.write_text(APPLICATION.format(python=sys.executable, fault=fault, early=early))
        program.chmod(program.stat().st_mode | stat.S_IXUSR)
        return tmp_path

    return make


@pytest.mark.parametrize("name", FAULTS)
def test_a_fault_is_a_finding_that_tells_how_to_repeat_it(server, build, name):
    fault, expected = FAULTS[name]
    with pytest.raises(Finding, match=expected) as finding:
        play(build(fault), "buttons", 5, 40, server)
    assert "scenario buttons, session seed 5" in str(finding.value)


def test_an_application_without_a_fault_is_none(server, build):
    result = play(build("pass"), "buttons", 5, 40, server)
    assert result.played >= 40 and not result.ended_early


def test_an_application_that_ends_in_order_is_none(server, build):
    result = play(build("if number > 5: sys.exit(0)"), "buttons", 5, 40, server)
    assert result.ended_early


def test_an_application_that_ends_before_its_agent_connects_is_none(server, build):
    folder = build("pass")
    (folder / "bin" / "hostilehost").write_text("#!/bin/sh\nexit 0\n")
    assert play(folder, "buttons", 5, 40, server).ended_early


def test_an_application_that_fails_before_its_agent_connects_is_a_finding(server, build):
    folder = build("pass")
    (folder / "bin" / "hostilehost").write_text("#!/bin/sh\nexit 3\n")
    with pytest.raises(Finding, match="did not connect .* status 3"):
        play(folder, "buttons", 5, 40, server)


def test_an_application_that_ends_before_the_greeting_is_none(server, build):
    assert play(build("pass", early="sys.exit(0)"), "buttons", 5, 40, server).ended_early


EARLY_FAULTS = {
    "crashes": ("os.abort()", "status -6"),
    "closes its connection and stays": (
        "agent.shutdown(socket.SHUT_RDWR); threading.Event().wait()",
        "did not end",
    ),
}


@pytest.mark.parametrize("name", EARLY_FAULTS)
def test_a_fault_before_the_greeting_is_a_finding(server, build, name):
    early, expected = EARLY_FAULTS[name]
    with pytest.raises(Finding, match=expected):
        play(build("pass", early=early), "buttons", 5, 40, server)


def test_the_same_seed_makes_the_same_requests(server, build):
    folder = build("pass")

    def requests():
        one = Session(folder, "menus", 9, server)
        made = [one.player.next_request() for _ in range(100)]
        one.close()
        one.kill()
        return made

    assert requests() == requests()


def test_the_end_of_the_connection_is_told_apart_from_a_missing_reply(server, build):
    one = Session(build("sys.exit(0)"), "menus", 9, server)
    with pytest.raises(Ended):
        one.ask("1")
    one.wait()
    one.kill()
