"""Finding windows, and the commands on a window as a whole."""

import re

import pytest

from hostapp import eventually


@pytest.fixture
def app(launch):
    return launch("corehost")


def titles(reply):
    assert reply.startswith("0,l:")
    return sorted(reply.split("\f")[1:])


def test_the_visible_windows_are_listed_with_class_and_title(app):
    app.show("showReports", "literal")
    assert titles(app.request("1")) == [
        'QMainWindow : "Editor"',
        'QWidget : ""',
        'QWidget : "Report 1"',
        'QWidget : "Report 12"',
        'QWidget : "Widget:main"',
    ]


@pytest.mark.shared
def test_a_modal_window_is_marked(app):
    app.show("openDialog", "dialog1")
    assert titles(app.request("1")) == ['QDialog (M) : "Save changes? 1"', 'QMainWindow : "Editor"']
    app.activate("Save", "accept")
    app.wait_for("dialog result 1")


def test_without_a_visible_window_the_list_is_empty(launch):
    app = launch("emptyhost", "--late", agent=False)
    app.do("loadAgent")
    app.accept()
    assert app.request("1") == "0,l:"


def test_a_window_is_named_by_the_beginning_of_its_title(app):
    app.show("showReports", "literal")
    assert app.request("8,Report 12") == "0,Report 12"
    assert app.request("8,Edi") == "0,Editor"
    assert app.request("8,edi") == "2,Window (edi) not found"


def test_a_beginning_that_two_titles_share_is_ambiguous(app):
    app.show("showReports", "literal")
    assert app.request("8,Report 1") == "3,Window (Report 1) visible,2"
    assert app.request("2,Report 1") == "3,Window (Report 1) visible,2"
    assert app.request("4,Report 1,x") == "3,Window (Report 1) visible,2"


def test_the_empty_name_fits_every_visible_window(app):
    app.show("showReports", "literal")
    assert app.request("8,") == "3,Window () visible,5"


def test_a_hidden_window_is_never_found(app):
    app.show("showReports", "literal")
    assert app.request("8,Report 13") == "2,Window (Report 13) not found"
    assert app.request("8,Widget:hidden") == "2,Window (Widget:hidden) not found"


def test_a_window_is_named_by_its_object_name(app):
    app.show("showReports", "literal")
    assert app.request("8,Widget:main") == "0,Editor"
    assert app.request("8,Widget:mai") == "2,Window (Widget:mai) not found"
    assert app.request("8,Widget:literal") == "0,Widget:main"
    assert app.request("8,widget:main") == "2,Window (widget:main) not found"


def test_the_active_popup_is_a_window_name(app):
    assert app.request("8,Widget:ActivePopupWidget") == "2,Window (Widget:ActivePopupWidget) not found"
    app.do("openMenu")
    for name in ("Widget:ActivePopupWidget", "Widget:ActivePopupWidget:anything"):
        assert app.request(f"8,{name}") == "0,"


@pytest.mark.shared
def test_the_active_modal_widget_is_a_window_name_with_a_title_prefix(app):
    assert app.request("8,Widget:ActiveModalWidget") == "2,Window (Widget:ActiveModalWidget) not found"
    app.show("openDialog", "dialog1")
    assert app.request("8,Widget:ActiveModalWidget") == "0,Save changes? 1"
    assert app.request("8,Widget:ActiveModalWidget:") == "0,Save changes? 1"
    assert app.request("8,Widget:ActiveModalWidget:Save") == "0,Save changes? 1"
    assert (
        app.request("8,Widget:ActiveModalWidget:Open") == "2,Window (Widget:ActiveModalWidget:Open) not found"
    )
    assert app.request("8,Widget:ActiveModalWidget:Save:x").startswith("2,")
    app.activate("Save", "accept")
    app.wait_for("dialog result 1")


