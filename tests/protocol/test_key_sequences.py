"""Key sequences where a view or a menu was not made for them: what docs/widgets says they do to the application."""

import re

import pytest

from hostapp import QT
from menus import input_state
from replies import error
from viewapp import View

ENTERED = {"list": "s:new", "table": "s:new", "tree": "s:0:new"}
"""A text for the first column of the current item, as the view of the scenario takes it."""
UNCHANGED = "R1C1,R1C2,R1C3|R2C1,R2C2,R2C3|R3C1,R3C2,R3C3|R4C1,R4C2,R4C3"


@pytest.fixture
def start(launch):
    """Starts a scenario; a view is answered with its cell R2C1 current."""

    def start_scenario(scenario, *arguments):
        app = launch("keysequencehost", "--scenario", scenario, *arguments)
        if scenario in ("dialog", "corner"):
            app.forget()
            return app
        app.do("currentR2C1")
        app.forget()
        return View(app, "Sequences", "view")

    return start_scenario


def texts(view):
    """The texts of the model as the application has them: rows joined by "|", cells by ","."""
    view.app.do("texts")
    return view.app.journal.pop()[len("texts ") :]


def choose(app, path, option=""):
    return app.activate("Sequences", "bar", "s:" + path, option)


# enter, in a view whose edit triggers open no editor


@pytest.mark.parametrize("scenario", ENTERED)
def test_without_edit_triggers_a_text_changes_nothing_and_return_accepts_the_dialog(start, scenario):
    view = start(scenario)
    view.app.do("triggersNone")
    assert view.enter(ENTERED[scenario]).startswith("0,")
    view.app.wait_for("accepted window")
    assert view.app.events("activated") == ["activated view"]
    assert texts(view) == UNCHANGED
    assert view.app.get("window", "visible") == "false"


@pytest.mark.parametrize("scenario, left_at", [("list", "R1C1"), ("table", "R2C1")])
def test_without_edit_triggers_the_keys_select_other_items_and_run_the_shortcut_of_pasting(
    start, scenario, left_at
):
    view = start(scenario)
    view.app.do("triggersDoubleClick")
    view.enter("s:new")
    view.app.wait_for("accepted window")
    assert view.app.events("triggered") == ["triggered pasteAction"]
    assert len(view.app.events("current")) >= 2
    assert view.current() == left_at


def test_in_a_tree_without_edit_triggers_the_text_searches_for_an_item(start):
    view = start("tree")
    view.app.do("triggersNone")
    view.enter("s:0:R4C1")
    view.app.wait_for("accepted window")
    assert view.current() == "R4C1"
    assert texts(view) == UNCHANGED


def test_a_tree_that_edits_at_any_key_takes_a_text_but_not_an_empty_one(start):
    view = start("tree")
    view.app.do("triggersAnyKey")
    view.enter("s:0:new")
    view.app.wait_for("data view 1,0 'new' check 0")
    assert view.app.get("window", "visible") == "true"
    view.enter("s:0:")
    view.app.wait_for("accepted window")
    assert view.current() == "new"


def test_a_tree_that_edits_each_new_current_item_takes_a_text(start):
    view = start("tree")
    view.app.do("triggersCurrentChanged")
    view.enter("s:0:new")
    view.app.wait_for("data view 1,0 'new' check 0")
    assert view.app.get("window", "visible") == "true"


WITHOUT_AN_EDITOR = {
    "a list that edits at any key but F2": ("list", ["triggersAnyKey"], "s:new"),
    "a table that edits at any key but F2": ("table", ["triggersAnyKey"], "s:new"),
    "a tree that edits each new current item, and has this one already": (
        "tree",
        ["currentR4C1", "triggersCurrentChanged"],
        "s:0:new",
    ),
}


@pytest.mark.parametrize("scenario, steps, value", WITHOUT_AN_EDITOR.values(), ids=WITHOUT_AN_EDITOR.keys())
def test_a_text_for_a_view_that_opens_no_editor_changes_nothing(start, scenario, steps, value):
    view = start(scenario)
    for step in steps:
        view.app.do(step)
    view.enter(value)
    view.app.wait_for("accepted window")
    assert texts(view) == UNCHANGED


def test_a_table_that_edits_each_new_current_cell_but_not_at_f2_opens_the_editor_of_another_cell(start):
    view = start("table")
    view.app.do("triggersCurrentChanged")
    assert view.enter("s:new") == error("enter, QLineEdit validate error")
    assert view.app.read_line() == ""  # the message ends in a line feed of its own
    assert view.current() == "R2C3"
    assert texts(view) == UNCHANGED


def test_a_list_that_edits_each_new_current_item_loses_the_focus_to_the_editor(start):
    view = start("list")
    view.app.do("triggersCurrentChangedAndF2")
    assert view.enter("s:new") == error("Oops, can not set the focus to the list view")
    assert view.current() == "R1C1"
    assert texts(view) == UNCHANGED


