"""Under which class a widget is served, and what plain widgets refuse."""

import pytest

from refusals import nothing_happens


pytestmark = pytest.mark.shared


@pytest.fixture
def app(launch):
    return launch("corehost")


def served(app, path, class_name=""):
    return app.read("Editor", path, "silkClassName", class_name=class_name)


def test_a_push_button_is_served_as_push_button(app):
    assert served(app, "twin") == "u:QPushButton"


def test_a_base_class_can_be_asked_for(app):
    assert served(app, "twin", "QAbstractButton") == "u:QAbstractButton"
    assert served(app, "twin", "QWidget") == "u:QWidget"
    assert app.activate("Editor", "twin", class_name="QAbstractButton") == "0,QAbstractButton"


@pytest.mark.parametrize(
    "class_name", ["QComboBox", "QCheckBox", "QObject", "ValueWidget", "qpushbutton", "QPushButton "]
)
def test_another_class_is_refused(app, class_name):
    reply = f"8,Exception : Widget is not derived from class {class_name}"
    with nothing_happens(app):
        assert served(app, "twin", class_name) == reply
        assert app.activate("Editor", "twin", class_name=class_name) == reply


def test_a_custom_widget_falls_to_its_nearest_registered_base_class(app):
    assert served(app, "canvas") == "u:QWidget"
    assert app.read("Editor", "canvas", "className") == "u:ValueWidget"


@pytest.mark.parametrize("operation", ["activate", "enter"])
def test_a_plain_widget_refuses_by_its_own_class(app, operation):
    reply = f'8,Exception : "{operation}" is not implemented for widget of class "ValueWidget"'
    with nothing_happens(app):
        assert getattr(app, operation)("Editor", "canvas", "s:x") == reply


@pytest.mark.parametrize("name", ["twin", "a/ok"])
def test_buttons_refuse_text(app, name):
    reply = '8,Exception : "enter" is not implemented for widget of class "QPushButton"'
    with nothing_happens(app):
        assert app.enter("Editor", name, "s:x") == reply


@pytest.mark.parametrize(
    "text, shown",
    [
        ("100%%", "100%"),
        ("%s", "%s"),
        ("%n", "%n"),
        ("%999999d", "%999999d"),
        ("%*d", "%*d"),
        ("%%d%s%%", "%d%s%"),
        ("%", "%"),
        ("%1$n", "%1$n"),
        ("%.2147483647f", "%.2147483647f"),
    ],
)
def test_a_class_name_is_a_format_without_arguments(app, text, shown):
    assert served(app, "twin", text) == f"8,Exception : Widget is not derived from class {shown}"


def test_a_message_is_cut_at_2047_bytes(app):
    reply = served(app, "twin", "x" * 5000)
    message = reply[len("8,Exception : ") :]
    assert message == ("Widget is not derived from class " + "x" * 5000)[:2047]


@pytest.mark.parametrize("path", ["100%s%n", "central/100%s%n"])
def test_an_object_name_with_conversions_is_only_a_name(app, path):
    with nothing_happens(app):
        reply = app.activate("Editor", path, "i:1")
        assert reply == (
            '8,Exception : Type error: object "100%s%n" of class "QPushButton" accepts bool, none.'
        )
