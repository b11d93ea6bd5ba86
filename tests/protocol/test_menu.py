"""Pop-up menus: what a walk presses and chooses, what it leaves behind when it fails, the pseudo-properties."""

import pytest

from menus import POPUP, POPUP_PATH, input_state, keys, sharing, wait_until_closed
from refusals import nothing_happens
from replies import error
from styles import STYLES


def opened(launch, *arguments):
    host = launch("menuhost", *arguments)
    host.do("popup")
    host.forget()
    return host


@pytest.fixture(params=STYLES)
def app(launch, request):
    return opened(launch, "-style", request.param)


@pytest.fixture
def plain(launch):
    return opened(launch, "-style", STYLES[0])


def choose(app, path, option=""):
    return app.activate(POPUP, POPUP_PATH, "s:" + path, option)


def assert_chosen(app, name):
    """The item ran once, no other did, and all menus are closed."""
    app.wait_for(f"triggered {name}")
    wait_until_closed(app)
    assert app.events("triggered") == [f"triggered {name}"]


def assert_closed(app):
    """No item ran and all menus are closed: keys were handled before the reply."""
    assert input_state(app)["popup"] == "none"
    assert app.events("triggered", "toggled") == []


ITEMS = [
    ("File/Save", "popupSave"),
    ("Options/Word wrap", "popupWrap"),
    ("Options/", "popupNameless"),
    ("Options/Item 1", "popupNameless"),
    ("Options/Plain", "popupPlain"),
    ("A/B/C", "popupC"),
    ("Item 3/Item 0", "popupC"),
    ("Item 0/Item 0", "popupSave"),
    ("Last", "popupLast"),
]


@pytest.mark.parametrize("path, name", sharing(ITEMS, but=["Options/Word wrap"]))
def test_a_path_chooses_its_item_once(app, path, name):
    assert choose(app, path) == "0,QMenu"
    assert_chosen(app, name)


@pytest.mark.shared
def test_a_walk_is_down_to_the_item_right_into_its_menu_and_return_on_the_last(app):
    choose(app, "File/Save")
    app.wait_for("triggered popupSave")
    assert app.events("keypress", "shown", "triggered") == [
        "keypress popup 16777237 '' modifiers 0",
        "keypress popup 16777236 '' modifiers 0",
        "shown popupFile",
        "keypress popupFile 16777220 '' modifiers 0",
        "triggered popupSave",
    ]


@pytest.mark.shared
def test_a_path_may_end_at_a_submenu_which_it_opens(app):
    assert choose(app, "Options") == "0,QMenu"
    app.wait_for("shown popupOptions")
    assert choose(app, "Plain") == "0,QMenu"
    assert_chosen(app, "popupPlain")


@pytest.mark.shared
def test_the_number_of_an_unnamed_item_in_the_list_is_one_more_than_that_in_a_path(app):
    assert "Options/Item 2" in app.read(POPUP, POPUP_PATH, "itemList").split("\f")
    choose(app, "Options/Item 2")
    assert_chosen(app, "popupPlain")


UNREACHABLE = [
    ("File/Locked", "Item is disabled"),
    ("File/Deeper/y", "Item is disabled"),
    ("Off/In", "Item is disabled"),
    ("File/Nope", "Invalid item"),
    ("File/Save/x", "Invalid item"),
    ("Nope", "Invalid item"),
    ("Hidden", "Invalid item"),
    ("Options/Title", "Invalid item"),
    ("Item 6", "Invalid item"),
    ("Item 0x", "Invalid item"),
    ("", "Invalid item"),
    ("A/C", "Invalid item"),
]


@pytest.mark.shared
@pytest.mark.parametrize("path, message", UNREACHABLE, ids=[path for path, _ in UNREACHABLE])
def test_a_failed_walk_closes_all_menus_and_the_next_one_works(app, path, message):
    assert choose(app, path) == error(message)
    assert_closed(app)
    wait_until_closed(app)
    app.do("popup")
    assert choose(app, "File/Save") == "0,QMenu"
    assert_chosen(app, "popupSave")


@pytest.mark.shared
def test_a_failed_walk_presses_escape_once_for_each_menu(plain):
    choose(plain, "File/Nope")
    assert keys(plain) == ["popup Down", "popup Right", "popupFile Escape", "popup Escape"]


# Check states


@pytest.mark.shared
def test_an_item_in_the_wanted_check_state_is_left_alone_and_all_menus_closed(app):
    assert choose(app, "Options/Word wrap", "b:true") == "0,QMenu"
    assert keys(app)[-2:] == ["popupOptions Escape", "popup Escape"]
    assert_closed(app)
    assert app.get("popupWrap", "checked") == "true"


def test_an_item_in_the_other_check_state_is_chosen(app):
    assert choose(app, "Options/Word wrap", "b:false") == "0,QMenu"
    assert_chosen(app, "popupWrap")
    assert keys(app)[-1] == "popupOptions Return"
    assert app.get("popupWrap", "checked") == "false"


@pytest.mark.shared
@pytest.mark.parametrize("option", ["b:true", "b:false"])
@pytest.mark.parametrize("path", ["Last", "Options/Plain", "File"])
def test_a_check_state_for_an_item_that_has_none_is_refused(plain, path, option):
    assert choose(plain, path, option) == error("Item is not checkable")
    assert_closed(plain)


# Refusals that press no key


@pytest.mark.shared
@pytest.mark.parametrize("value", ["", "i:1", "b:true"])
def test_the_path_must_be_a_string(plain, value):
    expected = error('Type error: object "popup" of class "QMenu" accepts string.')
    assert plain.activate(POPUP, POPUP_PATH, value) == expected
    assert keys(plain) == []
    assert input_state(plain)["popup"] == "popup"


