"""Mouse commands on a plain widget of 200 by 100 pixels."""

import re

import pytest

from refusals import nothing_happens


@pytest.fixture
def app(launch):
    return launch("corehost")


def play(app, command):
    return app.mouse("Editor", "canvas", command)


def points(app, word):
    app.wait_for(re.compile(f"{word} canvas .*"))
    return [line.split(" ")[2] for line in app.events(word)]


@pytest.mark.shared
@pytest.mark.parametrize(
    "position, point",
    [
        (":", "99,49"),
        ("0:0", "0,0"),
        ("0.25:", "50,50"),
        (":0.25", "100,25"),
        ("0.999:0.999", "199,99"),
        ("0.5:0.5", "100,50"),
    ],
)
def test_a_click_lands_at_its_position(app, position, point):
    assert play(app, f"MouseClick:LeftButton:{position}:") == "0,QWidget"
    assert points(app, "press") == [point]
    assert points(app, "release") == [point]


@pytest.mark.shared
def test_a_position_of_one_is_one_pixel_beyond_the_edge(app):
    assert play(app, "MouseClick:LeftButton:1:1:") == "0,QWidget"
    app.do("reportCursor")
    left, top, right, bottom = app.rect("Editor", "canvas")
    assert app.journal[-1] == f"cursor {right + 1},{bottom + 1}"
    assert app.events("press") == []


@pytest.mark.shared
def test_an_empty_command_moves_to_the_centre_without_pressing(app):
    for command in ("::::", ""):
        assert play(app, command) == "0,QWidget"
    app.do("reportCursor")
    left, top, right, bottom = app.rect("Editor", "canvas")
    assert app.journal[-1] == f"cursor {(left + right) // 2},{(top + bottom) // 2}"
    assert app.events("press", "release") == []


@pytest.mark.shared
def test_a_click_is_press_and_release(app):
    play(app, "MouseClick:LeftButton:::")
    app.wait_for(re.compile("release .*"))
    assert app.events("press", "release", "doubleclick", "contextmenu") == [
        "press canvas 99,49 button 1 buttons 1 modifiers 0",
        "release canvas 99,49 button 1 buttons 0 modifiers 0",
    ]


@pytest.mark.shared
def test_a_right_click_asks_for_a_context_menu(app):
    play(app, "MouseClick:RightButton:::")
    app.wait_for(re.compile("contextmenu .*"))
    assert app.events("press", "release", "contextmenu") == [
        "press canvas 99,49 button 2 buttons 2 modifiers 0",
        "release canvas 99,49 button 2 buttons 0 modifiers 0",
        "contextmenu canvas 99,49 reason 0",
    ]


def test_a_double_click_is_press_release_double_click(app):
    play(app, "MouseDoubleClick:LeftButton:::ShiftModifier")
    app.wait_for(re.compile("doubleclick .*"))
    assert app.events("press", "release", "doubleclick") == [
        "press canvas 99,49 button 1 buttons 1 modifiers 33554432",
        "release canvas 99,49 button 1 buttons 0 modifiers 33554432",
        "doubleclick canvas 99,49 button 1 buttons 1 modifiers 33554432",
    ]


@pytest.mark.shared
@pytest.mark.parametrize(
    "word, number",
    [("LeftButton", 1), ("RightButton", 2), ("MidButton", 4)],
)
def test_the_buttons(app, word, number):
    play(app, f"MouseClick:{word}:::")
    app.wait_for(re.compile("release .*"))
    assert app.events("press") == [f"press canvas 99,49 button {number} buttons {number} modifiers 0"]


@pytest.mark.shared
@pytest.mark.parametrize(
    "word, number",
    [
        ("ShiftModifier", 0x02000000),
        ("ControlModifier", 0x04000000),
        ("AltModifier", 0x08000000),
        ("NoModifier", 0),
        ("", 0),
    ],
)
def test_the_modifiers(app, word, number):
    play(app, f"MouseClick:LeftButton:::{word}")
    app.wait_for(re.compile("release .*"))
    assert app.events("press") == [f"press canvas 99,49 button 1 buttons 1 modifiers {number}"]


@pytest.mark.shared
def test_press_move_and_release_in_three_commands_are_a_drag(app):
    play(app, "MousePress:LeftButton:0.1:0.1:")
    play(app, "MouseMove::0.5:0.5:")
    play(app, "MouseRelease:LeftButton:0.5:0.5:")
    app.wait_for(re.compile("release .*"))
    seen = [
        line
        for line in app.events("press", "move", "release")
        if "buttons 0" not in line or "release" in line
    ]
    assert seen == [
        "press canvas 20,10 button 1 buttons 1 modifiers 0",
        "move canvas 100,50 button 0 buttons 1 modifiers 0",
        "release canvas 100,50 button 1 buttons 0 modifiers 0",
    ]


@pytest.mark.shared
def test_a_move_to_where_the_cursor_is_is_no_move(app):
    play(app, "MousePress:LeftButton:0.1:0.1:")
    for _ in range(3):
        assert play(app, "MouseMove::0.5:0.5:") == "0,QWidget"
    play(app, "MouseRelease:LeftButton:0.5:0.5:")
    app.wait_for(re.compile("release .*"))
    drags = [line for line in app.events("move") if line.endswith("buttons 1 modifiers 0")]
    assert drags == ["move canvas 100,50 button 0 buttons 1 modifiers 0"]


