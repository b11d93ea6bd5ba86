"""Starting, attaching and ending applications, with the fake agent as the application."""

import os
import signal
import socket
import subprocess
import sys
import textwrap
import time
from pathlib import Path

import pytest

from qtdriver import (
    ApplicationEndedError,
    Driver,
    EarlyExitError,
    NoClientError,
    PortInUseError,
    eventually,
)
from qtdriver.launch.linux import session_of


def ended(pid):
    """Waits until there is no such process."""
    eventually(lambda: session_of(pid), timeout=10).equals(None)


def environment_of(app, name):
    return app.connection.check_window(f"env:{name}")


def test_several_applications_are_told_apart_by_their_processes(driver, fake_agent):
    first = driver.launch(*fake_agent)
    second = driver.launch(*fake_agent)
    assert first.pid != second.pid
    assert (first.connection.greeting.pid, second.connection.greeting.pid) == (first.pid, second.pid)
    assert [app.windows()[0].title for app in driver.apps] == ["Editor", "Editor"]


def test_arguments_environment_and_folder_reach_the_application(driver, fake_agent, tmp_path):
    app = driver.launch(
        *fake_agent, "--print", "hello", environment={"FLAVOUR": "dark"}, working_directory=tmp_path
    )
    assert environment_of(app, "FLAVOUR") == "dark"
    assert environment_of(app, "PATH") == os.environ["PATH"]
    assert os.readlink(f"/proc/{app.pid}/cwd") == str(tmp_path)
    eventually(lambda: app.process.errors.lines()).equals(("hello",))


def test_a_headless_application_has_a_desktop_of_its_own(driver, fake_agent):
    first = driver.launch(*fake_agent, headless=True)
    second = driver.launch(*fake_agent, headless=True)
    assert environment_of(first, "DISPLAY") not in ("", os.environ["DISPLAY"])
    assert environment_of(second, "DISPLAY") == environment_of(first, "DISPLAY") == first.display
    number = first.display.lstrip(":")
    assert Path(f"/tmp/.X11-unix/X{number}").exists()
    driver.close()
    assert not Path(f"/tmp/.X11-unix/X{number}").exists()


def test_an_application_that_came_by_itself_is_attached(driver, fake_agent):
    with subprocess.Popen(fake_agent) as process:
        app = driver.attach()
        assert app.pid == process.pid and app.process is None
        assert app.windows()[0].title == "Editor"
        driver.close()
        assert process.wait(10) == 0, "it is not ended, but only loses its connection"


def test_the_application_of_a_certain_process_is_attached_and_others_wait(driver, fake_agent):
    with subprocess.Popen(fake_agent) as first, subprocess.Popen(fake_agent) as second:
        assert driver.attach(pid=second.pid).pid == second.pid
        assert driver.attach().pid == first.pid
        driver.close()


def test_an_application_that_comes_meanwhile_does_not_disturb_a_launch(driver, fake_agent):
    with subprocess.Popen(fake_agent) as stranger:
        app = driver.launch(*fake_agent)
        assert app.pid != stranger.pid
        assert driver.attach(pid=stranger.pid).pid == stranger.pid
        driver.close()


def test_nobody_to_attach_is_said_with_what_to_do(driver):
    with pytest.raises(
        NoClientError, match="(?s)no agent connected within 0.1 seconds.*start the driver first"
    ):
        driver.attach(start_timeout=0.1)
    with pytest.raises(NoClientError, match="no agent of process 1 connected"):
        driver.attach(pid=1, start_timeout=0.1)


def test_who_connects_without_a_greeting_is_refused(driver, fake_agent):
    with socket.create_connection(("127.0.0.1", 4242)) as browser:
        browser.sendall(b"GET / HTTP/1.1\r\n")
        app = driver.launch(*fake_agent)
        assert app.windows()
        assert browser.recv(10) == b""


def test_a_second_driver_is_told_that_the_port_is_taken(driver):
    with pytest.raises(PortInUseError, match="127.0.0.1:4242 is taken"):
        Driver()


