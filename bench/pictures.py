#!/usr/bin/env python3
"""Measures what a picture of the screen costs a test: pictures.py [--rounds N] [--build DIR], on a desktop of its own

    scripts/with-desktop.sh /usr/bin/python3 bench/pictures.py

It chooses tabs of the showcase, which changes most of what is shown, in turns with a recorder that takes pictures of the
whole screen (1280 by 1024 pixels) and with one that takes none. Prints how much longer the test takes for each picture, by
the clock and in processor time of its own process: medians of the rounds, and the difference between the fastest ones.
"""

import argparse
import statistics
import sys
import tempfile
import time
from pathlib import Path
from typing import Dict, List, NamedTuple, Optional

ROOT = Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "runner"))

from qtdriver import App, Driver  # noqa: E402
from qtdriver.desktop.screen_process import SCREENS, Pending  # noqa: E402
from qtdriver.trace.recorder import Recorder  # noqa: E402

TABS = ("Buttons", "Entry fields", "Lists", "Tables")
TARGET = 15.0
"""Milliseconds of the test's time for a picture."""


class CountingRecorder(Recorder):
    """Counts the pictures that it orders."""

    ordered = 0

    def _order(self, app: App, delay: float) -> Optional[Pending]:
        picture = super()._order(app, delay)
        self.ordered += picture is not None
        return picture


class Round(NamedTuple):
    """Seconds of the test by the clock and in its own processor time, and the number of pictures."""

    clock: float
    processor: float
    pictures: int


def play(driver: Driver, app: App, folder: Path, screenshots: bool) -> Round:
    """Chooses each tab a few times."""
    tabs = app.window(name="showcase").widget("pages/qt_tabwidget_tabbar")
    recorder = CountingRecorder(folder, screenshots=screenshots)
    driver.listeners.append(recorder)
    clock, processor = time.monotonic(), time.process_time()
    for _ in range(5):
        for name in TABS:
            tabs.select(name)
    result = Round(time.monotonic() - clock, time.process_time() - processor, recorder.ordered)
    driver.listeners.remove(recorder)
    recorder.close(keep=False)
    return result


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--rounds", type=int, default=12)
    parser.add_argument("--build", type=Path, default=ROOT / "build" / "qt5")
    options = parser.parse_args()
    rounds: Dict[bool, List[Round]] = {True: [], False: []}
    with tempfile.TemporaryDirectory() as folder, Driver(build=options.build / "agents") as driver:
        app = driver.launch(options.build.resolve() / "bin" / "showcase")
        play(driver, app, Path(folder), True)  # the process that takes the pictures starts
        for number in range(options.rounds):
            for screenshots in (False, True) if number % 2 else (True, False):
                rounds[screenshots].append(play(driver, app, Path(folder), screenshots))
    SCREENS.finish()
    pictures = rounds[True][0].pictures
    for name in ("clock", "processor"):
        pairs = [(getattr(on, name), getattr(off, name)) for on, off in zip(rounds[True], rounds[False])]
        each = statistics.median(on - off for on, off in pairs) / pictures
        least = (min(on for on, _ in pairs) - min(off for _, off in pairs)) / pictures
        print(
            f"{name}: {1000 * each:.1f} ms a picture, the fastest: {1000 * least:.1f} ms; target: {TARGET:g} ms; "
            f"{pictures} pictures in {5 * len(TABS)} steps"
        )


if __name__ == "__main__":
    main()
