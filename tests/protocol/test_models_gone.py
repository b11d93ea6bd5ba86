"""Lists, trees and tables whose application has destroyed their model: there is nothing in them, and nothing crashes."""

import pytest

from replies import error
from viewapp import View

LIST = ("listviewhost", "Lists", "list")
TREE = ("treeviewhost", "Trees", "tree")
TABLE = ("tableviewhost", "Tables", "table")
WIDGETS = pytest.mark.parametrize("host", [LIST, TREE, TABLE], ids=["list", "tree", "table"])
NO_RECT = "0,r:0,0,-1,-1"


@pytest.fixture
def modelless(launch):
    """Starts a host and returns its widget, without its model."""

    def start(host):
        program, window, name = host
        view = View(launch(program, "--scenario", "widget"), window, name)
        view.app.do("deleteModel")
        return view

    return start


@pytest.mark.parametrize(
    "host, values",
    [
        (LIST, {"rowCount": "0,i:0", "itemList": "0,l:", "currentItemRect": NO_RECT}),
        (
            TREE,
            {
                "topLevelItemCount": "0,i:0",
                "columnCount": "0,i:0",
                "pathList": "0,l:",
                "columnTextList": "0,l:",
                "currentPath": "u:",
            },
        ),
        (
            TABLE,
            {"rowCount": "0,i:0", "columnCount": "0,i:0", "currentRow": "0,i:0", "currentColumn": "0,i:0"},
        ),
    ],
    ids=["list", "tree", "table"],
)
def test_the_properties_of_a_widget_tell_that_nothing_is_in_it(modelless, host, values):
    view = modelless(host)
    assert {name: view.read(name) for name in values} == values


@WIDGETS
def test_every_property_of_a_widget_is_answered(modelless, host):
    view = modelless(host)
    for name in view.items("pseudoPropertyNames") + view.items("propertyNames"):
        for argument in ("", "s:1", "s:1:1", "s:top0"):
            assert view.read(name, argument)[:2] in ("0,", "8,", "u:"), name


@pytest.mark.parametrize(
    "host, message",
    [
        (LIST, "activate, QListView unknown item 1:1"),
        (TREE, "Invalid item path"),
        (TABLE, "Invalid row 1 is out of range [1, 0]"),
    ],
    ids=["list", "tree", "table"],
)
def test_no_item_can_be_activated(modelless, host, message):
    assert modelless(host).activate("s:1:1") == error(message)


@WIDGETS
def test_the_widget_is_still_entered_and_clicked(modelless, host):
    view = modelless(host)
    assert view.enter("b:true").startswith("8,Exception : ")
    assert view.enter("s:0:x")[:2] in ("0,", "8,")
    assert view.mouse("MouseClick:LeftButton:::").startswith("0,Q")
