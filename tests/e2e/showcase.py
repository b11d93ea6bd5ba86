"""The showcase, started for a test of the runner."""

import os
from contextlib import contextmanager
from pathlib import Path

from qtdriver import Driver

BUILD = Path(os.environ.get("QTDRIVER_BUILD", Path(__file__).resolve().parents[2] / "build" / "qt5"))
AGENTS = BUILD / "agents"
PROGRAM = BUILD / "bin" / "showcase"
QT = int(os.environ.get("QTDRIVER_QT", "5"))


@contextmanager
def running(**options):
    """A driver, and a showcase whose window is there. Options are those of the driver."""
    options.setdefault("timeout", 10)
    with Driver(build=AGENTS, **options) as driver:
        app = driver.launch(PROGRAM, qt=QT)
        app.window(name="showcase").title()
        yield driver, app
