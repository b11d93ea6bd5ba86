"""The tree of a window's widgets, and the widgets in it that a path finds."""

from __future__ import annotations

from dataclasses import dataclass, field
from typing import Dict, Iterable, Iterator, List, Optional, Sequence, Tuple

from ..protocol.records import WidgetRecord

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

UNNAMED = "unnamed"
"""The path element for a widget that has no name."""

UNKNOWN = ""
"""In place of a push button's derived name, as long as its text is not known: a listing does not tell that."""

_INPUT_DIALOG = "QInputDialog"


@dataclass(eq=False)
class Node:
    """A widget of a window.

    Attributes:
        record: the widget's record in the agent's listing.
        parent: None for the window.
        children: in the order of the window.
        name: the name that a path calls it by: its object name, a derived name, "unnamed", or UNKNOWN.
    """

    record: WidgetRecord
    parent: Optional["Node"]
    name: str
    children: List["Node"] = field(default_factory=list, repr=False)

    def __repr__(self) -> str:
        """As a line of the tree: "brewButton (QPushButton)"."""
        hidden = "" if self.record.visible else ", hidden"
        return f'{self.name or "(named after its text)"} ({self.record.class_name}{hidden})'

    @property
    def has_certain_name(self) -> bool:
        """Whether `name` is certainly the agent's name for it.

        A tool button without an object name may be named after its action, which a listing does not tell.
        """
        return self.name != UNKNOWN and (self.name != UNNAMED or self.record.class_name != "QToolButton")

    def ancestors(self) -> Iterator["Node"]:
        """Its parent, the parent's parent, and so on up to the window."""
        node = self.parent
        while node is not None:
            yield node
            node = node.parent


class WidgetTree:
    """The widgets of one window as they were when they were listed."""

    def __init__(self, records: Iterable[WidgetRecord]) -> None:
        """`records` come parents first, as Connection.window_tree() has them."""
        self.nodes: List[Node] = []
        self._by_name: Dict[str, List[Node]] = {}
        chain: List[Node] = []
        for record in records:
            del chain[record.depth :]
            parent = chain[-1] if chain else None
            node = Node(record, parent, _name(record, parent))
            if parent is not None:
                parent.children.append(node)
            chain.append(node)
            self.nodes.append(node)
            self._by_name.setdefault(node.name, []).append(node)

    def __repr__(self) -> str:
        return f"<tree of {len(self.nodes)} widgets in {self.nodes[0]}>" if self.nodes else "<empty tree>"

    def __str__(self) -> str:
        """An outline: a line for each widget, indented below its parent. Widgets in a hidden one are only counted."""
        lines: List[str] = []
        hidden: Optional[WidgetRecord] = None
        counted = 0
        for node in self.nodes:
            if hidden is not None and node.record.depth > hidden.depth:
                counted += 1
                continue
            _add_count(lines, counted)
            lines.append(f'{"  " * node.record.depth}{node}')
            hidden, counted = None if node.record.visible else node.record, 0
        _add_count(lines, counted)
        return "\n".join(lines)

    def rename(self, node: Node, name: str) -> None:
        """Gives a widget the derived name that has become known."""
        self._by_name[node.name].remove(node)
        self._by_name.setdefault(name, []).append(node)
        node.name = name

    def names(self) -> Tuple[str, ...]:
        """Every known name in the window once, but "unnamed"."""
        return tuple(
            name for name, nodes in self._by_name.items() if nodes and name not in (UNNAMED, UNKNOWN)
        )

    def named(self, name: str) -> Tuple[Node, ...]:
        """The widgets of this name, hidden ones included."""
        return tuple(self._by_name.get(name, ()))

    def find(self, path: str) -> Tuple[Node, ...]:
        """The widgets that a path finds, hidden ones included.

        A path that ends with "/" finds every widget without an object name below the widgets that it names.
        """
        names = path.split("/")
        if names[-1] == "":
            candidates: Sequence[Node] = [node for node in self.nodes if not node.record.object_name]
        else:
            candidates = self.named(names[-1])
        return tuple(node for node in candidates if _fits(node, names))

    def unique_path(self, target: Node) -> Optional[str]:
        """A short path that finds only this widget. None when no path does, or when it is hidden and a path that finds it
        also finds a visible widget.
        """
        if not target.has_certain_name:
            return None
        path = target.name
        if self._finds_only(path, target):
            return path
        gap = False
        for ancestor in target.ancestors():
            if not ancestor.has_certain_name or ancestor.name == UNNAMED:
                gap = True
                continue
            longer = f"{ancestor.name}/{'/' if gap else ''}{path}"
            if self._finds_only(longer, target):
                return longer
        return self._whole_path(target)

    def _whole_path(self, target: Node) -> Optional[str]:
        chain = [target, *target.ancestors()]
        if not all(node.has_certain_name for node in chain):
            return None
        path = "/".join(node.name for node in reversed(chain))
        return path if self._finds_only(path, target) else None

    def _finds_only(self, path: str, target: Node) -> bool:
        found = self.find(path)
        visible = [node for node in found if node.record.visible]
        return visible == [target] if target.record.visible else list(found) == [target]


def _add_count(lines: List[str], within: int) -> None:
    """Adds to the last line, that of a hidden widget, how many widgets are in it."""
    if within:
        lines[-1] += f", with {within} more in it"


def _name(record: WidgetRecord, parent: Optional[Node]) -> str:
    if record.object_name:
        return record.object_name
    if record.class_name == "QPushButton":
        return UNKNOWN
    if parent is not None and parent.record.class_name == _INPUT_DIALOG:
        return f"{record.class_name}__widget__"
    return UNNAMED


def _fits(node: Node, names: Sequence[str]) -> bool:
    """Whether a widget and its ancestors fit the path; an empty name stands for any number of levels.

    Above the window nothing fits, not even an empty name.
    """
    current: Optional[Node] = node
    gap = False
    for position in range(len(names) - 1, -1, -1):
        if not names[position]:
            gap = True
            continue
        while gap and current is not None and current.name != names[position]:
            current = current.parent
        if current is None or current.name != names[position]:
            return False
        current, gap = current.parent, False
    return current is not None or names[0] != ""
