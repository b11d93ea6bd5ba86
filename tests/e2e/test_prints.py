"""Everything that a test can hold prints as what it is."""

import importlib
import inspect
import pkgutil

import pytest

import qtdriver
from qtdriver import Rect, Reply, Server, Snapshot, SnapshotNode, Transcript, WidgetTree, eventually, soft
from qtdriver.api.disconnection import EndWatch
from qtdriver.api.steps import StepListener, _Condition, _Local
from qtdriver.errors import QtDriverError, ReplyError
from qtdriver.lookup.snapshot import Item
from qtdriver.protocol.commands import Answer, Command, Section
from qtdriver.protocol.greeting import Greeting
from qtdriver.protocol.locators import locator
from qtdriver.protocol.records import CursorWidget, WidgetRecord, WindowRecord
from qtdriver.protocol.transcript import Exchange, Step
from showcase import running

BOX = SnapshotNode.of(
    {
        "ref": 4,
        "class": "QCheckBox",
        "role": "checkbox",
        "name": "milk",
        "text": "Milk",
        "states": ["checked"],
        "rect": [1, 2, 3, 3],
    }
)


def classes():
    """The public classes of the package, and those whose objects its public methods answer; no bases of others."""
    found = {value for value in vars(qtdriver).values() if inspect.isclass(value)}
    for module in pkgutil.iter_modules(importlib.import_module("qtdriver.api").__path__, "qtdriver.api."):
        members = vars(importlib.import_module(module.name)).values()
        found |= {member for member in members if getattr(member, "__module__", "") == module.name}
    ours = {cls for cls in found if inspect.isclass(cls) and cls.__module__.startswith("qtdriver")}
    bases = {base for cls in ours for base in cls.__mro__[1:]}
    return sorted(ours - bases, key=lambda cls: cls.__qualname__)


ERRORS = [cls for cls in classes() if issubclass(cls, BaseException)]


@pytest.mark.parametrize("cls", ERRORS, ids=lambda cls: cls.__qualname__)
def test_an_error_prints_as_what_happened_meanwhile_and_what_to_do(cls):
    error = cls.__new__(cls)
    if issubclass(cls, ReplyError):
        ReplyError.__init__(error, "5", "Widget (ok) not found", "these are there: Ok")
        assert str(error) == "Widget (ok) not found\nthese are there: Ok"
    else:
        QtDriverError.__init__(error, "it failed", context="its last words", hint="try this")
        assert str(error) == "it failed\nits last words\ntry this"
    assert repr(error).startswith(f"{cls.__name__}(")


MADE = {
    "Answer": (Answer.LIST, "<Answer.LIST: 'a list'>"),
    "Command": (
        Command("1", "listWindows", (Section("window"),), Answer.LIST, "lists"),
        "Command(number='1', name='listWindows', sections=(Section(name='window', encoded=False),), "
        "answer=<Answer.LIST: 'a list'>, summary='lists')",
    ),
    "CursorWidget": (
        CursorWidget("QPushButton", 2, 1, "form/ok", "form", "Orders"),
        "CursorWidget(class_name='QPushButton', count=2, visible_count=1, path='form/ok', window_name='form', "
        "window='Orders')",
    ),
    "Exchange": (
        Exchange("1", "0,l:", 0.5, 0.25),
        "Exchange(request='1', reply='0,l:', started=0.5, seconds=0.25, error='')",
    ),
    "Greeting": (
        Greeting("2.1.0", 7, -1, "tag"),
        "Greeting(version='2.1.0', pid=7, hook_port=-1, build_tag='tag')",
    ),
    "Item": (Item(("Ada", "5"), 1, ("checked",)), "Item(texts=('Ada', '5'), depth=1, states=('checked',))"),
    "Locator": (
        locator("QPushButton", text="Save"),
        "Locator(text='QPushButton text=\"Save\"', call='find(\"QPushButton\", text=\"Save\")', name='')",
    ),
    "Node": (WidgetTree([WidgetRecord(0, True, "QDialog", "find")]).nodes[0], "find (QDialog)"),
    "Rect": (Rect(1, 2, 3, 4), "Rect(left=1, top=2, right=3, bottom=4)"),
    "Reply": (Reply.parse("0,QWidget"), "Reply(code='0', payload='QWidget', raw='0,QWidget')"),
    "Section": (Section("window"), "Section(name='window', encoded=False)"),
    "Snapshot": (Snapshot(BOX), '<snapshot: checkbox "Milk" #milk (checked), 1 widgets>'),
    "SnapshotNode": (
        BOX,
        "SnapshotNode(ref=4, class_name='QCheckBox', role='checkbox', name='milk', text='Milk', label='', tip='', "
        "value=None, states=('checked',), rect=Rect(left=1, top=2, right=3, bottom=4), header=(), items=(), "
        "left_out=0, children=[])",
    ),
    "SoftAssertions": (soft(), "<soft assertions: 0 failed>"),
    "Step": (
        Step("click()", reads=False, started=0.5),
        "Step(title='click()', reads=False, started=0.5, ...",
    ),
    "StepListener": (StepListener(), "<StepListener>"),
    "Transcript": (Transcript(), "<transcript of 0 exchanges>"),
    "WidgetRecord": (
        WidgetRecord(0, True, "QWidget", "form"),
        "WidgetRecord(depth=0, visible=True, class_name='QWidget', object_name='form')",
    ),
    "WidgetTree": (
        WidgetTree([WidgetRecord(0, True, "QDialog", "find")]),
        "<tree of 1 widgets in find (QDialog)>",
    ),
    "WindowRecord": (
        WindowRecord("QDialog", True, "New"),
        "WindowRecord(class_name='QDialog', modal=True, title='New')",
    ),
    "_Condition": (_Condition("eventually(ready)", None), "<condition eventually(ready)>"),
    "_Local": (_Local(), "<in None, None>"),
}
"""Objects that need no application, by their classes, and what they print as."""


