"""A session with the console in a terminal."""

import os
import pty
import select
import subprocess
import time
from contextlib import contextmanager
from pathlib import Path

from showcase import AGENTS, PROGRAM, QT

QTDRIVER = str(Path(__file__).resolve().parents[2] / "scripts" / "qtdriver")


@contextmanager
def session(state):
    """The screen of a console that drives the showcase. Its history is in the folder `state`."""
    environment = {**os.environ, "XDG_STATE_HOME": str(state), "TERM": "xterm"}
    master, terminal = pty.openpty()
    command = [QTDRIVER, "run", "--qt", str(QT), "--build", str(AGENTS), "--", str(PROGRAM)]
    console = subprocess.Popen(command, stdin=terminal, stdout=terminal, stderr=terminal, env=environment)
    os.close(terminal)
    screen = Screen(master)
    try:
        screen.wait_for("qtdriver>")
        yield screen
        screen.type("quit\r")
        assert console.wait(30) == 0
    finally:
        console.kill()
        console.wait()
        os.close(master)


def test_a_session_in_a_terminal_completes_answers_and_remembers(tmp_path):
    with session(tmp_path) as screen:
        screen.type("get Roastery brewB\t")
        screen.wait_for("utton")  # what the completion adds
        screen.type(" text\r")
        screen.wait_for("Brew a cup")
        screen.type("1\r")
        screen.wait_for('MainWindow : "Roastery"')
    assert "get Roastery brewButton text" in (tmp_path / "qtdriver" / "history").read_text()


def test_the_history_is_without_passwords(tmp_path):
    with session(tmp_path) as screen:
        for line, answer in (
            ('activate Roastery pages/qt_tabwidget_tabbar "Entry fields"', "QTabBar"),
            ("enter Roastery passwordEdit corr3ct-horse", "QLineEdit"),
            ("6,Roastery,passwordEdit,,=s:corr3ct-horse,", "QLineEdit"),
            ("enter Roastery customerEdit Ada", "QLineEdit"),
        ):
            screen.type(f"{line}\r")
            screen.wait_for(answer)
            screen.wait_for("qtdriver>")
    history = (tmp_path / "qtdriver" / "history").read_text()
    assert "enter Roastery passwordEdit ***" in history and "6,Roastery,passwordEdit,,=s:***," in history
    assert "enter Roastery customerEdit Ada" in history and "horse" not in history


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
