"""All errors that a test can meet, as a tree:

    QtDriverError
        ReplyError                      the agent refused a request
            WindowNotFoundError         no such window
            AmbiguousWindowError        several such windows
            WindowBlockedError          a popup or a modal window is in front
            WidgetNotFoundError         no such widget
            NotVisibleError             the widget is hidden
            AmbiguousError              several such widgets
            CommandError                the widget could not do it
                ObscuredError           another window is in front of the place
                NotReadyError           the widget cannot take the input yet
        ConditionError                  what was expected has not come true; an AssertionError, too
        UnsupportedTextError            the protocol cannot carry a text; a ValueError, too
        NoEditorError                   a text would not be entered, but act on the view
        CornerButtonError               a menu would not be opened, but a button pressed
        OldAgentError                   the application's agent cannot do it
        ConnectionClosed                the application is gone
            ApplicationEndedError       how it ended
        RequestTimeout                  the application does not answer
            ApplicationHangsError       it was ended for that
        ProtocolError                   what came is not the protocol
        NoClientError                   no agent has come
        ClientRefusedError              another user's process has come
        PortInUseError                  another process listens for agents
        PeerReaderMissingError          psutil is missing
        ProgramError                    the program cannot have an agent
            ProgramNotFoundError        no file has its name
            ProgramNotExecutableError   its file cannot be executed
            ScriptProgramError          it is a script, which starts another program
            UnknownFormatError          its file is no program of a known kind
            ArchitectureError           the agent is made for another processor
            OldQtError                  its Qt is older than the agent's
            NoQtError                   it links no Qt
            NoWidgetsError              it links Qt, but not Qt's widgets
            StaticProgramError          nothing can be loaded into it
                StaticQtError           Qt is a part of it
            CompilerError               the agent is made by a compiler that does not go with it
            LibraryMissingError         a Windows program lacks libraries
            LoadingError                the agent cannot be loaded in the way that was asked for
        ElfReaderMissingError           pyelftools is missing
        ExeReaderMissingError           pefile is missing
        WineError                       Wine is missing or does not start
        AgentNotBuiltError              there is no agent for the Qt of the program
        AgentPathError                  the agent is where it cannot be loaded from
        EarlyExitError                  the program ended before its agent came
        NoGreetingError                 the program runs without an agent
        DesktopError                    the desktop without a screen does not start
        PictureError                    there is no picture
        ClipboardError                  the clipboard cannot be read
        PauseError                      nobody is there who could have a paused test go on

Those of the command line are in `errors.commandline`.
"""

from __future__ import annotations

import warnings
from typing import TYPE_CHECKING, Type

from .base import QtDriverError
from .connection import (
    ApplicationEndedError,
    ApplicationHangsError,
    ClientRefusedError,
    ConnectionClosed,
    NoClientError,
    PeerReaderMissingError,
    PortInUseError,
    ProtocolError,
    RequestTimeout,
)
from .refusals import (
    ClipboardError,
    ConditionError,
    CornerButtonError,
    NoEditorError,
    OldAgentError,
    PauseError,
    PictureError,
    UnsupportedTextError,
)
from .replies import (
    REPLY_ERRORS,
    RETRYABLE_ERRORS,
    RETRYABLE_LOOKUPS,
    AmbiguousError,
    AmbiguousWindowError,
    CommandError,
    NotReadyError,
    NotVisibleError,
    ObscuredError,
    ReplyError,
    WidgetNotFoundError,
    WindowBlockedError,
    WindowNotFoundError,
    reply_error,
)
from .starting import (
    AgentNotBuiltError,
    AgentPathError,
    ArchitectureError,
    CompilerError,
    DesktopError,
    EarlyExitError,
    ElfReaderMissingError,
    ExeReaderMissingError,
    LibraryMissingError,
    LoadingError,
    NoGreetingError,
    NoQtError,
    NoWidgetsError,
    OldQtError,
    ProgramError,
    ProgramNotExecutableError,
    ProgramNotFoundError,
    ScriptProgramError,
    StaticProgramError,
    StaticQtError,
    UnknownFormatError,
    WineError,
)

__all__ = [
    "AgentNotBuiltError",
    "AgentPathError",
    "AmbiguousError",
    "AmbiguousWindowError",
    "ApplicationEndedError",
    "ApplicationHangsError",
    "ArchitectureError",
    "ClientRefusedError",
    "ClipboardError",
    "CommandError",
    "CompilerError",
    "ConditionError",
    "ConnectionClosed",
    "CornerButtonError",
    "DesktopError",
    "EarlyExitError",
    "ElfReaderMissingError",
    "ExeReaderMissingError",
    "LibraryMissingError",
    "LoadingError",
    "NoClientError",
    "NoEditorError",
    "NoGreetingError",
    "NoQtError",
    "NoWidgetsError",
    "NotReadyError",
    "NotVisibleError",
    "ObscuredError",
    "OldAgentError",
    "OldQtError",
    "PauseError",
    "PeerReaderMissingError",
    "PictureError",
    "PortInUseError",
    "ProgramError",
    "ProgramNotExecutableError",
    "ProgramNotFoundError",
    "ProtocolError",
    "QtDriverError",
    "REPLY_ERRORS",
    "RETRYABLE_ERRORS",
    "RETRYABLE_LOOKUPS",
    "ReplyError",
    "RequestTimeout",
    "ScriptProgramError",
    "StaticProgramError",
    "StaticQtError",
    "UnknownFormatError",
    "UnsupportedTextError",
    "WidgetNotFoundError",
    "WindowBlockedError",
    "WindowNotFoundError",
    "WineError",
    "reply_error",
]

_FORMER_NAMES = {"HiddenError": "ObscuredError", "NotFoundError": "WindowNotFoundError"}
"""Former names, which tests written for version 2 import; version 3 removes them."""


def by_former_name(module: str, name: str) -> Type[QtDriverError]:
    """The error that had this name until version 2. For the function __getattr__() of a module.

    Warns, with a DeprecationWarning, the line that uses the name.

    Args:
        module: the module that was asked for the name.
        name: the former name.

    Raises AttributeError for a name that no error had.
    """
    if name not in _FORMER_NAMES:
        raise AttributeError(f"module {module!r} has no attribute {name!r}")
    warnings.warn(f"{name} is {_FORMER_NAMES[name]} now", DeprecationWarning, stacklevel=3)
    error: Type[QtDriverError] = globals()[_FORMER_NAMES[name]]
    return error


if TYPE_CHECKING:
    HiddenError = ObscuredError
    NotFoundError = WindowNotFoundError
else:  # hidden from type checkers, which would accept any name of a module with __getattr__()

    def __getattr__(name: str) -> Type[QtDriverError]:
        return by_former_name(__name__, name)


# Tracebacks name the errors as tests import them, wherever in this package they are written.
for _value in list(globals().values()):
    if isinstance(_value, type) and issubclass(_value, QtDriverError):
        _value.__module__ = __name__
