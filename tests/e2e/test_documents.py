"""Code in the documents runs as their text says: the first tests, the installation, the samples side by side."""

import os
import re
import shutil
import subprocess
from importlib.util import find_spec
from pathlib import Path

import pytest

from preloaded import SANITIZER
from showcase import AGENTS, BUILD, QT

ROOT = Path(__file__).resolve().parents[2]


class FirstTest:
    """The section of a document that has the first test: its code, the file to save it as, and the commands."""

    def __init__(self, document):
        section = (ROOT / document).read_text().partition("\n## A first test\n")[2].partition("\n## ")[0]
        self.code = re.search("```python\n(.*?)```", section, re.DOTALL)[1]
        (self.command,) = re.findall("^    (PYTHONPATH=runner .* -m pytest .*)$", section, re.MULTILINE)
        self.file_name = self.command.split()[-1]
        self.installation = re.findall("^    (.*build/venv.*)$", section, re.MULTILINE)


@pytest.fixture
def checkout(tmp_path):
    """A folder in which commands find what they find in a checkout that is built for the Qt under test."""
    (tmp_path / "runner").symlink_to(ROOT / "runner")
    (tmp_path / "build").mkdir()
    (tmp_path / "build" / "qt5").symlink_to(BUILD)  # the Qt of the documents' paths
    (tmp_path / "pytest.ini").write_text(f"[pytest]\nqtdriver_build = {AGENTS}\n")
    return tmp_path


@pytest.fixture
def speedcrunch():
    """Skips the test where SpeedCrunch cannot be driven."""
    if QT != 5:
        pytest.skip("SpeedCrunch is an application of Qt 5")
    if SANITIZER:
        pytest.skip("SpeedCrunch is built without the sanitizers that the agent needs")
    if shutil.which("speedcrunch") is None:
        pytest.skip("speedcrunch is not installed")
    if not (AGENTS / "qt5").exists():
        pytest.skip("there is no agent for Qt 5")


def run(folder, command):
    """The output of a command, which has to end well."""
    done = subprocess.run(
        command, shell=True, cwd=folder, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True
    )
    assert done.returncode == 0, done.stdout
    return done.stdout


def test_the_first_test_of_the_readme_passes(checkout):
    first = FirstTest("README.md")
    (checkout / first.file_name).write_text(first.code)
    assert "1 passed" in run(checkout, first.command)


def test_the_first_test_of_the_runners_page_passes(checkout, speedcrunch):
    first = FirstTest("docs/runner.md")
    (checkout / first.file_name).write_text(first.code)
    assert "1 passed" in run(checkout, first.command)


def test_the_test_without_names_passes(checkout, speedcrunch):
    first = FirstTest("docs/locators.md")
    (checkout / first.file_name).write_text(first.code)
    assert "1 passed" in run(checkout, first.command)


def test_the_installed_runner_passes_it_too(checkout, speedcrunch):
    for module in ("ensurepip", "setuptools", "wheel"):
        if find_spec(module) is None:
            pytest.skip(f"the Python module {module} is not installed")
    (checkout / "runner").unlink()
    shutil.copytree(
        ROOT / "runner", checkout / "runner", ignore=shutil.ignore_patterns("build", "*.egg-info")
    )
    first = FirstTest("docs/runner.md")
    (checkout / first.file_name).write_text(first.code)
    for command in first.installation:
        output = run(checkout, command)
    assert "1 passed" in output


def test_the_samples_pass_side_by_side(tmp_path):
    options = f"-p no:cacheprovider --qtdriver-build={AGENTS} --qtdriver-qt={QT} --qtdriver-output={tmp_path}"
    output = run(ROOT, f"/usr/bin/python3 -m pytest -v -n 2 {options} examples/tests/test_buttons.py")
    assert "[gw0]" in output and "[gw1]" in output
    assert re.search(r"= \d+ passed in ", output)
