"""The mouse at list views, and what can be read of them."""

import pytest

from refusals import nothing_happens
from replies import error
from viewapp import opener

TYPE_ERROR = 'Type error: object "list" of class "QListView" accepts '


@pytest.fixture
def start(launch):
    return opener(launch, "listviewhost", "Lists", "list")


@pytest.fixture
def letters(start):
    return start("letters")


# mouseAction


def test_the_mouse_goes_to_the_current_items_centre(letters):
    letters.app.do("currentCat")
    left, top, right, bottom = map(int, letters.read("currentItemRect")[4:].split(","))
    assert letters.mouse("MouseClick:LeftButton:0.1:nonsense:") == "0,QListView"
    point = f"{(left + right) // 2},{(top + bottom) // 2}"
    letters.app.wait_for(f"release listViewport {point} button 1 buttons 0 modifiers 0")
    assert letters.app.events("press") == [f"press listViewport {point} button 1 buttons 1 modifiers 0"]


@pytest.mark.shared
def test_without_a_current_item_the_mouse_goes_to_the_viewports_centre(letters):
    letters.app.do("noCurrent")
    width, height = map(int, letters.app.get("listViewport", "geometry").split(" ")[1].split("x"))
    letters.mouse("MousePress:RightButton:::ControlModifier")
    point = f"{(width - 1) // 2},{(height - 1) // 2}"
    letters.app.wait_for(f"press listViewport {point} button 2 buttons 2 modifiers 67108864")
    letters.mouse("MouseRelease:RightButton:::ControlModifier")
    letters.app.wait_for(f"release listViewport {point} button 2 buttons 0 modifiers 67108864")


def test_a_drag_moves_without_the_modifier_of_its_release(letters):
    letters.app.do("currentCat")
    letters.mouse("MousePress:LeftButton:::")
    letters.app.do("currentGnu")
    letters.app.do("rect")
    left, top, right, bottom = map(int, letters.app.journal.pop()[len("rect ") :].split(","))
    point = f"{(left + right) // 2},{(top + bottom) // 2}"
    letters.mouse("MouseRelease:LeftButton:::ShiftModifier")
    letters.app.wait_for(f"move listViewport {point} button 0 buttons 1 modifiers 0")
    letters.app.wait_for(f"release listViewport {point} button 1 buttons 0 modifiers 33554432")


def test_a_double_click_posts_one_after_the_click(letters):
    letters.app.do("currentCat")
    letters.mouse("MouseDoubleClick:LeftButton:::ShiftModifier")
    letters.app.wait_for("doubled list")
    assert [line.split(" ")[0] for line in letters.app.events("press", "release", "doubleclick")] == [
        "press",
        "release",
        "doubleclick",
    ]


def test_a_current_item_out_of_sight_is_an_error(letters):
    letters.app.do("makeTall")
    letters.app.do("currentImp")
    letters.app.do("scrollToTop")
    with nothing_happens(letters.app):
        assert letters.mouse("MouseClick:LeftButton:::") == error("Current item not visible")
        # Before the command is looked at.
        assert letters.mouse("nonsense") == error("Current item not visible")


BAD_COMMANDS = {
    "MouseClick:LeftButton::": "Invalid string value",
    "MouseClick:LeftButton::::": "Invalid string value",
    "": "Invalid string value",
    "MouseClick:MidButton:::": "Mouse button not supported",
    "MouseClick::::": "Mouse button not supported",
    "MouseClick:LeftButton:::NoModifier": "Mouse modifier not supported",
    "MouseMove:LeftButton:::": "Invalid mouse command",
    ":LeftButton:::": "Invalid mouse command",
    "x:y:::z": "Mouse button not supported",
    "x:LeftButton:::z": "Mouse modifier not supported",
}


@pytest.mark.shared
@pytest.mark.parametrize("command", BAD_COMMANDS)
def test_a_mouse_command_of_other_words_is_refused(letters, command):
    assert letters.mouse(command) == error(BAD_COMMANDS[command])
    assert letters.app.events("press") == []


