"""Who listens on a port of this host."""

from __future__ import annotations

import os
from pathlib import Path
from typing import Optional

from ..protocol.tcptable import LISTENING, tcp_sockets


def listener_of(port: int) -> Optional[str]:
    """The process that listens on a TCP port, as "name (process N)"; None when it is not to be seen."""
    inodes = {entry.inode for entry in tcp_sockets() if entry.state == LISTENING and entry.local[1] == port}
    links = {f"socket:[{inode}]" for inode in inodes}
    for process in Path("/proc").glob("[0-9]*"):
        try:
            if any(os.readlink(descriptor) in links for descriptor in (process / "fd").iterdir()):
                return f"{(process / 'comm').read_text().strip()} (process {process.name})"
        except OSError:
            continue  # it has ended, or is another user's
    return None
