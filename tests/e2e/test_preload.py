"""The preload library in applications that start and end in different ways, and in processes that are none."""

import shutil
import subprocess
import sys

import pytest

from preloaded import (
    AGENT,
    BUILD,
    DEADLINE,
    PRELOAD,
    QT,
    SANITIZER,
    WIDGETS_HOST,
    Program,
    linked_libraries,
    programs_ended,
    qt_libraries,
    queues_of,
    read_to_end,
    server_side,
    serves,
    somebody_connects,
    wait_for,
)
from qtdriver.crashes.stacks import stacks_of_process


@pytest.fixture
def start():
    """Starts programs, and ends those that still run when the test is over."""
    with programs_ended() as programs:

        def call(*command, **options):
            programs.append(Program(*command, **options))
            return programs[-1]

        yield call


def test_a_plain_application_is_driven(server, start):
    app = start(WIDGETS_HOST, "plain")
    with server.accept(DEADLINE) as connection:
        assert connection.greeting.pid == app.process.pid
        assert serves(connection)
        app.tell("quit")
        assert app.end()[0] == 0


def test_an_application_is_driven_while_a_dialog_runs_before_its_main_loop(server, start):
    app = start(WIDGETS_HOST, "dialogFirst")
    with server.accept(DEADLINE) as connection:
        assert [window.title for window in connection.list_windows() if window.modal] == ["Dialog"]
        app.tell("close")
        assert [app.next_line() for _ in range(3)] == ["start dialog", "end dialog", "start loop"]
        assert serves(connection)
        app.tell("quit")
        assert app.end() == (0, "end loop\ntorn down\n", "")
    assert not somebody_connects(server)


def test_an_application_with_only_a_dialog_is_driven(server, start):
    app = start(WIDGETS_HOST, "dialogOnly")
    with server.accept(DEADLINE) as connection:
        assert serves(connection)
        app.tell("close")
        assert app.end() == (0, "start dialog\nend dialog\ntorn down\n", "")


def test_two_main_loops_of_a_process_make_one_connection(server, start):
    app = start(WIDGETS_HOST, "twice")
    with server.accept(DEADLINE) as connection:
        app.tell("quit")
        assert [app.next_line() for _ in range(3)] == ["start first", "end first", "start second"]
        assert serves(connection)
        app.tell("quit")
        assert app.end() == (0, "end second\ntorn down\n", "")
    assert not somebody_connects(server)


def test_an_event_loop_of_another_thread_starts_no_agent(server, start):
    app = start(WIDGETS_HOST, "threadFirst")
    assert app.next_line() == "end thread"
    assert not somebody_connects(server)
    app.tell("go on")
    with server.accept(DEADLINE) as connection:
        assert serves(connection)
        app.tell("quit")
        assert app.end()[0] == 0


def test_an_application_whose_qt_comes_with_a_module_is_driven(server, start):
    app = start(BUILD / "bin" / "host_preload_loader", BUILD / "lib" / "host_preload_module.so")
    with server.accept(DEADLINE) as connection:
        assert serves(connection)
        app.tell("quit")
        assert app.end() == (0, "LD_PRELOAD=<unset>\n", "")


def test_an_application_with_a_qt_of_its_own_keeps_to_that_qt(server, start, tmp_path):
    bundle = tmp_path / "qt"
    bundle.mkdir()
    shutil.copy(BUILD / "bin" / "host_preload_bundle", tmp_path)
    for name, path in qt_libraries(AGENT).items():
        shutil.copy(path, bundle / name)
    app = start(tmp_path / "host_preload_bundle")
    with server.accept(DEADLINE) as connection:
        assert serves(connection)
        only_the_agents = qt_libraries(AGENT).keys() - qt_libraries(tmp_path / "host_preload_bundle").keys()
        assert only_the_agents
        assert {bundle / name for name in only_the_agents} <= app.mapped_files()
        app.tell("quit")
        assert app.end()[0] == 0


@pytest.mark.parametrize("handing_over", ['exec "$@"', '"$@"'])
def test_an_application_behind_a_wrapper_script_is_driven(server, start, tmp_path, handing_over):
    script = tmp_path / "wrapper"
    script.write_text(f"#!/bin/sh\nGREETING=$(echo hello)\nexport GREETING\n{handing_over}\n")
    script.chmod(0o755)
    app = start(script, WIDGETS_HOST, "plain")
    with server.accept(DEADLINE) as connection:
        assert serves(connection)
        app.tell("quit")
        assert app.end() == (0, "start loop\nend loop\ntorn down\n", "")


