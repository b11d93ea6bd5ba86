"""A click and its awaited effect in the showcase: by the runner, and over a bare socket that asks without a pause."""

import os
import socket
import statistics
import sys
import time
from contextlib import closing
from pathlib import Path
from typing import Any, Callable, Dict, List

from wire import Line

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "runner"))

from qtdriver import App, Driver, eventually  # noqa: E402

WARM_UP = 5
CLICK = "+5,%s,%s,,,," % (b"Roastery".hex(), b'path="brewButton"'.hex())
COUNT = b"7,Roastery,clickCount,,text,"
Click = Callable[[int], None]


def by_runner(app: App) -> Click:
    """Clicks once and returns when as many cups have been brewed as expected."""
    window = app.window("Roastery")
    button, cups = window.widget("brewButton"), window.widget("clickCount")

    def click(number: int) -> None:
        button.activate()
        eventually(cups).has(text=str(number))

    return click


def over_socket(agent: Line) -> Click:
    """The same, with no more than the bytes that have to be sent."""

    def click(number: int) -> None:
        expected = b"0,u:" + str(number).encode().hex().encode()
        assert agent.ask(CLICK.encode()).startswith(b"0,")
        while agent.ask(COUNT) != expected:
            pass

    return click


def microseconds(click: Click, number: int) -> float:
    start = time.perf_counter_ns()
    click(number)
    return (time.perf_counter_ns() - start) / 1000


def measure(build: Path, quick: bool) -> List[Dict[str, Any]]:
    """One result. The two take turns over one connection: two starts of the same program differ by more than they do."""
    rounds = WARM_UP + (5 if quick else 200)
    ours: List[float] = []
    floor: List[float] = []
    with closing(Driver(build=build.parent)) as driver:
        app = driver.launch(build / "bin" / "showcase")
        with socket.socket(fileno=os.dup(app.connection.fileno())) as connected:
            runner, bare = by_runner(app), over_socket(Line(connected))
            for number in range(1, 2 * rounds, 2):
                ours.append(microseconds(runner, number))
                floor.append(microseconds(bare, number + 1))
    return [
        {
            "name": "awaited_click",
            "what": "a click and its awaited effect in the showcase",
            "unit": "µs",
            "ours": statistics.median(ours[WARM_UP:]),
            "floor": statistics.median(floor[WARM_UP:]),
        }
    ]
