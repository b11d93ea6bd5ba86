"""Who listens on a port of this host."""

from __future__ import annotations

import os
from pathlib import Path
from typing import Optional

_LISTENING = "0A"


def listener_of(port: int) -> Optional[str]:
    """The process that listens on a TCP port, as "name (process N)"; None when it is not to be seen."""
    inodes = {fields[9] for fields in _listeners() if int(fields[1].rpartition(":")[2], 16) == port}
    for process in Path("/proc").glob("[0-9]*"):
        try:
            if any(os.readlink(descriptor) in _links(inodes) for descriptor in (process / "fd").iterdir()):
                return f"{(process / 'comm').read_text().strip()} (process {process.name})"
        except OSError:
            continue  # it has ended, or is another user's
    return None


def _links(inodes: "set[str]") -> "set[str]":
    return {f"socket:[{inode}]" for inode in inodes}


def _listeners() -> "list[list[str]]":
    rows = []
    for table in ("/proc/net/tcp", "/proc/net/tcp6"):
        try:
            lines = Path(table).read_text().splitlines()[1:]
        except OSError:
            continue
        rows += [line.split() for line in lines]
    return [fields for fields in rows if fields[3] == _LISTENING]
