"""A program in a terminal, and what a person sees and types there."""

import os
import pty
import select
import subprocess
import time
from contextlib import contextmanager


@contextmanager
def in_terminal(command, environment):
    """The process of a command in a terminal, and its screen. The process is killed in the end."""
    master, terminal = pty.openpty()
    streams = {"stdin": terminal, "stdout": terminal, "stderr": terminal}
    process = subprocess.Popen(
        command, env={**environment, "TERM": "xterm"}, start_new_session=True, **streams
    )
    os.close(terminal)
    try:
        yield process, Screen(master)
    finally:
        process.kill()
        process.wait()
        os.close(master)


class Screen:
    """The other end of a terminal."""

    def __init__(self, descriptor):
        self._descriptor = descriptor
        self._seen = ""

    def type(self, text):
        """Types the text; what has been seen before does not count any more."""
        self._seen = ""
        os.write(self._descriptor, text.encode())

    def wait_for(self, text, seconds=30):
        """Reads until the text is on the screen. Answers the terminal's question where the cursor is."""
        end = time.monotonic() + seconds
        while text not in self._seen:
            left = end - time.monotonic()
            assert left > 0 and select.select([self._descriptor], [], [], left)[0], self._seen
            chunk = os.read(self._descriptor, 65536).decode(errors="replace")
            if "\x1b[6n" in chunk:
                os.write(self._descriptor, b"\x1b[1;1R")
            self._seen += chunk

    @property
    def seen(self):
        """All that was read since the last text was typed, with the terminal's control sequences."""
        return self._seen
