"""The stacks in which gdb may call a function of a program: those of an event loop that waits."""

import sys
from types import SimpleNamespace

import pytest

from qtdriver.attaching.gdb_call import is_waiting

C, ASAN, TSAN = "/lib/libc.so.6", "/usr/lib/libasan.so.8", "/usr/lib/libtsan.so.2"
GLIB, QT_CORE, PROGRAM = "/lib/libglib-2.0.so.0", "/opt/qt/libQt5Core.so.5.15.8", None


class Frame:
    """The call at a place of a stack, which is a list of functions and their libraries, the innermost first."""

    def __init__(self, stack, place=0):
        self.stack, self.place = stack, place

    def name(self):
        return self.stack[self.place][0]

    def pc(self):
        return self.stack[self.place][1]

    def older(self):
        return Frame(self.stack, self.place + 1) if self.place + 1 < len(self.stack) else None


@pytest.fixture(autouse=True)
def gdb(monkeypatch):
    """In place of gdb's module: the address of a call is its library."""
    monkeypatch.setitem(sys.modules, "gdb", SimpleNamespace(solib_name=lambda address: address))


@pytest.mark.parametrize(
    "stack",
    [
        [("__GI___poll", C), (None, GLIB)],
        [("__ppoll", C), (None, QT_CORE)],
        [(None, C), ("__select", C), (None, QT_CORE)],
        [("poll", C), ("__interceptor_poll", ASAN), (None, GLIB)],
        [("__ppoll", C), ("ppoll", ASAN), (None, QT_CORE)],
        [("select", C), ("__interceptor_trampoline_select", ASAN), (None, QT_CORE)],
    ],
)
def test_an_event_loop_that_waits(stack):
    assert is_waiting(Frame(stack))


@pytest.mark.parametrize(
    "stack",
    [
        [(None, QT_CORE), (None, QT_CORE)],
        [("__poll", C), (None, PROGRAM), (None, GLIB)],
        [("__poll", C)],
        [("__lll_lock_wait", C), ("malloc", C), (None, QT_CORE)],
        [("__interceptor_poll", ASAN), (None, GLIB)],
        [("__poll", C), ("__interceptor_poll", ASAN), (None, PROGRAM)],
        [("__poll", C), ("__interceptor_poll", ASAN)],
        [("__poll", C), ("__interceptor_poll", ASAN), ("__interceptor_poll", ASAN), (None, GLIB)],
        [("__poll", C), ("__interceptor_malloc", ASAN), (None, GLIB)],
        [("__poll", C), ("__interceptor_poll", TSAN), (None, GLIB)],
    ],
)
def test_any_other_call_is_none(stack):
    assert not is_waiting(Frame(stack))
