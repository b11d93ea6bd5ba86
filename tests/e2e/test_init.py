"""`qtdriver init`: the folder that it writes, and what it says of the first run."""

import ast
import json
import subprocess
from pathlib import Path

import pytest
import tomllib
import yaml

from qtdriver.project.writing import write_project

from showcase import AGENTS, PROGRAM

QTDRIVER = str(Path(__file__).resolve().parents[2] / "scripts" / "qtdriver")
FILES = {
    "conftest.py",
    "test_first.py",
    "pyproject.toml",
    ".gitlab-ci.yml",
    ".github/workflows/gui-tests.yml",
}


def init(*arguments, status=0):
    """The output of the command, and that on standard error."""
    finished = subprocess.run(
        [QTDRIVER, "init", *map(str, arguments)], capture_output=True, text=True, timeout=120
    )
    assert finished.returncode == status, finished.stdout + finished.stderr
    return finished.stdout + finished.stderr


def files_below(folder):
    return {str(path.relative_to(folder)) for path in folder.rglob("*") if path.is_file()}


def test_the_first_test_is_run_and_its_result_told_with_the_report(tmp_path):
    told = init(tmp_path / "tests", "--build", AGENTS, "--", PROGRAM)
    assert "1 passed" in told and f"{tmp_path}/tests/test-results/report.html" in told
    assert FILES <= files_below(tmp_path / "tests")
    (again,) = [line.partition(": ")[2] for line in told.splitlines() if line.startswith("again: ")]
    assert again.startswith(f"cd {tmp_path}/tests && ")
    assert "-m pytest" in again


def test_a_test_that_fails_is_told_with_its_output(tmp_path):
    told = init(tmp_path, "--build", AGENTS, "--", "/bin/ls", status=1)
    assert "links no Qt" in told
    assert files_below(tmp_path) == set()
    (tmp_path / "test_other.py").write_text("def test_that_fails():\n    assert 1 == 2\n")
    told = init(tmp_path, "--build", AGENTS, "--", PROGRAM, status=1)
    assert "1 failed, 1 passed" in told and "assert 1 == 2" in told


def test_files_that_are_there_stay_and_are_told(tmp_path):
    (tmp_path / "conftest.py").write_text("# mine\n")
    told = init(tmp_path, "--no-run", "--json", "--", PROGRAM)
    data = json.loads(told)
    assert data["kept"] == ["conftest.py"] and set(data["new"]) == FILES - {"conftest.py"}
    assert (tmp_path / "conftest.py").read_text() == "# mine\n"


def test_without_an_application_nothing_is_written(tmp_path):
    told = init(tmp_path / "new", status=2)
    assert "qtdriver init FOLDER -- APP ARGS..." in told
    assert not (tmp_path / "new").exists()


@pytest.mark.parametrize("command", [["editor"], ["/opt/my editor", 'a "b"', "c\\d"]])
def test_the_application_and_its_arguments_are_written_as_they_are(tmp_path, command):
    write_project(tmp_path, command)
    call = next(
        node
        for node in ast.walk(ast.parse((tmp_path / "conftest.py").read_text()))
        if isinstance(node, ast.Call) and ast.unparse(node.func) == "qtdriver.launch"
    )
    assert [ast.literal_eval(argument) for argument in call.args] == command
    compile((tmp_path / "test_first.py").read_text(), "test_first.py", "exec")
    assert tomllib.loads((tmp_path / "pyproject.toml").read_text())["tool"]["pytest"]["ini_options"]
    for name in (".gitlab-ci.yml", ".github/workflows/gui-tests.yml"):
        text = (tmp_path / name).read_text()
        assert "$" not in text and ("packages/*.deb editor" in text) == (command == ["editor"])
        jobs = yaml.safe_load(text)
        assert "gui-tests" in jobs.get("jobs", jobs)
