"""The plugin of pytest: the fixture, its settings, and applications that end when they should not."""

import os
import sys

import pytest

from conftest import FAKE_AGENT
from pytestrun import Project


@pytest.fixture
def project(tmp_path):
    return Project(tmp_path)


def test_each_test_has_its_application_which_is_ended_after_it(project):
    project.write(
        """
        pids = []

        @pytest.mark.parametrize("number", [1, 2])
        def test_clicks(app, number):
            app.window(name="showcase").widget("brewButton").activate()
            eventually(app.window(name="showcase").widget("clickCount")).has(text="1")
            pids.append(app.pid)

        def test_they_are_gone():
            assert len(set(pids)) == 2
            assert not any(os.path.exists(f"/proc/{pid}") for pid in pids)
        """
    )
    assert project.run().outcomes == "3 passed"


def test_settings_come_from_the_command_line_and_else_from_the_configuration_file(project):
    project.write(
        "[pytest]\nqtdriver_timeout = 3\nqtdriver_start_timeout = 4\nqtdriver_output = kept", "pytest.ini"
    )
    project.write(
        """
        def test_settings(qtdriver, qtdriver_settings):
            assert (qtdriver.timeout, qtdriver.start_timeout, qtdriver.request_timeout) == (7, 4, 8.5)
            assert qtdriver_settings.output == Path("kept").absolute()
            assert qtdriver_settings.report == Path("page.html").absolute()
        """
    )
    run = project.run("--qtdriver-timeout=7", "--qtdriver-request-timeout=8.5", "--qtdriver-report=page.html")
    assert run.outcomes == "1 passed"
    assert "page of the results: page.html" in run.output
    assert (project.folder / "page.html").is_file()


def test_each_test_has_folders_of_its_own_unless_the_users_are_to_be_kept(project):
    project.write(
        f"""
        import psutil

        homes = set()

        def home(qtdriver, **options):
            app = qtdriver.launch(*{FAKE_AGENT!r}, qt=5, **options)
            return psutil.Process(app.pid).environ()["HOME"]

        @pytest.mark.parametrize("number", [1, 2])
        def test_own(qtdriver, number):
            homes.add(home(qtdriver))
            assert home(qtdriver) in homes
            assert home(qtdriver, keep_home=True) == os.environ["HOME"]

        def test_they_differ():
            assert len(homes) == 2 and os.environ["HOME"] not in homes
            assert not any(os.path.exists(home) for home in homes)
        """
    )
    assert project.run().outcomes == "3 passed"
    assert "1 failed" in project.run("--qtdriver-home=keep").outcomes


def test_messages_name_the_options_of_pytest_and_a_wayland_session_is_told(project):
    project.write(
        """
        import dataclasses

        @pytest.fixture(scope="session")
        def qtdriver_settings(qtdriver_settings):
            return dataclasses.replace(qtdriver_settings, qt=None)

        def test_program(qtdriver):
            qtdriver.launch("/bin/true")

        def test_agent(qtdriver):
            qtdriver.launch("/bin/true", qt=6)
        """
    )
    project.environment.update(WAYLAND_DISPLAY="wayland-0", QT_QPA_PLATFORM="")
    run = project.run("--qtdriver-headed", f"--qtdriver-build={project.folder}")
    assert run.outcomes == "2 failed"
    assert "name the Qt version with --qtdriver-qt N or launch(..., qt=N)" in run.output
    assert "another build folder with --qtdriver-build DIR" in run.output
    assert "qtdriver: this is a Wayland session, in which no program may move the mouse" in run.output


@pytest.mark.parametrize(
    "argument, complaint",
    [
        ("--qtdriver-timeout=soon", '--qtdriver-timeout: "soon" is not a number of seconds'),
        ("--qtdriver-request-timeout=-1", '--qtdriver-request-timeout: "-1" is not a number of seconds'),
        ("--qtdriver-qt=3", '--qtdriver-qt: "3" is not 4, 5 or 6'),
        ("--qtdriver-platform=dos", '--qtdriver-platform: "dos" is not linux or windows'),
        ("--qtdriver-load-by=hand", '--qtdriver-load-by: "hand" is not preload or testability'),
        ("--qtdriver-trace=some", '--qtdriver-trace: "some" is not on, retain-on-failure or off'),
    ],
)
def test_a_setting_that_does_not_fit_is_a_usage_error(project, argument, complaint):
    project.write("def test_nothing(): pass")
    run = project.run(argument)
    assert run.status == pytest.ExitCode.USAGE_ERROR
    assert run.output.strip() == f"ERROR: {complaint}"


def test_a_wrong_setting_in_the_configuration_file_is_named_as_it_is_there(project):
    project.write("[pytest]\nqtdriver_trace = some", "pytest.ini")
    assert 'ERROR: qtdriver_trace: "some" is not on' in project.run().output


