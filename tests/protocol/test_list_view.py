"""List views, as a test drives them with keys: the way to an item, check states, texts."""

import pytest

from refusals import nothing_happens
from replies import error
from viewapp import DOWN, F2, PASTE_OVER, SPACE, UP, opener

TYPE_ERROR = 'Type error: object "list" of class "QListView" accepts '


@pytest.fixture
def start(launch):
    return opener(launch, "listviewhost", "Lists", "list")


@pytest.fixture
def letters(start):
    return start("letters")


# activate


def test_activating_by_text_makes_the_item_current_with_arrow_keys(letters):
    assert letters.activate("s:Cat") == "0,QListView"
    assert letters.current() == "Cat"
    assert letters.key_codes() == [UP, DOWN, DOWN]


def test_activating_by_number_counts_rows_from_zero(letters):
    assert letters.activate("i:7") == "0,QListView"
    assert letters.current() == "Gnu"


def test_a_row_that_the_first_up_reaches_gets_no_terminator(letters):
    letters.activate("s:Cat")
    letters.app.forget()
    assert letters.activate("s:Bee", "s:x") == "0,QListView"
    assert letters.keys() == [(UP, "", 0)]
    assert letters.current() == "Bee"


def test_the_top_row_while_it_is_current_gets_no_terminator(letters):
    letters.activate("i:0")
    letters.app.forget()
    letters.activate("i:0", "s:x")
    assert letters.key_codes() == [UP]


def test_the_current_row_below_the_top_is_left_and_reached_again_then_the_terminator_is_typed(letters):
    letters.activate("s:Cat")
    letters.app.forget()
    letters.activate("s:Cat", "s:q")
    assert letters.keys() == [(UP, "", 0), (DOWN, "", 0), (ord("Q"), "q", 0)]
    assert letters.current() == "Cat"


def test_an_empty_terminator_types_nothing(letters):
    letters.activate("s:Cat", "s:")
    assert letters.key_codes() == [UP, DOWN, DOWN]


def test_of_two_items_with_one_text_the_first_is_reached(letters):
    letters.activate("s:Bee")
    assert letters.state()[0] == 1
    letters.activate("s:Gnu")
    letters.activate("s:Bee")
    assert letters.state()[0] == 1


@pytest.mark.shared
def test_a_hidden_row_is_not_found_by_text(letters):
    assert letters.activate("s:Dog") == error("activate, QListView unknown item Dog")
    assert letters.keys() == []


def test_a_hidden_row_is_accepted_by_number_and_the_walk_ends_silently(letters):
    assert letters.activate("i:4") == "0,QListView"
    assert letters.key_codes() == [UP] + [DOWN] * 50
    assert letters.current() == "Imp"


def test_a_disabled_row_ends_the_walk_silently(letters):
    assert letters.activate("s:Eel", "s:q") == "0,QListView"
    assert letters.current() != "Eel"
    letters.app.wait_for("keypress list 81 'q' modifiers 0")


@pytest.mark.shared
def test_lookup_is_case_sensitive(letters):
    with nothing_happens(letters.app):
        assert letters.activate("s:ant") == error("activate, QListView unknown item ant")


@pytest.mark.shared
@pytest.mark.parametrize("number", [-1, 10])
def test_a_number_that_is_no_row_is_refused(letters, number):
    assert letters.activate(f"i:{number}") == error(f"activate, QListView invalid index {number}")
    assert letters.keys() == []


@pytest.mark.shared
@pytest.mark.parametrize("value", ["", "b:true"])
def test_activating_takes_a_text_or_an_int(letters, value):
    with nothing_happens(letters.app):
        assert letters.activate(value) == error(TYPE_ERROR + "String, int.")


@pytest.mark.shared
def test_the_terminator_is_a_text(letters):
    with nothing_happens(letters.app):
        assert letters.activate("s:Cat", "i:1") == error(TYPE_ERROR + "string.")


@pytest.mark.shared
def test_the_terminator_is_one_character(letters):
    assert letters.activate("s:Cat", "s:ab") == error("terminating key is more than one character")
    assert letters.keys() == []


def test_a_view_that_loses_the_focus_is_an_error(start):
    view = start("thief")
    view.app.forget()
    assert view.activate("s:Cat") == error("Oops, can not set the focus to the list view")
    assert view.app.get("other", "focus") == "true"


def test_items_of_a_list_below_an_item_are_texts_of_the_model_column(start):
    view = start("rooted")
    assert view.items("itemList") == ["10", "11", "12", "13"]
    assert view.read("rowCount") == "0,i:4"
    assert view.activate("s:12") == "0,QListView"
    assert view.state()[:3] == (2, 1, "12")
    assert view.activate("s:02") == error("activate, QListView unknown item 02")


def test_a_list_in_icon_mode_is_walked_with_up_and_down_only(start):
    view = start("icons")
    assert view.activate("i:3") == "0,QListView"
    assert set(view.key_codes()) <= {UP, DOWN}
    assert view.activate("i:0") == "0,QListView"


def test_a_lazy_model_is_searched_as_far_as_it_is_loaded(start):
    view = start("lazy")
    assert view.activate("s:999") == error("activate, QListView unknown item 999")
    rows = int(view.read("rowCount")[4:])
    assert 0 < rows < 1000
    assert view.activate(f"i:{rows - 1}") == "0,QListView"
    assert view.current() == str(rows - 1)


def test_rows_are_those_of_the_sorted_and_filtered_model(start):
    view = start("sorted")
    assert view.items("itemList") == ["Hen", "Eel", "Bee", "Bee"]
    view.activate("s:Bee")
    assert view.state()[:3] == (2, 0, "Bee")


