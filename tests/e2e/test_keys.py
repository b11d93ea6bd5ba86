"""Keys, typed text, the wheel, the focus and the clipboard, as tests write them, in the showcase."""

import sys
from pathlib import Path

import pytest

sys.path.append(str(Path(__file__).resolve().parents[1] / "protocol"))

from hostapp import HostApp
from qtdriver import errors, eventually
from showcase import running

FIELDS = "Entry fields"


@pytest.fixture(scope="module")
def started():
    with running() as pair:
        yield pair


@pytest.fixture(scope="module")
def app(started):
    return started[1]


@pytest.fixture
def window(app):
    window = app.window("Roastery")
    window.widget("pages/qt_tabwidget_tabbar").select(FIELDS)
    return window


def test_a_shortcut_is_pressed_on_the_window_and_opens_a_dialog_that_takes_keys(app, window):
    window.press("Ctrl+N")
    dialog = app.modal("New order")
    assert dialog.is_open() or dialog.title()
    dialog.press("Esc")
    eventually(dialog).is_closed()


def test_text_is_typed_where_the_caret_is(window):
    note = window.widget("noteEdit")
    note.focus()
    window.type("Grüße €\n\U0001f600")
    eventually(note).has(plainText="Grüße €\n\U0001f600")
    window.press("Ctrl+Home")
    note.type("> ")
    eventually(note).has(plainText="> Grüße €\n\U0001f600")
    note.fill("")


@pytest.mark.parametrize("method", ["type", "fill"])
def test_a_long_text_is_typed_in_parts_each_of_which_is_answered(app, window, method):
    note = window.widget("noteEdit")
    note.fill("")
    text = "x" + "".join(f"{line}\r\n" for line in range(250))  # 500 characters end within a line break
    before = len(app.connection.transcript.exchanges())
    getattr(note, method)(text)
    eventually(note).has(plainText=text.replace("\r\n", "\n"))
    requests = [exchange.request for exchange in app.connection.transcript.exchanges()[before:]]
    assert sum(request.startswith("+type,") for request in requests) == 2
    note.fill("")


def test_five_thousand_characters_arrive_in_a_plain_editor(started):
    """The showcase's field is slower: it reads the whole text at each character."""
    host = HostApp("keyhost", serve=False)
    app = started[0].attach(pid=host.process.pid)
    plain = app.window("Keys").widget("plain")
    text = "".join(f"{line:03d} Grüße, and no character is lost on the way: €\n" for line in range(100))
    plain.type(text)
    eventually(plain).has(plainText=text)
    assert len(text) == 5000
    assert host.close() == 0


@pytest.mark.parametrize(
    "name, text, prop",
    [
        ("customerEdit", "Łukasz €", "text"),
        ("noteEdit", "one\ntwo", "plainText"),
        ("cupSpin", "12", "cleanText"),
        ("weightSpin", "2.25", "cleanText"),
        ("originCombo", "Perú €", "currentText"),
    ],
)
def test_a_field_is_filled_and_shows_it(window, name, text, prop):
    field = window.widget(name)
    field.fill(text)
    assert field.read(prop) == text
    field.fill(text)
    assert field.read(prop) == text


def test_a_field_that_does_not_take_a_text_says_what_it_shows(window):
    with pytest.raises(errors.ConditionError, match="'12' after fill.*'12x'|has the text '12'"):
        window.widget("cupSpin").fill("12x", timeout=0.5)


def test_keys_are_held_and_released(window):
    field = window.widget("customerEdit")
    field.fill("abcd")
    with window.holding("Shift"):
        window.press("Left", "Left")
    window.press("X")
    eventually(field).has(text="abx")


def test_the_wheel_turns_what_is_under_it(window):
    slider = window.widget("strengthSlider")
    before = slider.read("value")
    slider.wheel(up=1)
    eventually(slider).has(value=lambda value: value > before)
    slider.wheel(down=1, at=(0.5, 0.5))
    eventually(slider).has(value=before)
    with pytest.raises(ValueError, match="shares from 0.0 to 1.0"):
        slider.wheel(down=1, at=(2, 0.5))


def test_the_focus_is_given_as_by_the_tab_key(window):
    field = window.widget("customerEdit")
    field.fill("old")
    window.widget("noteEdit").focus()
    field.focus()
    window.type("new")
    eventually(field).has(text="new")


def test_what_refuses_keys_is_waited_for_and_then_tells_the_reason(window):
    with pytest.raises(errors.NotReadyError, match="takes no keyboard focus\nwaited 0.2 s"):
        window.widget("heatLabel").press("A", timeout=0.2)
    with pytest.raises(errors.WidgetNotFoundError, match="nowhere"):
        window.widget("nowhere").type("a", timeout=0)
    with pytest.raises(errors.CommandError, match='Unknown key "Foo"'):
        window.press("Ctrl+Foo")
    with pytest.raises(ValueError, match="at least one key"):
        window.press()


def test_the_clipboard_is_set_and_read_without_another_program(app, window, monkeypatch):
    monkeypatch.setenv("PATH", "")
    app.clipboard.set("€ \U0001f600\n")
    assert app.clipboard.get() == app.clipboard() == "€ \U0001f600\n"
    eventually(app.clipboard).equals("€ \U0001f600\n")
    field = window.widget("customerEdit")
    field.fill("copied €")
    field.press("Ctrl+A", "Ctrl+C")
    eventually(app.clipboard).equals("copied €")


def test_entering_takes_every_character(window):
    field = window.widget("customerEdit")
    field.enter("5 €")
    eventually(field).has(text="5 €")


def test_without_extensions_keys_say_what_they_need(app, window, monkeypatch):
    monkeypatch.setattr(app.connection, "_extensions", frozenset())
    with pytest.raises(errors.OldAgentError, match='newer agent.*"[+]press"'):
        window.press("F2")
    with pytest.raises(errors.OldAgentError, match="clipboard"):
        app.clipboard.set("x")
    assert isinstance(app.clipboard.get(), str)
