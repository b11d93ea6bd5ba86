"""Menu bars: paths, what a walk presses and chooses, what it leaves behind when it fails."""

import re

import pytest

from menus import input_state, keys, sharing, wait_until_closed
from refusals import nothing_happens
from replies import error
from styles import STYLES

WINDOW = "Menus"


@pytest.fixture(params=STYLES)
def app(launch, request):
    host = launch("menuhost", "-style", request.param)
    host.forget()
    return host


@pytest.fixture
def plain(launch):
    host = launch("menuhost", "-style", STYLES[0])
    host.forget()
    return host


def choose(app, path, option=""):
    return app.activate(WINDOW, "bar", "s:" + path, option)


def assert_chosen(app, name):
    """The item ran once, no other did, and all menus are closed."""
    app.wait_for(f"triggered {name}")
    wait_until_closed(app)
    assert app.events("triggered") == [f"triggered {name}"]


def assert_nothing_happened(app):
    """No item ran, all menus are closed and the edit has the keyboard back at once: keys were handled before the reply."""
    state = input_state(app)
    assert (state["popup"], state["focus"]) == ("none", "edit")
    assert app.events("triggered", "toggled") == []


ITEMS = [
    ("File/New", "new"),
    ("File/Save", "save"),
    ("File/Send/Mail", "mail"),
    ("Item 0/Save", "save"),
    ("Item 0/Item 1", "save"),
    ("1/2/3/4/5/6", "deepest"),
    ("Many/Entry 0", "entry0"),
    ("Many/Entry 199", "entry199"),
    ("Many/Item 199", "entry199"),
    ("Zoom/Pan/In", "zoomIn"),
    ("Lazy/More/Late", "late"),
    ("Tear/One", "tear1"),
    ("Tear/Two", "tear2"),
    ("Texts/First", "first"),
    ("Texts/Item 0", "first"),
    ("Texts/Item 1", "nameless"),
    ("Texts/", "nameless"),
    ("Texts/Drag & drop", "drag"),
    ("Texts/Print Ctrl+P", "print"),
    ("Texts/Many blanks", "blanks"),
    ("Texts/Item 5", "indexLike"),
    ("Texts/In/Out/C", "c"),
    ("Texts/x/w", "inShort"),
    ("Texts/Twin", "twin1"),
    ("Texts/Item 10", "twin2"),
    ("Texts/Widget", "edited"),
    ("Texts/Last", "last"),
    ("Options/Word wrap", "wrap"),
]


@pytest.mark.parametrize("path, name", sharing(ITEMS, but=["Options/Word wrap", "Lazy/More/Late"]))
def test_a_path_chooses_its_item_once(app, path, name):
    assert choose(app, path) == "0,QMenuBar"
    assert_chosen(app, name)


@pytest.mark.shared
def test_the_bar_is_clicked_at_its_top_right_corner_before_the_menu_opens_by_itself(plain):
    choose(plain, "File/Save")
    plain.wait_for("triggered save")
    width = plain.get("bar", "width")
    assert plain.events("press", "release", "shown", "keypress", "triggered") == [
        f"press bar {int(width) - 1},0 button 1 buttons 1 modifiers 0",
        f"release bar {int(width) - 1},0 button 1 buttons 0 modifiers 0",
        "shown fileMenu",
        "keypress fileMenu 16777237 '' modifiers 0",
        "keypress fileMenu 16777237 '' modifiers 0",
        "keypress fileMenu 16777220 '' modifiers 0",
        "triggered save",
    ]


@pytest.mark.shared
def test_each_submenu_is_opened_by_the_right_key(plain):
    choose(plain, "1/2/3/4/5/6")
    plain.wait_for("triggered deepest")
    assert keys(plain) == [
        "deepMenu Down",
        "deepMenu Right",
        "deepMenu2 Right",
        "deepMenu3 Right",
        "deepMenu4 Right",
        "deepMenu5 Return",
    ]


UNREACHABLE = [
    ("File", "Invalid item"),
    ("File/", "Invalid item"),
    ("File/Nope", "Invalid item"),
    ("File/save", "Invalid item"),
    ("File/&Save", "Invalid item"),
    ("File/Save/x", "Invalid item"),
    ("File/Locked", "Item is disabled"),
    ("File/Recent", "Item is disabled"),
    ("File/Recent/x", "Item is disabled"),
    ("File/Send/Fax", "Item is disabled"),
    ("File/Send/Empty/x", "Invalid item"),
    ("Zoom/Pan", "Invalid item"),
    ("Zoom/Pan/Out", "Invalid item"),
    ("1/2/3/4/5/7", "Invalid item"),
    ("1/2/3/4/5/6 off", "Item is disabled"),
    ("Lazy/More/Later", "Invalid item"),
    ("Texts/Title", "Invalid item"),
    ("Texts/Hidden", "Invalid item"),
    ("Texts/Item 14", "Invalid item"),
    ("Texts/Item -1", "Invalid item"),
    ("Texts/Item ", "Invalid item"),
    ("Texts/Item 1x", "Invalid item"),
    ("Texts/item 1", "Invalid item"),
    ("Texts/Item 0x1", "Invalid item"),
    ("Texts/x/y/z", "Invalid item"),
    ("Texts/P/Q/R", "Item is disabled"),
]


