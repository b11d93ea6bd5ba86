"""Messages for a test author when something is not found, is blocked, ends or hangs: the texts themselves."""

import re
import textwrap

import pytest

from qtdriver import (
    AmbiguousError,
    AmbiguousWindowError,
    CommandError,
    ConditionError,
    NotReadyError,
    NotVisibleError,
    WidgetNotFoundError,
    WindowBlockedError,
    WindowNotFoundError,
    containing,
    eventually,
)

from showcase import running


@pytest.fixture(scope="module")
def app():
    """A showcase that only waits for a moment, since these tests are about what never comes."""
    with running() as (_, application):
        application.timeout = 0.1
        yield application


@pytest.fixture
def window(app):
    """Its main window, with the page of buttons in front."""
    main = app.window(name="showcase")
    main.widget("pages/qt_tabwidget_tabbar").select("Buttons", timeout=10)
    eventually(main.widget("brewButton"), timeout=10).is_visible()
    return main


@pytest.fixture
def dialog(app, window):
    """The modal dialog for a new order, open."""
    window.menu("Order/New order...").activate(timeout=10)
    opened = app.modal("New order")
    eventually(opened, timeout=10).is_open()
    yield opened
    opened.widget("cancelOrderButton").activate(timeout=10)
    eventually(opened, timeout=10).is_closed()


def said(kind, call):
    """The message of the error that `call` raises."""
    with pytest.raises(kind) as caught:
        call()
    return str(caught.value)


def text(lines):
    return textwrap.dedent(lines).strip("\n")


def test_a_window_that_is_not_there_names_those_that_are(app, window):
    assert said(WindowNotFoundError, app.window("Rostery").title) == text(
        """
        Window (Rostery) not found
        waited 0.1 s
        looked for a visible window whose title begins with "Rostery"; these windows exist:
          "Roastery" (MainWindow)
        """
    )


def test_a_title_in_another_case_is_pointed_out(app, window):
    assert 'upper and lower case count: did you mean "Roastery"?' in said(
        WindowNotFoundError, app.window("roast").title
    )


def test_a_window_with_another_object_name_is_told_with_its_own(app, window):
    assert said(WindowNotFoundError, app.window(name="showcas").title) == text(
        """
        Window (Widget:showcas) not found
        waited 0.1 s
        looked for a visible window with the object name "showcas"; these windows exist:
          "Roastery" (MainWindow)
        their object names: "showcase" ("Roastery")
        """
    )


def test_a_popup_and_a_dialog_that_are_not_open_are_called_so(app, window):
    assert "looked for an open popup, such as a menu; these windows" in said(
        WindowNotFoundError, app.popup().title
    )
    assert "looked for a modal dialog; these windows" in said(WindowNotFoundError, app.modal().title)
    assert 'looked for a modal dialog whose title begins with "Save"; these' in said(
        WindowNotFoundError, app.modal("Save").title
    )


def test_windows_that_a_title_does_not_tell_apart_are_listed(app, window, dialog):
    message = said(AmbiguousWindowError, app.window().title)
    # Their order is that of the application, and is not always the same.
    assert sorted(message.splitlines()) == [
        '  "New order" (OrderDialog, modal)',
        '  "Roastery" (MainWindow)',
        "Window () visible,2",
        'a visible window whose title begins with "" has to be the only one; these match:',
        "give more of the title, or the object name of the window, which can tell them apart",
        "waited 0.1 s",
    ]


def test_a_misspelt_widget_gets_the_nearest_names_what_is_in_sight_and_then_hidden_names(window):
    lines = said(WidgetNotFoundError, window.widget("brewButtn").activate).splitlines()
    assert lines[:6] == [
        "Widget (brewButtn) not found",
        'waited 0.1 s in window "Widget:showcase"',
        "the nearest names in sight:",
        "  brewButton (QPushButton)",
        "  refillButton (QPushButton)",
        "in sight are:",
    ]
    assert lines[-4:] == [
        "hidden, with a name like that:",
        "  coldBrewButton (QPushButton, hidden)",
        "  secretButton (QPushButton, hidden)",
        "  ordersButton (QPushButton, hidden)",
    ]


