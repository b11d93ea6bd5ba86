"""Windows programs under Wine: started, driven, ended, explained. The program is the showcase, built for Windows."""

import os
import shutil
import subprocess
import textwrap
from pathlib import Path

import pytest

from qtdriver import ApplicationEndedError, Driver, EarlyExitError, WidgetNotFoundError, eventually
from qtdriver.launch import linux
from qtdriver.launch.wine import WineDesktops
from windowsprograms import Workshop

ROOT = Path(__file__).resolve().parents[2]
BUILD = Path(os.environ.get("QTDRIVER_BUILD", ROOT / "build" / "windows-qt5"))
QT = int(os.environ.get("QTDRIVER_QT", "5"))
PROGRAM = BUILD / "bin" / "showcase.exe"
QTDRIVER = ROOT / "scripts" / "qtdriver"
START_SECONDS = 120

pytestmark = pytest.mark.skipif(shutil.which("wine") is None, reason="there is no Wine here")


@pytest.fixture(scope="module")
def wine():
    """Wine for all tests, since its start takes longer than theirs."""
    desktops = WineDesktops()
    yield desktops
    desktops.close()


@pytest.fixture
def driver(wine):
    with Driver(build=BUILD.parent, timeout=30, start_timeout=START_SECONDS, wine=wine) as made:
        yield made


@pytest.fixture
def app(driver):
    with driver.launch(PROGRAM) as running:
        running.window(name="showcase").title()
        yield running


def processes_of(prefix):
    """Ids of the processes that run in a prefix of Wine."""
    value = str(prefix)
    return [
        pid
        for pid in map(int, filter(str.isdigit, os.listdir("/proc")))
        if linux.has_variable(pid, "WINEPREFIX", value)
    ]


def test_a_windows_program_is_driven(app):
    window = app.window(name="showcase")
    window.widget("brewButton").activate()
    eventually(window.widget("lastEvent")).has(text="clicked: brewButton")


def test_the_process_of_the_program_is_told_by_the_system_and_not_by_its_greeting(app):
    assert app.pid == app.connection.process == app.launched_pid
    assert app.connection.greeting.pid != app.pid
    command = Path(f"/proc/{app.pid}/cmdline").read_bytes()
    assert command.startswith(os.fsencode(PROGRAM))


def test_arguments_reach_the_program_and_the_option_that_loads_the_agent_does_not(driver):
    """The showcase would refuse an option that it does not know."""
    with driver.launch(PROGRAM, "--page", "Lists") as running:
        eventually(running.window(name="showcase").widget("pages")).has(currentIndex=2)


def test_a_file_of_linux_is_named_as_the_program_names_it(app):
    assert app.file_name("/tmp/prices.txt") == "Z:\\tmp\\prices.txt"
    assert app.file_name("prices.txt") == "prices.txt"


def test_a_screenshot_shows_the_program(app, tmp_path):
    from PIL import Image

    app.window(name="showcase").widget("brewButton").read("text")
    with Image.open(app.screenshot(tmp_path / "screen.png")) as picture:
        assert len(picture.convert("RGB").getcolors(1 << 24)) > 100


def test_a_widget_that_is_not_there_is_explained(app):
    with pytest.raises(WidgetNotFoundError, match="brewButton"):
        app.window(name="showcase").widget("brewbutton").activate(timeout=0.2)


def test_a_program_that_ends_is_told_with_its_status(app):
    os.kill(app.pid, 9)
    with pytest.raises(ApplicationEndedError, match="the application ended .*SIGKILL"):
        app.windows()


def test_a_program_that_ends_before_its_agent_comes_is_told(driver, tmp_path):
    workshop = Workshop(tmp_path)
    program = workshop.program(text="status")
    with pytest.raises(EarlyExitError, match=f"exit status {ord('s')}"):
        driver.launch(program, qt=QT)


