"""Addresses of items, cells, headers and menu entries, as widgets take them.

The parts of an address are texts as the user sees them, or numbers. A text that contains the character which joins the
parts cannot be written: it is an UnsupportedTextError, since the address would mean something else.
"""

from __future__ import annotations

from typing import Sequence, Tuple, Union

from ..errors import UnsupportedTextError

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

Section = Union[str, int]
"""A row or column: the text of its header, or its number, the first being 1."""


def menu_path(*texts: str) -> str:
    """The path of a menu entry.

    Args:
        texts: those of the menus and of the entry. They may contain slashes: the agent tries longer texts, too.

    Raises ValueError without any text.

    Example: menu_path("File", "Save") is "File/Save".
    """
    return _joined("/", texts)


def menu_entry(number: int) -> str:
    """The entry of a menu by its number, for menu_path().

    Args:
        number: counts from 0; separators and hidden entries do not count.

    Raises ValueError for a negative number.
    """
    return f"Item {_at_least(0, number)}"


def tree_path(*texts: str) -> str:
    """The path of a tree item.

    Args:
        texts: those of the first column, or of tree_row(), outermost first.

    Raises UnsupportedTextError for a text with a slash, and ValueError without any text.

    Example: tree_path("docs", "readme") is "docs/readme".
    """
    return _joined("/", [_without("/", text, "a tree path") for text in texts])


def tree_row(*texts: str) -> str:
    """The text of a tree item by several of its columns, for tree_path().

    Args:
        texts: those of the first columns, in order.

    Raises UnsupportedTextError for a text with a slash, and ValueError without any text.

    Example: tree_row("readme", "12") is "readme:12".
    """
    return _joined(":", [_without("/", text, "a tree row") for text in texts])


def cell(row: Section, column: Section) -> str:
    """A cell of a table.

    Args:
        row: the text of its header, or its number from 1.
        column: the same.

    Raises UnsupportedTextError for a text with a colon, and ValueError for a number below 1.

    Example: cell("Espresso", 2) is "Espresso:2".
    """
    return f"{_section(row, ':', 'a cell')}:{_section(column, ':', 'a cell')}"


def model_item(*steps: "Tuple[Section, Section] | Section") -> str:
    """An item of any item view, served as QAbstractItemView.

    Args:
        steps: the way from the top, each a row, or a row and a column: texts of headers, or numbers from 1.

    Raises UnsupportedTextError for a text with a slash or a semicolon, and ValueError for a number below 1.

    Example: model_item((2, 3), 1) is row 1 below the item in row 2, column 3.
    """
    return "/".join(map(_step, steps))


def row_header(row: Section) -> str:
    """The header of a row, for the header properties of any item view; `row` is its text, or its number from 1."""
    return f"V:{_section(row, '', 'a header')}"


def column_header(column: Section) -> str:
    """The header of a column, for the header properties of any item view; `column` is its text, or its number from 1."""
    return f"H:{_section(column, '', 'a header')}"


def _step(step: "Tuple[Section, Section] | Section") -> str:
    if isinstance(step, tuple):
        return ";".join(_section(part, "/;", "an item path") for part in step)
    return _section(step, "/;", "an item path")


def _section(section: Section, forbidden: str, what: str) -> str:
    if isinstance(section, int):
        return str(_at_least(1, section))
    return _without(forbidden, section, what)


def _at_least(least: int, number: int) -> int:
    if number < least:
        raise ValueError(f"{number} is no number here: the first one is {least}")
    return number


def _without(forbidden: str, text: str, what: str) -> str:
    for character in forbidden:
        if character in text:
            raise UnsupportedTextError(
                f"{text!r} cannot be written in {what}: {character!r} joins its parts; use a number if there is one"
            )
    return text


def _joined(joint: str, texts: "Sequence[str]") -> str:
    if not texts:
        raise ValueError("at least one text is needed")
    return joint.join(texts)
