"""Actions on widgets that a locator finds: what they check before they act, and what they do then."""

import pytest

from extensions import extension
from hostapp import eventually

CLICK = "s:MouseClick:LeftButton:::"


@pytest.fixture
def app(launch):
    return launch("readinesshost")


@pytest.fixture
def items(app):
    """The application, with the window of the views in front."""
    app.show("showItems", "items")
    return app


def click(app, name, *force):
    return app.request(extension("+5", "Main", f"name={name} visible=any", "", "", "", *force))


def activate(app, name, value, option="", window="Items"):
    return app.request(extension("+5", window, f"name={name}", "", value, option))


def test_a_widget_that_is_ready_is_activated(app):
    assert click(app, "ready") == "0,QPushButton"
    app.wait_for("clicked ready")


def test_a_widget_that_is_ready_gets_the_mouse(app):
    assert app.request(extension("+9", "Main", "name=ready", "QWidget", CLICK)) == "0,QWidget"
    app.wait_for("clicked ready")


def test_a_field_that_is_ready_gets_any_text_of_latin_1(app):
    assert app.request(extension("+6", "Main", "name=line", "", "s:Grüße, 1")) == "0,QLineEdit"
    app.wait_until("line", "text", "Grüße, 1")


@pytest.mark.parametrize(
    "name, reason",
    [
        ("hidden", "hidden"),
        ("disabled", "disabled"),
        ("outside", "outside its window"),
        ("clipped", "outside QFrame clip"),
        ("covered", "covered by QFrame overlay"),
    ],
)
@pytest.mark.parametrize("number", ["+5", "+9"])
def test_an_action_that_cannot_work_yet_is_not_done_and_tells_why(app, name, reason, number):
    command = "" if number == "+5" else CLICK
    locator = f"name={name} visible=any"
    assert app.request(extension(number, "Main", locator, "", command)) == f"9,{reason}"
    assert app.events("clicked") == []


def test_the_first_obstacle_is_the_one_that_is_told(app):
    app.do("enable")
    assert click(app, "disabled") == "0,QPushButton"
    app.wait_for("clicked disabled")
    app.do("show")
    assert click(app, "hidden") == "0,QPushButton"
    app.wait_for("clicked hidden")


def test_obstacles_are_told_in_their_order(app):
    app.do("obstruct")
    for reason in ("hidden", "disabled", "moving", "outside QFrame frame", "covered by QFrame cover"):
        assert click(app, "obstructed") == f"9,{reason}"
        app.do("clear")
    assert click(app, "obstructed") == "0,QPushButton"
    eventually(lambda: app.events("clicked"), ["clicked obstructed"])


def test_what_covers_a_widget_stops_being_an_obstacle_when_it_is_gone(app):
    assert click(app, "covered") == "9,covered by QFrame overlay"
    app.do("uncover")
    assert click(app, "covered") == "0,QPushButton"
    app.wait_for("clicked covered")


def test_what_lets_the_mouse_through_is_no_obstacle(app):
    app.do("letThrough")
    assert click(app, "covered") == "0,QPushButton"
    app.wait_for("clicked covered")


def test_only_the_point_of_the_mouse_has_to_be_free(app):
    left = "s:MouseClick:LeftButton:0.05:0.5:"
    assert (
        app.request(extension("+9", "Main", "name=covered", "QWidget", left)) == "9,covered by QFrame overlay"
    )
    assert click(app, "ready") == "0,QPushButton"


def test_a_widget_that_moves_is_clicked_when_it_rests(app):
    app.do("move")
    assert click(app, "moving") == "9,moving"
    app.do("stop")
    assert click(app, "moving") == "0,QPushButton"
    app.wait_for("clicked moving")


def test_scroll_areas_are_scrolled_to_the_widget(app):
    assert click(app, "deep") == "0,QPushButton"
    app.wait_for("clicked deep")
    assert click(app, "shallow") == "0,QPushButton"
    app.wait_for("clicked shallow")


def test_a_part_of_a_scroll_area_is_not_scrolled_by_it(app):
    beyond_its_edge = "s:MouseMove::1.0:1.0:"
    viewport = "name=outerArea >> name=qt_scrollarea_viewport first"
    for locator in (viewport, "name=outerArea"):
        reply = app.request(extension("+9", "Main", locator, "QWidget", beyond_its_edge))
        assert reply == "9,not reached by the mouse"
    assert click(app, "shallow") == "0,QPushButton"
    app.wait_for("clicked shallow")


