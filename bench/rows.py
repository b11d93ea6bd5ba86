"""The rows of the table: their texts, their floors and their targets, by the names of the benchmarks."""

from dataclasses import dataclass
from typing import Dict, List, Optional


@dataclass(frozen=True)
class Row:
    """One kind of measurement.

    Targets hold for the sizes that are named: `ratio` is the most that ours may cost of the floor, `qt_ratio` the most of
    what Qt's own calls cost over the same connection, `limit` the most that it may cost at all, in microseconds (or KiB,
    for memory).
    """

    group: str
    what: str
    floor: str
    ratio: Optional[float] = None
    limit: Optional[float] = None
    limit_size: Optional[int] = None
    qt_ratio: Optional[float] = None


FIND = "findChildren()"
RESOLVE = "Resolution of a path"
LOCATE = "Search by a locator"
FIND_ALL = "findChildren() of all"
ITEMS = "Items"
TEXTS = "Texts"
INPUT = "Input until its effect is seen"
START = "Start-up"
RUNNER = "The runner"
TRIPS = "Round trips, window of 100 widgets"
WINE = "Round trips under Wine, window of 100 widgets"
KEYS = "the same keys"
MODEL = "the model's texts"

BENCHMARKS: Dict[str, Row] = {
    "find_name": Row(RESOLVE, "an object name", FIND, ratio=1.3),
    "find_nothing": Row(RESOLVE, "a name that nothing has", FIND, ratio=1.3),
    "find_parent_path": Row(RESOLVE, "parent and name", FIND, ratio=1.3),
    "find_deep_path": Row(RESOLVE, "a path with a gap, every tenth widget a candidate", FIND, ratio=1.3),
    "find_ambiguous": Row(RESOLVE, "a name that every tenth widget has", FIND, ratio=1.3),
    "find_twins": Row(RESOLVE, "a name that all have", FIND, ratio=1.3),
    "find_unnamed": Row(RESOLVE, '"unnamed", all without object name', FIND, ratio=3),
    "find_dialog_button": Row(RESOLVE, "a derived name: a button's text", FIND, ratio=3),
    "find_action_button": Row(RESOLVE, "a derived name: a tool button's action", FIND, ratio=3),
    "find_dialog_part": Row(RESOLVE, "a derived name: a class in an input dialog", FIND, ratio=3),
    "locate_class_text": Row(LOCATE, "class and text", FIND_ALL, ratio=4),
    "locate_text": Row(LOCATE, "a text", FIND_ALL, ratio=4),
    "locate_name": Row(LOCATE, "an object name", FIND_ALL, ratio=4),
    "locate_within": Row(LOCATE, "the eighth button within a group", FIND_ALL, ratio=4),
    "locate_action": Row(LOCATE, "the action of a tool button", FIND_ALL, ratio=4),
    "locate_label": Row(LOCATE, "a label, every other widget has one", FIND_ALL, ratio=4),
    "locate_property": Row(LOCATE, "a property that every other widget has", FIND_ALL, ratio=4),
    "tree": Row(
        "Tree listing", "all widgets of a window", "findChildren(), 3 reads each", limit=3000, limit_size=5000
    ),
    "snapshot": Row(
        "Snapshot",
        "labels and fields of a window",
        "findChildren(), 3 reads each",
        limit=10000,
        limit_size=5000,
    ),
    "list_find": Row(ITEMS, "find the last one of a list", MODEL),
    "list_all": Row(ITEMS, "list a list", MODEL),
    "list_walk": Row(ITEMS, "walk to the next one of a list", KEYS),
    "tree_find": Row(ITEMS, "find the last one of a tree", MODEL),
    "tree_all": Row(ITEMS, "list a tree's paths", MODEL),
    "table_find": Row(ITEMS, "find the last row of a table", "the header's texts"),
    "type_line": Row(TEXTS, "characters typed into a line edit", KEYS),
    "type_text": Row(TEXTS, "characters typed into a text edit", KEYS),
    "type_keys": Row(TEXTS, "characters typed into a text edit by +type", KEYS),
    "insert_validated": Row(TEXTS, "characters into a field with validator", "QLineEdit::insert()"),
    "click": Row(INPUT, "a click until its slot ran", "Qt's calls for it", limit=1000),
    "menu": Row(INPUT, "an item of a submenu, until its slot ran", KEYS),
    "create": Row(START, "create the agent", "a QTcpSocket", limit=5000),
}


