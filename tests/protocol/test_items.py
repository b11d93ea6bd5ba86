"""The mouse on what is in a widget and is no widget: rows and cells, headers, tabs, pages of tool boxes, entries of menus."""

import json
import re
import subprocess

import pytest

from extensions import extension
from hostapp import eventually

WINDOW = "Items"
VIEW = "QAbstractItemView"


@pytest.fixture
def app(launch):
    app = launch("itemhost")
    app.forget()
    return app


def mouse(
    app, widget, item, kind="MouseClick", button="LeftButton", at=":", force="", as_class="", window=WINDOW
):
    """`widget` is an object name, or empty for the window."""
    command = f"s:{kind}:{button}:{at}:"
    locator = f"name={widget}" if widget else ""
    return app.request(extension("+9", window, locator, as_class, command, force, item))


def scroll(app, widget, item="", as_class=""):
    return app.request(extension("+scroll", WINDOW, f"name={widget} visible=any", as_class, item))


def rect_of(reply):
    assert re.fullmatch(r"0,r:-?\d+,-?\d+,-?\d+,-?\d+", reply), reply
    return list(map(int, reply[4:].split(",")))


CLICKS = [
    ("list", "s:Row 0", "", "0,QListView", "list Row 0"),
    ("list", "i:99", "", "0,QListView", "list Row 99"),
    ("list", "s:" + 400 * "w", "", "0,QListView", "list " + 400 * "w"),
    ("list", "s:50;1", VIEW, "0,QAbstractItemView", "list Row 49"),
    ("tree", "s:Folder 19/File 19", "", "0,QTreeView", "tree File 19"),
    ("tree", "s:Folder 3", "", "0,QTreeView", "tree Folder 3"),
    ("tree", "s:H:Size", VIEW, "0,QAbstractItemView", "columns Size"),
    ("table", "s:40:15", "", "0,QTableWidget", "table 39x14"),
    ("table", "s:H:18", VIEW, "0,QAbstractItemView", "columnHeader 18"),
    ("table", "s:V:45", VIEW, "0,QAbstractItemView", "rowHeader 45"),
    ("movable", "s:Tab 2", "", "0,QTabBar", "movable Tab 2"),
    ("movable", "i:1", "", "0,QTabBar", "movable Tab 1"),
    ("scrolled", "s:Tab 19", "", "0,QTabBar", "scrolled Tab 19"),
    ("standing", "i:11", "", "0,QTabBar", "standing Tab 11"),
    ("box", "s:Second", "", "0,QToolBox", "box Second"),
    ("innerList", "s:Inner 20", "", "0,QListView", "innerList Inner 20"),
]


@pytest.mark.parametrize("widget, item, as_class, served, told", CLICKS)
def test_the_mouse_reaches_an_item_wherever_it_is(app, widget, item, as_class, served, told):
    assert mouse(app, widget, item, as_class=as_class) == served
    app.wait_for(f"press {told} left")
    app.wait_for(f"release {told} left")


def test_a_bar_is_scrolled_back_to_its_first_tab(app):
    assert mouse(app, "scrolled", "s:Tab 19") == "0,QTabBar"
    app.wait_until("scrolled", "currentIndex", "19")
    assert mouse(app, "scrolled", "i:0") == "0,QTabBar"
    app.wait_until("scrolled", "currentIndex", "0")


@pytest.mark.parametrize("widget, item, told, other, other_told", [
    ("list", "s:Row 3", "list Row 3", "i:0", "list Row 0"),
    ("tree", "s:Folder 5", "tree Folder 5", "s:Folder 4", "tree Folder 4"),
    ("movable", "s:Tab 2", "movable Tab 2", "s:Tab 1", "movable Tab 1"),
    ("box", "s:Second", "box Second", "s:First", "box First"),
])  # fmt: skip
def test_an_item_is_right_clicked_double_clicked_and_hovered(app, widget, item, told, other, other_told):
    assert mouse(app, widget, item, button="RightButton").startswith("0,")
    app.wait_for(f"contextmenu {told}")
    assert mouse(app, widget, item, "MouseDoubleClick").startswith("0,")
    app.wait_for(f"doubleclick {told} left")
    app.do("popup")
    assert app.request(extension("+press", "Widget:ActivePopupWidget", "", "Escape", "")).startswith("0,")
    app.forget()
    assert mouse(app, widget, other, "MouseMove", "").startswith("0,")
    app.wait_for(
        f"move {other_told}"
    )  # Qt makes one move of two that are there at once, and none of there and back
    assert mouse(app, widget, item, "MouseMove", "").startswith("0,")
    app.wait_for(f"move {told}")


