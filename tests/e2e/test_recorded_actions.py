"""Recorded events as the code of a test: events in, lines of code out."""

import pytest

from qtdriver.errors import ProtocolError
from qtdriver.recording.actions import steps_of
from qtdriver.recording.code import test_code as code_of
from qtdriver.recording.events import Event, EventItem, parse_events
from qtdriver.recording.steps import Launch

from recordedevents import (
    BAR,
    BOX,
    BUTTON,
    CANVAS,
    CELL,
    CHECK,
    CUPS,
    CUPS_BOX,
    COLUMNS,
    DIALOG,
    FILE,
    LINE,
    LIST,
    MILK,
    MILK_BOX,
    NOTES,
    SAVE,
    SAVE_BUTTON,
    SECRET,
    SECTION,
    SLIDER,
    TABLE,
    TABS,
    TOOL,
    TREE,
    chosen,
    click,
    double_click,
    entry,
    event,
    held,
    key,
    keys,
    mouse,
    row,
    tree,
    wheel,
)

CASES = {
    "a button": (click(BUTTON), ['shop.widget("brew").click()']),
    "with the middle button": (click(CANVAS, button="middle"), ['shop.widget("canvas").click("middle")']),
    "with a modifier": (
        click(CANVAS, modifiers=["Shift"]),
        ['shop.widget("canvas").click(modifier="shift")'],
    ),
    "a place in a widget that draws itself": (click(CANVAS), ['shop.widget("canvas").click(at=(0.5, 0.5))']),
    "a check box": (click(CHECK), ['shop.find(text="Milk").check()']),
    "a checked box": (click(CHECK, **MILK), ['shop.find(text="Milk").uncheck()']),
    "a press that is let go elsewhere": (
        [mouse("press", BUTTON), mouse("release", BUTTON, at=[300, 300])],
        [],
    ),
    "a selection of text": (
        [mouse("press", LINE), mouse("release", LINE, at=[90, 10])],
        [],
    ),
    "a column that is moved": (
        [mouse("press", COLUMNS, item=SECTION), mouse("release", COLUMNS, at=[5, 10])],
        ['# not recorded: a drag with the mouse, from widget("files").column_header("Size")'],
    ),
    "a row that is dragged": (
        [mouse("press", LIST, item=row("Tea")), *click(BUTTON)],
        [
            '# not recorded: a drag with the mouse, from widget("drinks").item("Tea")',
            'shop.widget("brew").click()',
        ],
    ),
    "with two modifiers": (
        click(LIST, item=row("Tea"), modifiers=["Ctrl", "Shift"]),
        [
            "# Ctrl+Shift was held: the mouse of a test takes one of Shift, Ctrl and Alt",
            'shop.widget("drinks").item("Tea").click(modifier="control")',
        ],
    ),
    "a click into a field": (click(LINE), []),
    "a row": (click(LIST, item=row("Tea")), ['shop.widget("drinks").select("Tea")']),
    "a row of a tree": (click(TREE, item=row("2026", "May")), ['shop.widget("files").select("2026/May")']),
    "one more row": (
        click(LIST, item=row("Tea"), modifiers=["Ctrl"]),
        ['shop.widget("drinks").item("Tea").click(modifier="control")'],
    ),
    "a cell": (click(TABLE, item=CELL), ['shop.widget("prices").cell(3, "Price").click()']),
    "a header": (
        click(COLUMNS, item=SECTION),
        ['shop.widget("files").column_header("Size").click()'],
    ),
    "a tab": (click(TABS, item={"text": "Lists", "row": 1}), ['shop.tab("Lists").click()']),
    "a choice": (
        [
            *click(BOX),
            event("shown", 60, 60, **{"class": "QComboBoxPrivateContainer"}),
            mouse("press", BOX, list=True, item=row("Dark")),
            mouse("release", BOX, list=True, item=row("Dark")),
        ],
        ['shop.widget("roast").select("Dark")'],
    ),
    "a list that is only opened": (
        [mouse("press", BOX), mouse("release", BOX, list=True, item=row("Light"), time=100)],
        [],
    ),
    "a choice with the button held": (
        [mouse("press", BOX), mouse("release", BOX, list=True, item=row("Dark"), time=900)],
        ['shop.widget("roast").select("Dark")'],
    ),
    "a choice by keys": (
        [
            key(BOX, "Down", value="Light"),
            key(BOX, "Down", value="Medium"),
            *click(BUTTON, tree=tree(roast="Dark")),
        ],
        ['shop.widget("roast").select("Dark")', 'shop.widget("brew").click()'],
    ),
    "a choice by a letter": (
        [*keys(BOX, "d", before="Light"), *click(BUTTON, tree=tree(roast="Dark"))],
        ['shop.widget("roast").select("Dark")', 'shop.widget("brew").click()'],
    ),
    "a choice by keys that nothing tells": (
        [key(BOX, "Down", value="Light"), key(BOX, "Down", value="Medium")],
        ['shop.widget("roast").press("Down", "Down")'],
    ),
    "a double click": (
        double_click(LIST, item=row("Tea")),
        ['shop.widget("drinks").item("Tea").double_click()'],
    ),
    "a double click on a widget": (double_click(BUTTON), ['shop.widget("brew").double_click()']),
    "a slider": (
        [mouse("press", SLIDER), mouse("release", SLIDER, at=[90, 1]), *click(BUTTON, tree=tree(heat=80))],
        ['shop.widget("heat").select(80)', 'shop.widget("brew").click()'],
    ),
    "a slider whose value the next event tells": (
        [mouse("press", SLIDER), mouse("release", SLIDER), *click(BUTTON, previous=held(SLIDER, 80))],
        ['shop.widget("heat").select(80)', 'shop.widget("brew").click()'],
    ),
    "a choice by keys that the next event tells": (
        [key(BOX, "Down"), *click(BUTTON, previous=held(BOX, "Dark"))],
        ['shop.widget("roast").select("Dark")', 'shop.widget("brew").click()'],
    ),
    "a text that the application changes": (
        [*keys(LINE, "ada"), *click(BUTTON, previous=held(LINE, "Ada"))],
        ['shop.find(label="Customer:").fill("Ada")', 'shop.widget("brew").click()'],
    ),
    "a box that was checked since its window was told": (
        [*click(CHECK), *click(CHECK, tree=None, widget={**MILK_BOX, "states": ["checked"]})],
        ['shop.find(text="Milk").check()', 'shop.find(text="Milk").uncheck()'],
    ),
    "a button that has got another text": (
        [*click(SAVE), *click(SAVE, tree=None, widget={**SAVE_BUTTON, "text": "Close"})],
        ['shop.find(text="Save").click()', 'shop.find(text="Close").click()'],
    ),
    "a window that was there at the beginning": (
        [
            event("window", 1, tree=tree()),
            *click(BUTTON, tree=None, widget={"class": "QPushButton", "role": "button", "name": "brew"}),
        ],
        ['shop.widget("brew").click()'],
    ),
    "the wheel": (
        [wheel(CANVAS, [0, -120]), wheel(CANVAS, [0, -120]), wheel(CANVAS, [120, 0])],
        ['shop.widget("canvas").wheel(down=2)', 'shop.widget("canvas").wheel(left=1)'],
    ),
    "the wheel on a list": ([wheel(LIST, [0, -120])], []),
    "an entry of the menu bar": (
        [*click(BAR, item=entry("File")), *chosen("File", "Save as...")],
        ['shop.menu("File/Save as...").choose()'],
    ),
    "an entry by keys": (
        [
            event("shortcut", BAR, key="Alt+F", tree=tree()),
            event("key", 50, 50, key="S", text="s"),
            event("action", 50, 50, item=entry("File", "Save")),
        ],
        ['shop.menu("File/Save").choose()'],
    ),
    "a context menu": (
        [*click(LIST, button="right", item=row("Tea")), *chosen("Copy", opener=None)],
        ['shop.widget("drinks").item("Tea").context_menu("Copy").choose()'],
    ),
    "a context menu that is open before the release": (
        [
            mouse("press", LIST, button="right", item=row("Tea")),
            event("shown", 50, 50, **{"class": "QMenu"}),
            mouse("release", 50, button="right", item=entry("Copy", opener=None)),
            event("key", 50, 50, key="Return"),
            event("action", 50, 50, item=entry("Copy", opener=None)),
        ],
        ['shop.widget("drinks").item("Tea").context_menu("Copy").choose()'],
    ),
    "the arrows of a spin box": (
        [
            *click(CUPS),
            *click(CUPS, tree=None, widget={**CUPS_BOX, "value": 1}),
            *click(BUTTON, tree=None, previous=held(CUPS, 2)),
        ],
        ['shop.widget("cups").fill("2")', 'shop.widget("brew").click()'],
    ),
    "a click into a spin box": (
        [*click(CUPS), *click(BUTTON, tree=None, previous=held(CUPS, 0))],
        ['shop.widget("brew").click()'],
    ),
    "a right click without a menu": (
        [*click(CANVAS, button="right"), *click(BUTTON)],
        ['shop.widget("canvas").right_click()', 'shop.widget("brew").click()'],
    ),
    "the menu of a button": (
        [*click(TOOL), *chosen("Half", opener=TOOL)],
        ['shop.widget("more").menu("Half").choose()'],
    ),
    "a typed text": (
        [*click(LINE), *keys(LINE, "Ada"), *click(BUTTON, tree=tree(customer="Ada"))],
        ['shop.find(label="Customer:").fill("Ada")', 'shop.widget("brew").click()'],
    ),
    "a corrected text": (keys(LINE, "Adb\ba"), ['shop.find(label="Customer:").fill("Ada")']),
    "a text that is completed": (
        [*keys(LINE, "Ad"), *click(BUTTON, tree=tree(customer="Ada Lovelace"))],
        ['shop.find(label="Customer:").fill("Ada Lovelace")', 'shop.widget("brew").click()'],
    ),
    "Return after a text": (
        keys(LINE, "Ada\r"),
        ['shop.find(label="Customer:").fill("Ada")', 'shop.find(label="Customer:").press("Return")'],
    ),
    "Tab after a text": (
        [*keys(LINE, "Ada"), event("key", LINE, key="Tab", text="\t", value="Ada")],
        ['shop.find(label="Customer:").fill("Ada")'],
    ),
    "a text that replaces another": (
        [key(LINE, "Ctrl+A", value="Bob"), *keys(LINE, "5", before="Bob")],
        ['shop.find(label="Customer:").fill("5")'],
    ),
    "a text with a list of completions": (
        [
            *keys(LINE, "Ad"),
            event("shown", 60, 60, **{"class": "QListView"}),
            event("key", 60, 60, key="A", text="a"),
            event("closed", 60, 60),
            event("key", LINE, key="X", text="x", value="Ada"),
        ],
        ['shop.find(label="Customer:").fill("Adax")'],
    ),
    "a completion that is accepted": (
        [
            *keys(LINE, "Ad"),
            event("shown", 60, 60, **{"class": "QListView"}),
            event("key", 60, 60, key="A", text="a"),
            event("key", 60, 60, key="Return", text="\r"),
        ],
        ['shop.find(label="Customer:").fill("Ada")', 'shop.find(label="Customer:").press("Return")'],
    ),
    "a file": (
        [
            *keys(FILE, "a.txt"),
            event("key", FILE, key="Return", text="\r", value="a.txt"),
            *keys(FILE, "b.txt"),
            *click(SAVE, tree=tree(fileNameEdit="b.txt")),
        ],
        ['shop.file("a.txt")', 'shop.file("b.txt")'],
    ),
    "lines": (keys(NOTES, "a\rb"), [r'shop.widget("notes").fill("a\nb")']),
    "an input method": (
        [event("text", LINE, text="日本", tree=tree())],
        ['shop.find(label="Customer:").fill("日本")'],
    ),
    "a password": (
        [event("key", SECRET, hidden=True, tree=tree()), event("key", SECRET, hidden=True)],
        ['shop.widget("password").fill(SECRET_1)'],
    ),
    "keys for a list": (
        [key(LIST, "Down"), key(LIST, "Down"), key(LIST, "Return")],
        ['shop.widget("drinks").press("Down", "Down", "Return")'],
    ),
    "letters for a canvas": (keys(CANVAS, "abc"), ['shop.widget("canvas").type("abc")']),
    "a shortcut": (
        [event("shortcut", LINE, key="Ctrl+S", text="Save", action="save", tree=tree())],
        ['shop.press("Ctrl+S")'],
    ),
    "a dialog that the click closes": (
        [
            *click(BUTTON),
            event("shown", 70, 70, title="Pay", modal=True, **{"class": "QDialog"}),
            *click(71, window=70, tree=DIALOG),
            event("closed", 70, 70),
        ],
        ['shop.widget("brew").click()', 'pay = app.modal("Pay")', 'pay.find(text="OK").click()'],
    ),
}


