"""The pseudo-properties of menu bars. Reading them opens nothing."""

import pytest

from replies import error

pytestmark = pytest.mark.shared

WINDOW = "Menus"


@pytest.fixture
def app(launch):
    host = launch("menuhost")
    host.forget()
    yield host
    assert host.events("shown", "keypress", "press") == []


def read(app, name, path):
    return app.read(WINDOW, "bar", name, "s:" + path)


def test_the_pseudo_properties_are_listed_after_the_built_in_ones(app):
    names = app.read(WINDOW, "bar", "pseudoPropertyNames").split("\f")
    assert names[-3:] == ["itemList", "pathChecked", "pathDisabled"]
    assert len(names) == 1 + 5 + 3


def test_menu_bars_are_served_as_such(app):
    assert app.read(WINDOW, "bar", "silkClassName") == "u:QMenuBar"


ITEMS = [
    "File/New",
    "File/Save",
    "File/Locked",
    "File/Recent/x",
    "File/Send/Mail",
    "File/Send/Fax",
    "Options/Word wrap",
    "Options/Ruler",
    "Options/Plain",
    "Options/Align/Left",
    "Options/Align/Right",
    "Off/In",
    "Title only",
    "",
    "Texts/First",
    "Texts/Item 2",
    "Texts/Drag & drop",
    "Texts/Print Ctrl+P",
    "Texts/Many blanks",
    "Texts/Item 1",
    "Texts/In/Out/C",
    "Texts/x/w",
    "Texts/x/y/z",
    "Texts/Twin",
    "Texts/Twin",
    "Texts/P/Q/R",
    "Texts/Widget",
    "Texts/Last",
    "Spin/Above",
    "Spin/Widget",
    "Spin/Below",
    "1/2/3/4/5/6",
    "1/2/3/4/5/6 off",
    *(f"Many/Entry {i}" for i in range(200)),
    "Zoom/Pan/In",
]


def test_the_item_list_holds_all_paths(app):
    reply, *items = app.read(WINDOW, "bar", "itemList").split("\f")
    assert reply == "0,l:"
    assert items[: len(ITEMS)] == ITEMS


CHECKED = [
    ("Options/Word wrap", "0,b:true"),
    ("Options/Ruler", "0,b:false"),
    ("Options/Align/Left", "0,b:true"),
    ("Options/Item 3/Item 1", "0,b:false"),
    ("Options/Plain", error("Item is not checkable")),
    ("File/Save", error("Item is not checkable")),
    ("Zoom/Pan/In", error("Item is not checkable")),
    ("Zoom/In", error("Invalid item")),
    ("File", error("Item is not checkable")),
    ("File/Recent", error("Item is not checkable")),
    ("File/Recent/x", error("Item is disabled")),
    ("Off/In", error("Item is disabled")),
    ("Nope", error("Invalid item")),
    ("Nope/x", error("Invalid item")),
    ("Options/Nope", error("Invalid item")),
    ("Options/Ruler/x", error("Invalid item")),
    ("Title only/x", error("Invalid item")),
    ("", error("Invalid item")),
]


@pytest.mark.parametrize("path, reply", CHECKED, ids=[path for path, _ in CHECKED])
def test_path_checked(app, path, reply):
    assert read(app, "pathChecked", path) == reply


DISABLED = [
    ("File", "0,b:false"),
    ("Off", "0,b:true"),
    ("Off/In", "0,b:false"),
    ("File/Save", "0,b:false"),
    ("File/Locked", "0,b:true"),
    ("File/Recent", "0,b:true"),
    ("File/Recent/x", error("Recent is disabled")),
    ("File/Send/Fax", "0,b:true"),
    ("File/Item 4/Item 0", "0,b:false"),
    ("File/Item 3/x", error("Item 3 is disabled")),
    ("Texts/P/Q", "0,b:true"),
    ("Texts/P/Q/R", error("P/Q is disabled")),
    ("Texts/In/Out/C", "0,b:false"),
    ("Zoom/Pan", "0,b:false"),
    ("Zoom/Pan/In", "0,b:false"),
    ("Zoom/In", error("Could not find Zoom")),
    ("Texts/", "0,b:false"),
    ("Nope", error("Could not find Nope")),
    ("Nope/x", error("Could not find Nope")),
    ("File/Nope", error("Could not find Nope")),
    ("File/Save/x", error("Could not find x")),
    ("File/Save/100%s", error("Could not find 100%s")),
    ("Title only/x/y", error("Could not find x")),
    ("Texts/Hidden", error("Could not find Hidden")),
    ("Texts/Item 14", error("Could not find Item 14")),
    ("", error("Could not find ")),
]


@pytest.mark.parametrize("path, reply", DISABLED, ids=[path for path, _ in DISABLED])
def test_path_disabled(app, path, reply):
    assert read(app, "pathDisabled", path) == reply


@pytest.mark.parametrize("name", ["pathChecked", "pathDisabled"])
@pytest.mark.parametrize("argument", ["", "i:1", "File"])
def test_a_path_must_be_given_as_a_string(app, name, argument):
    expected = error('Type error: object "bar" of class "QMenuBar" accepts string.')
    assert app.read(WINDOW, "bar", name, argument) == expected


def test_another_name_is_unknown(app):
    assert app.read(WINDOW, "bar", "pathEnabled", "s:File") == error('Unknown property "pathEnabled".')
