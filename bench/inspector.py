"""Measures what the inspector costs: bench/inspector.py BUILD, such as build/qt5. It is no part of the table.

Run it on a desktop: scripts/with-desktop.sh --nestable /usr/bin/python3 bench/inspector.py build/qt5. It measures

- how much more an application, with few and with 5,000 widgets, does for keys and clicks while it is recorded: recording.py;
- the processor time of `qtdriver inspect` while nothing changes, as a share of one processor;
- how long pointing at a widget takes in Chromium, from the move of the mouse until the mark is on the page;
- how many pictures a second a page gets while a part or all of the screen changes, and the processor time of that.
"""

import asyncio
import re
import statistics
import subprocess
import sys
import time
from contextlib import contextmanager
from pathlib import Path
from tempfile import TemporaryDirectory
from typing import Dict, Iterator

import aiohttp
import psutil

ROOT = Path(__file__).resolve().parents[1]
sys.path[:0] = [str(ROOT / "runner"), str(ROOT / "tests" / "e2e")]

import recording  # noqa: E402: beside this file

SECONDS = 10.0
SIZES = {"a part changes": "300 200", "all changes": "1280 1024"}
CHANGING = """
import itertools, sys, time
from Xlib import X, display
connection = display.Display()
screen = connection.screen()
size = map(int, sys.argv[1:])
window = screen.root.create_window(0, 0, *size, 0, screen.root_depth, override_redirect=True, background_pixel=0)
window.map()
for pixel in itertools.cycle((0x402030, 0x304020)):
    window.change_attributes(background_pixel=pixel)
    window.clear_area()
    connection.sync()
    time.sleep(1 / 30)
"""
MOST_AT_REST, MOST_WHILE_CHANGING, FEWEST_PICTURES, MOST_POINTING = 1.0, 10.0, 10.0, 50.0
PLACES = 40
KIOSK = ROOT / "tests" / "agents" / "kiosk.py"
POINTING = """
window.answers = [];
document.getElementById("picture").addEventListener("pointermove", (event) => requestAnimationFrame(() => {
    const painted = new MessageChannel();
    painted.port1.onmessage = () => window.answers.push(
        [performance.now() - event.timeStamp, document.getElementById("hovered").textContent]);
    painted.port2.postMessage(0);
}));"""
FIRST_WINDOW = """document.querySelector("#tree [role=treeitem]").dispatchEvent(new PointerEvent("pointerover", {bubbles: true}));
const mark = document.querySelector("#marks .hovered").getBoundingClientRect();
const picture = document.getElementById("picture").getBoundingClientRect();
const left = Math.max(mark.left, picture.left), top = Math.max(mark.top, picture.top);
return [left, top, Math.min(mark.right, picture.right) - left, Math.min(mark.bottom, picture.bottom) - top];"""
"""Its place in the page: that which is marked when the mouse is above its row in the tree."""


def processor_seconds(process: psutil.Process) -> float:
    """Those of a process and of all that it has started, but for the application and its desktop."""
    own = [one for one in [process, *process.children(recursive=True)] if one.name().startswith("python")]
    times = [one.cpu_times() for one in own]
    return sum(one.user + one.system for one in times)


async def watch(address: str, process: psutil.Process, seconds: float) -> "tuple[float, float]":
    """Pictures a second that a page gets, and the share of one processor in percent. The page draws each at once."""
    origin = address.rpartition("/" + address.split("/")[3])[0]
    async with aiohttp.ClientSession() as session:
        async with session.ws_connect(f"{address}live", origin=origin, max_msg_size=0) as socket:

            async def pictures_for(duration: float) -> int:
                count, end = 0, time.monotonic() + duration
                while (left := end - time.monotonic()) > 0:
                    try:
                        message = await socket.receive(left)
                    except asyncio.TimeoutError:
                        break
                    if message.type == aiohttp.WSMsgType.BINARY:
                        count += 1
                        await socket.send_json({"shown": True})
                return count

            assert await pictures_for(3), "no picture came"  # the first, and the one without a loss
            before, began = processor_seconds(process), time.monotonic()
            count = await pictures_for(seconds)
            taken = time.monotonic() - began
            return count / taken, (processor_seconds(process) - before) / taken * 100


