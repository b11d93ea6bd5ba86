"""Wine, which runs Windows programs on Linux: a prefix and a server of its own for each desktop.

Wine keeps what a Windows machine has in a folder, the prefix, and has one server process for each prefix. Making a prefix
takes seconds, so one is made as a pattern, once for each version of Wine, in the user's cache folder. Each desktop gets a
prefix that shares its system files and has its own settings and user files, so that runs side by side do not meet.
A prefix that the variable WINEPREFIX names is used as it is.
"""

from __future__ import annotations

import os
import re
import shutil
import subprocess
import tempfile
from pathlib import Path
from typing import Dict, Mapping, Optional, Tuple

from ..errors import WineError
from .linux import locked
from .progress import is_readable_within, run_with_progress
from .supervision import LaunchedProcesses

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own


_MAKING_SECONDS = 600.0
_START_SECONDS = 120.0
_GRACE_SECONDS = 5.0
_PREFIX = "WINEPREFIX"
_SCREENLESS = ("DISPLAY", "WAYLAND_DISPLAY")
_QUIET = {
    "WINEDEBUG": "-all",
    # Without them Wine offers to download parts that no Qt needs, and writes into the menus of the user's desktop.
    "WINEDLLOVERRIDES": "mscoree,mshtml=;winemenubuilder.exe=d",
}
# A crash ends the program, and is told on standard error; otherwise a dialog waits for somebody to close it.
_NO_CRASH_DIALOG = '\n[Software\\\\Wine\\\\WineDbg]\n"ShowCrashDialog"=dword:00000000\n'
_OWN_FOLDERS = ("users", "ProgramData")
_SERVER_FOLDER = re.compile(r"wine-\w+")


def find_wine() -> Path:
    """The program that starts Windows programs. Raises WineError where there is none."""
    found = shutil.which("wine") or shutil.which("wine64")
    if found is None:
        raise WineError(
            "running a Windows program needs Wine, which is not installed",
            hint="Install it (Debian: wine, wine64)",
        )
    return Path(found)


def pattern_folder() -> Path:
    """The folder of the pattern prefix for the Wine of this machine, whether it is made yet or not. Raises WineError."""
    caches = os.environ.get("XDG_CACHE_HOME", "")
    folder = Path(caches) if os.path.isabs(caches) else Path("~/.cache").expanduser()
    command = [str(find_wine()), "--version"]
    told = subprocess.run(
        command, stdin=subprocess.DEVNULL, capture_output=True, text=True, env={**os.environ, **_QUIET}
    )
    if told.returncode != 0:
        raise WineError(f"'{' '.join(command)}' fails: {told.stderr.strip() or told.returncode}")
    return folder / "qtdriver" / re.sub(r"[^\w.]+", "-", told.stdout.strip()).strip("-")


def system_folder(prefix: Path) -> Path:
    """The folder of a prefix with the libraries of Windows itself."""
    return prefix / "drive_c" / "windows" / "system32"


def make_pattern() -> Path:
    """The pattern prefix, which is made if it is not there; another process that needs it waits meanwhile.

    Raises WineError.
    """
    folder = pattern_folder()
    if folder.is_dir():
        return folder
    try:
        folder.parent.mkdir(parents=True, exist_ok=True)
        with locked(folder.parent / "wine.lock"):
            if not folder.is_dir():
                with tempfile.TemporaryDirectory(prefix="making-", dir=folder.parent) as place:
                    made = Path(place) / "prefix"
                    _make_prefix(made)
                    made.rename(folder)
    except OSError as error:
        raise WineError(
            f"Wine's prefix {folder} cannot be made: {error}", hint="Name another one by WINEPREFIX"
        ) from error
    return folder


def _make_prefix(folder: Path) -> None:
    """Makes a prefix without links to the user's folders; only drive Z leads there."""
    folder.mkdir()
    environment = {name: value for name, value in os.environ.items() if name not in _SCREENLESS}
    environment.update({**_QUIET, _PREFIX: str(folder)})
    launched = LaunchedProcesses()
    try:
        done = run_with_progress(
            [str(find_wine()), "wineboot", "--init"],
            "Wine makes its prefix, once for this version",
            timeout=_MAKING_SECONDS,
            stdin=subprocess.DEVNULL,
            env=launched.environment(environment),
            start_new_session=True,
        )
    except subprocess.TimeoutExpired:
        raise WineError(f"Wine has not made a prefix within {_MAKING_SECONDS:g} seconds") from None
    finally:
        launched.end(_GRACE_SECONDS)  # the server writes down the settings then
        _remove_server_folder(folder)
    settings = folder / "user.reg"
    if done.returncode != 0 or not settings.is_file():
        told = done.stdout.decode("utf-8", "replace").strip() or f"exit status {done.returncode}"
        raise WineError(f"Wine does not make a prefix: {told}")
    with settings.open("a", encoding="utf-8") as file:
        file.write(_NO_CRASH_DIALOG)
    for link in [path for path in (folder / "drive_c" / "users").rglob("*") if path.is_symlink()]:
        link.unlink()
        link.mkdir()


