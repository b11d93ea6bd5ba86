"""Keeps the X server and the window manager of a desktop without a screen as long as a process lives.

Started as `desktop_keeper.py PID SCREEN`, it writes the display and the folder of the desktop's files, a line each, to its
standard output when the desktop is there. When process PID has ended, for whatever reason, it ends the desktop and removes
the folder. Its standard error stays open until then: a process that has read it to its end knows that nothing is left.

The file uses the standard library alone, so that it starts quickly.
"""

from __future__ import annotations

import os
import random
import secrets
import select
import shutil
import signal
import socket
import struct
import subprocess
import sys
import tempfile
import time
from pathlib import Path
from typing import List, NoReturn, Optional, Tuple

assert sys.platform != "win32"

_START_SECONDS = 60.0
_GRACE_SECONDS = 5.0
_PAUSE = 0.01
_ENDING_WITH_US = ("setpriv", "--pdeathsig", "TERM", "--")

_DISPLAYS = range(100, 1000)
_TAKEN = (b"already active", b"already running")
_LOCAL = 256
_COOKIE_NAME = b"MIT-MAGIC-COOKIE-1"
_CHANGE_HOSTS, _LIST_HOSTS, _INSERT, _SERVER_INTERPRETED = 109, 110, 0, 5

_SOCKET, _LOCK = "/tmp/.X11-unix/X{}", "/tmp/.X{}-lock"


class _Keeper:
    """The desktop: its processes and its folder."""

    def __init__(self) -> None:
        self.folder = Path(tempfile.mkdtemp(prefix="qtdriver-desktop-"))
        self.display = ""
        self._processes: "List[subprocess.Popen[bytes]]" = []
        self._server: Optional[Tuple[int, int]] = None

    def start(self, screen: str) -> None:
        """Starts the desktop; ends this program with a message when a part of it does not start."""
        deadline = time.monotonic() + _START_SECONDS
        cookie = secrets.token_bytes(16)
        number = self._start_server(screen, deadline, cookie)
        try:
            _admit_this_user(number, cookie)
        except (OSError, struct.error) as error:
            sys.exit(f"with-desktop: Xvfb does not take this user in: {error}")
        self.display = os.environ["DISPLAY"] = f":{number}"
        os.environ["XDG_RUNTIME_DIR"] = str(self.folder)
        window_manager = self._run(["openbox", "--sm-disable"])
        probe = _WindowManagerProbe()
        while not probe.succeed():
            if window_manager.poll() is not None or time.monotonic() > deadline:
                self._complain("openbox", window_manager)
            time.sleep(_PAUSE)

    def _start_server(self, screen: str, deadline: float, cookie: bytes) -> int:
        """Starts the X server. Returns the number of its display.

        The server must not choose the number itself: it would see the displays of this network namespace only, and would
        replace the socket file in /tmp of a display in another one, which can be the user's screen. Lock files in /tmp
        tell the displays of all namespaces.
        """
        while True:
            number = random.choice(_DISPLAYS)
            if os.path.exists(_SOCKET.format(number)):
                continue
            secret = self._write_secret(number, cookie)
            options = ["-screen", "0", screen, "-nolisten", "tcp", "-noreset", "-auth", str(secret)]
            server = self._run(["Xvfb", f":{number}", *options])
            while server.poll() is None and not (_lock_owner(number) == server.pid and _listens(number)):
                if time.monotonic() > deadline:
                    self._complain("Xvfb", server)
                time.sleep(_PAUSE)
            if server.poll() is None:
                self._server = number, server.pid
                return number
            if not any(words in self._output("Xvfb") for words in _TAKEN):
                self._complain("Xvfb", server)
            self._processes.remove(server)

    def _write_secret(self, number: int, cookie: bytes) -> Path:
        """Writes the file by which the server accepts only clients that know the cookie.

        Without one it would accept every user of the machine, who could read the screen and type into its windows.
        """
        path = self.folder / "Xauthority"
        fields = (b"localhost", str(number).encode(), _COOKIE_NAME, cookie)
        path.touch(mode=0o600)
        path.write_bytes(
            struct.pack(">H", _LOCAL) + b"".join(struct.pack(">H", len(field)) + field for field in fields)
        )
        return path

    def _run(self, command: List[str]) -> "subprocess.Popen[bytes]":
        with open(self._log(command[0]), "wb") as log:
            process = subprocess.Popen(
                [*_ENDING_WITH_US, *command], stdin=subprocess.DEVNULL, stdout=log, stderr=log
            )
        self._processes.append(process)
        return process

    def _log(self, name: str) -> Path:
        return self.folder / f"{name}.log"

    def _output(self, name: str) -> bytes:
        return self._log(name).read_bytes()

    def _complain(self, name: str, process: "subprocess.Popen[bytes]") -> NoReturn:
        output = self._output(name).decode("utf-8", "replace").strip()
        state = "is not ready" if process.poll() is None else f"ended with status {process.returncode}"
        sys.exit(f"with-desktop: {name} {state}: {output or 'it says nothing'}")

    def end(self) -> None:
        """Ends the processes, the window manager first, and removes the folder."""
        for process in reversed(self._processes):
            process.terminate()
            try:
                process.wait(_GRACE_SECONDS)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
        if self._server is not None:
            _remove_leftovers(*self._server)
        shutil.rmtree(self.folder, ignore_errors=True)


