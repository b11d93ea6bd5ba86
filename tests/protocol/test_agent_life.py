"""The agent's life in the application: it may be deleted at any time, and leaves nothing behind."""

import pytest

from hostapp import hexed

FREED_MEMORY_IS_OVERWRITTEN = {"MALLOC_PERTURB_": "165"}
"""Code that goes on with a deleted agent crashes, even without a sanitizer."""


@pytest.fixture
def app(launch):
    return launch("agentlifehost", env=FREED_MEMORY_IS_OVERWRITTEN)


def entering(path, text):
    return f"6,Life,{path},,{hexed('s:' + text)},\n".encode("latin-1")


def idle_notifier_is_told(app):
    app.do("tellIdleNotifier")
    return app.events("idle")[-1] == "idle notifier activated 1"


def uses_glib(app):
    app.do("nameDispatcher")
    return app.events("dispatcher")[-1] == "dispatcher of GLib"


@pytest.mark.parametrize("field", ["delete", "deleteInLoop"])
@pytest.mark.parametrize("following", [b"", b"8,Life\n" * 3], ids=["alone", "with more requests"])
def test_a_slot_that_a_command_runs_may_delete_the_agent(app, field, following):
    app.send(entering(field, "x") + following)
    assert app.read_line() is None, "a deleted agent has no reply"
    app.wait_for(f"changed {field} x")
    assert app.get("life", "visible") == "true"
    app.start("quit")
    assert app.wait_for_end() == 0


def test_after_an_agent_that_was_deleted_in_a_command_another_one_works(app):
    app.send(entering("delete", "x"))
    assert app.read_line() is None
    app.start("loadAgent")
    app.accept()
    assert app.request("8,Life") == "0,Life"


def test_a_request_is_answered_where_the_application_removes_all_posted_events(app):
    app.do("losePostedEvents")
    assert [app.request("8,Life") for _ in range(3)] == ["0,Life"] * 3
    app.wait_for("events removed")


@pytest.mark.parametrize("without_glib", ["", "1"])
def test_notifiers_are_held_back_only_while_the_agent_is_connected_and_only_with_glib(launch, without_glib):
    app = launch("agentlifehost", "--late", agent=False, env={"QT_NO_GLIB": without_glib})
    assert not (without_glib and uses_glib(app))
    assert idle_notifier_is_told(app)
    app.start("loadAgent")
    app.accept()
    assert idle_notifier_is_told(app) != uses_glib(app)
    app.socket.close()
    app._reader.close()
    app.wait_until_agent_is_closed()
    assert idle_notifier_is_told(app)


def test_without_a_server_no_notifier_is_held_back(launch):
    app = launch("agentlifehost", serve=False)
    app.wait_for("agent loaded")
    app.wait_until_agent_is_closed()
    assert idle_notifier_is_told(app)
