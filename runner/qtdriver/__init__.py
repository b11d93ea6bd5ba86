"""Drives Qt widgets applications from tests: server, client and launcher for the qtdriver agent."""

from .agent import AgentNotBuiltError, AgentPathError, ArchitectureError, agent_library, default_build
from .addresses import cell, column_header, menu_entry, menu_path, model_item, row_header, tree_path, tree_row
from .app import App
from .clipboard import ClipboardError
from .commands import COMMANDS, Answer, Command, Section
from .connection import Connection
from .desktop import Desktop, DesktopError
from .driver import Driver
from .elf import ElfReaderMissingError
from .errors import (
    AmbiguousError,
    AmbiguousWindowError,
    ApplicationEndedError,
    ApplicationHangsError,
    ClientRefusedError,
    CommandError,
    ConditionError,
    ConnectionClosed,
    CornerButtonError,
    HiddenError,
    NoClientError,
    NoEditorError,
    NotFoundError,
    NotVisibleError,
    PortInUseError,
    ProtocolError,
    QtDriverError,
    ReplyError,
    RequestTimeout,
    UnsupportedTextError,
    WidgetNotFoundError,
    WindowBlockedError,
)
from .expect import eventually
from .greeting import Greeting
from .launch import EarlyExitError, NoGreetingError, preload_environment
from .menu import Menu
from .peers import PeerReaderMissingError
from .pictures import PictureError
from .process import Process, describe_exit
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
from .steps import StepListener
from .transcript import Exchange, Step, Transcript
from .tree import Node, WidgetTree
from .widget import Widget
from .window import Window
from .wire import Argument, Rect, Reply, Value, decode_hex, encode_argument, encode_hex

__all__ = [
    "AgentNotBuiltError",
    "AgentPathError",
    "AmbiguousError",
    "AmbiguousWindowError",
    "Answer",
    "App",
    "ApplicationEndedError",
    "ApplicationHangsError",
    "ArchitectureError",
    "Argument",
    "COMMANDS",
    "ClientRefusedError",
    "ClipboardError",
    "Command",
    "CommandError",
    "ConditionError",
    "Connection",
    "ConnectionClosed",
    "CornerButtonError",
    "CursorWidget",
    "Desktop",
    "DesktopError",
    "Driver",
    "EarlyExitError",
    "ElfReaderMissingError",
    "Exchange",
    "Greeting",
    "HOST",
    "HiddenError",
    "Menu",
    "NoClientError",
    "NoEditorError",
    "NoGreetingError",
    "NoQtError",
    "NoWidgetsError",
    "Node",
    "NotFoundError",
    "NotVisibleError",
    "PORT",
    "PeerReaderMissingError",
    "PictureError",
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
    "Step",
    "StepListener",
    "Transcript",
    "UnknownFormatError",
    "UnsupportedTextError",
    "Value",
    "Widget",
    "WidgetNotFoundError",
    "WidgetRecord",
    "WidgetTree",
    "Window",
    "WindowBlockedError",
    "WindowRecord",
    "agent_library",
    "cell",
    "column_header",
    "decode_hex",
    "default_build",
    "describe_exit",
    "encode_argument",
    "encode_hex",
    "eventually",
    "menu_entry",
    "menu_path",
    "model_item",
    "preload_environment",
    "qt_major",
    "row_header",
    "tree_path",
    "tree_row",
]
