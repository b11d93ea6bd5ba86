"""Drives Qt widgets applications from tests: server, client and launcher for the qtdriver agent."""

from typing import TYPE_CHECKING

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
from .api.driver import Driver
from .api.found import FoundWidget
from .api.item import WidgetItem
from .api.menu import Menu
from .api.steps import StepListener, step
from .api.widget import Widget
from .api.window import Window
from .desktop.desktop import Desktop
from .errors import (
    AgentNotBuiltError,
    AgentPathError,
    AmbiguousError,
    AmbiguousWindowError,
    ApplicationEndedError,
    ApplicationHangsError,
    ArchitectureError,
    ClientRefusedError,
    ClipboardError,
    CommandError,
    CompilerError,
    ConditionError,
    ConnectionClosed,
    CornerButtonError,
    DesktopError,
    EarlyExitError,
    ElfReaderMissingError,
    ExeReaderMissingError,
    LibraryMissingError,
    LoadingError,
    NoClientError,
    NoEditorError,
    NoGreetingError,
    NoQtError,
    NoWidgetsError,
    NotReadyError,
    NotVisibleError,
    ObscuredError,
    OldAgentError,
    OldQtError,
    PauseError,
    PeerReaderMissingError,
    PictureError,
    PortInUseError,
    ProgramError,
    ProgramNotExecutableError,
    ProgramNotFoundError,
    ProtocolError,
    QtDriverError,
    ReplyError,
    RequestTimeout,
    ScriptProgramError,
    StaticProgramError,
    StaticQtError,
    UnknownFormatError,
    UnsupportedTextError,
    WidgetNotFoundError,
    WindowBlockedError,
    WindowNotFoundError,
    WineError,
    by_former_name,
)
from .errors.endings import describe_exit
from .expect.conditions import eventually
from .expect.soft import SoftAssertions, soft
from .launch.agent import agent_library, default_build
from .launch.process import Process
from .launch.qtversion import qt_major
from .launch.loading import preload_environment
from .lookup.snapshot import Item, Snapshot, SnapshotNode
from .lookup.tree import Node, WidgetTree
from .protocol.commands import COMMANDS, Answer, Command, Section
from .protocol.connection import Connection
from .protocol.greeting import Greeting
from .protocol.locators import Locator, containing
from .protocol.records import CursorWidget, WidgetRecord, WindowRecord
from .protocol.server import HOST, PORT, Server
from .protocol.transcript import Exchange, Step, Transcript
from .protocol.wire import Argument, Rect, Reply, Value, decode_hex, encode_argument, encode_hex


def _pause(app: App) -> None:
    """Pauses a test. What serves its page is slow to import, so it is only then."""
    from .pausing.pause import pause

    pause(app)


App.pauser = _pause

if TYPE_CHECKING:
    from .errors import HiddenError as HiddenError
    from .errors import NotFoundError as NotFoundError
else:

    def __getattr__(name):
        return by_former_name(__name__, name)


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
    "CompilerError",
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
    "ExeReaderMissingError",
    "FoundWidget",
    "Greeting",
    "HOST",
    "Item",
    "LibraryMissingError",
    "LoadingError",
    "Locator",
    "Menu",
    "NoClientError",
    "NoEditorError",
    "NoGreetingError",
    "NoQtError",
    "NoWidgetsError",
    "Node",
    "NotReadyError",
    "NotVisibleError",
    "ObscuredError",
    "OldAgentError",
    "OldQtError",
    "PORT",
    "PauseError",
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
    "Snapshot",
    "SnapshotNode",
    "SoftAssertions",
    "StaticProgramError",
    "StaticQtError",
    "Step",
    "StepListener",
    "Transcript",
    "UnknownFormatError",
    "UnsupportedTextError",
    "Value",
    "Widget",
    "WidgetItem",
    "WidgetNotFoundError",
    "WidgetRecord",
    "WidgetTree",
    "Window",
    "WindowBlockedError",
    "WindowNotFoundError",
    "WindowRecord",
    "WineError",
    "agent_library",
    "cell",
    "column_header",
    "containing",
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
    "step",
    "soft",
    "tree_path",
    "tree_row",
]
