"""The words that people try first: what is seen is found by its text, and everything has the verbs that make sense for it."""

import time

import pytest

from qtdriver import (
    AmbiguousError,
    CommandError,
    NotReadyError,
    OldAgentError,
    WidgetNotFoundError,
    eventually,
)
from showcase import running


@pytest.fixture(scope="module")
def app():
    with running() as (_, application):
        yield application


@pytest.fixture
def window(app):
    main = app.window(name="showcase")
    main.tab("Buttons").click()
    eventually(main.widget("brewButton")).is_visible()
    return main


@pytest.fixture
def extras(window):
    """The list of extras, without a selection."""
    window.tab("Lists").click()
    extras = window.widget("extrasList")
    eventually(extras).is_visible()
    extras.item("Oat milk").click()
    extras.item("Oat milk").click(modifier="control")
    yield extras
    extras.item("Honey").uncheck()


def selected(extras):
    return [text for text in extras.items() if extras.item(text).is_selected()]


# Widgets are found by what is seen


def test_a_button_is_found_by_its_text_although_it_has_a_name(window):
    before = int(window.widget("clickCount").text())
    window.button("Brew a cup").click()
    eventually(window.widget("clickCount")).has(text=str(before + 1))
    assert str(window.button("Brew a cup")) == 'window(name="showcase").button("Brew a cup")'


def test_a_tool_button_is_found_by_its_text_where_no_push_button_has_it(window):
    assert window.button("Medium cup").class_name() == "QToolButton"
    assert window.button("Milk").class_name() == "QPushButton"


def test_a_check_box_is_found_by_its_text_and_a_radio_button_too(window):
    window.checkbox("Milk").check()
    eventually(window.widget("milkCheck")).is_checked()
    window.checkbox("Milk").uncheck()
    eventually(window.widget("milkCheck")).is_checked(False)
    window.checkbox("Dark").check()
    eventually(window.widget("darkRadio")).is_checked()
    window.checkbox("Medium").check()


def test_a_tab_is_found_by_its_text_in_whatever_tab_bar_has_it(window):
    window.tab("Tables").click()
    eventually(window.widget("priceTable")).is_visible()
    assert window.tab("Tables").is_selected() and not window.tab("Lists").is_selected()
    window.tab("Containers").choose()
    eventually(window.widget("weekBar")).is_visible()


def test_several_of_a_text_are_told(window):
    window.tab("Containers").click()
    eventually(window.widget("firstRoaster")).is_visible()
    with pytest.raises(AmbiguousError, match="visible,2") as caught:
        window.button("Start").click(timeout=0)
    assert str(caught.value).count("startButton") >= 2


def test_what_is_not_there_yet_is_waited_for(window):
    with pytest.raises(
        WidgetNotFoundError, match='no button in sight shows "Refil water"; did you mean "Refill'
    ):
        window.button("Refil water").click(timeout=0)
    started = time.monotonic()
    with pytest.raises(WidgetNotFoundError):
        window.checkbox("Whole milk").check(timeout=0.5)
    assert time.monotonic() - started >= 0.5
    window.tab("Dialogs").click()
    window.button("Name a blend...").click()
    window.app.modal("Name a blend").button("Cancel").click()
    eventually(window.app.modal()).is_closed()


def test_a_field_is_found_by_its_label(window):
    if not window.app.connection.knows_locators:
        pytest.skip("the agent knows no locators")
    window.tab("Entry fields").click()
    window.field("Name:").enter("Ada")
    eventually(window.widget("customerEdit")).has(text="Ada")
    assert window.field("Name on the cup").text() == "Ada"
    window.field("Voucher:").enter("A-12")
    eventually(window.field("Voucher:")).has(text="A-12")
    with pytest.raises(WidgetNotFoundError, match='no field in sight has the label "Nickname:"'):
        window.field("Nickname:").text(timeout=0)


def test_a_field_needs_an_agent_with_extensions(window, monkeypatch):
    monkeypatch.setattr(window.app.connection, "_extensions", frozenset())
    with pytest.raises(OldAgentError):
        window.field("Name:").text()


def test_a_button_and_a_tab_can_be_waited_for_as_conditions(window):
    eventually(window.button("Brew a cup")).is_visible()
    eventually(window.checkbox("Milk")).is_enabled()
    window.tab("Lists").click()
    eventually(window.button("Brew a cup")).is_hidden()
    eventually(window.tab("Lists").is_selected).is_true()


def test_a_locator_stands_for_the_same_widget(window):
    assert window.checkbox("Milk").as_locator().text == 'QCheckBox text="Milk"'
    assert window.button('Say "Hi"').as_locator().text == r'QPushButton text="Say \"Hi\""'


# Items


