"""`doctor`: what is found, and how it is said."""

import json
import os
import subprocess
from pathlib import Path

import pytest

from qtdriver import Server
from qtdriver.commandline.listeners import listener_of

QTDRIVER = str(Path(__file__).resolve().parents[2] / "scripts" / "qtdriver")


@pytest.fixture
def examine(build):
    """Runs the doctor with a build folder that has an agent for Qt 5 only; answers findings by check, and the status."""

    def call(*program, environment=()):
        command = [QTDRIVER, "doctor", "--json", "--build", str(build)]
        command += ["--", *program] if program else []
        finished = subprocess.run(
            command, capture_output=True, text=True, timeout=60, env={**os.environ, **dict(environment)}
        )
        assert finished.stderr == ""
        return {finding["check"]: finding for finding in json.loads(finished.stdout)}, finished.returncode

    return call


def test_a_healthy_place_has_no_problem(examine, build):
    findings, status = examine()
    assert status == 0
    assert findings["Python"]["result"] == "ok"
    assert findings["agent for Qt 5"]["text"] == f"{build}/qt5/lib/libqtdriver-preload.so"
    assert findings["port 4242"]["text"] == "127.0.0.1:4242 is free"
    assert findings["display"]["text"] == os.environ["DISPLAY"]
    assert findings["window manager"]["result"] == "ok"


def test_a_missing_agent_is_told_with_the_command_that_builds_it(examine):
    findings, _ = examine()
    missing = findings["agent for Qt 6"]
    assert missing["result"] == "note" and missing["text"].startswith("is not built")
    assert "scripts/build.sh 6" in missing["remedy"]


def test_no_agent_at_all_is_a_problem(tmp_path):
    finished = subprocess.run([QTDRIVER, "doctor", "--build", str(tmp_path)], capture_output=True, text=True)
    assert finished.returncode == 1
    assert "PROBLEM  agents: there is none for any Qt" in finished.stdout
    assert "scripts/build.sh 5, or the number of your Qt" in finished.stdout
    assert finished.stdout.splitlines()[-1] == "1 problem"


def test_a_taken_port_is_told_with_its_owner(examine):
    with Server():
        findings, status = examine()
    assert status == 1
    assert findings["port 4242"]["result"] == "problem"
    assert f"(process {os.getpid()})" in findings["port 4242"]["text"]
    assert "--headless" in findings["port 4242"]["remedy"]


def test_nobody_listens_on_a_free_port():
    assert listener_of(4242) is None


def test_a_display_that_is_not_there_is_a_problem_and_none_at_all_a_note(examine):
    findings, status = examine(environment={"DISPLAY": ":4321"})
    assert (findings["display"]["result"], status) == ("problem", 1)
    findings, status = examine(environment={"DISPLAY": ""})
    assert (findings["display"]["result"], status) == ("note", 0)
    assert "--headless" in findings["display"]["remedy"]


def test_forbidden_namespaces_are_noted(examine, tmp_path):
    fake = tmp_path / "unshare"
    fake.write_text("#!/bin/sh\nexit 1\n")
    fake.chmod(0o755)
    findings, _ = examine(environment={"PATH": f"{tmp_path}:{os.environ['PATH']}"})
    assert "the system forbids them" in findings["namespaces"]["text"]


def test_a_program_is_looked_at_too(examine):
    findings, status = examine("speedcrunch")
    assert "uses Qt 5, and there is an agent for it" in findings["speedcrunch"]["text"]
    findings, status = examine("/bin/true")
    assert (findings["/bin/true"]["result"], status) == ("problem", 1)
    assert "links no Qt" in findings["/bin/true"]["text"]
