"""Messages for a showcase that dies or hangs under a test."""

import ctypes
import os
import signal
import subprocess

import pytest

from qtdriver import ApplicationEndedError, ApplicationHangsError, Driver, eventually
from qtdriver.api import disconnection
from qtdriver.api.steps import StepListener

from showcase import running

PIDFD_GETFD = 438  # a number of Linux, the same on every processor; Python has no function for it


def said(kind, call):
    """The message of the error that `call` raises."""
    with pytest.raises(kind) as caught:
        call()
    return str(caught.value)


CALLS = {
    'window(name="showcase").widget("brewButton").click()': lambda window: window.widget(
        "brewButton"
    ).click(),
    'window(name="showcase").button("Brew").activate()': lambda window: window.button("Brew").activate(),
    'eventually(window(name="showcase").widget("clickCount")).has(text=\'1\')': lambda window: eventually(
        window.widget("clickCount")
    ).has(text="1"),
}


CLICK = next(iter(CALLS))


def titles(window):
    """A function that reads the titles of all windows."""

    def titles():
        return [window.title()]

    return titles


@pytest.mark.parametrize("listens", [False, True])
@pytest.mark.parametrize("written", CALLS)
def test_a_dead_application_tells_its_end_and_the_call_as_the_test_wrote_it(written, listens):
    with running() as (_, app):
        if listens:
            app.listeners.append(StepListener())
        window = app.window(name="showcase")
        os.kill(app.pid, signal.SIGABRT)
        message = said(ApplicationEndedError, lambda: CALLS[written](window))
    assert message.startswith(f"the application ended (signal SIGABRT) at {written}, ")


def sockets_of(pid):
    """Duplicates of the sockets of a process, for this one to hold as well."""
    process, libc = os.pidfd_open(pid), ctypes.CDLL(None, use_errno=True)
    try:
        for name in os.listdir(f"/proc/{pid}/fd"):
            if os.readlink(f"/proc/{pid}/fd/{name}").startswith("socket:"):
                copy = libc.syscall(PIDFD_GETFD, process, int(name), 0)
                assert copy >= 0, os.strerror(ctypes.get_errno())
                yield copy
    finally:
        os.close(process)


def test_a_dead_application_whose_socket_another_process_holds_does_not_hang():
    """As Wine's server holds the sockets of its programs."""
    with running() as (_, app):
        window = app.window(name="showcase")
        window.title()
        held = list(sockets_of(app.pid))
        try:
            os.kill(app.pid, signal.SIGKILL)
            assert app.process.wait(60) is not None
            app.connection.timeout = 0.5
            assert said(ApplicationEndedError, window.title).startswith(
                'the application ended (signal SIGKILL) at window(name="showcase").title()'
            )
        finally:
            for descriptor in held:
                os.close(descriptor)


@pytest.mark.parametrize("listens", [False, True])
@pytest.mark.parametrize(
    "written, call",
    [
        (CLICK, CALLS[CLICK]),
        ("eventually(titles).equals(['Roastery'])", lambda window: eventually(titles(window)).equals(["Roastery"])),
    ],
)  # fmt: skip
def test_an_application_that_dies_between_two_calls_tells_the_one_before(written, call, listens):
    with running() as (_, app):
        if listens:
            app.listeners.append(StepListener())
        call(app.window(name="showcase"))
        os.kill(app.pid, signal.SIGABRT)
        eventually(lambda: app.process.status() is not None, timeout=60).is_true()
        message = str(app.unexpected_end())
    assert message.startswith(f"the application ended (signal SIGABRT) after {written}, ")


def test_a_typed_password_is_not_in_the_call_that_a_dead_application_is_told_with():
    with running() as (_, app):
        app.window(name="showcase").widget("pages/qt_tabwidget_tabbar").select("Entry fields")
        field = app.window(name="showcase").widget("passwordEdit")
        field.enter("open sesame")
        os.kill(app.pid, signal.SIGABRT)
        message = said(ApplicationEndedError, lambda: field.enter("open sesame"))
    assert "ended (signal SIGABRT) at " in message and ".enter('***')" in message and "sesame" not in message


def test_a_hanging_application_is_told_with_its_windows_and_ended():
    with running(request_timeout=1) as (_, app):
        assert app.connection.knows_locators
        os.kill(app.pid, signal.SIGSTOP)
        message = said(ApplicationHangsError, app.window(name="showcase").widget("brewButton").activate)
        assert app.process.status() == -signal.SIGKILL
        assert message.startswith(
            'no reply to window(name="showcase").widget("brewButton").activate() within 1 seconds; the application hangs'
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
        f'no reply to window("Editor").title() within 0.5 seconds; the application hangs, and process {process.pid} was ended'
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
        f'the application (process {app.pid}) closed its connection at window("vanish").title(), but process {app.pid} '
        "still runs"
    )
