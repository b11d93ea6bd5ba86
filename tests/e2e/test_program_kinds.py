"""Programs that are no plain Qt binaries: interpreters, wrappers, daemons, and what has a preload list already."""

import subprocess
import sys
from pathlib import Path

import pytest

from qtdriver import Driver, eventually

from showcase import AGENTS, PROGRAM, QT

QTDRIVER = str(Path(__file__).resolve().parents[2] / "scripts" / "qtdriver")

GREETER = """
import sys
from PyQt5.QtWidgets import QApplication, QLineEdit, QPushButton, QLabel, QVBoxLayout, QWidget

application = QApplication(sys.argv)
window = QWidget()
window.setWindowTitle("Greeter")
layout = QVBoxLayout(window)
name, greet, label = QLineEdit(window), QPushButton("&Greet", window), QLabel("nobody", window)
name.setObjectName("name")
label.setObjectName("label")
greet.clicked.connect(lambda: label.setText("Hello " + name.text()))
for widget in (name, greet, label):
    layout.addWidget(widget)
window.show()
sys.exit(application.exec_())
"""


@pytest.fixture
def driver():
    with Driver(build=AGENTS, timeout=10) as running_driver:
        yield running_driver


@pytest.fixture
def greeter(tmp_path):
    """A PyQt program of the system's Python."""
    program = tmp_path / "greeter.py"
    program.write_text(GREETER)
    return program


def executable(path, text):
    path.write_text(text)
    path.chmod(0o755)
    return path


@pytest.mark.skipif(QT != 5, reason="PyQt5 is of Qt 5")
def test_a_pyqt_program_is_driven(driver, greeter):
    app = driver.launch("/usr/bin/python3", str(greeter), qt=5)
    window = app.window("Greeter")
    window.widget("name").enter("Ada")
    window.button("Greet").activate()
    eventually(window.widget("label")).has(text="Hello Ada")


@pytest.mark.skipif(QT != 5, reason="PyQt5 is of Qt 5")
def test_a_pyqt_program_is_driven_from_the_command_line(greeter):
    command = [QTDRIVER, "run", "--qt", "5", "--build", str(AGENTS), "--", "/usr/bin/python3", str(greeter)]
    finished = subprocess.run(
        command,
        input="enter Greeter name Grace\nactivate Greeter Greet_dialog_button\n",
        capture_output=True,
        text=True,
    )
    assert finished.returncode == 0, finished.stderr
    assert "QLineEdit" in finished.stdout and "QPushButton" in finished.stdout


def test_a_program_behind_a_shell_wrapper_is_driven(driver, tmp_path):
    wrapper = executable(tmp_path / "start", f'#!/bin/sh\nexport FLAVOUR=dark\n"{PROGRAM}" "$@"\nexit 7\n')
    app = driver.launch(wrapper, qt=QT)
    assert app.pid != app.launched_pid
    assert app.window(name="showcase").title() == "Roastery"
    driver.close()
    assert not Path(f"/proc/{app.pid}/exe").exists()


def test_a_program_that_leaves_its_starter_is_driven_and_ended(driver, tmp_path):
    starter = executable(
        tmp_path / "daemonise",
        f"#!{sys.executable}\nimport os\nif os.fork() == 0:\n    os.setsid()\n    os.execv({str(PROGRAM)!r}, [{str(PROGRAM)!r}])\n",
    )
    app = driver.launch(starter, qt=QT)
    assert app.pid != app.launched_pid
    assert app.window(name="showcase").title() == "Roastery"
    driver.close()
    eventually(lambda: Path(f"/proc/{app.pid}/exe").exists(), timeout=10).equals(False)


@pytest.mark.skipif(QT != 5, reason="PyQt5 is of Qt 5")
@pytest.mark.parametrize("parent", ["sys.exit()", "os.wait()"], ids=["leaves", "waits"])
def test_a_program_that_forks_and_shows_its_windows_in_the_child_is_driven_and_ended(driver, greeter, parent):
    fork = f"import os\nif os.fork():\n    {parent}\n    sys.exit()\n\napplication ="
    greeter.write_text(GREETER.replace("application =", fork, 1))
    app = driver.launch("/usr/bin/python3", str(greeter), qt=5)
    assert app.pid != app.launched_pid
    window = app.window("Greeter")
    window.button("Greet").activate()
    eventually(window.widget("label")).has(text="Hello ")
    driver.close()
    assert not Path(f"/proc/{app.pid}/exe").exists()


def test_a_preload_list_that_is_there_already_is_kept(driver):
    app = driver.launch(PROGRAM, environment={"LD_PRELOAD": "libm.so.6"}, qt=QT)
    assert app.window(name="showcase").title() == "Roastery"
    environment = Path(f"/proc/{app.pid}/environ").read_bytes().split(b"\0")
    (preload,) = [entry for entry in environment if entry.startswith(b"LD_PRELOAD=")]
    assert preload.endswith(b"/libqtdriver-preload.so:libm.so.6")


@pytest.fixture
def dropping(tmp_path):
    """A wrapper of the showcase that drops what is to be preloaded."""
    return executable(tmp_path / "start", f'#!/bin/sh\nunset LD_PRELOAD\nexec "{PROGRAM}" "$@"\n')


def test_a_program_whose_wrapper_drops_the_preload_list_is_driven_by_way_of_qts_own_option(driver, dropping):
    app = driver.launch(dropping, "--page", "Lists", qt=QT, load_by="testability")
    window = app.window(name="showcase")
    eventually(window.widget("pages")).has(currentIndex=2)
    window.widget("pages/qt_tabwidget_tabbar").select("Buttons")
    window.widget("brewButton").activate()
    eventually(window.widget("lastEvent")).has(text="clicked: brewButton")


def test_nothing_is_preloaded_where_qt_loads_the_agent(driver):
    app = driver.launch(PROGRAM, qt=QT, load_by="testability")
    names = Path(f"/proc/{app.pid}/environ").read_bytes().split(b"\0")
    assert not [name for name in names if name.startswith(b"LD_PRELOAD=")]


def test_the_way_of_loading_is_chosen_on_the_command_line(dropping):
    command = [
        QTDRIVER,
        "run",
        "--qt",
        str(QT),
        "--build",
        str(AGENTS),
        "--load-by",
        "testability",
        "--",
        str(dropping),
    ]
    finished = subprocess.run(
        command, input="get Widget:showcase brewButton enabled\n", capture_output=True, text=True
    )
    assert finished.returncode == 0, finished.stderr
    assert "true" in finished.stdout.lower()
