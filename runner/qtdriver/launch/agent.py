"""Where the agent libraries are."""

from __future__ import annotations

from pathlib import Path
from typing import Optional

from ..errors import AgentNotBuiltError, AgentPathError, ArchitectureError
from ..errors.settingnames import setting_names
from .elf import read_elf

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

QT_MAJORS = (4, 5, 6)
_CHECKOUT = Path(__file__).resolve().parents[3]
_NOT_BUILT = (
    "the application uses Qt {major}, and there is no agent for it at {library}: build it with '{command}', or name "
    "another build folder with {option}"
)


def _not_built(major: int, library: Path, command: str) -> AgentNotBuiltError:
    option = setting_names().build
    return AgentNotBuiltError(_NOT_BUILT.format(major=major, library=library, command=command, option=option))


def checkout_file(relative: str) -> Optional[Path]:
    """The file at this path of the source checkout; None where the package does not run from a checkout that has it."""
    path = _CHECKOUT / relative
    return path if path.exists() else None


def default_build() -> Path:
    """The build folder: that of the checkout, or `build` in the current folder when the package is installed."""
    return _CHECKOUT / "build" if checkout_file("scripts/build.sh") is not None else Path("build").absolute()


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
        raise _not_built(major, library, f"scripts/build.sh {major}")
    if any(character in str(library) for character in " :\t\n$"):
        raise AgentPathError(
            f"the path of the agent, {library}, has a blank, a colon or a dollar sign, which "
            "LD_PRELOAD cannot hold: move the build folder"
        )
    return library


def testability_library(major: int, build: "Optional[Path | str]" = None) -> Path:
    """The library that an application of Qt `major` loads for the option -testability; `build` as for agent_library().

    Raises AgentNotBuiltError.
    """
    library = _build_folder(build) / f"qt{major}" / "lib" / "libqttestability.so"
    if not library.is_file():
        raise _not_built(major, library, f"scripts/build.sh {major}")
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
            f"{program} is made for {theirs}, but the agent {library} for {ours}: build the agent for the "
            "application's architecture"
        )
