"""Runs inside gdb: prints the stacks of all threads as one line of JSON, first the thread that gdb has chosen."""

import importlib
import json
from typing import Any, List, Tuple

MARK = "qtdriver-stacks "
_MAX_FRAMES = 60


def frames_of(frame: Any) -> List[Tuple[str, str, str]]:
    """Rows of function, source and library, from the innermost frame on; the library of the program itself is empty."""
    gdb: Any = importlib.import_module("gdb")
    rows: List[Tuple[str, str, str]] = []
    try:
        while frame is not None and len(rows) < _MAX_FRAMES:
            place = frame.find_sal()
            source = f"{place.symtab.filename}:{place.line}" if place.symtab else ""
            rows.append((frame.name() or "??", source, gdb.solib_name(frame.pc()) or ""))
            frame = frame.older()
    except gdb.error:
        pass  # the rest of the stack cannot be read
    return rows


def print_stacks() -> None:
    """Prints the line."""
    gdb: Any = importlib.import_module("gdb")
    chosen = gdb.selected_thread()
    threads = sorted(gdb.selected_inferior().threads(), key=lambda thread: int(thread.num))
    rows = []
    for thread in [chosen, *(other for other in threads if other.num != chosen.num)]:
        thread.switch()
        rows.append((thread.ptid[1], thread.name or "", frames_of(gdb.newest_frame())))
    print(MARK + json.dumps(rows))


if __name__ == "__main__":
    print_stacks()
