"""Tab bars, as a test drives them: which tab is clicked, what their pseudo-properties say."""

import pytest

from styles import STYLES

WINDOW = "Tabs"
RANGE = '8,Exception : Type error: object "%s" of class "%s" accepts only values in the following range: %s.'
TYPE = '8,Exception : Type error: object "menus" of class "QTabBar" accepts string, integer.'
MISSED = "8,Exception : Error: widget is hidden by another window"
BUILT_IN = ["propertyNames", "pseudoPropertyNames", "className", "silkClassName", "globalRect"]


@pytest.fixture(params=STYLES)
def style(request):
    return request.param


@pytest.fixture(params=[[], ["-reverse"]], ids=["left-to-right", "right-to-left"])
def app(launch, style, request):
    return launch("tabhost", "-style", style, *request.param)


@pytest.fixture
def plain(launch):
    return launch("tabhost", "-style", STYLES[0])


def center(app, bar, index):
    """Where the application itself says that the centre of a tab is."""
    app.do("centers")
    (line,) = [line for line in app.events("center") if line.startswith(f"center {bar} {index} ")]
    return line.split(" ")[3]


def clicks(bar, point):
    return [
        f"press {bar} {point} button 1 buttons 1 modifiers 0",
        f"release {bar} {point} button 1 buttons 0 modifiers 0",
    ]


def nothing_was_clicked(app):
    return app.events("press", "release", "current") == []


@pytest.mark.shared
def test_a_text_without_its_ampersand_clicks_its_tab(app):
    assert app.activate(WINDOW, "menus", "s:Edit") == "0,QTabBar"
    app.wait_for("current menus 1")
    assert app.activate(WINDOW, "menus", "s:File") == "0,QTabBar"
    app.wait_for("current menus 0")
    assert app.get("menus", "currentIndex") == "0"


@pytest.mark.parametrize("bar, index", [("menus", 1), ("partly", 2), ("vertical", 1), ("same", 4)])
def test_an_integer_clicks_the_tab_with_that_index(app, bar, index):
    assert app.activate(WINDOW, bar, f"i:{index}") == "0,QTabBar"
    app.wait_for(f"current {bar} {index}")
    assert app.get(bar, "currentIndex") == str(index)


@pytest.mark.parametrize("bar, value, index", [("menus", "s:Edit", 1), ("vertical", "i:1", 1)])
def test_a_tab_is_clicked_once_at_its_center(app, bar, value, index):
    point = center(app, bar, index)
    app.activate(WINDOW, bar, value)
    app.wait_for(f"current {bar} {index}")
    assert app.events("press", "release", "doubleclick") == clicks(bar, point)


@pytest.mark.shared
def test_the_current_tab_is_clicked_too(plain):
    point = center(plain, "menus", 0)
    plain.activate(WINDOW, "menus", "s:File")
    assert plain.events("press", "release") == clicks("menus", point)


def test_an_option_is_ignored(plain):
    assert plain.activate(WINDOW, "menus", "s:Edit", "i:0") == "0,QTabBar"
    plain.wait_for("current menus 1")


def test_the_first_of_several_tabs_with_a_text_is_clicked(plain):
    assert plain.activate(WINDOW, "same", "s:Page") == "0,QTabBar"
    plain.wait_for("current same 1")


def test_only_the_first_ampersand_is_taken_off(plain):
    assert plain.activate(WINDOW, "same", "s:Drag & &drop") == "0,QTabBar"
    plain.wait_for("current same 3")


def test_the_empty_text_is_the_tab_without_a_text(plain):
    assert plain.activate(WINDOW, "same", "s:") == "0,QTabBar"
    plain.wait_for("current same 4")


@pytest.mark.shared
@pytest.mark.parametrize(
    "bar, value, allowed",
    [
        ("menus", "i:5", "[0, 1]"),
        ("menus", "i:2", "[0, 1]"),
        ("menus", "i:-1", "[0, 1]"),
        ("menus", "s:View", "[0, 1]"),
        ("menus", "s:&Edit", "[0, 1]"),
        ("menus", "s:edit", "[0, 1]"),
        ("menus", "s:Ed", "[0, 1]"),
        ("menus", "s:", "[0, 1]"),
        ("menus", "s:%s%n", "[0, 1]"),
        ("empty", "i:0", "[0, -1]"),
        ("empty", "s:", "[0, -1]"),
    ],
)
def test_an_unknown_text_and_an_index_out_of_range_are_range_errors(plain, bar, value, allowed):
    assert plain.activate(WINDOW, bar, value) == RANGE % (bar, "QTabBar", allowed)
    assert nothing_was_clicked(plain)


@pytest.mark.shared
@pytest.mark.parametrize("value", ["i:0", "s:Sizeless"])
def test_a_tab_without_a_size_is_a_range_error(plain, value):
    assert plain.activate(WINDOW, "flat", value) == RANGE % ("flat", "FlatTabBar", "[0, 0]")
    assert nothing_was_clicked(plain)


@pytest.mark.shared
@pytest.mark.parametrize("value", ["", "b:true", "b:false", "i:x", "Edit"])
def test_other_values_than_strings_and_integers_are_type_errors(plain, value):
    assert plain.activate(WINDOW, "menus", value) == TYPE
    assert nothing_was_clicked(plain)


@pytest.mark.shared
def test_a_click_on_a_disabled_tab_changes_nothing(plain):
    point = center(plain, "partly", 1)
    assert plain.activate(WINDOW, "partly", "s:Locked") == "0,QTabBar"
    assert plain.events("press", "release", "current") == clicks("partly", point)
    assert plain.get("partly", "currentIndex") == "0"


