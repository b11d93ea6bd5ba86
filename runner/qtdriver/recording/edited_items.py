"""Items of views whose text was edited: a double click, a text and Return are one step."""

from __future__ import annotations

from dataclasses import replace
from typing import List, Optional, Sequence

from .steps import Step

_EDITOR = '.find("QExpandingLineEdit")'
"""Qt's editor for the texts of items."""
_ITEMS = (".item(", ".cell(")


def with_edited_items(steps: Sequence[Step]) -> List[Step]:
    """The steps with WidgetItem.fill() for each text that was entered into the editor of an item."""
    found: List[Step] = []
    for step in steps:
        filled = _filled(found[-2:], step)
        if filled is not None:
            found[-2:] = [filled]
        else:
            found.append(step)
    return found


def _filled(before: Sequence[Step], step: Step) -> Optional[Step]:
    if len(before) < 2 or step.method != "press" or step.arguments != ("Return",):
        return None
    opened, typed = before
    view, _, editor = typed.widget.rpartition(_EDITOR)
    is_edited = typed.method == "fill" and view and not editor and step.widget == typed.widget
    is_item = opened.method == "double_click" and opened.widget.startswith(
        tuple(view + part for part in _ITEMS)
    )
    if not is_edited or not is_item or opened.keywords or opened.window != typed.window:
        return None
    return replace(typed, widget=opened.widget)
