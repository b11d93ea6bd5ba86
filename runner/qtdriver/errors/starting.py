"""Errors of starting an application with the agent inside."""

from __future__ import annotations

from typing import Optional

from .base import QtDriverError
from .endings import describe_exit
from .settingnames import setting_names


class ProgramError(QtDriverError):
    """Base of the reasons why a program cannot be started with the agent inside."""


class ProgramNotFoundError(ProgramError):
    """No file has the name of the program."""


class ProgramNotExecutableError(ProgramError):
    """The file of the program cannot be executed."""


class ScriptProgramError(ProgramError):
    """The program is a script, from which the runner cannot tell the Qt of the program that it starts."""


class UnknownFormatError(ProgramError):
    """The program is no ELF program, no Windows program and no script."""


class ArchitectureError(ProgramError):
    """The application and the agent are made for different processors."""


class OldQtError(ProgramError):
    """The application's Qt is older than the one that the agent was built with."""


class NoQtError(ProgramError):
    """The program links no Qt."""


class NoWidgetsError(ProgramError):
    """The program links Qt, but not Qt's widgets."""


class StaticProgramError(ProgramError):
    """The program is statically linked: nothing can be loaded into it."""


class StaticQtError(StaticProgramError):
    """Qt is inside the program itself: the agent, which brings the Qt libraries, would meet a second Qt."""


class CompilerError(ProgramError):
    """The program's Qt and the agent's were made by compilers, or in ways, that do not go together."""


class LibraryMissingError(ProgramError):
    """Libraries that a Windows program links are nowhere."""


class LoadingError(ProgramError):
    """The program cannot get the agent in the way that was asked for."""


class ElfReaderMissingError(QtDriverError):
    """The Python package that reads ELF files is not installed."""

    def __init__(self) -> None:
        super().__init__(
            "finding out which Qt a program links needs pyelftools, which is not installed",
            hint=f"Install it (Debian: python3-pyelftools), or name the Qt version with {setting_names().qt}",
        )


class ExeReaderMissingError(QtDriverError):
    """The Python package that reads programs of Windows is not installed."""

    def __init__(self) -> None:
        super().__init__(
            "finding out what a Windows program links needs pefile, which is not installed",
            hint="Install it (Debian: python3-pefile)",
        )


class WineError(QtDriverError):
    """Wine, which runs Windows programs on Linux, is missing or does not start."""


class AgentNotBuiltError(QtDriverError):
    """There is no agent for the Qt of the application."""


class AgentPathError(QtDriverError):
    """The agent's path cannot be written into LD_PRELOAD."""


class DesktopError(QtDriverError):
    """The X server or the window manager could not be started."""


class EarlyExitError(QtDriverError):
    """The application ended before its agent greeted.

    Attributes:
        status: the exit status, negative for a signal.
    """

    def __init__(self, program: str, status: int, last_output: str, others: str = "") -> None:
        """`others` are lines on other processes that have connected."""
        output = "; its last output:" if last_output else ", without any output"
        hint = ""
        if status == 0:
            hint = (
                "If it started the application and left, name the application itself; if it handed over to an "
                "instance that was running already, end that one"
            )
        super().__init__(
            f"{program} ended ({describe_exit(status)}) before its agent connected{output}",
            context=_lines(last_output, others),
            hint=hint,
        )
        self.status = status


class NoGreetingError(QtDriverError):
    """The application runs, but its agent has not greeted in time. It has been ended, if this user may do that."""

    def __init__(
        self,
        program: str,
        timeout: float,
        last_output: str,
        remaining: Optional[int] = None,
        others: str = "",
    ) -> None:
        """`remaining` is the process that could not be ended; `others` are lines on other processes that have connected."""
        end = "It was ended"
        if remaining is not None:
            end = f"It could not be ended: process {remaining} still runs, perhaps with the rights of another user"
        output = "; its last output:" if last_output else ""
        names = setting_names()
        super().__init__(
            f"{program} runs, but its agent has not connected within {timeout:g} seconds. {end}{output}",
            context=_lines(last_output, others),
            hint=f"Is it a Qt widgets application, of the Qt version given with {names.qt}? Does it show a display error, "
            "wait for something before its event loop starts, start with more rights than this user has (LD_PRELOAD "
            f"is dropped then), or need longer ({names.start_timeout})?",
        )


def _lines(*texts: str) -> str:
    return "\n".join(text for text in texts if text)
