"""Counts what recording costs an application: bench/recording.py BUILD, such as build/qt5. It is no part of the table.

Run it on a desktop: scripts/with-desktop.sh --nestable /usr/bin/python3 bench/recording.py build/qt5. For clicks and keys in the
showcase and in a window of 5,000 widgets it tells

- the instructions of the recorder, as a share of all that the application executes meanwhile, counted by valgrind: other
  programs do not change that;
- the processor time of the application in pairs, recorded and not. A recording is started for both: what that reads drives
  everything else out of the processor's cache, which is no cost of the recording itself.
"""

import os
import re
import shutil
import statistics
import subprocess
import sys
from pathlib import Path
from tempfile import TemporaryDirectory
from typing import Callable, Dict, Iterator, List, Tuple

ROOT = Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "runner"))

from qtdriver import App, Driver  # noqa: E402: from the checkout

PAIRS = int(os.environ.get("QTDRIVER_PAIRS", "40"))
KEYS = "Grind, tamp and brew. " * 5
CLICKS = 30
MOST = 5.0
WIDGETS = 5000
RECORDER = "record::Recorder::eventFilter"
SLOW = {"start_timeout": 300.0, "timeout": 120.0, "request_timeout": 300.0}
Act = Callable[[], None]


def programs(build: Path) -> "Dict[str, Tuple[str, List[str]]]":
    """For each: the object name of its window, and the command."""
    return {
        "showcase": ("showcase", [str(build / "bin" / "showcase")]),
        f"{WIDGETS:,} widgets": ("many", [str(build / "bin" / "manyhost"), str(WIDGETS)]),
    }


def actions(app: App, name: str) -> "Iterator[Tuple[str, Act]]":
    """The clicks and the keys for a window. Each has been done once."""
    window = app.window(name=name)

    def click() -> None:
        for _ in range(CLICKS):
            window.widget("brewButton").click()

    def type_keys() -> None:
        window.widget("customerEdit").press("Ctrl+A")
        window.widget("customerEdit").type(KEYS)

    click()
    yield f"{CLICKS} clicks", click
    if name == "showcase":
        window.tab("Entry fields").click()
    type_keys()
    yield f"{len(KEYS)} keys", type_keys


def processor_milliseconds(pid: int) -> float:
    """The processor time that all threads of a process have taken."""
    threads = Path(f"/proc/{pid}/task").iterdir()
    return sum(int((thread / "schedstat").read_text(encoding="ascii").split()[0]) for thread in threads) / 1e6


def slowed(app: App, act: Act) -> "List[Tuple[float, float]]":
    """The processor time of each of some pairs without a recording, and with one. Which one comes first alternates."""
    pairs = []
    for number in range(PAIRS):
        taken = {}
        for recorded in (True, False) if number % 2 else (False, True):
            app.connection.record()
            app.connection.events()
            if not recorded:
                app.connection.stop_recording()
            before = processor_milliseconds(app.pid)
            act()
            app.connection.events()
            taken[recorded] = processor_milliseconds(app.pid) - before
            app.connection.stop_recording()
        pairs.append((taken[False], taken[True]))
    return pairs


def counted(app: App, act: Act, output: Path) -> "Tuple[int, int]":
    """The instructions of the recorder, and all, while it is recorded. `output`: where valgrind writes."""
    control = ["callgrind_control", str(app.pid)]
    app.connection.record()
    app.connection.events()
    subprocess.run([*control, "--zero"], check=True, capture_output=True)
    act()
    app.connection.events()
    subprocess.run([*control, "--dump"], check=True, capture_output=True)
    app.connection.stop_recording()
    written = max(output.parent.glob(f"{output.name}.*"), key=lambda path: int(path.suffix[1:]))
    command = ["callgrind_annotate", "--inclusive=yes", "--threshold=100", str(written)]
    told = subprocess.run(command, check=True, capture_output=True, text=True).stdout
    lines = [line for line in told.splitlines() if f"{RECORDER}(" in line or "PROGRAM TOTALS" in line]
    # Apart from the total a line for the function, and for what is inlined into it from each header.
    total, *own = (int(re.match(r"\s*([\d,]+)", line)[1].replace(",", "")) for line in lines)
    assert own, "the recorder was not called"
    return sum(own), total


def report(build: Path) -> bool:
    """Prints a line for each, and answers whether one misses its target."""
    missed = False
    if shutil.which("valgrind") is None:
        sys.exit("Instructions are counted by valgrind, which is missing (Debian: valgrind)")
    qt = int(re.search(r"qt(\d)", build.name)[1])
    for title, (name, command) in programs(build).items():
        with Driver(build=build / "agents") as driver:
            app = driver.launch(*command)
            for what, act in actions(app, name):
                pairs = slowed(app, act)
                less, more = (statistics.median(column) for column in zip(*pairs))
                percent = (statistics.median(with_it / without for without, with_it in pairs) - 1) * 100
                missed |= percent >= MOST
                print(f"recorded, {title}, {what}: processor time {less:.2f} -> {more:.2f} ms, ", end="")
                print(
                    f"{percent:+.1f} % (medians of {len(pairs)} pairs), target below {MOST:g} %", flush=True
                )
        with TemporaryDirectory() as folder, Driver(build=build / "agents", **SLOW) as driver:
            output = Path(folder) / "callgrind.out"
            valgrind = ["valgrind", "-q", "--tool=callgrind", f"--callgrind-out-file={output}"]
            app = driver.launch(*valgrind, *command, qt=qt)
            for what, act in actions(app, name):
                own, total = counted(app, act, output)
                missed |= own / (total - own) * 100 >= MOST
                print(f"recorded, {title}, {what}: {own:,} of {total:,} instructions, ", end="")
                print(f"{own / (total - own):+.2%}, target below {MOST:g} %", flush=True)
    return missed


if __name__ == "__main__":
    sys.exit(report(Path(sys.argv[1]).absolute()))