def test_what_is_in_sight_is_told_with_its_texts_and_names(window):
    lines = said(WidgetNotFoundError, window.widget("zzzzzzzzzzzzzzzzzzzzzzzz").activate).splitlines()
    kinds = dict(line.strip().split(": ", 1) for line in lines[3:])
    assert lines[2] == "in sight are:"
    for button in ('"Brew a cup" (brewButton)', '"Refill water" (refillButton)'):
        assert button in kinds["buttons"]
    assert '"Milk" (milkCheck)' in kinds["check boxes and radio buttons"]
    assert '"Light" (lightRadio)' in kinds["check boxes and radio buttons"]
    assert '"Buttons", "Entry fields", "Lists"' in kinds["tabs"]
    assert "hopperCombo" in kinds["fields"]


def test_a_button_that_nothing_in_sight_shows_is_told_by_its_text(window):
    message = said(WidgetNotFoundError, window.button("Brew a pot").click)
    assert message.startswith(
        'no button in sight shows "Brew a pot"; did you mean "Brew a cup"?\nwaited 0.1 s in window'
    )
    assert '"Brew a cup" (brewButton)' in message


@pytest.mark.parametrize("words, has_nearest", [("Brew a pot", True), ("zzzzzzzzzzzzzzzzzzzzzzzz", False)])
def test_what_is_in_sight_is_told_where_a_locator_finds_nothing(window, words, has_nearest):
    message = said(WidgetNotFoundError, window.find(text=words).click)
    nearest, in_sight = message.split("in sight are:\n")
    assert ("the nearest:\n" in nearest) == has_nearest
    assert '"Brew a cup" (brewButton)' in in_sight


def test_a_widget_under_another_path_is_told_with_its_own(window):
    assert said(WidgetNotFoundError, window.widget("roastBox/brewButton").activate) == text(
        """
        Widget (roastBox/brewButton) not found
        waited 0.1 s in window "Widget:showcase"
        "brewButton" is there, but not under that path:
          brewButton (QPushButton)
        """
    )


def test_the_derived_name_of_a_dialog_button_is_suggested(app, window):
    window.widget("pages/qt_tabwidget_tabbar").select("Dialogs", timeout=10)
    window.widget("nameBlendButton").activate(timeout=10)
    blend = app.modal("Name a blend")
    eventually(blend, timeout=10).is_open()
    message = said(WidgetNotFoundError, blend.button("Okay").activate)
    blend.button("Cancel").activate(timeout=10)
    eventually(blend, timeout=10).is_closed()
    assert 'no button in sight shows "Okay"; did you mean "OK"?' in message
    assert '  buttons: "OK", "Cancel"\n' in message
    assert "  Ok_dialog_button (QPushButton)" in message


def test_a_hidden_widget_is_told_with_what_hides_it(window):
    assert said(NotVisibleError, window.widget("customerEdit").text) == text(
        """
        Widget (customerEdit) not visible
        waited 0.1 s in window "Widget:showcase"
        it exists, but the user cannot see it:
          customerEdit (QLineEdit) is hidden, as all in entryPage
        """
    )


def test_ambiguous_widgets_are_told_with_a_unique_path_for_each(window):
    window.widget("pages/qt_tabwidget_tabbar").select("Containers", timeout=10)
    eventually(window.widget("firstRoaster"), timeout=10).is_visible()
    assert said(AmbiguousError, window.widget("startButton").activate) == text(
        """
        Widget (startButton) visible,2
        waited 0.1 s in window "Widget:showcase"
        these are visible and match:
          startButton (QPushButton): firstRoaster/startButton
          startButton (QPushButton): secondRoaster/startButton
        """
    )


def test_widgets_that_no_path_tells_apart_are_told_with_their_place(window):
    message = said(AmbiguousError, window.widget("unnamed").text)
    assert "unnamed (QToolButton): no path is unique; it is in showcase/mainToolBar" in message


def test_a_modal_dialog_in_front_is_named(window, dialog):
    assert said(WindowBlockedError, window.widget("brewButton").activate) == text(
        """
        Window (Widget:showcase) not active modal
        waited 0.1 s in window "Widget:showcase"
        the modal dialog "New order" (OrderDialog) is open in front of it: answer it first
        """
    )


def test_a_popup_in_front_is_named(app, window, dialog):
    app.timeout, patience = 10, app.timeout
    dialog.widget("dialogCustomerEdit").enter("Ada")
    dialog.widget("dialogCustomerEdit").click("right", at=(0.5, 0.5))
    eventually(app.popup()).is_open()
    app.timeout = patience
    message = said(WindowBlockedError, window.title)
    entry = next(item for item in app.popup().menu("").items() if item.startswith("Select All"))
    app.popup().menu(entry).activate(timeout=10)
    eventually(app.popup(), timeout=10).is_closed()
    assert "Window (Widget:showcase) not active popup" in message
    assert re.search(
        r'the popup QMenu( ".+")? is open in front of it: choose from it, or close it, first', message
    )


