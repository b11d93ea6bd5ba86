"""Tables, as a test drives them: cell addresses, the way to a cell by keys, editors, properties."""

import pytest

from viewapp import DOWN, F2, LEFT, RIGHT, TAB, UP, View, error

SHIFT = 0x02000000
TYPE_ERROR = 'Type error: object "table" of class "QTableView" accepts '


@pytest.fixture
def start(launch):
    def open_table(scenario):
        return View(launch("tableviewhost", "--scenario", scenario), "Tables", "table")

    return open_table


@pytest.fixture
def numbered(start):
    return start("numbered")


@pytest.fixture
def named(start):
    return start("named")


# Addresses


@pytest.mark.parametrize("view, row", [("numbered", "3"), ("named", "c"), ("named", "3")])
def test_a_row_is_found_by_its_header_text_or_its_number(start, view, row):
    table = start(view)
    assert table.read("itemText", f"s:{row}:1") == "u:R3C1"
    assert table.activate(f"s:{row}:1") == "0,QTableView"
    assert table.cell() == (2, 0)


def test_a_number_is_looked_at_only_when_no_header_has_that_text(named):
    assert named.read("itemText", "s:7:2") == "u:R4C4"
    assert named.read("itemText", "s:4:4") == "u:R4C4"


def test_what_follows_a_second_colon_is_not_looked_at(numbered):
    assert numbered.read("itemText", "s:1:2:nonsense") == "u:R1C2"


ADDRESS_ERRORS = {
    "same:1": "Same row name at row 2 and 5",
    "1:Twice": "Same column name at column 2 and 3",
    "nothing:1": "Row nothing not found",
    "1:nothing": "Column nothing not found",
    ":1": "Row  not found",
    "0:1": "Invalid row 0 is out of range [1, 6]",
    "-1:1": "Invalid row -1 is out of range [1, 6]",
    "77:1": "Invalid row 77 is out of range [1, 6]",
    "1:0": "Invalid column 0 is out of range [1, 4]",
    "1:5": "Invalid column 5 is out of range [1, 4]",
    "": 'Syntax Error, format "%r:%c" expected',
    "a": 'Syntax Error, format "%r:%c" expected',
}


@pytest.mark.parametrize("address", ADDRESS_ERRORS)
def test_an_address_of_no_cell_is_an_error(named, address):
    assert named.activate("s:" + address) == error(ADDRESS_ERRORS[address])
    assert named.read("itemText", "s:" + address) == error(ADDRESS_ERRORS[address])
    assert named.keys() == []


def test_a_missing_address_is_an_error(numbered):
    assert numbered.activate() == error("Missing item cell")
    assert numbered.read("itemText") == error("Missing item cell")


def test_an_address_is_a_text(numbered):
    assert numbered.activate("i:1") == error(TYPE_ERROR + "string.")


def test_cells_of_a_table_below_an_item_are_counted_there(start):
    view = start("rooted")
    assert view.read("rowCount") == "0,i:3"
    assert view.activate("s:3:2") == "0,QTableView"
    assert view.current() == "right2"
    assert view.read("itemText", "s:1:1") == "u:left0"


def test_without_a_model_there_is_no_cell(start):
    view = start("no-model")
    assert view.activate("s:1:1") == error("Invalid row 1 is out of range [1, 0]")
    assert view.activate("s:a:1") == error("Row a not found")
    assert view.read("rowHeaderText", "s:1") == error("Invalid row 1 is out of range [1, 0]")
    assert view.read("rowCount") == "0,i:0"
    assert view.read("columnCount") == "0,i:0"
    assert view.enter("s:x") == "0,QTableView"


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
    assert start("disabling").activate("s:1:1") == error("table is not enabled")


def test_a_table_that_loses_the_focus_is_an_error(start):
    assert start("thief").activate("s:1:1") == error("Oops, cant set the focus to the table")


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
    assert start("deleting-view").activate("s:4:3") == error("Internal error, proxy without widget")


# enter


def test_a_text_replaces_the_current_cells_text(numbered):
    numbered.activate("s:2:3")
    numbered.app.forget()
    assert numbered.enter("s:new, text") == "0,QTableView"
    numbered.app.wait_for("data table 1,2 'new, text' check 0")
    assert numbered.key_codes()[0] == F2
    assert numbered.read("itemText", "s:2:3") == "u:new, text"


@pytest.mark.parametrize("value", ["", "i:1", "b:true"])
def test_entering_takes_a_text(numbered, value):
    assert numbered.enter(value) == error(TYPE_ERROR + "string.")


def test_entering_in_a_hidden_cell_is_refused(numbered):
    numbered.activate("s:3:1")
    numbered.app.do("hideThirdRow")
    numbered.app.forget()
    assert numbered.enter("s:x") == error("row 3 is hidden")
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