@pytest.mark.parametrize("path, message", sharing(UNREACHABLE, but=["Lazy/More/Later"]))
def test_a_failed_walk_closes_all_menus_and_the_next_one_works(app, path, message):
    assert choose(app, path) == error(message)
    assert "shown" in [line.split(" ")[0] for line in app.events("shown")]
    assert_nothing_happened(app)
    assert choose(app, "File/Save") == "0,QMenuBar"
    assert_chosen(app, "save")


def test_a_failed_walk_gives_the_keyboard_back_where_qt_has_lost_the_active_window_meanwhile(plain):
    choose(plain, "Texts/Widget")  # the menu gives its own widget the focus from now on
    wait_until_closed(plain)
    plain.forget()
    plain.do("loseActiveWindow")
    assert choose(plain, "Texts/Nope") == error("Invalid item")
    assert_nothing_happened(plain)


@pytest.mark.shared
@pytest.mark.parametrize(
    "path",
    [
        "Nope/x",
        "Off/In",
        "Title only",
        "Title only/x",
        "Bar separator/x",
        "Hidden/x",
        "Zoom/In",
        "Pan/In",
        "Item 99/x",
        "",
        "/",
        "file/Save",
    ],
)
def test_a_path_whose_first_element_opens_no_menu_is_refused_without_a_click_or_key(plain, path):
    assert choose(plain, path) == error("Invalid menu path")
    assert plain.events("press", "shown", "keypress") == []
    assert_nothing_happened(plain)


@pytest.mark.shared
def test_a_menu_title_alone_opens_the_menu_and_closes_it_with_two_escapes(plain):
    assert choose(plain, "File") == error("Invalid item")
    assert keys(plain) == ["fileMenu Down", "fileMenu Escape", "bar Escape"]
    assert plain.events("shown", "hidden") == ["shown fileMenu", "hidden fileMenu"]
    assert_nothing_happened(plain)


def test_an_error_two_levels_down_takes_one_escape_more(plain):
    assert choose(plain, "Lazy/More/Later") == error("Invalid item")
    assert keys(plain)[-3:] == ["moreMenu Escape", "lazyMenu Escape", "bar Escape"]


@pytest.mark.shared
def test_failing_again_and_again_always_returns_the_keyboard(app):
    for _ in range(30):
        choose(app, "File/Save")
        app.wait_for("triggered save")
        app.forget()
        assert choose(app, "File/Send/Fax") == error("Item is disabled")
        assert_nothing_happened(app)


def test_an_item_that_never_gets_the_highlight_is_tried_all_the_same(plain):
    assert choose(plain, "Spin/Below") == "0,QMenuBar"
    plain.wait_for(re.compile("keypress .* 16777220 .*"))
    assert keys(plain).count("spinInside Down") + keys(plain).count("spinMenu Down") == 1 + 10 * 3
    assert "triggered belowSpin" not in plain.events("triggered")


# Check states


@pytest.mark.shared
def test_an_item_in_the_wanted_check_state_is_left_alone_and_the_menu_closed(app):
    assert choose(app, "Options/Word wrap", "b:true") == "0,QMenuBar"
    assert app.events("shown", "hidden") == ["shown optionsMenu", "hidden optionsMenu"]
    assert keys(app)[-2:] == ["optionsMenu Escape", "bar Escape"]
    assert_nothing_happened(app)
    assert app.get("wrap", "checked") == "true"


@pytest.mark.parametrize(
    "path, name, option", [("Options/Word wrap", "wrap", "b:false"), ("Options/Ruler", "ruler", "b:true")]
)
def test_an_item_in_the_other_check_state_is_chosen(app, path, name, option):
    assert choose(app, path, option) == "0,QMenuBar"
    assert_chosen(app, name)
    assert app.get(name, "checked") == option[2:]


def test_checking_one_item_of_an_exclusive_group_unchecks_the_other(app):
    assert choose(app, "Options/Align/Left", "b:true") == "0,QMenuBar"
    assert_nothing_happened(app)
    assert choose(app, "Options/Align/Right", "b:true") == "0,QMenuBar"
    assert_chosen(app, "right")
    assert (app.get("left", "checked"), app.get("right", "checked")) == ("false", "true")


