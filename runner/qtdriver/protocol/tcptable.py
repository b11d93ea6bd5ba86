"""Reads the system's table of TCP sockets: those of this process's network namespace, of all users."""

from __future__ import annotations

import socket
import struct
from typing import Iterator, NamedTuple, Tuple

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

LISTENING = "0A"

Address = Tuple[str, int]
_TABLES = ("/proc/net/tcp", "/proc/net/tcp6")
_MAPPED = "::ffff:"


class TcpSocket(NamedTuple):
    """One end of a connection, or a socket that listens.

    Attributes:
        local, remote: host and port; those of a connection of IPv4 through a socket of IPv6 are in IPv4's form.
        state: as in the table, for example LISTENING.
        user: id of the user who made it, in this process's user namespace.
        inode: the number of the socket; 0 when no process has it any more.
    """

    local: Address
    remote: Address
    state: str
    user: int
    inode: int


def tcp_sockets() -> Iterator[TcpSocket]:
    """All sockets of the table, those of IPv4 first; none where the system has no such table."""
    for table in _TABLES:
        try:
            with open(table, encoding="ascii") as file:
                lines = file.readlines()[1:]
        except OSError:
            continue
        for line in lines:
            fields = line.split()
            local, remote = _address(fields[1]), _address(fields[2])
            yield TcpSocket(local, remote, fields[3], int(fields[7]), int(fields[9]))


def plain_host(host: str) -> str:
    """The address of IPv4 that an address of IPv6 stands for; others as they are."""
    return host[len(_MAPPED) :] if host.startswith(_MAPPED) and "." in host else host


def _address(text: str) -> Address:
    host, _, port = text.partition(":")
    words = [int(host[start : start + 8], 16) for start in range(0, len(host), 8)]
    family = socket.AF_INET if len(words) == 1 else socket.AF_INET6
    packed = struct.pack(f"={len(words)}I", *words)
    return plain_host(socket.inet_ntop(family, packed)), int(port, 16)
