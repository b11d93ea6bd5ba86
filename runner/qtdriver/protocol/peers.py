"""Finds out from the system which process has connected, or listens; a greeting proves nothing."""

from __future__ import annotations

import os
import socket
import sys
from typing import Any, Optional

from ..errors import ConnectionClosed, PeerReaderMissingError
from .tcptable import Address, plain_host, tcp_sockets

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_KNOWN_USERS = "/proc/self/uid_map"
_WINE_SERVER = "wineserver"


class Peer:
    """The other end of a connection within this machine.

    Attributes:
        user: id of the user who made its socket; on Windows the name of the user whose process has it.
    """

    def __init__(self, connected: socket.socket) -> None:
        """Finds out whose socket is at the other end of `connected`.

        Raises ConnectionClosed when no process of this machine is there, and PeerReaderMissingError.
        """
        self._psutil = load_psutil()
        self._local: Address = connected.getpeername()[:2]
        self._remote: Address = connected.getsockname()[:2]
        self.user: "int | str" = self._owner()

    def _owner(self) -> "int | str":
        if sys.platform == "win32":
            holder = self.process()
            if holder is None:
                raise ConnectionClosed(
                    f"{self} closed the connection before its greeting, or is of another machine"
                )
            return _user_of(holder)
        ends = (end for end in tcp_sockets() if (end.local, end.remote) == (self._local, self._remote))
        # The system gives a socket that no process has any more to the administrator (inode 0).
        held = next((end for end in ends if end.inode), None)
        if held is None:
            raise ConnectionClosed(
                f"{self} closed the connection before its greeting, or is of another machine"
            )
        return held.user

    def __str__(self) -> str:
        return "{}:{}".format(*self._local)

    def is_of_this_user(self) -> bool:
        """Whether the socket was made by the user of this process."""
        if sys.platform == "win32":
            return self.user != "" and self.user == _user_of(os.getpid())
        return self.user == os.geteuid() and _users_are_told_apart()

    def process(self, likely: Optional[int] = None) -> Optional[int]:
        """Id of the process that has the socket, as this process sees it.

        `likely` is tried first, since searching all processes takes longer. Returns None where the system hides the
        process, as it does with those of other users and of another process namespace.
        """
        if likely is not None and self._is_held_by(likely):
            return self._program(likely)
        for connection in self._psutil.net_connections("tcp"):
            if self._is(connection):
                return None if connection.pid is None else self._program(int(connection.pid))
        return None

    def _program(self, holder: int) -> int:
        """The process that uses the socket: one under Wine shares its sockets with Wine's server."""
        if not _process_name(holder).startswith(_WINE_SERVER):
            return holder
        others = (process.pid for process in self._psutil.process_iter() if process.pid != holder)
        return next(filter(self._is_held_by, others), holder)

    def description(self) -> str:
        """Its address, user and process, for a person."""
        pid = self.process()
        if sys.platform == "win32":
            return f"{self}, of user {self.user}, {describe_process(pid)}"
        import pwd

        try:
            user = f"{pwd.getpwuid(int(self.user)).pw_name} ({self.user})"
        except KeyError:
            user = str(self.user)
        return f"{self}, of user {user}, {describe_process(pid)}"

    def _is_held_by(self, pid: int) -> bool:
        try:
            process = self._psutil.Process(pid)
            # psutil 6 has renamed connections().
            connections = getattr(process, "net_connections", None) or process.connections
            return any(map(self._is, connections("tcp")))
        except (self._psutil.Error, OverflowError, ValueError):
            return False

    def _is(self, connection: Any) -> bool:
        ends = (connection.laddr, connection.raddr)
        return [(plain_host(end[0]), end[1]) for end in ends if end] == [self._local, self._remote]


def describe_process(pid: Optional[int]) -> str:
    """A process with its name, for a person; None is one that cannot be seen."""
    if pid is None:
        return "a process that cannot be seen from here"
    name = _process_name(pid)
    return f"process {pid} ({name})" if name else f"process {pid}"


def _user_of(pid: int) -> str:
    """The name of the user whose process this is; empty where the system hides it."""
    psutil = load_psutil()
    try:
        return str(psutil.Process(pid).username())
    except psutil.Error:
        return ""


def _users_are_told_apart() -> bool:
    """Whether the user namespace knows this user; all users that it does not know have the same id."""
    if sys.platform == "win32":
        return True
    try:
        with open(_KNOWN_USERS, encoding="ascii") as file:
            ranges = [tuple(map(int, line.split())) for line in file]
    except OSError:
        return True  # a system without such namespaces
    return any(first <= os.geteuid() < first + count for first, _, count in ranges)


def describe_listener(port: int) -> Optional[str]:
    """The process that listens on a TCP port, as "name (process N)"; None where it is hidden, or without psutil."""
    try:
        psutil = load_psutil()
    except PeerReaderMissingError:
        return None
    for connection in psutil.net_connections("tcp"):
        listens = connection.status == psutil.CONN_LISTEN and connection.laddr.port == port
        name = _process_name(connection.pid) if listens and connection.pid is not None else ""
        if name:
            return f"{name} (process {connection.pid})"
    return None


def _process_name(pid: int) -> str:
    """The name of a process, empty when it has ended."""
    psutil = load_psutil()
    try:
        return str(psutil.Process(pid).name())
    except psutil.Error:
        return ""


def load_psutil() -> Any:
    """Imports psutil when it is needed, so that clients of the protocol alone do not need it.

    Raises PeerReaderMissingError.
    """
    try:
        import psutil  # type: ignore[import]
    except ImportError:
        raise PeerReaderMissingError() from None
    return psutil
