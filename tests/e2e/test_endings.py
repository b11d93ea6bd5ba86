"""What is said when the showcase dies or hangs under a test."""

import os
import signal

import pytest

from qtdriver import ApplicationEndedError, ApplicationHangsError

from showcase import running


def said(kind, call):
    """The message of the error that `call` raises."""
    with pytest.raises(kind) as caught:
        call()
    return str(caught.value)


def test_a_dead_application_tells_its_end_and_the_request():
    with running() as (_, app):
        os.kill(app.pid, signal.SIGABRT)
        message = said(ApplicationEndedError, app.window(name="showcase").widget("brewButton").activate)
    assert message.startswith(
        "the application ended (signal SIGABRT) at the request '5,Widget:showcase,brewButton,,,'"
    )


def test_a_hanging_application_is_told_with_its_windows_and_ended():
    with running(request_timeout=1) as (_, app):
        os.kill(app.pid, signal.SIGSTOP)
        message = said(ApplicationHangsError, app.window(name="showcase").widget("brewButton").activate)
        assert app.process.status() == -signal.SIGKILL
        assert message == (
            "no reply to '5,Widget:showcase,brewButton,,,' within 1 seconds; the application hangs, and process "
            f'{app.pid} was ended\nthe windows that were last seen:\n  "Roastery" (MainWindow)'
        )
