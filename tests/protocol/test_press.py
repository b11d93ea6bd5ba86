"""+press: keys travel as real ones do, to shortcuts, menus, dialogs and filters."""

import pytest

from extensions import extension, hexadecimal
from hostapp import eventually
from replies import error

WINDOW = "Keys \xe4"
SHIFT, CTRL, ALT, META, NUM = 0x2000000, 0x4000000, 0x8000000, 0x10000000, 0x20000000
KEY_SHIFT, KEY_CTRL, KEY_ALT, KEY_META = 0x1000020, 0x1000021, 0x1000023, 0x1000022
POPUP = "Widget:ActivePopupWidget"


@pytest.fixture
def app(launch):
    return launch("keyhost")


def press(app, keys, locator="", mode="", window=WINDOW):
    return app.request(extension("+press", window, locator, keys, mode))


def focus(app, name):
    assert app.request(extension("+focus", WINDOW, f"path={name}")).startswith("0,")
    app.forget()


def keys_at(app, name):
    """The key events that the widget has seen, without its name."""
    return [
        line.replace(f" {name} ", " ") for line in app.events("keypress", "keyrelease") if f" {name} " in line
    ]


def down(key, text="", modifiers=0):
    return f"keypress {key} '{text}' modifiers {modifiers}"


def up(key, text="", modifiers=0):
    return f"keyrelease {key} '{text}' modifiers {modifiers}"


@pytest.mark.parametrize(
    "keys, key, text",
    [
        ("A", 65, "a"),
        ("a", 65, "a"),
        ("5", 53, "5"),
        ("+", 43, "+"),
        (",", 44, ","),
        ("\xe4", 0xC4, "\xe4"),
        ("\u20ac", 0x20AC, "\u20ac"),
        ("\U0001f600", 0x1F600, "\U0001f600"),
        ("Space", 32, " "),
        ("Return", 0x1000004, "\r"),
        ("Enter", 0x1000005, "\r"),
        ("Tab", 0x1000001, "\t"),
        ("Esc", 0x1000000, "\x1b"),
        ("Backspace", 0x1000003, "\b"),
        ("Del", 0x1000007, "\x7f"),
        ("F2", 0x1000031, ""),
        ("pgdown", 0x1000017, ""),
        ("F35", 0x1000052, ""),
    ],
)
def test_a_key_goes_down_and_up_with_the_text_that_a_keyboard_gives(app, keys, key, text):
    focus(app, "custom")
    assert press(app, keys) == "0,QWidget"
    assert keys_at(app, "custom") == [down(key, text), up(key, text)]


@pytest.mark.parametrize(
    "keys, text", [("Ctrl+A", "\x01"), ("Ctrl+3", "\x1b"), ("Ctrl+/", "\x1f"), ("Ctrl+0", "0")]
)
def test_ctrl_makes_control_characters_of_letters(app, keys, text):
    focus(app, "custom")
    press(app, keys)
    app.settle()
    assert app.get("custom", "typed") == text
    assert keys_at(app, "custom")[1].endswith(f"'{text}' modifiers {CTRL}")


@pytest.mark.parametrize(
    "keys, modifier, own, key, text",
    [
        ("Shift+A", SHIFT, KEY_SHIFT, 65, "A"),
        ("shift+\xe4", SHIFT, KEY_SHIFT, 0xC4, "\xc4"),
        ("Shift+Tab", SHIFT, KEY_SHIFT, 0x1000002, ""),
        ("Backtab", SHIFT, KEY_SHIFT, 0x1000002, ""),
        ("Alt+X", ALT, KEY_ALT, 88, "x"),
        ("Meta+X", META, KEY_META, 88, "x"),
        ("Ctrl+Q", CTRL, KEY_CTRL, 81, "\x11"),
    ],
)
def test_modifiers_are_pressed_before_the_key_and_released_after_it(app, keys, modifier, own, key, text):
    focus(app, "custom")
    press(app, keys)
    assert keys_at(app, "custom") == [
        down(own, "", modifier),
        down(key, text, modifier),
        up(key, text, modifier),
        up(own),
    ]


def test_several_modifiers_are_released_in_the_reverse_order(app):
    focus(app, "custom")
    press(app, "Alt+Ctrl+Shift+Num+7")
    every = SHIFT | CTRL | ALT
    assert keys_at(app, "custom") == [
        down(KEY_SHIFT, "", SHIFT),
        down(KEY_CTRL, "", SHIFT | CTRL),
        down(KEY_ALT, "", every),
        down(55, "\x1f", every | NUM),
        up(55, "\x1f", every | NUM),
        up(KEY_ALT, "", SHIFT | CTRL),
        up(KEY_CTRL, "", SHIFT),
        up(KEY_SHIFT),
    ]


