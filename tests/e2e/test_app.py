"""Driving an application by its windows and widgets: the showcase, for real."""

import time

import pytest
from PIL import Image

from qtdriver import (
    AmbiguousError,
    CommandError,
    ConditionError,
    NotVisibleError,
    Rect,
    UnsupportedTextError,
    WidgetNotFoundError,
    cell,
    column_header,
    eventually,
    menu_path,
    model_item,
    tree_path,
)

from showcase import running


@pytest.fixture
def app():
    """A fresh showcase."""
    with running() as (_, application):
        yield application


@pytest.fixture
def window(app):
    """Its main window."""
    return app.window(name="showcase")


@pytest.fixture
def show(window):
    """Brings a page of the main window to the front."""
    return window.widget("pages/qt_tabwidget_tabbar").select


def last_event(window):
    return eventually(window.widget("lastEvent"))


def test_a_button_is_pressed_and_its_effect_awaited(window):
    window.widget("brewButton").activate()
    window.widget("brewButton").click()
    eventually(window.widget("clickCount")).has(text="2")


def test_a_box_is_checked_and_unchecked(window):
    milk = window.widget("milkCheck")
    milk.check()
    eventually(milk).is_checked()
    assert milk.is_checked()
    milk.check(False)
    eventually(milk).is_checked(False)


def test_a_widget_is_looked_up_anew_at_each_call(window, show):
    customer = window.widget("customerEdit")
    assert not customer.is_visible()
    show("Entry fields")
    customer.enter("Ada\n")
    last_event(window).has(text="entered: customerEdit Ada")
    assert customer.text() == "Ada"


def test_values_of_every_type_come_as_python_has_them(window):
    brew = window.widget("brewButton")
    assert brew.read("enabled") is True
    assert brew.text() == "Brew a cup"
    assert isinstance(brew.read("width"), int) and not isinstance(brew.read("width"), bool)
    assert brew.rect().width == brew.read("width")
    assert isinstance(brew.read("geometry"), Rect)
    assert "text" in brew.read("propertyNames")
    assert brew.class_name() == "QPushButton"
    assert brew.properties()["text"] == "Brew a cup"


def test_a_picture_becomes_an_image_file(window, tmp_path):
    file = window.widget("brewButton").save_picture("icon", tmp_path / "icon.png")
    with Image.open(file) as image:
        assert image.width > 8
        assert len(image.convert("RGBA").getcolors(maxcolors=1 << 24)) > 1


def test_has_property_has_its_former_name_too_for_one_version(window):
    brew = eventually(window.widget("brewButton"))
    with pytest.warns(DeprecationWarning, match=r"reads\(\) is has_property\(\) now"):
        brew.reads("text", "Brew a cup")
    with pytest.raises(ConditionError), pytest.warns(DeprecationWarning):
        eventually(window.widget("brewButton"), timeout=0).reads("text", "Brew a pot")


def test_items_are_chosen_by_their_addresses(window, show):
    show("Entry fields")
    beans = window.widget("beanCombo")
    beans.select(beans.items()[1])
    eventually(beans).has(currentText=beans.items()[1])
    show("Lists")
    tree = window.widget("blendTree")
    nested = next(path for path in tree.items() if "/" in path)
    tree.select(nested)
    eventually(tree).has(currentPath=nested)
    assert tree.read("itemIsSelected", tree_path(*nested.split("/"))) is True


def test_cells_and_headers_are_read_by_their_addresses(window, show):
    show("Tables")
    table = window.widget("priceTable")
    name = table.read("columnHeaderText", "1")
    assert table.read("itemText", cell(1, name)) == table.read("itemText", cell(1, 1))
    served = window.widget("priceTable", as_class="QAbstractItemView")
    assert served.read("itemData", model_item((1, 1))) == table.read("itemText", "1:1")
    assert served.read("itemData", column_header(1)) == name


def test_a_menu_entry_is_chosen_in_the_bar_that_is_found(app, window):
    assert "Order/New order..." in window.menu("").items()
    assert window.menu("Order/New order...").is_enabled()
    window.menu(menu_path("Order", "New order...")).activate()
    dialog = app.modal("New order")
    dialog.widget("dialogCustomerEdit").enter("Grace")
    dialog.widget("acceptOrderButton").activate()
    eventually(dialog).is_closed()
    last_event(window).has(text=lambda text: "Grace" in text)


