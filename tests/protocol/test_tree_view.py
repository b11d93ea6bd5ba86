"""Tree views, as a test drives them: paths of items, the way there by keys, check states, cells, properties."""

import pytest

from viewapp import DOWN, F2, PLUS, RIGHT, SPACE, UP, View, error

TYPE_ERROR = 'Type error: object "tree" of class "QTreeView" accepts '
NO_FOCUS = "Oops, can?t set the focus to the list view"
STUCK = error("item is not selectable")
INVALID_PATH = error("Invalid item path")


@pytest.fixture
def start(launch):
    def open_tree(scenario):
        return View(launch("treeviewhost", "--scenario", scenario), "Trees", "tree")

    return open_tree


@pytest.fixture
def files(start):
    return start("files")


# Paths


PATHS = [
    "A:",
    "A:",
    "A:/B:1",
    "docs:3",
    "docs:3/file:12",
    "docs:3/file:14",
    "docs:3/x",
    "docs:3/a/b:",
    "docs:3/sub:",
    "docs:3/sub:/subsub:",
    "docs:3/sub:/subsub:/leaf:9",
    "off:",
    "label:",
    "unchecked:",
    "partial:",
    "checked:",
    "last:5",
]


def test_the_path_list_has_collapsed_items_and_leaves_out_hidden_ones_with_their_children(files):
    assert files.items("pathList") == PATHS


def test_of_two_rows_that_fit_a_segment_the_one_under_which_the_rest_is_found_counts(files):
    assert files.read("itemPath", "s:A/B") == "u:A:/B:1"
    assert files.read("itemIsExpandable", "s:A/B") == "0,b:false"
    assert files.read("itemIsExpandable", "s:A") == "0,b:false"  # the first of the two


@pytest.mark.parametrize("path, found", [("file", "12"), ("file:12", "12"), ("file:14", "14")])
def test_a_segment_may_name_the_first_columns_only(files, path, found):
    assert files.read("itemPath", "s:docs/" + path) == "u:docs:3/file:" + found


@pytest.mark.parametrize(
    "path", ["docs/file:13", "docs/fil", "docs/file:12:", "DOCS", "docs/", "", "docs//file", "/"]
)
def test_a_segment_that_fits_no_row_leads_nowhere(files, path):
    assert files.read("itemPath", "s:" + path) == INVALID_PATH


def test_an_empty_first_column_adds_nothing_to_the_rows_text(files):
    assert files.read("itemPath", "s:docs/x") == "u:docs:3/x"


def test_an_item_whose_text_has_a_slash_is_out_of_reach(files):
    assert files.read("itemPath", "s:docs/a/b") == INVALID_PATH


def test_paths_begin_below_the_trees_root(start):
    view = start("rooted")
    assert view.items("pathList")[0] == "file:12:hidden"
    assert view.activate("s:sub/subsub/leaf") == "0,QTreeView"
    assert view.read("currentPath") == "u:sub::hidden/subsub::hidden/leaf:9:hidden"
    assert view.read("topLevelItemCount") == "0,i:5"


def test_paths_follow_the_order_of_a_sorted_model(start):
    view = start("sorted")
    assert view.items("pathList")[0] == "unchecked::hidden"
    assert view.activate("s:A/B") == "0,QTreeView"
    assert view.current() == "B"


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
    files.activate("s:A")
    files.app.forget()
    files.activate("s:A")
    assert files.keys() == []


def test_a_view_without_focus_gets_it_and_one_up(files):
    files.activate("s:last")
    files.app.forget()
    files.app.do("focusOther")
    files.activate("s:checked")
    assert files.key_codes() == [UP]


@pytest.mark.parametrize("path", ["nothing", "A/C", "docs/file/x"])
def test_a_path_that_leads_nowhere_is_an_error(files, path):
    assert files.activate("s:" + path) == INVALID_PATH


def test_an_item_in_a_hidden_row_is_an_error_but_what_is_below_it_is_looked_up(files):
    assert files.activate("s:secret") == error('item "secret:" is hidden')
    assert files.read("itemIsEnabled", "s:secret") == error('item "secret:" is hidden')
    assert files.activate("s:secret/inside") == STUCK