def test_items_of_a_list_are_clicked_where_they_are(extras):
    extras.item("Cocoa").click()
    eventually(lambda: selected(extras)).equals(["Cocoa"])
    extras.item("Maple syrup").click(modifier="control")
    eventually(lambda: selected(extras)).equals(["Cocoa", "Maple syrup"])
    extras.item("Caramel").click()
    extras.item("Maple syrup").click(modifier="shift")
    eventually(lambda: selected(extras)).equals(["Caramel", "Nutmeg", "Maple syrup"])
    assert extras.item("Cocoa").text() == "Cocoa" and extras.item(0).text() == "Oat milk"


def test_items_are_selected_chosen_and_activated_alike(extras):
    for choose in ("select", "choose", "activate"):
        getattr(extras.item("Vanilla"), choose)()
        eventually(lambda: selected(extras)).equals(["Vanilla"])
        extras.choose("Honey")
        eventually(lambda: selected(extras)).equals(["Honey"])


def test_an_item_is_checked_and_unchecked(extras):
    extras.item("Honey").check()
    eventually(extras.item("Honey").is_checked).is_true()
    extras.item("Honey").uncheck()
    eventually(extras.item("Honey").is_checked).equals(False)
    assert extras.item("Honey").is_enabled()


def test_an_item_is_dragged_over_others(extras):
    extras.item("Honey").drag_to(extras.item("Vanilla"))
    eventually(lambda: selected(extras)).equals(["Honey", "Cinnamon", "Vanilla"])


def test_the_menu_of_an_item_is_chosen_from(extras):
    extras.item("Cinnamon").context_menu("Check all").click()
    eventually(extras.item("Cocoa").is_checked).is_true()
    assert [entry for entry in extras.context_menu("").items() if entry] == [
        "Check all",
        "Uncheck all",
        "Order more",
    ]
    assert not extras.context_menu("Order more").is_enabled()
    assert not extras.window.app.popup().is_open()
    extras.context_menu("Uncheck all").choose()
    eventually(extras.item("Cocoa").is_checked).equals(False)


def test_an_item_that_is_not_in_the_menu_is_told_with_those_that_are(extras):
    with pytest.raises(CommandError) as caught:
        extras.item("Cinnamon").context_menu("Check al").click()
    assert 'there is no item "Check al"; did you mean "Check all"?' in str(caught.value)
    assert 'items: "Check all", "Uncheck all", "Order more"' in str(caught.value)
    eventually(extras.window.app.popup()).is_closed()


def test_an_item_out_of_sight_is_scrolled_to_and_hovered(window):
    window.tab("Lists").click()
    origins = window.widget("originView")
    eventually(origins).is_visible()
    origins.item("Brazil").scroll_to()
    before = origins.item("Brazil")._place(None, scrolls=False)
    origins.item("Yemen").hover()
    assert window.app.widget_at_cursor().path.endswith("originView")
    with pytest.raises(CommandError, match="the item is out of sight"):
        origins.item("Brazil")._place(0, scrolls=False)
    origins.item("Brazil").scroll_to()
    assert origins.item("Brazil")._place(None, scrolls=False) == before
    origins.item("Yemen").double_click()
    window.focus_widget().enter("Jemen\n")
    eventually(lambda: origins.items()[-1]).equals("Jemen")


def test_items_of_a_tree_are_reached_below_closed_ones(window):
    window.tab("Lists").click()
    blends = window.widget("blendTree")
    eventually(blends).is_visible()
    antigua = blends.item("Season/Winter/Antigua")
    antigua.click()
    eventually(blends).has(currentPath="Season:40 %/Winter:40 %/Antigua:40 %")
    assert antigua.is_selected() and antigua.text() == "Antigua"
    with pytest.raises(NotReadyError) as caught:
        blends.item("Season/Wintr/Antigua").click(timeout=0)
    assert 'there is no item "Wintr" in "Season:40 %"; did you mean "Winter:40 %"?' in str(caught.value)


def test_cells_of_a_table_are_clicked(window):
    window.tab("Tables").click()
    prices = window.widget("priceTable")
    eventually(prices).is_visible()
    prices.cell("Cortado", "Large").click()
    eventually(prices).has(currentRow=2, currentColumn=3)
    prices.cell(1, 2).select()
    eventually(prices).has(currentRow=1, currentColumn=2)
    assert prices.cell("Espresso", "Small").text() == prices.read("itemText", "Espresso:Small")
    assert str(prices.cell(1, "Large")).endswith("widget(\"priceTable\").cell(1, 'Large')")
    with pytest.raises(NotReadyError) as caught:
        prices.cell("Cortado", "Larg").click(timeout=0)
    assert 'there is no column "Larg"; did you mean "Large"?' in str(caught.value)
    assert 'columns: "Small", "Medium", "Large"' in str(caught.value)