def _copy_prefix(pattern: Path, folder: Path) -> None:
    """Makes a prefix that shares the system files of another one."""
    shutil.copytree(pattern / "dosdevices", folder / "dosdevices", symlinks=True)
    for path in pattern.iterdir():
        if path.is_file() and path.name != "wineserver":
            shutil.copy2(path, folder / path.name)
    drive = folder / "drive_c"
    drive.mkdir()
    for path in (pattern / "drive_c").iterdir():
        if path.name in _OWN_FOLDERS:
            shutil.copytree(path, drive / path.name, symlinks=True)
        else:
            (drive / path.name).symlink_to(path)


def _remove_server_folder(prefix: Path) -> None:
    """Removes the folder of the server's socket, which Debian's Wine makes for each prefix and leaves there."""
    try:
        name = (prefix / "wineserver").read_text().strip()
    except (OSError, UnicodeDecodeError):
        return
    if _SERVER_FOLDER.fullmatch(name):
        shutil.rmtree(Path("/tmp") / name, ignore_errors=True)


class WineDesktop:
    """Wine on one desktop: its prefix, and a server that stays until close(), so that programs start faster.

    Attributes:
        prefix: its prefix.
    """

    def __init__(self, environment: Mapping[str, str]) -> None:
        """Makes the prefix and starts the server. `environment` names the desktop. Raises WineError."""
        self._folder: Optional[Path] = None
        self._launched: Optional[LaunchedProcesses] = None
        self._keeper: "Optional[subprocess.Popen[bytes]]" = None
        if environment.get(_PREFIX):
            self.prefix = Path(environment[_PREFIX])
            return
        pattern = make_pattern()
        # A desktop without a screen has a folder that goes with it.
        runtime = environment.get("XDG_RUNTIME_DIR", "")
        place = runtime if os.access(runtime, os.W_OK | os.X_OK) else None
        self._folder = self.prefix = Path(tempfile.mkdtemp(prefix="qtdriver-wine-", dir=place))
        try:
            _copy_prefix(pattern, self._folder)
            self._start_keeper(environment)
        except WineError:
            self.close()
            raise
        except OSError as error:
            self.close()
            raise WineError(f"no prefix of Wine for the desktop: {error}") from error

    def __repr__(self) -> str:
        return f"<Wine in {self.prefix}>"

    def _start_keeper(self, environment: Mapping[str, str]) -> None:
        """Starts a program that waits for its input, which never comes: while one runs, so does the server.

        The first program of a server starts Wine's services, too, which would be ended with an application that came
        before. So it has to run before there is one: it shows that by its prompt.
        """
        self._launched = LaunchedProcesses()
        self._keeper = subprocess.Popen(
            [str(find_wine()), str(self.system_folder / "cmd.exe"), "/q"],
            env=self._launched.environment(self.environment(environment)),
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL,
            bufsize=0,
            start_new_session=True,
        )
        self._launched.set_session_leader(self._keeper.pid)
        assert self._keeper.stdout is not None
        ready = is_readable_within(self._keeper.stdout, _START_SECONDS, "Wine starts")
        if not ready or not self._keeper.stdout.read(1):
            raise WineError(
                "Wine does not start: " + ("it ends at once" if ready else "it does not get ready")
            )

    def environment(self, environment: Mapping[str, str]) -> Dict[str, str]:
        """`environment` for a program that runs here. Wine logs nothing unless `environment` asks for it."""
        return {**_QUIET, **environment, _PREFIX: str(self.prefix)}

    @property
    def system_folder(self) -> Path:
        """The folder with the libraries of Windows itself."""
        return system_folder(self.prefix)

    def close(self) -> None:
        """Ends the server and removes the prefix, unless WINEPREFIX names it. Closing twice is harmless."""
        if self._launched is not None:
            self._launched.end(_GRACE_SECONDS)
            self._launched = None
        if self._keeper is not None:
            assert self._keeper.stdin is not None and self._keeper.stdout is not None
            self._keeper.stdin.close()
            self._keeper.stdout.close()
            self._keeper.wait()
            self._keeper = None
        if self._folder is not None:
            _remove_server_folder(self._folder)
            shutil.rmtree(self._folder, ignore_errors=True)
            self._folder = None


class WineDesktops:
    """Wine on each desktop that Windows programs are started on, from the first program until close()."""

    def __init__(self) -> None:
        self._desktops: Dict[Tuple[str, str], WineDesktop] = {}

    def __repr__(self) -> str:
        return f"<{list(self._desktops.values())}>"

    def on(self, environment: Mapping[str, str]) -> WineDesktop:
        """The desktop of programs with this environment; Wine is started there if it does not run yet. Raises WineError."""
        place = environment.get("DISPLAY", ""), environment.get(_PREFIX, "")
        if place not in self._desktops:
            self._desktops[place] = WineDesktop(environment)
        return self._desktops[place]

    def close(self) -> None:
        """Closes all desktops. Closing twice is harmless."""
        while self._desktops:
            self._desktops.popitem()[1].close()