def test_a_hidden_first_column_hides_every_item(files):
    files.app.do("hideFirstColumn")
    assert files.activate("s:9") == INVALID_PATH
    assert files.activate("s:5") == error('item "5" is hidden')


def test_a_disabled_item_is_refused_after_the_focus_is_taken(files):
    assert files.activate("s:off") == error('item "off:" is not enabled')
    assert files.key_codes() == [UP]


def test_an_item_that_is_not_selectable_is_refused(files):
    assert files.activate("s:label") == error('item "label:" is not selectable')


def test_a_tree_that_does_not_expand_gets_the_walk_stuck(files):
    files.app.do("fixedTree")
    assert files.activate("s:docs/file") == STUCK


def test_a_tree_without_selection_is_refused(files):
    files.app.do("none")
    assert files.activate("s:A") == error("list view is not selectable")
    assert files.key_codes() == [UP]


@pytest.mark.parametrize("value", ["", "b:true", "i:1"])
def test_activating_takes_a_text_or_a_list(files, value):
    assert files.activate(value) == error(TYPE_ERROR + "string, string list.")


def test_the_terminator_is_a_text_of_one_character(files):
    assert files.activate("s:A", "b:true") == error(TYPE_ERROR + "string.")
    assert files.activate("s:A", "s:ab") == error("terminating key is more than one character")
    assert files.keys() == []


def test_a_view_that_loses_the_focus_is_an_error_with_a_replacement_character(start):
    view = start("thief")
    assert view.activate("s:A") == error(NO_FOCUS)


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


def test_in_extended_selection_the_item_becomes_the_only_selected_one(files):
    files.app.do("extended")
    files.app.do("selectLast")
    files.activate("s:docs")
    assert files.selected() == ["docs", "3", "hidden"]


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
    assert start("wrapping").activate("s:docs/file") == STUCK


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
    assert start("deleting-view").activate("s:docs") == error("Internal error, proxy without widget")


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


@pytest.mark.parametrize("value", ["b:true", "s:0:x"])
def test_entering_needs_a_current_item_that_is_shown(files, value):
    files.app.do("noCurrent")
    assert files.enter(value) == error("No item is current")
    files.activate("s:last")
    files.app.do("hideCurrent")
    assert files.enter(value) == error('item "last:5" is hidden')


@pytest.mark.parametrize("value", ["", "i:1"])
def test_entering_takes_a_bool_or_a_text(files, value):
    assert files.enter(value) == error(TYPE_ERROR + "bool string.")


def test_a_text_is_entered_in_the_cell_of_the_column_it_begins_with(files):
    files.activate("s:docs/file:12")
    files.app.forget()
    assert files.enter("s:1:a:b") == "0,QTreeView"
    files.app.wait_for("data tree 0,1 'a:b' check 0")
    assert files.key_codes()[0] == F2
    assert files.read("itemPath", "s:docs/file") == "u:docs:3/file:a:b"


def test_a_column_without_a_text_empties_the_cell(files):
    files.activate("s:docs/file:12")
    assert files.enter("s:0") == "0,QTreeView"
    files.app.wait_for("data tree 0,0 '' check 0")


@pytest.mark.parametrize("value", ["", "x:1", ":1"])
def test_a_text_without_column_number_is_a_syntax_error(files, value):
    files.activate("s:last")
    assert files.enter("s:" + value) == error('Syntax Error, format "%d:%s" expected')


@pytest.mark.parametrize("column", [3, 10])
def test_a_column_beyond_the_last_is_out_of_range(files, column):
    files.activate("s:last")
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
    assert files.enter(value) == error("Internal error")


# mouseAction


def test_the_mouse_goes_to_the_current_items_centre(files):
    files.activate("s:last")
    assert files.mouse("MouseDoubleClick:LeftButton:::") == "0,QTreeView"
    files.app.wait_for("doubled tree")
    assert files.current() == "last"


def test_a_current_item_out_of_sight_sends_the_mouse_to_the_viewports_corner(files):
    files.app.do("expandAll")
    files.activate("s:A")
    files.app.do("makeSmall")
    files.app.do("scrollToBottom")
    assert files.mouse("MousePress:RightButton:::") == "0,QTreeView"
    files.app.wait_for("press treeViewport 0,0 button 2 buttons 2 modifiers 0")
    files.mouse("MouseRelease:RightButton:::")


