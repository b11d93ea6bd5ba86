"""+type: any text into whatever takes keys."""

import pytest

from extensions import extension, hexadecimal
from hostapp import eventually
from replies import error

WINDOW = "Keys \xe4"
SHIFT = 0x2000000


@pytest.fixture
def app(launch):
    return launch("keyhost")


def type_text(app, text, locator=""):
    return app.request(extension("+type", WINDOW, locator, text))


TEXT = "Grüße €, Ω Ж \U0001f600 it's ß ÿ"


@pytest.mark.parametrize(
    "name, prop, class_name",
    [
        ("plain", "plainText", "QPlainTextEdit"),
        ("rich", "plainText", "QTextEdit"),
        ("custom", "typed", "QWidget"),
        ("line", "text", "QLineEdit"),
    ],
)
def test_all_of_unicode_is_typed(app, name, prop, class_name):
    assert type_text(app, TEXT, f"path={name}") == f"0,{class_name}"
    app.settle()
    assert app.get(name, prop) == TEXT


@pytest.mark.parametrize("name", ["plain", "rich"])
def test_line_breaks_are_the_return_key_and_a_pair_of_characters_is_one(app, name):
    assert type_text(app, "one\ntwo\r\nthree\rfour", f"path={name}").startswith("0,")
    app.settle()
    assert app.get(name, "plainText") == "one\\ntwo\\nthree\\nfour"


def test_each_character_is_one_key_with_what_a_keyboard_tells_of_it(app):
    type_text(app, "aB\xe4\U0001f600\t\n\b\x1b\x7f", "path=custom")
    assert [line for line in app.events("keypress") if " custom " in line] == [
        "keypress custom 65 'a' modifiers 0",
        f"keypress custom 66 'B' modifiers {SHIFT}",
        "keypress custom 196 '\xe4' modifiers 0",
        f"keypress custom {0x1F600} '\U0001f600' modifiers 0",
        "keypress custom 16777217 '\t' modifiers 0",
        "keypress custom 16777220 '\r' modifiers 0",
        "keypress custom 16777219 '\b' modifiers 0",
        "keypress custom 16777216 '\x1b' modifiers 0",
        "keypress custom 16777223 '\x7f' modifiers 0",
    ]


def test_a_tab_moves_the_focus_and_the_keys_follow_it(app):
    app.request(extension("+focus", WINDOW, "path=plain"))
    assert type_text(app, "one\ttwo") == "0,QPlainTextEdit"
    app.settle()
    assert (app.get("plain", "plainText"), app.get("rich", "plainText")) == ("one", "two")


def test_text_is_typed_at_the_caret_and_replaces_a_selection_only(app):
    type_text(app, "ac", "path=line")
    app.request(extension("+press", WINDOW, "", "Left"))
    type_text(app, "b", "path=line")
    app.settle()
    assert app.get("line", "text") == "abc"
    app.do("focusCustom")
    type_text(app, "-", "path=line")
    app.settle()
    assert app.get("line", "text") == "ab-c"
    app.request(extension("+press", WINDOW, "path=line", "Ctrl+A"))
    type_text(app, "new", "path=line")
    app.settle()
    assert app.get("line", "text") == "new"


def test_a_spin_box_and_a_combo_box_take_what_their_users_would_type(app):
    app.request(extension("+press", WINDOW, "path=spin", "Ctrl+A"))
    assert type_text(app, "123\n", "path=spin").startswith("0,")
    app.wait_until("spin", "value", "123")
    assert type_text(app, "gr", "path=combo") == "0,QComboBox"
    app.wait_until("combo", "currentIndex", "1")


def test_no_text_types_nothing_and_gives_the_focus(app):
    assert type_text(app, "", "path=custom") == "0,QWidget"
    assert app.get("custom", "focus") == "true"
    assert [line for line in app.events("keypress") if " custom " in line] == []


def test_a_dialog_that_the_last_key_opens_or_ends_does_not_hold_the_reply(app):
    app.request(extension("+focus", WINDOW, "path=line"))
    assert app.request(extension("+press", WINDOW, "", "Ctrl+O")) == "0,QLineEdit"
    app.wait_until("dialog", "isActiveWindow", "true")
    assert app.request(extension("+type", "Name", "path=name", "Ada\n")) == "0,QLineEdit"
    app.wait_for("dialog 1 'Ada'")


def test_a_widget_that_dies_on_the_way_ends_the_typing(app):
    assert type_text(app, "abcdef", "path=victim") == error("Internal error, proxy without widget")
    assert app.get("victim", "text") == "<no object victim>"
    assert not any("'e'" in line for line in app.events("keypress"))


def test_a_widget_may_die_of_the_last_key(app):
    assert type_text(app, "abcd", "path=victim") == "0,QLineEdit"
    eventually(lambda: app.get("victim", "text"), "<no object victim>")


