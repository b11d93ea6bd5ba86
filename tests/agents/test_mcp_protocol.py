"""`qtdriver mcp`: the protocol, without an application."""

import json
import os
import re
import shlex
import threading

import psutil
import pytest

from mcpclient import CURRENT, META, ROOT, McpClient
from qtdriver.mcp.server import GivenUp, McpServer
from qtdriver.mcp.wire import Wire

PING = {"jsonrpc": "2.0", "id": 1, "method": "ping"}


@pytest.fixture(scope="module")
def shared():
    """A server that has agreed on a revision; for requests that change nothing."""
    with McpClient("--headed") as client:
        client.initialize()
        yield client


@pytest.fixture
def fresh():
    """A server that has been told nothing."""
    with McpClient("--headed") as client:
        yield client


@pytest.mark.parametrize(
    "asked, agreed",
    [("2025-11-25", "2025-11-25"), ("2025-06-18", "2025-06-18"), ("1999-01-01", "2025-11-25")],
)
def test_a_revision_is_agreed_on(fresh, asked, agreed):
    result = fresh.initialize(asked)
    assert result["protocolVersion"] == agreed
    assert result["serverInfo"]["name"] == "qtdriver" and "launch" in result["instructions"]
    assert sorted(result["capabilities"]) == ["prompts", "resources", "tools"]
    again = fresh.ask("initialize", protocolVersion=asked, capabilities={}, clientInfo={})
    assert again["error"]["code"] == -32600


def test_since_the_newest_revision_each_request_names_its_own(fresh):
    result = fresh.ask("server/discover", _meta=META)["result"]
    assert result["supportedVersions"] == [CURRENT, "2025-11-25", "2025-06-18"]
    assert result["resultType"] == "complete" and result["ttlMs"] > 0
    assert result["_meta"]["io.modelcontextprotocol/serverInfo"]["name"] == "qtdriver"
    tools = fresh.ask("tools/list", _meta=META)["result"]
    assert tools["resultType"] == "complete" and tools["cacheScope"] == "public" and len(tools["tools"]) == 14
    called = fresh.ask("tools/call", name="windows", arguments={}, _meta=META)["result"]
    assert called["resultType"] == "complete" and "ttlMs" not in called


def test_a_request_of_a_revision_that_is_not_known_is_told_which_are(fresh):
    meta = {**META, "io.modelcontextprotocol/protocolVersion": "1900-01-01"}
    error = fresh.ask("tools/list", _meta=meta)["error"]
    assert error["code"] == -32022
    assert error["data"] == {"supported": [CURRENT, "2025-11-25", "2025-06-18"], "requested": "1900-01-01"}


def test_a_request_without_any_revision_is_refused_but_a_ping(fresh):
    assert fresh.ask("ping")["result"] == {}
    error = fresh.ask("tools/list")["error"]
    assert error["code"] == -32602 and "initialize" in error["message"]
    lacking = {key: value for key, value in META.items() if "Capabilities" not in key}
    assert fresh.ask("tools/list", _meta=lacking)["error"]["code"] == -32602


@pytest.mark.parametrize("method", ["ping", "initialize"])
def test_methods_that_the_newest_revision_has_no_more_are_unknown_in_it(fresh, method):
    assert fresh.ask(method, _meta=META)["error"]["code"] == -32601


def test_discovery_is_unknown_to_the_revisions_before(shared):
    assert shared.ask("server/discover")["error"]["code"] == -32601