@pytest.mark.shared
def test_a_press_stays_held_until_its_release(app):
    play(app, "MousePress:LeftButton:0.1:0.1:")
    play(app, "MouseMove::0.2:0.2:")
    play(app, "MouseMove::0.3:0.3:")
    app.wait_for("move canvas 60,30 button 0 buttons 1 modifiers 0")
    play(app, "MouseRelease:LeftButton:0.3:0.3:")
    play(app, "MousePress:RightButton:0.4:0.4:")
    app.wait_for("press canvas 80,40 button 2 buttons 2 modifiers 0")
    play(app, "MouseRelease:RightButton:0.4:0.4:")


def press(app, name):
    """A press on a widget whose focus is to be looked at: another one has it before."""
    app.wait_until("edit", "focus", "true")
    assert app.mouse("Focus", name, "MousePress:LeftButton:::") == "0,QLabel"
    app.wait_for(re.compile(f"press {name} .*"))


@pytest.mark.parametrize(
    "name, owner", [(f"{kind}{part}", kind) for kind in ("click", "strong") for part in ("", "Title")]
)
def test_a_press_gives_the_focus_to_a_widget_or_focus_proxy_that_takes_it_by_clicks(launch, name, owner):
    app = launch("focushost")
    press(app, name)
    assert app.get(owner, "focus") == "true"
    assert app.get("edit", "focus") == "false"


@pytest.mark.parametrize("name", ["none", "noneTitle", "tab", "tabTitle"])
def test_a_press_gives_the_focus_to_no_other_widget(launch, name):
    app = launch("focushost")
    press(app, name)
    assert app.get("edit", "focus") == "true"


@pytest.mark.shared
@pytest.mark.parametrize(
    "command, message",
    [
        ("MouseClick:LeftButton:abc::", 'The 3. parameter "abc" is not a float'),
        ("MouseClick:LeftButton:0.5:abc:", 'The 4. parameter "abc" is not a float'),
        ("MouseClick:LeftButton::abc:", 'The 4. parameter "abc" is not a float'),
        ("MouseClick:LeftButton:1.5:0.5:", "Only a Position between 0.0 and 1.0 is allowed"),
        ("MouseClick:LeftButton:0.5:-0.1:", "Only a Position between 0.0 and 1.0 is allowed"),
        ("MouseClick:LeftButton:1.5:abc:", 'The 4. parameter "abc" is not a float'),
        ("MouseClick:LeftButton:inf:0.5:", 'The 3. parameter "inf" is not a float'),
        ("MouseClick:LeftButton:0.5:1e39:", 'The 4. parameter "1e39" is not a float'),
        ("MouseClick:LeftButton:nan:0.5:", "Only a Position between 0.0 and 1.0 is allowed"),
        ("MouseClick:MiddleButton:::", '"MiddleButton"-Button is not implemented'),
        ("MouseClick:leftbutton:::", '"leftbutton"-Button is not implemented'),
        ("MouseClick:LeftButton:::MetaModifier", '"MetaModifier"-Modifier is not implemented'),
        ("Click:LeftButton:::", '"Click"-Type is not implemented'),
        ("Click:Left:x::Meta", 'The 3. parameter "x" is not a float'),
        ("Click:Left:::Meta", '"Left"-Button is not implemented'),
        ("Click:LeftButton:::Meta", '"Meta"-Modifier is not implemented'),
        ("Cli\0ck:LeftButton:::", '"Cli'),
        ("100%%:LeftButton:::", '"100%"-Type is not implemented'),
        ("%s%n%*d:LeftButton:::", '"%s%n%*d"-Type is not implemented'),
    ],
)
def test_a_wrong_command_is_told_and_not_played(app, command, message):
    assert play(app, command) == f"8,Exception : {message}"
    assert app.events("press", "release", "doubleclick") == []


@pytest.mark.shared
def test_a_wrong_type_is_told_only_after_the_window_was_raised(app):
    app.show("showNames", "names")
    assert play(app, "Click:LeftButton:::").startswith('8,Exception : "Click"')
    app.wait_until("main", "isActiveWindow", "true")


@pytest.mark.shared
@pytest.mark.parametrize("value", ["i:1", "b:true", "", "LeftButton", "S:MouseClick"])
def test_a_command_that_is_no_text_is_a_type_error(app, value):
    with nothing_happens(app):
        reply = app.request(f"9,Editor,canvas,,{value.encode().hex()},")
        assert reply == '8,Exception : Type error: object "canvas" of class "ValueWidget" accepts string.'


@pytest.mark.shared
def test_the_option_is_ignored(app):
    assert app.request(f"9,Editor,canvas,,{'s:::::'.encode().hex()},{'s:x'.encode().hex()}") == "0,QWidget"


@pytest.mark.shared
def test_a_press_may_write_into_a_folder_that_the_application_watches(launch, tmp_path):
    app = launch("corehost", env={"WATCHED_FOLDER": str(tmp_path)})
    app.show("showSaver", "saver")
    for command in ("MousePress", "MouseRelease"):
        assert app.mouse("Saver", "save", f"{command}:LeftButton:::") == "0,QWidget"
    app.wait_for("folder changed")
