"""The other end of `qtdriver mcp`: a client that writes and reads lines, and checks nothing."""

import json
import os
import subprocess
from contextlib import contextmanager
from pathlib import Path

import psutil

ROOT = Path(__file__).resolve().parents[2]
BUILD = Path(os.environ.get("QTDRIVER_BUILD", ROOT / "build" / "qt5"))
KIOSK = Path(__file__).with_name("kiosk.py")
CURRENT = "2026-07-28"
META = {
    "io.modelcontextprotocol/protocolVersion": CURRENT,
    "io.modelcontextprotocol/clientCapabilities": {},
}


class McpClient:
    """A server in a process, and the lines to and from it."""

    def __init__(self, *options, folder=None, environment=None):
        self.process = subprocess.Popen(
            [ROOT / "scripts" / "qtdriver", "mcp", *map(str, options)],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            cwd=folder,
            env={**os.environ, **(environment or {})},
        )
        self.number = 0
        self.notifications = []

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def write(self, text):
        """Sends a line, a text or bytes, as it is."""
        self.process.stdin.write((text if isinstance(text, bytes) else text.encode()) + b"\n")
        self.process.stdin.flush()

    def send(self, method, params=None, number=None):
        """Sends a request. Returns its id."""
        self.number += 1
        number = self.number if number is None else number
        self.write(json.dumps({"jsonrpc": "2.0", "id": number, "method": method, "params": params or {}}))
        return number

    def notify(self, method, **params):
        """Sends a notification."""
        self.write(json.dumps({"jsonrpc": "2.0", "method": method, "params": params}))

    def read(self):
        """The next message, of which every one is JSON on a line."""
        line = self.process.stdout.readline()
        assert line, self.process.stderr.read().decode()
        return json.loads(line)

    def response(self, number):
        """The response to a request. Notifications that come before it are kept."""
        while True:
            message = self.read()
            if "method" not in message:
                assert message.get("id") == number, message
                return message
            self.notifications.append(message)

    def ask(self, method, **params):
        """The response to a new request."""
        return self.response(self.send(method, params))

    def initialize(self, revision="2025-11-25"):
        """Agrees on a revision. Returns the result."""
        told = self.ask(
            "initialize",
            protocolVersion=revision,
            capabilities={},
            clientInfo={"name": "test", "version": "1"},
        )
        self.notify("notifications/initialized")
        return told["result"]

    def call(self, tool, **arguments):
        """The text of a tool's answer. Fails where the tool could not do it."""
        result = self.result(tool, **arguments)
        assert not result["isError"], result["content"][0]["text"]
        return result["content"][0]["text"]

    def refusal(self, tool, **arguments):
        """The text of the answer of a tool that could not do it."""
        result = self.result(tool, **arguments)
        assert result["isError"], result["content"][0]["text"]
        return result["content"][0]["text"]

    def result(self, tool, **arguments):
        """The result of a tool."""
        told = self.ask("tools/call", name=tool, arguments=arguments)
        assert "result" in told, told
        return told["result"]

    def close(self):
        """Closes the server's input, as a client does at its end. Returns the exit status and what it has logged."""
        if self.process.stdin.closed:
            return self.process.returncode, ""
        self.process.stdin.close()
        log = self.process.stderr.read().decode()
        self.process.stdout.close()
        self.process.stderr.close()
        return self.process.wait(20), log


@contextmanager
def processor_time(*processes):
    """The seconds of a processor that processes take meanwhile, in a list: other programs on the machine do not count."""

    def taken():
        return sum(sum(psutil.Process(process).cpu_times()[:2]) for process in processes)

    before, spent = taken(), []
    yield spent
    spent.append(taken() - before)
