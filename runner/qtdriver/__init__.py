"""Drives Qt widgets applications from tests: server, client and launcher for the qtdriver agent."""

from .agent import AgentNotBuiltError, AgentPathError, ArchitectureError, agent_library, default_build
from .application import Application, Process, describe_exit
from .commands import COMMANDS, Answer, Command, Section
from .connection import Connection
from .elf import ElfReaderMissingError
from .errors import (
    AmbiguousError,
    AmbiguousWindowError,
    CommandError,
    ConnectionClosed,
    NoClientError,
    NotFoundError,
    NotVisibleError,
    PortInUseError,
    ProtocolError,
    QtDriverError,
    ReplyError,
    RequestTimeout,
    WidgetNotFoundError,
    WindowBlockedError,
)
from .greeting import Greeting
from .launch import EarlyExitError, NoGreetingError, launch, preload_environment
from .program import (
    ProgramError,
    ProgramNotExecutableError,
    ProgramNotFoundError,
    ScriptProgramError,
    UnknownFormatError,
)
from .qtversion import NoQtError, NoWidgetsError, StaticProgramError, StaticQtError, qt_major
from .records import CursorWidget, WidgetRecord, WindowRecord
from .server import HOST, PORT, Server
from .wire import Argument, Rect, Reply, Value, decode_hex, encode_argument, encode_hex

__all__ = [
    "AgentNotBuiltError",
    "AgentPathError",
    "AmbiguousError",
    "AmbiguousWindowError",
    "Answer",
    "Application",
    "ArchitectureError",
    "Argument",
    "COMMANDS",
    "Command",
    "CommandError",
    "Connection",
    "ConnectionClosed",
    "CursorWidget",
    "EarlyExitError",
    "ElfReaderMissingError",
    "Greeting",
    "HOST",
    "NoClientError",
    "NoGreetingError",
    "NoQtError",
    "NoWidgetsError",
    "NotFoundError",
    "NotVisibleError",
    "PORT",
    "PortInUseError",
    "Process",
    "ProgramError",
    "ProgramNotExecutableError",
    "ProgramNotFoundError",
    "ProtocolError",
    "QtDriverError",
    "Rect",
    "Reply",
    "ReplyError",
    "RequestTimeout",
    "ScriptProgramError",
    "Section",
    "Server",
    "StaticProgramError",
    "StaticQtError",
    "UnknownFormatError",
    "Value",
    "WidgetNotFoundError",
    "WidgetRecord",
    "WindowBlockedError",
    "WindowRecord",
    "agent_library",
    "decode_hex",
    "default_build",
    "describe_exit",
    "encode_argument",
    "encode_hex",
    "launch",
    "preload_environment",
    "qt_major",
]
