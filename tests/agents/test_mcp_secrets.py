"""`qtdriver mcp` and passwords: no error and no fault of a tool shows one that was typed."""

import re
from types import SimpleNamespace

import pytest

from qtdriver.errors import QtDriverError
from qtdriver.mcp import offer
from qtdriver.mcp.calls import Call
from qtdriver.mcp.messages import Message, RpcError
from qtdriver.protocol.secrets import Secrets
from qtdriver.recording.code import test_code as code_of
from qtdriver.recording.steps import Launch, Part
from qtdriver.tools.failures import answer_to
from qtdriver.tools.options import Options
from qtdriver.tools.session import Session
from qtdriver.tools.tool import Tool

PIN = "s3cret-77"
LONG = 'nine sleepy roasters grind "Harrar" beans in the dark, and none of them ever drinks a cup before noon'


@pytest.fixture
def session(tmp_path):
    """A session in whose application, which has ended, the password was typed."""
    session = Session(Options(tmp_path))
    connection = SimpleNamespace(secrets=Secrets([PIN]))
    session.forget(SimpleNamespace(name="gone", app=SimpleNamespace(connection=connection)))
    return session


def call_of_a_tool_that_raises(session, monkeypatch, error):
    """Calls a tool that raises the error. Returns what the server makes of it."""

    def run(*_):
        raise error

    monkeypatch.setitem(offer._BY_NAME, "fails", Tool("fails", "Fails", "Fails always", run))
    message = Message("tools/call", {"name": "fails"}, 1)
    return offer.QtOffer(session).call_tool(Call(message, "2025-11-25", lambda *_: None))


def test_the_last_output_of_an_application_that_crashes_is_told_without_the_password(client, kiosk):
    kiosk()
    client.call("type", target="pin", text=PIN)
    problem = client.refusal("click", target="Tell and crash")
    assert "no user has the PIN ***" in problem and "signal SIGSEGV" in problem
    assert PIN not in problem
    assert PIN not in kiosk()
    problem = client.refusal("click", target=f"OK {PIN}")
    assert "'OK ***'" in problem and PIN not in problem, "it stays hidden when its application is gone"


def test_a_password_behind_a_return_or_key_by_key_is_in_no_answer_and_no_saved_test(client, kiosk, folder):
    kiosk("login")
    told = [
        client.call("type", app="kiosk", target="user", text=f"ada\n{PIN}"),
        client.call("press", app="kiosk", target="pin", keys=list(PIN)),
        client.call("press", app="kiosk", target="pin", keys=[*PIN, "Return"]),
        client.call("click", app="kiosk", target="Show the PIN"),
    ]
    assert ["will not be in a saved test" in one for one in told] == [True, False, True, False]
    assert "pressed ***, ***" in told[1] and "***, Return" in told[2] and "***" in told[3]
    saved = client.call("save_test", path="test_login.py")
    variables = re.findall("TEST_SECRET_[0-9]+", saved.splitlines()[1])
    assert len(variables) == 1 and f'widget("pin").type({variables[0][len("TEST_"):]})' in saved
    told += [saved, (folder / "test_login.py").read_text()]
    assert [form for form in (PIN, ", ".join(PIN), "', '".join(PIN)) if form in "".join(told)] == []


def test_a_long_password_that_the_application_shows_is_hidden_also_where_it_is_shortened(client, kiosk):
    kiosk()
    client.call("type", target="pin", text=LONG)
    told = [
        client.call("click", app="kiosk", target="Show the PIN"),
        client.call("snapshot", app="kiosk"),
        client.call("read", app="kiosk", target="state", check=False),
    ]
    assert all("***" in text for text in told)
    assert LONG[:8] not in "".join(told)


def test_a_fault_of_a_tool_is_told_without_the_password(session, monkeypatch):
    with pytest.raises(RpcError) as raised:
        call_of_a_tool_that_raises(session, monkeypatch, KeyError(f"no field takes {PIN}"))
    assert (raised.value.code, str(raised.value)) == (-32603, "KeyError: 'no field takes ***'")


def test_an_error_of_the_runner_is_told_without_the_password(session, monkeypatch):
    result = call_of_a_tool_that_raises(session, monkeypatch, QtDriverError(f"the field has {PIN!r}"))
    assert result == {"content": [{"type": "text", "text": "the field has '***'"}], "isError": True}


@pytest.mark.parametrize(
    "method, argument",
    [("type", f"Ada\t{PIN}"), ("has_property", Part(f"is {PIN}")), ("equals", ("Ada", PIN))],
)
def test_a_step_with_a_password_and_other_text_is_not_saved(session, method, argument):
    running = SimpleNamespace(
        name="app", app=SimpleNamespace(connection=SimpleNamespace(secrets=Secrets(["7"])))
    )
    note = session.record(running, 'window("Login")', "", method, [argument])
    assert note == "\n(this step will not be in a saved test: it has a password and other text)"
    assert session.record(running, 'window("Login")', "", "type", [PIN]) == ""
    assert session.record(running, 'window("Login")', "", "enter", [7]) == "", "a number is no password"
    code = code_of("it", [Launch("app", ("editor",)), *session.recorded])
    assert "login.type(SECRET_1)" in code and PIN not in code


@pytest.mark.parametrize("before", [2992, 2998])
def test_no_part_of_a_password_is_left_where_a_long_error_is_cut(session, before):
    told = answer_to(session, QtDriverError("-" * before + PIN + "-" * 100)).text
    assert "s3" not in told and "more characters" in told
