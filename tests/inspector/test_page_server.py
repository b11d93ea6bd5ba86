"""The server of the page: what it gives to whom, and how it begins and ends."""

import asyncio
import json
import sys
import urllib.error
import urllib.request
from urllib.parse import urlsplit

import aiohttp
import pytest

from qtdriver import eventually
from qtdriver.errors import QtDriverError
from qtdriver.inspector import program
from qtdriver.inspector.server import require_aiohttp

OPENER = urllib.request.build_opener(urllib.request.ProxyHandler({}))


def get(address, **headers):
    """Status, text and headers of an answer."""
    request = urllib.request.Request(address, headers=headers)
    try:
        with OPENER.open(request, timeout=60) as answer:
            return answer.status, answer.read().decode(), dict(answer.headers)
    except urllib.error.HTTPError as error:
        return error.code, error.read().decode(), dict(error.headers)


def talk(address, conversation, *, origin="", **headers):
    """The result of a conversation on the WebSocket."""

    async def run():
        async with aiohttp.ClientSession() as session:
            own = "http://{}".format(urlsplit(address).netloc)
            async with session.ws_connect(
                f"{address}live", origin=origin or own, headers=headers, max_msg_size=0
            ) as socket:
                return await conversation(socket)

    return asyncio.run(run())


async def ask_about(socket):
    """The application's process, as the server tells."""
    await socket.send_json({"id": 7, "do": "about", "values": {}})
    return (await next_answer(socket))["result"]["pid"]


async def next_answer(socket):
    while True:
        message = await socket.receive(60)
        assert message.type in (aiohttp.WSMsgType.TEXT, aiohttp.WSMsgType.BINARY), message
        if message.type == aiohttp.WSMsgType.TEXT:
            return json.loads(message.data)


def test_the_page_and_its_files_come_from_the_server_alone(address):
    status, text, headers = get(address)
    assert status == 200 and "<title>qtdriver inspector</title>" in text
    assert headers["Content-Security-Policy"].startswith("default-src 'none'; script-src 'self'")
    assert headers["Referrer-Policy"] == "no-referrer"
    for name in ("main.js", "inspector.css", "page.css", "dom.js"):
        assert get(address + name)[0] == 200


@pytest.mark.parametrize("name", ["nothing.js", "../server.py", "%2e%2e/server.py", "page/", "a/b.js"])
def test_there_are_no_other_files(address, name):
    status, text, _ = get(address + name)
    assert status in (403, 404) and len(text) < 100


def test_the_token_is_needed(address):
    root, token = address.rstrip("/").rsplit("/", 1)
    for wrong in ("", token[:-1], token.swapcase(), f"{token}a", "x/" + token):
        status, text, _ = get(f"{root}/{wrong}/")
        assert (status, token in text) == (403, False)


def test_the_name_of_another_machine_is_refused(address):
    assert get(address, Host="example.org")[0] == 403
    assert get(address, Host="localhost:9")[0] == 200  # the beginning of a tunnel


def test_another_page_cannot_connect(address):
    with pytest.raises(aiohttp.WSServerHandshakeError, match="403"):
        talk(address, ask_about, origin="http://example.org")


def test_a_connection_needs_the_token(address):
    root, token = address.rstrip("/").rsplit("/", 1)
    with pytest.raises(aiohttp.WSServerHandshakeError, match="403"):
        talk(f"{root}/{token[::-1]}/", ask_about)


def test_the_page_asks_the_application(address, held):
    assert talk(address, ask_about) == held.pid


def test_a_question_that_is_none_is_answered_with_a_reason(address, held):
    async def conversation(socket):
        await socket.send_json({"id": 1, "do": "nothing", "values": {}})
        unknown = await next_answer(socket)
        await socket.send_str("no JSON")
        broken = await next_answer(socket)
        return unknown, broken, await ask_about(socket)

    unknown, broken, pid = talk(address, conversation)
    assert unknown == {"answers": 1, "error": "no such operation: nothing"}
    assert broken["told"] == "problem" and "a message that is none" in broken["text"]
    assert pid == held.pid


def test_a_second_page_is_refused_until_the_first_is_closed(address, held):
    async def conversation(first):
        assert await ask_about(first) == held.pid
        async with aiohttp.ClientSession() as session:
            own = "http://{}".format(urlsplit(address).netloc)
            async with session.ws_connect(f"{address}live", origin=own) as second:
                message = await second.receive(60)
                return message.type, message.data, message.extra

    kind, code, reason = talk(address, conversation)
    assert (kind, code) == (aiohttp.WSMsgType.CLOSE, 4409) and "another page" in reason
    assert talk(address, ask_about) == held.pid


def test_only_the_loopback_address_is_listened_at(address):
    port = f"{urlsplit(address).port:04X}"
    with open("/proc/net/tcp", encoding="ascii") as v4, open("/proc/net/tcp6", encoding="ascii") as v6:
        rows = [line.split() for file in (v4, v6) for line in file]
    listening = [row[1] for row in rows if row[3] == "0A" and row[1].endswith(f":{port}")]
    assert listening == [f"0100007F:{port}"]


def test_a_missing_aiohttp_is_told(monkeypatch):
    monkeypatch.setitem(sys.modules, "aiohttp", None)
    with pytest.raises(QtDriverError, match="apt install python3-aiohttp"):
        require_aiohttp()


@pytest.mark.parametrize("screen", [{"DISPLAY": ":5"}, {"WAYLAND_DISPLAY": "wayland-0"}])
def test_a_browser_is_opened_where_there_is_a_screen(tmp_path, screen):
    opened = tmp_path / "opened"
    browser = tmp_path / "browser"
    browser.write_text(f'#!/bin/sh\necho "$1" >{opened}.part && mv {opened}.part {opened}\n')
    browser.chmod(0o755)
    assert program.open_browser("http://127.0.0.1:1/t/", {**screen, "BROWSER": str(browser)})
    eventually(opened.exists).is_true()
    assert opened.read_text() == "http://127.0.0.1:1/t/\n"
    assert not program.open_browser("http://127.0.0.1:1/t/", {})
