"""The widget under the cursor, the place of a widget, the place of a tray icon."""

import pytest

from hostapp import QT, WINDOWS, eventually

HAS_PLACES = QT == 4 and not WINDOWS
"""Whether Qt has a place for an icon in a system tray that is not there."""


@pytest.fixture
def app(launch):
    return launch("corehost")


def hexed_title(title):
    return title.encode().hex()


def point_at(app, window, path, position="0.5:0.5"):
    """Moves the real cursor onto a widget, by the mouse command that all widgets share."""
    assert app.mouse(window, path, f"MouseMove::{position}:", class_name="QWidget") == "0,QWidget"


@pytest.mark.shared
def test_no_widget_under_the_cursor(app):
    app.do("cursorToEmptyDesktop")
    # On Windows Qt 4 has a widget for the desktop.
    desktop = "QWidget,1,1,desktop,desktop," if WINDOWS and QT == 4 else ",,,"
    assert app.request("3") == f"?,{desktop}"


@pytest.mark.shared
def test_a_named_widget_is_told_with_its_path_and_window(app):
    app.request("4,Editor,a/ok")
    reply = f"?,QPushButton,2,2,main/central/a/ok,main,{hexed_title('Editor')}"
    assert app.request("3") == reply


@pytest.mark.shared
def test_hidden_namesakes_are_counted_apart(app):
    app.request("4,Editor,twin")
    assert app.request("3") == f"?,QPushButton,2,1,main/central/twin,main,{hexed_title('Editor')}"


@pytest.mark.shared
def test_a_window_is_its_own_path(app):
    app.show("showFrameless", "frameless")
    point_at(app, "Frameless", "frameless")
    assert app.request("3") == f"?,QWidget,1,1,frameless,frameless,{hexed_title('Frameless')}"


@pytest.mark.shared
def test_the_button_of_a_tool_box_is_told_as_the_tool_box(app):
    app.show("showViews", "views")
    point_at(app, "Views", "toolbox", "0.5:0.05")
    assert app.request("3").split(",")[4] == "views/toolbox"


@pytest.mark.shared
def test_an_unnamed_widget_is_counted_among_all_unnamed_ones(app):
    app.show("showUnnamed", "several")
    app.do("cursorToUnnamed")
    assert app.request("3") == f"?,QLabel,2,2,several/unnamed,several,{hexed_title('Several')}"


@pytest.mark.parametrize(
    "opening, window, name, served_class",
    [
        ("showNames", "names", "Cancel_dialog_button", "QPushButton"),
        ("showNames", "names", "GoOn_dialog_button", "QPushButton"),
        ("showNames", "names", "fileOpen_action_button", "QToolButton"),
        ("showNames", "names", "fileClose_action_button", "QToolButton"),
        ("openInputDialog", "input", "ValueWidget__widget__", "QWidget"),
        ("openInputDialog", "input", "Help_dialog_button", "QPushButton"),
        ("openInputDialog", "input", "find_action_button", "QToolButton"),
    ],
)
def test_an_unnamed_widget_is_told_by_its_derived_name(app, opening, window, name, served_class):
    app.show(opening, window)
    point_at(app, f"Widget:{window}", name)
    assert app.request("3").split(",")[:2] == ["?", served_class]
    assert app.request("3").split(",")[4] == f"{window}/{name}"


@pytest.mark.shared
def test_an_unnamed_modal_window_is_told_as_the_active_modal_widget(app):
    app.do("openUntitledDialog")
    app.wait_until("label", "visible", "true")
    eventually(lambda: app.mouse("Widget:ActiveModalWidget", "label", "MouseMove::0.5:0.5:"), "0,QLabel")
    assert app.request("3") == "?,QLabel,1,1,unnamed/label,ActiveModalWidget,"


def cursor(app):
    """Where the application sees the mouse cursor."""
    app.do("reportCursor")
    return app.journal[-1]


@pytest.mark.shared
def test_arguments_make_it_another_command(app):
    assert app.request("3,x") == "8,Command not found"


@pytest.mark.shared
def test_locating_a_widget_puts_the_cursor_on_its_top_left_corner(app):
    app.show("showNames", "names")
    assert app.request("4,Editor,edit") == "0,QLineEdit"
    app.wait_until("main", "isActiveWindow", "true")
    app.do("reportCursor")
    left, top, _, _ = app.rect("Editor", "edit")
    assert app.journal[-1] == f"cursor {left},{top}"


@pytest.mark.shared
@pytest.mark.parametrize(
    "path, reply",
    [
        ("a/ok", "0,QPushButton"),
        ("main", "0,QMainWindow"),
        ("outer//deep", "0,QPushButton"),
        ("twin", "0,QPushButton"),
        ("ok", "7,Widget (ok) visible,2"),
        ("gone", "6,Widget (gone) not visible"),
        ("x/ok", "5,Widget (x/ok) not found"),
        ("nothing", "5,Widget (nothing) not found"),
        ("ActivePopupWidget", "5,Widget (ActivePopupWidget) not found"),
        ("FocusWidget", "5,Widget (FocusWidget) not found"),
    ],
)
def test_a_path_is_located(app, path, reply):
    app.request("4,Editor,edit")
    before = cursor(app)
    assert app.request(f"4,Editor,{path}") == reply
    assert (cursor(app) != before) == reply.startswith("0,")


@pytest.mark.shared
def test_locating_knows_object_names_only(app):
    app.show("showNames", "names")
    before = cursor(app)
    path = "Cancel_dialog_button"
    assert app.request(f"4,Names,{path}") == f"5,Widget ({path}) not found"
    assert cursor(app) == before


@pytest.mark.shared
def test_locating_finds_unnamed_widgets(app):
    app.show("showUnnamed", "several")
    assert app.request("4,Single,unnamed") == "0,QLabel"
    assert app.request("4,Several,unnamed") == "7,Widget (unnamed) visible,2"


@pytest.mark.shared
def test_locating_works_behind_a_modal_dialog(app):
    app.show("openDialog", "dialog1")
    assert app.request("4,Editor,edit") == "0,QLineEdit"
    app.activate("Save", "accept")
    app.wait_for("dialog result 1")


def test_locating_and_listing_work_behind_a_popup(app):
    app.do("openMenu")
    assert app.request("4,Editor,edit") == "0,QLineEdit"
    assert app.request("2,Editor").endswith('V QLineEdit : "edit"')


def test_tray_icons_by_name(app):
    assert app.request("12,,tray") == "2,Object (tray) not found"
    app.do("addTrayIcons")
    assert app.request("12,ignored,tray") == "6,Object (tray) not visible"
    assert app.request("12,,double") == "7,Object (double) visible,2"
    assert app.request("12,,nothing") == "2,Object (nothing) not found"
    assert app.request("12") == "2,Object () not found"


def test_a_tray_icon_without_a_known_place_has_no_rectangle(app):
    # There is no system tray on this desktop. On Linux Qt 4 has a place for the icon all the same.
    app.do("addTrayIcons")
    app.do("reportTrayIcon")
    left, top, right, bottom = map(int, app.journal[-1].split(" ")[1].split(","))
    known = left <= right and top <= bottom
    assert known == HAS_PLACES
    expected = f"0,r:{left},{top},{right},{bottom}" if known else "8,Exception : Rectangle not defined"
    assert app.request("12,,shown") == expected


def test_the_visible_one_of_several_tray_icons_is_found(app):
    app.do("addTrayIcons")
    # As far as it has a place.
    reply = "0,r:" if HAS_PLACES else "8,Exception : Rectangle not defined"
    assert app.request("12,,among").startswith(reply)
