"""The most stable locator for each widget of a window, checked with the application."""

from __future__ import annotations

import re
from collections import Counter
from typing import Callable, Dict, Iterator, Mapping, Optional, Tuple

from ..errors import AmbiguousError, NotVisibleError, WidgetNotFoundError
from ..protocol.connection import Connection
from ..protocol.locators import SPECIAL_NAMES, Locator, locator, path_locator, text_locator
from .snapshot import INNER_NAMES, SnapshotNode

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_MISSES = (AmbiguousError, NotVisibleError, WidgetNotFoundError)
_PLAIN = re.compile(rf"(?!({'|'.join(SPECIAL_NAMES)})$)[\w.-]+", re.ASCII)
"""Matches object names that can be used as paths."""

_CONDITIONS: Tuple[Tuple[str, str], ...] = (
    ("name", "name"),
    ("label", "label"),
    ("text", "text"),
    ("action", "action"),
    ("title", "title"),
    ("placeholder", "placeholder"),
    ("tooltip", "tip"),
)
"""Keys of locators, and the fields of a snapshot that have their texts: the most stable first."""


class StableLocators:
    """Finds, for the widgets of one snapshot, locators that find them alone.

    It tries, in this order: the object name, the label, the text, the action and the other texts, each alone and with the
    class; the same within the nearest widget around it that has such a locator or is the only one of its class; at last
    the class and the position within that.
    """

    def __init__(self, connection: Connection, window: str, root: SnapshotNode) -> None:
        """`root` is of a snapshot of the whole `window`."""
        self._connection = connection
        self._window = window
        self._root = root
        self._parents: Dict[int, SnapshotNode] = {
            child.ref: node for node in root.walk() for child in node.children
        }
        self._counts = _count_texts(root)
        self._known: Dict[int, Optional[Locator]] = {}

    def of(self, node: SnapshotNode) -> Optional[Locator]:
        """The locator of a node; None where nothing finds it alone any more."""
        return self._by_texts(node) or self._within_another(node) or self._by_position(node)

    def all_of(self, node: SnapshotNode) -> Iterator[Locator]:
        """All locators of a node that find it alone, that of of() first, each once."""
        outer, _ = self._around(node)
        texts = list(_by_conditions(node, lambda key, text: True))
        candidates = [self.of(node), *texts]
        candidates += [] if outer is None else [found.within(outer) for found in texts]
        candidates.append(self._by_position(node))
        told = set()
        for found in candidates:
            if found is not None and found.text not in told and self._ref_of(found) == node.ref:
                told.add(found.text)
                yield found

    def _by_texts(self, node: SnapshotNode) -> Optional[Locator]:
        if node.ref not in self._known:
            self._known[node.ref] = self._first(_by_conditions(node, self._is_alone), self._finds_one)
        return self._known[node.ref]

    def _by_class(self, node: SnapshotNode) -> Optional[Locator]:
        """The class of a node, if it is the only one of it."""
        found = locator(node.class_name)
        return found if self._counts.get(("class", node.class_name)) == 1 and self._finds_one(found) else None

    def _within_another(self, node: SnapshotNode) -> Optional[Locator]:
        outer, _ = self._around(node)
        if outer is None:
            return None
        inner = _by_conditions(node, lambda key, text: True)
        return self._first((found.within(outer) for found in inner), self._finds_one)

    def _by_position(self, node: SnapshotNode) -> Optional[Locator]:
        outer, around = self._around(node)
        found = locator(node.class_name)
        found = found if outer is None else found.within(outer)
        if self._finds_one(found) and self._ref_of(found) == node.ref:
            return found
        guess = _number_within(node, around)
        numbers = sorted(
            range(count_of(self._connection, self._window, found)), key=lambda number: abs(number - guess)
        )
        places = (found.at(f"nth={number}", f"nth({number})") for number in numbers)
        return self._first(places, lambda one: self._ref_of(one) == node.ref)

    def _around(self, node: SnapshotNode) -> Tuple[Optional[Locator], SnapshotNode]:
        """The nearest widget around it that has a locator, after that locator; None and the window where there is none."""
        above = self._parents.get(node.ref)
        while above is not None and above is not self._root:
            found = self._by_texts(above) or self._by_class(above)
            if found is not None:
                return found, above
            above = self._parents.get(above.ref)
        return None, self._root

    def _is_alone(self, key: str, text: str) -> bool:
        return self._counts.get((key, text), 0) == 1

    def _finds_one(self, found: Locator) -> bool:
        """Whether the locator finds one widget: the node itself, if the node fulfils its conditions."""
        try:
            self._connection.read(self._window, found, "className")
        except _MISSES:
            return False
        return True

    def _ref_of(self, found: Locator) -> Optional[int]:
        try:
            return SnapshotNode.of(self._connection.snapshot(self._window, found)).ref
        except _MISSES:
            return None

    @staticmethod
    def _first(candidates: "Iterator[Locator]", holds: Callable[[Locator], bool]) -> Optional[Locator]:
        return next((candidate for candidate in candidates if holds(candidate)), None)


