"""Line edits and text edits, as a test drives them."""

import pytest

from entryfields import (
    BUILT_IN_PROPERTIES,
    CLEAR,
    DIED,
    WINDOW,
    center,
    disabled,
    input_events,
    keys,
    launched,
    not_implemented,
    press_in,
    type_error,
)
from hostapp import WINDOWS


@pytest.fixture
def app(launch):
    return launched(launch)


# Line edits


def test_a_line_edit_is_clicked_at_its_center_cleared_and_typed_into(app):
    assert app.enter(WINDOW, "line", "s:aB1") == "0,QLineEdit"
    assert app.events("press", "release") == [
        f"press line {center(app, 'line')} button 1 buttons 1 modifiers 0",
        f"release line {center(app, 'line')} button 1 buttons 0 modifiers 0",
    ]
    assert keys(app, "line") == keys(app, "line", "keyrelease") == [*CLEAR, "a", "B", "1"]
    assert app.events("edited") == [f"edited line {text}" for text in ("", "a", "aB", "aB1")]
    assert app.get("line", "text") == "aB1"


def test_a_line_feed_at_the_end_presses_return(app):
    assert app.enter(WINDOW, "line", "s:abc\n") == "0,QLineEdit"
    app.wait_for("returned line")
    assert keys(app, "line") == [*CLEAR, "a", "b", "c", "Return"]
    assert app.get("line", "text") == "abc"


def test_without_a_line_feed_no_return_is_sent(app):
    app.enter(WINDOW, "line", "s:abc")
    assert keys(app, "line") == [*CLEAR, "a", "b", "c"]
    assert app.events("returned") == []


def test_only_one_line_feed_stands_for_return(app):
    app.enter(WINDOW, "empty", "s:a\n\n")
    app.wait_for("returned empty")
    assert keys(app, "empty") == ["a", "\\n", "Return"]


def test_an_empty_line_edit_is_not_cleared(app):
    app.enter(WINDOW, "empty", "s:ab")
    assert keys(app, "empty") == ["a", "b"]
    assert app.get("empty", "text") == "ab"


def test_an_empty_text_clears_the_line_edit(app):
    assert app.enter(WINDOW, "line", "s:") == "0,QLineEdit"
    assert keys(app, "line") == CLEAR
    assert app.get("line", "text") == ""


def test_all_characters_that_the_wire_carries_arrive(app):
    text = "".join(map(chr, [*range(0x20, 0x7F), *range(0xC0, 0x100)]))
    app.enter(WINDOW, "line", "s:" + text)
    assert app.get("line", "text").replace("\\\\", "\\") == text


def test_a_line_edit_keeps_no_more_than_its_maximum_length(app):
    assert app.enter(WINDOW, "short", "s:abcdef") == "0,QLineEdit"
    assert app.get("short", "text") == "abc"


@pytest.mark.parametrize(
    "name, text, kept",
    [("masked", "123-456", "123-456"), ("number", "42", "42"), ("picky", "x y", "x y")],
)
def test_a_constrained_line_edit_is_filled_in_one_piece(app, name, text, kept):
    assert app.enter(WINDOW, name, f"s:{text}") == "0,QLineEdit"
    assert keys(app, name) == CLEAR[:2]
    assert app.events("edited") == [f"edited {name} {kept}"]
    assert app.get(name, "text") == kept


def test_a_constrained_line_edit_takes_return_too(app):
    assert app.enter(WINDOW, "number", "s:42\n") == "0,QLineEdit"
    app.wait_for("returned number")
    assert keys(app, "number") == [*CLEAR[:2], "Return"]
    assert app.get("number", "text") == "42"


@pytest.mark.parametrize(
    "name, text, kept",
    [
        ("masked", "123456", "123-456"),
        ("number", "abc", "7"),
        ("number", "5000", "7"),
        ("picky", "abc", "xyz"),
    ],
)
def test_a_constrained_line_edit_that_keeps_another_text_is_an_error(app, name, text, kept):
    assert app.enter(WINDOW, name, f"s:{text}\n") == "8,Exception : enter, QLineEdit validate error"
    assert app.get(name, "text") == kept
    assert keys(app, name) == CLEAR[:2]
    assert app.events("returned") == []


def test_typing_waits_while_the_window_has_lost_the_focus_for_a_moment(launch):
    app = launch("focushost")
    assert app.enter("Focus", "edit", "s:A-12") == "0,QLineEdit"
    app.wait_until("edit", "text", "A-12")


@pytest.mark.shared
def test_a_read_only_line_edit_is_refused_before_any_input(app):
    assert app.enter(WINDOW, "readOnlyLine", "s:abc") == "8,Exception : enter, QLineEdit is read only"
    assert input_events(app) == []
    assert app.get("readOnlyLine", "text") == "fixed"


@pytest.mark.shared
def test_a_disabled_line_edit_is_refused(app):
    assert app.enter(WINDOW, "disabledLine", "s:abc") == disabled("disabledLine", "QLineEdit")
    assert app.get("disabledLine", "text") == "off"


@pytest.mark.shared
def test_a_hidden_line_edit_is_not_found(app):
    assert app.enter(WINDOW, "hiddenLine", "s:abc").startswith("6,")
    assert app.get("hiddenLine", "text") == "unseen"


@pytest.mark.shared
@pytest.mark.parametrize("value", ["i:5", "b:true", ""])
def test_a_line_edit_takes_nothing_but_strings(app, value):
    assert app.enter(WINDOW, "line", value) == type_error("line", "QLineEdit", "string")
    assert input_events(app) == []


