"""Widget trees with derived names, and unique paths that the agent has confirmed."""

from __future__ import annotations

from typing import Optional

from ..errors import ReplyError
from ..protocol.connection import Connection
from .derived import probe_derived_names
from .tree import Node, WidgetTree

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_TREE_LIMIT = 20_000


def list_tree(connection: Connection, window: str) -> WidgetTree:
    """The widgets of a window, with the derived names that can be found out."""
    tree = WidgetTree(connection.window_tree(window))
    probe_derived_names(connection, window, tree)
    return tree


def checked_unique_path(connection: Connection, window: str, tree: WidgetTree, node: Node) -> Optional[str]:
    """A path that finds only this widget, or None. For a visible widget the agent is asked: its names can derive
    from what a listing does not tell."""
    path = tree.unique_path(node) if len(tree.nodes) <= _TREE_LIMIT else None
    if path is None or not node.record.visible:
        return path
    try:
        same = connection.read_property(window, path, "className") == node.record.class_name
    except (ReplyError, ValueError):
        return None
    return path if same else None
