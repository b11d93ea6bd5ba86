"""Recorded drags, lists of combo boxes, check boxes of items, and what no test can repeat: events in, lines of code out."""

import pytest

from qtdriver.recording.actions import steps_of
from qtdriver.recording.events import parse_events

from recordedevents import BOX, BUTTON, CANVAS, CELL, COLUMNS, CUPS, LINE, LIST, SECTION, TABLE, TABS
from recordedevents import TOOL, TREE, chosen, click, double_click, entry, event, held, key, mouse, row, tree
from test_recorded_actions import lines_of

GROUP, DATE, DOCK, HANDLE, PANES, EDITOR, ORIGIN, FIELD = range(20, 28)
BREW = 'shop.widget("brew").click()'


def node(ref, kind, role, name="", **told):
    return {"ref": ref, "class": kind, "role": role, "name": name, "rect": [0, 0, 9, 9], **told}


def wide(**values):
    """The window with a widget of more kinds."""
    root = tree(**values)
    more = [
        node(GROUP, "QGroupBox", "group", "delivery"),
        node(DATE, "QDateEdit", "date edit", "day", value="2026-03-14"),
        node(DOCK, "QDockWidget", "dock", "tools"),
        node(
            PANES,
            "QSplitter",
            "splitter",
            "panes",
            children=[node(HANDLE, "QSplitterHandle", "splitter handle", "grip")],
        ),
        node(ORIGIN, "QComboBox", "combo box", "origin", children=[node(FIELD, "QLineEdit", "edit")]),
    ]
    for child in root["children"]:
        if child["ref"] == LIST:
            child["children"] = [node(EDITOR, "QExpandingLineEdit", "edit")]
    return {**root, "children": [*root["children"], *more]}


def drag(ref, end, at=(50, 15), **told):
    """A press and a release at another place; `end` is the widget there, with its item."""
    over = {"window": 1, "at": list(at), "size": [100, 20], **end}
    return [mouse("press", ref, **{"tree": wide(), **told}), mouse("release", ref, over=over)]


def drop(ref, end, at=(50, 15), **told):
    """A press, and a drop, which keeps the release from the widget."""
    dropped = event(
        "drop", end["ref"], at=list(at), size=[100, 20], **{k: v for k, v in end.items() if k != "ref"}
    )
    return [mouse("press", ref, **{"tree": wide(), **told}), dropped]


def listed(name, ref=BOX, **told):
    """A key for the open list of a combo box."""
    return event("key", ref, key=name, list=True, **told)


def opened(ref=BOX):
    """A click that opens the list of a combo box."""
    shown = event("shown", 60, 60, **{"class": "QComboBoxPrivateContainer"})
    return [mouse("press", ref, tree=wide()), shown, mouse("release", ref, list=True, item=row("Light"))]


