"""How the agent gets into a program: the command and the environment that it is started with.

There are two ways. A library in LD_PRELOAD makes the agent as the program's first event loop starts. Or Qt itself loads
the library `qttestability`, which the option -testability asks for, and that makes the agent. The first one is for
programs of Linux that get no option, the second for programs of Windows and for those that drop LD_PRELOAD.
"""

from __future__ import annotations

import os
from pathlib import Path
from typing import Dict, List, Mapping, NamedTuple, Optional, Sequence

from ..errors import LibraryMissingError, LoadingError
from . import windows
from .agent import (
    agent_library,
    require_recent_qt,
    require_same_architecture,
    testability_library,
    windows_agent,
)
from .dlls import (
    WINEPATH,
    DllFolders,
    further_folders,
    linked_libraries,
    program_folders,
    qt_folder,
    windows_path,
)
from .platform import RUNS_WINDOWS_PROGRAMS
from .program import is_windows_program
from .qtversion import qt_major
from .windowsqt import require_same_kind
from .wine import WineDesktop, WineDesktops, find_wine

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

PRELOAD, TESTABILITY = "preload", "testability"
LOAD_WAYS = (PRELOAD, TESTABILITY)

_OPTION = "-testability"
_LIBRARY_PATH = "LD_LIBRARY_PATH"
_PLUGIN_PATH = "QT_PLUGIN_PATH"
_PLATFORM = "QT_QPA_PLATFORM"
_WINDOWS_PLATFORMS = ("windows", "direct2d", "offscreen", "minimal")
_EXPLAIN = "QTDRIVER_EXPLAIN"
_OF_WINDOWS = ("api-ms-", "ext-ms-")


class Start(NamedTuple):
    """How a program is started so that the agent gets into it.

    Attributes:
        command: the program and its arguments.
        environment: all of its variables.
        qt_major: the major version of its Qt.
        under_wine: whether it is a Windows program.
    """

    command: Sequence[str]
    environment: Mapping[str, str]
    qt_major: int
    under_wine: bool = False


def preload_environment(library: Path, environment: Optional[Mapping[str, str]] = None) -> Dict[str, str]:
    """The environment that loads a library into a program.

    Args:
        library: the library, as agent_library() returns it.
        environment: the other variables, by default those of this process.

    Returns all variables, with `library` in front of what LD_PRELOAD names already.
    """
    return _with_first(os.environ if environment is None else environment, "LD_PRELOAD", str(library))


def _with_first(environment: Mapping[str, str], variable: str, entry: str) -> Dict[str, str]:
    result = dict(environment)
    already = result.get(variable, "")
    result[variable] = f"{entry}:{already}" if already else entry
    return result


def start_of(
    program: Path,
    arguments: Sequence[str],
    environment: Mapping[str, str],
    *,
    wine: WineDesktops,
    qt: Optional[int] = None,
    build: "Optional[Path | str]" = None,
    load_by: Optional[str] = None,
) -> Start:
    """How to start a program. The arguments are those of launch.starting.start().

    Raises ProgramError subclasses, AgentNotBuiltError, AgentPathError, WineError, and the errors of a missing package.
    """
    if load_by not in (None, *LOAD_WAYS):
        raise ValueError(f"load_by is {load_by!r}, and not one of {', '.join(LOAD_WAYS)}")
    major = qt_major(program, environment) if qt is None else qt
    if is_windows_program(program):
        if load_by == PRELOAD:
            raise LoadingError(
                f"{program} is a Windows program, into which nothing can be preloaded",
                hint=f"Leave out '{PRELOAD}'",
            )
        agent = windows_agent(major, build)
        require_same_kind(program, agent)
        if RUNS_WINDOWS_PROGRAMS:
            return _native_start(program, arguments, environment, major, agent)
        return _wine_start(program, arguments, environment, major, agent, wine.on(environment))
    by_option = load_by == TESTABILITY
    library = testability_library(major, build) if by_option else agent_library(major, build)
    if qt is None:
        require_same_architecture(program, library)
        require_recent_qt(program, library, environment)
    if not by_option:
        return Start([str(program), *arguments], preload_environment(library, environment), major)
    # The option comes last, since an interpreter expects the name of a script to be its first argument.
    command = [str(program), *arguments, _OPTION]
    return Start(command, _explaining(_with_first(environment, _LIBRARY_PATH, str(library.parent))), major)


def _explaining(environment: Mapping[str, str]) -> Dict[str, str]:
    """`environment`, in which the library that Qt loads says on standard error why it makes no agent."""
    return {_EXPLAIN: "1", **environment}


def _native_start(
    program: Path, arguments: Sequence[str], environment: Mapping[str, str], major: int, agent: Path
) -> Start:
    """How to start a Windows program on Windows itself."""
    found = library_folders(program, agent, major, environment, windows.system_folder())
    result = windows.with_search_path(environment, [agent.parent, *found])
    qt = qt_folder(major, environment)
    if qt is not None and qt / "bin" in found:
        result[_PLUGIN_PATH] = str(qt / "plugins")
    return Start([str(program), *arguments, _OPTION], _explaining(result), major)


def _wine_start(
    program: Path,
    arguments: Sequence[str],
    environment: Mapping[str, str],
    major: int,
    agent: Path,
    desktop: WineDesktop,
) -> Start:
    """How to start a Windows program under Wine."""
    result = _explaining(desktop.environment(environment))
    found = library_folders(program, agent, major, environment, desktop.system_folder)
    entries = [environment.get(WINEPATH, ""), windows_path(agent.parent), *map(windows_path, found)]
    result[WINEPATH] = ";".join(filter(None, entries))
    # The desktop sets a platform plugin for programs of Linux, which Qt for Windows does not have.
    if result.get(_PLATFORM, "").partition(":")[0] not in _WINDOWS_PLATFORMS:
        result.pop(_PLATFORM, None)
    qt = qt_folder(major, environment)
    if qt is not None and qt / "bin" in found:
        result[_PLUGIN_PATH] = windows_path(qt / "plugins")
    return Start([str(find_wine()), str(program), *arguments, _OPTION], result, major, under_wine=True)


def library_folders(
    program: Path, agent: Path, major: int, environment: Mapping[str, str], system_folder: Path
) -> List[Path]:
    """The folders, beyond the program's own, with libraries that a Windows program and the agent link.

    Args:
        program: the program.
        agent: the agent's library.
        major: the major version of the program's Qt.
        environment: the environment of the program.
        system_folder: the folder with the libraries of Windows; where there is none, Wine has still to make it.

    Raises LibraryMissingError.
    """
    own, further = program_folders(program, environment), further_folders(major, environment)
    folders = DllFolders([*own, agent.parent, *further])
    of_windows = DllFolders([system_folder])
    missing = [
        name
        for name, path in linked_libraries([program, agent], folders)
        if path is None and of_windows.find(name) is None and not name.lower().startswith(_OF_WINDOWS)
    ]
    if missing and system_folder.is_dir():
        looked_at = ", ".join(map(str, [*own[1:], agent.parent, *further]))
        raise LibraryMissingError(
            f"{program}, with the agent inside, needs {', '.join(missing)}, which is neither beside the program nor in "
            f"{looked_at}",
            hint=f"Put it there, or name the folder of the application's Qt for Windows by QT{major}_WINDOWS",
        )
    return [folder for folder in further if folder in folders.used]
