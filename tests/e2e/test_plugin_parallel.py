"""Tests side by side: each worker has a network, a screen and a window manager of its own."""

import os
import shutil
import sys
import tempfile
from pathlib import Path
from types import SimpleNamespace

import pytest

from pytestrun import RUNNER, Project
from qtdriver.plugin.parallel import Workers
from qtdriver.report.results import RunResults

WORKER = """
def describe(app):
    return [os.environ["PYTEST_XDIST_WORKER"], os.readlink("/proc/self/ns/net"), app.display]
"""


@pytest.fixture
def project(tmp_path):
    return Project(tmp_path)


@pytest.fixture
def without_namespaces(project, tmp_path):
    """The project, on a system where `unshare` is refused."""
    folder = tmp_path / "refusing"
    folder.mkdir()
    (folder / "unshare").write_text("#!/bin/sh\necho 'unshare: Operation not permitted' >&2\nexit 1\n")
    (folder / "unshare").chmod(0o755)
    project.environment["PATH"] = f"{folder}:{os.environ['PATH']}"
    return project


def test_four_workers_drive_their_applications_at_the_same_time(project):
    project.write(
        WORKER
        + """
@pytest.mark.parametrize("number", range(8))
def test_clicks(app, number):
    window = app.window(name="showcase")
    window.widget("brewButton").activate()
    Path(f"worker-{describe(app)[0]}").write_text(" ".join(describe(app)))
    # Each has its application running while it waits for the three others.
    eventually(lambda: len(list(Path().glob("worker-*"))) == 4, timeout=60).is_true()
    eventually(window.widget("clickCount")).has(text="1")
"""
    )
    run = project.run("-n", 4)
    assert run.outcomes == "8 passed"
    workers = [path.read_text().split() for path in project.folder.glob("worker-*")]
    assert {len(set(column)) for column in zip(*workers)} == {4}
    assert os.readlink("/proc/self/ns/net") not in {network for _, network, _ in workers}
    assert os.environ["DISPLAY"] not in {display for _, _, display in workers}
    page = (project.results / "report.html").read_text()
    assert all(f"test_clicks[{number}]" in page for number in range(8))


def test_a_worker_is_the_user_of_the_run_and_has_no_capability(project):
    project.write(
        f"""
        def test_rights(app):
            app.windows()
            assert os.getuid() == {os.getuid()}
            status = Path("/proc/self/status").read_text()
            rights = dict(line.split(":\\t") for line in status.splitlines() if line.startswith("Cap"))
            assert len(rights) == 5 and set(rights.values()) == {{"0" * 16}}
            Path("secret").touch(mode=0)
            with pytest.raises(PermissionError):
                Path("secret").read_text()
        """
    )
    assert project.run("-n", 1).outcomes == "1 passed"


def meeting(folder, path):
    """Two tests that write the same file, and read it when both have written."""
    return f"""
@pytest.mark.parametrize("word", ["first", "second"])
def test_writes(word):
    file, meeting = Path({str(path)!r}), Path({str(folder)!r})
    file.write_text(word)
    (meeting / f"{{word}} has written").touch()
    eventually(lambda: len(list(meeting.glob("* has written"))) == 2, timeout=60).is_true()
    (meeting / f"{{word}} reads {{file.read_text()}}").touch()
"""


@pytest.fixture
def shared_file():
    """A file in the /tmp of all, which two tests write."""
    path = Path(f"/tmp/qtdriver-test-{os.getpid()}")
    yield path
    path.unlink(missing_ok=True)


def test_two_workers_do_not_meet_in_a_file_in_tmp(project, tmp_path, shared_file):
    project.write(meeting(tmp_path, shared_file))
    assert project.run("-n", 2).outcomes == "2 passed"
    assert (tmp_path / "first reads first").exists() and (tmp_path / "second reads second").exists()
    assert not shared_file.exists()


def test_workers_share_tmp_where_that_is_wanted(project, tmp_path, shared_file):
    project.write(meeting(tmp_path, shared_file))
    run = project.run("-n", 2, "--qtdriver-tmp=shared")
    assert run.outcomes == "2 passed" and "workers share" not in run.output
    last = shared_file.read_text()
    assert sorted(path.name for path in tmp_path.glob("* reads *")) == [
        f"first reads {last}",
        f"second reads {last}",
    ]


def test_what_the_run_uses_in_tmp_is_there_in_workers(project, shared_file):
    kept = Path(tempfile.mkdtemp(prefix="qtdriver kept ", dir="/tmp"))
    shared_file.write_text("beans")
    project.environment["BEANS"] = str(shared_file)
    try:
        project.write(
            f"""
            def test_uses(app, tmp_path):
                assert Path({str(shared_file)!r}).read_text() == "beans"
                (tmp_path / "left").write_text("for the user")
                app.window("no such").title(timeout=0)
            """
        )
        arguments = ("-n", 1, f"--qtdriver-output={kept / 'results'}", f"--basetemp={kept / 'base'}")
        assert project.run(*arguments).outcomes == "1 failed"
        (left,) = (kept / "base").rglob("left")
        assert left.read_text() == "for the user"
        (bundle,) = (kept / "results").glob("*test_uses*")
        assert (bundle / "screenshot.png").exists() and (bundle / "transcript.txt").exists()
    finally:
        shutil.rmtree(kept)