@pytest.mark.parametrize("scenario", ENTERED)
def test_an_application_that_opens_the_editor_at_f2_by_itself_needs_no_edit_triggers(start, scenario):
    view = start(scenario)
    view.app.do("triggersNone")
    view.app.do("editByItself")
    view.enter(ENTERED[scenario])
    view.app.wait_for("data view 1,0 'new' check 0")
    assert view.app.get("window", "visible") == "true"


@pytest.mark.parametrize("scenario", ENTERED)
def test_an_editor_that_is_always_open_takes_the_text_without_edit_triggers(start, scenario):
    view = start(scenario)
    view.app.do("triggersNone")
    view.app.do("persistentEditor")
    view.enter(ENTERED[scenario])
    view.app.wait_for("data view 1,0 'new' check 0")
    view.app.wait_for(
        "accepted window"
    )  # the editor stays open, so Return goes on to the view and the dialog


def test_in_a_table_a_read_only_cell_is_no_error_and_the_keys_go_to_the_table(start):
    view = start("table")
    view.app.do("lockCurrent")
    assert view.enter("s:new") == "0,QTableView"
    view.app.wait_for("accepted window")
    assert view.app.events("activated") == ["activated view"]
    assert texts(view) == UNCHANGED


# A list whose current row is hidden


@pytest.mark.parametrize("hidden, edited", [("R2C1", "R4C1"), ("R4C1", "R3C1")])
def test_a_text_for_a_hidden_current_row_of_a_list_goes_into_the_last_row_that_is_shown(
    start, hidden, edited
):
    view = start("list")
    view.app.do("current" + hidden)
    view.app.do("hideCurrent")
    assert view.enter("s:new") == "0,QListView"
    view.app.wait_for(f"data view {int(edited[1]) - 1},0 'new' check 0")
    assert texts(view) == UNCHANGED.replace(edited, "new")


def test_a_check_state_for_a_hidden_current_row_of_a_list_is_changed_at_another_row_whatever_that_has(start):
    view = start("list")
    view.app.do("makeCheckable")
    for state in (2, 0):  # the hidden item stays unchecked
        view.app.do("currentR2C1")
        view.app.do("hideCurrent")
        view.app.forget()
        assert view.enter("b:true") == "0,QListView"
        view.app.wait_for(f"data view 3,0 'R4C1' check {state}")


@pytest.mark.parametrize("circumstance", ["hideCurrent", "scrollAway"])
def test_no_property_tells_a_hidden_current_row_of_a_list_from_one_out_of_sight(start, circumstance):
    view = start("list")
    view.app.do("currentR4C1")
    assert view.read("currentItemRect") != "0,r:0,0,-1,-1"
    view.app.do(circumstance)
    assert view.read("currentItemRect") == "0,r:0,0,-1,-1"


def test_from_a_hidden_current_row_other_rows_of_a_list_are_reached(start):
    view = start("list")
    view.app.do("hideCurrent")
    assert view.activate("s:R3C1") == "0,QListView"
    assert view.current() == "R3C1"
    assert view.enter("s:new") == "0,QListView"
    view.app.wait_for("data view 2,0 'new' check 0")


# Tables in which each new current cell opens its editor


def test_with_tab_a_cell_far_left_of_an_open_editor_is_reached_by_way_of_the_row_below(start):
    view = start("table")
    view.app.do("currentR2C3")
    view.app.do("triggersCurrentChangedAndF2")
    view.app.forget()
    assert view.activate("s:2:1") == "0,QTableView"
    assert view.cell() == (1, 0)
    visited = [line.split(" ")[2] for line in view.app.events("current")]
    assert visited == ["1,1", "1,2", "2,0", "1,0"]
    assert texts(view) == UNCHANGED


@pytest.mark.parametrize("start_at, address", [("R2C3", "2:1"), ("R2C1", "2:3")])
def test_without_tab_the_first_open_editor_on_the_way_keeps_the_arrow_keys(start, start_at, address):
    view = start("table")
    view.app.do("current" + start_at)
    view.app.do("triggersCurrentChangedAndF2")
    view.app.do("noTab")
    view.app.forget()
    assert view.activate("s:" + address) == "0,QTableView"
    assert view.cell() == (1, 1)
    assert len(view.keys("Editor")) == 5 * 3 - 1


def test_without_tab_a_cell_is_reached_column_by_column(start):
    view = start("table")
    view.app.do("currentR2C3")
    view.app.do("triggersCurrentChangedAndF2")
    view.app.do("noTab")
    view.activate("s:2:2")
    view.activate("s:2:1")
    assert view.cell() == (1, 0)