@pytest.mark.parametrize(
    "line, code, number",
    [
        ("{", -32700, None),
        (b'"\xff\xfe"', -32700, None),
        ('{"jsonrpc":"2.0","id":7,"method":"ping","params":{"a":NaN}}', -32700, None),
        ("[" * 100_000, -32700, None),
        (json.dumps([PING]), -32600, None),
        ('"ping"', -32600, None),
        (json.dumps({**PING, "jsonrpc": "1.0"}), -32600, 1),
        (json.dumps({**PING, "id": None}), -32600, None),
        (json.dumps({**PING, "id": True}), -32600, None),
        (json.dumps({**PING, "id": 1.5}), -32600, None),
        (json.dumps({**PING, "method": 5}), -32600, 1),
        (json.dumps({**PING, "params": [1]}), -32602, 1),
        (json.dumps({**PING, "params": {"_meta": 1}}), -32602, 1),
        (json.dumps({**PING, "method": "tools/nothing"}), -32601, 1),
        (json.dumps({**PING, "method": "tools/call", "params": {"name": "erase"}}), -32602, 1),
        (json.dumps({**PING, "method": "tools/call", "params": {"name": ["windows"]}}), -32602, 1),
        (
            json.dumps({**PING, "method": "tools/call", "params": {"name": "windows", "arguments": 1}}),
            -32602,
            1,
        ),
        (json.dumps({**PING, "params": {"fill": "x" * 5_000_000}}), -32600, None),
    ],
    ids=lambda value: str(value)[:30],
)
def test_malformed_input_is_answered_by_its_error_and_nothing_else(shared, line, code, number):
    shared.write(line)
    told = shared.read()
    assert told["error"]["code"] == code and told.get("id") == number and told["jsonrpc"] == "2.0"
    assert told["error"]["message"]
    assert shared.ask("ping")["result"] == {}


def test_notifications_and_responses_are_not_answered(shared):
    shared.notify("notifications/roots/list_changed")
    shared.notify("notifications/cancelled", requestId=99)
    shared.notify("notifications/cancelled", requestId=[1])
    shared.write('{"jsonrpc":"2.0","id":5,"result":{}}')
    shared.write("")
    assert shared.ask("ping")["result"] == {}


def test_an_id_may_be_a_text_and_comes_back_as_it_is(shared):
    shared.send("ping", number="a-1 €")
    assert shared.read() == {"jsonrpc": "2.0", "id": "a-1 €", "result": {}}


def test_each_tool_has_a_schema_a_title_a_description_and_hints(shared):
    tools = shared.ask("tools/list")["result"]["tools"]
    assert [tool["name"] for tool in tools] == [
        "launch", "windows", "snapshot", "find", "click", "type", "press", "select", "read", "wait", "screenshot",
        "pick", "close", "save_test",
    ]  # fmt: skip
    for tool in tools:
        assert tool["title"] and len(tool["description"]) > 40
        assert (
            tool["inputSchema"]["type"] == "object" and tool["inputSchema"]["additionalProperties"] is False
        )
        assert set(tool["inputSchema"].get("required", ())) <= set(tool["inputSchema"]["properties"])
        assert all("type" in one for one in tool["inputSchema"]["properties"].values())
    reading = {tool["name"] for tool in tools if tool["annotations"]["readOnlyHint"]}
    assert reading == {"windows", "snapshot", "find", "read", "wait", "screenshot", "pick"}
    destroying = {tool["name"] for tool in tools if tool["annotations"]["destructiveHint"]}
    assert destroying == {"click", "type", "press", "select", "close", "save_test"}


def test_the_description_of_all_tools_takes_a_bounded_part_of_a_context(shared):
    told = json.dumps(shared.ask("tools/list")["result"], separators=(",", ":"))
    assert len(told) / 4 < 3500


@pytest.mark.parametrize(
    "tool, arguments, problem",
    [
        ("launch", {}, "program is needed"),
        ("launch", {"program": 5}, "program has to be string, not 5"),
        ("launch", {"program": "x", "arguments": ["a", 1]}, "arguments entry 1: has to be string, not 1"),
        ("launch", {"program": "x", "qt": 3}, "qt has to be one of 4, 5, 6, not 3"),
        ("launch", {"program": "x", "qt": True}, "qt has to be integer, not True"),
        ("click", {"target": 1, "at": [0.5]}, "at has to have 2 to 2 entries"),
        ("click", {"target": 1, "at": [0.5, 3]}, "at entry 1: has to be from 0 to 1, not 3"),
        ("click", {"place": 1}, "there is no argument 'place'; there are: target, item"),
        ("windows", {"app": None}, "app has to be string, not None"),
        ("click", {"target": 1}, "no application is running: launch one first"),
        ("read", {"target": 1, "app": "other"}, "no application 'other' is running"),
        ("launch", {"program": "/nowhere/at-all"}, "at-all"),
        ("save_test", {"path": "test_a.py"}, "there are no steps yet"),
    ],
)
def test_a_tool_that_cannot_do_it_tells_the_model_why(shared, tool, arguments, problem):
    assert problem in shared.refusal(tool, **arguments)


