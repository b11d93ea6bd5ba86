"""Spin boxes, date edits and time edits, as a test drives them."""

import pytest

from entryfields import (
    CLEAR,
    DIED,
    WINDOW,
    disabled,
    input_events,
    keys,
    plain_app,
    press_in,
    styled_app,
    type_error,
)  # noqa: F401
from hostapp import eventually

PASTE = ["Home", "Shift+End", "Control+V"]


@pytest.mark.parametrize("act", ["activate", "enter"])
@pytest.mark.parametrize(
    "name, text", [("amount", "5"), ("price", "2.5"), ("date", "2020-11-30"), ("calendar", "2020-11-30")]
)
def test_a_field_with_arrows_is_clicked_at_the_centre_of_its_text(app, name, text, act):
    getattr(app, act)(WINDOW, name, f"s:{text}")
    app.do(f"{name}Centre")
    assert app.events("centre") == [f"centre {press_in(app, name)}"]


# Spin boxes


def test_activating_a_spin_box_types_the_number_and_return(app):
    assert app.activate(WINDOW, "amount", "i:5") == "0,QSpinBox"
    app.wait_for("finished amount")
    assert keys(app, "amount") == [*CLEAR, "5", "Return"]
    assert app.get("amount", "value") == "5"


def test_entering_into_a_spin_box_does_not_commit(app):
    assert app.enter(WINDOW, "untracked", "i:5") == "0,QSpinBox"
    assert keys(app, "untracked") == keys(app, "untracked", "keyrelease") == [*CLEAR, "5"]
    assert app.get("untracked", "text") == "5"
    assert app.events("finished", "changed") == []


def test_activating_a_spin_box_commits(app):
    assert app.activate(WINDOW, "untracked", "i:5") == "0,QSpinBox"
    app.wait_for("finished untracked")
    assert app.events("changed") == ["changed untracked 5"]


def test_a_spin_box_takes_a_string_as_it_is(plain):
    assert plain.enter(WINDOW, "amount", "s:07") == "0,QSpinBox"
    assert keys(plain, "amount") == [*CLEAR, "0", "7"]
    assert plain.get("amount", "value") == "7"


def test_a_double_spin_box_takes_its_number_as_a_string(app):
    assert app.activate(WINDOW, "price", "s:12.25") == "0,QDoubleSpinBox"
    app.wait_for("finished price")
    assert app.get("price", "value") == "12.25"


def test_a_prefix_and_a_suffix_stay(app):
    assert app.activate(WINDOW, "money", "i:42") == "0,QSpinBox"
    app.wait_for("finished money")
    assert app.get("money", "text") == "$ 42 net"


def test_what_a_spin_box_makes_of_a_text_is_not_checked(plain):
    assert plain.activate(WINDOW, "amount", "s:9x9") == "0,QSpinBox"
    plain.wait_for("finished amount")
    assert plain.get("amount", "value") == "99"
    assert plain.activate(WINDOW, "amount", "i:-5") == "0,QSpinBox"
    assert plain.get("amount", "value") == "5"


def test_a_read_only_spin_box_is_typed_at_in_vain(plain):
    assert plain.activate(WINDOW, "readOnlySpin", "i:5") == "0,QSpinBox"
    plain.settle()
    assert keys(plain, "readOnlySpin") == [*CLEAR, "5", "Return"]
    assert plain.get("readOnlySpin", "value") == "0"


@pytest.mark.shared
@pytest.mark.parametrize("act", ["activate", "enter"])
@pytest.mark.parametrize("value", ["b:true", ""])
def test_a_spin_box_takes_integers_and_strings_only(plain, act, value):
    assert getattr(plain, act)(WINDOW, "amount", value) == type_error("amount", "QSpinBox", "string, integer")
    assert input_events(plain) == []


@pytest.mark.shared
def test_a_disabled_spin_box_is_refused(plain):
    assert plain.activate(WINDOW, "disabledSpin", "i:5") == disabled("disabledSpin", "QSpinBox")
    assert plain.get("disabledSpin", "value") == "0"