@dataclass(frozen=True)
class Trip:
    """A command to measure.

    `requests` are sent in turn, and are answered with replies that begin with `reply`. `ratio` is the most that it may
    cost of the echo, `qt_ratio` the most of Qt's own calls.
    """

    command: str
    what: str
    requests: List[str]
    ratio: Optional[float] = None
    qt_ratio: Optional[float] = None
    reply: str = "0,"


def hexadecimal(text: str) -> str:
    return text.encode("latin-1").hex()


def extension(name: str, *sections: str) -> str:
    return ",".join([name, *map(hexadecimal, sections)])


MOUSE = [hexadecimal(f"s:MouseMove::{x}:0.5:") for x in ("0.3", "0.7")]
TYPED = hexadecimal("s:a")
BENCH, LETTER = hexadecimal("Bench"), hexadecimal("A")
TRIPS_OF_COMMANDS: List[Trip] = [
    Trip("1", "list the windows", ["1"]),
    Trip("2", "list the tree", ["2,Bench"]),
    Trip("3", "identify the widget under the cursor", ["3"], reply="?,"),
    Trip("4", "locate a widget", ["4,Bench,button77", "4,Bench,button66"], qt_ratio=1.3),
    Trip("5", "activate: a click", ["5,Bench,button77,,,", "5,Bench,button66,,,"], qt_ratio=1.3),
    Trip(
        "6", "enter one character", [f"6,Bench,{name},,{TYPED}," for name in ("line", "other")], qt_ratio=1.3
    ),
    Trip("7", "read a property by name", ["7,Bench,button77,,text,"], ratio=1.5),
    Trip("8", "check a window", ["8,Bench"]),
    Trip("9", "move the mouse", [f"9,Bench,line,,{word}," for word in MOUSE], qt_ratio=1.3),
    Trip("10", "move a window", ["10,Bench,20,20", "10,Bench,21,20"]),
    Trip("11", "resize a window", ["11,Bench,900,500", "11,Bench,901,500"]),
    # The icon is never shown: the desktop of the benchmarks has no tray.
    Trip("12", "locate a tray icon", ["12,,icon"], reply="6,"),
    Trip("+extensions", "list the extensions", ["+extensions"]),
    Trip("+2", "take a snapshot", [extension("+2", "Bench", "")]),
    Trip("+4", "locate a widget", [extension("+4", "Bench", f"text={text}") for text in ("77", "66")]),
    Trip("+5", "activate: a click", [extension("+5", "Bench", f"text={text}") for text in ("77", "66")]),
    Trip(
        "+6",
        "enter one character",
        [extension("+6", "Bench", f"name={name}", "", "s:a") for name in ("line", "other")],
    ),
    Trip("+7", "read a property", [extension("+7", "Bench", "text=77", "", "text")]),
    Trip(
        "+9",
        "move the mouse",
        [extension("+9", "Bench", "name=line", "", f"s:MouseMove::{x}:0.5:") for x in ("0.3", "0.7")],
    ),
    Trip("+scroll", "scroll to a widget", [extension("+scroll", "Bench", "text=77", "", "")]),
    Trip("+item", "read an item", [extension("+item", "Bench", "QTabBar", "", "s:Two")]),
    Trip("+press", "press a key", [f"+press,{BENCH},,{LETTER},"], qt_ratio=1.3),
    Trip("+type", "type a character", [extension("+type", "Bench", "", "a")]),
    Trip(
        "+wheel",
        "turn the wheel by a step",
        [extension("+wheel", "Bench", "name=line", f":::0:{step}") for step in (1, -1)],
    ),
    Trip(
        "+clipboard",
        "put a text on the clipboard",
        [extension("+clipboard", text) for text in ("tea", "coffee")],
    ),
    Trip(
        "+focus",
        "give the focus",
        [extension("+focus", "Bench", f"name={name}") for name in ("line", "other")],
    ),
]
