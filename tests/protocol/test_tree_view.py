"""Tree views, as a test drives them with keys: the way to an item, check states, cells."""

import pytest

from refusals import nothing_happens
from replies import error
from viewapp import BACKSPACE, DOWN, F2, PLUS, RETURN, RIGHT, SPACE, UP, opener

TYPE_ERROR = 'Type error: object "tree" of class "QTreeView" accepts '
NO_FOCUS = "Oops, can?t set the focus to the list view"
STUCK = error("item is not selectable")
INVALID_PATH = error("Invalid item path")


@pytest.fixture
def start(launch):
    return opener(launch, "treeviewhost", "Trees", "tree")


@pytest.fixture
def files(start):
    return start("files")


# activate


def test_activating_a_path_expands_its_parents_and_selects_the_item(files):
    assert files.activate("s:docs/sub/subsub/leaf") == "0,QTreeView"
    assert files.current() == "leaf"
    assert "leaf" in files.selected()
    assert len(files.app.events("expanded")) == 3


def test_the_way_to_an_item_is_up_to_the_top_then_down_and_into_its_parents(files):
    files.activate("s:docs")
    files.app.forget()
    files.activate("s:docs/file:12")
    keys = files.key_codes()
    assert keys[:5] == [UP, UP, UP, DOWN, DOWN]
    assert keys[5:7] == [PLUS, RIGHT]
    assert set(keys[7:]) <= {DOWN}
    assert all(text == "" and modifiers == 0 for _, text, modifiers in files.keys())
    assert files.current() == "file"


def test_an_item_that_is_current_and_selected_needs_no_key(files):
    files.activate("s:last")
    files.app.forget()
    assert files.activate("s:last") == "0,QTreeView"
    assert files.keys() == []


def test_a_collapsed_parent_that_is_current_is_walked_to_again(files):
    files.activate("s:docs")
    files.app.forget()
    files.activate("s:docs")
    assert files.key_codes() == [UP, UP, UP, DOWN, DOWN]
    assert files.current() == "docs"


def test_the_terminator_is_typed_at_the_item(files):
    assert files.activate("s:last", "s:\r") == "0,QTreeView"
    files.app.wait_for("keypress tree 0 '\r' modifiers 0")
    files.activate("s:last", "s:q")
    files.app.wait_for("keypress tree 81 'q' modifiers 0")


def test_an_empty_terminator_types_nothing(files):
    files.activate("s:last")
    files.app.forget()
    assert files.activate("s:last", "s:") == "0,QTreeView"
    assert files.keys() == []


def test_a_view_that_has_the_focus_is_not_sent_the_first_up(files):
    files.activate("s:last")
    assert files.app.get("tree", "focus") == "true"
    files.app.forget()
    # An Up would have moved the current item, and a walk back to it would have followed.
    assert files.activate("s:last") == "0,QTreeView"
    assert files.keys() == []
    assert files.current() == "last"
    assert files.selected() == ["last", "5", "hidden"]


def test_a_view_without_focus_gets_it_and_one_up(files):
    files.activate("s:last")
    files.app.forget()
    files.app.do("focusOther")
    files.activate("s:checked")
    assert files.key_codes() == [UP]


@pytest.mark.parametrize("path", ["nothing", "A/C", "docs/file/x"])
def test_a_path_that_leads_nowhere_is_an_error(files, path):
    assert files.activate("s:" + path) == INVALID_PATH
    assert files.key_codes() == [UP]  # the focus is taken first
    assert files.app.events("expanded", "data") == []


def test_an_item_in_a_hidden_row_is_an_error_but_what_is_below_it_is_looked_up(files):
    assert files.activate("s:secret") == error('item "secret:" is hidden')
    assert files.read("itemIsEnabled", "s:secret") == error('item "secret:" is hidden')
    assert files.key_codes() == [UP]
    assert files.activate("s:secret/inside") == STUCK
    assert files.current() == "last"


def test_a_hidden_first_column_hides_every_item(files):
    files.app.do("hideFirstColumn")
    assert files.activate("s:9") == INVALID_PATH
    assert files.activate("s:5") == error('item "5" is hidden')
    assert files.key_codes() == [UP]


def test_a_disabled_item_is_refused_after_the_focus_is_taken(files):
    assert files.activate("s:off") == error('item "off:" is not enabled')
    assert files.key_codes() == [UP]


def test_an_item_that_is_not_selectable_is_refused(files):
    assert files.activate("s:label") == error('item "label:" is not selectable')
    assert files.key_codes() == [UP]


def test_a_tree_that_does_not_expand_gets_the_walk_stuck(files):
    files.app.do("fixedTree")
    assert files.activate("s:docs/file") == STUCK
    assert files.app.events("expanded") == []
    assert files.current() == "last"


def test_a_tree_without_selection_is_refused(files):
    files.app.do("none")
    assert files.activate("s:A") == error("list view is not selectable")
    assert files.key_codes() == [UP]


