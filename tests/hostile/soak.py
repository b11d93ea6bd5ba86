"""Plays many random commands on the hostile applications: soak.py --build DIR [--commands N] [--seed S] ...

Ends with status 1 when anything was found. scripts/soak.sh builds and runs it.
"""

from __future__ import annotations

import argparse
import collections
import random
import socket
import sys
import time
from dataclasses import dataclass, field
from pathlib import Path
from typing import Counter, Dict, List

ROOT = Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "runner"), str(Path(__file__).resolve().parent)]
sys.path.append(str(ROOT / "tests" / "protocol"))

from agentserver import listen  # noqa: E402
from session import SCENARIOS, Finding, Result, derived_seed, play  # noqa: E402

COMMANDS_OF_A_SESSION = 500
"""A session that is not longer than this can be repeated by itself."""


@dataclass
class Tally:
    """The numbers of all sessions that have ended."""

    played: Dict[str, int]
    """Commands, by scenario."""
    findings: List[str] = field(default_factory=list)
    sessions: int = 0
    ended_early: int = 0
    codes: Counter[str] = field(default_factory=collections.Counter)
    faults: Counter[str] = field(default_factory=collections.Counter)
    started: float = field(default_factory=time.monotonic)

    @property
    def commands(self) -> int:
        return sum(self.played.values())

    def add(self, scenario: str, result: Result) -> None:
        """Counts a session without a finding."""
        self.played[scenario] += max(result.played, 1)
        self.codes += result.codes
        self.faults += result.faults
        self.ended_early += result.ended_early

    def add_finding(self, scenario: str, seed: int) -> None:
        """Counts a session that a finding ended."""
        self.findings.append(f"{scenario} {seed}")
        self.played[scenario] += COMMANDS_OF_A_SESSION // 4

    def print_progress(self) -> None:
        seconds = time.monotonic() - self.started
        print(
            f"soak: {self.commands} commands in {self.sessions} sessions, "
            f"{self.ended_early} ended by the application, {len(self.findings)} findings, "
            f"{seconds:.0f} s, {self.commands / seconds:.0f} a second",
            flush=True,
        )

    def print_summary(self) -> None:
        print("soak: " + ", ".join(f"{name} {count}" for name, count in self.played.items()))
        codes = ", ".join(f"{code}: {count}" for code, count in sorted(self.codes.items()))
        print(f"soak: replies: {codes}")
        faults = ", ".join(f"{name} {count}" for name, count in self.faults.most_common())
        print(f"soak: {sum(self.faults.values())} faults: {faults}")


def main() -> int:
    """Plays session after session, one scenario after the other."""
    options = _options()
    seed = options.seed if options.seed is not None else random.SystemRandom().randrange(2**32)
    print(f"soak: seed {seed}, {options.commands} commands, build {options.build}", flush=True)
    server = listen()
    tally = Tally(dict.fromkeys(options.scenarios, 0))
    while tally.commands < options.commands and len(tally.findings) < options.findings:
        _play_session(options, seed, tally, server)
        if tally.sessions % 20 == 0:
            tally.print_progress()
    tally.print_progress()
    tally.print_summary()
    print(f"soak: seed {seed}: {len(tally.findings)} findings {tally.findings}")
    return 1 if tally.findings else 0


def _play_session(options: argparse.Namespace, seed: int, tally: Tally, server: socket.socket) -> None:
    """Plays a session of the scenario that has had the fewest commands."""
    number = options.first + tally.sessions
    scenario = min(tally.played, key=lambda name: tally.played[name])
    wanted = min(COMMANDS_OF_A_SESSION, options.commands - tally.commands)
    own_seed = options.session_seed
    if own_seed is None:
        own_seed = derived_seed(seed, number, SCENARIOS.index(scenario))
    try:
        tally.add(scenario, play(options.build, scenario, own_seed, wanted, server))
    except Finding as finding:
        tally.add_finding(scenario, own_seed)
        print(f"\nFINDING {len(tally.findings)} in session {number}: {finding}\n", flush=True)
        print(f"repeat by: --scenarios {scenario} --session-seed {own_seed} --commands {wanted}", flush=True)
    tally.sessions += 1


def _options() -> argparse.Namespace:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", type=Path, required=True, help="the build folder with bin/ and lib/")
    parser.add_argument("--commands", type=int, default=100000)
    parser.add_argument("--seed", type=int, help="of the whole run; a fresh one by default")
    parser.add_argument("--first", type=int, default=0, help="the number of the session to begin with")
    parser.add_argument("--session-seed", type=int, help="repeat the session with this seed")
    parser.add_argument("--scenarios", nargs="+", default=list(SCENARIOS), choices=SCENARIOS)
    parser.add_argument("--findings", type=int, default=5, help="stop at so many findings")
    return parser.parse_args()


if __name__ == "__main__":
    sys.exit(main())