def test_a_widget_that_ends_while_it_is_scrolled_to_is_an_error(app):
    app.do("deleteOnScroll")
    assert click(app, "deep") == "8,Exception : Internal error, proxy without widget"
    assert click(app, "ready") == "0,QPushButton"


def test_a_window_above_the_widgets_own_is_an_obstacle(app):
    app.do("showPalette")
    eventually(lambda: click(app, "ready"), "9,covered by QWidget palette")
    app.do("hidePalette")
    eventually(lambda: click(app, "ready"), "0,QPushButton")
    app.wait_for("clicked ready")


def test_a_popup_is_an_obstacle_for_what_is_beside_it(items):
    show_list = extension("+9", "Items", "name=combo", "QWidget", CLICK)
    assert items.request(show_list) == "0,QWidget"
    popup = extension("+7", "Widget:ActivePopupWidget", "", "", "className", "")
    while not items.request(popup).startswith("0,"):
        pass
    assert activate(items, "list", "s:Early").startswith("9,covered by QComboBoxPrivateContainer")


def test_a_list_of_completions_is_an_obstacle_but_for_its_own_field(launch):
    app = launch("entryhost")

    def enter(name, text):
        return app.request(extension("+6", "Entries", f"path={name}", "", f"s:{text}"))

    assert enter("towns", "A") == "0,QLineEdit"
    popup = extension("+7", "Widget:ActivePopupWidget", "", "", "className", "")
    eventually(lambda: app.request(popup)[:4], "0,u:")
    assert enter("line", "lost") == "9,covered by QListView"
    assert enter("towns", "Aac") == "0,QLineEdit"
    app.wait_until("towns", "text", "Aac")
    assert app.get("line", "text") == "old text"


def test_force_acts_as_the_command_does(app):
    assert click(app, "covered", "force") == "0,QPushButton"
    assert click(app, "disabled", "force") == app.activate("Main", "disabled")
    assert click(app, "ready", "force") == "0,QPushButton"
    app.wait_for("clicked ready")
    assert "clicked covered" not in app.events("clicked")
    assert click(app, "ready", "Force") == '8,Exception : Section 6 is neither "force" nor empty'


LATE = [
    ("list", "s:Late", 'item "Late" not there yet', "0,QListView"),
    ("list", "i:1", 'item "1" not there yet', "0,QListView"),
    ("tree", "s:Late", 'item "Late" not there yet', "0,QTreeView"),
    ("table", "s:2:1", 'item "2" not there yet', "0,QTableWidget"),
    ("combo", "s:Late", 'item "Late" not there yet', "0,QComboBox"),
    ("combo", "i:1", 'item "1" not there yet', "0,QComboBox"),
    ("tabs", "s:Late", 'item "Late" not there yet', "0,QTabBar"),
    ("bar", "s:File/Late", 'item "Late" not there yet', "0,QMenuBar"),
]


@pytest.mark.parametrize("name, value, reason, done", LATE)
def test_an_item_that_is_not_there_yet_is_waited_for_as_a_widget_is(items, name, value, reason, done):
    assert activate(items, name, value) == f"9,{reason}"
    items.do("addLate")
    assert activate(items, name, value) == done


def test_force_has_a_missing_item_be_the_error_of_the_command(items):
    tree = extension("+5", "Items", "name=tree", "", "s:Late", "", "force")
    assert items.request(tree) == "8,Exception : Invalid item path"


def test_a_menu_that_is_not_there_yet_is_named(items):
    assert activate(items, "bar", "s:Edit/Late") == '9,item "Edit" not there yet'


def test_what_will_never_work_is_an_error_as_of_the_command(app):
    assert click(app, "ready")[0] == "0"
    reply = app.request(extension("+5", "Main", "name=ready", "", "s:text"))
    assert reply == app.activate("Main", "ready", "s:text")
    assert reply.startswith("8,Exception : Type error")
    assert app.request(extension("+5", "Main", "name=ready", "QMenu")) == (
        "8,Exception : Widget is not derived from class QMenu"
    )


def test_the_cursor_is_put_onto_a_widget(app):
    assert app.request(extension("+4", "Main", "name=ready")) == "0,QPushButton"
    eventually(lambda: app.request("3").split(",")[4].split("/")[-1], "ready")


def test_a_property_is_read_with_an_argument_of_any_character(items):
    items.do("addLate")
    request = extension("+7", "Items", "QTreeView", "", "itemIsEnabled", "s:Late")
    assert items.request(request) == "0,b:true"
    missing = extension("+7", "Items", "QTreeView", "", "itemIsEnabled", "s:L,ä€")
    assert items.request(missing) == "8,Exception : Invalid item path"
