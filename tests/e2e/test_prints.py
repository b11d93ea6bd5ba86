"""Everything that a test can hold prints as what it is."""

import importlib
import inspect
import pkgutil

import pytest

import qtdriver
from qtdriver import Transcript, WidgetTree, eventually
from qtdriver.protocol.records import WidgetRecord
from showcase import running


def classes():
    """The public classes of the package, and those whose objects its public methods answer; no bases of others."""
    found = {value for value in vars(qtdriver).values() if inspect.isclass(value)}
    for module in pkgutil.iter_modules(importlib.import_module("qtdriver.api").__path__, "qtdriver.api."):
        members = vars(importlib.import_module(module.name)).values()
        found |= {member for member in members if getattr(member, "__module__", "") == module.name}
    ours = {cls for cls in found if inspect.isclass(cls) and cls.__module__.startswith("qtdriver")}
    bases = {base for cls in ours for base in cls.__mro__[1:]}
    return sorted(ours - bases, key=lambda cls: cls.__qualname__)


@pytest.mark.parametrize("cls", classes(), ids=lambda cls: cls.__qualname__)
def test_no_object_prints_as_an_address_in_memory(cls):
    assert cls.__repr__ is not object.__repr__


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
        assert repr(driver) == f"<driver of app({app.pid})>"
        assert repr(app.process) == f"<process {app.process.pid}, running>"
        assert repr(app.connection) == f"<connection to process {app.pid}, open>"
        printed = {
            str(window): 'window("Roastery")',
            str(window.widget("milkCheck")): 'window("Roastery").widget("milkCheck")',
            str(window.menu("Order/Quit")): 'window("Roastery").menu("Order/Quit")',
            str(eventually(window)): 'eventually(window("Roastery"))',
            str(eventually(window.menu("Order/Quit").items)): "eventually(items)",
        }
        assert list(printed) == list(printed.values())
        assert str(window.tree()).splitlines()[0] == "showcase (MainWindow)"
    assert repr(app.process) == "<process {}, ended: signal SIGTERM>".format(app.process.pid)
    assert repr(app.connection) == f"<connection to process {app.pid}, closed>"
    assert repr(driver.apps) == f"(app({app.pid}),)"
    assert repr(Transcript()) == "<transcript of 0 exchanges>"
