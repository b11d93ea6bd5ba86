"""Refuses calls whose keys or clicks would do something else than was asked for.

An item view that opens no editor for a text would get the keys itself. And the click that comes before a menu would press
a button in the corner of the menu bar.
"""

from __future__ import annotations

from enum import IntFlag
from typing import Dict, List

from ..errors import CommandError, CornerButtonError, NoEditorError, ReplyError
from .paths import checked_unique_path
from .tree import Node, WidgetTree
from ..protocol.connection import Connection
from ..protocol.locators import Address
from ..protocol.wire import Rect, encode_argument

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_FOCUS_WIDGET = "FocusWidget"


class EditTrigger(IntFlag):
    """The bits of the property "editTriggers" of item views, as Qt names them."""

    CurrentChanged = 1
    DoubleClicked = 2
    SelectedClicked = 4
    EditKeyPressed = 8
    AnyKeyPressed = 16


_F2 = EditTrigger.EditKeyPressed
_TREE = _F2 | EditTrigger.AnyKeyPressed | EditTrigger.CurrentChanged
_SUFFICIENT: Dict[str, EditTrigger] = {
    "QListView": _F2,
    "QTableView": _F2,
    "QTableWidget": _F2,
    "QTreeView": _TREE,  # its text is typed, key by key; and its editor may be open already
}
"""The triggers that can open the editor for a text, by the class that serves the view."""


def refuse_without_editor(
    connection: Connection, window: str, path: Address, value: object, widget_class: str
) -> None:
    """Raises NoEditorError where the widget is an item view whose edit triggers open no editor for this value.

    Sends nothing for widgets that earlier replies to "enter" have shown to be no lists, trees or tables. It does not check
    the focus widget, whose properties cannot be read, nor whether the item is editable, has an editor open already, or
    gets one from the application's own code. Errors of the lookup are those that "enter" would raise.
    """
    if not isinstance(value, str) or _stands_for_the_focus(path):
        return
    encode_argument(value)  # raises what "enter" would, before anything is sent
    known = connection.entered.get((window, path, widget_class))
    if known is not None and known not in _SUFFICIENT:
        return
    try:
        triggers = connection.read_property(window, path, "editTriggers", widget_class=widget_class)
        if isinstance(triggers, bool) or not isinstance(triggers, int) or triggers & _F2:
            return
        served = connection.read_property(window, path, "silkClassName", widget_class=widget_class)
    except CommandError:
        return  # no such property: no item view
    if triggers & _sufficient(str(served), value) == 0 and served in _SUFFICIENT:
        raise NoEditorError(str(served), _names(triggers), value)


def _stands_for_the_focus(path: Address) -> bool:
    return isinstance(path, str) and path.rsplit("/", 1)[-1] == _FOCUS_WIDGET


def _sufficient(served: str, value: str) -> EditTrigger:
    """The triggers of which one can open an editor for this value."""
    triggers = _SUFFICIENT.get(served, EditTrigger(0))
    types_nothing = served == "QTreeView" and not value.partition(":")[2]
    return triggers & ~EditTrigger.AnyKeyPressed if types_nothing else triggers


def _names(triggers: int) -> str:
    """The triggers as Qt's documentation names them."""
    return " | ".join(trigger.name or "" for trigger in EditTrigger if trigger & triggers) or "NoEditTriggers"


_PRESSED = ("QAbstractButton", "QPushButton", "QToolButton", "QRadioButton", "QCheckBox", "QComboBox")
"""The classes, as the agent serves them, of widgets to which a click does something."""

_EXTENSION = "qt_menubar_ext_button"
"""Qt's own button, for titles that do not fit into the bar: it only opens a menu, which the next step closes."""


def refuse_corner_button(
    connection: Connection, window: str, tree: WidgetTree, bar: Node, path: Address
) -> None:
    """Raises CornerButtonError where a button has the top right pixel of a menu bar.

    Sends nothing where the bar has no widgets in it but its menus. It does not see a widget without a unique path.

    Args:
        connection: asks the application.
        window: the window.
        tree: its widgets.
        bar: the menu bar among them.
        path: the address of the bar.
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
        return  # the request to the menu raises it


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
