"""The client of the official SDK, as a program that is told what to ask."""

import json
import os
import shutil
import subprocess
from pathlib import Path

import pytest

from mcpclient import ROOT

HERE = Path(__file__).parent
INSTALLED = Path(os.environ.get("QTDRIVER_AGENTS_CLIENT", ROOT / "build" / "agents-client")) / "node_modules"


def _is_installed():
    lock = INSTALLED / "installed.json"
    return lock.is_file() and lock.read_text() == (HERE / "package-lock.json").read_text()


needs_sdk = pytest.mark.skipif(
    not _is_installed(),
    reason="the MCP SDK is not installed: scripts/setup.sh does it where npm of Node.js 20 or later is",
)
"""Skips the tests of a file where the SDK is not installed."""


class SdkClient:
    """A client of one revision, and the server that it has started.

    Attributes:
        answers: the tools that were called, each with the characters of its answer.
    """

    def __init__(self, folder, revision, *options, environment=None):
        (folder / "client").mkdir(exist_ok=True)
        (folder / "work").mkdir(exist_ok=True)
        # A program finds its modules beside its own file.
        shutil.copy(HERE / "client.mjs", folder / "client")
        modules = folder / "client" / "node_modules"
        if not modules.is_symlink():
            modules.symlink_to(INSTALLED)
        server = [str(ROOT / "scripts" / "qtdriver"), "mcp", *map(str, options)]
        self.process = subprocess.Popen(
            ["node", "../client/client.mjs", revision, *server],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            cwd=folder / "work",
            env={**os.environ, **(environment or {})},
            text=True,
        )
        self.answers = []

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.stdin.close()
        self.process.stdout.close()
        self.process.wait(30)

    def ask(self, action, params=None, **options):
        """The client's result or error: {"result": ...} or {"error": ...}."""
        self.process.stdin.write(json.dumps({"do": action, "with": params, **options}) + "\n")
        self.process.stdin.flush()
        return json.loads(self.process.stdout.readline())

    def result(self, action, params=None, **options):
        """The result. Fails where there is none."""
        told = self.ask(action, params, **options)
        assert "result" in told, told
        return told["result"]

    def call(self, tool, **arguments):
        """The text of a tool's answer. Fails where the tool could not do it."""
        result = self.result("call", {"name": tool, "arguments": arguments})
        text = result["content"][0]["text"]
        assert not result.get("isError"), text
        self.answers.append((tool, len(text)))
        return text

    def tokens(self):
        """About how many tokens the answers had: a token is four characters. The code of a saved test is left out."""
        return sorted(size / 4 for tool, size in self.answers if tool != "save_test")
