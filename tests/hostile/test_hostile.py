"""The short form of the soak test: each scenario with a fixed seed. scripts/soak.sh plays fresh ones."""

import os
from collections import Counter
from pathlib import Path

import pytest

from agentserver import listen
from session import SCENARIOS, play

BUILD = Path(os.environ.get("QTDRIVER_BUILD", Path(__file__).resolve().parents[2] / "build" / "qt5"))
COMMANDS = 150
LEAST_CARRIED_OUT = 15
MOST_COMMANDS = 10 * COMMANDS
FIXED_SEED = 7


@pytest.fixture(scope="module")
def server():
    with listen() as listening:
        yield listening


@pytest.mark.parametrize("scenario", SCENARIOS)
def test_each_command_has_one_reply_whatever_the_application_does(server, scenario):
    played, codes, faults = 0, Counter(), Counter()
    # When an application hides its windows, and so how many commands find one, depends on the machine's pace.
    while played < COMMANDS or (codes["0"] < LEAST_CARRIED_OUT and played < MOST_COMMANDS):
        result = play(BUILD, scenario, FIXED_SEED + played, max(COMMANDS - played, COMMANDS // 2), server)
        played += max(result.played, 1)
        codes += result.codes
        faults += result.faults
    assert (
        sum(codes.values()) > COMMANDS / 2
    ), "the applications ended too soon for the commands to mean anything"
    assert codes["0"] >= LEAST_CARRIED_OUT, f"too few commands were carried out: {codes}"
    # By the application's own account; without faults it would have been a peaceful one.
    assert faults, "the applications have done nothing to themselves"


def test_the_applications_are_hostile(server):
    faults = Counter()
    for scenario in SCENARIOS[:4]:
        faults += play(BUILD, scenario, FIXED_SEED, 100, server).faults
    assert sum(faults.values()) > 20, faults
