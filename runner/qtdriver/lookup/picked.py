"""The best address of the widget under the mouse."""

from __future__ import annotations

from typing import Iterator, List, Optional

from ..errors import ReplyError
from ..protocol.connection import Connection
from ..protocol.locators import SPECIAL_NAMES, Locator
from ..protocol.records import CursorWidget
from ..protocol.waiting import Deadline, attempts
from .snapshot import SnapshotNode
from .stable_locators import StableLocators

_HOVER_SECONDS = 1.0
"""How long an application may take to notice that the mouse is over it."""


def stable_locator(connection: Connection, found: CursorWidget) -> Optional[Locator]:
    """The locator that finds only the widget under the mouse; it is the one that `tree --paths` prints.

    Args:
        connection: asks the application.
        found: the widget, as the agent describes it.

    Returns None where the agent has no snapshots, for a menu, and where others of the same path cannot be told from it.
    """
    if "+2" not in connection.extensions or found.path in SPECIAL_NAMES:
        return None
    names = found.path.split("/")
    try:
        for _ in attempts(Deadline(_HOVER_SECONDS)):
            root = SnapshotNode.of(connection.snapshot(found.window))
            node = _under_the_mouse(list(_at_path(root, names)))
            if node is not None:
                return StableLocators(connection, found.window, root).of(node)
    except ReplyError:
        pass  # the window is closed, or has a name that others have
    return None


def _at_path(node: SnapshotNode, names: List[str]) -> Iterator[SnapshotNode]:
    """The nodes at a path from this node on; a node without an object name may have any, as the agent derives one."""
    if node.name not in ("", names[0]):
        return
    if len(names) == 1:
        yield node
    for child in node.children if len(names) > 1 else ():
        yield from _at_path(child, names[1:])


def _under_the_mouse(nodes: List[SnapshotNode]) -> Optional[SnapshotNode]:
    """The only one, or else the only one that knows that the mouse is over it."""
    hovered = [node for node in nodes if "hovered" in node.states]
    fitting = hovered if len(nodes) > 1 else nodes
    return fitting[0] if len(fitting) == 1 else None
