"""Buttons, as a test drives them: what they accept, where they are clicked, what the application sees."""

import pytest

from hostapp import QT

STYLES = ["windows", "plastique" if QT == 4 else "fusion"]
WINDOW = "Buttons"


@pytest.fixture(params=STYLES)
def style(request):
    return request.param


@pytest.fixture(params=[[], ["-reverse"]], ids=["left-to-right", "right-to-left"])
def app(launch, style, request):
    return launch("buttonhost", "-style", style, *request.param)


@pytest.fixture
def plain(launch):
    return launch("buttonhost", "-style", STYLES[0])


def center(app, name):
    rect = app.get(name, "geometry")
    width, height = map(int, rect.split(" ")[1].split("x"))
    return f"{(width - 1) // 2},{(height - 1) // 2}"


@pytest.mark.parametrize("name", ["push", "toggle", "first", "link", "tool", "split"])
def test_activating_without_a_value_clicks_once(app, name):
    app.activate(WINDOW, name)
    app.wait_for(f"clicked {name}")
    assert app.events("clicked") == [f"clicked {name}"]


def test_a_push_button_is_clicked_at_its_center(plain):
    assert plain.activate(WINDOW, "push") == "0,QPushButton"
    assert plain.events("press", "release") == [
        f"press push {center(plain, 'push')} button 1 buttons 1 modifiers 0",
        f"release push {center(plain, 'push')} button 1 buttons 0 modifiers 0",
    ]


@pytest.mark.parametrize("name", ["check", "second", "toggle"])
def test_a_bool_toggles_only_when_needed(app, name):
    for value, state in (("b:true", "true"), ("b:true", "true")):
        assert app.activate(WINDOW, name, value).startswith("0,")
    app.wait_for(f"toggled {name} true")
    assert app.get(name, "checked") == "true"
    assert app.events("clicked") == [f"clicked {name}"]


def test_unchecking_a_check_box_clicks_it_once(app):
    app.activate(WINDOW, "check", "b:true")
    app.activate(WINDOW, "check", "b:false")
    app.wait_for("toggled check false")
    assert app.events("clicked") == ["clicked check", "clicked check"]


def test_a_checkable_group_box_is_toggled_at_its_check_box(app):
    assert app.activate(WINDOW, "checkableBox", "b:false") == "0,QGroupBox"
    app.wait_for("toggled checkableBox false")
    app.activate(WINDOW, "checkableBox", "b:false")
    app.activate(WINDOW, "checkableBox", "b:true")
    app.wait_for("toggled checkableBox true")
    assert len(app.events("toggled")) == 2
