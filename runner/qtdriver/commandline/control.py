"""The control socket, by which one-shot commands reach the process that holds an application.

A request and its reply are one line of JSON each: {"verb": ..., "values": {...}} and an Outcome. The socket has the mode
0600 and is in a folder that only its user can enter, and its server answers that user only.
"""

from __future__ import annotations

import json
import os
import re
import select
import socket
import stat
import struct
import sys
import tempfile
from contextlib import suppress
from pathlib import Path
from typing import Any, List, Optional

from ..errors import QtDriverError
from ..errors.commandline import AlreadyHeldError, ControlSocketError, NoApplicationError
from .outcome import NO_APPLICATION, Outcome
from .verbs import Arguments

DEFAULT_NAME = "default"
STOP = "stop"
DETACH = "detach"
COMPLETE = "complete"
INSPECT = "inspect"
_NAME = re.compile(r"[A-Za-z0-9_.-]{1,40}")
_LINE_SECONDS = 5.0
_MAX_PATH = 107  # bytes: what the address of a Unix socket has room for
_START = "start one with: qtdriver run --background -- APP"
_LINUX_ONLY = "applications are held in the background on Linux only: use a dialogue, qtdriver run -- APP"
_ELSEWHERE = "set XDG_RUNTIME_DIR to another folder"


def valid_name(text: str) -> str:
    """Returns the text if it can name a held application. Raises ValueError for one that is no file name."""
    if not _NAME.fullmatch(text) or text.startswith("."):
        raise ValueError(text)
    return text


valid_name.__name__ = "name (letters, digits, _ . -)"


def socket_path(name: str) -> Path:
    """The path of a held application's socket: in $XDG_RUNTIME_DIR/qtdriver, or in a folder of the user's in /tmp.

    Makes the folder. Raises ControlSocketError when that fails, when another user can enter it, and for a path that is too
    long for a socket.
    """
    if sys.platform == "win32":
        raise ControlSocketError(_LINUX_ONLY)
    runtime = os.environ.get("XDG_RUNTIME_DIR", "")
    if runtime and os.path.isdir(runtime):
        folder = Path(runtime) / "qtdriver"
    else:
        folder = Path(tempfile.gettempdir()) / f"qtdriver-{os.getuid()}"
    path = folder / f"{name}.sock"
    if len(os.fsencode(path)) > _MAX_PATH:
        raise ControlSocketError(
            f"the path {path} is too long for a socket: {_ELSEWHERE}, with a shorter path"
        )
    try:
        with suppress(FileExistsError):
            folder.mkdir(mode=0o700)
        status = folder.lstat()
    except OSError as error:
        raise ControlSocketError(
            f"cannot make the folder {folder}: {error.strerror}: {_ELSEWHERE}"
        ) from error
    _require_private(folder, status)
    return path


def _require_private(folder: Path, status: os.stat_result) -> None:
    """Raises ControlSocketError when another user can enter the folder. `status` is what lstat() tells of it."""
    if sys.platform == "win32":
        raise ControlSocketError(_LINUX_ONLY)
    if not stat.S_ISDIR(status.st_mode) or status.st_uid != os.getuid() or status.st_mode & 0o077:
        raise ControlSocketError(f"{folder} is not a folder of yours alone (mode 0700): remove it")


def ask(name: str, verb: str, values: Arguments) -> Outcome:
    """Asks the process that holds an application to run a command.

    Args:
        name: the name under which the application is held.
        verb: the name of the command.
        values: its arguments.

    Raises NoApplicationError when there is no such process, or it ends meanwhile, and ControlSocketError when the socket
    cannot be used.
    """
    if sys.platform == "win32":
        raise ControlSocketError(_LINUX_ONLY)
    path = socket_path(name)
    line = ""
    try:
        with socket.socket(socket.AF_UNIX, socket.SOCK_STREAM) as control:
            control.connect(str(path))
            control.sendall((json.dumps({"verb": verb, "values": values}) + "\n").encode())
            with control.makefile("r", encoding="utf-8", newline="\n") as lines:
                line = lines.readline()
    except FileNotFoundError:
        raise NoApplicationError(f'no application is held under the name "{name}": {_START}') from None
    except ConnectionRefusedError:
        path.unlink(missing_ok=True)  # left by a process that was killed
        raise NoApplicationError(
            f'the process that held the application "{name}" was killed: {_START}'
        ) from None
    except (BrokenPipeError, ConnectionResetError):
        pass  # it ended while the request waited
    except OSError as error:
        raise ControlSocketError(f"cannot use the socket {path}: {error.strerror}") from error
    if not line.endswith("\n"):
        raise NoApplicationError(f'the process that held the application "{name}" ended')
    return Outcome.from_line(line)


def ask_data(name: str, verb: str, values: Arguments) -> Any:
    """As ask(). Returns the data of the outcome; raises NoApplicationError and QtDriverError for those that are not OK."""
    outcome = ask(name, verb, values)
    if outcome.status == NO_APPLICATION:
        raise NoApplicationError(outcome.text)
    if outcome.status:
        raise QtDriverError(outcome.text)
    return outcome.data