def test_the_platform_and_the_way_of_loading_are_settings(project):
    project.write(
        """
        def test_settings(app, qtdriver_settings):
            assert (qtdriver_settings.platform, qtdriver_settings.load_by) == ("windows", "testability")
            variables = Path(f"/proc/{app.pid}/environ").read_bytes().split(b"\\0")
            assert not [text for text in variables if text.startswith(b"LD_PRELOAD=")]
        """
    )
    run = project.run("--qtdriver-platform=windows", "--qtdriver-load-by=testability")
    assert run.outcomes == "1 passed"


def test_a_project_computes_its_own_settings(project):
    project.write(
        """
        import dataclasses

        @pytest.fixture(scope="session")
        def qtdriver_settings(qtdriver_settings):
            return dataclasses.replace(qtdriver_settings, timeout=0.25)

        def test_timeout(app):
            assert app.timeout == 0.25
        """
    )
    assert project.run().outcomes == "1 passed"


@pytest.mark.parametrize("argument, same", [("--qtdriver-headless", False), ("--qtdriver-headed", True)])
def test_applications_appear_on_a_desktop_without_a_screen_unless_they_shall_be_watched(
    project, argument, same
):
    project.write("def test_display(app): Path('display').write_text(app.display + '\\n')")
    assert project.run(argument).outcomes == "1 passed"
    assert (project.line("display") == [os.environ["DISPLAY"]]) is same


def test_applications_appear_on_a_desktop_without_a_screen_by_default(project):
    project.write(f"def test_display(app): assert app.display != {os.environ['DISPLAY']!r}")
    assert project.run().outcomes == "1 passed"


def test_what_a_test_starts_itself_is_on_the_display_of_its_applications(project):
    project.write("def test_display(app): assert os.environ['DISPLAY'] == app.display")
    assert project.run().outcomes == "1 passed"


def test_a_second_run_at_the_same_time_is_told_what_to_do(project, server):
    project.write("def test_something(app): pass")
    run = project.run()
    assert run.outcomes == "1 error"
    assert "127.0.0.1:4242 is taken" in run.output and "run with -n 1 (pytest-xdist)" in run.output


def test_runs_without_drivers_leave_nothing(project):
    project.write("def test_something(): assert 0")
    run = project.run()
    assert (run.outcomes, project.results.exists(), "qtdriver:" in run.output) == ("1 failed", False, False)


FAKE = f"""
@pytest.fixture
def fake(qtdriver):
    def start(status):
        return qtdriver.launch({", ".join(map(repr, FAKE_AGENT))}, "--status", str(status), "--print", "farewell")
    return start

def end(app):
    app.connection.check_window("quit")
    eventually(lambda: app.process.status() is not None, timeout=60).is_true()
"""


def test_an_application_that_crashes_behind_the_back_of_a_test_fails_it(project):
    project.write("def test_crash(app): os.kill(app.pid, signal.SIGABRT); app.process.wait(60)")
    run = project.run()
    assert run.outcomes == "1 passed, 1 error"
    assert "ApplicationEndedError: the application ended (signal SIGABRT) after window(" in run.output
    assert "qtdriver/plugin" not in run.output
    assert (project.bundle("test_crash") / "screenshot.png").exists()


def test_an_application_that_fails_behind_the_back_of_a_test_fails_it(project):
    project.write(FAKE + "def test_failure(fake): end(fake(3))")
    run = project.run()
    assert run.outcomes == "1 passed, 1 error"
    assert (
        "the application ended (exit status 3) after the request '8,quit'; its last output:\nfarewell"
        in run.output
    )


def test_an_application_may_end_when_it_succeeds_or_when_the_test_knows(project):
    project.write(
        FAKE
        + """
from qtdriver import ApplicationEndedError

def test_it_succeeds(fake):
    end(fake(0))

def test_it_is_waited_for(fake):
    app = fake(3)
    end(app)
    assert app.wait_for_exit() == 3

def test_it_is_ended_by_the_test(fake):
    fake(3).terminate()

def test_its_end_was_an_error_of_a_call(fake):
    app = fake(3)
    end(app)
    pytest.raises(ApplicationEndedError, app.windows)
"""
    )
    assert project.run().outcomes == "4 passed"


def test_a_crash_while_the_application_is_ended_fails_the_test(project):
    code = (
        "import os, signal, socket, time\n"
        "signal.signal(signal.SIGTERM, lambda *_: os.abort())\n"
        "connection = socket.create_connection(('127.0.0.1', 4242))\n"
        "connection.sendall(f'+client+ 2.1.0 {os.getpid()} -1 fake\\n'.encode())\n"
        "while True: time.sleep(10)\n"
    )
    project.write(f"def test_abort(qtdriver): qtdriver.launch({sys.executable!r}, '-c', {code!r})")
    run = project.run()
    assert run.outcomes == "1 passed, 1 error"
    assert "the application ended (signal SIGABRT)" in run.output
