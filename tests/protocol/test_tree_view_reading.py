"""Paths of tree items, the mouse at tree views, and what can be read of them."""

import pytest

from refusals import nothing_happens
from replies import error
from viewapp import opener

INVALID_PATH = error("Invalid item path")


@pytest.fixture
def start(launch):
    return opener(launch, "treeviewhost", "Trees", "tree")


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


@pytest.mark.shared
def test_the_path_list_has_collapsed_items_and_leaves_out_hidden_ones_with_their_children(files):
    assert files.items("pathList") == PATHS


@pytest.mark.shared
def test_of_two_rows_that_fit_a_segment_the_one_under_which_the_rest_is_found_counts(files):
    assert files.read("itemPath", "s:A/B") == "u:A:/B:1"
    assert files.read("itemIsExpandable", "s:A/B") == "0,b:false"
    assert files.read("itemIsExpandable", "s:A") == "0,b:false"  # the first of the two


@pytest.mark.shared
@pytest.mark.parametrize("path, found", [("file", "12"), ("file:12", "12"), ("file:14", "14")])
def test_a_segment_may_name_the_first_columns_only(files, path, found):
    assert files.read("itemPath", "s:docs/" + path) == "u:docs:3/file:" + found


@pytest.mark.shared
@pytest.mark.parametrize(
    "path", ["docs/file:13", "docs/fil", "docs/file:12:", "DOCS", "docs/", "", "docs//file", "/"]
)
def test_a_segment_that_fits_no_row_leads_nowhere(files, path):
    assert files.read("itemPath", "s:" + path) == INVALID_PATH


@pytest.mark.shared
def test_an_empty_first_column_adds_nothing_to_the_rows_text(files):
    assert files.read("itemPath", "s:docs/x") == "u:docs:3/x"


@pytest.mark.shared
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


@pytest.mark.shared
def test_a_mouse_command_of_other_words_is_refused(files):
    with nothing_happens(files.app):
        assert files.mouse("MouseMove:LeftButton:::") == error("Invalid mouse command")
        assert files.mouse("MouseClick:LeftButton") == error("Invalid string value")
        assert files.mouse("MouseClick:NoButton:::") == error("Mouse button not supported")
        assert files.mouse("MouseClick:LeftButton:::Shift") == error("Mouse modifier not supported")


# Pseudo-properties


@pytest.mark.shared
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


@pytest.mark.shared
def test_counts_of_a_tree_view_are_the_models(files):
    assert files.read("columnCount") == "0,i:3"
    assert files.read("topLevelItemCount") == "0,i:10"


@pytest.mark.shared
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


@pytest.mark.shared
def test_item_properties_need_a_path(files):
    assert files.read("itemIsOpen") == error("Missing item path")
    assert files.read("itemIsOpen", "i:1") == error("Missing item path")  # only texts arrive as arguments
    assert files.read("itemIsOpen", "s:nothing") == INVALID_PATH
