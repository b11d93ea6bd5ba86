"""Widgets in the order in which a person reads them."""

from __future__ import annotations

from dataclasses import replace
from typing import Iterable, List

from .snapshot import SnapshotNode


def in_reading_order(root: SnapshotNode) -> SnapshotNode:
    """A copy of the widget in which the children of each widget are sorted: row by row from the top, each row from the left.

    An application may create them in an order that differs from run to run.
    """
    return replace(root, children=_in_order(map(in_reading_order, root.children)))


def _in_order(nodes: Iterable[SnapshotNode]) -> List[SnapshotNode]:
    rows: List[List[SnapshotNode]] = []
    for node in sorted(nodes, key=lambda node: (node.rect.top, node.rect.left)):
        if rows and _are_in_a_row(rows[-1][0], node):
            rows[-1].append(node)
        else:
            rows.append([node])
    return [node for row in rows for node in sorted(row, key=lambda node: (node.rect.left, node.rect.top))]


def _are_in_a_row(one: SnapshotNode, other: SnapshotNode) -> bool:
    """Whether the middle of each is beside the other: a label is beside its field, a line of text not beside a whole pane."""
    middles = [(node.rect.top + node.rect.bottom) / 2 for node in (one, other)]
    return one.rect.top <= middles[1] <= one.rect.bottom and other.rect.top <= middles[0] <= other.rect.bottom