CLOSED = event("closed", 60, 60)
DRAGS = {
    "a row onto another": (
        drop(LIST, {"ref": LIST, "item": row("Milk", within=[20, 60])}, item=row("Tea")),
        ['shop.widget("drinks").item("Tea").drag_to(shop.widget("drinks").item("Milk"))'],
    ),
    "a row before another": (
        drop(LIST, {"ref": TREE, "item": row("May", within=[20, 10])}, item=row("Tea")),
        ['shop.widget("drinks").item("Tea").drag_to(shop.widget("files").item("May"), to=(0.5, 0.1))'],
    ),
    "a row behind another": (
        drop(LIST, {"ref": LIST, "item": row("Milk", within=[20, 90])}, item=row("Tea")),
        ['shop.widget("drinks").item("Tea").drag_to(shop.widget("drinks").item("Milk"), to=(0.5, 0.9))'],
    ),
    "a row that nothing has taken": (
        [mouse("press", LIST, tree=wide(), item=row("Tea")), event("drag end", LIST)],
        ['# not recorded: a drag with the mouse, from widget("drinks").item("Tea")'],
    ),
    "a row into an empty place": (
        drop(LIST, {"ref": TREE}, item=row("Tea")),
        ['shop.widget("drinks").item("Tea").drag_to(shop.widget("files"), to=(0.5, 0.75))'],
    ),
    "a row onto a button": (
        drop(LIST, {"ref": BUTTON}, item=row("Tea")),
        ['shop.widget("drinks").item("Tea").drag_to(shop.widget("brew"))'],
    ),
    "a cell": (
        drop(TABLE, {"ref": CANVAS}, item=CELL),
        ['shop.widget("prices").cell(3, "Price").drag_to(shop.widget("canvas"), to=(0.5, 0.75))'],
    ),
    "a widget onto a row": (
        drop(CANVAS, {"ref": LIST, "item": row("Tea", within=[9, 9])}),
        ['shop.widget("canvas").drag_to(shop.widget("drinks"), at=(0.5, 0.5), to=(0.5, 0.75))'],
    ),
    "a line that is drawn": (
        drag(CANVAS, {"ref": CANVAS}),
        ['shop.widget("canvas").drag_to(shop.widget("canvas"), at=(0.5, 0.5), to=(0.5, 0.75))'],
    ),
    "rows that are selected together": (
        drag(LIST, {"ref": LIST, "item": row("Milk", row=3, within=[20, 60])}, item=row("Tea")),
        ['shop.widget("drinks").item("Tea").drag_to(shop.widget("drinks").item("Milk"))'],
    ),
    "a splitter": (
        drag(HANDLE, {"ref": PANES}),
        ['shop.widget("grip").drag_to(shop.widget("panes"), to=(0.5, 0.75))'],
    ),
    "a column that is moved": (
        drag(COLUMNS, {"ref": COLUMNS, "item": {**SECTION, "text": "Name", "section": 0}}, item=SECTION),
        ['shop.widget("files").column_header("Size").drag_to(shop.widget("files").column_header("Name"))'],
    ),
    "a tab that is moved to the right": (
        drag(
            TABS,
            {"ref": TABS, "item": {"text": "A", "row": 2, "beside": ["C", "D"]}},
            item={"text": "A", "row": 0},
        ),
        ['shop.tab("A").drag_to(shop.tab("C"))'],
    ),
    "a tab that is moved to the left": (
        drag(
            TABS,
            {"ref": TABS, "item": {"text": "C", "row": 0, "beside": ["", "A"]}},
            item={"text": "C", "row": 2},
        ),
        ['shop.tab("C").drag_to(shop.tab("A"))'],
    ),
    "a tab that stays": (
        drag(
            TABS,
            {"ref": TABS, "item": {"text": "A", "row": 0, "beside": ["", "B"]}},
            item={"text": "A", "row": 0},
        ),
        ['shop.tab("A").click()'],
    ),
    "a button within itself": (drag(BUTTON, {"ref": BUTTON}), [BREW]),
    "a row within itself": (
        drag(LIST, {"ref": LIST, "item": row("Tea", within=[90, 60])}, item=row("Tea")),
        ['shop.widget("drinks").select("Tea")'],
    ),
    "a width": (
        drag(COLUMNS, {"ref": COLUMNS, "item": SECTION}, item={**SECTION, "edge": True}),
        [
            '# not recorded: a size that was changed with the mouse, from widget("files").column_header("Size")'
        ],
    ),
    "a click on an edge": (click(COLUMNS, item={**SECTION, "edge": True}), []),
    "a text": (
        drop(LINE, {"ref": CANVAS}),
        ['# not recorded: a text that was dragged, from find(label="Customer:") to widget("canvas")'],
    ),
    "from another application": (
        [event("window", 1, tree=wide()), event("drop", CANVAS, at=[1, 1], size=[2, 2])],
        ['# not recorded: what was dropped from another application, on widget("canvas")'],
    ),
    "with a modifier": (
        drop(LIST, {"ref": TREE}, item=row("Tea"), modifiers=["Ctrl"]),
        ['# not recorded: a drag with the mouse, from widget("drinks").item("Tea") to widget("files")'],
    ),
    "a dock widget": (
        drag(DOCK, {"ref": DOCK}),
        ['# not recorded: a drag with the mouse, from widget("tools")'],
    ),
}
CHOICES = {
    "by keys in the open list": (
        [*opened(), listed("Down"), CLOSED, listed("Return"), *click(BUTTON, previous=held(BOX, "Dark"))],
        ['shop.widget("roast").select("Dark")', BREW],
    ),
    "by a letter in the list": (
        [*opened(), listed("D", text="d"), listed("Return"), *click(BUTTON, previous=held(BOX, "Dark"))],
        ['shop.widget("roast").select("Dark")', BREW],
    ),
    "in a list that a key has opened": (
        [key(BOX, "F4"), listed("Down"), listed("Return"), *click(BUTTON, previous=held(BOX, "Dark"))],
        ['shop.widget("roast").select("Dark")', BREW],
    ),
    "given up": (
        [*opened(), listed("Down"), CLOSED, listed("Esc"), *click(BUTTON, previous=held(BOX, "Light"))],
        [BREW],
    ),
    "given up by a key that closes the list": (
        [
            key(BOX, "Alt+Down"),
            listed("Down"),
            listed("Alt+Down"),
            *click(BUTTON, previous=held(BOX, "Light")),
        ],
        [BREW],
    ),
    "by keys, then by the mouse": (
        [
            *opened(),
            listed("Down"),
            mouse("press", BOX, list=True, item=row("Dark")),
            mouse("release", BOX, list=True, item=row("Dark")),
        ],
        ['shop.widget("roast").select("Dark")'],
    ),
    "in a box that takes text": (
        [
            event("key", ORIGIN, key="Alt+Down", value="Kenya", tree=wide()),
            listed("Down", ORIGIN, value="Kenya"),
            listed("Return", ORIGIN, value="Kenya"),
            *click(BUTTON, previous=held(ORIGIN, "Peru")),
        ],
        ['shop.widget("origin").select("Peru")', BREW],
    ),
    "and a text after it": (
        [
            *opened(ORIGIN),
            listed("Return", ORIGIN, value="Kenya"),
            event("key", ORIGIN, key="X", text="x", value="Peru"),
            *click(BUTTON, previous=held(ORIGIN, "Perux")),
        ],
        ['shop.widget("origin").select("Peru")', 'shop.widget("origin").fill("Perux")', BREW],
    ),
}
OTHERS = {
    "the check box of a row": (
        click(LIST, item=row("Tea", check="unchecked")),
        ['shop.widget("drinks").item("Tea").check()'],
    ),
    "the checked box of a cell": (
        click(TABLE, item={**CELL, "check": "checked"}),
        ['shop.widget("prices").cell(3, "Price").uncheck()'],
    ),
    "the arrow that opens a row": (
        click(TREE, item=row("2026", branch="closed")),
        ['shop.widget("files").item("2026").press("Right")'],
    ),
    "the arrow that closes a row": (
        click(TREE, item=row("2026", branch="open")),
        ['shop.widget("files").item("2026").press("Left")'],
    ),
    "a group with a check box": (
        click(GROUP, tree=wide(), item={"check": "checked"}),
        ['shop.widget("delivery").uncheck()'],
    ),
    "a group elsewhere": (click(GROUP, tree=wide()), []),
    "an item that is edited": (
        [
            *double_click(LIST, tree=wide(), item=row("Tea")),
            event("key", EDITOR, key="Ctrl+A", value="Tea"),
            event("key", EDITOR, key="X", text="x", value="Tea"),
            event("key", EDITOR, key="Return", text="\r", value="x"),
        ],
        ['shop.widget("drinks").item("Tea").fill("x")'],
    ),
    "the calendar of a date edit": (
        [
            mouse("press", DATE, tree=wide(), list=True),
            mouse("release", DATE, list=True),
            *click(BUTTON, previous=held(DATE, "2026-03-04")),
        ],
        ['shop.widget("day").enter("2026-03-04")', BREW],
    ),
    "a calendar that is closed": (
        [
            mouse("press", DATE, tree=wide(), list=True),
            mouse("release", DATE, list=True),
            *click(BUTTON, previous=held(DATE, "2026-03-14")),
        ],
        [BREW],
    ),
    "a context menu that a key opens": (
        [
            event("context menu", LIST, at=[9, 9], size=[99, 99], item=row("Tea"), tree=wide()),
            event("key", 50, 50, key="Menu"),
            event("action", 50, 50, item=entry("Copy", opener=None)),
        ],
        ['shop.widget("drinks").item("Tea").context_menu("Copy").choose()'],
    ),
    "a context menu after its key was told": (
        [
            event("key", LIST, key="Menu", tree=wide()),
            event("context menu", LIST, at=[9, 9], size=[99, 99], item=row("Tea")),
            event("action", 50, 50, item=entry("Copy", opener=None)),
        ],
        ['shop.widget("drinks").item("Tea").context_menu("Copy").choose()'],
    ),
    "a menu that nothing tells the opener of": (
        [event("window", 1, tree=wide()), event("action", 50, 50, item=entry("Copy", opener=None))],
        ['# not recorded: the choice of "Copy" in a menu that nothing tells the opener of'],
    ),
    "a click on a button before its menu": (
        [*click(TOOL), mouse("press", TOOL), *chosen("Half", opener=TOOL)],
        ['shop.widget("more").click()', 'shop.widget("more").menu("Half").choose()'],
    ),
    "a blank": (
        [event("key", LIST, key="Space", text=" ", tree=tree())] * 2,
        ['shop.widget("drinks").press("Space", "Space")'],
    ),
    "a window that its frame closes": (
        [event("window", 1, tree=wide()), event("close", 1)],
        ['# not recorded: window(name="shop") was closed by its frame'],
    ),
}