@pytest.mark.shared
@pytest.mark.parametrize("value", ["", "b:true", "i:1"])
def test_activating_takes_a_text_or_a_list(files, value):
    with nothing_happens(files.app):
        assert files.activate(value) == error(TYPE_ERROR + "string, string list.")


@pytest.mark.shared
def test_the_terminator_is_a_text_of_one_character(files):
    assert files.activate("s:A", "b:true") == error(TYPE_ERROR + "string.")
    assert files.activate("s:A", "s:ab") == error("terminating key is more than one character")
    assert files.keys() == []


def test_a_view_that_loses_the_focus_is_an_error_with_a_replacement_character(start):
    view = start("thief")
    assert view.activate("s:A") == error(NO_FOCUS)
    assert view.app.get("other", "focus") == "true"
    assert view.app.events("expanded", "selection", "data") == []


def test_in_multi_selection_the_selection_is_cleared_by_keys_and_the_item_only_made_current(start):
    view = start("single-column")
    view.app.do("multi")
    view.app.do("selectTwoAndFour")
    assert view.selected() == ["two", "four"]
    assert view.activate("s:three") == "0,QTreeView"
    assert view.current() == "three"
    assert view.selected() == []
    assert view.key_codes().count(SPACE) == 2


def test_clearing_a_multi_selection_of_whole_rows_leaves_no_row_selected(files):
    files.app.do("multi")
    files.app.do("selectLast")
    assert files.selected() == ["last", "5", "hidden"]
    files.activate("s:A")
    assert files.selected() == []


@pytest.mark.parametrize("mode", ["extended", "contiguous"])
def test_in_these_selection_modes_the_item_becomes_the_only_selected_one_without_space(files, mode):
    files.app.do(mode)
    files.app.do("selectLast")
    assert files.activate("s:docs") == "0,QTreeView"
    assert files.selected() == ["docs", "3", "hidden"]
    assert SPACE not in files.key_codes()


def test_a_tree_of_100000_items_is_listed_and_searched(start):
    view = start("large")
    assert len(view.items("pathList")) == 300 * 334
    assert view.read("itemPath", "s:p299/c332") == "u:p299:/c332:x"
    assert view.read("itemPath", "s:p299/c333") == INVALID_PATH
    assert view.activate("s:p2/c3") == "0,QTreeView"
    assert view.read("currentPath") == "u:p2:/c3:x"


def test_children_of_a_lazy_model_are_not_there_before_it_loads_them(start):
    view = start("lazy")
    assert view.activate("s:folder/child") == INVALID_PATH
    view.app.do("expandAll")
    assert view.activate("s:folder/child") == "0,QTreeView"
    assert view.current() == "child"


@pytest.mark.shared
def test_without_a_model_no_path_leads_anywhere(start):
    view = start("no-model")
    assert view.activate("s:a") == INVALID_PATH
    assert view.enter("s:0:a") == error("No item is current")
    assert view.items("pathList") == []
    assert view.items("columnTextList") == []
    assert view.read("currentPath") == "u:"
    assert view.read("topLevelItemCount") == "0,i:0"
    assert view.read("columnCount") == "0,i:0"


def test_a_current_item_that_the_application_moves_in_circles_ends_the_walk(start):
    view = start("wrapping")
    assert view.activate("s:docs/file") == STUCK
    assert UP in view.key_codes()
    assert view.current() != "file"
    assert view.data() == []


def test_the_walk_follows_an_item_while_rows_are_inserted(start):
    view = start("inserting")
    assert view.activate("s:docs/sub/subsub") == "0,QTreeView"
    assert view.current() == "subsub"


@pytest.mark.parametrize(
    "scenario, rows", [("removing", 9), ("resetting", 0), ("deleting-model", 0), ("switching", 3)]
)
def test_an_item_that_goes_away_during_the_walk_is_an_error(start, scenario, rows):
    view = start(scenario)
    assert view.activate("s:docs/sub/subsub") == STUCK
    assert DOWN in view.key_codes()
    assert view.read("topLevelItemCount") == f"0,i:{rows}"


def test_a_view_that_dies_during_the_walk_is_an_error(start):
    view = start("deleting-view")
    assert view.activate("s:docs") == error("Internal error, proxy without widget")
    assert view.app.get("tree", "visible") == "<no object tree>"


# enter


@pytest.mark.parametrize(
    "item, value, presses, state",
    [
        ("checked", "false", 1, 0),
        ("unchecked", "true", 1, 2),
        ("partial", "true", 1, 2),
        ("partial", "false", 2, 0),
        ("checked", "true", 0, 2),
        ("unchecked", "false", 0, 0),
    ],
)
def test_a_check_state_is_entered_with_as_many_spaces_as_it_takes(files, item, value, presses, state):
    files.activate("s:" + item)
    files.app.forget()
    assert files.enter("b:" + value) == "0,QTreeView"
    assert files.key_codes() == [SPACE] * presses
    assert (
        files.app.events("data") == [] if presses == 0 else files.app.events("data")[-1].endswith(f" {state}")
    )
    assert files.read("itemIsChecked", "s:" + item) == ("0,b:true" if state == 2 else "0,b:false")


