"""Lists the items of a widget, for the error that a named item does not exist."""

from __future__ import annotations

from typing import Callable, List, Optional, Sequence, Tuple, TypeVar

from ..errors import CommandError, NotReadyError, ObscuredError, ReplyError
from ..protocol.connection import Connection
from ..protocol.locators import Address
from .near_names import nearest_names
from .served import TABLES

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_Result = TypeVar("_Result")

_SHOWN = 20
_MENUS = ("QMenu", "QMenuBar")
_TREE = "QTreeView"
_QUESTION_MARK = 'a "?" can stand for a character beyond U+00FF, which an address does not have: name that item by its number'


def with_item_suggestions(
    connection: Connection,
    window: str,
    path: Address,
    item: object,
    call: Callable[[], _Result],
    widget_class: str = "",
    *,
    closes: bool = False,
) -> _Result:
    """Makes a call that names an item; when the widget refuses, the error says which items there are.

    Args:
        connection: asks the application.
        window, path: the widget, as in the methods of Connection.
        item: the item; only a text can be misspelt, so that others are not explained.
        call: makes the request.
        widget_class: the class that the widget is served as.
        closes: whether the widget is a menu that a refusal closes, so that its items have to be listed before.

    Returns what `call` returns.
    """
    entries = _entries(connection, window, path) if closes else ()
    try:
        return call()
    except ObscuredError:
        raise  # the item was not looked for yet
    except NotReadyError as error:
        if isinstance(item, str) and item:
            name = item
            error.explain_later = lambda: _explain_item(connection, window, path, name, widget_class)
        raise  # the item may come
    except CommandError as error:
        if not isinstance(item, str) or not item:
            raise
        explanation = (
            "\n".join(_explain_path(entries, item))
            if closes
            else _explain_item(connection, window, path, item, widget_class)
        )
        raise CommandError(error.code, error.message, explanation) from None


def _entries(connection: Connection, window: str, path: Address) -> Tuple[str, ...]:
    try:
        items = connection.read_property(window, path, "itemList")
    except ReplyError:
        return ()  # the request that follows raises the error
    return tuple(filter(None, items)) if isinstance(items, tuple) else ()


def _explain_item(connection: Connection, window: str, path: Address, item: str, widget_class: str) -> str:
    """Lines on the items that there are instead; empty when the widget has the item, or lists none."""

    def read(name: str, argument: Optional[str] = None) -> object:
        return connection.read_property(window, path, name, argument, widget_class=widget_class)

    try:
        served = str(read("silkClassName"))
        if served in TABLES:
            return "\n".join(_explain_cell(read, item))
        items = read("pathList" if served == _TREE else "itemList")
    except (ReplyError, ValueError):
        return ""
    if not isinstance(items, tuple):
        return ""
    if served == _TREE or served in _MENUS:
        return "\n".join(_explain_path(items, item))
    return "\n".join(_explain_name("item", "", items, item)) if item not in items else ""


def _explain_path(paths: Sequence[str], item: str) -> List[str]:
    """Follows the path as far as it leads. Returns lines on the items of the level where it fails."""
    above = ""
    for name in item.split("/"):
        here = list(
            dict.fromkeys(path[len(above) :].split("/")[0] for path in paths if path.startswith(above))
        )
        match = next((known for known in here if known == name or known.startswith(f"{name}:")), None)
        if match is None:
            return _explain_name("item", above[:-1], here, name)
        above += f"{match}/"
    return []


def _explain_cell(read: Callable[..., object], item: str) -> List[str]:
    """Lines on the headers of the rows, the columns or both, where the address "ROW:COLUMN" names none of them."""
    row, _, column = item.partition(":")
    lines: List[str] = []
    for kind, name, counted, header in (
        ("row", row, "rowCount", "rowHeaderText"),
        ("column", column, "columnCount", "columnHeaderText"),
    ):
        count = read(counted)
        numbers = range(1, min(int(count), _SHOWN) + 1) if isinstance(count, int) else range(0)
        texts = [str(read(header, str(number))) for number in numbers]
        if name not in texts and name not in map(str, range(1, int(str(count)) + 1)):
            lines += _explain_name(kind, "", texts, name, int(str(count)))
    return lines


def _explain_name(kind: str, place: str, here: Sequence[str], name: str, count: int = 0) -> List[str]:
    within = f' in "{place}"' if place else ""
    nearest = nearest_names(name, here)[:1]
    meant = f'; did you mean "{nearest[0]}"?' if nearest else ""
    shown = [f'"{text}"' for text in here[:_SHOWN]]
    more = max(count, len(here)) - len(shown)
    listed = ", ".join(shown) + (f", and {more} more" if more else "")
    lines = [f'there is no {kind} "{name}"{within}{meant}', f"{kind}s{within}: {listed or 'none at all'}"]
    return lines + ([_QUESTION_MARK] if nearest and "?" in nearest[0] and "?" not in name else [])
