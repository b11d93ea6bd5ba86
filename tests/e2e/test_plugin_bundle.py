"""Files that the plugin keeps of tests: bundles of failures, traces, the page."""

import json
import re
import socket
from types import SimpleNamespace

import pytest
from PIL import Image

from pytestrun import Project
from qtdriver import Transcript
from qtdriver.plugin import bundle
from qtdriver.protocol.secrets import Secrets

FILES = ["error.txt", "screenshot.png", "stderr.txt", "stdout.txt", "trace", "transcript.txt", "windows.txt"]


@pytest.fixture
def project(tmp_path):
    return Project(tmp_path)


@pytest.fixture(scope="module")
def failed(tmp_path_factory):
    """A run with a test that fails after a click."""
    project = Project(tmp_path_factory.mktemp("failed"))
    project.write(
        """
        def test_brewing(app):
            app.window(name="showcase").widget("brewButton").activate()
            eventually(app.window(name="showcase").widget("clickCount")).has(text="1")
            raise RuntimeError("no coffee")
        """
    )
    return SimpleNamespace(project=project, run=project.run(), bundle=project.bundle("test_brewing"))


def test_a_failure_names_the_bundle_and_what_is_in_it(failed):
    assert failed.run.outcomes == "1 failed"
    line = f"test-results/{failed.bundle.name}: {', '.join(FILES)}"
    assert line in failed.run.output
    assert f"qtdriver: kept of a failure: test-results/{failed.bundle.name}" in failed.run.output
    assert sorted(path.name for path in failed.bundle.iterdir() if path.name[0] != ".") == FILES


def test_the_junit_file_names_the_bundle_and_the_trace(failed):
    assert failed.run.properties("test_brewing") == {
        "qtdriver_bundle": str(failed.bundle),
        "qtdriver_trace": str(failed.bundle / "trace"),
    }


def test_the_screenshot_shows_the_desktop_with_the_application(failed):
    with Image.open(failed.bundle / "screenshot.png") as picture:
        assert picture.size == (1280, 1024)
        assert len(picture.convert("RGB").getcolors(1 << 20)) > 50


def test_the_windows_are_listed_with_their_widgets(failed):
    text = (failed.bundle / "windows.txt").read_text()
    assert text.startswith('  "Roastery" (MainWindow)\n    "showcase" (MainWindow)\n')
    assert re.search(r'^ +"brewButton" \(QPushButton\)$', text, re.MULTILINE)
    assert re.search(r'^ +"orderMenu" \(QMenu, hidden\)$', text, re.MULTILINE)


def test_the_transcript_has_requests_and_replies_with_times(failed):
    lines = (failed.bundle / "transcript.txt").read_text().splitlines()
    pressed = '> +5,Widget:showcase,path="brewButton"'
    at = next(index for index, line in enumerate(lines) if line.endswith(pressed))
    assert re.match(r" +\d+\.\d{3}  > ", lines[at])
    assert re.match(r" +\+\d+\.\d{3}  < 0,QPushButton$", lines[at + 1])
    times = [float(line.split()[0]) for line in lines[1::2]]
    assert times == sorted(times)


def test_the_transcript_says_who_was_refused(project):
    project.write(
        """
        import socket
        def test_it(qtdriver, request):
            with socket.create_connection(("127.0.0.1", 4242)) as stranger:
                stranger.sendall(b"GET / HTTP/1.1\\n")
                app = request.getfixturevalue("app")
                app.window(name="showcase").title()
                raise RuntimeError
        """
    )
    project.run()
    folder = project.bundle("test_it")
    refused = "not an agent's greeting: 'GET / HTTP/1.1'"
    assert f"\nrefused before it: {refused}\n" in (folder / "transcript.txt").read_text()
    (note,) = json.loads((folder / "trace" / "trace.json").read_text())["notes"]
    assert note.startswith("refused before process ") and note.endswith(refused)


def test_the_error_is_kept(failed):
    text = (failed.bundle / "error.txt").read_text()
    assert text.startswith("error in call:\n") and "RuntimeError: no coffee" in text


def test_the_page_of_the_run_is_written(failed):
    assert "qtdriver: page of the results: test-results/report.html" in failed.run.output
    assert "test_brewing" in (failed.project.results / "report.html").read_text()