@pytest.mark.shared
def test_without_a_model_nothing_is_found(start):
    view = start("no-model")
    with nothing_happens(view.app):
        assert view.activate("s:a") == error("activate, QListView unknown item a")
        assert view.activate("i:0") == error("activate, QListView invalid index 0")
        assert view.enter("s:a") == error("No item is current")
        assert view.read("rowCount") == "0,i:0"
        assert view.items("itemList") == []


def test_the_walk_follows_an_item_while_rows_are_inserted(start):
    view = start("inserting")
    assert view.activate("s:Gnu") == "0,QListView"
    assert view.current() == "Gnu"


def test_the_walk_follows_an_item_while_rows_are_removed(start):
    view = start("removing")
    assert view.activate("s:Gnu") == "0,QListView"
    assert view.current() == "Gnu"
    assert view.items("itemList")[0] == "Bee"


def test_a_walk_to_an_item_that_is_removed_ends_silently(start):
    view = start("removing")
    assert view.activate("s:Cat") == "0,QListView"
    assert view.read("rowCount") == "0,i:7"


@pytest.mark.parametrize("scenario, rows", [("resetting", 10), ("deleting-model", 0)])
def test_a_model_that_goes_away_during_the_walk_ends_it(start, scenario, rows):
    view = start(scenario)
    assert view.activate("s:Gnu") == "0,QListView"
    assert view.read("rowCount") == f"0,i:{rows}"


def test_a_view_that_dies_during_the_walk_is_an_error(start):
    view = start("deleting-view")
    assert view.activate("s:Gnu") == error("Internal error, proxy without widget")
    assert view.app.get("list", "visible") == "<no object list>"


# enter


@pytest.mark.parametrize("item, value, state", [("Gnu", "true", 2), ("Hen", "false", 0)])
def test_a_bool_is_entered_with_the_space_key(letters, item, value, state):
    letters.app.do("current" + item)
    assert letters.enter("b:" + value) == "0,QListView"
    letters.app.wait_for(f"data list {'7' if item == 'Gnu' else '8'},0 '{item}' check {state}")
    assert letters.key_codes() == [UP, DOWN, SPACE]


@pytest.mark.parametrize("item, value", [("Gnu", "false"), ("Hen", "true")])
def test_a_check_state_that_is_there_already_sends_no_key(letters, item, value):
    letters.app.do("current" + item)
    assert letters.enter("b:" + value) == "0,QListView"
    assert letters.keys() == []
    assert letters.data() == []


def test_a_bool_for_an_item_without_check_box_is_refused(letters):
    letters.app.do("currentCat")
    assert letters.enter("b:true") == error("Current item is not checkable")
    assert letters.keys() == []


@pytest.mark.shared
def test_entering_needs_a_current_item(letters):
    letters.app.do("noCurrent")
    assert letters.enter("s:x") == error("No item is current")
    assert letters.enter("b:true") == error("No item is current")
    assert letters.keys() == []


@pytest.mark.shared
@pytest.mark.parametrize("value", ["", "i:1"])
def test_entering_takes_a_bool_or_a_text(letters, value):
    with nothing_happens(letters.app):
        assert letters.enter(value) == error(TYPE_ERROR + "bool string.")


def test_a_text_replaces_the_current_items_text(letters):
    letters.app.do("currentCat")
    assert letters.enter("s:Cow, brown") == "0,QListView"
    letters.app.wait_for("data list 2,0 'Cow, brown' check 0")
    assert letters.key_codes()[:3] == [UP, DOWN, F2]
    assert letters.items("itemList")[2] == "Cow, brown"


def test_a_text_is_pasted_over_the_old_one_and_stays_on_the_clipboard(letters):
    letters.app.do("currentCat")
    letters.enter("s:Cow")
    letters.app.wait_for("data list 2,0 'Cow' check 0")
    assert letters.keys("Editor") == PASTE_OVER
    letters.app.do("paste")
    assert letters.app.events("clipboard") == ["clipboard Cow"]


def test_an_empty_text_empties_the_item(letters):
    letters.app.do("currentCat")
    assert letters.enter("s:") == "0,QListView"
    letters.app.wait_for("data list 2,0 '' check 0")


def test_a_text_for_an_item_that_is_not_editable_is_refused(letters):
    letters.app.do("currentImp")
    assert letters.enter("s:x") == error("Item is not editable")
    assert letters.keys() == []


def test_a_line_edit_that_does_not_take_the_text_is_an_error(start):
    view = start("editors")
    view.activate("i:0")
    assert view.enter("s:abcd") == error("enter, QLineEdit validate error")
    assert view.app.read_line() == ""  # the message ends in a line feed of its own
    assert view.data() == []


def test_a_line_edit_takes_a_text_that_fits(start):
    view = start("editors")
    view.activate("i:0")
    assert view.enter("s:xyz") == "0,QListView"
    view.app.wait_for("data list 0,0 'xyz' check 0")


def test_a_spin_box_takes_a_number(start):
    view = start("editors")
    view.activate("i:1")
    assert view.enter("s:42") == "0,QListView"
    view.app.wait_for("data list 1,0 '42' check 0")


def test_a_spin_box_that_does_not_take_the_text_is_an_error(start):
    view = start("editors")
    view.activate("i:1")
    assert view.enter("s:4x2") == error("enter, QAbstractSpinBox validate error")
    assert view.app.read_line() == ""  # the message ends in a line feed of its own
    assert view.data() == []
