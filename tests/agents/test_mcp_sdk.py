"""`qtdriver mcp` with the client of the official SDK, in two revisions of the protocol."""

import pytest

from mcpclient import BUILD, KIOSK
from sdkclient import SdkClient, needs_sdk

pytestmark = needs_sdk


@pytest.fixture(scope="module", params=["2026-07-28", "2025-11-25"])
def client(request, tmp_path_factory):
    """A client of each revision, with an application."""
    folder = tmp_path_factory.mktemp("sdk")
    with SdkClient(folder, request.param, "--headed", "--build", BUILD / "agents") as running:
        running.revision = request.param
        running.folder = folder / "work"
        running.call("launch", program="/usr/bin/python3", arguments=[str(KIOSK)], qt=5)
        yield running


def test_the_client_and_the_server_agree_on_the_revision(client):
    about = client.result("about")
    assert about["revision"] == client.revision and about["server"]["name"] == "qtdriver"
    assert "Begin with launch" in about["instructions"]


def test_the_client_takes_all_lists(client):
    assert len(client.result("tools")["tools"]) == 14
    assert "qtdriver://widgets/menus" in [one["uri"] for one in client.result("resources")["resources"]]
    assert client.result("read", {"uri": "qtdriver://widgets/menus"})["contents"][0]["text"].startswith(
        "# Menus"
    )
    assert [one["name"] for one in client.result("prompts")["prompts"]] == ["explore", "write_test"]
    got = client.result("prompt", {"name": "explore", "arguments": {"application": "./editor"}})
    assert "./editor" in got["messages"][0]["content"]["text"]


def test_the_client_takes_the_answer_of_each_tool(client):
    assert "Kiosk" in client.call("windows")
    assert '"Open later"' in client.call("find", text="later")
    assert "open" in client.call("click", target="Open")
    client.call("press", keys=["Tab"])
    assert "'open'" in client.call("read", target="state", check=False)
    client.call("wait", target="state", equals="open")
    assert "#state" in client.call("snapshot")
    picture = client.result("call", {"name": "screenshot", "arguments": {"width": 100}})
    assert picture["content"][1]["type"] == "image" and picture["content"][1]["mimeType"] == "image/png"
    client.call("pick", x=5, y=5)
    refused = client.result("call", {"name": "type", "arguments": {"text": "x", "target": "nothing"}})
    assert refused["isError"] and "nothing in" in refused["content"][0]["text"]
    refused = client.result("call", {"name": "select", "arguments": {"target": "Open", "value": "x"}})
    assert refused["isError"] and "is set to true or false" in refused["content"][0]["text"]
    saved = client.call("save_test", path="test_kiosk.py")
    assert "it passed" in saved and (client.folder / "test_kiosk.py").exists()


def test_the_client_hears_of_progress_and_can_cancel(client):
    waiting = {"name": "wait", "arguments": {"target": "Open", "state": "disabled", "timeout": 60}}
    told = client.ask("call", waiting, cancelAfter=1)
    assert "not needed any more" in told["error"]["message"]
    result = client.result(
        "call", {"name": "wait", "arguments": {"target": "Open", "state": "disabled", "timeout": 1.5}}
    )
    assert result["isError"] and result["progress"][0]["message"].startswith("waiting for 1 s")


def test_the_client_gets_the_errors_of_the_protocol(client):
    assert client.ask("call", {"name": "erase", "arguments": {}})["error"]["code"] == -32602
    assert client.ask("read", {"uri": "file:///etc/passwd"})["error"]["code"] == -32602
    assert client.ask("prompt", {"name": "explore"})["error"]["code"] == -32602


def test_an_application_is_closed(client):
    assert "still running: none" in client.call("close")