def test_what_the_application_prints_is_kept(project):
    project.write(
        f"""
        def test_output(qtdriver):
            code = '''import os, sys, socket
        connection = socket.create_connection(("127.0.0.1", 4242))
        for number in range(50): print("line", number)
        print("trouble", file=sys.stderr)
        sys.stdout.flush(); sys.stderr.flush()
        connection.sendall(f"+client+ 2.1.0 {{os.getpid()}} -1 fake\\\\n".encode())
        for request in connection.makefile("rb"): connection.sendall(b"0,l:\\\\n")
        '''
            qtdriver.launch(sys.executable, "-c", code)
            raise RuntimeError
        """
    )
    assert project.run().outcomes == "1 failed"
    kept = project.bundle("test_output")
    assert (kept / "stdout.txt").read_text().splitlines() == [f"line {number}" for number in range(50)]
    assert (kept / "stderr.txt").read_text() == "trouble\n"
    assert (kept / "windows.txt").read_text() == "no visible window\n"


NEWER_ORDER = """
from _pytest.fixtures import FixtureDef

def finish(self, request):
    errors = []
    while self._finalizers:
        try:
            self._finalizers.pop()()
        except BaseException as error:
            errors.append(error)
    request.node.ihook.pytest_fixture_post_finalizer(fixturedef=self, request=request)
    self.cached_result = None
    if errors:
        raise errors[0]

FixtureDef.finish = finish
"""
"""A conftest.py that has fixtures torn down as pytest does from 8.1 on: no hook is called while the error is handled."""


@pytest.mark.parametrize("conftest", ["", NEWER_ORDER], ids=["this pytest", "pytest 8.1"])
def test_failures_before_and_after_a_test_have_bundles_of_the_living_application(project, conftest):
    project.write(conftest, "conftest.py")
    project.write(
        """
        @pytest.fixture
        def broken_setup(app):
            raise RuntimeError("early")

        @pytest.fixture
        def broken_teardown(app):
            yield
            raise RuntimeError("late")

        def test_early(broken_setup): pass
        def test_late(broken_teardown): pass
        """
    )
    assert project.run().outcomes == "1 passed, 2 errors"
    for test, phase, error in (("test_early", "setup", "early"), ("test_late", "teardown", "late")):
        kept = project.bundle(test)
        text = (kept / "error.txt").read_text()
        assert text.startswith(f"error in {phase}:\n") and f"RuntimeError: {error}" in text
        assert "brewButton" in (kept / "windows.txt").read_text()


def test_each_application_has_its_files(project):
    project.write(
        """
        def test_two(qtdriver, app):
            other = qtdriver.launch(app.process._popen.args[0])
            other.window(name="showcase").resize(400, 300)
            assert 0
        """
    )
    assert project.run().outcomes == "1 failed"
    kept = project.bundle("test_two")
    assert "resize" not in (kept / "transcript.txt").read_text()
    assert "11,Widget:showcase,400,300" in (kept / "transcript-2.txt").read_text()
    assert "brewButton" in (kept / "windows-2.txt").read_text()
    assert not (kept / "screenshot-2.png").exists()


def test_the_bundle_of_a_dead_application_says_what_cannot_be_had(project):
    project.write(
        """
        def test_dead(app):
            app.windows()
            app.process.terminate()
            app.windows()
        """
    )
    run = project.run()
    assert run.outcomes == "1 failed"
    assert "the application had ended (signal SIGTERM): no list of its windows" in run.output
    kept = project.bundle("test_dead")
    assert '"Roastery" (MainWindow)' in (kept / "windows.txt").read_text()
    assert "! the application ended before it answered '1'" in (kept / "transcript.txt").read_text()
    assert (kept / "screenshot.png").exists()


def test_the_bundle_of_a_hanging_application_does_not_wait_for_it(project):
    project.write(
        """
        def test_hangs(app, request):
            app.windows()
            request.addfinalizer(lambda: os.kill(app.pid, signal.SIGCONT))  # so that it ends at once
            os.kill(app.pid, signal.SIGSTOP)
            assert 0
        """
    )
    run = project.run("--qtdriver-request-timeout=600")
    assert run.outcomes == "1 failed"
    assert "no reply to '1' within 5 seconds: no list of its windows" in run.output
    assert "the windows that were last seen" in (project.bundle("test_hangs") / "windows.txt").read_text()