def count_of(connection: Connection, window: str, found: Locator) -> int:
    """How many visible widgets of a window a locator finds. Raises WindowNotFoundError and the like."""
    try:
        connection.read(window, found, "className")
    except AmbiguousError as error:
        return int(error.message.rsplit(",", 1)[-1])
    except _MISSES:
        return 0
    return 1


def unchecked_locator(root: SnapshotNode, node: SnapshotNode) -> Optional[Locator]:
    """The most stable locator that fits only this node of a snapshot, without asking the application, which may have closed
    the window since; None where nothing does.

    Widgets of derived classes, which a locator with a class finds as well, count like those of the class.
    """
    counts = _count_texts(root)
    fitting = Counter(
        found for one in root.walk() for found in set(_by_conditions(one, lambda key, text: True))
    )
    for found in _by_conditions(node, lambda key, text: counts.get((key, text)) == 1):
        if found.name and counts.get(("name", node.name)) != 1:
            continue
        if fitting[found] == 1:
            return found
    if counts.get(("class", node.class_name)) == 1 and _is_only_of_role(root, node):
        return locator(node.class_name)
    return None


def known_by(node: SnapshotNode) -> Tuple[Tuple[str, str], ...]:
    """The texts by which a locator can know a node, each after its key."""
    return tuple(_texts(node.details))


def _is_only_of_role(root: SnapshotNode, node: SnapshotNode) -> bool:
    return sum(one.role == node.role for one in root.walk()) == 1


def _number_within(node: SnapshotNode, outer: SnapshotNode) -> int:
    """A guess at its position in another widget: how many of its own class come before it, without derived classes."""
    alike = [one.ref for one in outer.walk() if one.class_name == node.class_name and one is not outer]
    return alike.index(node.ref) if node.ref in alike else 0


def _by_conditions(node: SnapshotNode, may_be_alone: Callable[[str, str], bool]) -> Iterator[Locator]:
    """A locator for each text by which the node can be known, with the class, and before that without it.

    Args:
        node: the node.
        may_be_alone: whether a condition, a key and its text, may find the node without its class.
    """
    for key, text in _texts(node.details):
        if key == "name" and _PLAIN.fullmatch(text):
            yield path_locator(text)
        elif may_be_alone(key, text):
            yield text_locator(key, text)
        yield text_locator(key, text, node.class_name)


def _texts(told: Mapping[str, object]) -> Iterator[Tuple[str, str]]:
    for key, field in _CONDITIONS:
        text = told.get(field)
        if isinstance(text, str) and text and not (key == "name" and text.startswith(INNER_NAMES)):
            yield key, text


def _count_texts(root: SnapshotNode) -> Dict[Tuple[str, str], int]:
    counts: Dict[Tuple[str, str], int] = {}
    for node in root.walk():
        for found in (("class", node.class_name), *_texts(node.details)):
            counts[found] = counts.get(found, 0) + 1
    return counts