def test_nobody_reaches_the_server_by_a_network(fresh):
    fresh.initialize()
    assert psutil.Process(fresh.process.pid).connections("inet") == []


def test_windows_without_an_application_says_how_to_get_one(shared):
    assert shared.call("windows") == "no application is running: launch one"


def test_resources_are_the_documents_on_widgets(shared):
    listed = {one["uri"]: one for one in shared.ask("resources/list")["result"]["resources"]}
    assert listed["qtdriver://widgets/buttons"]["mimeType"] == "text/markdown"
    (content,) = shared.ask("resources/read", uri="qtdriver://widgets/buttons")["result"]["contents"]
    assert content["uri"] == "qtdriver://widgets/buttons" and content["text"].startswith("# Buttons")
    assert shared.ask("resources/templates/list")["result"] == {"resourceTemplates": []}


@pytest.mark.parametrize("uri", ["qtdriver://widgets/../../README", "file:///etc/passwd", 5, None])
def test_no_other_file_is_a_resource(shared, uri):
    assert shared.ask("resources/read", uri=uri)["error"]["code"] == -32602


def test_prompts_have_their_arguments_in_their_text(shared):
    prompts = shared.ask("prompts/list")["result"]["prompts"]
    assert [(one["name"], [argument["name"] for argument in one["arguments"]]) for one in prompts] == [
        ("explore", ["application"]),
        ("write_test", ["application", "goal", "path"]),
    ]
    given = {"application": "./editor $HOME", "goal": "saving", "path": "test_a.py"}
    (message,) = shared.ask("prompts/get", name="write_test", arguments=given)["result"]["messages"]
    assert message["role"] == "user"
    assert all(text in message["content"]["text"] for text in given.values())


@pytest.mark.parametrize(
    "params", [{"name": "poem"}, {"name": "explore"}, {"name": "explore", "arguments": 1}]
)
def test_a_prompt_that_cannot_be_made_is_an_error(shared, params):
    assert shared.ask("prompts/get", **params)["error"]["code"] == -32602


def test_an_id_can_be_used_again_as_soon_as_the_answer_is_there(shared):
    for _ in range(50):
        shared.send("tools/call", {"name": "windows", "arguments": {}}, number="again")
        assert "result" in shared.read()


class Faulty:
    """An offer whose answers and tools have faults; one tool waits until it is cancelled."""

    instructions = ""

    def list_prompts(self):
        raise OSError("the disk is gone")

    def knows_tool(self, name):
        return True

    def call_tool(self, call):
        if call.message.params["name"] == "fault":
            raise KeyError("lost")
        assert call.cancelled.wait(60)
        raise GivenUp


@pytest.fixture
def faulty():
    """The other ends of the streams of a server with the faulty offer, to write and to read."""
    (to_read, to_write), (answers, answering) = os.pipe(), os.pipe()
    server = McpServer(Wire(os.fdopen(to_read, "rb"), os.fdopen(answering, "wb")), Faulty(), {})
    thread = threading.Thread(target=server.run)
    thread.start()
    with os.fdopen(answers, "rb") as lines:
        with os.fdopen(to_write, "wb", buffering=0) as requests:
            requests.write(
                b'{"jsonrpc":"2.0","id":0,"method":"initialize","params":{"protocolVersion":"2025-11-25"}}\n'
            )
            assert b'"result"' in lines.readline()
            yield requests, lines
        thread.join(60)
    assert not thread.is_alive()


def request(number, method, **params):
    return json.dumps({"jsonrpc": "2.0", "id": number, "method": method, "params": params}).encode() + b"\n"