def test_a_failure_without_an_application_says_so(project):
    project.write("def test_nothing(qtdriver): assert 0")
    run = project.run("--qtdriver-trace=off")
    assert (
        f"test-results/{project.bundle('test_nothing').name}: error.txt\nno application was started"
        in run.output
    )


def test_a_display_that_does_not_answer_is_given_up(tmp_path, monkeypatch):
    monkeypatch.setattr(bundle, "_SCREENSHOT_SECONDS", 1.0)
    with socket.socket(socket.AF_UNIX, socket.SOCK_STREAM) as silent:
        silent.bind("\0/tmp/.X11-unix/X7777")
        silent.listen()
        connection = SimpleNamespace(
            timeout=1.0, transcript=Transcript(), secrets=Secrets(), list_windows=lambda: ()
        )
        app = SimpleNamespace(
            display=":7777", process=None, connection=connection, pid=1, stacks=lambda: None
        )
        notes = bundle.write_bundle([app], [], tmp_path, 0.0)
    assert notes == ["no screenshot.png: the display :7777 has not answered within 1 seconds"]
    assert (tmp_path / "windows.txt").read_text() == "no visible window\n"


def test_a_display_that_is_gone_is_noted(tmp_path, monkeypatch):
    monkeypatch.setattr(bundle, "_SCREENSHOT_SECONDS", 60.0)  # not to be given up on a busy machine
    connection = SimpleNamespace(
        timeout=1.0, transcript=Transcript(), secrets=Secrets(), list_windows=lambda: ()
    )
    app = SimpleNamespace(display=":7778", process=None, connection=connection, pid=1, stacks=lambda: None)
    (note,) = bundle.write_bundle([app], [], tmp_path, 0.0)
    assert note.startswith("no screenshot.png: ") and ":7778" in note


def test_results_of_an_earlier_run_are_removed_and_nothing_else(project):
    project.write("def test_first(app): assert 0")
    project.run()
    (project.results / "mine").mkdir()
    (project.results / "mine" / "notes.txt").write_text("keep")
    old = project.bundle("test_first")
    project.write("def test_second(app): assert 0")
    project.run()
    assert (project.results / "mine" / "notes.txt").read_text() == "keep"
    assert not old.exists()
    assert project.bundle("test_second").exists()


def test_the_page_of_an_interrupted_run_has_what_was_done_and_what_was_under_way(project):
    project.write(
        """
        def test_done(app): pass
        def test_under_way(app): Path("started").write_text("now\\n"); time.sleep(1000)
        def test_to_come(app): pass
        """
    )
    run = project.start()
    project.line("started")
    project.interrupt(run)
    assert "page of the results: test-results/report.html" in project.finish(run).output
    page = (project.results / "report.html").read_text()
    names = [f'"name":"{name}"' in page for name in ("test_done", "test_under_way", "test_to_come")]
    assert names == [True, True, False]


@pytest.mark.parametrize(
    "mode, kept",
    [("on", {"test_good", "test_bad"}), ("retain-on-failure", {"test_bad"}), ("off", set())],
)
def test_traces_are_kept_by_mode(project, mode, kept):
    project.write("def test_good(app): app.windows()\ndef test_bad(app): assert not app.windows()")
    run = project.run(f"--qtdriver-trace={mode}")
    assert run.outcomes == "1 failed, 1 passed"
    found = {path.parent.parent.name: path for path in project.results.glob("*/trace/trace.json")}
    assert {name.split("-")[1] for name in found} == kept
    for path in found.values():
        trace = json.loads(path.read_text())
        assert "windows()" in json.dumps(trace)
        names = {step[moment] for step in trace["steps"] for moment in ("before", "after")} - {""}
        assert names == set(trace["pictures"]) and names
        for name in names:
            with Image.open(path.parent / name) as picture:
                picture.load()
                assert picture.size == tuple(trace["pictures"][name][2:])
    assert (project.results / "report.html").exists() is (mode != "off")
    assert ("qtdriver_trace" in run.properties("test_good")) is (mode == "on")
