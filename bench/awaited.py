"""A click and its awaited effect in the showcase: by the runner, and over a bare socket that asks without a pause."""

import os
import statistics
import subprocess
import sys
import time
from contextlib import closing
from pathlib import Path
from typing import Any, Callable, Dict, List

from wire import Line, listen, wait_until_ready

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "runner"))

from qtdriver import Driver, eventually  # noqa: E402

WARM_UP = 5


def click_times(click: Callable[[int], None], rounds: int) -> List[float]:
    """Microseconds of each click until the cups that were brewed are as many as expected."""
    taken = []
    for number in range(1, WARM_UP + rounds + 1):
        start = time.perf_counter_ns()
        click(number)
        taken.append((time.perf_counter_ns() - start) / 1000)
    return taken[WARM_UP:]


def by_runner(build: Path, rounds: int) -> List[float]:
    with closing(Driver(build=build.parent)) as driver:
        window = driver.launch(build / "bin" / "showcase").window("Roastery")
        button, cups = window.widget("brewButton"), window.widget("clickCount")

        def click(number: int) -> None:
            button.activate()
            eventually(cups).has(text=str(number))

        return click_times(click, rounds)


def over_socket(build: Path, rounds: int) -> List[float]:
    library = build / "lib" / "libqtdriver-preload.so"
    with closing(listen(4242)) as server:
        host = subprocess.Popen(
            [build / "bin" / "showcase"],
            env={**os.environ, "LD_PRELOAD": str(library)},
            stdout=subprocess.DEVNULL,
        )
        try:
            agent = Line(server)
            assert agent.read().startswith(b"+client+")
            while not agent.ask(b"7,Roastery,clickCount,,text,").startswith(b"0,"):
                time.sleep(0.01)
            activation = "+5,%s,%s,,,," % (b"Roastery".hex(), b'path="brewButton"'.hex())
            wait_until_ready(agent, activation, "0,")

            def click(number: int) -> None:
                expected = b"0,u:" + str(1 + number).encode().hex().encode()
                assert agent.ask(activation.encode()).startswith(b"0,")
                while agent.ask(b"7,Roastery,clickCount,,text,") != expected:
                    pass

            return click_times(click, rounds)
        finally:
            host.kill()
            host.wait()


def measure(build: Path, quick: bool) -> List[Dict[str, Any]]:
    """One result. The two take turns with a showcase of their own each, for two would cover each other."""
    turns, rounds = (1, 5) if quick else (4, 50)
    ours: List[float] = []
    floor: List[float] = []
    for _ in range(turns):
        ours += by_runner(build, rounds)
        floor += over_socket(build, rounds)
    return [
        {
            "name": "awaited_click",
            "what": "a click and its awaited effect in the showcase",
            "unit": "µs",
            "ours": statistics.median(ours),
            "floor": statistics.median(floor),
        }
    ]