# mouseAction


def test_the_mouse_goes_to_the_current_cells_centre(numbered):
    numbered.activate("s:3:2")
    assert numbered.mouse("MouseClick:LeftButton:0:0:ControlModifier") == "0,QTableView"
    numbered.app.do("cellCentre")
    point = numbered.app.journal.pop()[len("centre ") :]
    numbered.app.wait_for(f"press tableViewport {point} button 1 buttons 1 modifiers 67108864")
    numbered.app.wait_for(f"release tableViewport {point} button 1 buttons 0 modifiers 67108864")


def test_without_a_current_cell_the_mouse_goes_to_the_viewports_centre(numbered):
    width, height = map(int, numbered.app.get("tableViewport", "geometry").split(" ")[1].split("x"))
    numbered.mouse("MouseClick:LeftButton:::")
    point = f"{(width - 1) // 2},{(height - 1) // 2}"
    numbered.app.wait_for(f"press tableViewport {point} button 1 buttons 1 modifiers 0")


def test_a_cell_out_of_sight_sends_the_mouse_to_the_viewports_corner(numbered):
    numbered.activate("s:1:1")
    numbered.app.do("makeSmall")
    numbered.app.do("scrollToBottom")
    assert numbered.mouse("MouseClick:RightButton:::") == "0,QTableView"
    numbered.app.wait_for("press tableViewport 0,0 button 2 buttons 2 modifiers 0")


def test_a_mouse_command_of_other_words_is_refused(numbered):
    assert numbered.mouse("MouseMove:LeftButton:::") == error("Invalid mouse command")
    assert numbered.mouse("MouseClick") == error("Invalid string value")
    assert numbered.mouse("MouseClick:Left:::") == error("Mouse button not supported")
    assert numbered.mouse("MouseClick:LeftButton:::NoModifier") == error("Mouse modifier not supported")


# Pseudo-properties


def test_the_names_of_the_pseudo_properties(numbered):
    assert numbered.items("pseudoPropertyNames")[5:] == [
        "rowCount",
        "columnCount",
        "currentRow",
        "currentColumn",
        "itemText",
        "rowHeaderText",
        "columnHeaderText",
    ]


def test_counts_of_a_table_view_are_the_models(numbered):
    assert numbered.read("rowCount") == "0,i:6"
    assert numbered.read("columnCount") == "0,i:4"


def test_counts_of_a_table_widget_are_its_own(start):
    view = start("widget")
    assert view.read("rowCount") == "0,i:" + view.app.get("table", "rowCount")
    assert view.read("columnCount") == "0,i:" + view.app.get("table", "columnCount")
    assert view.read("silkClassName") == "u:QTableWidget"


def test_the_current_cell_counts_from_one_and_is_zero_for_none(numbered):
    assert numbered.read("currentRow") == "0,i:0"
    assert numbered.read("currentColumn") == "0,i:0"
    numbered.activate("s:3:2")
    assert numbered.read("currentRow") == "0,i:3"
    assert numbered.read("currentColumn") == "0,i:2"


def test_header_texts_by_number(named):
    assert named.read("rowHeaderText", "s:4") == "u:7"
    assert named.read("columnHeaderText", "s:1") == "u:Name"


HEADER_ERRORS = [
    ("rowHeaderText", "", "Missing row number"),
    ("columnHeaderText", "", "Missing column number"),
    ("rowHeaderText", "s:x", "Invalid integer"),
    ("columnHeaderText", "s:", "Invalid integer"),
    ("rowHeaderText", "s:0", "Invalid row 0 is out of range [1, 6]"),
    ("rowHeaderText", "s:7", "Invalid row 7 is out of range [1, 6]"),
    ("columnHeaderText", "s:0", "Invalid col 0 is out of range [1, 4]"),
    ("columnHeaderText", "s:5", "Invalid col 5 is out of range [1, 4]"),
]


@pytest.mark.parametrize("name, argument, message", HEADER_ERRORS)
def test_a_header_that_is_not_there_is_an_error(numbered, name, argument, message):
    assert numbered.read(name, argument) == error(message)


def test_hidden_headers_are_refused(numbered):
    numbered.app.do("hideThirdRow")
    numbered.app.do("hideSecondColumn")
    assert numbered.read("rowHeaderText", "s:3") == error("row 3 is hidden")
    assert numbered.read("columnHeaderText", "s:2") == error("column 2 is hidden")


def test_an_unknown_name_is_no_property(numbered):
    assert numbered.read("itemFlavour", "s:1:1") == error('Unknown property "itemFlavour".')