def test_a_program_that_wine_may_have_ended_is_started_once_more(driver, tmp_path):
    """With status 1 and without a word, as it happens to one start in some hundred on a busy machine."""
    program = Workshop(tmp_path).program(counts=(tmp_path / "starts").as_posix())
    with pytest.raises(EarlyExitError, match="exit status 2"):
        driver.launch(program, qt=QT)
    assert (tmp_path / "starts").stat().st_size == 2


def test_a_crash_is_told_and_shows_no_dialog(driver, tmp_path):
    program = Workshop(tmp_path).program(name="crash.exe", crashes=True)
    with pytest.raises(EarlyExitError, match="(?s)crash.exe ended .* its last output:.*page fault"):
        driver.launch(program, qt=QT)


def test_wines_own_processes_belong_to_no_program(driver, app):
    """They would be ended with it, and those of the next one would start anew."""
    assert list(app.process.launched._launch.processes()) == [app.pid]


def test_one_program_goes_on_when_another_one_has_ended(driver, app):
    with driver.launch(PROGRAM) as second:
        assert second.window(name="showcase").title() == "Roastery"
        assert second.pid != app.pid
    app.window(name="showcase").widget("brewButton").activate()
    eventually(app.window(name="showcase").widget("lastEvent")).has(text="clicked: brewButton")


def test_nothing_of_wine_is_left_when_the_driver_is_closed():
    with Driver(build=BUILD.parent, start_timeout=START_SECONDS) as own:
        running = own.launch(PROGRAM)
        prefix = next(iter(own._wine._desktops.values())).prefix
        assert running.pid in processes_of(prefix)
    assert processes_of(prefix) == []
    assert not prefix.exists()


def test_a_windows_program_is_driven_from_the_command_line(tmp_path):
    folder = tmp_path / "app"
    folder.mkdir()
    shutil.copy(PROGRAM, folder)
    command = [
        QTDRIVER,
        "run",
        "--timeout",
        str(START_SECONDS),
        "--build",
        BUILD.parent,
        "--",
        "showcase.exe",
    ]
    done = subprocess.run(
        list(map(str, command)),
        cwd=folder,
        input="get Widget:showcase brewButton text\nactivate Widget:showcase brewButton\n",
        capture_output=True,
        text=True,
    )
    assert done.returncode == 0, done.stderr
    assert "Brew" in done.stdout
    assert [path.name for path in folder.iterdir()] == ["showcase.exe"]


def test_workers_side_by_side_have_each_a_wine_of_their_own(tmp_path):
    (tmp_path / "test_two.py").write_text(
        textwrap.dedent(
            f"""
            import pytest
            from qtdriver import eventually

            @pytest.mark.parametrize("number", range(2))
            def test_brewing(qtdriver, number):
                app = qtdriver.launch({str(PROGRAM)!r})
                window = app.window(name="showcase")
                window.widget("brewButton").activate()
                eventually(window.widget("lastEvent")).has(text="clicked: brewButton")

            def test_failing(qtdriver):
                qtdriver.launch({str(PROGRAM)!r}).window(name="showcase").widget("brewbutton").activate(timeout=0.2)
            """
        )
    )
    options = ["-n", "2", f"--qtdriver-build={BUILD.parent}", f"--qtdriver-start-timeout={START_SECONDS}"]
    done = subprocess.run(
        ["/usr/bin/python3", "-m", "pytest", "-p", "no:cacheprovider", "-p", "qtdriver.plugin", *options],
        cwd=tmp_path,
        env={**os.environ, "PYTHONPATH": str(ROOT / "runner")},
        capture_output=True,
        text=True,
    )
    assert "1 failed, 2 passed" in done.stdout, done.stdout + done.stderr
    (bundle,) = (tmp_path / "test-results").glob("*test_failing*")
    assert {"screenshot.png", "transcript.txt", "windows.txt", "trace"} <= {
        path.name for path in bundle.iterdir()
    }
    assert "brewButton" in (bundle / "windows.txt").read_text()
