"""Programs with the preload library, and the server's view of their connections."""

import os
import select
import socket
import subprocess
import time
from contextlib import contextmanager
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
BUILD = Path(os.environ.get("QTDRIVER_BUILD", ROOT / "build" / "qt5")).resolve()
QT = int(os.environ.get("QTDRIVER_QT", "5"))
PRELOAD = BUILD / "lib" / "libqtdriver-preload.so"
AGENT = BUILD / "lib" / "libqtdriver.so"
WIDGETS_HOST = BUILD / "bin" / "host_preload_widgets"
DEADLINE = 20.0
"""Seconds after which a test stops waiting for what must happen."""


def linked_libraries(path):
    """The paths of the libraries that a program or library links, by their names."""
    lines = subprocess.run(["ldd", str(path)], capture_output=True, text=True, check=True).stdout.splitlines()
    fields = (line.split() for line in lines if "=> /" in line)
    return {name: Path(target) for name, _, target, *_ in fields}


def qt_libraries(path):
    """Those of Qt among them."""
    return {name: target for name, target in linked_libraries(path).items() if name.startswith("libQt")}


SANITIZER = linked_libraries(AGENT).get("libasan.so.8")
"""The runtime that has to come with a sanitized agent, None for a plain build."""


class Program:
    """A running program with `preload` as its LD_PRELOAD, read and told in lines."""

    def __init__(self, *command, preload=PRELOAD, directory=None, **variables):
        environment = {**os.environ, "LC_ALL": "C.UTF-8", **variables}
        if preload is not None:
            environment["LD_PRELOAD"] = str(preload)
        # The sanitizer's runtime would rather be the first library, but need not be for this one.
        environment["ASAN_OPTIONS"] = "verify_asan_link_order=0:" + environment.get(
            "ASAN_OPTIONS", "detect_leaks=0"
        )
        self.process = subprocess.Popen(
            [str(part) for part in command],
            env=environment,
            cwd=directory,
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            bufsize=0,
        )

    def tell(self, line):
        """Writes a line to the program's standard input."""
        self.process.stdin.write(f"{line}\n".encode())

    def next_line(self):
        """The next line of its standard output."""
        line = bytearray()
        while not line.endswith(b"\n"):
            assert select.select([self.process.stdout], [], [], DEADLINE)[0], "no output in time"
            byte = self.process.stdout.read(1)
            assert byte, f"ended after {bytes(line)!r}: {self.process.stderr.read().decode()}"
            line += byte
        return line.decode().rstrip("\n")

    def end(self):
        """Waits for the end: the exit status, the rest of standard output, and of standard error what is not Qt's own
        complaint about the X server: Qt asks it for windows that are being closed."""
        output, errors = self.process.communicate(timeout=DEADLINE)
        complaints = [line for line in errors.decode().splitlines(True) if not line.startswith("qt.qpa.xcb:")]
        return self.process.returncode, output.decode(), "".join(complaints)

    def mapped_files(self):
        """The files that the process has mapped."""
        lines = Path(f"/proc/{self.process.pid}/maps").read_text().splitlines()
        return {Path(line.split(maxsplit=5)[5]) for line in lines if " /" in line}


@contextmanager
def programs_ended():
    """A list for programs; those that still run when the context ends are killed."""
    programs = []
    yield programs
    for program in programs:
        if program.process.poll() is None:
            program.process.kill()
        program.process.communicate()


def wait_for(condition, situation=lambda: ""):
    """Waits until the condition holds; the error of one that never does tells the situation."""
    deadline = time.monotonic() + DEADLINE
    while not condition():
        assert time.monotonic() < deadline, f"it did not happen in time: {situation()}"
        time.sleep(0.02)


def somebody_connects(server):
    """Whether a client waits to be accepted. An agent waits there as soon as it is created."""
    return bool(select.select([server], [], [], 0)[0])


def serves(connection):
    """Whether the agent answers."""
    return connection.request("1").raw.startswith("0,l:")


def server_side(server):
    """The socket of a client that connects."""
    listening = socket.socket(fileno=os.dup(server.fileno()))
    with listening:
        listening.settimeout(DEADLINE)
        connected, _ = listening.accept()
    connected.settimeout(DEADLINE)
    return connected


def read_to_end(connected):
    """All that comes until the other side closes."""
    received = bytearray()
    while True:
        chunk = connected.recv(1 << 16)
        if not chunk:
            return bytes(received)
        received += chunk


def queues_of(connected):
    """Bytes that wait in the kernel at the other side of a connection: to be sent, to be read."""
    port = f":{connected.getpeername()[1]:04X}"
    for line in Path("/proc/net/tcp").read_text().splitlines()[1:]:
        fields = line.split()
        if fields[1].endswith(port):
            return tuple(int(count, 16) for count in fields[4].split(":"))
    raise AssertionError("no such connection")
