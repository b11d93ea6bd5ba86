"""Where the agent libraries are."""

from __future__ import annotations

import sysconfig
from pathlib import Path
from typing import Mapping, Optional

from ..errors import AgentNotBuiltError, AgentPathError, ArchitectureError, OldQtError
from ..errors.settingnames import setting_names
from .elf import read_elf, symbol_versions
from .libraries import linked_libraries, load_program

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

QT_MAJORS = (4, 5, 6)
_CHECKOUT = Path(__file__).resolve().parents[3]
_OF_WHEEL = Path(__file__).resolve().parents[1] / "agents"
_DEBIAN_PACKAGES = Path("/usr/lib/python3/dist-packages")
_OF_DEBIAN = Path("/usr/lib", str(sysconfig.get_config_var("MULTIARCH") or ""), "qtdriver")
_QT_OF_DEBIAN = (5, 6)


def _not_built(major: int, library: Path, command: str) -> AgentNotBuiltError:
    return AgentNotBuiltError(
        f"the application uses Qt {major}, and there is no agent for it at {library}",
        hint=f"Get it with '{command}', or name another build folder with {setting_names().build}",
    )


def _is_debian_package() -> bool:
    """Whether this runner is the one of Debian's package."""
    return _DEBIAN_PACKAGES in Path(__file__).resolve().parents


def checkout_file(relative: str) -> Optional[Path]:
    """The file at this path of the source checkout; None where the package does not run from a checkout that has it."""
    path = _CHECKOUT / relative
    return path if path.exists() else None


def default_build() -> Path:
    """The folder with the agents that belong to this runner.

    It is the build folder of the checkout, the folder in the wheel, or that of the Debian packages; for a Python package
    that was installed by itself, `build` in the current folder.
    """
    if checkout_file("scripts/build.sh") is not None:
        return _CHECKOUT / "build"
    if _OF_WHEEL.is_dir():
        return _OF_WHEEL
    return _OF_DEBIAN if _is_debian_package() else Path("build").absolute()


def command_for_agent(major: int) -> str:
    """The command that gets the agent for programs of Linux of Qt `major`, for the user who runs this runner."""
    if _is_debian_package() and major in _QT_OF_DEBIAN:
        return f"apt install qtdriver-agent-qt{major}"
    return "QMAKE4=/path/to/qmake scripts/build.sh 4" if major == 4 else f"scripts/build.sh {major}"


def _build_folder(build: "Optional[Path | str]") -> Path:
    return default_build() if build is None else Path(build).absolute()


def agent_library(major: int, build: "Optional[Path | str]" = None) -> Path:
    """The library to preload into an application.

    Args:
        major: the major version of the application's Qt.
        build: the folder with the agents in qt4, qt5 and qt6; by default default_build().

    Raises AgentNotBuiltError when there is no such file, and AgentPathError when LD_PRELOAD cannot hold its path.
    """
    library = _build_folder(build) / f"qt{major}" / "lib" / "libqtdriver-preload.so"
    if not library.is_file():
        raise _not_built(major, library, command_for_agent(major))
    if any(character in str(library) for character in " :\t\n$"):
        raise AgentPathError(
            f"the path of the agent, {library}, has a blank, a colon or a dollar sign, which LD_PRELOAD cannot hold",
            hint="Move the build folder",
        )
    return library


def testability_library(major: int, build: "Optional[Path | str]" = None) -> Path:
    """The library that an application of Qt `major` loads for the option -testability; `build` as for agent_library().

    Raises AgentNotBuiltError.
    """
    library = _build_folder(build) / f"qt{major}" / "lib" / "libqttestability.so"
    if not library.is_file():
        raise _not_built(major, library, command_for_agent(major))
    return library


def windows_agent(major: int, build: "Optional[Path | str]" = None) -> Path:
    """The agent for Windows programs of Qt `major`, beside which is the library that loads it; `build` is the folder with
    windows-qt4, windows-qt5, windows-qt6.

    Raises AgentNotBuiltError.
    """
    folder = _build_folder(build) / f"windows-qt{major}" / "bin"
    for name in ("qtdriver.dll", "qttestability.dll"):
        if not (folder / name).is_file():
            command = f"QT{major}_WINDOWS=/path/to/qt scripts/build.sh {major} --windows"
            raise _not_built(major, folder / name, command)
    return folder / "qtdriver.dll"


def require_same_architecture(program: Path, library: Path) -> None:
    """Raises ArchitectureError if `library` cannot be loaded into `program`, and the errors of read_elf()."""
    theirs, ours = read_elf(program).architecture, read_elf(library).architecture
    if theirs != ours:
        raise ArchitectureError(
            f"{program} is made for {theirs}, but the agent {library} for {ours}",
            hint="Build the agent for the application's architecture",
        )


def require_recent_qt(program: Path, library: Path, environment: Mapping[str, str]) -> None:
    """Raises OldQtError if the Qt of `program` is older than the one that the agent beside `library` was built with.

    Qt marks its symbols with the minor version that an agent needs. `environment` is that of the application. Raises the
    errors of read_elf().
    """
    agent = library.with_name("libqtdriver.so")
    if not agent.is_file():
        return
    needed = {
        name: versions for name, versions in symbol_versions(agent).needed.items() if name.startswith("libQt")
    }
    for name, found in linked_libraries(load_program(program), environment):
        if not needed:
            return
        versions = needed.pop(name, None)
        if found is None or versions is None:
            continue
        file = found.elf.path.resolve()
        missing = versions - symbol_versions(file).defined
        if missing:
            wanted = ", ".join(sorted(version.replace("_", " ") for version in missing))
            raise OldQtError(
                f"{program} uses {file}, and the agent {agent} needs {wanted} or newer",
                hint="Take a build of the application with that Qt, or build the agent with the application's",
            )
