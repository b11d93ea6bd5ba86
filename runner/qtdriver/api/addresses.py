"""How items, cells, headers and menu entries are named in what a widget takes, and what cannot be written.

The names are texts as the user sees them, or numbers. A text that holds the character which joins the parts has no
way to be written, and is refused here rather than finding something else.
"""

from __future__ import annotations

from typing import Sequence, Tuple, Union

from ..errors import UnsupportedTextError

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

Section = Union[str, int]
"""A row or column: the text of its header, or its number, the first being 1."""


def menu_path(*texts: str) -> str:
    """The path of a menu entry from the texts of the menus and of the entry: menu_path("File", "Save").

    A slash in a text is all right: the agent tries longer texts, too. A single text is a whole path already.
    """
    return _joined("/", texts)


def menu_entry(number: int) -> str:
    """The entry of this number, the first being 0, separators and hidden ones not counted; for menu_path()."""
    return f"Item {_at_least(0, number)}"


def tree_path(*texts: str) -> str:
    """The path of a tree item from the texts of its first column, outermost first. Texts cannot hold a slash."""
    return _joined("/", [_without("/", text, "a tree path") for text in texts])


def tree_row(*texts: str) -> str:
    """The text of a tree item by its first columns, for tree_path(): "readme:12". Texts cannot hold a slash."""
    return _joined(":", [_without("/", text, "a tree row") for text in texts])


def cell(row: Section, column: Section) -> str:
    """A cell of a table. Header texts cannot hold a colon, which divides row and column."""
    return f"{_section(row, ':', 'a cell')}:{_section(column, ':', 'a cell')}"


def model_item(*steps: "Tuple[Section, Section] | Section") -> str:
    """An item of any item view, as steps from the top: model_item((2, 3), 1) is row 1 below row 2, column 3.

    A step is a row, or a row and a column. Header texts cannot hold a slash or a semicolon.
    """
    return "/".join(map(_step, steps))


def row_header(row: Section) -> str:
    """The header section of a row of any item view, for its header properties."""
    return f"V:{_section(row, '', 'a header')}"


def column_header(column: Section) -> str:
    """The header section of a column of any item view, for its header properties."""
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