@contextmanager
def changing_window(environment: "Dict[str, str]", size: str) -> Iterator[None]:
    """Within it a window of this size, "width height", in front of all others has another colour 30 times a second."""
    with subprocess.Popen([sys.executable, "-c", CHANGING, *size.split()], env=environment) as running:
        try:
            yield
            assert running.poll() is None, "the window did not change any more"
        finally:
            running.kill()


@contextmanager
def inspected(build: Path, *program: "str | Path") -> "Iterator[tuple[str, psutil.Process]]":
    """Within it `qtdriver inspect` runs: the address of its page, and its process."""
    command = [ROOT / "scripts" / "qtdriver", "inspect", "--no-browser", "--build", build / "agents"]
    with subprocess.Popen([*command, *program], stdout=subprocess.PIPE, text=True) as inspect:
        try:
            assert inspect.stdout is not None
            yield re.search(r"http://\S+", inspect.stdout.readline())[0], psutil.Process(inspect.pid)
        finally:
            inspect.terminate()


def measure_picture(build: Path) -> "dict[str, tuple[float, float]]":
    """Pictures a second and processor time, at rest and while the screen changes."""
    with inspected(build, "--", build / "bin" / "showcase") as (address, process):
        showcase = next(one for one in process.children(recursive=True) if one.name() == "showcase")
        told = {"at rest": asyncio.run(watch(address, process, SECONDS))}
        for name, size in SIZES.items():
            with changing_window(showcase.environ(), size):
                told[name] = asyncio.run(watch(address, process, SECONDS))
        return told


def measure_pointing(build: Path) -> "dict[str, list[float]]":
    """How many milliseconds each of some moves of the mouse took until its mark was there."""
    from chromium import running_browser

    told = {}
    programs = {
        "showcase": ["--", build / "bin" / "showcase"],
        "5,000 widgets": ["--qt", "5", "--", "/usr/bin/python3", KIOSK, "many"],
    }
    for name, program in programs.items():
        with inspected(build, *program) as (address, _), TemporaryDirectory() as profile:
            with running_browser(Path(profile)) as browser:
                browser.size(1800, 1250)  # so that the picture is not scaled
                browser.go(address)
                browser.wait_until(
                    "return Number(document.getElementById('picture').dataset.count) > 0", seconds=60
                )
                browser.click("#point")
                browser.wait_until(
                    "return document.querySelector('#tree [role=treeitem]') !== null", seconds=60
                )
                left, top, width, height = browser.run(FIRST_WINDOW)
                browser.run(POINTING)
                for number in range(PLACES):
                    share = (number + 0.5) / PLACES
                    browser.mouse(("move", left + share * width, top + share * height))
                    browser.wait_until(f"return window.answers.length > {number}")
                told[name] = [
                    milliseconds for milliseconds, hovered in browser.run("return window.answers") if hovered
                ]
                assert len(told[name]) > PLACES / 2, "the mouse was hardly above a widget"
    return told


def main() -> None:
    """Prints a line for each; the exit status tells whether all of them meet their targets."""
    build = Path(sys.argv[1]).absolute()
    missed = recording.report(build)
    for name, taken in measure_pointing(build).items():
        missed |= statistics.median(taken) >= MOST_POINTING
        print(
            f"pointing, {name}: {statistics.median(taken):.1f} ms, slowest {max(taken):.1f} ms of {len(taken)}, "
            f"target below {MOST_POINTING:g} ms",
            flush=True,
        )
    told = measure_picture(build)
    pictures, share = told["at rest"]
    missed |= share >= MOST_AT_REST
    print(
        f"at rest: {share:.1f} % of a processor, {pictures:.1f} pictures a second, target below {MOST_AT_REST:g} %"
    )
    for name in SIZES:
        pictures, share = told[name]
        missed |= pictures < FEWEST_PICTURES or share > MOST_WHILE_CHANGING
        print(
            f"{name}: {pictures:.1f} pictures a second, {share:.1f} % of a processor, "
            f"target {FEWEST_PICTURES:g} and {MOST_WHILE_CHANGING:g} %"
        )
    sys.exit(missed)


if __name__ == "__main__":
    main()
