"""Cell addresses, the mouse at tables, and what can be read of them."""

import pytest

from refusals import nothing_happens
from replies import error
from viewapp import opener

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


# Addresses


@pytest.mark.parametrize("view, row", [("numbered", "3"), ("named", "c"), ("named", "3")])
def test_a_row_is_found_by_its_header_text_or_its_number(start, view, row):
    table = start(view)
    assert table.read("itemText", f"s:{row}:1") == "u:R3C1"
    assert table.activate(f"s:{row}:1") == "0,QTableView"
    assert table.cell() == (2, 0)


@pytest.mark.shared
def test_a_number_is_looked_at_only_when_no_header_has_that_text(named):
    assert named.read("itemText", "s:7:2") == "u:R4C4"
    assert named.read("itemText", "s:4:4") == "u:R4C4"


@pytest.mark.shared
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


@pytest.mark.shared
@pytest.mark.parametrize("address", ADDRESS_ERRORS)
def test_an_address_of_no_cell_is_an_error(named, address):
    assert named.activate("s:" + address) == error(ADDRESS_ERRORS[address])
    assert named.read("itemText", "s:" + address) == error(ADDRESS_ERRORS[address])
    assert named.keys() == []


@pytest.mark.shared
def test_a_missing_address_is_an_error(numbered):
    with nothing_happens(numbered.app):
        assert numbered.activate() == error("Missing item cell")
        assert numbered.read("itemText") == error("Missing item cell")


@pytest.mark.shared
def test_an_address_is_a_text(numbered):
    with nothing_happens(numbered.app):
        assert numbered.activate("i:1") == error(TYPE_ERROR + "string.")


def test_cells_of_a_table_below_an_item_are_counted_there(start):
    view = start("rooted")
    assert view.read("rowCount") == "0,i:3"
    assert view.activate("s:3:2") == "0,QTableView"
    assert view.current() == "right2"
    assert view.read("itemText", "s:1:1") == "u:left0"


def test_without_a_model_there_is_no_cell(start):
    view = start("no-model")
    with nothing_happens(view.app):
        assert view.activate("s:1:1") == error("Invalid row 1 is out of range [1, 0]")
        assert view.activate("s:a:1") == error("Row a not found")
    assert view.read("rowHeaderText", "s:1") == error("Invalid row 1 is out of range [1, 0]")
    assert view.read("rowCount") == "0,i:0"
    assert view.read("columnCount") == "0,i:0"
    assert view.enter("s:x") == "0,QTableView"


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


@pytest.mark.shared
def test_a_mouse_command_of_other_words_is_refused(numbered):
    with nothing_happens(numbered.app):
        assert numbered.mouse("MouseMove:LeftButton:::") == error("Invalid mouse command")
        assert numbered.mouse("MouseClick") == error("Invalid string value")
        assert numbered.mouse("MouseClick:Left:::") == error("Mouse button not supported")
        assert numbered.mouse("MouseClick:LeftButton:::NoModifier") == error("Mouse modifier not supported")


# Pseudo-properties


@pytest.mark.shared
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


@pytest.mark.shared
def test_counts_of_a_table_view_are_the_models(numbered):
    assert numbered.read("rowCount") == "0,i:6"
    assert numbered.read("columnCount") == "0,i:4"


@pytest.mark.shared
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


@pytest.mark.shared
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


@pytest.mark.shared
@pytest.mark.parametrize("name, argument, message", HEADER_ERRORS)
def test_a_header_that_is_not_there_is_an_error(numbered, name, argument, message):
    assert numbered.read(name, argument) == error(message)


def test_hidden_headers_are_refused(numbered):
    numbered.app.do("hideThirdRow")
    numbered.app.do("hideSecondColumn")
    assert numbered.read("rowHeaderText", "s:3") == error("row 3 is hidden")
    assert numbered.read("columnHeaderText", "s:2") == error("column 2 is hidden")


@pytest.mark.shared
def test_an_unknown_name_is_no_property(numbered):
    assert numbered.read("itemFlavour", "s:1:1") == error('Unknown property "itemFlavour".')


def test_headers_and_cells_of_bytes_and_numbers_read_the_same_on_every_qt(start):
    table = start("bytes")
    assert table.read("columnHeaderText", "s:1") == "u:caf\xe9"
    assert table.read("columnHeaderText", "s:2") == "u:0.333333"
    assert table.read("itemText", "s:2:caf\xe9") == "u:th\xe9"
    assert table.read("itemText", "s:2:0.333333") == "u:0.666667"
