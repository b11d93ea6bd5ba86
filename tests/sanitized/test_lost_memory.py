"""At its end the sanitizer finds no memory in an application that nothing points to any more."""

import sys
from itertools import chain
from pathlib import Path

FOLDER = Path(__file__).resolve().parent
sys.path.insert(0, str(FOLDER.parent / "protocol"))

from leaks import EVERY_KIND, LeakApp, read  # noqa: E402

OPTIONS = "detect_leaks=1:exitcode=23:fast_unwind_on_malloc=0:verify_asan_link_order=0"
"""With the slow way to look at the stack, which sees the callers in libraries, too."""
LOST = 23


def start(monkeypatch):
    monkeypatch.setenv("ASAN_OPTIONS", OPTIONS)
    monkeypatch.setenv("LSAN_OPTIONS", f"suppressions={FOLDER / 'lsan.supp'}")
    return LeakApp()


def test_requests_of_every_kind_lose_no_memory(monkeypatch):
    app = start(monkeypatch)
    for request in chain(*EVERY_KIND.values()):
        app.play(request)
    assert app.close() == 0


def test_lost_memory_of_the_application_would_be_found(monkeypatch):
    app = start(monkeypatch)
    for _ in range(10):
        app.play(read("leaky", "lost"))
    assert app.close() == LOST
