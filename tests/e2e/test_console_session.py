"""A session with the console in a terminal."""

import os
from contextlib import contextmanager
from pathlib import Path

from qtdriver.protocol.extensions import EXTENSION_BY_NAME

from showcase import AGENTS, PROGRAM, QT
from terminal import in_terminal

QTDRIVER = str(Path(__file__).resolve().parents[2] / "scripts" / "qtdriver")


@contextmanager
def session(state):
    """The screen of a console that drives the showcase. Its history is in the folder `state`."""
    environment = {**os.environ, "XDG_STATE_HOME": str(state)}
    command = [QTDRIVER, "run", "--qt", str(QT), "--build", str(AGENTS), "--", str(PROGRAM)]
    with in_terminal(command, environment) as (console, screen):
        screen.wait_for("qtdriver>")
        yield screen
        screen.type("quit\r")
        assert console.wait(30) == 0


def test_a_session_in_a_terminal_completes_answers_and_remembers(tmp_path):
    with session(tmp_path) as screen:
        screen.type("get Roastery brewB\t")
        screen.wait_for("utton")  # what the completion adds
        screen.type(" text\r")
        screen.wait_for("Brew a cup")
        screen.type("1\r")
        screen.wait_for('MainWindow : "Roastery"')
    assert "get Roastery brewButton text" in (tmp_path / "qtdriver" / "history").read_text()


def pressing(name, key):
    """A request that presses a key in a widget."""
    return EXTENSION_BY_NAME["+press"].compose("Roastery", f"name={name}", key)


def test_the_history_is_without_passwords(tmp_path):
    with session(tmp_path) as screen:
        for line, answer in (
            ('activate Roastery pages/qt_tabwidget_tabbar "Entry fields"', "QTabBar"),
            ("enter Roastery passwordEdit corr3ct-horse", "QLineEdit"),
            ("6,Roastery,passwordEdit,,=s:corr3ct-horse,", "QLineEdit"),
            ("enter Roastery customerEdit Ada", "QLineEdit"),
            (pressing("passwordEdit", "w"), "QLineEdit"),
            (pressing("passwordEdit", "z"), "QLineEdit"),
            (pressing("customerEdit", "v"), "QLineEdit"),
        ):
            screen.type(f"{line}\r")
            screen.wait_for(answer)
            screen.wait_for("qtdriver>")
    history = (tmp_path / "qtdriver" / "history").read_text()
    assert "enter Roastery passwordEdit ***" in history and "6,Roastery,passwordEdit,,=s:***," in history
    assert "enter Roastery customerEdit Ada" in history and "horse" not in history
    assert pressing("passwordEdit", "***") in history and pressing("customerEdit", "v") in history
    assert pressing("passwordEdit", "w") not in history and pressing("passwordEdit", "z") not in history
