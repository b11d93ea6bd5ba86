"""`doctor` on Windows programs: Wine, its prefix, the agents, and a program that cannot be driven."""

import json
import os
import subprocess
from pathlib import Path

import pytest

import winestandin
from qtdriver.launch import wine
from windowsprograms import Workshop, agents

QTDRIVER = str(Path(__file__).resolve().parents[2] / "scripts" / "qtdriver")


@pytest.fixture
def place(tmp_path, monkeypatch):
    winestandin.install(tmp_path, monkeypatch)
    return tmp_path


@pytest.fixture
def workshop(place):
    (place / "app").mkdir()
    return Workshop(place / "app")


@pytest.fixture
def examine(place):
    """Runs the doctor with the build folder of the place; answers findings by check."""

    def call(*program, **variables):
        command = [QTDRIVER, "doctor", "--json", "--build", str(place / "build")]
        command += ["--", *map(str, program)] if program else []
        environment = {**os.environ, **variables}
        finished = subprocess.run(command, capture_output=True, text=True, timeout=60, env=environment)
        assert finished.stderr == ""
        return {finding["check"]: finding for finding in json.loads(finished.stdout)}

    return call


def test_the_wine_that_is_there_is_told(examine, place):
    assert examine()["Wine"]["text"] == str(place / "bin" / "wine")


def test_a_missing_wine_is_noted_with_its_packages(examine, place):
    tools = place / "tools"
    tools.mkdir()
    for name in ("bash", "dirname", "readlink", "python3"):
        (tools / name).symlink_to(f"/usr/bin/{name}")
    finding = examine(PATH=str(tools))["Wine"]
    assert (finding["result"], finding["remedy"]) == ("note", "apt install wine wine64")


def test_a_prefix_that_is_not_made_yet_is_noted_and_not_made(examine, place):
    assert "is not made yet" in examine()["Wine's prefix"]["text"]
    assert not (place / "made").exists()
    assert examine()["Wine's prefix"]["result"] == "note"
    made = wine.make_pattern()
    assert (examine()["Wine's prefix"]["result"], examine()["Wine's prefix"]["text"]) == ("ok", str(made))


def test_a_named_prefix_that_is_not_there_is_noted(examine, place):
    finding = examine(WINEPREFIX=str(place / "nowhere"))["Wine's prefix"]
    assert finding["result"] == "note" and "where there is none" in finding["text"]


def test_the_agents_for_windows_are_told(examine, place, workshop):
    assert examine()["agents for Windows"]["remedy"].endswith("scripts/build.sh 5 --windows")
    for major in (4, 6):
        agents(workshop, place / "build", major)
    assert examine()["agents for Windows"]["text"] == "Qt 4, Qt 6"


def test_a_windows_program_with_an_agent_is_well(examine, place, workshop):
    agents(workshop, place / "build", 5)
    workshop.library("Qt5Widgets.dll")
    program = workshop.program(workshop.import_library("Qt5Widgets.dll"))
    finding = examine(program)["program"]
    assert finding["result"] == "ok" and "uses Qt 5, and there is an agent for it" in finding["text"]


def test_a_windows_program_without_an_agent_is_a_problem(examine, workshop):
    program = workshop.program(workshop.import_library("Qt6Widgets.dll"))
    finding = examine(program)["program"]
    assert finding["result"] == "problem" and "scripts/build.sh 6 --windows" in finding["remedy"]


def test_missing_libraries_of_a_windows_program_are_a_problem(examine, place, workshop):
    wine.make_pattern()
    agents(workshop, place / "build", 5)
    program = workshop.program(workshop.import_library("Qt5Widgets.dll"))
    finding = examine(program, QT5_WINDOWS="")["program"]
    assert finding["result"] == "problem" and "needs Qt5Widgets.dll" in finding["text"]
    assert "QT5_WINDOWS" in finding["remedy"]
