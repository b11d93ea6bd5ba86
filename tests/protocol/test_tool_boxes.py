"""Tool boxes, as a test drives them: which page header is clicked, what their pseudo-properties say."""

import pytest

from styles import STYLES

WINDOW = "Tool boxes"
NOT_FOUND = "8,Exception : activate, ToolBoxButton not found"
BUILT_IN = ["propertyNames", "pseudoPropertyNames", "className", "silkClassName", "globalRect"]


@pytest.fixture(params=STYLES)
def style(request):
    return request.param


@pytest.fixture(params=[[], ["-reverse"]], ids=["left-to-right", "right-to-left"])
def app(launch, style, request):
    return launch("toolboxhost", "-style", style, *request.param)


@pytest.fixture
def plain(launch):
    return launch("toolboxhost", "-style", STYLES[0])


@pytest.mark.parametrize("text, index", [("Middle", 1), ("End && more", 2)])
def test_a_text_clicks_the_header_of_its_page(app, text, index):
    assert app.activate(WINDOW, "chapters", f"s:{text}") == "0,QToolBox"
    app.wait_for(f"current chapters {index}")
    assert app.get("chapters", "currentIndex") == str(index)


def test_a_header_is_clicked_once_at_its_center(app):
    rect = app.get("qt_toolbox_toolboxbutton", "geometry")
    width, height = map(int, rect.split(" ")[1].split("x"))
    point = f"{(width - 1) // 2},{(height - 1) // 2}"
    app.activate(WINDOW, "chapters", "s:&Start")
    assert app.events("press", "release", "doubleclick") == [
        f"press qt_toolbox_toolboxbutton {point} button 1 buttons 1 modifiers 0",
        f"release qt_toolbox_toolboxbutton {point} button 1 buttons 0 modifiers 0",
    ]


def test_the_first_of_several_headers_with_a_text_is_clicked(app):
    assert app.activate(WINDOW, "same", "s:Page") == "0,QToolBox"
    app.wait_for("current same 1")
    assert app.get("same", "currentIndex") == "1"


def test_a_hidden_header_is_passed_over_for_a_visible_one(app):
    assert app.activate(WINDOW, "twice", "s:Same") == "0,QToolBox"
    app.wait_for("current twice 2")
    assert app.get("twice", "currentIndex") == "2"


@pytest.mark.parametrize(
    "box, text",
    [
        ("chapters", "Start"),
        ("chapters", "middle"),
        ("chapters", "Middle "),
        ("chapters", ""),
        ("chapters", "%s%n"),
        ("secret", "Secret"),
        ("empty", "Start"),
    ],
)
def test_a_text_that_no_visible_header_has_is_an_error(plain, box, text):
    assert plain.activate(WINDOW, box, f"s:{text}") == NOT_FOUND
    assert plain.events("press", "current") == []


def test_a_disabled_header_is_an_error(plain):
    assert plain.activate(WINDOW, "partly", "s:Locked") == "8,Exception : activate, ToolBoxButton is disabled"
    assert plain.events("current") == []
    assert plain.get("partly", "currentIndex") == "0"


@pytest.mark.parametrize("value", ["", "i:1", "b:true"])
def test_other_values_than_strings_are_type_errors(plain, value):
    error = '8,Exception : Type error: object "chapters" of class "QToolBox" accepts string.'
    assert plain.activate(WINDOW, "chapters", value) == error
    assert plain.events("press", "current") == []


def test_an_option_is_ignored(plain):
    assert plain.activate(WINDOW, "chapters", "s:Middle", "i:2") == "0,QToolBox"
    plain.wait_for("current chapters 1")


def test_a_disabled_box_is_refused(plain):
    refusal = '8,Exception : Error: widget "disabled" of class "QToolBox" is disabled.'
    assert plain.activate(WINDOW, "disabled", "s:Other") == refusal
    assert plain.get("disabled", "currentIndex") == "0"
    assert plain.read(WINDOW, "disabled", "itemList") == "0,l:\fOpen\fOther"


def test_a_hidden_box_is_not_visible(plain):
    assert plain.activate(WINDOW, "hidden", "s:Other") == "6,Widget (hidden) not visible"
    assert plain.get("hidden", "currentIndex") == "0"


def test_a_box_that_dies_as_its_window_is_restored_is_an_error(plain):
    plain.do("minimizeDoomed")
    plain.wait_until_minimized("toolBoxes")
    assert plain.activate(WINDOW, "doomed", "s:Two") == "8,Exception : Internal error, proxy without widget"
    plain.wait_until("toolBoxes", "minimized", "false")
    assert plain.events("press", "current") == []


def test_the_headers_of_a_box_within_a_page_belong_to_both(plain):
    assert plain.activate(WINDOW, "outer", "s:Inner two") == "0,QToolBox"
    plain.wait_for("current inner 1")
    assert plain.activate(WINDOW, "inner", "s:Outer two") == NOT_FOUND
    assert plain.activate(WINDOW, "outer", "s:Outer two") == "0,QToolBox"
    plain.wait_for("current outer 1")


def test_the_pseudo_properties_are_listed(plain):
    names = BUILT_IN + ["itemList", "currentText"]
    assert plain.read(WINDOW, "chapters", "pseudoPropertyNames") == "0,l:\f" + "\f".join(names)


@pytest.mark.parametrize(
    "box, name, value",
    [
        ("chapters", "itemList", "0,l:\f&Start\fMiddle\fEnd && more"),
        ("chapters", "currentText", "u:&Start"),
        ("twice", "itemList", "0,l:\fFirst\fSame\fSame"),
        ("empty", "itemList", "0,l:"),
        ("empty", "currentText", "u:"),
    ],
)
def test_pseudo_properties_tell_the_texts_as_they_are(plain, box, name, value):
    assert plain.read(WINDOW, box, name) == value


def test_the_current_text_follows_the_current_page(plain):
    plain.activate(WINDOW, "chapters", "s:Middle")
    plain.wait_for("current chapters 1")
    assert plain.read(WINDOW, "chapters", "currentText") == "u:Middle"


@pytest.mark.parametrize("name", ["toolTipList", "currentToolTip", "ItemList"])
def test_other_names_are_unknown_properties(plain, name):
    assert plain.read(WINDOW, "chapters", name) == f'8,Exception : Unknown property "{name}".'


def test_entering_is_refused(plain):
    refusal = '8,Exception : "enter" is not implemented for widget of class "QToolBox"'
    assert plain.enter(WINDOW, "chapters", "s:Middle") == refusal
    assert plain.events("press", "current") == []


def test_the_general_mouse_command_is_accepted(plain):
    # Below the header of the current page is the page; at the very bottom is the header of the last.
    assert plain.mouse(WINDOW, "chapters", "MouseClick:LeftButton:0.5:0.95:") == "0,QToolBox"
    plain.wait_for("current chapters 2")
