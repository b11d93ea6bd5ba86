"""An application under test with the agent inside, spoken to in raw lines."""

import os
import queue
import re
import select
import socket
import subprocess
import threading
import time

from agentserver import listen
from hostplatform import BUILD, QT, ROOT, WINDOWS, as_programs_take_them, command, environment

__all__ = ["BUILD", "CLOSED", "DEADLINE", "QT", "ROOT", "WINDOWS", "HostApp", "eventually", "hexed", "listen"]
DEADLINE = 60.0 if WINDOWS else 20.0
"""Seconds after which a test stops waiting for what must happen."""
CLOSED = "agent open 0 state 0"


def hexed(text):
    """A typed value as the sections of the acting commands carry it."""
    return text.encode("latin-1").hex()


class HostApp:
    """A running host program. `request` talks to the agent; `events`, `do` and `get` to the program itself."""

    def __init__(self, program, *arguments, env=None, agent=True, serve=True):
        self._serves, self._accepts = serve, serve and agent
        self.server = listen() if serve else None
        self._command = [*command(program), *arguments]
        self._environment = {**os.environ, **as_programs_take_them({**environment(), **(env or {})})}
        self._end_is_expected = False
        self.journal = []
        self._start()
        self._meet()

    def _meet(self):
        self.greeting = None
        self.socket = None
        if self._accepts:
            try:
                self.accept()
            except BaseException:  # the next test needs the port
                self.process.kill()
                self.close()
                raise

    def _start(self):
        self.process = subprocess.Popen(
            self._command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, env=self._environment
        )
        self._lines = queue.Queue()
        self._reading = threading.Thread(target=self._read_output, daemon=True)
        self._reading.start()

    def accept(self):
        """Waits for the agent's connection and greeting."""
        deadline = time.monotonic() + DEADLINE
        again = WINDOWS  # about one start in two thousand ends with status 1 under Wine before it says a word
        while not select.select([self.server], [], [], 0.1)[0]:
            status = self.process.poll()
            if status == 1 and again:
                again = False
                self._reading.join()
                self._start()
                continue
            if status is not None or time.monotonic() > deadline:
                state = "runs" if status is None else f"ended with status {status}"
                told = list(self._lines.queue)
                raise AssertionError(f"no agent connects; the application {state}, and told {told}")
        self.socket, _ = self.server.accept()
        self.socket.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        self.socket.settimeout(DEADLINE)
        self._reader = self.socket.makefile("rb")
        self.greeting = self.read_line()

    def _read_output(self):
        for line in self.process.stdout:
            self._lines.put(line.decode("utf-8").rstrip("\n"))
        self._lines.put(None)

    # The agent

    def send(self, data):
        """Sends bytes as they are."""
        self.socket.sendall(data)

    def read_line(self):
        """The next line of the agent without its line end; None when it closed the connection."""
        line = self._reader.readline()
        return line[:-1].decode("latin-1") if line.endswith(b"\n") else None

    def request(self, line):
        """Sends one request line and returns its reply line."""
        self.send(line.encode("latin-1") + b"\n")
        return self.read_line()

    def activate(self, window, path, value="", option="", class_name=""):
        """Command 5 with a typed value and option in plain text."""
        return self.request(f"5,{window},{path},{class_name},{hexed(value)},{hexed(option)}")

    def enter(self, window, path, value, class_name=""):
        """Command 6 with a typed value in plain text."""
        return self.request(f"6,{window},{path},{class_name},{hexed(value)},")

    def mouse(self, window, path, command, class_name=""):
        """Command 9 with a mouse command in plain text."""
        return self.request(f"9,{window},{path},{class_name},{hexed('s:' + command)},")

    def read(self, window, path, name, argument="", class_name=""):
        """Command 7. Texts come decoded, as "u:text"; everything else is the reply as it stands."""
        reply = self.request(f"7,{window},{path},{class_name},{name},{argument}")
        return "u:" + bytes.fromhex(reply[4:]).decode("utf-8") if reply.startswith("0,u:") else reply

    def rect(self, window, path):
        """The pixels of the screen that a widget covers: left, top, right, bottom."""
        reply = self.read(window, path, "globalRect")
        assert reply.startswith("0,r:"), reply
        return tuple(map(int, reply[len("0,r:") :].split(",")))

    # The application itself

    def _take(self, timeout):
        line = self._lines.get(timeout=timeout)
        if line is not None:
            self.journal.append(line)
        return line

    def wait_for(self, expected):
        """Waits until the application has journalled a line: this text, or one that a compiled pattern fits."""
        fits = expected.fullmatch if isinstance(expected, re.Pattern) else lambda line: line == expected
        for line in self.journal:
            if fits(line):
                return line
        deadline = time.monotonic() + DEADLINE
        while True:
            try:
                line = self._take(max(0, deadline - time.monotonic()))
            except queue.Empty:
                raise AssertionError(f"{expected!r} did not happen; this did: {self.journal}") from None
            assert line is not None, f"the application ended before {expected!r}; {self.journal}"
            if fits(line):
                return line

    def forget(self):
        """Empties the journal of what has happened so far."""
        self.settle()
        self.journal.clear()

    def settle(self):
        """Waits until the application has handled all it was sent before, so that the journal is complete."""
        self._tell("get settle marker")
        self._wait_for_next("value <no object settle>")

    def events(self, *words):
        """The journal so far, complete, or its lines that begin with one of the words."""
        self.settle()
        return [line for line in self.journal if not words or line.split(" ")[0] in words]

    def do(self, name):
        """Has the application run one of its own actions, and waits until it is done."""
        self._tell(f"do {name}")
        self._wait_for_next(f"done {name}")

    def show(self, name, window):
        """Has the application show a window, by this action, and waits until a user could reach it."""
        self._tell(f"do {name}")
        self.wait_until(window, "isActiveWindow", "true")

    def start(self, name):
        """Has the application run an action that does not return soon, such as a dialog's exec()."""
        self._tell(f"do {name}")

    def get(self, name, prop):
        """A property of the application's object, read without the agent."""
        self._tell(f"get {name} {prop}")
        return self._wait_for_next(re.compile("value .*|value ", re.DOTALL))[len("value ") :]

    def _tell(self, line):
        self.process.stdin.write(line.encode() + b"\n")
        self.process.stdin.flush()

    def _wait_for_next(self, expected):
        """Waits for a line that answers the test; such lines stay out of the journal."""
        fits = expected.fullmatch if isinstance(expected, re.Pattern) else lambda line: line == expected
        deadline = time.monotonic() + DEADLINE
        while True:
            try:
                line = self._take(max(0, deadline - time.monotonic()))
            except queue.Empty:
                raise AssertionError(f"no answer {expected!r}; this happened: {self.journal}") from None
            assert line is not None, f"the application ended before {expected!r}; {self.journal}"
            if fits(line):
                return self.journal.pop()

    def agent_state(self):
        """The state of the agent's socket, by the application's own account."""
        self.do("agentState")
        return self.journal.pop()

    def wait_until_agent_is_closed(self):
        """Waits until the agent has noticed that its connection has ended."""
        eventually(self.agent_state, CLOSED)

    def wait_until(self, name, prop, value):
        """Waits until a property of the application's object has a value."""
        eventually(lambda: self.get(name, prop), value)

    def wait_until_minimized(self, name):
        """Waits until the window manager has minimised a window. Qt says so as soon as it has asked for it, and a request
        to show the window that overtakes this one is lost."""
        self.wait_until(name, "minimized", "true")
        title = re.escape(self.get(name, "windowTitle"))
        search = ["xdotool", "search", "--onlyvisible", "--name", f"^{title}$"]
        eventually(lambda: subprocess.run(search, capture_output=True, check=False).stdout, b"")

    def wait_for_end(self):
        """Waits for the end of the application, which the test expects, and returns the exit status."""
        self._end_is_expected = True
        return self.process.wait(DEADLINE)

    def end(self):
        """Ends the application, which must have run until now and end in order, if the test did not wait for its end."""
        early = self.process.poll()
        status = self.close()
        if not self._end_is_expected:
            assert early is None, f"the application ended by itself, with status {early}"
            assert status == 0, f"the application ended with status {status}"

    def ends_as_expected(self):
        """Whether a test waits, or has waited, for its end."""
        return self._end_is_expected

    def pause(self):
        """Ends the application in order, but for its process, which `resume` makes a new application."""
        early = self.process.poll()
        assert early is None, f"the application ended by itself, with status {early}"
        self._close_sockets()
        self._tell("again")
        self._wait_for_next("without windows")

    def resume(self):
        """Builds the application anew in the process that `pause` has left."""
        self.server = listen() if self._serves else None
        self.journal = []
        self._tell("again")
        self._meet()

    def _close_sockets(self):
        for closing in (self.socket, self.server):
            if closing:
                closing.close()

    def close(self):
        """Ends the application, if it has not ended yet, and returns its exit status."""
        self._close_sockets()
        if self.process.poll() is None:
            self.process.stdin.close()
        try:
            return self.process.wait(DEADLINE)
        except subprocess.TimeoutExpired:
            self.process.kill()
            raise AssertionError("the application did not end") from None


def eventually(read, expected, seconds=DEADLINE):
    """Waits until `read()` returns the expected value."""
    deadline = time.monotonic() + seconds
    value = read()
    pause = 0.002
    while value != expected:
        assert time.monotonic() < deadline, f"{value!r} never became {expected!r}"
        time.sleep(pause)
        pause = min(pause * 2, 0.05)
        value = read()
