"""Names that the agent derives from the texts of buttons; finds them out by asking for the usual ones."""

from __future__ import annotations

from typing import Dict, List

from ..errors import AmbiguousError, ReplyError
from ..protocol.connection import Connection
from .tree import UNKNOWN, Node, WidgetTree

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

DIALOG_BUTTON = "_dialog_button"

STANDARD_TEXTS = (
    "OK", "Cancel", "Close", "Yes", "No", "Apply", "Save", "Open", "Help", "Reset", "Discard", "Retry", "Ignore",
    "Abort", "Save All", "Yes to All", "No to All", "Restore Defaults", "Don't Save", "Close without Saving",
)  # fmt: skip
"""The texts of the buttons of Qt's dialogs, in English."""


def button_name(text: str) -> str:
    """The name of a push button without an object name that shows `text`: "&Save as..." is
    "SaveAs..._dialog_button"."""
    words = " ".join(text.replace("&", "").split()).lower().split(" ")
    return "".join(word[:1].upper() + word[1:] for word in words) + DIALOG_BUTTON


STANDARD_NAMES = tuple(map(button_name, STANDARD_TEXTS))


def probe_derived_names(connection: Connection, window: str, tree: WidgetTree) -> None:
    """Gives the visible push buttons of `tree` without an object name their derived names, if they show a standard text.

    A listing does not tell their texts, and only their derived name addresses them, so the agent is asked for the usual
    names, parent by parent. Buttons of one parent differ in nothing else, so it does not matter which gets which name.
    """
    groups = _unnamed_buttons(tree)
    for parent, buttons in groups.items():
        path = tree.unique_path(parent)
        if path is None and len(groups) > 1:
            continue
        prefix = "" if path is None else f"{path}/"
        found = [name for name in STANDARD_NAMES if _exists(connection, window, prefix + name)]
        for button, name in zip(buttons, found):
            tree.rename(button, name)


def _unnamed_buttons(tree: WidgetTree) -> Dict[Node, List[Node]]:
    """The visible push buttons without a name, by their parent."""
    groups: Dict[Node, List[Node]] = {}
    for button in tree.named(UNKNOWN):
        if button.record.visible and button.parent is not None:
            groups.setdefault(button.parent, []).append(button)
    return groups


def _exists(connection: Connection, window: str, path: str) -> bool:
    try:
        connection.read_property(window, path, "className")
    except AmbiguousError:
        return True
    except (ReplyError, ValueError):
        return False
    return True