@pytest.mark.shared
def test_the_tree_lists_every_widget_with_depth_visibility_class_and_name(app):
    records = app.request("2,Editor").split("\f")
    assert records[0] == "0,l:"
    assert records[1] == '0 V QMainWindow : "main"'
    assert '1 V QWidget : "central"' in records
    assert '2 V QWidget : "a"' in records
    assert '3 V QPushButton : "ok"' in records
    assert '2 N QPushButton : "gone"' in records
    assert all(re.fullmatch(r'\d+ [VN] \w+ : ".*"', record) for record in records[1:])
    assert records.index('2 V QWidget : "a"') < records.index('2 V QWidget : "b"')


@pytest.mark.shared
def test_the_tree_of_an_unknown_window_is_not_found(app):
    assert app.request("2,Nothing") == "2,Window (Nothing) not found"


@pytest.mark.shared
def test_the_tree_of_a_window_behind_a_modal_dialog_is_listed(app):
    app.show("openDialog", "dialog1")
    assert app.request("2,Editor").startswith("0,l:\f0 V QMainWindow")
    app.activate("Save", "accept")
    app.wait_for("dialog result 1")


@pytest.mark.shared
def test_a_window_is_moved(app):
    # Without a frame: what Qt makes of a frame depends on when the window manager tells of it.
    app.show("showFrameless", "frameless")
    assert app.request("10,Frameless,140,90") == "0,Frameless"
    eventually(lambda: app.get("frameless", "geometry").split(" ")[0], "140,90")


def test_a_window_is_resized(app):
    assert app.request("11,Editor,640,700") == "0,Editor"
    eventually(lambda: app.get("main", "geometry").split(" ")[1], "640x700")


def test_a_size_beyond_all_screens_is_cut(app):
    # Not on both sides: the window would take a gigabyte.
    assert app.request("11,Editor,2147483647,700") == "0,Editor"
    eventually(lambda: app.get("main", "geometry").split(" ")[1], "16384x700")
    assert app.request("11,Editor,640,700") == "0,Editor"
    eventually(lambda: app.get("main", "geometry").split(" ")[1], "640x700")


@pytest.mark.shared
@pytest.mark.parametrize("sections", ["abc,10", "10,abc", ",", "10", "1.5,2", "0x10,1", "99999999999,1"])
@pytest.mark.parametrize("number", [10, 11])
def test_numbers_that_are_none_leave_the_window_alone(app, number, sections):
    before = app.get("main", "geometry")
    reply = app.request(f"{number},Editor,{sections}")
    assert reply == "8,Type error: move or resize accepts integer"
    assert app.get("main", "geometry") == before


@pytest.mark.parametrize("request_line", ["10,Editor,200,100", "11,Editor,300,300"])
def test_a_minimised_window_is_shown_before_it_is_moved_or_resized(app, request_line):
    app.do("minimizeMain")
    app.wait_until_minimized("main")
    assert app.request(request_line) == "0,Editor"
    app.wait_until("main", "minimized", "false")
    app.wait_until("main", "isActiveWindow", "true")


@pytest.mark.shared
@pytest.mark.parametrize("request_line", ["8,Editor", "10,Editor,1,2", "11,Editor,300,300"])
def test_a_modal_dialog_blocks_the_other_windows(app, request_line):
    before = app.get("main", "geometry")
    app.show("openDialog", "dialog1")
    assert app.request(request_line) == "4,Window (Editor) not active modal"
    assert app.request("8,Save") == "0,Save changes? 1"
    assert app.get("main", "geometry") == before
    app.activate("Save", "accept")
    app.wait_for("dialog result 1")


@pytest.mark.parametrize("request_line", ["8,Editor", "10,Editor,1,2", "11,Editor,300,300"])
def test_a_popup_blocks_every_window_even_the_active_one(app, request_line):
    app.do("openMenu")
    assert app.request(request_line) == "4,Window (Editor) not active popup"
    assert app.request("8,Widget:popup") == "0,"
