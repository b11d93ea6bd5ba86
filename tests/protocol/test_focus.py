"""+focus: the keyboard focus, as the Tab key gives it."""

import pytest

from extensions import extension, hexadecimal
from hostapp import eventually

WINDOW = "Keys \xe4"


@pytest.fixture
def app(launch):
    return launch("keyhost")


def focus(app, locator, window=WINDOW):
    return app.request(extension("+focus", window, locator))


@pytest.mark.parametrize(
    "name, class_name",
    [("plain", "QPlainTextEdit"), ("custom", "QWidget"), ("spin", "QSpinBox"), ("button", "QPushButton")],
)
def test_a_widget_gets_the_focus(app, name, class_name):
    assert focus(app, f"path={name}") == f"0,{class_name}"
    app.do("focus")
    assert app.journal.pop() == f"focus {name}"


def test_a_field_has_its_text_selected_as_after_the_tab_key(app):
    app.request(extension("+type", WINDOW, "path=line", "old"))
    focus(app, "path=custom")
    focus(app, "path=line")
    app.request(extension("+type", WINDOW, "", "new"))
    app.wait_until("line", "text", "new")


@pytest.mark.parametrize(
    "name, reason",
    [
        ("disabled", "disabled"),
        ("mute", "takes no keyboard focus"),
        ("giver", "gives the keyboard focus away"),
    ],
)
def test_a_widget_that_refuses_it_says_why(app, name, reason):
    assert focus(app, f"path={name}") == f"9,{reason}"
    app.do("enable")
    if name == "disabled":
        assert focus(app, "path=disabled") == "0,QLineEdit"


def test_a_widget_behind_a_popup_or_a_dialog_does_not_get_it(app):
    app.request(extension("+press", WINDOW, "", "Alt+F"))
    app.wait_for("opened fileMenu")
    assert focus(app, "path=line") == "9,behind a popup"
    app.request(extension("+press", WINDOW, "", "O"))
    app.wait_until("dialog", "isActiveWindow", "true")
    assert focus(app, "path=line") == f"4,Window ({hexadecimal(WINDOW)}) not active modal"
    assert focus(app, "path=cancel", "Name") == "0,QPushButton"
    app.request(extension("+press", "Name", "", "Space"))
    app.wait_for("dialog 0 ''")


def test_a_window_itself_takes_none(app):
    assert focus(app, "") in ("0,QMainWindow", "9,takes no keyboard focus")
    eventually(lambda: app.get("window", "isActiveWindow"), "true")