def test_a_fault_of_an_answer_or_a_tool_is_an_error_and_does_not_end_the_server(faulty):
    requests, lines = faulty
    for method, params, fault in (
        ("prompts/list", {}, "OSError: the disk is gone"),
        ("tools/call", {"name": "fault"}, "KeyError: 'lost'"),
    ):
        requests.write(request(1, method, **params))
        told = json.loads(lines.readline())
        assert (told["id"], told["error"]) == (1, {"code": -32603, "message": fault})
    requests.write(request(2, "ping"))
    assert json.loads(lines.readline())["result"] == {}


def test_a_call_is_cancelled_by_its_own_id_only(faulty):
    requests, lines = faulty
    requests.write(request(1, "tools/call", name="wait"))
    cancelled = {"jsonrpc": "2.0", "method": "notifications/cancelled"}
    for number in (True, "1"):
        requests.write(json.dumps({**cancelled, "params": {"requestId": number}}).encode() + b"\n")
    requests.write(request(1, "tools/call", name="wait"))
    assert "still being worked on" in json.loads(lines.readline())["error"]["message"]
    requests.write(json.dumps({**cancelled, "params": {"requestId": 1}}).encode() + b"\n")
    requests.write(request(2, "tools/call", name="fault"))
    assert json.loads(lines.readline())["id"] == 2, "the one that was cancelled has no answer"


def documented_configurations():
    """The files of clients in the documents, by their keys."""
    text = (ROOT / "docs" / "agents.md").read_text()
    blocks = re.findall(r"`(\.\w+/mcp\.json)`:\n\n((?:    .*\n)+)", text)
    return [pytest.param(json.loads(block), id=name) for name, block in blocks]


@pytest.mark.parametrize("configuration", documented_configurations())
def test_the_server_starts_as_the_documents_tell_clients_to(tmp_path, configuration):
    ((key, servers),) = configuration.items()
    assert key in ("servers", "mcpServers")
    server = servers["qtdriver"]
    assert (server["type"], server["command"], server["args"][0]) == ("stdio", "qtdriver", "mcp")
    options = [word.replace("${workspaceFolder}", str(tmp_path)) for word in server["args"][1:]]
    folder = server.get("cwd", ".").replace("${workspaceFolder}", str(tmp_path))
    with McpClient(*options, folder=folder) as client:
        assert client.initialize()["serverInfo"]["name"] == "qtdriver"
        assert os.readlink(f"/proc/{client.process.pid}/cwd") == str(tmp_path)


def test_the_documents_have_the_files_of_two_clients():
    assert [one.id for one in documented_configurations()] == [".vscode/mcp.json", ".cursor/mcp.json"]


def documented_commands():
    """The commands that the documents have clients add."""
    text = (ROOT / "docs" / "agents.md").read_text()
    return re.findall(r"^    (\w+) mcp add qtdriver (?:-- )?qtdriver (.+)$", text, re.MULTILINE)


@pytest.mark.parametrize("client, words", documented_commands())
def test_the_server_starts_by_the_commands_that_the_documents_have(tmp_path, client, words):
    command, *options = shlex.split(words.replace("$PWD", str(tmp_path)))
    assert command == "mcp"
    with McpClient(*options, folder=tmp_path) as running:
        assert running.initialize()["serverInfo"]["name"] == "qtdriver"
        assert os.readlink(f"/proc/{running.process.pid}/cwd") == str(tmp_path)


def test_the_documents_have_the_commands_of_three_clients():
    assert [client for client, _ in documented_commands()] == ["claude", "codex", "gemini"]


@pytest.mark.parametrize("options", [("--headed",), ()])
def test_a_folder_that_is_named_is_the_one_of_the_project(tmp_path, options):
    with McpClient(*options, "--folder", tmp_path) as client:
        client.initialize()
        assert os.readlink(f"/proc/{client.process.pid}/cwd") == str(tmp_path)


def test_a_folder_that_is_not_there_is_told(tmp_path):
    with McpClient("--headed", "--folder", "${workspaceFolder}", folder=tmp_path) as client:
        status, log = client.close()
    assert (status, log) == (
        1,
        "qtdriver: the folder ${workspaceFolder} cannot be used: No such file or directory\n",
    )


def test_it_ends_when_its_input_ends(fresh):
    fresh.initialize()
    assert fresh.close() == (0, "")