def requests_of(window, call):
    """The names of the requests that a call sends."""
    before = len(window.app.connection.transcript.exchanges())
    call()
    return [
        exchange.request.split(",")[0] for exchange in window.app.connection.transcript.exchanges()[before:]
    ]


def test_a_click_on_an_item_is_one_request_unless_it_is_of_a_combo_box(window):
    window.tab("Lists").click()
    tree = window.widget("blendTree").item("Season")
    eventually(window.widget("blendTree")).is_visible()
    assert requests_of(window, tree.click) == ["+9"]
    hopper = window.widget("hopperCombo").item("Hopper B")
    assert requests_of(window, hopper.click) == ["+9", "+5"]
    eventually(window.widget("hopperCombo")).has(currentText="Hopper B")
    window.widget("hopperCombo").choose("Hopper A")


def test_items_without_a_place_are_clicked_and_say_what_they_cannot(window):
    hopper = window.widget("hopperCombo")
    hopper.item("Hopper B").click()
    eventually(hopper).has(currentText="Hopper B")
    assert hopper.item("Hopper B").is_selected()
    number = hopper.items().index("Hopper B")
    assert hopper.item(number).is_selected() and not hopper.item(number + 1).is_selected()
    hopper.choose("Hopper A")
    eventually(hopper).has(currentText="Hopper A")
    with pytest.raises(CommandError, match="have no place for the mouse"):
        hopper.item("Hopper B").double_click()


def hovered_in_list(app):
    """The texts of the rows that are current in an open list."""
    rows = app.popup().find("QAbstractItemView").first().snapshot().root.items
    return [row.texts[0] for row in rows if "current" in row.states]


def test_an_item_of_a_combo_box_is_hovered_in_its_list_and_chosen_from_it(app, window):
    hopper = window.widget("hopperCombo")
    for text in ("Hopper C", "Hopper B"):
        hopper.item(text).hover()
        eventually(lambda text=text: hovered_in_list(app)).equals([text])
    hopper.item("Hopper B").click()
    eventually(app.popup()).is_closed()
    assert hopper.read("currentText") == "Hopper B"
    hopper.item(2).scroll_to()
    assert app.popup().is_open()
    hopper.choose("Hopper A")
    eventually(app.popup()).is_closed()
    assert hopper.read("currentText") == "Hopper A"


def test_tabs_and_pages_have_a_place(window):
    window.tab("Lists").hover()
    assert window.app.widget_at_cursor().path.endswith("qt_tabwidget_tabbar")
    window.tab("Containers").double_click()
    eventually(window.tab("Containers").is_selected).is_true()
    assert window.tab("Lists").text() == "Lists" and window.tab("Lists").is_enabled()


def test_with_an_older_agent_items_of_views_have_a_place_and_others_not(window, monkeypatch):
    known = window.app.connection.extensions - {"+scroll", "+item"}
    monkeypatch.setattr(window.app.connection, "_extensions", known)
    window.tab("Lists").click()
    blends = window.widget("blendTree")
    eventually(blends).is_visible()
    blends.item("Season/Winter/Antigua").click()
    assert blends.item("Season/Winter/Antigua").is_selected()
    with pytest.raises(CommandError, match="none of a list, tree or table"):
        window.tab("Lists").click("right")
    with pytest.raises(OldAgentError):
        window.menu("Roast").hover()


# Menus


def test_entries_of_a_menu_are_clicked_selected_checked_and_unchecked(window):
    lamp = window.menu("Roast/Heat lamp")
    for act, state in ((lamp.click, True), (lamp.select, False), (lamp.check, True), (lamp.uncheck, False)):
        act()
        eventually(lamp.is_checked).equals(state)


def test_the_menu_of_a_button_is_chosen_from(window):
    window.widget("sizeButton").menu("Large cup").click()
    eventually(window.widget("sizeButton")).has(text="Large cup")
    window.button("Large cup").menu("Medium cup").choose()
    eventually(window.widget("sizeButton")).has(text="Medium cup")
    assert window.widget("milkButton").menu("").items() == ("Whole milk", "Oat milk")
    assert not window.app.popup().is_open()
    assert str(window.button("Milk").menu("Oat milk")) == (
        'window(name="showcase").button("Milk").menu("Oat milk")'
    )


def test_a_right_click_asks_for_the_menu(extras):
    extras.right_click(at=(0.5, 0.5))
    eventually(extras.window.app.popup()).is_open()
    extras.window.app.popup().menu("Check all").click()
    eventually(extras.item("Cocoa").is_checked).is_true()
    extras.context_menu("Uncheck all").click()
    eventually(extras.item("Cocoa").is_checked).equals(False)
