"""Round trips to an application, beside an echo and beside Qt's own calls for the same thing in that application."""

import itertools
import statistics
import subprocess
from typing import Any, Dict, List

from rows import TRIPS_OF_COMMANDS, Trip
from wire import Line, accept, listen, wait_until_ready

# Events that were only posted are handled before the reply to this.
SETTLING = b"8,Bench"


def times(agent: Line, floor: Line, trip: Trip, rounds: int) -> Dict[str, float]:
    """Medians in microseconds of the request, the echo of it, and Qt's calls for it, taken in turns.

    An echo comes before each of the two others: what the window manager still has to do for the last one then disturbs
    neither more than the other.
    """
    taken: Dict[str, List[float]] = {"ours": [], "echo": [], "qt": []}
    for request in trip.requests:
        wait_until_ready(agent, request, trip.reply)
    requests = itertools.cycle(request.encode() for request in trip.requests)
    for number in range(rounds + rounds // 10):
        request = next(requests)
        turns = [
            ("echo", floor, request),
            ("ours", agent, request),
            ("echo", floor, request),
            ("qt", floor, b"qt " + trip.command.encode()),
        ]
        for side, line, text in turns:
            microseconds = line.microseconds(text)
            agent.ask(SETTLING)
            if number >= rounds // 10:
                taken[side].append(microseconds)
    return {side: statistics.median(values) for side, values in taken.items()}


def memory(agent: Line, floor: Line, trip: Trip, rounds: int) -> Dict[str, float]:
    """One request's use of the heap: calls for memory, bytes at its peak, bytes that stay."""
    requests = [request.encode() for request in trip.requests]
    for request in requests:
        agent.ask(request)
    floor.ask(b"heap reset")
    agent.ask(requests[-1])
    before = [int(value) for value in floor.ask(b"heap").split()]
    for number in range(rounds):
        agent.ask(requests[number % len(requests)])
    after = [int(value) for value in floor.ask(b"heap").split()]
    return {
        "allocations": (after[0] - before[0]) / rounds,
        "retained_bytes": (after[1] - before[1]) / rounds,
        "peak_bytes": after[2] - min(before[1], 0),
    }


def click_until_seen(agent: Line, rounds: int) -> float:
    """The median of a click and a read of what it changed."""
    taken = []
    for number in range(rounds):
        name = b"button%d" % (10 + number % 2)
        read = b"7,Bench," + name + b",,checked,"
        before = agent.ask(read)
        microseconds = agent.microseconds(b"5,Bench," + name + b",,,")
        for _ in range(100):
            microseconds += agent.microseconds(read)
            if agent.ask(read) != before:
                break
        assert agent.ask(read) != before, "the click had no effect"
        taken.append(microseconds)
    return statistics.median(taken)


def measure(command: List[str], quick: bool, counts_memory: bool = True) -> List[Dict[str, Any]]:
    """One result for each command, and one for a click with its effect. `command` starts the application with the agent."""
    agents, floors = listen(4242), listen(0)
    host = subprocess.Popen([*command, str(floors.getsockname()[1])])
    rounds = 20 if quick else 400
    try:
        floor, agent = accept(floors), accept(agents)
        assert agent.read().startswith(b"+client+")
        results = []
        for trip in TRIPS_OF_COMMANDS:
            figures = times(agent, floor, trip, rounds)
            result = {
                "name": f"command_{trip.command}",
                "what": f"{trip.what} ({trip.command})",
                "unit": "µs",
                "ours": figures["ours"],
                "floor": figures["echo"],
                "qt": figures["qt"],
            }
            if counts_memory:
                result["memory"] = memory(agent, floor, trip, rounds)
            results.append(result)
        clicks = {"name": "click_read", "what": "a click, and a read of what it changed", "unit": "µs"}
        qt_click = next(result["qt"] for result in results if result["name"] == "command_5")
        echo = next(result["floor"] for result in results if result["name"] == "command_7")
        results.append({**clicks, "ours": click_until_seen(agent, rounds), "floor": qt_click + echo})
        return results
    finally:
        host.kill()
        host.wait()