def test_an_entry_of_a_context_menu_is_chosen(app, window, show):
    show("Lists")
    extras = window.widget("extrasList")
    last = extras.items()[-1]
    extras.click("right", at=(0.5, 0.9))
    app.popup().menu("Check all").activate()
    eventually(extras).has_property("itemIsChecked", True, last)


def test_a_dialog_is_answered_by_the_text_of_its_button(app, window, show):
    show("Dialogs")
    window.widget("nameBlendButton").activate()
    dialog = app.modal("Name a blend")
    dialog.widget("QLineEdit__widget__").enter("Night shift")
    dialog.button("OK").activate()
    eventually(window.widget("blendResult")).has(text="Night shift")


def test_a_file_is_chosen_in_a_file_dialog(app, window, show, tmp_path):
    file = tmp_path / "prices.txt"
    file.write_text("espresso 1.80\n")
    show("Dialogs")
    window.widget("priceListButton").activate()
    app.modal().file(file)
    eventually(window.widget("fileResult")).has(text=lambda text: "prices.txt" in text)


def test_the_mouse_clicks_at_a_place_with_a_modifier_and_drags(window):
    pad = window.widget("tastingPad")
    width, height = pad.rect().width, pad.rect().height

    def place(x, y):
        return f"{int(width * x)},{int(height * y)}"

    pad.click(at=(0.25, 0.5), modifier="control")
    pad.drag_to(pad, at=(0.2, 0.2), to=(0.8, 0.8))
    eventually(window.widget("journal")).has(
        plainText="\n".join(
            (
                f"pressed: tastingPad Ctrl+left {place(0.25, 0.5)}",
                f"released: tastingPad Ctrl+left {place(0.25, 0.5)}",
                f"pressed: tastingPad left {place(0.2, 0.2)}",
                f"dragged: tastingPad left {place(0.8, 0.8)}",
            )
        )
    )
    pad.hover()
    assert window.app.widget_at_cursor().path.endswith("tastingPad")


def test_a_drag_that_does_not_arrive_fails_after_one_wait_and_releases_the_button(window, show):
    show("Lists")
    origins = window.widget("originView")
    chosen = origins.items()[1]
    origins.select(chosen)
    started = time.monotonic()
    with pytest.raises(WidgetNotFoundError):
        window.widget("extrasList").drag_to(window.widget("nowhere"), timeout=3)
    assert time.monotonic() - started < 5.5  # not two waits
    origins.hover(at=(0.5, 0.9))  # with a held button it would choose what it passes
    eventually(origins).has_property("itemIsSelected", True, chosen)


def test_a_window_is_resized_and_moved_and_its_title_read(window):
    window.resize(1000, 760)
    eventually(window.widget("showcase")).has(width=1000, height=760)
    assert window.title() == "Roastery"
    window.move(20, 30)
    eventually(window.widget("showcase")).has(
        frameGeometry=lambda frame: (frame.left, frame.top) == (20, 30), width=1000, height=760
    )


def test_the_windows_and_the_tree_are_listed(app, window):
    assert [record.title for record in app.windows()] == ["Roastery"]
    tree = window.tree()
    assert tree.named("brewButton")[0].record.class_name == "QPushButton"


def test_every_unique_path_of_the_tree_finds_its_widget(window):
    tree = window.tree()
    visible = [node for node in tree.nodes if node.record.visible]
    unique = [(node, tree.unique_path(node)) for node in visible]
    found = [(node, path) for node, path in unique if path is not None]
    assert len(found) > len(visible) / 2
    for node, path in found:
        assert window.widget(path).class_name(timeout=0) == node.record.class_name, path


def test_every_path_finds_as_many_widgets_as_the_tree_says(window):
    tree = window.tree()
    names = [node.name for node in tree.nodes if node.record.class_name != "QToolButton"]
    paths = sorted(
        {
            f"{parent}{gap}{name}"
            for name in set(names)
            for parent in ("", "counterBox", "showcase")
            for gap in ("/", "//")
        }
    )
    differing = []
    counts = set()
    for path in paths:
        expected = len([node for node in tree.find(path) if node.record.visible])
        try:
            window.widget(path).class_name(timeout=0)
            seen = 1
        except AmbiguousError as error:
            seen = int(error.message.rpartition(",")[2])
        except (WidgetNotFoundError, NotVisibleError):
            seen = 0
        counts.add(min(expected, 2))
        if seen != expected and not any("ToolButton" in node.record.class_name for node in tree.find(path)):
            differing.append((path, seen, expected))
    assert not differing
    assert counts == {0, 1, 2}, "there are paths that find none, one, and several"