@pytest.mark.parametrize("tab", [True, False])
def test_with_an_open_editor_the_neighbouring_cells_and_all_rows_are_reached(start, tab):
    view = start("table")
    view.app.do("triggersCurrentChangedAndF2")
    if not tab:
        view.app.do("noTab")
    view.activate("s:2:2")
    assert view.cell() == (1, 1)
    view.activate("s:4:1")
    assert view.cell() == (3, 0)
    view.activate("s:1:1")
    assert view.cell() == (0, 0)


# Trees in styles in which Right does not enter a branch


def test_where_right_does_not_enter_a_branch_rows_are_reached_all_the_same(start):
    view = start("staying")
    assert view.activate("s:R2C1/inner2") == "0,QTreeView"
    assert view.current() == "inner2"


@pytest.mark.parametrize("before", ["expandAll", "selectCells"])
def test_where_right_goes_to_the_next_cell_the_walk_passes_the_item_in_that_column(start, before):
    view = start("staying")
    view.app.do(before)
    view.app.do("selectCells")
    assert view.activate("s:R2C1/inner2") == error("item is not selectable")
    assert view.current() == "R4C2"


ENTERS_A_BRANCH = {"windows": True, "plastique": True, "motif": False, "cde": False, "cleanlooks": False}
if QT > 4:
    ENTERS_A_BRANCH = {"windows": True, "fusion": True}


@pytest.mark.parametrize("style", ENTERS_A_BRANCH)
def test_the_styles_of_qt_4_that_do_not_enter_a_branch_are_motif_cde_and_cleanlooks(start, style):
    view = start("tree", "-style", style)
    view.app.do("selectCells")
    enters = ENTERS_A_BRANCH[style]
    assert view.activate("s:R2C1/inner2") == ("0,QTreeView" if enters else error("item is not selectable"))
    assert view.current() == ("inner2" if enters else "R4C2")


# Menu bars in dialogs


@pytest.mark.parametrize("path", ["File/Locked", "File/Send/Nope", "File", "Empty/x"])
def test_in_a_dialog_the_escapes_of_a_failed_walk_close_the_menus_only(start, path):
    app = start("dialog")
    assert choose(app, path).startswith("8,Exception : I")
    assert input_state(app) == {"popup": "none", "focus": "button", "modal": "none"}
    assert app.events("rejected") == []
    assert app.get("window", "visible") == "true"


def test_in_a_dialog_an_item_in_the_wanted_state_closes_the_menu_only(start):
    app = start("dialog")
    assert choose(app, "File/Wrap", "b:true") == "0,QMenuBar"
    assert input_state(app)["popup"] == "none"
    assert app.get("window", "visible") == "true"


def test_a_menu_that_the_application_closes_during_the_walk_leaves_the_escape_to_the_dialog(start):
    app = start("dialog")
    assert choose(app, "Fleeting/Beyond") == error("Item is disabled")
    assert app.events("rejected") == ["rejected window"]
    assert app.get("window", "visible") == "false"


def test_where_no_widget_had_the_keyboard_a_failed_walk_leaves_it_with_the_bar(start):
    app = start("dialog")
    app.do("disableButton")
    assert choose(app, "File/Locked") == error("Item is disabled")
    assert input_state(app)["focus"] == "bar"
    assert app.get("window", "visible") == "true"


# Corner widgets of menu bars

RIGHT_CORNER = [("--right",), ("--left", "-reverse")]
LEFT_CORNER = [("--left",), ("--right", "-reverse")]


@pytest.mark.parametrize("arguments", RIGHT_CORNER, ids=" ".join)
def test_a_button_in_the_right_corner_of_a_menu_bar_is_clicked_before_the_menu_opens(start, arguments):
    app = start("corner", *arguments)
    assert choose(app, "File/Save") == "0,QMenuBar"
    app.wait_for("triggered save")
    assert app.events("clicked", "shown", "triggered") == [
        "clicked corner",
        "shown fileMenu",
        "triggered save",
    ]


def test_a_combo_box_in_the_right_corner_opens_its_list(start):
    app = start("corner", "--combo")
    assert choose(app, "File/Save") == "0,QMenuBar"
    app.wait_for(re.compile("press corner .*"))
    app.wait_for("triggered save")
    assert input_state(app)["popup"] != "none"


def test_a_field_in_the_right_corner_gets_the_keyboard(start):
    app = start("corner", "--field")
    assert choose(app, "File/Save") == "0,QMenuBar"
    app.wait_for("triggered save")
    app.wait_until("corner", "focus", "true")


@pytest.mark.parametrize("arguments", LEFT_CORNER, ids=" ".join)
def test_a_button_in_the_left_corner_of_a_menu_bar_is_left_alone(start, arguments):
    app = start("corner", *arguments)
    assert choose(app, "File/Save") == "0,QMenuBar"
    app.wait_for("triggered save")
    assert app.events("clicked") == []


def test_a_refused_first_element_leaves_the_button_in_the_corner_alone(start):
    app = start("corner", "--right")
    assert choose(app, "Nope/x") == error("Invalid menu path")
    assert app.events("clicked", "shown", "press") == []