class ControlSocket:
    """The listening end. A context manager: leaving it removes the socket."""

    _path: Path
    _socket: socket.socket

    def __init__(self, path: Path) -> None:
        """Starts to listen at `path`.

        Raises AlreadyHeldError when another process listens there, and ControlSocketError when that fails, or when another
        user could enter the folder.
        """
        if sys.platform == "win32":
            raise ControlSocketError(_LINUX_ONLY)
        self._path = path
        self._waiting: "List[Request]" = []
        self._socket = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        try:
            _require_private(path.parent, path.parent.lstat())
            self._remove_stale()
            self._listen()
        except OSError as error:
            raise ControlSocketError(
                f"cannot make the socket {path}: {error.strerror}: {_ELSEWHERE}"
            ) from error

    def _listen(self) -> None:
        """Listens, and only then lets the socket have its name: one that does not listen looks like one that is stale."""
        unfinished = self._path.with_name(f".{os.getpid()}")
        before = os.umask(0o177)
        try:
            self._socket.bind(str(unfinished))
        finally:
            os.umask(before)
        try:
            self._socket.listen(8)
            os.link(unfinished, self._path)
        finally:
            unfinished.unlink()

    def _remove_stale(self) -> None:
        if sys.platform == "win32":
            return
        with socket.socket(socket.AF_UNIX, socket.SOCK_STREAM) as probe:
            try:
                probe.connect(str(self._path))
            except FileNotFoundError:
                return
            except ConnectionRefusedError:
                self._path.unlink(missing_ok=True)
                return
        name = self._path.stem
        raise AlreadyHeldError(
            f'an application is held already under the name "{name}": end it with "qtdriver stop --name {name}", or '
            "give another --name"
        )

    def wait_with(self, other: Any) -> bool:
        """Waits until there is a request, or the file or socket `other` is readable: then it returns True."""
        ready, _, _ = select.select([self._socket, other], [], [], 0 if self._waiting else None)
        return other in ready

    def next_request(self) -> "Optional[Request]":
        """The next request that waits, STOP before all others; None without one, and for one that was given up."""
        self._collect()
        if not self._waiting:
            return None
        request = self._waiting.pop(0)
        return None if request.is_abandoned() else request

    def is_stop_waiting(self) -> bool:
        """Whether the next request is STOP. Does not wait for one."""
        self._collect()
        return bool(self._waiting) and self._waiting[0].verb == STOP

    def _collect(self) -> None:
        """Accepts whoever has connected meanwhile, and puts STOP in front."""
        while select.select([self._socket], [], [], 0)[0]:
            request = self._accept()
            if request is not None:
                self._waiting.append(request)
        self._waiting.sort(key=lambda request: request.verb != STOP)

    def _accept(self) -> "Optional[Request]":
        """Accepts a connection and reads its request; None for another user, without a request in time, or after a hang-up."""
        if sys.platform == "win32":
            raise ControlSocketError(_LINUX_ONLY)
        connected, _ = self._socket.accept()
        connected.settimeout(_LINE_SECONDS)
        try:
            if peer_user(connected) in (os.getuid(), 0):
                with connected.makefile("r", encoding="utf-8", newline="\n") as lines:
                    message = json.loads(lines.readline())
                request = Request(connected, str(message["verb"]), dict(message["values"]))
                if not request.is_abandoned():
                    return request
        except (OSError, ValueError, KeyError, TypeError):
            pass
        connected.close()
        return None

    def __enter__(self) -> "ControlSocket":
        return self

    def __exit__(self, *_: object) -> None:
        self._path.unlink(missing_ok=True)
        self._socket.close()


class Request:
    """A request to run a command.

    Attributes:
        verb: the name of the command.
        values: its arguments.
    """

    def __init__(self, connected: socket.socket, verb: str, values: Arguments) -> None:
        self.verb = verb
        self.values = values
        self._connected = connected

    def is_abandoned(self) -> bool:
        """Whether the process that sent it has closed the connection, as an interrupted one does. Does not wait."""
        hung_up = select.poll()
        hung_up.register(self._connected, 0)  # poll() reports hang-ups without being asked to
        return bool(hung_up.poll(0))

    def answer(self, outcome: Outcome) -> None:
        """Sends the outcome and closes the connection. Ignores that the other side has closed it already."""
        with self._connected:
            try:
                self._connected.sendall((outcome.to_line() + "\n").encode())
            except OSError:
                pass


def peer_user(connected: socket.socket) -> int:
    """The user id of the process at the other end of a Unix socket."""
    if sys.platform == "win32":
        raise ControlSocketError(_LINUX_ONLY)
    credentials = connected.getsockopt(socket.SOL_SOCKET, socket.SO_PEERCRED, struct.calcsize("3i"))
    return int(struct.unpack("3i", credentials)[1])