@pytest.mark.parametrize("name", MADE)
def test_an_object_prints_as_what_it_is(name):
    made, expected = MADE[name]
    beginning, cut, _ = expected.partition("...")
    printed = repr(made)[: len(beginning)] if cut else repr(made)
    assert type(made).__qualname__ == name and printed == beginning


TREE = WidgetTree(
    [
        WidgetRecord(0, True, "QMainWindow", "editor"),
        WidgetRecord(1, True, "QFrame", ""),
        WidgetRecord(2, True, "QPushButton", ""),
        WidgetRecord(1, False, "QDialog", "find"),
        WidgetRecord(2, False, "QLineEdit", "text"),
        WidgetRecord(3, False, "QMenu", ""),
        WidgetRecord(1, True, "QLabel", "status"),
    ]
)


def test_a_tree_prints_as_an_outline_in_which_hidden_widgets_are_closed():
    assert str(TREE) == (
        "editor (QMainWindow)\n"
        "  unnamed (QFrame)\n"
        "    (named after its text) (QPushButton)\n"
        "  find (QDialog, hidden), with 2 more in it\n"
        "  status (QLabel)"
    )


def test_a_tree_and_its_nodes_are_shown_on_one_line():
    assert repr(TREE) == "<tree of 7 widgets in editor (QMainWindow)>"
    assert repr(TREE.nodes[3]) == "find (QDialog, hidden)"
    assert repr(TREE.nodes[:2]) == "[editor (QMainWindow), unnamed (QFrame)]"


def test_a_tree_that_ends_within_a_hidden_widget_counts_it_too():
    assert str(WidgetTree(TREE.nodes[index].record for index in (0, 3, 4))).endswith("with 1 more in it")
    assert repr(WidgetTree([])) == "<empty tree>" and str(WidgetTree([])) == ""


def test_the_objects_of_a_test_print_as_the_calls_that_made_them():
    with running() as (driver, app):
        window = app.window("Roastery")
        told = {
            "Driver": (driver, f"<driver of app({app.pid})>"),
            "App": (app, f"app({app.pid})"),
            "Process": (app.process, f"<process {app.process.pid}, running>"),
            "Connection": (app.connection, f"<connection to process {app.pid}, open>"),
            "Clipboard": (app.clipboard, f"app({app.pid}).clipboard"),
            "EndWatch": (EndWatch(app), f"<watch for the end of app({app.pid})>"),
            "Window": (window, 'window("Roastery")'),
            "Widget": (window.widget("milkCheck"), 'window("Roastery").widget("milkCheck")'),
            "FoundWidget": (window.find("QCheckBox").nth(1), 'window("Roastery").find("QCheckBox").nth(1)'),
            "WidgetItem": (
                window.widget("extrasList").item("Honey"),
                'window("Roastery").widget("extrasList").item(\'Honey\')',
            ),
            "HeaderSection": (
                window.widget("priceTable").column_header("Large"),
                'window("Roastery").widget("priceTable").column_header(\'Large\')',
            ),
            "Menu": (window.menu("Order/Quit"), 'window("Roastery").menu("Order/Quit")'),
        }
        for name, (made, expected) in told.items():
            assert type(made).__qualname__ == name and str(made) == repr(made) == expected
        assert (repr(app.modal("New")), repr(app.popup())) == ('modal("New")', "popup()")
        assert str(eventually(window)) == 'eventually(window("Roastery"))'
        assert str(eventually(window.menu("Order/Quit").items)) == "eventually(items)"
        assert str(window.tree()).splitlines()[0] == "showcase (MainWindow)"
    with Server() as server:  # the driver listens at that port no more
        assert repr(server) == "<server at port 4242, listening>"
    assert repr(server) == "<server at port 4242, closed>"
    assert repr(app.process) == "<process {}, ended: signal SIGTERM>".format(app.process.pid)
    assert repr(app.connection) == f"<connection to process {app.pid}, closed>"
    assert repr(driver.apps) == f"(app({app.pid}),)"
    every = {cls.__qualname__ for cls in classes() if cls not in ERRORS}
    assert every <= {*told, *MADE, "Server", "Desktop"}  # tests/e2e/test_desktop.py has that
