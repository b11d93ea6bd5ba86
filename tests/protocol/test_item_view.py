"""Any item view, by its model and its selection model: index paths, selection commands, header addresses."""

import pytest

from refusals import nothing_happens
from replies import error
from viewapp import View


@pytest.fixture
def app(launch):
    return launch("itemviewhost")


@pytest.fixture
def view(app):
    """A view of a class of the application's own."""
    return View(app, "Views", "own")


def generic(app, name):
    """A view of one of Qt's classes, served as any item view."""
    return View(app, "Views", name, "QAbstractItemView")


# Paths


PATHS = {
    "1": "r1c1",
    "2;3": "r2c3",
    "2;3/1": "deep1c1",
    "2;3/2;2": "deep2c2",
    "four": "r4c1",
    "four;mid": "r4c2",
    "same;right/one": "deep1c1",
    "1;left/one;3": "childc3",
}


@pytest.mark.shared
@pytest.mark.parametrize("path", PATHS)
def test_a_path_leads_from_the_top_of_the_model_to_an_item(view, path):
    assert view.read("itemData", "s:" + path) == "u:" + PATHS[path]


@pytest.mark.shared
def test_a_header_text_that_occurs_twice_names_the_first(view):
    assert view.read("itemData", "s:same") == "u:r2c1"


def test_an_empty_step_is_looked_up_as_an_empty_header_text(view):
    view.app.do("deepNamelessRow")
    assert view.read("itemData", "s:2;3//1") == "u:deepestc1"


PATH_ERRORS = {
    "1;2;3": "Syntax error in path",
    "1/1;2;3": "Syntax error in path",
    "nothing": "Invalid row: nothing",
    "1;nothing": "Invalid column: nothing",
    "One": "Invalid row: One",
    "1//1": "Invalid row: ",
    "1/": "Invalid row: ",
    "1;": "Invalid column: ",
    "0": "Row 0 is out of range (0..4)",
    "-1": "Row -1 is out of range (0..4)",
    "5": "Row 5 is out of range (0..4)",
    "1;0": "Column 0 is out of range (0..3)",
    "1;4": "Column 4 is out of range (0..3)",
    "9;9": "Row 9 is out of range (0..4)",
    "2/1": "Row 1 is out of range (0..0)",
    "four/same": "Invalid row: same",
    "9;nothing": "Invalid column: nothing",
    "100%s": "Invalid row: 100%s",
}


@pytest.mark.shared
@pytest.mark.parametrize("path", PATH_ERRORS)
def test_a_path_that_leads_nowhere_is_an_error_and_nothing_is_scrolled(view, path):
    assert view.read("rowCount", "s:" + path) == error(PATH_ERRORS[path])
    assert view.activate("s:" + path, "s:Select") == error(PATH_ERRORS[path])
    assert view.app.events("scrollTo", "selection") == []


@pytest.mark.shared
def test_a_model_that_has_no_index_for_a_cell_is_an_error(app):
    with nothing_happens(app):
        assert View(app, "Views", "promise").read("rowCount", "s:1") == error("Path not found")


@pytest.mark.shared
def test_a_view_without_model_is_an_error(app):
    modelless = View(app, "Views", "modelless")
    with nothing_happens(app):
        assert modelless.read("rowCount") == error("Invalid Widget")
        assert modelless.activate("s:1", "s:Select") == error("Invalid Widget")


# activate


def test_select_selects_the_item_after_scrolling_to_it_and_leaves_the_current_item(view):
    before = view.cell()
    assert view.activate("s:2;3", "s:Select") == "0,QAbstractItemView"
    assert view.selected() == ["r2c3"]
    assert view.cell() == before
    assert view.app.events("scrollTo", "selection") == ["scrollTo 1,2 r2c3 hint 0", "selection own r2c3"]


