"""Runs inside gdb: loads a library into a program that runs, and calls a function of it. Prints one line of JSON.

The program stands still for that moment only. Nothing is called unless its main thread waits in the event loop for what
happens next: there it holds no lock, neither of the allocator nor of the dynamic loader. No breakpoint waits for such a
moment, since the program would end at one that nobody attends to any more.
"""

import importlib
import json
import os
import re
from itertools import takewhile
from typing import Any, List, Tuple

MARK = "qtdriver-attach "
ORDER = "QTDRIVER_ATTACH"
"""The variable in the environment of gdb with the order: {"pid", "library", "function"}."""

CALLED, REFUSED, BUSY, FORBIDDEN, FAILED = "called", "refused", "busy", "forbidden", "failed"
"""The ends: the function was called; it, or the loader, said why not; the main thread does something; gdb may not look into
the program; anything else."""

_LIBRARIES = r"/\(ld-\|libc[.-]\|libpthread\|libdl\|libasan\)"
"""Those of which gdb needs symbols, as a basic regular expression, which is what its command takes."""
_C_LIBRARY = re.compile(r"/lib(c|pthread)[.-][^/]*$")
_EVENT_LOOP = re.compile(r"/lib(glib-2|Qt[56]?Core)[^/]*$")
_WAITING = re.compile(r"(__GI_)?_*(p?poll|p?select)(64)?(_nocancel|_chk)?|\?\?")
_ADDRESS_SANITIZER = re.compile(r"/libasan\.[^/]*$")
_INTERCEPTOR = re.compile(r"_*interceptor_(trampoline_)?_*(p?poll|p?select)(64)?(_chk)?|p?poll|p?select")
_RTLD_NOW = 2
_MAX_FRAMES = 8


def is_waiting(frame: Any) -> bool:
    """Whether the innermost calls are those of an event loop that waits: of the C library, and that by GLib or QtCore.

    With AddressSanitizer its runtime is between them, which holds no lock while it calls the C library to wait. That of
    ThreadSanitizer takes note of what the thread does meanwhile, and is therefore not passed over.
    """
    gdb: Any = importlib.import_module("gdb")
    calls: List[Tuple[str, str]] = []
    while frame is not None and len(calls) < _MAX_FRAMES:
        calls.append((frame.name() or "??", gdb.solib_name(frame.pc()) or ""))
        frame = frame.older()
    inner = list(takewhile(lambda call: _C_LIBRARY.search(call[1]), calls))
    outer = calls[len(inner) :]
    if outer and _ADDRESS_SANITIZER.search(outer[0][1]) and _INTERCEPTOR.fullmatch(outer[0][0]):
        del outer[0]
    waits = bool(inner) and all(_WAITING.fullmatch(name) for name, _ in inner)
    return waits and bool(outer and _EVENT_LOOP.search(outer[0][1]))


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
