"""Where the agent libraries are."""

from __future__ import annotations

from pathlib import Path
from typing import Optional

from ..errors import AgentNotBuiltError, AgentPathError, ArchitectureError
from .elf import read_elf

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

QT_MAJORS = (4, 5, 6)
_CHECKOUT = Path(__file__).resolve().parents[3]


def checkout_file(relative: str) -> Optional[Path]:
    """The file at this path of the source checkout; None where the package does not run from a checkout that has it."""
    path = _CHECKOUT / relative
    return path if path.exists() else None


def default_build() -> Path:
    """The build folder: that of the checkout, or `build` in the current folder when the package is installed."""
    return _CHECKOUT / "build" if checkout_file("scripts/build.sh") is not None else Path("build").absolute()


def agent_library(major: int, build: "Optional[Path | str]" = None) -> Path:
    """The library to preload into an application.

    Args:
        major: the major version of the application's Qt.
        build: the folder with the agents in qt4, qt5 and qt6; by default default_build().

    Raises AgentNotBuiltError when there is no such file, and AgentPathError when LD_PRELOAD cannot hold its path.
    """
    folder = default_build() if build is None else Path(build).absolute()
    library = folder / f"qt{major}" / "lib" / "libqtdriver-preload.so"
    if not library.is_file():
        raise AgentNotBuiltError(
            f"the application uses Qt {major}, and there is no agent for it at {library}: build it with "
            f"'scripts/build.sh {major}', or name another build folder with --build DIR"
        )
    if any(character in str(library) for character in " :\t\n$"):
        raise AgentPathError(
            f"the path of the agent, {library}, has a blank, a colon or a dollar sign, which "
            "LD_PRELOAD cannot hold: move the build folder"
        )
    return library


def require_same_architecture(program: Path, library: Path) -> None:
    """Raises ArchitectureError if `library` cannot be loaded into `program`, and the errors of read_elf()."""
    theirs, ours = read_elf(program).architecture, read_elf(library).architecture
    if theirs != ours:
        raise ArchitectureError(
            f"{program} is made for {theirs}, but the agent {library} for {ours}: build the agent for the "
            "application's architecture"
        )