def test_a_program_that_only_the_tmp_of_all_has_is_told(project, shared_file):
    shared_file.symlink_to("/bin/true")
    project.write(f"def test_starts(qtdriver): qtdriver.launch({str(shared_file)!r}, qt=5)")
    output = project.run("-n", 1).output
    assert f"{shared_file}: no such file" in output and "run with --qtdriver-tmp shared" in output


def test_workers_share_tmp_where_the_system_allows_no_mounts(project, tmp_path):
    refusing = tmp_path / "refusing"
    refusing.mkdir()
    (refusing / "mount").write_text("#!/bin/sh\necho 'mount: permission denied' >&2\nexit 32\n")
    (refusing / "mount").chmod(0o755)
    project.environment["PATH"] = f"{refusing}:{os.environ['PATH']}"
    project.write("def test_starts(app): app.windows()")
    run = project.run("-n", 1)
    assert run.outcomes == "1 passed"
    assert "mount: permission denied): the workers share the one /tmp\n" in run.output


def test_a_worker_has_the_interpreter_the_paths_and_the_environment_of_the_run(project, tmp_path):
    odd = tmp_path / "with blanks, 'quotes' & more"
    odd.mkdir()
    (odd / "python3").symlink_to(sys.executable)
    (odd / "runner").symlink_to(RUNNER)
    project.python, project.runner = str(odd / "python3"), odd / "runner"
    project.environment["FLAVOUR"] = "a 'dark' roast"
    project.write(
        f"""
        def test_worker(app):
            import qtdriver
            assert "PYTEST_XDIST_WORKER" in os.environ
            assert sys.executable == {str(odd / "python3")!r}
            assert qtdriver.__file__ == {str(odd / "runner/qtdriver/__init__.py")!r}
            assert os.environ["FLAVOUR"] == "a 'dark' roast"
            assert os.getcwd() == {str(project.folder)!r}
        """
    )
    assert project.run("-n", 1).outcomes == "1 passed"


def test_what_workers_keep_is_told_by_the_run(project):
    project.write("def test_bad(app): assert 0\ndef test_skipped(app): pytest.skip('no milk')")
    run = project.run("-n", 2)
    assert run.outcomes == "1 failed, 1 skipped"
    kept = project.bundle("test_bad")
    assert f"test-results/{kept.name}: error.txt, screenshot.png" in run.output
    assert run.properties("test_bad")["qtdriver_bundle"] == str(kept)
    page = (project.results / "report.html").read_text()
    assert "test_bad" in page and "test_skipped" in page
    results = list(RunResults(project.results / "results.jsonl"))
    assert {result.worker for result in results} <= {"gw0", "gw1"} and len(results) == 2


def test_a_run_with_one_worker_goes_beside_one_that_has_the_port(project, server):
    project.write("def test_something(app): app.windows()")
    assert project.run("-n", 1).outcomes == "1 passed"


def test_tests_to_be_watched_do_not_run_side_by_side(project):
    project.write("def test_something(app): pass")
    run = project.run("-n", 2, "--qtdriver-headed")
    assert run.status == pytest.ExitCode.USAGE_ERROR
    assert "--qtdriver-headed does not go with several workers" in run.output


def test_without_namespaces_the_tests_run_one_after_the_other_and_the_run_says_why(without_namespaces):
    without_namespaces.write(
        """
        @pytest.mark.parametrize("number", range(3))
        def test_serial(app, number):
            assert "PYTEST_XDIST_WORKER" not in os.environ
            app.windows()
        """
    )
    run = without_namespaces.run("-n", 4)
    assert run.outcomes == "3 passed"
    assert run.output.count("qtdriver:") == 2  # the page is the other one
    assert (
        "qtdriver: this system allows no network namespaces ('unshare --user --map-current-user --net true' fails: unshare: Operation not "
        "permitted), and agents know one port only: the tests run one after the other\n"
    ) in run.output


def test_a_serial_run_does_not_need_namespaces(without_namespaces):
    without_namespaces.write("def test_something(app): app.windows()")
    run = without_namespaces.run()
    assert (run.outcomes, "namespaces" in run.output) == ("1 passed", False)


def test_plain_workers_stay_as_they_are(project):
    project.write(
        f"""
        def test_network():
            assert "PYTEST_XDIST_WORKER" in os.environ
            assert os.readlink("/proc/self/ns/net") == {os.readlink("/proc/self/ns/net")!r}
        """
    )
    assert project.run("-n", 1, "--qtdriver-workers=plain").outcomes == "1 passed"


def spec(**attributes):
    return SimpleNamespace(**{"popen": True, "ssh": None, "via": None, "python": None, **attributes})


def test_workers_of_this_machine_are_started_on_a_desktop():
    local, chosen, forwarded = spec(), spec(python="python3.9 -X dev"), spec(via="master")
    Workers().pytest_xdist_setupnodes(SimpleNamespace(stash={}), [local, chosen, forwarded])
    assert local.python.endswith(f"with-desktop.sh {sys.executable}")
    assert chosen.python.endswith("with-desktop.sh python3.9 -X dev")
    assert forwarded.python is None
