"""Runs inside gdb: loads a library into a program that runs, and calls a function of it. Prints one line of JSON.

The program stands still for that moment only. Nothing is called unless its main thread waits in the event loop for what
happens next: there it holds no lock, neither of the allocator nor of the dynamic loader. No breakpoint waits for such a
moment, since the program would end at one that nobody attends to any more.
"""

import importlib
import json
import os
import re
from typing import Any, Tuple

MARK = "qtdriver-attach "
ORDER = "QTDRIVER_ATTACH"
"""The variable in the environment of gdb with the order: {"pid", "library", "function"}."""

CALLED, REFUSED, BUSY, FORBIDDEN, FAILED = "called", "refused", "busy", "forbidden", "failed"
"""The ends: the function was called; it, or the loader, said why not; the main thread does something; gdb may not look into
the program; anything else."""

_LIBRARIES = r"/(ld-|libc[.-]|libpthread|libdl|libglib-2|libQt(5|6)?Core)"
_C_LIBRARY = re.compile(r"/lib(c|pthread)[.-][^/]*$")
_EVENT_LOOP = re.compile(r"/lib(glib-2|Qt[56]?Core)[^/]*$")
_WAITING = re.compile(r"(__GI_)?_*(p?poll|p?select)(64)?(_nocancel|_chk)?|\?\?")
_RTLD_NOW = 2
_MAX_FRAMES = 8


def is_waiting(frame: Any) -> bool:
    """Whether the innermost calls are those of an event loop that waits: of the C library, and that by GLib or QtCore."""
    gdb: Any = importlib.import_module("gdb")
    for _ in range(_MAX_FRAMES):
        library = gdb.solib_name(frame.pc()) or ""
        if not _C_LIBRARY.search(library):
            return bool(_EVENT_LOOP.search(library))
        if not _WAITING.fullmatch(frame.name() or "??"):
            return False
        frame = frame.older()
        if frame is None:
            break
    return False


def _call(function: str, kind: str, *arguments: int) -> Any:
    """Calls a function, whose name or address this is; `kind` is its type as a pointer."""
    gdb: Any = importlib.import_module("gdb")
    return gdb.parse_and_eval(f"(({kind}) {function})({', '.join(map(str, arguments))})")


def _text(address: Any) -> str:
    gdb: Any = importlib.import_module("gdb")
    text: str = address.cast(gdb.lookup_type("char").pointer()).string(errors="replace")
    return text


def call(library: str, function: str) -> Tuple[str, str]:
    """Loads the library and calls its function, which returns a text. Returns one of the ends, and the reason."""
    gdb: Any = importlib.import_module("gdb")
    path, name = os.fsencode(library) + b"\0", function.encode() + b"\0"
    # gdb would allocate the texts of a call in the program, and leave them there.
    texts = int(_call("malloc", "char *(*)(unsigned long)", len(path) + len(name)))
    if texts == 0:
        return FAILED, "it has no memory left"
    gdb.selected_inferior().write_memory(texts, path + name)
    opened = int(_call("dlopen", "char *(*)(unsigned long, int)", texts, _RTLD_NOW))
    if opened == 0:
        reason = _text(_call("dlerror", "char *(*)(void)"))
    else:
        found = int(_call("dlsym", "char *(*)(unsigned long, unsigned long)", opened, texts + len(path)))
        reason = _text(_call(str(found), "char *(*)(void)")) if found else f"{library} has no {function}"
        if reason:
            _call("dlclose", "int (*)(unsigned long)", opened)
    _call("free", "void (*)(unsigned long)", texts)
    return (REFUSED, reason) if reason else (CALLED, "")


def _attend(pid: int, library: str, function: str) -> Tuple[str, str]:
    """Attaches to the program, makes the call, and lets the program go."""
    gdb: Any = importlib.import_module("gdb")
    try:
        gdb.execute(f"attach {pid}", to_string=True)
    except gdb.error as error:
        return FORBIDDEN, str(error)
    try:
        gdb.execute(f"sharedlibrary {_LIBRARIES}", to_string=True)
        main = next(thread for thread in gdb.selected_inferior().threads() if thread.ptid[1] == pid)
        main.switch()
        if not is_waiting(gdb.newest_frame()):
            return BUSY, ""
        return call(library, function)
    except (gdb.error, RuntimeError, StopIteration) as error:
        return FAILED, str(error)
    finally:
        gdb.execute("detach", to_string=True)


if __name__ == "__main__":
    order = json.loads(os.environ[ORDER])
    print("\n" + MARK + json.dumps(_attend(order["pid"], order["library"], order["function"])), flush=True)
