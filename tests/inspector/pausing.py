"""Runs pytest on a terminal of its own, as a person does, for tests that are paused."""

import os
import pty
import re
import select
import signal
import sys
import time
from contextlib import contextmanager
from pathlib import Path

from inspecting import AGENTS, PROGRAM

RUNNER = Path(__file__).resolve().parents[2] / "runner"
HEAD = f'''"""A test."""


def test_it(qtdriver):
    app = qtdriver.launch("{PROGRAM}")
    window = app.window(name="showcase")
'''


class Terminal:
    """pytest on a terminal.

    Attributes:
        output: all that it has printed until now.
    """

    def __init__(self, pid, descriptor):
        self.pid = pid
        self.output = ""
        self._descriptor = descriptor
        self._status = None

    def wait_for(self, pattern):
        """Reads until the pattern is in the output. Answers its match."""
        deadline = time.monotonic() + 120
        while not (found := re.search(pattern, self.output)):
            assert self._read(deadline), f"{pattern} is not in:\n{self.output}"
        return found

    def end(self):
        """Reads until pytest has ended. Answers its exit status."""
        while self._status is None and self._read(time.monotonic() + 120):
            pass
        if self._status is None:
            self._status = os.waitstatus_to_exitcode(os.waitpid(self.pid, 0)[1])
        return self._status

    def close(self):
        """Ends pytest if it still runs."""
        if self._status is None:
            os.kill(self.pid, signal.SIGTERM)
            self.end()
        os.close(self._descriptor)

    def _read(self, deadline):
        ready, _, _ = select.select([self._descriptor], [], [], max(0, deadline - time.monotonic()))
        if not ready:
            return False
        try:
            data = os.read(self._descriptor, 65536)
        except OSError:  # so a terminal tells that nobody has it open any more
            return False
        self.output += data.decode(errors="replace")
        return bool(data)


@contextmanager
def pytest_on_terminal(folder, statements, *options, environment=()):
    """Within it pytest runs a test with these statements, on a terminal."""
    file = folder / "test_it.py"
    file.write_text(HEAD + "".join(f"    {one}\n" for one in statements), encoding="utf-8")
    command = [sys.executable, "-m", "pytest", "-q", "-p", "no:cacheprovider", "-p", "qtdriver.plugin"]
    command += [f"--qtdriver-build={AGENTS}", f"--qtdriver-output={folder / 'results'}", *options, file.name]
    variables = {**os.environ, "PYTHONPATH": str(RUNNER), "BROWSER": "true", **dict(environment)}
    if not dict(environment):
        variables.pop("CI", None)
    pid, descriptor = pty.fork()
    if pid == 0:
        os.chdir(folder)
        os.execve(command[0], command, variables)
    terminal = Terminal(pid, descriptor)
    try:
        yield terminal
    finally:
        terminal.close()
