"""Messages for a showcase that dies or hangs under a test."""

import os
import signal
import subprocess

import pytest

from qtdriver import ApplicationEndedError, ApplicationHangsError, Driver
from qtdriver.api import disconnection

from showcase import running


def said(kind, call):
    """The message of the error that `call` raises."""
    with pytest.raises(kind) as caught:
        call()
    return str(caught.value)


def test_a_dead_application_tells_its_end_and_the_request():
    with running() as (_, app):
        assert app.connection.knows_locators
        os.kill(app.pid, signal.SIGABRT)
        message = said(ApplicationEndedError, app.window(name="showcase").widget("brewButton").activate)
    assert message.startswith(
        "the application ended (signal SIGABRT) at the request '+5,Widget:showcase,path=\"brewButton\"'"
    )


def test_a_hanging_application_is_told_with_its_windows_and_ended():
    with running(request_timeout=1) as (_, app):
        assert app.connection.knows_locators
        os.kill(app.pid, signal.SIGSTOP)
        message = said(ApplicationHangsError, app.window(name="showcase").widget("brewButton").activate)
        assert app.process.status() == -signal.SIGKILL
        assert message.startswith(
            "no reply to '+5,Widget:showcase,path=\"brewButton\"' within 1 seconds; the application hangs"
        )
        assert message.endswith(
            f', and process {app.pid} was ended\nthe windows that were last seen:\n  "Roastery" (MainWindow)'
        )


def test_a_hanging_application_that_was_attached_is_ended_too(fake_agent):
    with Driver() as driver, subprocess.Popen([*fake_agent, "--stay"]) as process:
        try:
            app = driver.attach(request_timeout=0.5)
            process.send_signal(signal.SIGSTOP)
            message = said(ApplicationHangsError, app.window("Editor").title)
            assert process.wait(10) == -signal.SIGKILL
        finally:
            process.kill()
    assert message == (
        f"no reply to '8,Editor' within 0.5 seconds; the application hangs, and process {process.pid} was ended"
    )


def test_an_application_that_only_closes_its_connection_is_told_with_its_process(
    fake_agent, build, monkeypatch
):
    monkeypatch.setattr(disconnection, "_EXIT_SECONDS", 0.1)
    with Driver(qt=5, build=build) as driver:
        app = driver.launch(*fake_agent, "--stay")
        message = said(ApplicationEndedError, app.window("vanish").title)
        app.terminate(grace=0.1)
    assert message == (
        f"the application (process {app.pid}) closed its connection at the request '8,vanish', but process {app.pid} "
        "still runs"
    )