@pytest.mark.shared
def test_a_mouse_command_is_a_text(letters):
    with nothing_happens(letters.app):
        letters.app.send(b"9,Lists,list,," + b"b:true".hex().encode() + b",\n")
        assert letters.app.read_line() == error(TYPE_ERROR + "string.")


# Pseudo-properties


@pytest.mark.shared
def test_the_names_of_the_pseudo_properties(letters):
    assert letters.items("pseudoPropertyNames")[5:] == [
        "rowCount",
        "itemList",
        "currentItemRect",
        "itemIsEnabled",
        "itemIsSelectable",
        "itemIsSelected",
        "itemIsCheckable",
        "itemIsChecked",
    ]


@pytest.mark.shared
def test_row_count_counts_hidden_rows(letters):
    assert letters.read("rowCount") == "0,i:10"


@pytest.mark.shared
def test_row_count_of_a_list_widget_is_its_count(start):
    view = start("widget")
    assert view.read("rowCount") == "0,i:10"
    assert view.app.get("list", "count") == "10"
    assert view.read("silkClassName") == "u:QListView"


def test_a_list_widget_whose_item_is_hidden_finds_the_next_of_the_text(start):
    view = start("widget")
    assert view.activate("s:Bee") == "0,QListView"
    assert view.state()[0] == 3


@pytest.mark.shared
def test_the_item_list_leaves_out_hidden_rows(letters):
    assert letters.items("itemList") == ["Ant", "Bee", "Cat", "Bee", "Eel", "Fox", "Gnu", "Hen", "Imp"]


@pytest.mark.shared
def test_the_current_items_rectangle_is_null_when_nothing_is_current(letters):
    letters.app.do("noCurrent")
    assert letters.read("currentItemRect") == "0,r:0,0,-1,-1"


def test_the_current_items_rectangle_is_what_the_viewport_shows_of_it(letters):
    letters.app.do("currentCat")
    letters.app.do("rect")
    assert letters.read("currentItemRect") == "0,r:" + letters.app.journal[-1][len("rect ") :]


@pytest.mark.parametrize(
    "name, falsy, truthy",
    [
        ("itemIsEnabled", "Eel", "Ant"),
        ("itemIsSelectable", "Fox", "Ant"),
        ("itemIsSelected", "Ant", "Cat"),
        ("itemIsCheckable", "Ant", "Gnu"),
        ("itemIsChecked", "Gnu", "Hen"),
    ],
)
def test_properties_of_an_item_named_by_its_text(letters, name, falsy, truthy):
    letters.app.do("currentCat")
    assert letters.read(name, "s:" + truthy) == "0,b:true"
    assert letters.read(name, "s:" + falsy) == "0,b:false"


@pytest.mark.shared
@pytest.mark.parametrize("name", ["itemIsEnabled", "itemIsChecked"])
def test_item_properties_need_an_item(letters, name):
    assert letters.read(name) == error(TYPE_ERROR + "string.")
    assert letters.read(name, "s:") == error("Missing item")
    assert letters.read(name, "s:Dog") == error("activate, QListView unknown item Dog")


@pytest.mark.shared
def test_an_unknown_name_is_no_property(letters):
    assert letters.read("itemIsBlue", "s:Ant") == error('Unknown property "itemIsBlue".')


def test_items_that_hold_other_values_than_texts_read_the_same_on_every_qt(start):
    values = start("values")
    texts = ["0.333333", "1e+10", "0.333333333333333", "caf\xe9", "cut", "", "7", "true", "?", "2024-02-29"]
    assert values.items("itemList") == texts
    assert values.read("itemIsEnabled", "s:caf\xe9") == "0,b:true"
    assert values.activate("s:0.333333") == "0,QListView"
    assert values.state()[0] == 0