def test_closing_ends_what_was_started_and_frees_the_port(driver, fake_agent):
    app = driver.launch(*fake_agent)
    driver.close()
    driver.close()
    # The fake agent ends with its connection, which is closed first: the signal may find it gone.
    assert app.process.status() in (0, -signal.SIGTERM)
    Driver().close()


def test_an_application_that_starts_others_is_ended_with_them(driver, fake_agent, tmp_path):
    note = tmp_path / "helper"
    script = f'sleep 1000 & echo $! >{note}; exec "$@"'
    driver.launch("/bin/sh", "-c", script, "sh", *fake_agent)
    helper = int(note.read_text())
    assert session_of(helper) is not None
    driver.close()
    ended(helper)


def test_an_application_whose_launcher_leaves_at_once_is_driven_and_ended(driver, fake_agent):
    app = driver.launch("/bin/sh", "-c", '"$@" & exit 0', "sh", *fake_agent)
    assert app.pid != app.launched_pid
    assert app.windows()[0].title == "Editor"
    driver.close()
    ended(app.pid)


def test_a_launcher_that_leaves_with_nothing_behind_is_an_early_exit(driver):
    with pytest.raises(EarlyExitError, match="exit status 0"):
        driver.launch("/bin/sh", "-c", "sleep 0.2 & exit 0", "sh")


def test_an_attached_application_that_ends_is_told_without_a_status(driver, fake_agent):
    with subprocess.Popen(fake_agent) as process:
        app = driver.attach()
        process.kill()
        process.wait()
        with pytest.raises(ApplicationEndedError, match="was not started by this test, so its exit status"):
            app.windows()


def test_the_exit_of_an_application_is_awaited(driver, fake_agent):
    app = driver.launch(*fake_agent, "--status", "3")
    app.connection.check_window("quit")
    assert app.wait_for_exit(10) == 3
    with pytest.raises(ApplicationEndedError) as caught:
        app.windows()
    assert str(caught.value) == "the application ended (exit status 3) at windows(), without any output"


def test_the_error_of_an_application_that_ended_has_its_last_output(driver, fake_agent):
    app = driver.launch(*fake_agent, "--status", "4", "--print", "out of beans\n")
    with pytest.raises(ApplicationEndedError) as caught:
        app.window("vanish").title()
    assert str(caught.value) == (
        'the application ended (exit status 4) at window("vanish").title(); its last output:\nout of beans'
    )
    with pytest.warns(DeprecationWarning, match=r"last_words\(\) is last_output\(\) now"):
        assert app.process.last_words() == app.process.last_output() == "out of beans"


@pytest.mark.parametrize("number", [signal.SIGKILL, signal.SIGTERM, signal.SIGINT])
def test_nothing_is_left_when_the_test_itself_is_killed(build, fake_agent, tmp_path, number):
    note = tmp_path / "pids"
    program = textwrap.dedent(
        f"""
        import sys, time
        sys.path.insert(0, {str(Path(__file__).resolve().parents[2] / "runner")!r})
        from pathlib import Path
        from qtdriver import Driver
        driver = Driver(qt=5, build=Path({str(build)!r}))
        app = driver.launch("/bin/sh", "-c", 'sleep 1000 & "$@"; true', "sh", *{fake_agent!r}, "--stay", headless=True)
        Path({str(note)!r}).write_text(f"{{app.pid}} {{app.launched_pid}} {{app.display}}")
        time.sleep(1000)
        """
    )
    with subprocess.Popen([sys.executable, "-c", program], stderr=subprocess.DEVNULL) as test:
        eventually(lambda: note.exists() and note.read_text().count(" ") == 2, timeout=20).is_true()
        application, launcher, display = note.read_text().split()
        test.send_signal(number)
        test.wait(20)
    ended(int(application))
    ended(int(launcher))
    eventually(lambda: Path(f"/tmp/.X11-unix/X{display[1:]}").exists(), timeout=10).equals(False)