def test_selection_commands_add_remove_and_replace(view):
    view.activate("s:1", "s:Select")
    view.activate("s:2", "s:Select")
    assert view.selected() == ["r1c1", "r2c1"]
    view.activate("s:1", "s:Deselect")
    assert view.selected() == ["r2c1"]
    view.activate("s:1", "s:Toggle")
    view.activate("s:2", "s:Toggle")
    assert view.selected() == ["r1c1"]
    view.activate("s:3", "s:ClearAndSelect")
    assert view.selected() == ["r3c1"]
    view.activate("s:1", "s:Clear")
    assert view.selected() == []


@pytest.mark.parametrize("command", ["s:ScrollTo", "s:select", "", "s:"])
def test_other_commands_only_scroll(view, command):
    view.app.do("selectItems")
    view.activate("s:1", "s:Select")
    assert view.activate("s:2", command) == "0,QAbstractItemView"
    assert view.selected() == ["r1c1"]
    assert view.app.events("scrollTo")[-1] == "scrollTo 1,0 r2c1 hint 0"


@pytest.mark.parametrize(
    "behavior, selected",
    [
        ("selectRows", ["r2c1", "r2c2", "r2c3"]),
        ("selectColumns", ["r1c2", "r2c2", "r3c2", "r4c2"]),
        ("selectItems", ["r2c2"]),
    ],
)
def test_rows_and_columns_are_selected_as_the_view_selects_them(view, behavior, selected):
    view.app.do(behavior)
    view.activate("s:2;2", "s:Select")
    assert view.selected() == selected


def test_the_empty_path_is_the_root_which_selects_nothing(view):
    view.activate("s:1", "s:Select")
    assert view.activate("s:", "s:Select") == "0,QAbstractItemView"
    assert view.activate("", "s:Select") == "0,QAbstractItemView"
    assert view.selected() == ["r1c1"]
    assert view.app.events("scrollTo")[-1] == "scrollTo -1,-1  hint 0"


def test_a_path_may_be_an_int(view):
    view.activate("i:3", "s:Select")
    assert view.selected() == ["r3c1"]


def test_no_key_and_no_mouse_event_is_sent(view):
    with nothing_happens(view.app, but=("scrollTo", "selection")):
        view.activate("s:1", "s:Select")
    assert view.selected() == ["r1c1"]


def test_a_model_that_dies_while_the_view_scrolls_is_an_error(app):
    dying = View(app, "Views", "dying")
    assert dying.activate("s:1", "s:Select") == error("Invalid Widget")
    assert dying.read("rowCount") == error("Invalid Widget")
    assert app.events("selection") == []


def test_a_column_view_is_served_and_selects_deep_items(app):
    columns = View(app, "Views", "columns")
    assert columns.activate("s:1/1", "s:ClearAndSelect") == "0,QAbstractItemView"
    assert columns.selected() == ["childc1"]
    assert columns.read("silkClassName") == "u:QAbstractItemView"


@pytest.mark.shared
def test_entering_is_refused_and_the_mouse_is_that_of_any_widget(view):
    assert view.enter("s:x") == error('"enter" is not implemented for widget of class "QAbstractItemView"')
    assert view.mouse("MouseClick:MidButton:0.5:0.5:NoModifier") == "0,QAbstractItemView"
    view.app.wait_for("press ownViewport 100,50 button 4 buttons 4 modifiers 0")


# Pseudo-properties


@pytest.mark.shared
def test_the_names_of_the_pseudo_properties(view):
    assert view.items("pseudoPropertyNames")[5:] == [
        "columnCount",
        "rowCount",
        "itemIsSelected",
        "itemIsExpanded",
        "itemData",
        "itemPosition",
    ]


@pytest.mark.shared
@pytest.mark.parametrize("argument", ["", "s:", "s:V:2", "s:h:1"])
def test_counts_of_the_root_and_of_header_addresses_are_those_of_the_top_level(view, argument):
    assert view.read("rowCount", argument) == "0,i:4"
    assert view.read("columnCount", argument) == "0,i:3"


@pytest.mark.shared
def test_counts_of_an_item_are_those_below_it(view):
    assert view.read("rowCount", "s:2;3") == "0,i:2"
    assert view.read("columnCount", "s:2;3") == "0,i:3"
    assert view.read("rowCount", "s:2;1") == "0,i:0"


