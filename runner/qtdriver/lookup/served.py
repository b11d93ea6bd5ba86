"""Finds the agent's classes that serve the widgets of a tree; a listing tells only their own classes."""

from __future__ import annotations

from typing import Iterable, List, Optional

from ..errors import ReplyError
from ..protocol.connection import Connection
from .paths import checked_unique_path
from .tree import Node, WidgetTree

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

PUSH_BUTTONS = ("QPushButton",)
OTHER_BUTTONS = ("QToolButton", "QAbstractButton")
CHECKED_BUTTONS = ("QCheckBox", "QRadioButton")
FIELDS = (
    "QLineEdit", "QTextEdit", "QComboBox", "QSlider", "QSpinBox", "QDoubleSpinBox", "QDateTimeEdit", "QDateEdit",
    "QTimeEdit",
)  # fmt: skip
TABLES = ("QTableView", "QTableWidget")
ITEM_VIEWS = ("QListView", "QTreeView", *TABLES, "QAbstractItemView")
TAB_BARS = ("QTabBar",)
MENU_BARS = ("QMenuBar",)
_SERVED_AS_THEMSELVES = frozenset(
    (
        *PUSH_BUTTONS, *OTHER_BUTTONS, *CHECKED_BUTTONS, *FIELDS, *ITEM_VIEWS, *TAB_BARS, *MENU_BARS,
        "QWidget", "QLabel", "QGroupBox", "QToolBox", "QDockWidget", "QFileDialog", "QStatusBar", "QMenu",
    )
)  # fmt: skip


def visible_served_as(
    connection: Connection, window: str, tree: WidgetTree, classes: Iterable[str]
) -> List[Node]:
    """The visible widgets of a window's tree that are served as one of `classes`, the outermost first.

    The agent is asked once for each class of the application; widgets of a class that no path finds alone are left out.
    """
    wanted = frozenset(classes)
    visible = [node for node in tree.nodes if node.record.visible]
    found = [node for node in visible if served_class(connection, window, tree, node) in wanted]
    return sorted(found, key=_depth)


def outermost_served_as(
    connection: Connection, window: str, tree: WidgetTree, class_name: str
) -> Optional[Node]:
    """The outermost visible widget that is served as a class; None without any.

    The agent is asked for the application's own classes only where no widget is of exactly this class.
    """
    exact = [node for node in tree.nodes if node.record.visible and node.record.class_name == class_name]
    found = sorted(exact, key=_depth) or visible_served_as(connection, window, tree, (class_name,))
    return found[0] if found else None


def served_class(connection: Connection, window: str, tree: WidgetTree, node: Node) -> Optional[str]:
    """The class under which the agent serves a visible widget; None where that cannot be known."""
    own = node.record.class_name
    if own in _SERVED_AS_THEMSELVES:
        return own
    if own not in connection.served:
        path = checked_unique_path(connection, window, tree, node)
        if path is None:
            return None
        try:
            connection.served[own] = str(connection.read_property(window, path, "silkClassName"))
        except ReplyError:
            return None
    return connection.served[own]


def _depth(node: Node) -> int:
    return node.record.depth
