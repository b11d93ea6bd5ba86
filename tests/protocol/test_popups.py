"""Pop-up menus as applications open them, opened and chosen from with the commands alone."""

import pytest

from hostapp import eventually
from menus import POPUP, POPUP_PATH, input_state, sharing, wait_for_popup, wait_until_closed
from refusals import nothing_happens
from replies import error
from styles import STYLES

RIGHT_CLICK = "MouseClick:RightButton:::"
WINDOW = "Popups"


@pytest.fixture(params=STYLES)
def app(launch, request):
    host = launch("popuphost", "-style", request.param)
    host.forget()
    return host


OPENINGS = {
    "executed": lambda app: app.mouse(WINDOW, "executing", RIGHT_CLICK),
    "popped": lambda app: app.mouse(WINDOW, "popping", RIGHT_CLICK),
    "pushMenu": lambda app: app.activate(WINDOW, "push"),
    "instantMenu": lambda app: app.activate(WINDOW, "instant"),
    "splitMenu": lambda app: app.mouse(WINDOW, "split", "MouseClick:LeftButton:::"),
}


@pytest.fixture(params=sorted(OPENINGS))
def menu(app, request):
    """The name of a menu that has just been opened by a command."""
    assert OPENINGS[request.param](app).startswith("0,")
    wait_for_popup(app)
    assert input_state(app)["popup"] == request.param
    return request.param


def choose(app, path, option=""):
    return app.activate(POPUP, POPUP_PATH, "s:" + path, option)


def assert_nothing_open(app):
    eventually(lambda: input_state(app)["popup"], "none")


@pytest.mark.parametrize(
    "path, item",
    sharing([("One", "One"), ("Two", "Two"), ("Sub/Three", "Three"), ("Sub/Four", "Four")], but=["Sub/Four"]),
)
def test_an_item_is_chosen_once(app, menu, path, item):
    assert choose(app, path) == "0,QMenu"
    app.wait_for(f"triggered {menu}{item}")
    assert_nothing_open(app)
    assert app.events("triggered", "clicked") == [f"triggered {menu}{item}"]


@pytest.mark.parametrize("path, option", [("Nope", ""), ("Sub/Nope", ""), ("Sub", "b:true")])
def test_a_failed_walk_closes_the_menu_and_it_can_be_opened_again(app, menu, path, option):
    message = "Item is not checkable" if option else "Invalid item"
    assert choose(app, path, option) == error(message)
    assert_nothing_open(app)
    assert app.events("triggered") == []
    OPENINGS[menu](app)
    wait_for_popup(app)
    assert choose(app, "Sub/Three") == "0,QMenu"
    app.wait_for(f"triggered {menu}Three")


@pytest.mark.shared
def test_an_item_in_the_wanted_check_state_closes_the_menu(app, menu):
    assert choose(app, "Sub/Four", "b:true") == "0,QMenu"
    assert_nothing_open(app)
    assert app.events("triggered") == []


@pytest.mark.shared
def test_a_menu_run_by_exec_returns_what_was_chosen(app):
    OPENINGS["executed"](app)
    wait_for_popup(app)
    choose(app, "Two")
    app.wait_for("exec gave Two")
    OPENINGS["executed"](app)
    wait_for_popup(app)
    choose(app, "Nope")
    app.wait_for("exec gave nothing")
    wait_until_closed(app)


@pytest.mark.shared
def test_the_actions_of_a_widget_are_chosen_from_its_context_menu(app):
    app.mouse(WINDOW, "listing", RIGHT_CLICK)
    wait_for_popup(app)
    assert app.read(POPUP, POPUP_PATH, "itemList") == "0,l:\fListed"
    assert choose(app, "Listed") == "0,QMenu"
    app.wait_for("triggered listed")
    assert_nothing_open(app)


@pytest.mark.shared
def test_a_menu_without_a_name_is_identified_without_one(app):
    app.mouse(WINDOW, "listing", RIGHT_CLICK)
    wait_for_popup(app)
    app.mouse(POPUP, POPUP_PATH, "MouseMove::0.5:0.5:")
    name = POPUP.encode().hex()
    assert app.request("3") == f"?,QMenu,1,1,ActivePopupWidget,,{name}"


@pytest.mark.shared
def test_other_windows_are_refused_while_a_popup_is_open(app):
    app.do("openTorn")
    wait_for_popup(app)
    with nothing_happens(app):
        assert app.activate("Widget:instantMenu", "instantMenu", "s:One").startswith("2,")
    assert choose(app, "One") == "0,QMenu"


def open_dialog(app):
    app.do("openDialog")
    app.wait_until("dialog", "isActiveWindow", "true")


@pytest.mark.shared
def test_a_context_menu_of_a_modal_dialog_works_like_any_other(app):
    open_dialog(app)
    assert app.mouse("Modal", "executingModal", RIGHT_CLICK) == "0,QWidget"
    wait_for_popup(app)
    assert choose(app, "Sub/Three") == "0,QMenu"
    app.wait_for("exec gave Three")
    app.mouse("Modal", "executingModal", RIGHT_CLICK)
    wait_for_popup(app)
    assert choose(app, "Sub/Nope") == error("Invalid item")
    assert_nothing_open(app)
    assert app.get("dialog", "visible") == "true"


@pytest.mark.shared
@pytest.mark.parametrize("command, numbers", [("8", ""), ("10", ",5,5"), ("11", ",300,300")])
def test_a_popup_of_a_modal_dialog_is_no_window_to_be_moved(app, command, numbers):
    open_dialog(app)
    app.mouse("Modal", "executingModal", RIGHT_CLICK)
    wait_for_popup(app)
    place = app.get("dialog", "geometry")
    with nothing_happens(app):
        assert app.request(f"{command},Modal{numbers}") == "4,Window (Modal) not active popup"
        assert app.request(f"{command},{POPUP}{numbers}") == f"4,Window ({POPUP}) not active modal"
    assert app.get("dialog", "geometry") == place
    assert choose(app, "Sub/Three") == "0,QMenu"


@pytest.mark.shared
def test_the_escapes_of_a_menu_bar_do_not_close_its_dialog(app):
    open_dialog(app)
    app.forget()
    for path in ("Bar", "Bar/Nope", "Bar/Sub/Nope"):
        assert app.activate("Modal", "dialogBar", "s:" + path) == error("Invalid item")
        assert_nothing_open(app)
    assert app.get("dialog", "visible") == "true"
    assert app.activate("Modal", "dialogBar", "s:Bar/Sub/Three") == "0,QMenuBar"
    app.wait_for("triggered barMenuThree")


def test_a_torn_off_menu_is_no_popup(app):
    # It tears off only when the mouse has moved since it opened.
    app.mouse(WINDOW, "listing", "MouseMove::::")
    app.do("openTorn")
    wait_for_popup(app)
    assert app.mouse(POPUP, POPUP_PATH, "MouseClick:LeftButton:0.5:0.08:") == "0,QMenu"
    assert_nothing_open(app)
    assert app.request("8,Torn off") == "0,Torn off"
    app.forget()
    assert app.activate("Torn off", "unnamed", "s:One") == error("No focus")
    assert app.events("keypress", "triggered") == []
    assert "Sub/Three" in app.read("Torn off", "unnamed", "itemList").split("\f")