def test_the_position_is_within_the_item(app):
    assert mouse(app, "movable", "s:Tab 1", at="0.02:0.5") == "0,QTabBar"
    app.wait_for("press movable Tab 1 left")
    assert mouse(app, "movable", "s:Tab 1", at="0.98:0.5") == "0,QTabBar"
    eventually(lambda: app.events("press"), 2 * ["press movable Tab 1 left"])


def drag_first_tab(app, before_the_move=lambda: None):
    start = rect_of(scroll(app, "movable", "s:Tab 0"))
    target, bar = rect_of(scroll(app, "movable", "s:Tab 1")), rect_of(scroll(app, "movable"))
    # the far edge of the one comes to that of the other
    x = (start[0] + start[2]) / 2 + target[2] - start[2]
    at = f"{(x - bar[0]) / (bar[2] - bar[0] + 1)}:0.5"
    assert mouse(app, "movable", "s:Tab 0", "MousePress") == "0,QTabBar"
    before_the_move()
    for kind, button in (("MouseMove", ""), ("MouseRelease", "LeftButton")):
        command = f"s:{kind}:{button}:{at}:"
        assert app.request(extension("+9", WINDOW, "name=movable", "QWidget", command)) == "0,QWidget"


def native_move(app, left, top):
    """A move of the mouse that the windowing system tells of, as it does of one without a button held."""
    app.forget()
    subprocess.run(["xdotool", "mousemove", str(left), str(top)], check=True)
    app.wait_for("native movable")


def test_a_dragged_tab_takes_the_place_of_another(app):
    drag_first_tab(app)
    app.wait_for("order 1023")


