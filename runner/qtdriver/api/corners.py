"""Buttons in the corner of a menu bar, which the click that comes before a menu would press."""

from __future__ import annotations

from typing import List

from ..errors import CornerButtonError, ReplyError
from ..lookup.paths import checked_unique_path
from ..lookup.tree import Node, WidgetTree
from ..protocol.connection import Connection
from ..protocol.locators import Address
from ..protocol.wire import Rect

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_PRESSED = ("QAbstractButton", "QPushButton", "QToolButton", "QRadioButton", "QCheckBox", "QComboBox")
"""The classes, as the agent serves them, of what a click does something to."""

_EXTENSION = "qt_menubar_ext_button"
"""Qt's own button, for titles that do not fit into the bar: it only opens a menu, which the next step closes."""


def refuse_corner_button(
    connection: Connection, window: str, tree: WidgetTree, bar: Node, path: Address
) -> None:
    """Raises CornerButtonError where a button has the top right pixel of the menu bar `bar`, whose path is `path`.

    `tree` are the widgets of the window. Asks nothing where the bar has no other widgets in it than its menus; cannot
    know what has no path of its own, or is disabled.
    """
    inside = _visible_inside(bar)
    if not inside:
        return
    try:
        corner = connection.read_property(window, path, "globalRect")
        for node in reversed(inside):  # those in front, and within others, come last
            own = checked_unique_path(connection, window, tree, node)
            rect = None if own is None else connection.read_property(window, own, "globalRect")
            if own is None or not _has_corner(rect, corner):
                continue
            served = connection.read_property(window, own, "silkClassName")
            if served in _PRESSED and connection.read_property(window, own, "enabled") is True:
                raise CornerButtonError(str(served), own, str(path))
            return
    except ReplyError:
        return  # the menu's own request tells


def _visible_inside(bar: Node) -> List[Node]:
    """The visible widgets in the bar, parents before their children."""
    found: List[Node] = []
    for child in bar.children:
        if child.record.visible and child.name != _EXTENSION:
            found += [child, *_visible_inside(child)]
    return found


def _has_corner(rect: object, bar: object) -> bool:
    if not isinstance(rect, Rect) or not isinstance(bar, Rect):
        return False
    return rect.left <= bar.right <= rect.right and rect.top <= bar.top <= rect.bottom