@pytest.mark.shared
def test_a_disabled_bar_is_refused(plain):
    refusal = '8,Exception : Error: widget "disabled" of class "QTabBar" is disabled.'
    assert plain.activate(WINDOW, "disabled", "s:Two") == refusal
    assert nothing_was_clicked(plain)
    assert plain.read(WINDOW, "disabled", "itemList") == "0,l:\fOne\fTwo"


@pytest.mark.shared
def test_a_hidden_bar_is_not_visible(plain):
    assert plain.activate(WINDOW, "hidden", "s:Two") == "6,Widget (hidden) not visible"
    assert plain.get("hidden", "currentIndex") == "0"


def test_a_tab_in_sight_of_a_scrolled_bar_is_clicked_where_it_is(app):
    app.do("scrollToEnd")
    point = center(app, "scrolled", 18)
    assert app.activate(WINDOW, "scrolled", "s:Number 18") == "0,QTabBar"
    app.wait_for("current scrolled 18")
    assert app.events("press", "release") == clicks("scrolled", point)


@pytest.mark.shared
@pytest.mark.parametrize("direction", [[], ["-reverse"]], ids=["left-to-right", "right-to-left"])
def test_for_a_tab_out_of_sight_the_mouse_goes_where_it_would_be(launch, style, direction):
    app = launch("tabhost", "--aside", "-style", style, *direction)
    point = center(app, "scrolled", 5)
    x = int(point.split(",")[0])
    assert x > int(app.get("tabs", "width")) or x < -50, "beside the window"
    assert app.activate(WINDOW, "scrolled", "s:Number 5") == MISSED
    app.do("reportCursor")
    assert app.journal[-1] == f"cursor {point}"
    assert app.events("press", "release", "current") == []
    assert app.get("scrolled", "currentIndex") == "0"


def test_the_tab_bar_of_a_tab_widget_switches_its_pages(app):
    assert app.activate(WINDOW, "pages/qt_tabwidget_tabbar", "s:Details") == "0,QTabBar"
    app.wait_for("current pages 1")
    assert app.get("pages", "currentIndex") == "1"


@pytest.mark.shared
def test_a_bar_of_an_own_class_is_served_as_a_tab_bar(plain):
    assert plain.read(WINDOW, "flat", "silkClassName") == "u:QTabBar"
    assert plain.read(WINDOW, "flat", "className") == "u:FlatTabBar"


def test_a_bar_that_its_own_click_deletes_is_answered_for(plain):
    assert plain.activate(WINDOW, "doomed", "s:Two") == "0,QTabBar"
    plain.wait_until("doomed", "objectName", "<no object doomed>")
    assert plain.activate(WINDOW, "doomed", "s:Two") == "5,Widget (doomed) not found"


def test_a_bar_that_dies_as_its_window_is_restored_is_an_error(plain):
    plain.do("minimizeDoomed")
    plain.wait_until_minimized("tabs")
    assert plain.activate(WINDOW, "doomed", "s:Two") == "8,Exception : Internal error, proxy without widget"
    plain.wait_until("tabs", "minimized", "false")
    assert nothing_was_clicked(plain)


@pytest.mark.shared
def test_the_pseudo_properties_are_listed(plain):
    names = BUILT_IN + ["itemList", "toolTipList", "currentText", "currentToolTip"]
    assert plain.read(WINDOW, "menus", "pseudoPropertyNames") == "0,l:\f" + "\f".join(names)


@pytest.mark.shared
@pytest.mark.parametrize(
    "bar, name, value",
    [
        ("menus", "itemList", "0,l:\fFile\fEdit"),
        ("menus", "toolTipList", "0,l:\fFiles\fCut  &paste"),
        ("menus", "currentText", "u:File"),
        ("menus", "currentToolTip", "u:Files"),
        ("same", "itemList", "0,l:\fOther\fPage\fPage\fDrag & &drop\f"),
        ("same", "toolTipList", "0,l:\f\f\f\f\f"),
        ("empty", "itemList", "0,l:"),
        ("empty", "toolTipList", "0,l:"),
        ("empty", "currentText", "u:"),
        ("empty", "currentToolTip", "u:"),
    ],
)
def test_pseudo_properties_tell_texts_and_tool_tips(plain, bar, name, value):
    assert plain.read(WINDOW, bar, name) == value


def test_the_current_tool_tip_keeps_its_ampersands(plain):
    plain.activate(WINDOW, "menus", "s:Edit")
    plain.wait_for("current menus 1")
    assert plain.read(WINDOW, "menus", "currentText") == "u:Edit"
    assert plain.read(WINDOW, "menus", "currentToolTip") == "u:Cut & &paste"


def test_a_bar_that_lost_its_tabs_has_no_current_one(plain):
    plain.do("noneCurrent")
    assert plain.read(WINDOW, "menus", "currentText") == "u:"
    assert plain.read(WINDOW, "menus", "itemList") == "0,l:"


@pytest.mark.shared
@pytest.mark.parametrize("name", ["ItemList", "items", "currentTex"])
def test_other_names_are_unknown_properties(plain, name):
    assert plain.read(WINDOW, "menus", name) == f'8,Exception : Unknown property "{name}".'


@pytest.mark.shared
def test_entering_is_refused(plain):
    refusal = '8,Exception : "enter" is not implemented for widget of class "QTabBar"'
    assert plain.enter(WINDOW, "menus", "s:Edit") == refusal
    assert nothing_was_clicked(plain)


def test_the_general_mouse_command_is_accepted(plain):
    assert plain.mouse(WINDOW, "pages/qt_tabwidget_tabbar", "MouseClick:LeftButton:0.9:0.5:") == "0,QTabBar"
    plain.wait_for("current pages 1")
