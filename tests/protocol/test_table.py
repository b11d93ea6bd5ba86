"""Tables, as a test drives them with keys: the way to a cell, editors."""

import pytest

from refusals import nothing_happens
from replies import error
from viewapp import DOWN, F2, LEFT, PASTE_OVER, RIGHT, SHIFT, TAB, UP, opener

TYPE_ERROR = 'Type error: object "table" of class "QTableView" accepts '


@pytest.fixture
def start(launch):
    return opener(launch, "tableviewhost", "Tables", "table")


@pytest.fixture
def numbered(start):
    return start("numbered")


@pytest.fixture
def named(start):
    return start("named")


# activate


def test_the_way_to_a_cell_is_first_along_the_row_then_along_the_column(numbered):
    numbered.activate("s:1:1")
    numbered.app.forget()
    assert numbered.activate("s:4:3") == "0,QTableView"
    assert numbered.keys() == [(RIGHT, "", 0)] * 2 + [(DOWN, "", 0)] * 3
    assert numbered.cell() == (3, 2)
    numbered.app.forget()
    numbered.activate("s:3:1")
    assert numbered.key_codes() == [LEFT, LEFT, UP]
    assert numbered.cell() == (2, 0)


def test_the_current_cell_needs_no_key(numbered):
    numbered.activate("s:2:2")
    numbered.app.forget()
    assert numbered.activate("s:2:2") == "0,QTableView"
    assert numbered.keys() == []


def test_the_option_is_not_looked_at(numbered):
    numbered.activate("s:1:1")
    numbered.app.forget()
    assert numbered.activate("s:1:2", "s:abc") == "0,QTableView"
    assert numbered.key_codes() == [RIGHT]


@pytest.mark.parametrize("request_name, address", [("hideThirdRow", "3:1"), ("hideSecondColumn", "1:2")])
def test_a_hidden_cell_is_refused(numbered, request_name, address):
    numbered.app.do(request_name)
    message = "row 3 is hidden" if request_name == "hideThirdRow" else "column 2 is hidden"
    assert numbered.activate("s:" + address) == error(message)
    assert numbered.keys() == []


def test_header_texts_of_hidden_sections_are_names_for_activate_only(named):
    named.app.do("hideSecondColumn")
    with nothing_happens(named.app):
        assert named.activate("s:1:Twice") == error("Same column name at column 2 and 3")
    assert named.read("itemText", "s:1:Twice") == "u:R1C3"


def test_a_hidden_cell_has_a_text_by_number(numbered):
    numbered.app.do("hideThirdRow")
    assert numbered.read("itemText", "s:3:1") == "u:R3C1"


def test_a_section_that_was_moved_out_of_the_way_is_walked_to_in_the_order_of_the_model(numbered):
    numbered.activate("s:1:4")
    numbered.app.do("swapColumns")
    numbered.app.forget()
    assert numbered.activate("s:1:2") == "0,QTableView"
    assert set(numbered.key_codes()) == {LEFT}
    assert numbered.cell() == (0, 1)


def test_a_walk_that_cannot_arrive_ends_silently_after_five_presses_for_each_column(numbered):
    # Column 1 is shown to the right of column 2: Left leads away from it.
    numbered.activate("s:1:2")
    numbered.app.do("swapColumns")
    numbered.app.forget()
    assert numbered.activate("s:1:1") == "0,QTableView"
    assert numbered.key_codes() == [LEFT] * 20
    assert numbered.cell() == (0, 1)


def test_a_disabled_table_is_an_error(start):
    view = start("disabling")
    assert view.activate("s:1:1") == error("table is not enabled")
    assert view.app.get("table", "enabled") == "false"
    assert view.keys() == []


def test_a_table_that_loses_the_focus_is_an_error(start):
    view = start("thief")
    assert view.activate("s:1:1") == error("Oops, cant set the focus to the table")
    assert view.app.get("other", "focus") == "true"
    assert view.keys() == []


def test_a_table_without_focus_gets_it(numbered):
    numbered.activate("s:2:2")
    numbered.app.do("focusOther")
    assert numbered.app.get("table", "focus") == "false"
    numbered.activate("s:2:2")
    assert numbered.app.get("table", "focus") == "true"


def test_a_table_that_edits_every_current_cell_is_walked_with_tab(numbered):
    numbered.activate("s:1:1")
    numbered.app.do("editOnCurrentChanged")
    numbered.app.forget()
    assert numbered.activate("s:2:3") == "0,QTableView"
    assert numbered.cell() == (1, 2)
    assert f"keypress table {TAB} '' modifiers 0" in numbered.app.events()
    assert not any(str(RIGHT) in line for line in numbered.app.events("keypress"))
    numbered.app.forget()
    assert numbered.activate("s:2:1") == "0,QTableView"
    assert numbered.cell() == (1, 0)
    assert any(f" {TAB} '' modifiers {SHIFT}" in line for line in numbered.app.events("keypress"))


