"""Shared by the tests of `qtdriver mcp`: an application that is made for them, and a server that has started it."""

import os
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


@pytest.fixture
def model(tmp_path):
    """The client of the SDK, with a server on a desktop of its own, for programs that nobody here wrote."""
    from sdkclient import SdkClient

    environment = {"LC_ALL": "C.UTF-8", "QT_XCB_GL_INTEGRATION": "none", "QT_QPA_PLATFORMTHEME": ""}
    environment["USER"] = f"tester-{os.getpid()}"  # KeePassXC runs once for each user, whatever the desktop
    with SdkClient(tmp_path, "2026-07-28", "--build", BUILD / "agents", environment=environment) as running:
        running.folder = tmp_path / "work"
        yield running