@pytest.mark.parametrize("name", DRAGS)
def test_a_drag_is_recorded_or_said_not_to_be(name):
    events, lines = DRAGS[name]
    assert lines_of(events) == lines


@pytest.mark.parametrize("name", CHOICES)
def test_a_choice_in_a_combo_box_is_recorded_and_one_that_is_given_up_is_not(name):
    events, lines = CHOICES[name]
    assert lines_of(events) == lines


@pytest.mark.parametrize("name", OTHERS)
def test_a_gesture_is_recorded_or_said_not_to_be(name):
    events, lines = OTHERS[name]
    assert lines_of(events) == lines


def test_a_drag_to_another_window_names_both():
    other = {
        **node(70, "QWidget", "window", "basket"),
        "title": "Basket",
        "children": [node(71, "QListWidget", "list", "bought")],
    }
    told = {
        "events": [
            event("window", 70, window=70, tree=other),
            mouse("press", LIST, item=row("Tea")),
            event("drop", 71, window=70, at=[50, 15], size=[100, 20]),
        ],
        "dropped": 0,
        "recording": True,
    }
    (step,) = steps_of("app", parse_events(told).events)
    (target,) = step.arguments
    assert (step.window, target.window) == ('window(name="shop")', 'window(name="basket")')
    assert (step.widget, target.call) == ('widget("drinks").item("Tea")', 'widget("bought")')


@pytest.mark.parametrize(
    "events, value, line",
    [
        (
            [*opened(), listed("Down"), listed("Return")],
            held(BOX, "Dark"),
            'shop.widget("roast").select("Dark")',
        ),
        (click(CUPS), held(CUPS, 3), 'shop.widget("cups").fill("3")'),
    ],
)
def test_what_a_widget_holds_now_completes_the_last_step(events, value, line):
    told = parse_events({"events": events, "dropped": 0, "recording": True, "last": value})
    (step,) = steps_of("app", [*told.events, told.last])
    assert line.endswith(f'{step.widget}.{step.method}("{step.arguments[0]}")')
