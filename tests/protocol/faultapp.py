"""An application at work, which tells whether a fault of its test server has disturbed it."""

import os
import re
import socket
import struct
import threading
import time
from contextlib import contextmanager, suppress
from pathlib import Path

from Xlib import display

from hostapp import BUILD, CLOSED, DEADLINE, HostApp, eventually

IS_ASAN = BUILD.name.endswith("-asan")
PLAIN_MEMORY = {"MALLOC_MMAP_THRESHOLD_": str(256 * 1024)}
"""Large blocks go back to the system as soon as they are freed. By default the C library keeps some, up to 32 MiB each, by
their history, so that how much memory a request takes would depend on those before it."""
MOST_WORK = 600 if IS_ASAN else 150
"""Milliseconds that the application's thread may work without a tick of its timer in between."""
LONGEST_GAP = MOST_WORK + 100
"""Milliseconds on the clock between two ticks, but for those that the thread waited for a processor: the event loop was
never blocked."""
MEBIBYTE = 1 << 20
CLICK = b"5,Faults,own,,,\n"
UNKNOWN = b"8,Nowhere\n"
PRESS, RELEASE = (
    b"9,Faults,pad,QWidget," + f"s:{word}:LeftButton:::".encode().hex().encode() + b",\n"
    for word in ("MousePress", "MouseRelease")
)


def crowding():
    """How many times longer others take, such as the X server: 1 with up to two processes for each processor."""
    return max(1.0, os.getloadavg()[0] / (2 * (os.cpu_count() or 1)))


@contextmanager
def longest_stall():
    """Yields a list of one element: the longest time, in milliseconds, that the X server or the machine as a whole has kept
    another program waiting meanwhile. What disturbs everybody is no fault of the application."""
    longest = [0.0]
    is_over = threading.Event()

    def ask():
        connection = display.Display()
        while not is_over.wait(0.005):
            start = time.monotonic()
            connection.sync()
            longest[0] = max(longest[0], (time.monotonic() - start) * 1000)
        connection.close()

    asking = threading.Thread(target=ask)
    asking.start()
    try:
        yield longest
    finally:
        is_over.set()
        asking.join()


def end(connection, reset):
    """Closes a connection: in order, or as a process that crashes does."""
    if reset:
        connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
    connection.close()


class FaultApp(HostApp):
    """The host of the fault tests; its agent can be replaced by a new one."""

    def __init__(self, *arguments, **options):
        # Freed memory is kept back by the sanitizer, which would count as the application's.
        sanitizer = (
            os.environ.get("ASAN_OPTIONS", "") + ":quarantine_size_mb=1:thread_local_quarantine_size_kb=64"
        )
        super().__init__(
            "faulthost", *arguments, env={**PLAIN_MEMORY, "ASAN_OPTIONS": sanitizer.lstrip(":")}, **options
        )

    def connect(self):
        """Has a new agent connect, and returns the server's end when the greeting is there to be read."""
        self.do("deleteAgent")
        self.do("loadAgent")
        self.server.settimeout(DEADLINE)
        self.socket, _ = self.server.accept()
        self.socket.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        self.socket.settimeout(DEADLINE)
        assert self.socket.recv(1, socket.MSG_PEEK)
        return self.socket

    def disappear(self, reset=False):
        """The server ends: in order, or as one that has crashed."""
        self._reader.close()
        end(self.socket, reset)

    def end_connections_until_closed(self, reset):
        """Ends each connection before a byte is read or written, until the agent is closed."""
        self.server.settimeout(0.01)
        while self.agent_state() != CLOSED:
            with suppress(socket.timeout):
                end(self.server.accept()[0], reset)

    def pulse(self, name):
        return int(self.get("pulse", name))

    def tick(self, count):
        """Waits for that many ticks of the application's timer."""
        last = self.pulse("ticks") + count
        eventually(lambda: self.pulse("ticks") >= last, True)

    @contextmanager
    def undisturbed(self):
        """The application works on in the meantime: its timer ticks, and its own button can be clicked."""
        with longest_stall() as stall:
            self.do("measure")
            yield
            self.do("clickOwn")
            self.wait_for("clicked own")
            self.tick(5)
            work, gap = self.pulse("longestWork"), self.pulse("longestGap")
        print(
            f"between two ticks: {work} ms of work, {gap} ms in all; others were kept waiting {stall[0]:.0f} ms"
        )
        assert work <= MOST_WORK, f"the application worked for {work} ms without a tick"
        assert gap <= LONGEST_GAP * crowding() + stall[0], f"the event loop stood still for {gap} ms"

    def unread(self):
        """Bytes that the server has sent and the agent has not taken from its socket."""
        port = self.socket.getpeername()[1]
        table = Path(f"/proc/{self.process.pid}/net/tcp").read_text()
        sent = re.search(rf" 0100007F:1092 0100007F:{port:04X} \S+ (\S+):", table)[1]
        arrived = re.search(rf" 0100007F:{port:04X} 0100007F:1092 \S+ \S+:(\S+)", table)[1]
        return int(sent, 16) + int(arrived, 16)

    def memory(self, name="VmRSS"):
        """Bytes of the application: VmRSS now, VmHWM at most since `forget_peak`."""
        status = Path(f"/proc/{self.process.pid}/status").read_text()
        return int(status.split(f"{name}:")[1].split()[0]) * 1024

    def forget_peak(self):
        """Has VmHWM begin anew."""
        Path(f"/proc/{self.process.pid}/clear_refs").write_text("5")

    @contextmanager
    def memory_within(self, bound):
        """The application's memory grows by no more than this many bytes in the meantime, not even for a moment."""
        self.forget_peak()
        before = self.memory()
        yield
        assert self.memory("VmHWM") - before <= bound

    def work(self):
        """Nanoseconds that the application's thread has worked since its start."""
        return int(Path(f"/proc/{self.process.pid}/schedstat").read_text().split()[0])