@pytest.mark.parametrize("length", [100001, 8 * 1024 * 1024 - 100])
def test_a_text_that_would_keep_the_application_from_all_else_is_refused(app, length):
    refused = error("At most 100000 characters are typed at a time")
    assert type_text(app, "x" * length, "name=plain") == refused
    assert app.get("plain", "plainText") == ""
    assert type_text(app, "y", "name=plain").startswith("0,")
    app.wait_until("plain", "plainText", "y")


def test_thousands_of_characters_arrive_as_they_are(app):
    text = "abcdefghi " * 1000
    assert type_text(app, text, "path=custom") == "0,QWidget"
    app.settle()
    assert app.get("custom", "typed") == text
    app.forget()


@pytest.fixture
def login(launch):
    return launch("loginhost")


def to_login(login, name, locator, text, window="Widget:login"):
    return login.request(extension(name, window, locator, text))


def test_the_reply_tells_which_keys_went_to_a_field_that_hides_its_text(login):
    assert to_login(login, "+type", "path=userEdit", "ada\npin\t!") == "0,QLineEdit,hidden:4-7"
    assert to_login(login, "+type", "path=userEdit", "one") == "0,QLineEdit"
    assert to_login(login, "+type", "path=pinEdit", "\U0001f600e\r\n") == "0,QLineEdit,hidden:0-2"
    assert to_login(login, "+press", "path=pinEdit", "Shift+A, Tab, B") == "0,QLineEdit,hidden:0-1"
    assert to_login(login, "+press", "path=pinBox", "A") == "0,QComboBox,hidden:0-0"


def test_the_reply_to_a_value_tells_whether_it_went_to_a_field_that_hides_its_text(login):
    def enter(locator, text):
        return login.request(extension("+6", "Widget:login", locator, "", f"s:{text}"))

    assert enter("path=keyList", "secret") == "0,QListView,hidden"
    assert enter("path=pinEdit", "secret") == "0,QLineEdit,hidden"
    assert enter("path=userEdit", "ada") == "0,QLineEdit"


def test_the_agent_tells_whether_the_last_value_went_to_a_field_that_hides_its_text(login):
    def was_hidden():
        return login.request("+hidden")

    window = "Widget:login"
    assert was_hidden() == "0,b:false"
    assert login.enter(window, "keyList", "s:secret") == "0,QListView"
    login.request(extension("+type", window, "path=notesEdit", "kept"))
    assert [was_hidden(), was_hidden()] == ["0,b:true", "0,b:true"]
    assert login.enter(window, "userEdit", "s:ada") == "0,QLineEdit"
    assert was_hidden() == "0,b:false"
    login.request(extension("+focus", window, "path=keyList"))
    assert login.enter(window, "FocusWidget", "s:" + "x" * 41) == error("enter, QLineEdit validate error")
    assert login.read_line() == "", "that message ends in a line break"
    assert was_hidden() == "0,b:true", "the keys of a value that fails count too"
    assert login.enter(window, "nothing", "s:ada").startswith("5,")
    assert was_hidden() == "0,b:false"
    assert login.request(extension("+6", window, "path=pinEdit", "", "s:pin")) == "0,QLineEdit,hidden"
    assert was_hidden() == "0,b:true"


def test_an_editor_that_the_first_key_opens_hides_that_key_too(login):
    assert to_login(login, "+type", "path=keyList", "s") == "0,QListWidget,hidden:0-0"
    assert to_login(login, "+type", "", "ecret\nx").endswith(",hidden:0-6")
    assert to_login(login, "+press", "path=keyList", "Escape, Down") == "0,QLineEdit,hidden:0-0"


def test_a_dialog_that_opens_in_the_middle_of_a_text_gets_the_rest_and_holds_no_reply(login):
    assert to_login(login, "+type", "path=askButton", "xqone\t two") == "0,QPushButton"
    for dialog, text in (("asked1", "two"), ("asked0", "one")):
        window = f"Widget:{dialog}"
        eventually(
            lambda: login.request(extension("+7", window, "name=askedEdit", "", "text", "")),
            f"0,u:{hexadecimal(text)}",
        )
        assert to_login(login, "+press", "", "Escape", window)[:2] == "0,"
    assert to_login(login, "+type", "path=userEdit", "ada") == "0,QLineEdit"
    login.wait_until("userEdit", "text", "ada")


def test_the_keys_behind_one_for_which_the_application_waits_come_when_it_has_waited(login):
    """Nobody can tell a wait for a server from one for a user; only a window shows that the keys are to go on."""
    login.send(extension("+type", "Widget:login", "path=waitEdit", "wxy").encode("ascii") + b"\n")
    login.wait_for("waiting")
    assert login.get("waitEdit", "text") == "w"
    login.do("goOn")
    assert login.read_line() == "0,QLineEdit"
    assert "waited 'w'" in login.events()
    assert login.get("waitEdit", "text") == "wxy"


def test_a_last_key_for_which_the_application_waits_holds_no_reply(login):
    assert to_login(login, "+type", "path=waitEdit", "xw") == "0,QLineEdit"
    login.wait_for("waiting")
    assert to_login(login, "+type", "path=userEdit", "ada") == "0,QLineEdit"
    login.do("goOn")
    login.wait_for("waited 'xw'")