def test_a_late_move_of_the_windowing_system_does_not_end_a_drag(app):
    left, top, _, bottom = rect_of(scroll(app, "movable", "s:Tab 0"))
    drag_first_tab(app, lambda: native_move(app, left + 5, (top + bottom) // 2))
    app.wait_for("order 1023")


def test_after_a_drag_the_windowing_system_moves_the_mouse_again(app):
    drag_first_tab(app)
    app.wait_for("order 1023")
    left, top, _, bottom = rect_of(scroll(app, "movable", "s:Tab 2"))
    native_move(app, left + 5, (top + bottom) // 2)
    app.wait_for("move movable Tab 2")


NOT_YET = [
    ("list", "s:Row 100", "", 'item "Row 100" not there yet'),
    ("list", "s:Row 1", "", 'item "Row 1" disabled'),
    ("list", "i:2", "", 'item "2" hidden'),
    ("list", "s:101;2", VIEW, 'item "2" not there yet'),
    ("tree", "s:Folder 3/File 4", "", 'item "Folder 3/File 4" not there yet'),
    ("tree", "s:H:Date", VIEW, 'item "Date" not there yet'),
    ("table", "s:51:1", "", 'item "51" not there yet'),
    ("table", "s:1:2", "", 'item "2" hidden'),
    ("table", "s:H:2", VIEW, 'item "H:2" hidden'),
    ("movable", "s:Tab 4", "", 'item "Tab 4" not there yet'),
    ("movable", "s:Tab 3", "", 'item "Tab 3" disabled'),
    ("under", "s:Tab 0", "", "covered by QFrame overlay"),
    ("box", "s:Third", "", 'item "Third" not there yet'),
    ("box", "s:Locked", "", 'item "Locked" disabled'),
    ("bar", "s:View", "", 'item "View" not there yet'),
    ("bar", "s:File/Open", "", 'item "Open" not there yet'),
    ("bar", "s:File/Locked", "", 'item "File/Locked" disabled'),
    ("bar", "s:File/Recent/Book", "", 'item "Book" not there yet'),
    ("bar", "s:File/New/Old", "", 'item "Old" not there yet'),
]


@pytest.mark.parametrize("widget, item, as_class, reason", NOT_YET)
def test_an_item_that_the_mouse_cannot_reach_is_not_yet_and_gets_nothing(app, widget, item, as_class, reason):
    assert mouse(app, widget, item, as_class=as_class) == f"9,{reason}"
    assert app.events("press", "release", "contextmenu", "triggered") == []


def test_only_the_point_of_the_mouse_has_to_be_free(app):
    assert mouse(app, "under", "s:Tab 0", at="0.98:0.5") == "0,QTabBar"
    app.wait_for("press under Tab 0 left")


@pytest.mark.parametrize("widget, item", [("list", "s:Row 1"), ("movable", "s:Tab 3")])
def test_a_disabled_item_is_hovered_and_has_a_context_menu(app, widget, item):
    assert mouse(app, widget, item, "MouseMove", "").startswith("0,")
    assert mouse(app, widget, item, button="RightButton").startswith("0,")
    app.wait_for(f"contextmenu {widget} {item[2:]}")


def test_force_leaves_the_checks_out(app):
    assert mouse(app, "list", "s:Row 1", force="force") == "0,QListView"
    app.wait_for("press list Row 1 left")
    assert mouse(app, "list", "s:Row 100", force="force").startswith(
        "8,Exception : activate, QListView unknown item"
    )


def test_a_widget_without_items_has_none(app):
    assert mouse(app, "overlay", "s:x") == (
        '8,Exception : Items of a widget of class "QFrame" have no place for the mouse'
    )
    assert mouse(app, "list", "Row 1") == "8,Exception : Section 6 is no value"
    assert mouse(app, "list", "b:true").startswith("8,Exception : Type error")
    assert mouse(app, "list", "s:Row 3", kind="MouseJump").startswith('8,Exception : "MouseJump"-Type')
    assert mouse(app, "list", "s:Row 3", at="2:2").startswith("8,Exception : Only a Position")


def test_a_view_that_ends_while_it_is_scrolled_is_an_error(app):
    app.do("deleteTableOnScroll")
    assert mouse(app, "table", "s:40:15") == "8,Exception : Internal error, proxy without widget"
    assert mouse(app, "list", "s:Row 3") == "0,QListView"


def test_a_widget_sees_the_first_move_into_its_window(app):
    app.do("cursorAway")
    command = extension("+9", WINDOW, "name=list", "QWidget", "s:MouseMove:::0.1:")
    assert app.request(command) == "0,QWidget"
    app.wait_for(re.compile("move list Row .*"))


# States


@pytest.mark.parametrize("widget, item, as_class, told", [
    ("list", "s:Row 40", "", ("Row 40", [])),
    ("list", "s:Row 1", "", ("Row 1", ["disabled"])),
    ("tree", "s:Folder 4", "", ("Folder 4", ["collapsed"])),
    ("tree", "s:Folder 4/File 4", "", ("File 4", [])),
    ("table", "s:3:3", "", ("2x2", ["checkable", "checked"])),
    ("table", "s:4;3", VIEW, ("3x2", ["checkable", "partly checked"])),
    ("table", "s:5:3", "", ("4x2", ["disabled"])),
    ("movable", "s:Tab 3", "", ("Tab 3", ["disabled"])),
    ("movable", "i:0", "", ("Tab 0", ["selected"])),
    ("box", "s:First", "", ("First", ["selected"])),
    ("tree", "s:H:Size", VIEW, ("Size", ["descending"])),
    ("tree", "s:H:1", VIEW, ("Name", [])),
    ("table", "s:H:2", VIEW, ("2", ["hidden"])),
    ("table", "s:V:45", VIEW, ("45", [])),
    ("bar", "s:File", "", ("File", ["menu"])),
    ("bar", "s:File/Locked", "", ("Locked", ["disabled"])),
    ("bar", "s:File/Recent/Older/Diary", "", ("Diary", [])),
    ("bar", "s:Edit/Item 1", "", ("Bold", ["checkable", "checked"])),
])  # fmt: skip
def test_an_item_tells_its_text_and_states_wherever_it_is(app, widget, item, as_class, told):
    reply = app.request(extension("+item", WINDOW, f"name={widget}", as_class, item))
    assert reply.startswith("0,j:")
    found = json.loads(reply[4:])
    assert (found["text"], found["states"]) == told


def test_states_follow_what_the_user_does(app):
    assert mouse(app, "list", "s:Row 4") == "0,QListView"
    app.wait_for("release list Row 4 left")
    reply = app.request(extension("+item", WINDOW, "name=list", "", "s:Row 4"))
    assert {"selected", "current"} <= set(json.loads(reply[4:])["states"])


def test_entries_of_an_open_menu_tell_their_states(app):
    app.do("popup")
    app.wait_until("popup", "visible", "true")
    popup = "Widget:ActivePopupWidget"
    reply = app.request(extension("+item", popup, "", "", "s:Wrap"))
    assert json.loads(reply[4:]) == {"text": "Wrap", "states": ["checkable", "checked"]}
    assert app.request(extension("+item", popup, "", "", "s:More/Glue")) == "8,Exception : Invalid item"
    assert app.get("popup", "visible") == "true"


@pytest.mark.parametrize("path", ["Nothing", "File/Nothing", "File/New/Deeper"])
def test_an_entry_that_is_not_there_has_no_state_and_opens_no_menu(app, path):
    assert (
        app.request(extension("+item", WINDOW, "name=bar", "", f"s:{path}")) == "8,Exception : Invalid item"
    )
    assert app.get("fileMenu", "visible") == "false"


@pytest.mark.parametrize("widget, section, message", [
    ("tree", "H:Nothing", "Invalid column: Nothing"),
    ("table", "V:51", "Invalid row: 51"),
    ("tree", "V:1", "View does not have a vertical header."),
    ("list", "H:1", "View does not have a horizontal header."),
])  # fmt: skip
def test_a_section_that_is_not_there_has_no_state(app, widget, section, message):
    reply = app.request(extension("+item", WINDOW, f"name={widget}", VIEW, f"s:{section}"))
    assert reply == f"8,Exception : {message}"


def test_an_item_that_is_not_there_has_no_state(app):
    missing = extension("+item", WINDOW, "name=list", "", "s:Row 100")
    assert app.request(missing) == "8,Exception : activate, QListView unknown item Row 100"
    assert app.request(extension("+item", WINDOW, "name=overlay", "", "s:x")) == (
        '8,Exception : Items of a widget of class "QFrame" have no states'
    )


# Menus


def test_a_title_is_hovered_without_opening_its_menu(app):
    assert mouse(app, "bar", "s:File", "MouseMove", "") == "0,QMenuBar"
    app.settle()
    assert app.get("fileMenu", "visible") == "false"


def test_an_entry_is_hovered_in_the_open_menu(app):
    assert mouse(app, "bar", "s:File/Locked", "MouseMove", "") == "0,QMenuBar"
    app.wait_until("fileMenu", "visible", "true")
    assert mouse(app, "bar", "s:File/New", "MouseMove", "") == "0,QMenuBar"
    app.wait_for("hovered New")
    assert app.get("fileMenu", "visible") == "true"
    assert app.events("triggered") == []


def test_an_entry_deep_in_the_menus_is_clicked(app):
    assert mouse(app, "bar", "s:File/Recent/Older/Diary") == "0,QMenuBar"
    app.wait_for("triggered Diary")
    app.wait_until("fileMenu", "visible", "false")


def test_a_menu_that_is_open_is_left_for_another_one(app):
    assert mouse(app, "bar", "s:File/Recent/Letter", "MouseMove", "") == "0,QMenuBar"
    app.wait_for("hovered Letter")
    assert mouse(app, "bar", "s:Edit/Undo", "MouseMove", "") == "0,QMenuBar"
    app.wait_for("hovered Undo")
    assert app.get("fileMenu", "visible") == "false"


def test_an_entry_that_a_menu_has_scrolled_away_is_brought_into_sight(app):
    assert mouse(app, "bar", "s:Many/Entry 110") == "0,QMenuBar"
    app.wait_for("triggered Entry 110")
    assert app.events("triggered") == ["triggered Entry 110"]


def test_menus_that_were_opened_in_vain_are_closed_again(app):
    assert mouse(app, "bar", "s:File/Recent/Book", "MouseMove", "") == '9,item "Book" not there yet'
    app.wait_until("fileMenu", "visible", "false")
    assert app.get("recentMenu", "visible") == "false"


def test_entries_of_an_open_menu_get_the_mouse(app):
    app.do("popup")
    app.wait_until("popup", "visible", "true")
    popup = "Widget:ActivePopupWidget"
    assert mouse(app, "", "s:Cut", "MouseMove", "", window=popup) == "0,QMenu"
    app.wait_for("hovered Cut")
    assert mouse(app, "", "s:More/Split", window=popup) == "0,QMenu"
    app.wait_for("triggered Split")


def test_a_menu_of_another_kind_is_an_obstacle_for_the_bar(app):
    app.do("popup")
    app.wait_until("popup", "visible", "true")
    assert mouse(app, "bar", "s:File/New", "MouseMove", "") == "9,covered by QMenu"
    assert app.get("popup", "visible") == "true"


# Scrolling


def test_scrolling_brings_a_widget_into_sight_and_tells_its_place(app):
    left, top, right, bottom = rect_of(scroll(app, "farFrame"))
    assert (right - left, bottom - top) == (59, 29)
    frame = rect_of(app.request(extension("+7", WINDOW, "name=farFrame", "", "globalRect", "")))
    assert [left, top, right, bottom] == frame
    area = rect_of(app.request(extension("+7", WINDOW, "name=area", "", "globalRect", "")))
    assert area[0] <= left and area[1] <= top and right <= area[2] and bottom <= area[3]
    assert scroll(app, "farFrame") == f"0,r:{left},{top},{right},{bottom}"


def test_scrolling_brings_an_item_into_sight_in_all_that_it_is_in(app):
    left, top, right, bottom = rect_of(scroll(app, "innerList", "s:Inner 20"))
    area = rect_of(app.request(extension("+7", WINDOW, "name=area", "", "globalRect", "")))
    assert area[0] <= left < right <= area[2] and area[1] <= top < bottom <= area[3]
    assert app.events("press", "release") == []


@pytest.mark.parametrize("widget, item, reason", [
    ("unseen", "", "hidden"),
    ("clipped", "", "outside QFrame clip"),
    ("list", "s:None", 'item "None" not there yet'),
    ("list", "i:2", 'item "2" hidden'),
])  # fmt: skip
def test_what_cannot_be_scrolled_to_yet_says_why(app, widget, item, reason):
    assert scroll(app, widget, item) == f"9,{reason}"