@pytest.mark.shared
@pytest.mark.parametrize("option", ["s:true", "i:1"])
def test_the_option_must_be_a_bool_or_nothing(plain, option):
    expected = error('Type error: object "popup" of class "QMenu" accepts bool, none.')
    assert choose(plain, "Last", option) == expected
    assert keys(plain) == []


@pytest.mark.shared
def test_a_menu_behind_its_open_submenu_has_no_focus(launch):
    app = launch("menuhost")
    app.do("openFile")
    app.forget()
    assert app.activate("Menus", "popup", "s:Last") == error("No focus")
    assert keys(app) == []
    assert (app.get("popup", "visible"), app.get("popupFile", "visible")) == ("true", "true")
    assert choose(app, "Save") == "0,QMenu"
    assert_chosen(app, "popupSave")


@pytest.mark.shared
def test_a_failed_walk_from_a_submenu_leaves_its_parent_open(launch):
    app = launch("menuhost")
    app.do("openFile")
    app.forget()
    assert choose(app, "Nope") == error("Invalid item")
    assert keys(app) == ["popupFile Down", "popupFile Escape"]
    assert input_state(app)["popup"] == "popup"


@pytest.mark.shared
def test_entering_is_not_implemented(plain):
    expected = error('"enter" is not implemented for widget of class "QMenu"')
    with nothing_happens(plain):
        assert plain.enter(POPUP, POPUP_PATH, "s:File") == expected


# Right to left


@pytest.mark.shared
def test_right_to_left_items_of_the_first_level_can_be_chosen(launch):
    app = opened(launch, "-reverse")
    assert choose(app, "Last") == "0,QMenu"
    assert_chosen(app, "popupLast")


@pytest.mark.shared
def test_right_to_left_the_right_key_opens_no_submenu(launch):
    app = opened(launch, "-reverse")
    choose(app, "File/Save")
    app.settle()
    assert keys(app)[:2] == ["popup Down", "popup Right"]
    assert "triggered popupSave" not in app.events("triggered")


# The mouse


@pytest.mark.shared
def test_the_mouse_command_is_that_of_all_widgets(plain):
    assert plain.mouse(POPUP, POPUP_PATH, "MouseClick:LeftButton:0.5:0.95:") == "0,QMenu"
    assert_chosen(plain, "popupLast")


@pytest.mark.shared
def test_the_menu_under_the_cursor_is_identified_as_the_popup(plain):
    plain.mouse(POPUP, POPUP_PATH, "MouseMove::0.5:0.5:")
    name = "Widget:ActivePopupWidget".encode().hex()
    assert plain.request("3") == f"?,QMenu,1,1,ActivePopupWidget,popup,{name}"


# Pseudo-properties


@pytest.mark.shared
def test_the_pseudo_properties_are_listed_after_the_built_in_ones(plain):
    names = plain.read(POPUP, POPUP_PATH, "pseudoPropertyNames").split("\f")
    assert names[-2:] == ["itemList", "pathDisabled"]
    assert len(names) == 1 + 5 + 2


@pytest.mark.shared
def test_the_item_list_has_a_null_entry_for_a_separator_and_hidden_items_of_the_first_level(plain):
    assert plain.read(POPUP, POPUP_PATH, "itemList").split("\f") == [
        "0,l:",
        "File/Save",
        "File/Locked",
        "File/Deeper/y",
        "",
        "Options/Word wrap",
        "Options/Item 2",
        "Options/Plain",
        "Off/In",
        "Off/In off",
        "A/B/C",
        "Hidden",
        "Last",
    ]


DISABLED = [
    ("File", "0,b:false"),
    ("File/Save", "0,b:false"),
    ("File/Locked", "0,b:true"),
    ("File/Deeper", "0,b:true"),
    ("Off", "0,b:true"),
    ("Off/In", "0,b:false"),
    ("Off/In off", "0,b:true"),
    ("A/B/C", "0,b:false"),
    ("Item 0/Item 1", "0,b:true"),
    ("Options/", "0,b:false"),
] + [
    (path, error("Could not reach last item of path"))
    for path in [
        "File/Deeper/y",
        "File/Nope",
        "File/Save/x",
        "Nope",
        "Nope/x",
        "Hidden",
        "Options/Title",
        "Item 6",
        "",
    ]
]


@pytest.mark.shared
@pytest.mark.parametrize("path, reply", DISABLED, ids=[path for path, _ in DISABLED])
def test_path_disabled(plain, path, reply):
    assert plain.read(POPUP, POPUP_PATH, "pathDisabled", "s:" + path) == reply
    assert keys(plain) == []


@pytest.mark.shared
@pytest.mark.parametrize("argument", ["", "i:1", "File"])
def test_a_path_must_be_given_as_a_string(plain, argument):
    expected = error('Type error: object "popup" of class "QMenu" accepts string.')
    assert plain.read(POPUP, POPUP_PATH, "pathDisabled", argument) == expected


@pytest.mark.shared
def test_a_menu_behind_its_submenu_can_be_read(launch):
    app = launch("menuhost")
    app.do("openFile")
    assert app.read("Menus", "popup", "pathDisabled", "s:File/Locked") == "0,b:true"
    assert app.read("Menus", "popup", "itemList").startswith("0,l:\fFile/Save")


@pytest.mark.shared
def test_menus_do_not_answer_for_check_states(plain):
    expected = error('Unknown property "pathChecked".')
    assert plain.read(POPUP, POPUP_PATH, "pathChecked", "s:Options/Word wrap") == expected
