"""Finds widgets by the texts that the user sees on them.

Where the agent has extensions, locators find them. Otherwise, and for messages, the runner reads the texts of all widgets
that a path finds alone.
"""

from __future__ import annotations

from typing import Callable, Iterable, Iterator, List, NamedTuple, Optional, Sequence, Tuple

from ..errors import AmbiguousError, NotVisibleError, ReplyError, WidgetNotFoundError
from ..protocol.connection import Connection
from ..protocol.locators import Address, Locator, locator
from .near_names import nearest_names
from .paths import checked_unique_path, list_tree
from .served import (
    CHECKED_BUTTONS,
    OTHER_BUTTONS,
    PUSH_BUTTONS,
    TAB_BARS,
    visible_served_as,
)
from .tree import Node, WidgetTree

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own


class Search(NamedTuple):
    """A search for a widget by a text on it.

    Attributes:
        find: returns the address of the widget in a window; raises WidgetNotFoundError or AmbiguousError.
        locator: finds it where the agent knows locators.
    """

    find: Callable[[Connection, str], Address]
    locator: Locator


class Seen(NamedTuple):
    """A visible widget, a path that finds only this, and the texts that it shows: one, or those of its tabs."""

    node: Node
    path: str
    texts: Tuple[str, ...]


def plain_text(text: str) -> str:
    """A text as it is compared: without the "&" of mnemonics, a shortcut after a tab, and runs of blanks."""
    return " ".join(text.partition("\t")[0].replace("&", "").split())


def button_showing(text: str) -> Search:
    """Looks for the push button that shows `text`; where there is none, for a tool button."""
    return _search("button", text, (PUSH_BUTTONS, OTHER_BUTTONS), button_texts)


def checkbox_showing(text: str) -> Search:
    """Looks for the check box that shows `text`; where there is none, for a radio button."""
    return _search("check box", text, tuple((kind,) for kind in CHECKED_BUTTONS), button_texts)


def tab_bar_showing(text: str) -> Search:
    """Looks for the tab bar that has a tab with this text."""
    return _search("tab", text, (TAB_BARS,), item_texts)


def field_labelled(text: str) -> Search:
    """Looks for the field with this label; where there is none, for the one with this placeholder.

    Only locators find a field by its label, so that it raises OldAgentError where the agent has none.
    """
    by_label, by_placeholder = locator(label=text), locator(placeholder=text)

    def find(connection: Connection, window: str) -> Address:
        connection.require("+7")
        found = _first_located(connection, window, (by_label, by_placeholder))
        if found is None:
            raise WidgetNotFoundError("5", f'no field in sight has the label "{text}"')
        return found

    return Search(find, by_label)


def _first_located(connection: Connection, window: str, locators: Iterable[Locator]) -> Optional[Locator]:
    """The first locator that finds a visible widget. Raises AmbiguousError where one finds several."""
    for found in locators:
        try:
            connection.read_property(window, found, "className")
            return found
        except (WidgetNotFoundError, NotVisibleError):
            continue
    return None


def _search(kind: str, text: str, groups: Sequence[Sequence[str]], texts: "TextReader") -> Search:
    return Search(
        lambda connection, window: _only(connection, window, kind, text, groups, texts),
        locator(groups[0][0], text=text),
    )


def _only(
    connection: Connection,
    window: str,
    kind: str,
    text: str,
    groups: Sequence[Sequence[str]],
    texts: "TextReader",
) -> Address:
    """The address of the one widget that shows `text`, of the first group of classes in which one does."""
    if connection.knows_locators:
        classes = (class_name for group in groups for class_name in group)
        found = _first_located(connection, window, (locator(name, text=text) for name in classes))
        if found is not None:
            return found
    tree = list_tree(connection, window)
    wanted = plain_text(text)
    known: List[str] = []
    for group in groups:
        seen_ones = list(seen_widgets(connection, window, tree, group, texts))
        matching = [seen for seen in seen_ones if wanted in map(plain_text, seen.texts)]
        known += [plain_text(shown) for seen in seen_ones for shown in seen.texts]
        if len(matching) > 1:
            lines = [f"  {seen.node}: {seen.path}" for seen in matching]
            raise AmbiguousError(
                "7", f'{kind} "{text}" visible,{len(matching)}', "\n".join(["these show it:", *lines])
            )
        if matching:
            return matching[0].path
    nearest = nearest_names(wanted, filter(None, known))[:1]
    meant = f'; did you mean "{nearest[0]}"?' if nearest else ""
    raise WidgetNotFoundError("5", f'no {kind} in sight shows "{text}"{meant}')


TextReader = Callable[[Connection, str, str], Tuple[str, ...]]
"""Reads the texts of the widget at a path of a window."""


def button_texts(connection: Connection, window: str, path: str) -> Tuple[str, ...]:
    """The text on a button. Raises ReplyError."""
    return (str(connection.read_property(window, path, "text")),)


def item_texts(connection: Connection, window: str, path: str) -> Tuple[str, ...]:
    """The texts of all items of a widget, such as the titles of a tab bar. Raises ReplyError."""
    items = connection.read_property(window, path, "itemList")
    return items if isinstance(items, tuple) else ()


def seen_widgets(
    connection: Connection, window: str, tree: WidgetTree, classes: Sequence[str], texts: TextReader
) -> Iterator[Seen]:
    """The visible widgets of these classes that a path finds alone, with their texts."""
    for node in visible_served_as(connection, window, tree, classes):
        path = checked_unique_path(connection, window, tree, node)
        if path is None:
            continue
        try:
            yield Seen(node, path, texts(connection, window, path))
        except ReplyError:
            continue  # it has gone, or has no such text