def test_an_item_is_selected_when_the_selection_model_says_so(view):
    view.activate("s:2;3/1", "s:Select")
    assert view.read("itemIsSelected", "s:2;3/1") == "0,b:true"
    assert view.read("itemIsSelected", "s:2;3") == "0,b:false"
    assert view.read("itemIsSelected", "s:H:1") == "0,b:false"
    assert view.read("itemIsSelected") == "0,b:false"


def test_only_trees_have_expanded_items(app, view):
    tree = generic(app, "tree")
    assert tree.read("itemIsExpanded", "s:1") == "0,b:false"
    app.do("expandFirst")
    assert tree.read("itemIsExpanded", "s:1") == "0,b:true"
    assert tree.read("itemIsExpanded") == "0,b:false"
    assert view.read("itemIsExpanded", "s:1") == error("Not a QTreeView")


@pytest.mark.shared
@pytest.mark.parametrize(
    "address, text",
    [
        ("V:1", "one"),
        ("V:2", "same"),
        ("V:4", "four"),
        ("V:four", "four"),
        ("H:2", "mid"),
        ("h:2", "mid"),
        ("v:2", "mid"),
        ("v:right", "right"),
    ],
)
def test_a_small_v_addresses_a_column_and_a_capital_one_a_row(view, address, text):
    assert view.read("itemData", "s:" + address) == "u:" + text


@pytest.mark.shared
@pytest.mark.parametrize(
    "address, message",
    [
        ("V:0", "Invalid row: 0"),
        ("V:5", "Invalid row: 5"),
        ("V:mid", "Invalid row: mid"),
        ("H:0", "Invalid column: 0"),
        ("v:4", "Invalid column: 4"),
        ("h:one", "Invalid column: one"),
        ("X:1", "Invalid row: X:1"),
        ("V:", "Invalid row: V:"),
    ],
)
def test_a_header_section_that_is_not_there_is_an_error(view, address, message):
    assert view.read("itemData", "s:" + address) == error(message)


@pytest.mark.shared
def test_the_root_has_no_data(view):
    assert view.read("itemData") == error('Unknown property "itemData".')


@pytest.mark.shared
def test_the_position_of_an_item_is_its_centre_relative_to_the_view(view):
    assert view.read("itemPosition", "s:1") == "u:0.4975;0.495"
    assert view.read("itemPosition", "s:2;2") == "u:0.4975;0.595"


@pytest.mark.shared
def test_an_item_without_rectangle_has_no_position(view):
    assert view.read("itemPosition", "s:2;3/1") == "u:"
    assert view.read("itemPosition") == "u:"


@pytest.mark.shared
def test_the_position_of_a_cell_counts_the_headers_in(app):
    app.do("cellCentre")
    assert generic(app, "table").read("itemPosition", "s:2;2") == "u:" + app.journal.pop()[len("centre ") :]


@pytest.mark.shared
def test_the_position_of_a_column_header_is_in_the_headers_coordinates(app):
    app.do("headerCentre")
    centre = app.journal.pop()[len("centre ") :]
    assert generic(app, "tree").read("itemPosition", "s:H:2") == "u:" + centre
    assert generic(app, "table").read("itemPosition", "s:H:2") != "u:"


@pytest.mark.shared
def test_a_row_header_has_no_position(app):
    assert generic(app, "table").read("itemPosition", "s:V:2") == "u:"


@pytest.mark.shared
def test_a_view_without_headers_is_an_error(app, view):
    assert view.read("itemPosition", "s:H:1") == error("View does not have a horizontal header.")
    assert view.read("itemPosition", "s:V:1") == error("View does not have a vertical header.")
    tree = generic(app, "tree")
    assert tree.read("itemPosition", "s:V:1") == error("View does not have a vertical header.")


@pytest.mark.shared
def test_an_unknown_name_is_no_property(view):
    assert view.read("itemFlavour", "s:1") == error('Unknown property "itemFlavour".')