def test_a_process_without_qt_runs_unchanged(server, start):
    assert start("/bin/true").end() == (0, "", "")
    code = 'while read line; do echo "$line"; done </proc/self/maps; exit 3'
    status, maps, errors = start("/bin/sh", "-c", code).end()
    assert (status, errors) == (3, "")
    assert str(PRELOAD) in maps
    assert not [word for word in ("libQt", "libqtdriver.so", "libstdc++", "libasan") if word in maps]
    assert not somebody_connects(server)


@pytest.mark.parametrize("program", ["host_preload_core", "host_preload_core_widgets"])
def test_a_program_without_widgets_gets_no_agent(server, start, program):
    app = start(BUILD / "bin" / program)
    assert app.next_line() == "end loop"
    names = {path.name for path in app.mapped_files()}
    assert PRELOAD.name in names and AGENT.name not in names
    assert any("Widgets" in name or "QtGui" in name for name in names) == program.endswith("widgets")
    assert not somebody_connects(server)
    app.tell("end")
    assert app.end() == (0, "", "")


@pytest.fixture
def namesake(tmp_path):
    """Another library with the same file name."""
    copy = tmp_path / PRELOAD.name
    shutil.copy(linked_libraries(sys.executable)["libm.so.6"], copy)
    return copy


@pytest.mark.parametrize(
    "value, rest",
    [
        ("{own}", "<unset>"),
        (" {own}: ", "<unset>"),
        ("{own}:{own}", "<unset>"),
        ("{own}:libm.so.6", "libm.so.6"),
        ("libm.so.6:{own}", "libm.so.6"),
        ("libdl.so.2:{own}:libm.so.6", "libdl.so.2:libm.so.6"),
        ("libdl.so.2 {own} libm.so.6", "libdl.so.2 libm.so.6"),
        ("libdl.so.2 {own}:libm.so.6", "libdl.so.2:libm.so.6"),
        ("{namesake}:{own}", "{namesake}"),
        ("lib/libqtdriver-preload.so:libm.so.6", "libm.so.6"),
        ("./bin/../lib/libqtdriver-preload.so", "<unset>"),
        ("libm.so.6:libqtdriver-preload.so", "libm.so.6"),
    ],
)
def test_children_of_the_application_get_the_preload_list_without_the_library(
    server, start, namesake, value, rest
):
    texts = {"own": PRELOAD, "namesake": namesake}
    app = start(
        WIDGETS_HOST,
        "plain",
        preload=value.format(**texts),
        directory=BUILD,
        LD_LIBRARY_PATH=str(PRELOAD.parent),
    )
    with server.accept(DEADLINE) as connection:
        assert app.next_line() == "start loop"
        app.tell("child")
        assert app.next_line() == f"child LD_PRELOAD={rest.format(**texts)}"
        assert not somebody_connects(server), "the child is driven"
        assert serves(connection)


def test_a_link_to_the_library_is_taken_out_too(server, start, tmp_path):
    link = tmp_path / "agent.so"
    link.symlink_to(PRELOAD)
    app = start(WIDGETS_HOST, "plain", preload=f"{link} {PRELOAD} libm.so.6")
    with server.accept(DEADLINE):
        assert app.next_line() == "start loop"
        app.tell("child")
        assert app.next_line() == "child LD_PRELOAD=libm.so.6"


def test_a_child_from_before_the_main_loop_is_not_driven(server, start):
    app = start(WIDGETS_HOST, "childFirst")
    assert app.next_line() == "child LD_PRELOAD=<unset>"
    with server.accept(DEADLINE) as connection:
        assert connection.greeting.pid == app.process.pid
    assert not somebody_connects(server)


def test_the_connection_ends_in_order_when_the_application_is_torn_down(server, start):
    app = start(WIDGETS_HOST, "plain")
    with server_side(server) as connected:
        app.tell("quit")
        # Nothing but the greeting, and no reset.
        assert read_to_end(connected).count(b"\n") == 1
        assert app.end() == (0, "start loop\nend loop\ntorn down\n", "")


def test_a_server_that_does_not_read_its_replies_does_not_keep_the_application_from_ending(server, start):
    app = start(WIDGETS_HOST, "plain")
    requests = 1000
    reply_bytes = 20000
    with server_side(server) as connected:
        connected.sendall(b"1\n" * requests)

        def replies_wait_and_requests_do_not():
            to_send, to_read = queues_of(connected)
            return to_send > 0 and to_read == 0

        wait_for(
            replies_wait_and_requests_do_not,
            lambda: "\n".join([str(queues_of(connected)), *stacks_of_process(app.process.pid).lines()]),
        )
        app.tell("quit")
        assert app.end() == (0, "start loop\nend loop\ntorn down\n", "")
        try:
            received = len(read_to_end(connected))
        except ConnectionResetError:
            received = 0
        assert received < requests * reply_bytes, "nothing was pending"