@pytest.mark.shared
def test_a_check_state_for_an_item_that_has_none_is_refused(app):
    assert choose(app, "Options/Plain", "b:true") == error("Item is not checkable")
    assert_nothing_happened(app)


# Types


@pytest.mark.shared
@pytest.mark.parametrize("value", ["", "i:1", "b:true"])
def test_the_path_must_be_a_string(plain, value):
    expected = error('Type error: object "bar" of class "QMenuBar" accepts string.')
    assert plain.activate(WINDOW, "bar", value) == expected
    assert plain.events("press", "keypress") == []


@pytest.mark.shared
@pytest.mark.parametrize("option", ["s:true", "i:1"])
def test_the_option_must_be_a_bool_or_nothing(plain, option):
    expected = error('Type error: object "bar" of class "QMenuBar" accepts bool, none.')
    assert choose(plain, "File/Save", option) == expected
    assert plain.events("press", "keypress") == []


@pytest.mark.shared
def test_entering_is_not_implemented(plain):
    expected = error('"enter" is not implemented for widget of class "QMenuBar"')
    with nothing_happens(plain):
        assert plain.enter(WINDOW, "bar", "s:File") == expected


# Effects of items on the application


@pytest.mark.shared
def test_an_item_may_open_a_modal_dialog(plain):
    assert choose(plain, "Acts/Dialog") == "0,QMenuBar"
    plain.wait_until("dialog", "isActiveWindow", "true")
    assert input_state(plain)["modal"] == "dialog"
    assert choose(plain, "File/Save") == "4,Window (Menus) not active modal"
    plain.do("closeDialog")
    plain.wait_for("dialog closed")
    plain.forget()
    assert choose(plain, "File/Save") == "0,QMenuBar"
    assert_chosen(plain, "save")


def test_an_item_may_quit_the_application(plain):
    assert choose(plain, "Acts/Quit") == "0,QMenuBar"
    plain.wait_for("exec returned")
    assert plain.wait_for_end() == 0


def test_an_item_may_delete_its_menu(plain):
    assert choose(plain, "Acts/Remove menu") == "0,QMenuBar"
    plain.wait_for("triggered remove")
    assert choose(plain, "Acts/Remove menu") == error("Invalid menu path")
    assert plain.get("actsMenu", "visible") == "<no object actsMenu>"


@pytest.mark.parametrize("path", ["Acts/Remove on hover", "Acts/After"])
def test_a_menu_that_dies_during_the_walk_is_an_error(plain, path):
    assert choose(plain, path) == error("Internal error, proxy without widget")
    assert plain.get("actsMenu", "visible") == "<no object actsMenu>"
    assert plain.events("triggered") == []
    assert choose(plain, "File/Save") == "0,QMenuBar"
    plain.wait_for("triggered save")


def test_an_item_that_dies_during_the_walk_is_an_error(plain):
    assert choose(plain, "Swap/Swapped") == error("Invalid item")
    assert_nothing_happened(plain)


# Circumstances


@pytest.mark.shared
def test_an_open_popup_is_closed_by_the_click_beside_the_titles(plain):
    plain.do("popup")
    assert choose(plain, "File/Save") == "0,QMenuBar"
    assert_chosen(plain, "save")
    assert plain.events("hidden")[0] == "hidden popup"


def test_a_menu_whose_title_does_not_fit_into_the_bar_can_be_chosen_from(app):
    app.do("narrow")
    app.wait_until("bar", "width", "110")
    assert choose(app, "Swap/Before") == "0,QMenuBar"
    assert_chosen(app, "before")


@pytest.fixture
def right_to_left(launch):
    host = launch("menuhost", "-style", STYLES[0], "-reverse")
    host.forget()
    return host


@pytest.mark.shared
def test_right_to_left_items_of_the_first_level_can_be_chosen(right_to_left):
    assert choose(right_to_left, "File/Save") == "0,QMenuBar"
    assert_chosen(right_to_left, "save")


@pytest.mark.shared
def test_right_to_left_a_failed_walk_closes_the_menu(right_to_left):
    assert choose(right_to_left, "Texts/Nope") == error("Invalid item")
    assert_nothing_happened(right_to_left)


def test_right_to_left_the_right_key_goes_to_the_next_menu_and_opens_no_submenu(right_to_left):
    choose(right_to_left, "File/Send/Mail")
    right_to_left.wait_for("shown swapMenu")
    assert "fileMenu Right" in keys(right_to_left)
    assert right_to_left.events("shown")[:2] == ["shown fileMenu", "shown swapMenu"]
    assert "triggered mail" not in right_to_left.events("triggered")
