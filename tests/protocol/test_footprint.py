"""The agent's footprint in the process of the application: a connection, and nothing to be seen."""

import signal
from contextlib import suppress
from pathlib import Path

from hostapp import eventually

BROKEN_PIPE = 1 << (signal.SIGPIPE - 1)
"""Qt's network library has this one ignored as soon as there is a socket, the agent's or any other."""

PLATFORM_THREADS = (
    "Thread (pooled)",
    "QXcbEventQueue",
    "QDBusConnection",
    "gmain",
    "gdbus",
    "pool-spawner",
    "dconf worker",
)
"""Qt starts them in its own time, some of them after the first window is there."""


def footprint(process):
    """The threads but those of Qt's platform, and the signals that are caught and ignored."""
    folder = Path("/proc") / str(process)
    threads = []
    for task in (folder / "task").iterdir():
        with suppress(FileNotFoundError, ProcessLookupError):  # it has ended meanwhile
            threads.append((task / "comm").read_text().strip())
    status = dict(line.split(":\t", 1) for line in (folder / "status").read_text().splitlines())
    return (
        sorted(name for name in threads if name not in PLATFORM_THREADS),
        int(status["SigCgt"], 16),
        int(status["SigIgn"], 16) | BROKEN_PIPE,
    )


def test_the_agent_starts_no_thread_catches_no_signal_and_writes_nothing(launch, capfd):
    app = launch("throwhost", "--late", agent=False)
    app.wait_until("button", "visible", "true")
    # A thread of Qt's platform has the program's name until it has given itself its own.
    eventually(lambda: footprint(app.process.pid)[0], ["throwhost"])
    before = footprint(app.process.pid)
    app.do("loadAgent")
    app.accept()
    assert app.activate("Thrower", "button") == "0,QPushButton"
    app.wait_for("clicked button")
    assert app.enter("Thrower", "plain", "s:typed") == "0,QLineEdit"
    assert app.request("7,Nowhere,button,,text,").startswith("2,")
    eventually(lambda: footprint(app.process.pid), before)
    assert app.journal == ["agent loaded", "clicked button"]
    assert capfd.readouterr().err == ""
