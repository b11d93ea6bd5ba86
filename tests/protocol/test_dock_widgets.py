"""Dock widgets, as a test drives them: those that share a place come to the front, all others stay as they are."""

import re

import pytest

from styles import STYLES

WINDOW = "Docks"


def ready(app):
    """The application once its dock widgets are in place, its journal still empty."""
    app.wait_until("main", "isActiveWindow", "true")
    app.do("journalTabBars")
    app.forget()
    return app


@pytest.fixture(params=STYLES)
def style(request):
    return request.param


@pytest.fixture(params=[[], ["-reverse"]], ids=["left-to-right", "right-to-left"])
def app(launch, style, request):
    return ready(launch("dockhost", "-style", style, *request.param))


@pytest.fixture
def plain(launch):
    return ready(launch("dockhost"))


def nothing_happened(app):
    return app.events("press", "release", "shown") == []


@pytest.mark.parametrize(
    "dock, front", [("alpha", "disabled"), ("fixed", "disabled"), ("ampersand", "cover")]
)
def test_a_dock_widget_behind_others_comes_to_the_front(app, dock, front):
    assert app.activate(WINDOW, dock) == "0,QDockWidget"
    app.wait_for(f"shown {dock} true")
    app.wait_for(f"shown {front} false")
    assert len(app.events("shown")) == 2


def test_its_tab_is_clicked_once(plain):
    plain.activate(WINDOW, "alpha")
    plain.wait_for("shown alpha true")
    assert [line.split(" ")[:2] for line in plain.events("press", "release", "doubleclick")] == [
        ["press", "tabsOf:Alpha"],
        ["release", "tabsOf:Alpha"],
    ]


def test_dock_widgets_can_be_brought_to_the_front_in_turn(plain):
    for dock in ("alpha", "beta", "fixed", "alpha"):
        plain.forget()
        assert plain.activate(WINDOW, dock) == "0,QDockWidget"
        plain.wait_for(f"shown {dock} true")


def test_one_in_front_already_stays_there(plain):
    assert plain.activate(WINDOW, "cover") == "0,QDockWidget"
    assert len(plain.events("press")) == 1
    assert plain.events("shown") == []


def test_an_option_is_ignored(plain):
    assert plain.activate(WINDOW, "alpha", "", "s:beta") == "0,QDockWidget"
    plain.wait_for("shown alpha true")


@pytest.mark.parametrize("dock", ["firstTwin", "secondTwin"])
def test_of_two_with_the_same_title_the_tab_of_the_first_is_clicked(plain, dock):
    assert plain.activate(WINDOW, dock) == "0,QDockWidget"
    plain.wait_for("shown firstTwin true")
    assert "shown secondTwin true" not in plain.events("shown")


def test_a_changed_title_is_the_one_that_counts(plain):
    plain.do("renameAlpha")
    assert plain.activate(WINDOW, "alpha") == "0,QDockWidget"
    plain.wait_for("shown alpha true")


def test_a_title_that_its_tab_shows_differently_has_no_tab(plain):
    # The place of the "modified" mark is in the title, but not on the tab.
    assert plain.activate(WINDOW, "marked") == "0,QDockWidget"
    assert nothing_happened(plain)


@pytest.mark.parametrize("value", ["s:Alpha", "s:", "i:0", "b:true", "b:false"])
@pytest.mark.parametrize("dock", ["alpha", "alone"])
def test_a_value_is_a_type_error(plain, dock, value):
    error = f'8,Exception : Type error: object "{dock}" of class "QDockWidget" accepts none.'
    assert plain.activate(WINDOW, dock, value) == error
    assert nothing_happened(plain)


def test_a_text_that_is_no_typed_value_is_no_value(plain):
    assert plain.activate(WINDOW, "alpha", "Alpha") == "0,QDockWidget"
    plain.wait_for("shown alpha true")


@pytest.mark.parametrize("dock", ["alone", "inside", "pairShown"])
def test_one_without_tabs_stays_as_it_is(plain, dock):
    assert plain.activate(WINDOW, dock) == "0,QDockWidget"
    assert nothing_happened(plain)


@pytest.mark.parametrize("dock", ["floating", "orphan"])
def test_one_that_is_a_window_of_its_own_stays_as_it_is(plain, dock):
    geometry = plain.get(dock, "geometry")
    assert plain.activate(f"Widget:{dock}", dock) == "0,QDockWidget"
    assert nothing_happened(plain)
    assert plain.get(dock, "geometry") == geometry
    assert plain.get(dock, "floating") == "true"


def test_one_that_leaves_its_tabs_stays_as_it_is(plain):
    plain.do("floatBeta")
    plain.wait_until("beta", "floating", "true")
    plain.forget()
    assert plain.activate("Widget:beta", "beta") == "0,QDockWidget"
    assert nothing_happened(plain)
    assert plain.activate(WINDOW, "alpha") == "0,QDockWidget"
    plain.wait_for("shown alpha true")


def test_a_disabled_one_is_refused(plain):
    plain.activate(WINDOW, "alpha")
    plain.wait_for("shown alpha true")
    plain.forget()
    refusal = '8,Exception : Error: widget "disabled" of class "QDockWidget" is disabled.'
    assert plain.activate(WINDOW, "disabled") == refusal
    assert nothing_happened(plain)


def test_a_hidden_one_is_not_visible(plain):
    assert plain.activate(WINDOW, "pairHidden") == "6,Widget (pairHidden) not visible"
    plain.do("hideAlpha")
    assert plain.activate(WINDOW, "alpha") == "6,Widget (alpha) not visible"
    assert plain.events("press") == []


def test_one_that_dies_as_its_window_is_restored_is_an_error(plain):
    plain.do("minimizeDoomed")
    plain.wait_until_minimized("main")
    assert plain.activate(WINDOW, "doomed") == "8,Exception : Internal error, proxy without widget"
    plain.wait_until("main", "minimized", "false")
    assert plain.events("press", "release") == []


def test_there_are_no_pseudo_properties_of_its_own(plain):
    names = ["propertyNames", "pseudoPropertyNames", "className", "silkClassName", "globalRect"]
    assert plain.read(WINDOW, "alpha", "pseudoPropertyNames") == "0,l:\f" + "\f".join(names)
    assert plain.read(WINDOW, "alpha", "itemList") == '8,Exception : Unknown property "itemList".'


def test_qt_properties_tell_its_state(plain):
    assert plain.read("Widget:floating", "floating", "floating") == "0,b:true"
    assert plain.read(WINDOW, "alpha", "floating") == "0,b:false"
    assert plain.read(WINDOW, "alpha", "silkClassName") == "u:QDockWidget"


def test_entering_is_refused(plain):
    refusal = '8,Exception : "enter" is not implemented for widget of class "QDockWidget"'
    assert plain.enter(WINDOW, "alpha", "s:Alpha") == refusal
    assert nothing_happened(plain)


def test_the_general_mouse_command_is_accepted(plain):
    plain.do("journalAlone")
    assert plain.mouse(WINDOW, "alone", "MouseClick:LeftButton:0.1:0:") == "0,QDockWidget"
    plain.wait_for(re.compile(r"press alone \d+,0 button 1 .*"))