@pytest.mark.shared
def test_a_line_edit_cannot_be_activated(app):
    assert app.activate(WINDOW, "line", "s:abc") == not_implemented("activate", "QLineEdit")


def test_a_list_of_completions_that_pops_up_does_not_stop_the_typing(app):
    assert app.enter(WINDOW, "towns", "s:Aachen\n") == "0,QLineEdit"
    app.wait_for("returned towns")
    assert app.events("edited")[-1] == "edited towns Aachen"
    assert app.get("towns", "text") == "Aachen"


def test_typing_stops_when_the_line_edit_dies(app):
    assert app.enter(WINDOW, "doomedLine", "s:abcdef\n") == DIED
    assert app.events("died") == ["died doomedLine"]
    assert app.events("edited") == ["edited doomedLine a"]
    assert keys(app, "bystander") == keys(app, "bystander", "keyrelease") == []
    assert app.get("bystander", "text") == "untouched"
    assert app.enter(WINDOW, "bystander", "s:next") == "0,QLineEdit"
    assert app.get("bystander", "text") == "next"


def test_a_line_edit_that_dies_with_the_last_character_has_been_entered_into(app):
    assert app.enter(WINDOW, "doomedLine", "s:a") == "0,QLineEdit"
    assert app.events("died") == ["died doomedLine"]
    assert keys(app, "bystander", "keyrelease") == []


def test_return_reaches_no_other_widget_when_the_line_edit_dies(app):
    assert app.enter(WINDOW, "doomedLine", "s:a\n") == DIED
    assert app.events("died", "returned") == ["died doomedLine"]
    assert keys(app, "bystander") == []


def test_a_mouse_command_reaches_a_line_edit(app):
    assert app.mouse(WINDOW, "line", "MouseClick:LeftButton:0:0:") == "0,QLineEdit"
    app.wait_for("press line 0,0 button 1 buttons 1 modifiers 0")


# Text edits


def test_a_text_edit_is_clicked_at_its_center_cleared_and_typed_into(app):
    assert app.enter(WINDOW, "notes", "s:aB1") == "0,QTextEdit"
    assert press_in(app, "notes") == center(app, "notes")
    expected = ["Control+Home", "Control+Shift+End", "Backspace", "a", "B", "1"]
    assert keys(app, "notes") == keys(app, "notes", "keyrelease") == expected
    assert app.get("notes", "plainText") == "aB1"


def test_an_empty_text_edit_is_not_cleared(app):
    app.enter(WINDOW, "emptyNotes", "s:ab")
    assert keys(app, "emptyNotes") == ["a", "b"]
    assert app.get("emptyNotes", "plainText") == "ab"


def test_line_feeds_are_typed_into_a_text_edit_as_characters(app):
    app.enter(WINDOW, "emptyNotes", "s:a\nb\n")
    assert keys(app, "emptyNotes") == ["a", "\\n", "b", "\\n"]
    assert "keypress emptyNotes 0 '\\n' modifiers 0" in app.journal
    assert app.enter(WINDOW, "paragraphs", "s:a\nb\n") == "0,QTextEdit"
    assert app.get("paragraphs", "plainText") == "a\\nb\\n"


@pytest.mark.shared
def test_a_read_only_text_edit_is_refused_before_any_input(app):
    assert app.enter(WINDOW, "readOnlyNotes", "s:abc") == "8,Exception : enter, QTextEdit is read only"
    assert input_events(app) == []
    assert app.get("readOnlyNotes", "plainText") == "old\\ntext"


@pytest.mark.shared
@pytest.mark.parametrize("value", ["i:5", "b:true", ""])
def test_a_text_edit_takes_nothing_but_strings(app, value):
    assert app.enter(WINDOW, "notes", value) == type_error("notes", "QTextEdit", "string")
    assert app.get("notes", "plainText") == "old\\ntext"


@pytest.mark.shared
def test_a_text_edit_cannot_be_activated(app):
    assert app.activate(WINDOW, "notes", "s:abc") == not_implemented("activate", "QTextEdit")


def test_typing_stops_when_the_text_edit_dies(app):
    assert app.enter(WINDOW, "doomedNotes", "s:abcdef") == DIED
    assert app.events("died") == ["died doomedNotes"]
    assert keys(app, "doomedNotes") == ["a"]
    assert app.get("paragraphs", "plainText") == ""


@pytest.mark.shared
@pytest.mark.parametrize("name", ["line", "notes", "amount", "price", "date", "wide"])
def test_fields_without_pseudo_properties_have_the_built_in_ones_only(app, name):
    assert app.read(WINDOW, name, "pseudoPropertyNames") == BUILT_IN_PROPERTIES


# Long texts


def test_a_long_text_is_typed_completely(app):
    # Under Wine a character takes two milliseconds, and many times as long where others have the processor in between,
    # since the program and Wine's server wait for each other at every step.
    text = "the quick brown fox jumps over the dog\n" * (8 if WINDOWS else 128)
    app.socket.settimeout(300)
    assert app.enter(WINDOW, "paragraphs", "s:" + text) == "0,QTextEdit"
    assert app.get("paragraphs", "plainText").replace("\\n", "\n") == text


def test_a_text_of_100000_characters_is_inserted_completely(app):
    text = "xyz " * 25000
    assert app.enter(WINDOW, "longLine", "s:" + text) == "0,QLineEdit"
    assert app.get("longLine", "text") == text