def test_typing_stops_when_the_spin_box_dies(plain):
    assert plain.activate(WINDOW, "doomedSpin", "s:567") == DIED
    assert plain.events("died") == ["died doomedSpin"]
    assert keys(plain, "doomedSpin") == [*CLEAR, "5"]
    assert plain.get("date", "text") == "2001-02-03"


# Date and time edits

MOMENTS = [
    ("date", "QDateEdit", "2020-11-30"),
    ("calendar", "QDateEdit", "1999-12-31"),
    ("time", "QTimeEdit", "23:59:58"),
    ("moment", "QDateTimeEdit", "31.12.1999 23:59"),
]


@pytest.mark.parametrize("name, class_name, text", MOMENTS)
def test_activating_a_date_or_time_edit_pastes_the_text_and_presses_return(app, name, class_name, text):
    assert app.activate(WINDOW, name, f"s:{text}") == f"0,{class_name}"
    app.wait_for(f"finished {name}")
    assert keys(app, name) == [*PASTE, "Return"]
    assert app.get(name, "text") == text


@pytest.mark.parametrize("name, class_name, text", MOMENTS)
def test_entering_into_a_date_or_time_edit_presses_no_return(app, name, class_name, text):
    assert app.enter(WINDOW, name, f"s:{text}") == f"0,{class_name}"
    assert keys(app, name) == keys(app, name, "keyrelease") == PASTE
    assert app.get(name, "text") == text
    assert app.events("finished") == []


@pytest.mark.parametrize("act", ["activate", "enter"])
@pytest.mark.parametrize("text", ["2020-13-30", "30.11.2020", "nonsense"])
def test_a_date_that_is_not_taken_is_an_error(plain, act, text):
    reply = getattr(plain, act)(WINDOW, "date", f"s:{text}")
    assert reply == f"8,Exception : {act}, QDateTimeEdit validate error"
    assert keys(plain, "date") == PASTE
    assert plain.get("date", "text") == "2001-02-03"


@pytest.mark.shared
@pytest.mark.parametrize("act", ["activate", "enter"])
def test_a_read_only_date_is_refused_before_any_input(plain, act):
    plain.do("paste")
    reply = getattr(plain, act)(WINDOW, "readOnlyDate", "s:2020-11-30")
    assert reply == f"8,Exception : {act}, QDateTimeEdit is read only"
    assert input_events(plain) == []
    plain.do("paste")
    before, after = plain.events("clipboard")
    assert before == after != "clipboard 2020-11-30"
    assert plain.get("readOnlyDate", "text") == "2001-02-03"


@pytest.mark.shared
@pytest.mark.parametrize("act", ["activate", "enter"])
@pytest.mark.parametrize("value", ["i:20200101", "b:true", ""])
def test_a_date_edit_takes_nothing_but_strings(plain, act, value):
    assert getattr(plain, act)(WINDOW, "date", value) == type_error("date", "QDateEdit", "string")
    assert input_events(plain) == []


def test_a_date_edit_that_dies_is_an_error(plain):
    assert plain.activate(WINDOW, "doomedDate", "s:2020-11-30") == DIED
    assert plain.events("died") == ["died doomedDate"]


def test_the_text_is_left_on_the_clipboard(plain):
    plain.enter(WINDOW, "date", "s:2020-11-30")
    plain.do("paste")
    assert plain.events("clipboard") == ["clipboard 2020-11-30"]


def test_another_application_may_own_the_clipboard(app, launch):
    owner = launch("clipboardhost", serve=False)
    for text in ("2020-11-30", "2021-01-02", "2022-03-04"):
        owner.do("copy")
        assert app.activate(WINDOW, "date", f"s:{text}") == "0,QDateEdit"
        assert app.get("date", "text") == text

    def pasted():
        owner.do("paste")
        return owner.events("clipboard")[-1]

    # It hears from the system a moment later that it does not own the clipboard any more.
    eventually(pasted, "clipboard 2022-03-04")
