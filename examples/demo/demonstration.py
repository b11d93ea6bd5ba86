"""Used by every part of the demonstration: steps that show a request, its reply and its effect."""

import time
from pathlib import Path

from qtdriver import encode_hex
from qtdriver.trace.readable import describe_reply

DEADLINE = 10.0
"""Seconds after which an effect that has not come is counted as missing."""
LONGEST_REPLY = 12
"""Lines of a reply that are shown."""


class Demonstration:
    """Drives one application, shows each step, and keeps what differs from what was expected.

    Attributes:
        file_name: how the application names a file of this machine.
        differences: a line for each thing that went wrong.
    """

    def __init__(self, application, window, pictures):
        self.file_name = application.file_name
        self._application = application
        self._connection = application.connection
        self._window = window
        self._pictures = Path(pictures)
        self.differences = []

    def title(self, text):
        """Announces a group of steps."""
        print(f"\n== {text}", flush=True)

    def request(self, purpose, line):
        """Sends one request line and shows it with its reply, which is returned as it stands."""
        print(f"\n{purpose}\n  > {_printable(line)}")
        reply = self._connection.request(line)
        lines = describe_reply(line, reply).splitlines() or [""]
        for shown in lines[:LONGEST_REPLY]:
            print(f"  < {shown}")
        if len(lines) > LONGEST_REPLY:
            print(f"  < ... {len(lines) - LONGEST_REPLY} more")
        return reply

    def activate(self, purpose, path, value="", option="", window=None):
        """Command 5, with a typed value and option in plain text; anything but success is a difference."""
        self._act(purpose, 5, path, value, option, window)

    def enter(self, purpose, path, value, window=None):
        """Command 6, with a typed value in plain text."""
        self._act(purpose, 6, path, value, "", window)

    def mouse(self, purpose, path, command, window=None):
        """Command 9, with a mouse command."""
        self._act(purpose, 9, path, f"s:{command}", "", window)

    def _act(self, purpose, number, path, value, option, window):
        sections = (window or self._window, path, "", encode_hex(value), encode_hex(option))
        if value:
            purpose += f"  ({value})" if not option else f"  ({value}, {option})"
        reply = self.request(purpose, f"{number}," + ",".join(sections))
        self._check(f"{purpose}: reply", reply.code, "0")

    def read(self, path, name, argument="", window=None):
        """The value of a property, as the runner types it; None when the agent refuses."""
        reply = self._connection.request(f"7,{window or self._window},{path},,{name},{argument}")
        return reply.value() if reply.ok else None

    def expect(self, path, name, expected, argument="", window=None):
        """Waits until a property of the application has a value; says so when it does not."""
        value = eventually(lambda: self.read(path, name, argument, window), lambda seen: seen == expected)
        self._check(f"{path} {name} {argument}".rstrip(), value, expected)

    def expect_event(self, line):
        """Waits until the application's own journal ends with a line."""
        self.expect("lastEvent", "text", line, window="Widget:showcase")

    def expect_window(self, name):
        """Waits until a window can be acted on."""
        reply = eventually(lambda: self._connection.request(f"8,{name}"), lambda seen: seen.ok)
        self._check(f"window {name}", reply.code, "0")

    def check(self, what, seen, expected):
        """Compares what was seen with what should be."""
        self._check(what, seen, expected)

    def _check(self, what, seen, expected):
        if seen == expected:
            print(f"  = {what}: {seen!r}", flush=True)
        else:
            print(f"  ! {what}: {seen!r}, expected {expected!r}", flush=True)
            self.differences.append(f"{what}: {seen!r}, expected {expected!r}")

    def picture(self, name):
        """Saves a screenshot of the desktop."""
        self._pictures.mkdir(parents=True, exist_ok=True)
        file = self._pictures / f"{name}.png"
        self._application.screenshot(file)
        print(f"\n  screenshot: {file}", flush=True)


def eventually(read, accept):
    """Reads until the value is accepted, or the deadline has passed; returns the last value."""
    end = time.monotonic() + DEADLINE
    pause = 0.005
    value = read()
    while not accept(value) and time.monotonic() < end:
        time.sleep(pause)
        pause = min(2 * pause, 0.1)
        value = read()
    return value


def _printable(line):
    return line.replace("\n", "\\n")
