"""The calls by which a test names windows and widgets that may be gone, from what was told of them."""

from __future__ import annotations

from typing import Dict, Iterable, Optional, Tuple

from ..lookup.snapshot import SnapshotNode
from ..lookup.stable_locators import known_by, unchecked_locator
from ..protocol.locators import as_python
from .events import Event


class Names:
    """Names widgets by the windows that events tell. Nobody has checked them with the application; a derived class that has
    it can override widget() and window().

    Attributes:
        nodes: the widgets that were told last, by their reference numbers.
    """

    def __init__(self) -> None:
        self.nodes: Dict[int, SnapshotNode] = {}
        self._roots: Dict[int, SnapshotNode] = {}
        self._shown: Dict[int, Tuple[str, str, bool]] = {}

    def learn(self, event: Event) -> None:
        """Remembers the window that the event tells."""
        if event.kind == "shown":
            self._shown[event.ref] = (event.name, event.title, event.is_modal)
        if event.tree is not None:
            self._roots[event.window] = event.tree
            self.nodes.update((node.ref, node) for node in event.tree.walk())
        elif event.widget is not None and event.ref in self.nodes:
            before = self.nodes[event.ref]
            now = self.nodes[event.ref] = before.with_fields(event.widget)
            if event.window in self._roots and known_by(now) != known_by(before):
                self._roots[event.window] = self._roots[event.window].with_node(now)

    def window(self, ref: int) -> Optional[str]:
        """The call on the application for a window, such as 'window("Orders")'; None where nothing tells it from others."""
        root = self._roots.get(ref)
        name, title, is_modal = self._shown.get(ref, ("", "", False))
        if root is not None:
            name, title = root.name, str(root.details.get("title", title))
        if name and not name.startswith("qt_"):
            return f"window(name={as_python(name)})"
        if is_modal:
            return f"modal({as_python(title)})" if title else "modal()"
        return f"window({as_python(title)})" if title else None

    def widget(self, window: int, ref: int) -> Optional[str]:
        """The call on the window for a widget; empty for the window itself, None where nothing finds it alone."""
        root, node = self._roots.get(window), self.nodes.get(ref)
        if window == ref:
            return ""
        if root is None or node is None:
            return None
        found = unchecked_locator(root, node)
        if found is not None:
            return found.call
        by_class = self.by_class(node)
        if by_class is not None:
            return by_class
        within = self._within_another(root, node)
        return self.by_application(node) if within is None else within

    def by_class(self, node: SnapshotNode) -> Optional[str]:
        """The call for a widget that is the only one of its class, also with those of derived classes; nothing told says that."""
        return None

    def by_application(self, node: SnapshotNode) -> Optional[str]:
        """The call for a widget that nothing told tells from others."""
        return None

    def _within_another(self, root: SnapshotNode, node: SnapshotNode) -> Optional[str]:
        """The call for a widget that is told from others by what it is in."""
        around = self.parent(node.ref)
        while around is not None and around is not root:
            outer, inner = unchecked_locator(root, around), unchecked_locator(around, node)
            if outer is not None and inner is not None:
                return inner.within(outer).call
            around = self.parent(around.ref)
        return None

    def parent(self, ref: int) -> Optional[SnapshotNode]:
        """The widget around another one."""
        return next((node for node in self._all() if any(child.ref == ref for child in node.children)), None)

    def _all(self) -> Iterable[SnapshotNode]:
        for root in self._roots.values():
            yield from root.walk()
