"""The library that Qt loads itself, in applications that start and end in different ways, and in processes that are none."""

import shutil

import pytest

from preloaded import (
    AGENT,
    BUILD,
    DEADLINE,
    QT,
    WIDGETS_HOST,
    Program,
    programs_ended,
    read_to_end,
    server_side,
    serves,
    somebody_connects,
)

LIBRARY = BUILD / "lib" / "libqttestability.so"
SILENCE = (0, "start loop\nend loop\ntorn down\n", "")


@pytest.fixture
def start():
    """Starts programs that find the library, and ends those that still run when the test is over."""
    with programs_ended() as programs:

        def call(*command, folder=LIBRARY.parent, **variables):
            programs.append(Program(*command, preload=None, LD_LIBRARY_PATH=str(folder), **variables))
            return programs[-1]

        yield call


def test_an_application_is_driven_and_ends_in_order(server, start):
    app = start(WIDGETS_HOST, "plain", "-testability")
    with server.accept(DEADLINE) as connection:
        assert connection.greeting.pid == app.process.pid
        assert serves(connection)
        app.tell("quit")
        assert app.end() == SILENCE


def test_the_connection_ends_without_a_reset_when_the_application_is_torn_down(server, start):
    app = start(WIDGETS_HOST, "plain", "-testability")
    with server_side(server) as connected:
        app.tell("quit")
        assert read_to_end(connected).count(b"\n") == 1
        assert app.end() == SILENCE


def test_an_application_is_driven_while_a_dialog_runs_before_its_main_loop(server, start):
    app = start(WIDGETS_HOST, "dialogFirst", "-testability")
    with server.accept(DEADLINE) as connection:
        assert [window.title for window in connection.list_windows() if window.modal] == ["Dialog"]
        app.tell("close")
        assert [app.next_line() for _ in range(3)] == ["start dialog", "end dialog", "start loop"]
        assert serves(connection)
        app.tell("quit")
        assert app.end() == (0, "end loop\ntorn down\n", "")
    assert not somebody_connects(server)


def test_an_event_loop_of_another_thread_starts_no_agent(server, start):
    app = start(WIDGETS_HOST, "threadFirst", "-testability")
    assert app.next_line() == "end thread"
    assert not somebody_connects(server)
    app.tell("go on")
    with server.accept(DEADLINE) as connection:
        assert serves(connection)
        app.tell("quit")
        assert app.end()[0] == 0


def test_an_application_that_is_not_started_for_it_runs_as_ever(server, start):
    app = start(WIDGETS_HOST, "plain")
    assert app.next_line() == "start loop"
    assert AGENT.name not in {path.name for path in app.mapped_files()}
    app.tell("quit")
    assert app.end() == (0, "end loop\ntorn down\n", "")
    assert not somebody_connects(server)


@pytest.mark.skipif(QT == 4, reason="Qt 4.8 knows the argument only")
def test_children_of_an_application_that_a_variable_has_load_the_library_are_not_driven(server, start):
    app = start(WIDGETS_HOST, "childFirst", QT_LOAD_TESTABILITY="1")
    assert app.next_line().startswith("child ")
    with server.accept(DEADLINE) as connection:
        assert connection.greeting.pid == app.process.pid
        assert app.next_line() == "start loop"
        app.tell("child")
        assert app.next_line().startswith("child ")
        assert serves(connection)
    assert not somebody_connects(server)


def test_an_application_without_a_test_server_runs_as_ever(start):
    app = start(WIDGETS_HOST, "plain", "-testability")
    assert app.next_line() == "start loop"
    app.tell("quit")
    assert app.end() == (0, "end loop\ntorn down\n", "")


def builds_of_other_qts():
    """The folders beside this build where the same was built for other Qt majors."""
    folders = (BUILD.with_name(BUILD.name.replace(str(QT), str(major))) for major in (4, 5, 6) if major != QT)
    builds = [folder for folder in folders if (folder / "bin" / WIDGETS_HOST.name).exists()]
    if not builds:
        pytest.skip("nothing is built for another Qt")
    return builds


@pytest.mark.parametrize("variables", [{}, {"QTDRIVER_EXPLAIN": "1"}], ids=["silent", "explained"])
def test_an_application_of_another_qt_runs_as_ever_and_says_why_if_asked(server, start, variables):
    for build in builds_of_other_qts():
        app = start(build / "bin" / WIDGETS_HOST.name, "plain", "-testability", **variables)
        assert app.next_line() == "start loop"
        names = {path.name for path in app.mapped_files()}
        assert LIBRARY.name in names and AGENT.name not in names
        app.tell("quit")
        status, output, errors = app.end()
        assert (status, output) == (0, "end loop\ntorn down\n")
        if variables:
            assert errors.startswith("qtdriver: no agent in this process: the program has not loaded libQt")
            assert errors.count("\n") == 1
        else:
            assert errors == ""
    assert not somebody_connects(server)


@pytest.mark.parametrize("variables", [{}, {"QTDRIVER_EXPLAIN": "1"}], ids=["silent", "explained"])
def test_a_library_without_its_agent_leaves_the_application_and_says_why_if_asked(
    server, start, tmp_path, variables
):
    shutil.copy(LIBRARY, tmp_path)
    app = start(WIDGETS_HOST, "plain", "-testability", folder=tmp_path, **variables)
    assert app.next_line() == "start loop"
    app.tell("quit")
    status, output, errors = app.end()
    assert (status, output) == (0, "end loop\ntorn down\n")
    assert (str(tmp_path / AGENT.name) in errors) == bool(variables)
    assert errors.count("\n") == len(variables)
    assert not somebody_connects(server)
