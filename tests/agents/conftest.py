"""Shared by the tests of `qtdriver mcp`: an application that is made for them, and a server that has started it."""

import sys

import pytest

from mcpclient import BUILD, KIOSK, ROOT, McpClient

sys.path.insert(0, str(ROOT / "runner"))


@pytest.fixture(scope="module")
def folder(tmp_path_factory):
    """The working directory of the server."""
    return tmp_path_factory.mktemp("work")


@pytest.fixture(scope="module")
def client(folder):
    """A server that runs no application yet."""
    with McpClient("--headed", "--build", BUILD / "agents", folder=folder) as running:
        running.initialize()
        yield running


@pytest.fixture(scope="module")
def showcase(client):
    """The server, with the showcase started as "app"."""
    client.launched = client.call("launch", program=str(BUILD / "bin" / "showcase"))
    return client


@pytest.fixture
def kiosk(client):
    """Starts the application that is made for these tests as "kiosk", and ends it."""

    def start(*arguments):
        program = {"program": "/usr/bin/python3", "arguments": [str(KIOSK), *arguments], "qt": 5}
        return client.call("launch", app="kiosk", **program)

    yield start
    client.result("close", app="kiosk")
