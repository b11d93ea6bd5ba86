"""Finds an item's numeric address, and its place in the view.

Lists and trees name their items by texts, tables by headers. Only when it is served as QAbstractItemView, a view scrolls to
an item and tells its place, and then items are addressed by numbers of rows and columns.
"""

from __future__ import annotations

from typing import List, Optional, Sequence, Tuple

from ..errors import CommandError
from ..protocol.connection import Connection
from ..protocol.locators import Address
from .served import TABLES

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

ANY_VIEW = "QAbstractItemView"
_NO_ADDRESS = 'item "{}" not found'


class ItemFinder:
    """Finds items of one view, whose window and path are those of a request."""

    def __init__(self, connection: Connection, window: str, path: Address, served: str) -> None:
        """`served` is the class under which the view is served, which decides how its items are named."""
        self._connection = connection
        self._window = window
        self._path = path
        self._served = served

    def __repr__(self) -> str:
        return f"<finder of items in {self._path}, a {self._served}>"

    def scroll_to(self, item: "str | int") -> str:
        """Scrolls the view until the item is in sight.

        Args:
            item: the item, as address() takes it.

        Returns the item's numeric address. Raises CommandError where there is no such item.
        """
        address = self.address(item)
        self._connection.activate_widget(self._window, self._path, address, "ScrollTo", widget_class=ANY_VIEW)
        return address

    def position(self, address: str) -> Tuple[float, float]:
        """The centre of an item, as shares of the view's width and height. Raises CommandError if it is out of sight."""
        x, _, y = str(self._read("itemPosition", address)).partition(";")
        try:
            position = float(x), float(y)
        except ValueError:
            position = (-1.0, -1.0)
        if not all(0.0 <= share < 1.0 for share in position):
            raise CommandError("8", "the item is out of sight")
        return position

    def address(self, item: "str | int") -> str:
        """The numeric address of an item.

        Args:
            item: the item as the class of the view names it: a text, "ROW:COLUMN" of a table, a path of a tree; or the
                number of a list's row, from 0.

        Raises CommandError where a list or a tree has no such item.
        """
        if isinstance(item, int):
            return f"{item + 1};{self._list_column()}" if self._served == "QListView" else str(item)
        if self._served in TABLES:
            return item.replace(":", ";")
        if self._served == "QListView":
            return self._list_address(item)
        return self._tree_address(item) if self._served == "QTreeView" else item

    def _list_address(self, item: str) -> str:
        column = self._list_column()
        texts = self._list("itemList")
        row = self._row(texts, texts.index(item) if item in texts else None, "{};%d" % column, "")
        if row is None:
            raise CommandError("8", _NO_ADDRESS.format(item))
        return f"{row};{column}"

    def _list_column(self) -> int:
        column = self._connection.read_property(self._window, self._path, "modelColumn")
        return column + 1 if isinstance(column, int) else 1

    def _tree_address(self, item: str) -> str:
        paths = self._list("pathList")
        above, address = "", ""
        for name in item.split("/"):
            here = _directly_below(paths, above)
            number = next((n for n, text in enumerate(here) if _fits(text, name)), None)
            row = self._row(here, number, f"{address}/{{}}" if address else "{}", address)
            if row is None or number is None:
                raise CommandError("8", _NO_ADDRESS.format(item))
            above, address = f"{above}{here[number]}/", f"{address}/{row}" if address else str(row)
        return address

    def _row(self, shown: Sequence[str], number: Optional[int], form: str, parent: str) -> Optional[int]:
        """The row, from 1, of an item among those that are shown. Where some are hidden, the rows are read one by one.

        Args:
            shown: the texts of the rows that are shown.
            number: which of them, from 0.
            form: makes an address of a row's number.
            parent: the address of the item above.
        """
        count = self._read("rowCount", parent)
        if number is None or not isinstance(count, int):
            return None
        if count == len(shown):
            return number + 1
        found = -1
        for row in range(1, count + 1):
            text = str(self._read("itemData", form.format(row)))
            if found + 1 < len(shown) and _fits(shown[found + 1], text):
                found += 1
            if found == number:
                return row
        return None

    def _list(self, name: str) -> Tuple[str, ...]:
        value = self._connection.read_property(self._window, self._path, name)
        return value if isinstance(value, tuple) else ()

    def _read(self, name: str, address: str) -> object:
        return self._connection.read_property(self._window, self._path, name, address, widget_class=ANY_VIEW)


def _fits(text: str, name: str) -> bool:
    """Whether the name is the text, or the first columns of it, as columns are joined by ":" in the texts of trees."""
    return text == name or text.startswith(f"{name}:")


def _directly_below(paths: Sequence[str], above: str) -> List[str]:
    """The texts of the rows below the item with the path `above`, which ends with "/"; empty is the top."""
    below = (path[len(above) :] for path in paths if path.startswith(above))
    return [text for text in below if text and "/" not in text]