def test_the_last_reply_arrives_at_a_server_that_reads(server, start):
    app = start(WIDGETS_HOST, "plain")
    unknown = b"x" * 6000000
    with server_side(server) as connected:
        connected.sendall(b"8," + unknown + b"\n")
        wait_for(lambda: queues_of(connected)[0] > 0)
        app.tell("quit")
        assert read_to_end(connected).endswith(b"\n2,Window (" + unknown + b") not found\n")
        assert app.end()[0] == 0


STATIC = pytest.param(
    "static", marks=pytest.mark.skipif(QT == 4, reason="a static QApplication crashes Qt 4 by itself")
)


@pytest.mark.parametrize("way", ["plain", STATIC, "dialogOnly"])
@pytest.mark.parametrize("order, status", [("exit", 7), ("_exit", 8)])
def test_an_application_may_leave_without_teardown(server, start, way, order, status):
    app = start(WIDGETS_HOST, way)
    with server.accept(DEADLINE) as connection:
        assert serves(connection)
        app.tell(order)
        assert app.end()[0] == status


@pytest.mark.parametrize("way", [STATIC])
def test_a_static_application_object_is_torn_down_in_order(server, start, way):
    app = start(WIDGETS_HOST, way)
    with server_side(server) as connected:
        app.tell("quit")
        assert read_to_end(connected).count(b"\n") == 1
        assert app.end() == (0, "start loop\nend loop\n", "")


def test_an_application_without_a_test_server_runs_as_ever(start):
    ends = []
    for preload in (None, PRELOAD):
        app = start(WIDGETS_HOST, "plain", preload=preload)
        assert app.next_line() == "start loop"
        app.tell("quit")
        ends.append(app.end())
    assert ends[0] == ends[1] == (0, "end loop\ntorn down\n", "")


def builds_of_other_qts():
    """The folders beside this build where the same was built for other Qt majors."""
    folders = (BUILD.with_name(BUILD.name.replace(str(QT), str(major))) for major in (4, 5, 6) if major != QT)
    builds = [folder for folder in folders if (folder / "bin" / WIDGETS_HOST.name).exists()]
    if not builds:
        pytest.skip("nothing is built for another Qt")
    return builds


def test_applications_of_other_qts_run_as_ever(server, start):
    for build in builds_of_other_qts():
        app = start(build / "bin" / WIDGETS_HOST.name, "dialogFirst")
        assert app.next_line() == "start dialog"
        app.tell("close")
        assert [app.next_line() for _ in range(2)] == ["end dialog", "start loop"]
        app.tell("quit")
        assert app.end() == (0, "end loop\ntorn down\n", "")
        assert not somebody_connects(server)


def test_the_libraries_for_several_qts_may_be_preloaded_together(server, start):
    others = ":".join(str(build / "lib" / PRELOAD.name) for build in builds_of_other_qts())
    for preload in (f"{PRELOAD}:{others}", f"{others}:{PRELOAD}"):
        app = start(WIDGETS_HOST, "plain", preload=preload)
        with server.accept(DEADLINE) as connection:
            assert app.next_line() == "start loop"
            app.tell("child")
            assert app.next_line() == f"child LD_PRELOAD={others}"
            assert serves(connection)
            app.tell("quit")
            assert app.end() == (0, "end loop\ntorn down\n", "")
        assert not somebody_connects(server)


def test_an_application_of_the_system_is_driven_by_the_agent_of_its_qt(server, start):
    if not shutil.which("speedcrunch"):
        pytest.skip("speedcrunch is not installed")
    preload = f"{SANITIZER}:{PRELOAD}" if SANITIZER else PRELOAD
    app = start("speedcrunch", preload=preload, HOME="/nonexistent")
    if QT == 5:
        with server.accept(DEADLINE) as connection:
            assert connection.greeting.pid == app.process.pid
            assert any("SpeedCrunch" in window.title for window in connection.list_windows())
        return
    wait_for(lambda: "0x" in subprocess.check_output(["xprop", "-root", "_NET_CLIENT_LIST"], text=True))
    assert AGENT.name not in {path.name for path in app.mapped_files()}
    assert not somebody_connects(server)