def test_without_tab_key_navigation_it_is_walked_with_arrow_keys(numbered):
    numbered.activate("s:1:1")
    numbered.app.do("editOnCurrentChanged")
    numbered.app.do("noTabKeyNavigation")
    numbered.app.forget()
    numbered.activate("s:1:2")
    assert numbered.key_codes()[0] == RIGHT
    assert numbered.cell() == (0, 1)


def test_a_spanned_cell_is_walked_over(start):
    view = start("widget")
    assert view.activate("s:4:1") == "0,QTableWidget"
    assert view.cell() == (3, 0)


def test_cells_are_those_of_a_sorted_model(start):
    view = start("sorted")
    assert view.read("rowHeaderText", "s:1") == "u:4"  # the header goes with the rows
    view.activate("s:4:2")
    assert view.state()[:3] == (0, 1, "R4C2")


def test_the_walk_follows_a_cell_while_rows_are_inserted(start):
    view = start("inserting")
    assert view.activate("s:5:2") == "0,QTableView"
    assert view.current() == "R5C2"


@pytest.mark.parametrize("scenario, rows", [("removing", 2), ("resetting", 0), ("deleting-model", 0)])
def test_a_cell_that_goes_away_during_the_walk_ends_it_silently(start, scenario, rows):
    view = start(scenario)
    assert view.activate("s:4:3") == "0,QTableView"
    assert RIGHT in view.key_codes()
    assert view.read("rowCount") == f"0,i:{rows}"


def test_a_cell_of_a_table_of_10000_rows_is_found(start):
    view = start("large")
    assert view.read("itemText", "s:10000:50") == "u:R10000C50"
    assert view.activate("s:20:3") == "0,QTableView"
    assert view.current() == "R20C3"


def test_a_table_that_dies_during_the_walk_is_an_error(start):
    view = start("deleting-view")
    assert view.activate("s:4:3") == error("Internal error, proxy without widget")
    assert view.app.get("table", "visible") == "<no object table>"


# enter


def test_a_text_replaces_the_current_cells_text(numbered):
    numbered.activate("s:2:3")
    numbered.app.forget()
    assert numbered.enter("s:new, text") == "0,QTableView"
    numbered.app.wait_for("data table 1,2 'new, text' check 0")
    assert numbered.key_codes()[0] == F2
    assert numbered.read("itemText", "s:2:3") == "u:new, text"


def test_a_text_is_pasted_over_the_old_one_and_stays_on_the_clipboard(numbered):
    numbered.activate("s:2:3")
    numbered.enter("s:new")
    numbered.app.wait_for("data table 1,2 'new' check 0")
    assert numbered.keys("Editor") == PASTE_OVER
    numbered.app.do("paste")
    assert numbered.app.events("clipboard") == ["clipboard new"]


@pytest.mark.shared
@pytest.mark.parametrize("value", ["", "i:1", "b:true"])
def test_entering_takes_a_text(numbered, value):
    with nothing_happens(numbered.app):
        assert numbered.enter(value) == error(TYPE_ERROR + "string.")


@pytest.mark.parametrize(
    "hide, message", [("hideThirdRow", "row 3 is hidden"), ("hideSecondColumn", "column 2 is hidden")]
)
def test_entering_in_a_hidden_cell_is_refused(numbered, hide, message):
    numbered.activate("s:3:2")
    numbered.app.do(hide)
    numbered.app.forget()
    assert numbered.enter("s:x") == error(message)
    assert numbered.keys() == []


def test_a_line_edit_that_does_not_take_the_text_stays_open_and_is_an_error(start):
    view = start("editors")
    view.activate("s:2:1")
    assert view.enter("s:abcd") == error("enter, QLineEdit validate error")
    assert view.app.read_line() == ""  # the message ends in a line feed of its own
    assert view.data() == []
    assert view.app.get("table", "focus") == "false"
    assert view.enter("s:xyz") == "0,QTableView"
    view.app.wait_for("data table 1,0 'xyz' check 0")


def test_a_spin_box_takes_a_number(start):
    view = start("editors")
    view.activate("s:1:2")
    assert view.enter("s:42") == "0,QTableView"
    view.app.wait_for("data table 0,1 '42' check 0")


@pytest.mark.parametrize("column, text", [(2, "4x2"), (5, "many"), (3, "never")])
def test_a_spin_box_that_does_not_take_the_text_is_an_error(start, column, text):
    view = start("editors")
    view.activate(f"s:1:{column}")
    assert view.enter("s:" + text) == error("enter, QAbstractSpinBox validate error")
    assert view.app.read_line() == ""
    assert view.data() == []


def test_a_combo_box_is_not_asked_for_its_text(start):
    view = start("editors")
    view.activate("s:1:4")
    assert view.enter("s:nonsense") == "0,QTableView"


def test_without_a_current_cell_the_one_is_edited_that_the_focus_makes_current(numbered):
    assert numbered.read("currentRow") == "0,i:0"
    assert numbered.enter("s:first") == "0,QTableView"
    numbered.app.wait_for("data table 0,0 'first' check 0")
