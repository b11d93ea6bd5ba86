"""Random valid commands on whatever an application shows just now."""

from __future__ import annotations

import itertools
import random
import time
from typing import Callable, Container, Dict, List, Sequence, Tuple

from qtdriver.errors import ProtocolError
from qtdriver.protocol.commands import COMMAND_BY_NUMBER
from qtdriver.protocol.extensions import EXTENSION_BY_NAME
from qtdriver.protocol.records import WidgetRecord, WindowRecord
from qtdriver.protocol.wire import Reply, encode_argument

import locatorpool
import valuepool

SERVED = (
    "QWidget",
    "QLabel",
    "QAbstractButton",
    "QPushButton",
    "QToolButton",
    "QRadioButton",
    "QCheckBox",
    "QGroupBox",
    "QComboBox",
    "QLineEdit",
    "QListView",
    "QTreeView",
    "QMenuBar",
    "QMenu",
    "QTextEdit",
    "QSlider",
    "QSpinBox",
    "QDoubleSpinBox",
    "QDateTimeEdit",
    "QDateEdit",
    "QTimeEdit",
    "QTabBar",
    "QToolBox",
    "QTableView",
    "QTableWidget",
    "QDockWidget",
    "QFileDialog",
    "QAbstractItemView",
    "QStatusBar",
)
SERVED_UNDER = {
    "QListWidget": "QListView",
    "QTreeWidget": "QTreeView",
    "QHeaderView": "QAbstractItemView",
    "QCommandLinkButton": "QPushButton",
    "FlatButton": "QAbstractButton",
}
ITEM_VIEWS = ("QListView", "QTreeView", "QTableView", "QTableWidget")
DRAGGED = (*ITEM_VIEWS, "QLabel", "QAbstractItemView")
PROPERTIES = (
    "propertyNames",
    "pseudoPropertyNames",
    "className",
    "silkClassName",
    "globalRect",
    "geometry",
    "text",
)
PSEUDO_PROPERTIES: Dict[str, Tuple[str, ...]] = {
    "QListView": (
        "rowCount",
        "itemList",
        "currentItemRect",
        "itemIsEnabled",
        "itemIsSelected",
        "itemIsChecked",
    ),
    "QTreeView": (
        "columnTextList",
        "currentPath",
        "columnCount",
        "topLevelItemCount",
        "pathList",
        "itemPath",
        "itemIsEnabled",
        "itemIsSelected",
        "itemIsExpandable",
        "itemIsOpen",
        "itemTextList",
    ),
    "QTableView": ("rowCount", "columnCount", "currentRow", "currentColumn", "itemText", "rowHeaderText"),
    "QTableWidget": ("rowCount", "columnCount", "itemText", "columnHeaderText", "currentRow"),
    "QAbstractItemView": (
        "columnCount",
        "rowCount",
        "itemIsSelected",
        "itemIsExpanded",
        "itemData",
        "itemPosition",
    ),
    "QMenuBar": ("itemList", "pathChecked", "pathDisabled"),
    "QMenu": ("itemList", "pathDisabled"),
    "QComboBox": ("itemList", "currentText", "currentIndex"),
    "QTabBar": ("itemList", "toolTipList", "currentText", "currentToolTip"),
    "QToolBox": ("itemList", "currentText"),
    "QStatusBar": ("currentMessage",),
    "PropertyTrap": ("dialog", "loop", "deadly", "deadlyMood", "windowless", "thrower", "text"),
}
SPECIAL_PATHS = ("ActivePopupWidget", "FocusWidget", "unnamed", "Ok_dialog_button", "Cancel_dialog_button")
DERIVED_PATHS = (
    "rinse_action_button",
    "QLineEdit__widget__",
    "ApplyToAll_dialog_button",
    "Push_dialog_button",
)
SPECIAL_WINDOWS = (
    "",
    "Stage",
    "Widget:stage",
    "Widget:ActivePopupWidget",
    "Widget:ActiveModalWidget",
    "Widget:",
)
SIZES = ("40", "0", "-300", "1", "400", "900", "1500", "3000", "x", "")
COORDINATES = ("40", "0", "-300", "1", "1500", "99999", "2147483647", "-2147483648", "x", "")

PAUSE = 0.01
"""Seconds until an application may have mended what it did."""

LOCATED_SHARE = 0.3
"""How many of the requests about a widget are extensions with a locator."""

DRAG_GOES_ON = 0.8
"""How many of the requests that follow the beginning of a drag are the next of it."""

LOOK_EVERY = 12
"""After how many commands the player looks again at what there is."""


