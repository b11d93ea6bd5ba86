"""The applications that tests run: one that ends without the test's knowledge fails the test."""

import pytest

from hostapp import DEADLINE, HostApp


@pytest.fixture
def app():
    app = HostApp("corehost")
    yield app
    app.close()


def test_an_application_that_is_there_to_the_end_ends_in_order(app):
    app.end()
    assert app.process.poll() == 0


def test_one_that_quits_after_its_last_reply_is_a_failure(app):
    app.start("quit")
    app.process.wait(DEADLINE)
    with pytest.raises(AssertionError, match="ended by itself, with status 0"):
        app.end()


def test_one_that_dies_after_its_last_reply_is_a_failure_with_its_status(app):
    app.show("showDeadly", "deadly")
    app.activate("Deadly", "exit")
    app.process.wait(DEADLINE)
    with pytest.raises(AssertionError, match="ended by itself, with status 7"):
        app.end()


def test_one_whose_end_the_test_has_waited_for_is_none(app):
    app.start("quit")
    assert app.wait_for_end() == 0
    app.end()