def _listens(number: int) -> bool:
    """Whether an X server of this network namespace listens as this display."""
    with socket.socket(socket.AF_UNIX, socket.SOCK_STREAM) as client:
        return client.connect_ex("\0" + _SOCKET.format(number)) == 0


def _admit_this_user(number: int, cookie: bytes) -> None:
    """Tells the X server to accept all processes of this user without a cookie, and nobody else."""
    allowed = b"localuser\0#%d" % os.getuid()
    with socket.socket(socket.AF_UNIX, socket.SOCK_STREAM) as client:
        client.settimeout(_START_SECONDS)
        client.connect("\0" + _SOCKET.format(number))
        client.sendall(struct.pack("<BxHHHHxx", ord("l"), 11, 0, len(_COOKIE_NAME), len(cookie)))
        client.sendall(_padded(_COOKIE_NAME) + _padded(cookie))
        accepted, length = struct.unpack("<B5xH", _receive(client, 8))
        text = _receive(client, 4 * length)
        if accepted != 1:
            raise OSError(text.decode("latin-1").rstrip("\0\n"))
        host = struct.pack("<BxH", _SERVER_INTERPRETED, len(allowed)) + _padded(allowed)
        client.sendall(struct.pack("<BBH", _CHANGE_HOSTS, _INSERT, 1 + len(host) // 4) + host)
        client.sendall(struct.pack("<BxH", _LIST_HOSTS, 1))
        if _receive(client, 32)[0] != 1:  # an error comes in place of the list
            raise OSError("it refuses to change its list of users")


def _padded(data: bytes) -> bytes:
    """`data` as a request of X has it: in units of four bytes."""
    return data + bytes(-len(data) % 4)


def _receive(client: socket.socket, length: int) -> bytes:
    data = b""
    while len(data) < length:
        piece = client.recv(length - len(data))
        if not piece:
            raise OSError("it has closed the connection")
        data += piece
    return data


def _lock_owner(number: int) -> Optional[int]:
    """Id of the process that the lock file of this display names."""
    try:
        return int(Path(_LOCK.format(number)).read_text())
    except (OSError, ValueError):
        return None


def _remove_leftovers(number: int, pid: int) -> None:
    """Removes what a server leaves in /tmp if it was killed."""
    if _lock_owner(number) == pid:
        for name in (_SOCKET, _LOCK):
            Path(name.format(number)).unlink(missing_ok=True)


class _WindowManagerProbe:
    """Finds out whether the window manager works: asks it for another number of desktops, and waits for the change.

    It announces itself earlier, but a window that appears before it works does not get the keyboard.
    """

    def __init__(self) -> None:
        self._wanted = ""

    def succeed(self) -> bool:
        """Returns whether the number has changed. Asks for that at each call, since a request before it listens is lost."""
        count = _xdotool("get_num_desktops")
        if not count:
            return False  # there is no window manager yet
        if not self._wanted:
            self._wanted = "2" if count == "1" else "1"
        if count != self._wanted:
            _xdotool("set_num_desktops", self._wanted)
        return count == self._wanted


def _xdotool(*arguments: str) -> str:
    command = ["xdotool", *arguments]
    try:
        asked = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False)
    except FileNotFoundError:
        sys.exit("with-desktop: xdotool is missing (Debian: xdotool)")
    return asked.stdout.strip() if asked.returncode == 0 else ""


def _wait_for_end(pid: int) -> None:
    """Returns when there is no such process, or only its exit status is left."""
    try:
        descriptor = os.pidfd_open(pid)
    except ProcessLookupError:
        return
    except OSError:
        while _is_alive(pid):  # a kernel, or a container, without process descriptors
            time.sleep(0.1)
        return
    select.select([descriptor], [], [])


def _is_alive(pid: int) -> bool:
    try:
        with open(f"/proc/{pid}/stat", encoding="latin-1") as file:
            return file.read().rpartition(")")[2].split()[0] not in "ZX"
    except OSError:
        return False


def main() -> None:
    """Runs the program."""
    signal.signal(signal.SIGTERM, lambda number, frame: sys.exit(1))
    keeper = _Keeper()
    try:
        keeper.start(sys.argv[2])
        print(keeper.display, keeper.folder, sep="\n", flush=True)
        with open(os.devnull, "wb") as nowhere:
            os.dup2(nowhere.fileno(), sys.stdout.fileno())
        _wait_for_end(int(sys.argv[1]))
    finally:
        signal.signal(signal.SIGTERM, signal.SIG_IGN)
        keeper.end()


if __name__ == "__main__":
    main()
