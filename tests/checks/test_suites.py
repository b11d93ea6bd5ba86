"""Every test file and every program for tests is in a suite, and all suites are run as one queue."""

import ast
import json
import os
import re
import subprocess
import sys
from pathlib import Path

import pytest

from test_sources import ROOT, tracked

sys.path.insert(0, str(ROOT / "scripts"))

import suites  # noqa: E402

FOLDERS = ("tests", "examples")


def configured():
    """The builds that are there, those with sanitizers and for Windows last."""
    found = [path.parent.name for path in ROOT.glob("build/*qt*/CMakeCache.txt")]
    return sorted((name for name in found if not name.endswith("-fuzz")), key=lambda name: (len(name), name))


def has(build, option):
    """Whether a build is configured with an option that is off by default."""
    return f"{option}:BOOL=ON" in (ROOT / "build" / build / "CMakeCache.txt").read_text()


@pytest.fixture(scope="module")
def queue():
    """The suites of all builds, as scripts/test.sh has them run."""
    builds = configured()
    assert builds, "no build is configured: scripts/build.sh 5 --configure"
    return [suite for build in builds for suite in suites.suites_of(build, builds)]


def name_of(word):
    return Path(word).name


def test_every_file_of_tests_is_run_by_a_suite(queue):
    files = set(tracked("tests/**/test_*.py", "examples/**/test_*.py"))
    if not any(build.endswith("-asan") for build in configured()):
        files -= set(tracked("tests/sanitized/*"))
    if not any(build.startswith("windows-") for build in configured()):
        files -= set(tracked("tests/windows/*", "tests/e2e/test_windows_programs.py"))
        files -= set(tracked("tests/packages/test_archive.py"))
    if not any(has(build, "QTDRIVER_ALL_WINDOWS_TESTS") for build in configured()):
        files -= set(tracked("tests/windows/test_unit_programs.py", "tests/windows/test_benchmarks.py"))
    if not any(has(build, "QTDRIVER_TEST_PACKAGES") for build in configured()):
        files -= set(tracked("tests/packages/*"))
    run = {Path(word) for suite in queue for word in suite["command"] if word.endswith(".py")}
    assert files and sorted(files - run) == [], "no build has them registered; scripts/build.sh does it"


def test_every_file_of_unit_tests_is_run_by_a_suite(queue):
    files = {source.stem for source in tracked("tests/unit/tst_*.cpp")}
    run = {suite["command"][-1] for suite in queue if "unittests" in map(name_of, suite["command"])}
    assert files and sorted(files - run) == []


def test_every_program_for_tests_is_used_by_one():
    hosts = ROOT / "tests" / "hosts"
    made = {source.stem for source in tracked("tests/hosts/*.cpp") if source.parent == hosts}
    for lists in tracked("tests/hosts/**/CMakeLists.txt", "tests/testtool/CMakeLists.txt"):
        made |= set(
            re.findall(r"^(?:add_executable|qtdriver_add_host)\((\w+) ", lists.read_text(), re.MULTILINE)
        )
    text = "\n".join(source.read_text() for source in tracked("tests/**/*.py"))
    unused = [name for name in sorted(made) if not re.search(rf"\b{name}\b", text)]
    assert made and unused == []


def test_no_test_is_in_a_file_that_pytest_does_not_collect_from():
    hidden = [
        f"{source.relative_to(ROOT)}: {node.name}"
        for source in tracked(*(f"{folder}/**/*.py" for folder in FOLDERS))
        if not source.name.startswith("test_")
        for node in ast.parse(source.read_text()).body
        if isinstance(node, (ast.FunctionDef, ast.ClassDef)) and re.match("test_|Test", node.name)
    ]
    assert hidden == []


def test_what_does_not_depend_on_the_qt_runs_once(queue):
    once = [suite["name"] for suite in queue if suite["group"] == suites.ONCE]
    assert len(once) == len(set(once))
    assert {"checks/test_suites", "fuzz/test_fuzz", "e2e/test_wire"} <= set(once)
    others = [suite["name"] for suite in queue if suite["group"] != suites.ONCE]
    assert all(name.startswith(("qt", "windows-qt")) for name in others)


def write_build(tmp_path, monkeypatch, **builds):
    """Made-up builds, with the tests that CMake would have registered."""
    monkeypatch.setattr(suites, "ROOT", tmp_path)
    for name, tests in builds.items():
        folder = tmp_path / "build" / name.replace("_", "-")
        folder.mkdir(parents=True)
        (folder / "CMakeCache.txt").write_text("QTDRIVER_QT_VERSION:INTERNAL=5.15.8\n")
        (folder / "CTestTestfile.cmake").write_text(tests)


def run_queue(tmp_path, monkeypatch, *arguments):
    """Puts made-up suites into a queue and runs it as scripts/test.sh does; returns the lines of the count."""
    queue = tmp_path / "queue"
    monkeypatch.setattr(sys, "argv", ["suites.py", str(queue), *arguments])
    suites.main()
    ctest = ["ctest", "--test-dir", str(queue), "--parallel", "3", "--output-junit", "results.xml"]
    environment = {**os.environ, "PYTHONDONTWRITEBYTECODE": "1"}
    status = subprocess.run(ctest, capture_output=True, env=environment).returncode
    counting = [sys.executable, str(ROOT / "scripts/count_tests.py"), str(queue / "suites.json")]
    counted = subprocess.run(
        [*counting, str(queue / "results.xml"), str(status)], capture_output=True, text=True
    )
    return counted.returncode, counted.stdout.splitlines(), json.loads((queue / "suites.json").read_text())


