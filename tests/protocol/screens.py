"""A desktop of two screens, side by side, on which each can have a scale of its own."""

import os
import random
import shutil
import subprocess
import time
from contextlib import contextmanager, suppress

from hostapp import DEADLINE, QT

WIDTH, HEIGHT = 600, 700
"""Pixels of each screen."""


@contextmanager
def two_screens():
    """The display of the two screens, as the environment of an application.

    Each major asks the X server in another way: Qt 5 for Xinerama where there is no RandR, Qt 6 for RandR's monitors.
    """
    with _xinerama() if QT == 5 else _monitors() as environment:
        yield environment


@contextmanager
def _monitors():
    """The desktop of the test, divided."""
    left = f"{WIDTH}/150x{HEIGHT}/180+0+0"
    right = f"{WIDTH}/150x{HEIGHT}/180+{WIDTH}+0"
    subprocess.run(["xrandr", "--setmonitor", "left", left, "screen"], check=True, capture_output=True)
    subprocess.run(["xrandr", "--setmonitor", "right", right, "none"], check=True, capture_output=True)
    try:
        yield {}
    finally:
        for name in ("left", "right"):
            subprocess.run(["xrandr", "--delmonitor", name], check=True)


@contextmanager
def _xinerama():
    """A second X server, with a window manager, in a window of the test's desktop."""
    assert shutil.which("Xephyr"), "the package xserver-xephyr is missing"
    screens = [f"{WIDTH}x{HEIGHT}+0+0", f"{WIDTH}x{HEIGHT}+{WIDTH}+0"]
    options = "+xinerama -extension RANDR -nolisten tcp -nolisten unix -noreset".split()
    display = f":{random.randrange(1000, 30000)}"
    server = _start(["Xephyr", display, "-screen", screens[0], "-screen", screens[1], *options])
    environment = {"DISPLAY": display}
    try:
        _wait_for(["xprop", "-root", "-f", "none", "8s"], environment, server)
        manager = _start(["openbox", "--sm-disable"], environment)
        try:
            # It announces itself before it gives the keyboard to windows that appear: it is ready when it does as asked.
            _wait_for(["xdotool", "set_num_desktops", "7", "get_num_desktops"], environment, manager, b"7")
            yield environment
        finally:
            _end(manager)
    finally:
        _end(server)


def _start(command, environment=()):
    quiet = {"stdin": subprocess.DEVNULL, "stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
    command = ["setpriv", "--pdeathsig", "TERM", "--", *command]
    return subprocess.Popen(command, env={**os.environ, **dict(environment)}, **quiet)


def _wait_for(command, environment, process, words=b""):
    """Waits until a command succeeds and says these words."""
    deadline = time.monotonic() + DEADLINE
    while True:
        result = subprocess.run(command, env={**os.environ, **environment}, capture_output=True, check=False)
        if result.returncode == 0 and words in result.stdout:
            return
        assert process.poll() is None, f"{process.args} ended"
        assert time.monotonic() < deadline, f"{process.args} is not ready"
        time.sleep(0.02)


def _end(process):
    process.terminate()
    with suppress(subprocess.TimeoutExpired):
        process.wait(5)
    process.kill()
    process.wait()