def test_an_item_that_is_not_there_is_told_with_the_nearest(window):
    message = said(NotReadyError, lambda: window.menu("Order/New oder...").activate())
    assert message == text(
        """
        item "New oder..." not there yet
        waited 0.1 s
        there is no item "New oder..." in "Order"; did you mean "New order..."?
        items in "Order": "New order...", "Price list...", "Print receipt", "Export (closed)", "Quit"
        """
    )
    message = said(NotReadyError, lambda: window.menu("Rost/Beans").activate())
    assert 'there is no item "Rost"; did you mean "Roast"?\nitems: "Order", "Roast", ' in message
    message = said(NotReadyError, lambda: window.widget("pages/qt_tabwidget_tabbar").select("Button"))
    assert message.splitlines() == [
        'item "Button" not there yet',
        'waited 0.1 s in window "Widget:showcase"',
        'there is no item "Button"; did you mean "Buttons"?',
        'items: "Buttons", "Entry fields", "Lists", "Tables", "Containers", "Dialogs"',
    ]


def test_forced_or_with_an_agent_without_extensions_an_item_that_is_not_there_is_told_at_once(
    window, monkeypatch
):
    def refusals():
        tabs = window.widget("pages/qt_tabwidget_tabbar")
        yield said(CommandError, lambda: window.menu("Order/New oder...").activate(force=True, timeout=60))
        yield said(CommandError, lambda: tabs.select("Button", force=True, timeout=60))

    forced = tuple(refusals())
    monkeypatch.setattr(window.app.connection, "_extensions", frozenset())
    assert tuple(refusals()) == forced
    assert forced[0].splitlines()[:2] == [
        "Exception : Invalid item",
        'there is no item "New oder..." in "Order"; did you mean "New order..."?',
    ]
    assert forced[1].splitlines()[1:] == [
        'there is no item "Button"; did you mean "Buttons"?',
        'items: "Buttons", "Entry fields", "Lists", "Tables", "Containers", "Dialogs"',
    ]


def test_what_cannot_take_the_input_is_told_with_its_name(window):
    assert said(NotReadyError, window.widget("refillButton").click) == text(
        """
        disabled
        waited 0.1 s in window "Widget:showcase"
        the widget is refillButton; nothing was done to it
        """
    )
    assert "the widget is buttonsPage//refillButton" in said(
        NotReadyError, window.widget("buttonsPage//refillButton").activate
    )
    assert 'the widget is find(text=containing("Refill' in said(
        NotReadyError, window.find(text=containing("Refill")).click
    )


def test_an_item_that_is_waited_for_in_vain_is_told_with_those_that_there_are(window):
    if not window.app.connection.knows_locators:
        pytest.skip("the agent knows no locators")
    bar = window.find("QTabBar", text="Entry fields")
    assert said(NotReadyError, lambda: bar.select("Button")) == text(
        """
        item "Button" not there yet
        waited 0.1 s in window "Widget:showcase"
        there is no item "Button"; did you mean "Buttons"?
        items: "Buttons", "Entry fields", "Lists", "Tables", "Containers", "Dialogs"
        """
    )


def test_an_item_that_a_property_is_asked_of_is_told_with_those_that_there_are(window):
    window.widget("pages/qt_tabwidget_tabbar").select("Lists", timeout=10)
    blends = window.widget("blendTree")
    eventually(blends, timeout=10).is_visible()
    message = said(CommandError, lambda: blends.read("itemIsChecked", "House/Espreso"))
    assert message.startswith(
        'Exception : Invalid item path\nthere is no item "Espreso" in "House:60 %"; did you'
    )
    message = said(NotReadyError, lambda: blends.select("Hose/Espresso"))
    assert message.endswith('items: "House:60 %", "Season:40 %"')
    message = said(CommandError, lambda: window.menu("Order/Quitt").is_enabled())
    assert 'did you mean "Quit"?' in message


def test_a_condition_on_a_widget_that_is_not_there_explains_itself_too(window):
    message = said(ConditionError, lambda: eventually(window.widget("clickCont")).has(text="1"))
    assert message.startswith(
        'window(name="showcase").widget("clickCont"): expected text to be \'1\', but after 0.1 s it could not be '
        "read: Widget (clickCont) not found\n"
    )
    assert "  clickCount (QLabel)" in message