def lines_of(events):
    told = parse_events({"events": events, "dropped": 0, "recording": True})
    steps = steps_of("app", told.events)
    if not steps:
        return []
    code = code_of("it", [Launch("app", ("app",)), *steps])
    body = [line.strip() for line in code.splitlines() if line.startswith("    ")]
    opening = 'shop = app.window(name="shop")'
    assert body[0] == 'app = qtdriver.launch("app")'
    assert next((line for line in body[1:] if not line.startswith("#")), opening) == opening
    compile(code, "test", "exec")
    return [line for line in body[1:] if line != opening]


@pytest.mark.parametrize("name", CASES)
def test_what_a_user_did_is_what_a_person_would_write(name):
    events, lines = CASES[name]
    assert lines_of(events) == lines


def test_two_widgets_with_one_text_are_not_confused_but_told_in_a_comment():
    twins = {**DIALOG, "children": [{**child, "text": "OK"} for child in DIALOG["children"]]}
    told = parse_events({"events": click(71, window=70, tree=twins), "dropped": 0, "recording": True})
    (step,) = steps_of("app", told.events)
    assert not step.method
    assert step.comment == "not recorded: click() on a button that no locator finds alone"


def test_two_widgets_with_one_name_are_told_by_what_they_are_in():
    def box(ref, name):
        field = {"ref": ref + 1, "class": "QLineEdit", "role": "edit", "name": "field", "rect": [0, 0, 9, 9]}
        return {
            "ref": ref,
            "class": "QWidget",
            "role": "widget",
            "name": name,
            "rect": [0, 0, 9, 9],
            "children": [field],
        }

    window = {**DIALOG, "children": [box(71, "first"), box(81, "second")]}
    events = [event("key", 82, window=70, key="A", text="a", tree=window)]
    (step,) = steps_of("app", parse_events({"events": events, "dropped": 0, "recording": True}).events)
    assert step.widget == 'widget("second").find(path="field")'


def test_the_focus_between_two_keys_does_not_end_a_text():
    first, *others = keys(LINE, "Ada")
    assert lines_of([first, event("focus", LINE, reason="other"), *others]) == [
        'shop.find(label="Customer:").fill("Ada")'
    ]


def test_a_reply_is_parsed():
    told = parse_events(
        {"events": [mouse("press", LIST, item=row("a", "b"))], "dropped": 3, "recording": False}
    )
    (press,) = told.events
    assert (told.dropped, told.is_recording) == (3, False)
    assert (press.kind, press.ref, press.window, press.at, press.button) == (
        "press",
        LIST,
        1,
        (50, 10),
        "left",
    )
    assert press.item == EventItem(path=("a", "b"), text="b", row=0, column=0)
    assert press.tree.name == "shop"
    assert isinstance(press, Event)


@pytest.mark.parametrize("reply", [{}, {"events": [{}], "dropped": 0, "recording": True}, {"events": 5}])
def test_another_reply_is_a_protocol_error(reply):
    with pytest.raises(ProtocolError, match="not recorded events"):
        parse_events(reply)
