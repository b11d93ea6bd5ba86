"""Values that requests carry: of the right type for the class that serves the widget, mostly, and of every other."""

from __future__ import annotations

import random
from typing import Callable, Dict, List, Optional, Sequence, Union

Argument = Union[None, bool, int, str]

ITEMS = ("Item 1", "Item 2", "Item 3", "Item 5", "Cell 2", "Item 9", "")
TREE_PATHS = (
    "Item 1",
    "Item 2/Item 3",
    "Item 1:Cell 1",
    "Item 4:Cell 4/Item 5",
    "Item 1/Item 1/Item 2",
    "/",
    "x",
)
CELLS = ("1:1", "2:3", "3:2", "Row 1:Column 2", "Row 3:1", "0:0", "4:A", "99:1", "1", "Row 1:Row 1:x", "-1:1")
INDEX_PATHS = (
    "1",
    "2;1",
    "1/1",
    "2/1;3",
    "3/9",
    "1/2/1;2",
    "Row 1;Column 1",
    "0",
    "-1",
    "H:Column 1",
    "V:1",
    "H:9",
)
MENU_PATHS = (
    "File/New",
    "File/Checked",
    "File/More/New",
    "File/More/More/Checked",
    "Edit/Open/Close",
    "View/Disabled",
    "Item 0/Item 1",
    "Plain",
    "New",
    "More/Checked",
    "Cut",
    "More/Paste",
    "File/Item 9",
    "",
)
TABS = ("Page 1", "Page 2", "Page 4", "Dock 2", "Tools", "&More", "Even more", "x")
FRUITS = ("apple", "pear", "plum", "fig", "melon")
TEXTS = ("", "a", "abc", "12", "99-99", "text \xe4\xf6\xdf", "%s %n %d", "x" * 40, "12,5")
LINES = ("a\n", "two\nlines", "12\n", "\n")
"""Not for every command: error messages repeat some values, and a reply is one line here."""
DATES = ("2024-03-15", "01.01.00 00:00", "12:30", "1/1/00 12:00 AM", "1/2/01")
FILES = ("/usr/share/doc", "nosuchfile", "/", "")
NUMBERS = (0, 1, 2, 3, 5, 7, 19, 20, 100, -1, 2147483647, -2147483648)
STATES = (True, False, None)
KEYS = (None, None, "", " ", "x", "xy")
SELECTIONS = ("Select", "Deselect", "Toggle", "ClearAndSelect", "Clear", "ScrollTo", "", "x")

MOUSE_TYPES = (
    "MousePress",
    "MouseRelease",
    "MouseClick",
    "MouseClick",
    "MouseDoubleClick",
    "MouseMove",
    "",
    "Mouse",
)
MOUSE_BUTTONS = (
    "LeftButton",
    "LeftButton",
    "LeftButton",
    "RightButton",
    "MidButton",
    "NoButton",
    "",
    "Button",
)
MODIFIERS = ("", "", "ShiftModifier", "ControlModifier", "AltModifier", "NoModifier", "MetaModifier")
SHARES = ("", "0.5", "0.5", "0.0", "1.0", "0.25", "0.25", "0.9", "0.9", "0.1", "nan", "2")

Pool = Callable[[random.Random], Argument]


STROKES = (
    "A",
    "Shift+A",
    "Tab",
    "Shift+Tab",
    "Return",
    "Esc",
    "Space",
    "Down",
    "End",
    "F2",
    "F4",
    "Ctrl+A",
    "Ctrl+A, Del",
    "Ctrl+V",
    "Ctrl+K, Ctrl+C",
    "Alt+F",
    "Alt+F, Down, Return",
    "Menu",
    "Shift",
    "\u20ac",
    "Foo",
    "",
)
KEY_MODES = ("", "", "", "", "press", "release", "release", "x")
TYPED = ("a", "abc", "12", "text \xe4 \u20ac \U0001f600", "one\ntwo", "a\tb", "\n", "", "x" * 40)
WHEELS = (
    ":::0:1",
    ":::0:-3",
    ":::2:0",
    "0.1:0.9:ControlModifier:0:5",
    ":::0:0",
    "1.0:1.0::1:1",
    "x",
    ":::0:5000",
)


