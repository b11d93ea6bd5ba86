"""The calls by which a test names windows and widgets that may be gone, from what was told of them."""

from __future__ import annotations

from typing import Dict, Iterable, Optional, Tuple

from ..lookup.snapshot import SnapshotNode
from ..lookup.stable_locators import unchecked_locator
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
        return None if found is None else found.call

    def parent(self, ref: int) -> Optional[SnapshotNode]:
        """The widget around another one."""
        return next((node for node in self._all() if any(child.ref == ref for child in node.children)), None)

    def _all(self) -> Iterable[SnapshotNode]:
        for root in self._roots.values():
            yield from root.walk()