def test_a_condition_that_comes_true_late_is_awaited(window):
    window.widget("roastLink").activate()
    eventually(window.widget("roastProgress"), timeout=20).has(value=lambda value: value > 50)


def test_a_widget_is_hidden_when_it_or_its_window_has_gone(window, show):
    show("Dialogs")
    eventually(window.widget("brewButton")).is_hidden()
    eventually(window.widget("never")).is_hidden()
    window.widget("nameBlendButton").activate()
    dialog = window.app.modal("Name a blend")
    eventually(dialog.button("OK")).is_visible()
    dialog.button("Cancel").activate()
    eventually(dialog.button("OK")).is_hidden()
    with pytest.raises(ConditionError, match="expected it to be hidden, but after 0.1 s it was False"):
        eventually(window.widget("nameBlendButton"), timeout=0.1).is_hidden()


def test_several_widgets_of_a_name_are_visible(window, show):
    show("Buttons")
    several = window.widget("showcase//qt_spinbox_lineedit")
    show("Entry fields")
    with pytest.raises(AmbiguousError):
        several.class_name(timeout=0)
    assert several.is_visible()
    with pytest.raises(ConditionError, match="after 0.1 s it was False"):
        eventually(several, timeout=0.1).is_hidden()


def test_items_are_expected_as_a_list_or_a_tuple(window):
    tabs = window.widget("pages/qt_tabwidget_tabbar")
    eventually(tabs).has(itemList=list(tabs.items()))
    eventually(tabs).has(itemList=tabs.items())


def test_a_condition_can_be_any_function(window):
    times = iter(range(3))
    eventually(lambda: next(times)).equals(2)
    window.widget("brewButton").activate()
    eventually(window.widget("clickCount").text).satisfies(lambda text: int(text) == 1)


def test_what_waiting_cannot_mend_fails_at_once(window):
    assert window.app.connection.knows_locators
    asked = len(window.app.connection.transcript.exchanges())
    with pytest.raises(CommandError, match="not a togglebutton"):
        window.widget("brewButton").activate(True, timeout=60)
    assert len(window.app.connection.transcript.exchanges()) == asked + 1, "it is not tried again"
    window.widget("milkCheck").check()
    eventually(window.widget("milkCheck")).is_checked()
    assert window.widget("clickCount").text() == "0", "the button was not pressed"


def test_an_agent_without_extensions_is_sent_nothing_of_texts_beyond_latin_1(window, show, monkeypatch):
    monkeypatch.setattr(window.app.connection, "_extensions", frozenset())
    show("Entry fields")
    window.widget("customerEdit").enter("Gr\u00fc\u00dfe")
    sent = len(window.app.connection.transcript.exchanges())
    with pytest.raises(UnsupportedTextError) as caught:
        window.widget("customerEdit").enter("10 \u20ac")
    assert "U+0000 to U+00FF only" in str(caught.value) and "U+20AC" in str(caught.value)
    with pytest.raises(UnsupportedTextError, match="cannot hold a comma"):
        window.widget("a,b").text()
    assert len(window.app.connection.transcript.exchanges()) == sent
    assert window.widget("customerEdit").text() == "Gr\u00fc\u00dfe"


def test_a_condition_that_stays_false_tells_what_was_there(window):
    with pytest.raises(ConditionError) as caught:
        eventually(window.widget("clickCount"), timeout=0.2).has(text="7")
    assert str(caught.value) == (
        "window(name=\"showcase\").widget(\"clickCount\"): expected text to be '7', but after 0.2 s it was '0'"
    )
    assert isinstance(caught.value, AssertionError)


def test_a_screenshot_shows_the_desktop(window, tmp_path):
    def colours():
        with Image.open(window.app.screenshot(tmp_path / "shot.png")) as image:
            return len(image.convert("RGB").getcolors(maxcolors=1 << 24))

    window.title()
    # The window is there before it is painted.
    eventually(colours, timeout=10).satisfies(lambda count: count > 20)