class Player:
    """Makes up requests. What it knows of the application it has from the replies to its own requests."""

    def __init__(self, seed: int, ask: Callable[[str], Reply]) -> None:
        """`ask` sends a request line and returns its reply."""
        self._chance = random.Random(seed)
        self._ask = ask
        self._windows: List[str] = []
        self._targets: List[Tuple[str, str, str]] = []
        self._until_look = 0
        self._rest_of_drag: List[str] = []
        self._told = itertools.cycle(("+events", "+hidden"))
        self._makers: Sequence[Tuple[int, Callable[[], str]]] = (
            (3, lambda: "1"),
            (3, lambda: "3"),
            (34, self._activate),
            (18, self._enter),
            (22, self._read),
            (22, self._mouse),
            (4, self._tree),
            (3, self._locate),
            (2, self._check),
            (3, lambda: self._geometry("10", COORDINATES)),
            (3, lambda: self._geometry("11", SIZES)),
            (2, self._tray_icon),
            (8, self._press),
            (5, self._type),
            (4, self._wheel),
            (2, self._focus),
            (1, self._clipboard),
            (1, self._record),
            (3, lambda: next(self._told)),
            (4, lambda: self._extension("+2")),
            (1, lambda: "+extensions"),
            (8, self._mouse_on_item),
            (3, self._scroll),
            (8, self._drag),
        )

    def next_request(self) -> str:
        """The next request line; a refresh of what is known of the windows may be asked before."""
        if self._rest_of_drag and self._chance.random() < DRAG_GOES_ON:
            return self._rest_of_drag.pop(0)
        if self._until_look <= 0 or not self._targets:
            self._look()
            self._until_look = LOOK_EVERY
        self._until_look -= 1
        weights = [weight for weight, _ in self._makers]
        maker = self._chance.choices([maker for _, maker in self._makers], weights)[0]
        request = maker()
        if request.split(",")[0] in locatorpool.LOCATED and self._chance.random() < LOCATED_SHARE:
            return locatorpool.located(self._chance, request)
        return request

    def take(self, reply: Reply) -> None:
        """Learns from a reply: where a window is not there or blocked, the application is given a moment."""
        if reply.code in ("2", "4"):
            self._until_look = 0
            time.sleep(PAUSE)

    def _look(self) -> None:
        self._windows, self._targets = [], []
        for window in self._list("1"):
            record = WindowRecord.parse(window)
            if record.class_name == "QMainWindow":
                self._windows.append("Widget:stage")
            elif record.title and "," not in record.title:
                self._windows.append(record.title)
        for window in dict.fromkeys(self._windows[:4]):
            self._collect(window)

    def _list(self, request: str) -> Tuple[str, ...]:
        reply = self._ask(request)
        items = reply.value() if reply.ok else ()
        if not isinstance(items, tuple):
            raise ProtocolError(f"not a list: {reply.raw!r}")
        return items

    def _collect(self, window: str) -> None:
        ancestors: List[str] = []
        for record in map(WidgetRecord.parse, self._list(f"2,{window}")):
            del ancestors[record.depth :]
            ancestors.append(record.object_name or "unnamed")
            if "," not in "".join(ancestors) and (record.visible or self._chance.random() < 0.03):
                served = SERVED_UNDER.get(record.class_name, record.class_name)
                self._targets.append((window, self._path(ancestors), served))

    def _path(self, ancestors: List[str]) -> str:
        name = ancestors[-1]
        form = self._chance.random()
        if form < 0.5 and name != "unnamed":
            return name
        if form < 0.7:
            return "/".join(ancestors[-2:])
        return "/".join(ancestors) if form < 0.9 else f"{ancestors[0]}//{name}"

    def _target(self, wanted: Container[str]) -> Tuple[str, str, str]:
        """Window, path, and the class that serves the widget: mostly one of those that are wanted."""
        if self._chance.random() < 0.08 or not self._targets:
            path = self._chance.choice(SPECIAL_PATHS + DERIVED_PATHS)
            return self._window(), path, self._chance.choice(SERVED)
        targets = self._targets
        if self._chance.random() < 0.9:
            targets = [target for target in targets if target[2] in wanted] or targets
        window, path, served = self._chance.choice(targets)
        generic = served in ITEM_VIEWS and self._chance.random() < 0.25
        return window, path, "QAbstractItemView" if generic else served

    def _window(self) -> str:
        if not self._windows or self._chance.random() < 0.5:
            return self._chance.choice(SPECIAL_WINDOWS)
        return self._chance.choice(self._windows)

    def _served_as(self, served: str) -> str:
        """The class section: usually empty, if the class is the nearest one."""
        if served == "QAbstractItemView":
            return served
        return self._chance.choice(SERVED) if self._chance.random() < 0.06 else ""

    @staticmethod
    def _compose(number: str, *texts: str) -> str:
        return COMMAND_BY_NUMBER[number].compose(*texts)

    def _activate(self) -> str:
        window, path, served = self._target(valuepool.ACTIVATIONS)
        value = encode_argument(valuepool.value_for(valuepool.ACTIVATIONS, served, self._chance))
        option = ""
        if served in valuepool.OPTIONS and self._chance.random() < 0.7:
            option = encode_argument(valuepool.OPTIONS[served](self._chance))
        return self._compose("5", window, path, self._served_as(served), value, option)

    def _enter(self) -> str:
        window, path, served = self._target(valuepool.ENTRIES)
        value = encode_argument(valuepool.value_for(valuepool.ENTRIES, served, self._chance))
        return self._compose("6", window, path, self._served_as(served), value, "")

    def _read(self) -> str:
        window, path, served = self._target(PSEUDO_PROPERTIES)
        names = PROPERTIES + 3 * PSEUDO_PROPERTIES.get(served, ())
        argument = ""
        if self._chance.random() < 0.8:
            value = valuepool.value_for(valuepool.ARGUMENTS, served, self._chance)
            argument = encode_argument(value).replace(",", ";").replace("\n", " ")
        return self._compose("7", window, path, self._served_as(served), self._chance.choice(names), argument)

    def _mouse(self) -> str:
        window, path, served = self._target(SERVED)
        command = encode_argument(valuepool.mouse_command(self._chance))
        return self._compose("9", window, path, self._served_as(served), command, "")

    def _tree(self) -> str:
        return self._compose("2", self._window())

    def _locate(self) -> str:
        window, path, _ = self._target(SERVED)
        return self._compose("4", window, path)

    def _check(self) -> str:
        return self._compose("8", self._window())

    def _geometry(self, number: str, choices: Sequence[str]) -> str:
        numbers = (self._chance.choice(choices), self._chance.choice(choices))
        return self._compose(number, self._window(), *numbers)

    def _tray_icon(self) -> str:
        return self._compose("12", "", self._chance.choice(("tray", "", "x")))

    def _press(self) -> str:
        keys = self._chance.choice(valuepool.STROKES)
        return self._extension("+press", keys, self._chance.choice(valuepool.KEY_MODES))

    def _type(self) -> str:
        return self._extension("+type", self._chance.choice(valuepool.TYPED))

    def _wheel(self) -> str:
        return self._extension("+wheel", self._chance.choice(valuepool.WHEELS))

    def _focus(self) -> str:
        return self._extension("+focus")

    def _clipboard(self) -> str:
        texts = self._chance.choice(((), ("",), ("text \u20ac",)))
        return EXTENSION_BY_NAME["+clipboard"].compose(*texts)

    def _record(self) -> str:
        modes = (("start",), ("start", "passwords"), ("stop",), ("x",))
        return EXTENSION_BY_NAME["+record"].compose(*self._chance.choices(modes, (6, 3, 1, 1))[0])

    def _mouse_on_item(self) -> str:
        window, path, served = self._target(valuepool.ACTIVATIONS)
        command = encode_argument(valuepool.mouse_command(self._chance))
        force = "force" if self._chance.random() < 0.3 else ""
        texts = (self._served_as(served), command, force, self._item(served))
        return EXTENSION_BY_NAME["+9"].compose(window, f'path="{path}"', *texts)

    def _drag(self) -> str:
        """A press on a widget or an item; the move and the release, mostly on another widget, come next."""
        window, path, served = self._target(DRAGGED)
        goal_window, goal, _ = self._target(DRAGGED)
        if self._chance.random() < 0.7:
            goal_window = window
        compose = EXTENSION_BY_NAME["+9"].compose
        item = self._item(served) if served in ITEM_VIEWS else ""
        names = ["MouseMove", "MouseMove", "MouseRelease"][self._chance.randrange(2) :]
        self._rest_of_drag = [
            compose(goal_window, f'path="{goal}"', "QWidget", encode_argument(self._mouse_with_left(name)))
            for name in names
        ]
        press = encode_argument("MousePress:LeftButton:::")
        return compose(window, f'path="{path}"', "" if item else "QWidget", press, "", item)

    def _mouse_with_left(self, name: str) -> str:
        x, y = (self._chance.choice(("0.25", "0.5", "0.9")) for _ in range(2))
        return f"{name}:LeftButton:{x}:{y}:"

    def _scroll(self) -> str:
        window, path, served = self._target(valuepool.ACTIVATIONS)
        item = self._item(served) if self._chance.random() < 0.7 else ""
        name = self._chance.choice(("+scroll", "+item"))
        return EXTENSION_BY_NAME[name].compose(window, f'path="{path}"', self._served_as(served), item)

    def _item(self, served: str) -> str:
        return encode_argument(valuepool.value_for(valuepool.ACTIVATIONS, served, self._chance))

    def _extension(self, name: str, *texts: str) -> str:
        """A request for what has the focus in a window, or for a widget by its path."""
        window, path, _ = self._target(SERVED)
        locator = "" if self._chance.random() < 0.4 else f'path="{path}"'
        return EXTENSION_BY_NAME[name].compose(window, locator, *texts)