def one_of(*pools: Sequence[Argument]) -> Pool:
    """A value from one of the pools."""
    return lambda chance: chance.choice(chance.choice(pools))


ACTIVATIONS: Dict[str, Pool] = {
    "QAbstractButton": one_of(STATES),
    "QPushButton": one_of(STATES),
    "QToolButton": one_of(STATES),
    "QRadioButton": one_of(STATES),
    "QCheckBox": one_of(STATES),
    "QGroupBox": one_of(STATES),
    "QComboBox": one_of(FRUITS, NUMBERS[:5]),
    "QListView": one_of(ITEMS, NUMBERS[:6]),
    "QTreeView": one_of(TREE_PATHS),
    "QTableView": one_of(CELLS),
    "QTableWidget": one_of(CELLS),
    "QAbstractItemView": one_of(INDEX_PATHS),
    "QMenuBar": one_of(MENU_PATHS),
    "QMenu": one_of(MENU_PATHS),
    "QSlider": one_of(NUMBERS),
    "QSpinBox": one_of(NUMBERS, TEXTS),
    "QDoubleSpinBox": one_of(NUMBERS, TEXTS),
    "QDateTimeEdit": one_of(DATES),
    "QDateEdit": one_of(DATES),
    "QTimeEdit": one_of(DATES),
    "QTabBar": one_of(TABS, NUMBERS),
    "QToolBox": one_of(TABS),
    "QDockWidget": one_of((None,)),
    "QFileDialog": one_of(FILES),
}
"""Values for command 5, by the class that serves the widget."""

ENTRIES: Dict[str, Pool] = {
    "QLineEdit": one_of(TEXTS, LINES),
    "QTextEdit": one_of(TEXTS, LINES),
    "QComboBox": one_of(FRUITS, TEXTS),
    "QSpinBox": one_of(NUMBERS, TEXTS),
    "QDoubleSpinBox": one_of(NUMBERS, TEXTS),
    "QDateTimeEdit": one_of(DATES),
    "QDateEdit": one_of(DATES),
    "QTimeEdit": one_of(DATES),
    "QListView": one_of(STATES[:2], ITEMS),
    "QTreeView": one_of(STATES[:2], ("0:a", "1:bcd", "2:", "9:x", "x")),
    "QTableView": one_of(ITEMS),
    "QTableWidget": one_of(ITEMS),
}
"""Values for command 6."""

OPTIONS: Dict[str, Pool] = {
    "QMenuBar": one_of(STATES),
    "QMenu": one_of(STATES),
    "QListView": one_of(KEYS),
    "QTreeView": one_of(KEYS),
    "QAbstractItemView": one_of(SELECTIONS),
}
"""The option of command 5."""

ARGUMENTS: Dict[str, Pool] = {
    "QListView": one_of(ITEMS),
    "QTreeView": one_of(TREE_PATHS),
    "QTableView": one_of(CELLS, ("1", "2", "9")),
    "QTableWidget": one_of(CELLS, ("1", "2", "9")),
    "QAbstractItemView": one_of(INDEX_PATHS),
    "QMenuBar": one_of(MENU_PATHS),
    "QMenu": one_of(MENU_PATHS),
}
"""The argument of pseudo-properties."""

ANYTHING: Pool = one_of(STATES, NUMBERS, TEXTS, ITEMS, CELLS, MENU_PATHS)


def value_for(pools: Dict[str, Pool], served_class: str, chance: random.Random) -> Argument:
    """A value that suits the class, and one time in ten any other."""
    pool: Optional[Pool] = None if chance.random() < 0.1 else pools.get(served_class)
    return (pool or ANYTHING)(chance)


def mouse_command(chance: random.Random) -> str:
    """A mouse command in one of the grammars that classes have."""
    kind, button = chance.choice(MOUSE_TYPES), chance.choice(MOUSE_BUTTONS)
    grammar = chance.random()
    if grammar < 0.15:
        return f"{kind}:{button}"
    if grammar < 0.4:
        return f"{kind}:{button}:::"
    parts: List[str] = [kind, button, chance.choice(SHARES), chance.choice(SHARES), chance.choice(MODIFIERS)]
    return ":".join(parts)
