"""Nothing is lost: attempts at one test, runs at the same time, applications that do not start."""

from pathlib import Path

import pytest
from PIL import Image

from pytestrun import Project


@pytest.fixture
def project(tmp_path):
    return Project(tmp_path)


RERUN = """
import pytest
from _pytest.runner import runtestprotocol

@pytest.hookimpl(tryfirst=True)
def pytest_runtest_protocol(item, nextitem):
    item.ihook.pytest_runtest_logstart(nodeid=item.nodeid, location=item.location)
    for last in (False, False, True):
        item._initrequest()
        for report in runtestprotocol(item, nextitem=nextitem, log=False):
            again = report.failed and not last
            if again:
                report.outcome = "rerun"
            item.ihook.pytest_runtest_logreport(report=report)
            if again:
                break
        else:
            break
    item.ihook.pytest_runtest_logfinish(nodeid=item.nodeid, location=item.location)
    return True
"""
"""A conftest.py that runs failed tests again, three times in all, and tells so as plugins for that do."""


@pytest.mark.parametrize("workers", [[], ["-n1"]], ids=["serial", "in a worker"])
def test_each_attempt_at_a_test_keeps_its_evidence(project, workers):
    project.write(RERUN, "conftest.py")
    project.write(
        """
        attempts = []

        def test_flaky(app):
            attempts.append(1)
            app.window(name="showcase").resize(600 + len(attempts), 400)
            assert len(attempts) == 3, f"attempt {len(attempts)} fails"

        def test_broken(app):
            raise RuntimeError("always")
        """
    )
    run = project.run(*workers)
    assert "1 failed" in run.outcomes and "1 passed" in run.outcomes
    assert "qtdriver: flaky: test_project.py::test_flaky passed at attempt 3" in run.output
    folders = sorted(project.results.glob("*-test_flaky-*"))
    assert [path.name[-9:] for path in folders[1:]] == ["attempt-2", "attempt-3"]
    passed = folders.pop()
    assert sorted(path.name for path in passed.iterdir()) == [".qtdriver", "trace"]
    assert run.paths("test_flaky", "qtdriver_trace")[-1] == str(passed / "trace")
    for number, folder in enumerate(folders, 1):
        assert f"attempt {number} fails" in (folder / "error.txt").read_text()
        assert f"11,Widget:showcase,{600 + number},400" in (folder / "transcript.txt").read_text()
        assert (folder / "trace" / "trace.json").exists()
        assert f"kept of a failure: test-results/{folder.name}" in run.output
    assert run.paths("test_flaky", "qtdriver_bundle") == [str(folder) for folder in folders]
    assert len(run.paths("test_broken", "qtdriver_bundle")) == 3
    assert all(Path(path).is_dir() for path in run.paths("test_broken", "qtdriver_bundle"))
    page = (project.results / "report.html").read_text()
    assert "<title>1 failed, 1 flaky - test report</title>" in page


def test_two_runs_in_one_folder_leave_each_other_their_results(project):
    project.write(
        """
        def test_long(app):
            Path("started").write_text("now\\n")
            eventually(Path("go").exists, timeout=120).is_true()
            raise RuntimeError("long")
        def test_short(app): raise RuntimeError("short")
        """
    )
    first = project.start("-n1", "-k", "test_long")
    project.line("started")
    second = project.run("-n1", "-k", "test_short")
    assert "another run uses test-results: results of this one are in test-results/run-2" in second.output
    (project.folder / "go").touch()
    project.finish(first)
    (short,) = project.results.glob("run-2/*-test_short-*")
    assert "short" in (short / "error.txt").read_text()
    assert "test_short" in (project.results / "run-2" / "report.html").read_text()
    assert "long" in (project.bundle("test_long") / "error.txt").read_text()
    assert "test_long" in (project.results / "report.html").read_text()
    project.run("-k", "test_short")
    assert [path.name for path in project.results.glob("run-*")] == []


MUTE = """
import socket, sys, time
from PyQt5.QtWidgets import QApplication, QLabel
application = QApplication([])
label = QLabel("no agent here")
label.setWindowTitle("A mute program")
label.show()
print("on its way", flush=True)
print("no agent", file=sys.stderr, flush=True)
application.exec()
"""


def test_of_an_application_that_does_not_start_the_screen_the_windows_and_the_output_are_kept(project):
    project.write(MUTE, "mute.txt")
    project.write(
        """
        def test_mute(qtdriver):
            qtdriver.launch("env", "-u", "LD_PRELOAD", sys.executable, "mute.txt", start_timeout=6)
        """
    )
    run = project.run()
    kept = project.bundle("test_mute")
    assert run.outcomes == "1 failed"
    assert "env was started, but its agent did not connect" in run.output
    assert "no application was started" not in run.output
    assert '"A mute program"' in (kept / "windows.txt").read_text()
    assert (kept / "stdout.txt").read_text() == "on its way\n"
    assert "no agent\n" in (kept / "stderr.txt").read_text()
    with Image.open(kept / "screenshot.png") as picture:
        assert len(picture.convert("RGB").getcolors(1 << 20)) > 5, "the window is on the screen"
    assert project.processes() == {}


def test_a_start_that_a_test_expects_to_fail_leaves_nothing(project):
    project.write(
        """
        from qtdriver import EarlyExitError
        def test_early(qtdriver): pytest.raises(EarlyExitError, qtdriver.launch, "false", qt=5)
        """
    )
    assert project.run().outcomes == "1 passed"
    assert {path.name for path in project.results.iterdir()} == {
        ".qtdriver-run",
        "report.html",
        "results.jsonl",
    }