def test_a_mouse_command_of_other_words_is_refused(files):
    assert files.mouse("MouseMove:LeftButton:::") == error("Invalid mouse command")
    assert files.mouse("MouseClick:LeftButton") == error("Invalid string value")
    assert files.mouse("MouseClick:NoButton:::") == error("Mouse button not supported")
    assert files.mouse("MouseClick:LeftButton:::Shift") == error("Mouse modifier not supported")


# Pseudo-properties


def test_the_names_of_the_pseudo_properties_have_one_of_them_twice(files):
    assert files.items("pseudoPropertyNames")[5:] == [
        "columnTextList",
        "currentPath",
        "columnCount",
        "topLevelItemCount",
        "pathList",
        "itemPath",
        "itemIsEnabled",
        "itemIsSelectable",
        "itemIsSelected",
        "itemIsCheckable",
        "itemIsChecked",
        "itemIsEnabled",
        "itemIsExpandable",
        "itemIsOpen",
        "itemTextList",
    ]


def test_column_texts_come_in_visual_order_without_hidden_columns(files):
    assert files.items("columnTextList") == ["Name", "Size"]
    files.app.do("swapColumns")
    assert files.items("columnTextList") == ["Size", "Name"]


def test_counts_of_a_tree_view_are_the_models(files):
    assert files.read("columnCount") == "0,i:3"
    assert files.read("topLevelItemCount") == "0,i:10"


def test_counts_of_a_tree_widget_are_its_own(start):
    view = start("widget")
    assert view.read("columnCount") == "0,i:2"
    assert view.read("topLevelItemCount") == "0,i:3"
    assert view.items("columnTextList") == ["One", "Two"]
    assert view.read("silkClassName") == "u:QTreeView"


def test_a_row_whose_first_cell_spans_all_columns_keeps_its_other_texts(start):
    view = start("widget")
    assert view.items("pathList")[2:4] == ["top1:", "top1:/child:1"]
    assert view.activate("s:top1/child") == "0,QTreeView"
    assert view.current() == "child"


def test_the_current_path_is_empty_without_a_current_item(files):
    files.app.do("noCurrent")
    assert files.read("currentPath") == "u:"
    files.activate("s:docs/file:14")
    assert files.read("currentPath") == "u:docs:3/file:14"


def test_item_texts_are_those_of_the_shown_columns_in_column_order(files):
    files.app.do("swapColumns")
    assert files.items("itemTextList", "s:docs/file:12") == ["file", "12"]
    assert files.items("itemTextList", "s:docs/x") == ["", "x"]


@pytest.mark.parametrize(
    "name, falsy, truthy",
    [
        ("itemIsEnabled", "off", "A"),
        ("itemIsSelectable", "label", "A"),
        ("itemIsSelected", "A", "docs"),
        ("itemIsCheckable", "A", "partial"),
        ("itemIsChecked", "partial", "checked"),
        ("itemIsExpandable", "A", "docs"),
    ],
)
def test_properties_of_an_item_named_by_its_path(files, name, falsy, truthy):
    files.activate("s:docs")
    assert files.read(name, "s:" + truthy) == "0,b:true"
    assert files.read(name, "s:" + falsy) == "0,b:false"


def test_an_item_is_open_when_it_is_expanded(files):
    assert files.read("itemIsOpen", "s:docs") == "0,b:false"
    files.app.do("expandAll")
    assert files.read("itemIsOpen", "s:docs") == "0,b:true"


def test_no_item_is_expandable_in_a_tree_that_does_not_expand(files):
    files.app.do("fixedTree")
    assert files.read("itemIsExpandable", "s:docs") == "0,b:false"


def test_item_properties_need_a_path(files):
    assert files.read("itemIsOpen") == error("Missing item path")
    assert files.read("itemIsOpen", "i:1") == error("Missing item path")  # only texts arrive as arguments
    assert files.read("itemIsOpen", "s:nothing") == INVALID_PATH
