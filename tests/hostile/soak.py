"""Plays many random commands on the hostile applications: soak.py --build DIR [--commands N] [--seed S] ...

Ends with status 1 when anything was found. scripts/soak.sh builds and runs it.
"""

from __future__ import annotations

import argparse
import collections
import random
import sys
import time
from pathlib import Path
from typing import Counter, Dict, List

ROOT = Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "runner"), str(Path(__file__).resolve().parent)]

from session import SCENARIOS, Finding, derived_seed, listen, play  # noqa: E402

COMMANDS_OF_A_SESSION = 500
"""A session that is not longer than this can be repeated by itself."""


def main() -> int:
    """Plays session after session, one scenario after the other."""
    options = _options()
    seed = options.seed if options.seed is not None else random.SystemRandom().randrange(2**32)
    print(f"soak: seed {seed}, {options.commands} commands, build {options.build}", flush=True)
    server = listen()
    started = time.monotonic()
    played: Dict[str, int] = dict.fromkeys(options.scenarios, 0)
    findings: List[str] = []
    ended_early = sessions = 0
    codes: Counter[str] = collections.Counter()
    deeds: Counter[str] = collections.Counter()
    number = options.first
    while sum(played.values()) < options.commands and len(findings) < options.findings:
        scenario = min(played, key=lambda name: played[name])
        wanted = min(COMMANDS_OF_A_SESSION, options.commands - sum(played.values()))
        own_seed = options.session_seed
        if own_seed is None:
            own_seed = derived_seed(seed, number, SCENARIOS.index(scenario))
        try:
            result = play(options.build, scenario, own_seed, wanted, server)
            played[scenario] += max(result.played, 1)
            codes += result.codes
            deeds += result.deeds
            ended_early += result.ended_early
        except Finding as finding:
            findings.append(f"{scenario} {own_seed}")
            played[scenario] += COMMANDS_OF_A_SESSION // 4
            print(f"\nFINDING {len(findings)} in session {number}: {finding}\n", flush=True)
            print(
                f"repeat by: --scenarios {scenario} --session-seed {own_seed} --commands {wanted}", flush=True
            )
        number += 1
        sessions += 1
        if sessions % 20 == 0:
            _print_progress(sum(played.values()), started, sessions, ended_early, len(findings))
    _print_progress(sum(played.values()), started, sessions, ended_early, len(findings))
    print("soak: " + ", ".join(f"{name} {count}" for name, count in played.items()))
    print("soak: replies: " + ", ".join(f"{code}: {count}" for code, count in sorted(codes.items())))
    print(
        f"soak: {sum(deeds.values())} deeds: "
        + ", ".join(f"{name} {count}" for name, count in deeds.most_common())
    )
    print(f"soak: seed {seed}: {len(findings)} findings {findings}")
    return 1 if findings else 0


def _print_progress(commands: int, started: float, sessions: int, ended_early: int, findings: int) -> None:
    seconds = time.monotonic() - started
    print(
        f"soak: {commands} commands in {sessions} sessions, {ended_early} ended by the application, "
        f"{findings} findings, {seconds:.0f} s, {commands / seconds:.0f} a second",
        flush=True,
    )


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
