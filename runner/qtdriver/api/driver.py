"""The driver: the test's server, and the applications that it starts, waits for and ends."""

from __future__ import annotations

import os
from functools import partial
from pathlib import Path
from typing import Dict, List, Mapping, Optional, Tuple

from ..attaching.loading import load_agent as load_agent_into
from ..desktop.desktop import Desktop
from ..desktop.session import session_settings
from ..errors import NoClientError
from ..launch.process import FailedStart
from ..launch.progress import Progress
from ..launch.starting import start
from ..launch.supervision import is_within
from ..launch.wine import WineDesktops
from ..protocol.channel import DEFAULT_TIMEOUT
from ..protocol.closing import ClosedOnLeaving
from ..protocol.pending_agents import PendingAgents
from ..protocol.server import Server
from ..protocol.waiting import Deadline
from ..surroundings.home import IsolatedHome, write_settings
from ..surroundings.inifile import SettingsFiles
from ..surroundings.look import display_of_attached, look_of_attached, look_of_launched
from ..surroundings.plainlook import prepare_plain_look, with_changes
from .app import DEFAULT_WAIT, App
from .steps import StepListener

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own


class Driver(ClosedOnLeaving):
    """Starts applications, or waits for them, and ends them.

    It is a context manager: leaving it ends what it started. Agents look for their server at a fixed port, so there can
    be one driver at a time in a network namespace.

    Attributes:
        timeout: seconds that calls wait for windows and widgets, unless launch() or attach() sets another time.
        request_timeout: seconds that a request may take before the application counts as hanging.
        start_timeout: seconds that an application may take until its agent is there.
        listeners: the StepListeners that are notified of the steps of every application.

    Example:

        with Driver(headless=True) as driver:
            driver.launch("./editor", "notes.txt").window("Notes").button("Save").click()
    """

    def __init__(
        self,
        *,
        qt: Optional[int] = None,
        build: "Optional[Path | str]" = None,
        headless: bool = False,
        timeout: float = DEFAULT_WAIT,
        request_timeout: float = DEFAULT_TIMEOUT,
        start_timeout: float = DEFAULT_TIMEOUT,
        load_by: Optional[str] = None,
        server: Optional[Server] = None,
        desktop: Optional[Desktop] = None,
        wine: Optional[WineDesktops] = None,
        isolated: bool = False,
    ) -> None:
        """Starts to listen.

        Args:
            qt: the Qt version of applications, unless launch() sets one; see there.
            build: the folder with the agents in qt4, qt5 and qt6, by default the checkout's.
            headless: whether applications get a desktop without a screen, unless launch() sets that.
            load_by: how the agent gets into programs of Linux, unless launch() sets it; see there.
            timeout, request_timeout, start_timeout: the attributes.
            server: the server to use, for drivers that come one after the other; close() leaves it open. None makes one.
            desktop, wine: the same for the desktop without a screen, and for Wine.
            isolated: whether applications get a home folder, XDG folders and a temporary folder that are empty at first, the
                same for all of this driver, which close() removes. The default of the fixture of pytest.

        Raises PortInUseError when another process listens already.
        """
        self.timeout = timeout
        self.request_timeout = request_timeout
        self.start_timeout = start_timeout
        self.listeners: List[StepListener] = []
        self._qt = qt
        self._build = build
        self._headless = headless
        self._load_by = load_by
        self._owns_server = server is None
        self._server = Server() if server is None else server
        self._pending_agents = PendingAgents(self._server)
        self._owns_desktop = desktop is None
        self._desktop = desktop
        self._owns_wine = wine is None
        self._wine = WineDesktops() if wine is None else wine
        self._isolated = isolated
        self._home: Optional[IsolatedHome] = None
        self._apps: List[App] = []

    def __repr__(self) -> str:
        return f'<driver of {", ".join(map(repr, self._apps)) or "no applications yet"}>'

    @property
    def apps(self) -> Tuple[App, ...]:
        """The applications in the order in which they were started or attached, ended ones included."""
        return tuple(self._apps)

    def launch(
        self,
        program: "str | Path",
        *arguments: str,
        qt: Optional[int] = None,
        environment: Optional[Mapping[str, str]] = None,
        working_directory: "Optional[str | Path]" = None,
        headless: Optional[bool] = None,
        load_by: Optional[str] = None,
        keep_home: bool = False,
        plain_look: bool = False,
        settings: Optional[SettingsFiles] = None,
        start_timeout: Optional[float] = None,
        timeout: Optional[float] = None,
        request_timeout: Optional[float] = None,
    ) -> App:
        """Starts a program with the agent inside, and waits until the agent is there.

        Args:
            program: a path, or a name to be found in PATH; one of Linux, or of Windows, which runs under Wine.
            arguments: the program's arguments.
            qt: its Qt version, 4, 5 or 6; needed where the program does not link Qt itself, such as a script.
            environment: variables to add to the environment of this process.
            working_directory: its current folder, by default that of this process.
            headless: whether it gets a desktop without a screen, which all such applications of the driver share. On the
                screen of a Wayland session it runs on the X server there: it gets QT_QPA_PLATFORM=xcb.
            load_by: how the agent gets into a program of Linux: "preload", the default, or "testability", where it drops
                the variable LD_PRELOAD: then Qt itself loads the agent, for the option -testability behind the arguments.
            keep_home: whether it has the user's own folders also where the driver is isolated.
            plain_look: whether its style, font, resolution, cursor, animations and locale are the same on every machine,
                for picture snapshots. It has a home folder of its own then, also where the driver is not isolated.
            settings: what it shall read by QSettings, by "Organisation/Application": a dictionary with keys "Group/key", or the
                text of an INI file. The name ends in ".ini" for programs that ask for QSettings::IniFormat.
            start_timeout, timeout, request_timeout: seconds, in place of the driver's attributes.

        Returns the application. Raises ProgramError subclasses for a program that cannot be driven, AgentNotBuiltError and
        AgentPathError, WineError where a Windows program needs Wine, DesktopError, EarlyExitError and NoGreetingError with
        the program's last output, and ValueError for arguments that contradict each other.

        Example: driver.launch("python3", "editor.py", qt=5, environment={"LANG": "C"})
        """
        surroundings = self._environment(
            environment,
            self._headless if headless is None else headless,
            keep_home,
            plain_look,
            settings,
        )
        display = surroundings.get("DISPLAY")
        connection, process = start(
            [str(program), *arguments],
            pending_agents=self._pending_agents,
            qt=self._qt if qt is None else qt,
            build=self._build,
            start_timeout=self.start_timeout if start_timeout is None else start_timeout,
            request_timeout=self.request_timeout if request_timeout is None else request_timeout,
            environment=surroundings,
            working_directory=working_directory,
            load_by=self._load_by if load_by is None else load_by,
            wine=self._wine,
            failed=lambda failed: self._tell_failed_start(FailedStart(str(program), failed, display)),
        )
        seconds = self.timeout if timeout is None else timeout
        look = look_of_launched(process, arguments, surroundings, plain_look)
        return self._register(App(connection, process, timeout=seconds, display=display, look=look))

    def _tell_failed_start(self, failed: FailedStart) -> None:
        for listener in self.listeners:
            listener.start_failed(failed)

    def attach(
        self,
        *,
        pid: Optional[int] = None,
        load_agent: bool = False,
        start_timeout: Optional[float] = None,
        timeout: Optional[float] = None,
        request_timeout: Optional[float] = None,
    ) -> App:
        """Waits for an application that loads the agent itself, or was started elsewhere with the agent inside.

        It is not ended with the driver, nor by its close(): it only loses its connection.

        Args:
            pid: its process id, or that of a process that starts it; None takes the first application of this user.
            load_agent: whether the application `pid` runs without an agent, and gets one now, by gdb. It may have had one
                that is not connected any more.
            start_timeout, timeout, request_timeout: seconds, in place of the driver's attributes.

        Raises NoClientError when none comes in `start_timeout` seconds; with `load_agent` also LoadingError and other
        ProgramError subclasses, and AgentNotBuiltError: the application goes on as it was then.

        Example: driver.attach(pid=4711, load_agent=True)
        """
        seconds = self.start_timeout if start_timeout is None else start_timeout
        if load_agent:
            if pid is None:
                raise ValueError("load_agent needs the process: attach(pid=..., load_agent=True)")
            load_agent_into(pid, self._build, timeout=seconds)
        wanted = None if pid is None else partial(is_within, pid)
        with Progress("waiting for an application with an agent") as shown:
            connection = self._pending_agents.wait_for(
                wanted,
                Deadline(seconds),
                self.request_timeout if request_timeout is None else request_timeout,
                given_up=shown.tick_and_continue,
            )
        if connection is None:
            whose = "no agent" if pid is None else f"no agent of process {pid}"
            raise NoClientError(
                f"{whose} connected within {seconds:g} seconds",
                context=self._pending_agents.others(),
                hint="An agent looks for its server once, when it is created: start the driver first",
            )
        look, display = look_of_attached(connection.pid), display_of_attached(connection.pid)
        return self._register(
            App(connection, timeout=self.timeout if timeout is None else timeout, display=display, look=look)
        )

    def _register(self, app: App) -> App:
        app.listeners = self.listeners
        self._apps.append(app)
        return app

    def _environment(
        self,
        additional: Optional[Mapping[str, str]],
        headless: bool,
        keep_home: bool,
        plain_look: bool,
        settings: Optional[SettingsFiles],
    ) -> Dict[str, str]:
        """The environment of an application, whose home folder gets the settings. Raises ValueError; see _check_home()."""
        _check_home(self._isolated, keep_home, plain_look, settings)
        environment = dict(os.environ)
        if headless:
            if self._desktop is None:
                self._desktop = Desktop()
            environment.update(self._desktop.environment)
        else:
            environment.update(session_settings(environment))
        if plain_look or (self._isolated and not keep_home):
            if self._home is None:
                self._home = IsolatedHome()
            environment.update(self._home.environment(environment))
            if plain_look:
                environment = with_changes(environment, prepare_plain_look(self._home.folder, environment))
        environment.update(additional or {})
        if settings is not None:
            write_settings(settings, environment)
        return environment

    def close(self) -> None:
        """Ends every application that was started here, and stops listening. Closing twice is harmless.

        Agents that have connected without being asked for lose their connection.
        """
        for app in self._apps:
            app.terminate()
        self._pending_agents.close()
        if self._owns_server:
            self._server.close()
        else:
            self._server.drop_waiting()
        if self._owns_wine:
            self._wine.close()
        if self._home is not None:
            self._home.close()
            self._home = None
        if self._owns_desktop and self._desktop is not None:
            self._desktop.close()
            self._desktop = None


def _check_home(isolated: bool, keep_home: bool, plain_look: bool, settings: Optional[SettingsFiles]) -> None:
    """Raises ValueError for what needs a home folder of the application's own, where it would have the user's."""
    if plain_look and keep_home:
        raise ValueError("plain_look needs a home folder of the application's own: leave out keep_home")
    if settings is not None and (not isolated or keep_home):
        raise ValueError(
            "settings would be written into the user's own folder: they need Driver(isolated=True), as the fixture of "
            "pytest is, and no keep_home"
        )