def test_a_check_state_is_entered_at_the_item_that_was_current_before_the_focus_came(files):
    files.activate("s:checked")
    files.app.do("focusOther")
    files.enter("b:false")
    assert files.current() == "checked"
    assert files.read("itemIsChecked", "s:checked") == "0,b:false"


def test_a_bool_for_an_item_without_check_box_is_refused(files):
    files.activate("s:last")
    files.app.forget()
    assert files.enter("b:true") == error("Current item is not checkable")
    assert files.keys() == []


@pytest.mark.shared
@pytest.mark.parametrize("value", ["b:true", "s:0:x"])
def test_entering_needs_a_current_item(files, value):
    files.app.do("noCurrent")
    with nothing_happens(files.app):
        assert files.enter(value) == error("No item is current")


@pytest.mark.parametrize("hide, path", [("hideCurrent", "last:5"), ("hideFirstColumn", "5")])
@pytest.mark.parametrize("value", ["b:true", "s:0:x"])
def test_entering_needs_a_current_item_that_is_shown(files, hide, path, value):
    files.activate("s:last")
    files.app.do(hide)
    files.app.forget()
    assert files.enter(value) == error(f'item "{path}" is hidden')
    assert files.keys() == []


@pytest.mark.shared
@pytest.mark.parametrize("value", ["", "i:1"])
def test_entering_takes_a_bool_or_a_text(files, value):
    with nothing_happens(files.app):
        assert files.enter(value) == error(TYPE_ERROR + "bool string.")


def test_a_text_is_entered_in_the_cell_of_the_column_it_begins_with(files):
    files.activate("s:docs/file:12")
    files.app.forget()
    assert files.enter("s:1:a:b") == "0,QTreeView"
    files.app.wait_for("data tree 0,1 'a:b' check 0")
    assert files.key_codes()[0] == F2
    assert files.read("itemPath", "s:docs/file") == "u:docs:3/file:a:b"


def test_a_text_is_typed_over_the_old_one_and_the_clipboard_left_alone(files):
    files.app.do("paste")
    files.activate("s:docs/file:12")
    files.enter("s:1:aB")
    files.app.wait_for("data tree 0,1 'aB' check 0")
    assert files.keys("Editor") == [
        (BACKSPACE, "", 0),
        (ord("A"), "a", 0),
        (ord("B"), "B", 0),
        (RETURN, "", 0),
    ]
    files.app.do("paste")
    before, after = files.app.events("clipboard")
    assert before == after != "clipboard aB"


@pytest.mark.parametrize("selected", ["rows", "cells"])
@pytest.mark.parametrize("meanwhile", ["focusOther", "collapseAll"])
def test_the_way_back_to_a_cell_stays_in_its_column(files, selected, meanwhile):
    if selected == "cells":
        files.app.do("cells")
    files.activate("s:docs/file:12")
    files.enter("s:1:first")
    files.app.wait_for("data tree 0,1 'first' check 0")
    files.app.do(meanwhile)
    files.app.do("focusOther")
    assert files.enter("s:1:second") == "0,QTreeView"
    files.app.wait_for("data tree 0,1 'second' check 0")


def test_a_column_without_a_text_empties_the_cell(files):
    files.activate("s:docs/file:12")
    assert files.enter("s:0") == "0,QTreeView"
    files.app.wait_for("data tree 0,0 '' check 0")


@pytest.mark.parametrize("value", ["", "x:1", ":1"])
def test_a_text_without_column_number_is_a_syntax_error(files, value):
    files.activate("s:last")
    with nothing_happens(files.app):
        assert files.enter("s:" + value) == error('Syntax Error, format "%d:%s" expected')


@pytest.mark.parametrize("column", [3, 10])
def test_a_column_beyond_the_last_is_out_of_range(files, column):
    files.activate("s:last")
    with nothing_happens(files.app):
        assert files.enter(f"s:{column}:x") == error(f"Invalid column {column} is out of range [0, 2]")


@pytest.mark.parametrize("column", [1, -1])
def test_a_cell_that_is_not_editable_is_refused(files, column):
    files.activate("s:last")
    assert files.enter(f"s:{column}:x") == error(f"Item at column {column} is not editable")
    assert files.data() == []


@pytest.mark.parametrize("item, value", [("checked", "b:false"), ("last", "s:0:x")])
def test_a_current_item_that_goes_with_its_model_as_the_view_is_focused_is_an_error(files, item, value):
    files.activate("s:" + item)
    files.app.do("focusOther")
    files.app.do("withoutModelOnFocus")
    files.app.forget()
    assert files.enter(value) == error("Internal error")
    assert files.data() == []
