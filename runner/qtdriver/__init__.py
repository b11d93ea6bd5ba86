"""Drives Qt widgets applications from tests: server, client and launcher for the qtdriver agent."""

from .api.addresses import (
    cell,
    column_header,
    menu_entry,
    menu_path,
    model_item,
    row_header,
    tree_path,
    tree_row,
)
from .api.app import App
from .api.clipboard import ClipboardError
from .api.driver import Driver
from .api.expect import eventually
from .api.menu import Menu
from .api.pictures import PictureError
from .api.steps import StepListener
from .api.widget import Widget
from .api.window import Window
from .desktop.desktop import Desktop, DesktopError
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
from .errors.endings import describe_exit
from .launch.agent import AgentNotBuiltError, AgentPathError, ArchitectureError, agent_library, default_build
from .launch.elf import ElfReaderMissingError
from .launch.process import Process
from .launch.program import (
    ProgramError,
    ProgramNotExecutableError,
    ProgramNotFoundError,
    ScriptProgramError,
    UnknownFormatError,
)
from .launch.qtversion import NoQtError, NoWidgetsError, StaticProgramError, StaticQtError, qt_major
from .launch.starting import EarlyExitError, NoGreetingError, preload_environment
from .lookup.tree import Node, WidgetTree
from .protocol.commands import COMMANDS, Answer, Command, Section
from .protocol.connection import Connection
from .protocol.greeting import Greeting
from .protocol.peers import PeerReaderMissingError
from .protocol.records import CursorWidget, WidgetRecord, WindowRecord
from .protocol.server import HOST, PORT, Server
from .protocol.transcript import Exchange, Step, Transcript
from .protocol.wire import Argument, Rect, Reply, Value, decode_hex, encode_argument, encode_hex

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