def test_a_modifier_alone_is_a_key(app):
    focus(app, "custom")
    press(app, "Ctrl+Shift")
    assert keys_at(app, "custom") == [
        down(KEY_CTRL, "", CTRL),
        down(KEY_SHIFT, "", CTRL | SHIFT),
        up(KEY_SHIFT, "", CTRL),
        up(KEY_CTRL),
    ]


def test_a_key_that_is_held_is_held_for_those_that_follow(app):
    focus(app, "custom")
    assert press(app, "Shift", mode="press") == "0,QWidget"
    press(app, "A")
    app.request(extension("+type", WINDOW, "", "b"))
    press(app, "Shift", mode="release")
    press(app, "A")
    assert keys_at(app, "custom") == [
        down(KEY_SHIFT, "", SHIFT),
        *(down(65, "A", SHIFT), up(65, "A", SHIFT)),
        *(down(66, "B", SHIFT), up(66, "B", SHIFT)),
        up(KEY_SHIFT),
        *(down(65, "a"), up(65, "a")),
    ]


def test_half_of_a_stroke_has_half_of_its_events(app):
    focus(app, "custom")
    press(app, "Shift+Q", mode="press")
    assert keys_at(app, "custom") == [down(KEY_SHIFT, "", SHIFT), down(81, "Q", SHIFT)]
    app.forget()
    press(app, "Shift+Q", mode="release")
    assert keys_at(app, "custom") == [up(81, "Q", SHIFT), up(KEY_SHIFT)]


def test_a_shortcut_of_a_menu_is_found_and_its_key_reaches_no_widget(app):
    focus(app, "custom")
    assert press(app, "Ctrl+S") == "0,QWidget"
    app.wait_for(f"triggered saveAction modifiers {CTRL}")
    assert keys_at(app, "custom") == [
        down(KEY_CTRL, "", CTRL),
        up(83, "\x13", CTRL),
        up(KEY_CTRL),
    ]
    assert app.get("custom", "typed") == ""


@pytest.mark.parametrize(
    "keys, event",
    [
        ("Ctrl++", "triggered zoomAction"),
        ("Ctrl+,", "activated comma"),
        ("F7", "activated help"),
        ("Ctrl+Shift+Tab", "activated back"),
        ("Ctrl+K, Ctrl+C", "activated comment"),
        ("Ctrl+K,Ctrl+C", "activated comment"),
    ],
)
def test_shortcuts_are_found_wherever_the_focus_is(app, keys, event):
    focus(app, "line")
    assert press(app, keys) == "0,QLineEdit"
    app.settle()
    assert [line for line in app.events("triggered", "activated", "ambiguous") if line.startswith(event)]


def test_strokes_of_a_shortcut_may_come_in_requests_of_their_own(app):
    focus(app, "line")
    press(app, "Ctrl+K")
    assert app.events("activated") == []
    press(app, "Ctrl+C")
    assert app.events("activated") == ["activated comment"]


def test_two_shortcuts_of_the_same_keys_are_ambiguous(app):
    focus(app, "line")
    press(app, "Ctrl+D")
    assert app.events("activated", "ambiguous")[0].startswith("ambiguous ")


def test_a_widget_can_have_a_key_that_is_a_shortcut_elsewhere(app):
    focus(app, "custom")
    press(app, "F7")
    assert app.events("activated") == []
    assert down(0x1000036) in keys_at(app, "custom")


def test_an_event_filter_can_keep_a_key(app):
    focus(app, "line")
    press(app, "Q")
    press(app, "X")
    press(app, "W")
    app.settle()
    assert app.get("line", "text") == "qw"


def test_alt_and_a_letter_open_a_menu_and_then_keys_are_for_the_menu(app):
    focus(app, "custom")
    press(app, "Alt+F")
    app.wait_for("opened fileMenu")
    assert app.get("fileMenu", "visible") == "true"
    app.forget()
    assert press(app, "Down") == "0,QMenu"
    assert press(app, "Z", window=POPUP) == "0,QMenu"
    app.wait_for("closed fileMenu")
    assert [line.rsplit(" ", 1)[0] for line in app.events("triggered")] == ["triggered zoomAction modifiers"]
    assert app.get("custom", "typed") == ""


def test_alt_and_the_letter_of_a_button_press_it(app):
    focus(app, "line")
    press(app, "Alt+B")
    app.wait_for("clicked button")