ONE_PASSES = r"""add_test(%s printf "collected 1 item\n=== 1 passed in 0.01s ===\n")
"""
ONE_IS_KILLED = r"""add_test(%s sh -c "echo collected 1 item; kill -9 $$")
"""


@pytest.fixture
def built(monkeypatch):
    """Builds that end at once."""
    for name in ("qt5", "qt4", "qt5-asan"):
        monkeypatch.setitem(suites.BUILD_COMMANDS, name, ["true"])


def test_suites_of_several_builds_are_one_queue(tmp_path, monkeypatch, built):
    once = ONE_PASSES % "checks/a" + 'set_tests_properties(checks/a PROPERTIES LABELS "once")\n'
    write_build(
        tmp_path,
        monkeypatch,
        qt5=ONE_PASSES % "protocol/a" + ONE_PASSES % "unit/a" + once,
        qt4=ONE_PASSES % "protocol/a" + once,
        qt5_asan=ONE_PASSES % "protocol/a" + ONE_PASSES % "unit/a" + once,
    )
    status, lines, listed = run_queue(tmp_path, monkeypatch, "qt5", "qt4", "qt5-asan")
    assert (status, lines[-1]) == (0, "5 passed, 0 failed")
    assert [suite["name"] for suite in listed if suite["kind"] == "tests"] == [
        "qt5/protocol/a",
        "qt5/unit/a",
        "checks/a",
        "qt4/protocol/a",
        "qt5-asan/protocol/a",
    ]
    assert "Qt 5.15.8 with sanitizers: 1 passed, 0 failed" in lines


def test_a_build_with_sanitizers_alone_runs_all_its_suites(tmp_path, monkeypatch, built):
    write_build(tmp_path, monkeypatch, qt5_asan=ONE_PASSES % "protocol/a" + ONE_PASSES % "unit/a")
    assert run_queue(tmp_path, monkeypatch, "qt5-asan")[1][-1] == "2 passed, 0 failed"


def test_a_part_is_the_suites_that_are_named_so(tmp_path, monkeypatch, built):
    write_build(
        tmp_path,
        monkeypatch,
        qt5=ONE_PASSES % "protocol/a" + ONE_PASSES % "unit/a",
        qt4=ONE_PASSES % "unit/a",
    )
    _, lines, listed = run_queue(tmp_path, monkeypatch, "--only", "qt5/unit", "qt5", "qt4")
    assert lines[-1] == "1 passed, 0 failed"
    assert [suite["name"] for suite in listed] == ["build/qt5", "qt5/unit/a"]


def made_up_suites(folder, *wanted):
    """Suites of one file each, by their names, sizes and time-outs."""
    for name, size, timeout in wanted:
        file = folder / f"{name.replace('/', '-')}.py"
        file.write_text("#" * size)
        command = ["pytest", str(file)]
        yield {"name": name, "command": command, "properties": {"TIMEOUT": timeout}}


def test_small_files_that_run_alike_are_one_suite_as_long_as_one_of_the_longer(tmp_path):
    wanted = (
        ("qt5/protocol/test_a", 12000, 600),
        ("qt5/protocol/test_b", 12000, 600),
        ("qt5/protocol/test_c", 12000, 600),  # too long for the first two
        ("qt5/protocol/test_d", 30, 1200),  # another time-out
        ("qt5/unit/test_e", 30, 1200),  # another folder
        ("qt5/unit/test_f", 30, 1200),  # not of protocol/ or e2e/
        ("qt5/e2e/test_a", 30, 600),
        ("qt5/e2e/test_b", 30, 600),
        ("e2e/test_c", 30, 600),  # of no build
        ("qt6/protocol/test_a", 30, 600),
        ("qt6/protocol/test_b", 30, 600),
    )
    before = list(made_up_suites(tmp_path, *wanted))
    files = [suite["command"][1] for suite in before]
    together = suites.put_together(before)
    assert [suite["name"] for suite in together] == [
        "qt5/protocol/test_a+test_b",
        "qt5/protocol/test_c",
        "qt5/protocol/test_d",
        "qt5/unit/test_e",
        "qt5/unit/test_f",
        "qt5/e2e/test_a+test_b",
        "e2e/test_c",
        "qt6/protocol/test_a+test_b",
    ]
    assert [file for suite in together for file in suite["command"][1:]] == files


def test_a_killed_worker_is_a_failure(tmp_path, monkeypatch, built):
    write_build(tmp_path, monkeypatch, qt5=ONE_PASSES % "unit/a" + ONE_IS_KILLED % "unit/b")
    assert run_queue(tmp_path, monkeypatch, "qt5")[:2] == (
        1,
        ["failed: qt5/unit/b: 0 passed, 1 failed", "Qt 5.15.8: 1 passed, 1 failed", "1 passed, 1 failed"],
    )


def test_a_build_that_fails_takes_its_suites_with_it(tmp_path, monkeypatch, built):
    monkeypatch.setitem(suites.BUILD_COMMANDS, "qt4", ["false"])
    write_build(tmp_path, monkeypatch, qt5=ONE_PASSES % "unit/a", qt4=ONE_PASSES % "unit/a")
    status, lines, _ = run_queue(tmp_path, monkeypatch, "qt5", "qt4")
    assert (status, lines[-1]) == (1, "1 passed, 2 failed")