def test_escape_closes_a_menu(app):
    press(app, "Alt+F")
    app.wait_for("opened fileMenu")
    assert press(app, "Esc", window=POPUP) == "0,QMenu"
    app.wait_for("closed fileMenu")


def test_the_list_of_a_combo_box_gets_the_keys_while_it_is_open(app):
    focus(app, "combo")
    press(app, "Alt+Down")
    eventually(lambda: app.request("8," + POPUP)[:2], "0,")
    assert press(app, "Down") != "0,QComboBox"
    assert press(app, "Return", window=POPUP).startswith("0,")
    app.wait_until("combo", "currentIndex", "1")


def test_a_widget_behind_a_popup_waits_for_it(app):
    press(app, "Alt+F")
    app.wait_for("opened fileMenu")
    assert press(app, "Q", "path=custom") == "9,behind a popup"
    press(app, "Esc")
    app.wait_for("closed fileMenu")
    assert press(app, "Q", "path=custom") == "0,QWidget"


def test_a_key_that_opens_a_dialog_has_its_reply_and_the_next_keys_are_for_the_dialog(app):
    focus(app, "line")
    assert press(app, "Ctrl+O") == "0,QLineEdit"
    app.wait_until("dialog", "isActiveWindow", "true")
    assert press(app, "A") == f"4,Window ({hexadecimal(WINDOW)}) not active modal"
    assert app.request(extension("+type", "Name", "path=name", "Ada")) == "0,QLineEdit"
    assert press(app, "Return", window="Name") == "0,QLineEdit"
    app.wait_for("dialog 1 'Ada'")
    assert app.get("line", "text") == ""


def test_escape_rejects_a_dialog(app):
    press(app, "Ctrl+O")
    app.wait_until("dialog", "isActiveWindow", "true")
    press(app, "Esc", window="Name")
    app.wait_for("dialog 0 ''")


def test_the_keys_of_one_request_follow_the_focus_into_a_window_that_they_open(app):
    focus(app, "line")
    assert press(app, "Alt+F, S") == "0,QLineEdit"
    app.wait_for("closed fileMenu")
    assert [line.split(" ")[1] for line in app.events("triggered")] == ["saveAction"]


def test_a_locator_gives_the_focus_to_its_widget_first(app):
    focus(app, "line")
    assert press(app, "F2", "path=custom") == "0,QWidget"
    assert down(0x1000031) in keys_at(app, "custom")
    assert app.get("custom", "focus") == "true"


def test_the_menu_key_asks_for_a_context_menu(app):
    focus(app, "custom")
    press(app, "Menu")
    assert [line for line in app.events("contextmenu") if line.endswith("reason 1")]


@pytest.mark.parametrize(
    "locator, reply",
    [
        ("path=disabled", "9,disabled"),
        ("path=mute", "9,takes no keyboard focus"),
        ("path=giver", "9,gives the keyboard focus away"),
        ("path=nothing", f"5,Widget ({hexadecimal('path=nothing')}) not found"),
    ],
)
def test_a_widget_that_cannot_have_the_keys_is_refused(app, locator, reply):
    focus(app, "line")
    assert press(app, "Q", locator).startswith(reply)
    assert app.events("keypress") == []


def test_a_disabled_widget_gets_its_keys_once_it_is_enabled(app):
    assert press(app, "Q", "path=disabled") == "9,disabled"
    app.do("enable")
    assert press(app, "Q", "path=disabled") == "0,QLineEdit"
    app.wait_until("disabled", "text", "q")


def test_a_window_that_is_not_there_is_refused_as_by_the_commands(app):
    assert press(app, "Q", window="Nothing") == f"2,Window ({hexadecimal('Nothing')}) not found"


@pytest.mark.shared
@pytest.mark.parametrize(
    "keys, name",
    [
        ("", ""),
        ("Foo", "Foo"),
        ("Ctrl+Foo", "Foo"),
        ("Ctrl+", "Ctrl+"),
        ("Foo+A", "Foo+A"),
        ("Ctrl+K,", ""),
        ("ab", "ab"),
        ("Num", "Num"),
        ("a" * 100, "a" * 100),
    ],
)
def test_keys_that_there_are_not_are_an_error(app, keys, name):
    assert press(app, keys) == error(f'Unknown key "{name}"')


@pytest.mark.shared
def test_more_than_four_strokes_and_several_that_are_held_are_errors(app):
    assert press(app, "A, B, C, D, E") == error("At most 4 key strokes are pressed at a time")
    assert press(app, "A, B", mode="press") == error("Only one key stroke can be held")
    assert press(app, "A", mode="hold") == error('Unknown mode "hold"')
    assert app.request("+press,zz,,41") == error("Section 1 is not hexadecimal")
