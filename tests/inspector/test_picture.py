"""The live picture and the input on it, as a user has them: in a browser, with the showcase."""

import hashlib

import pytest

from qtdriver import eventually
from qtdriver.desktop.screen import Screen

from chromium import DOWN, SHIFT

CONTROL, TAB = chr(0xE009), chr(0xE004)

DIGEST = """
    const canvas = document.getElementById("picture");
    const copy = new OffscreenCanvas(canvas.width, canvas.height).getContext("2d", {willReadFrequently: true});
    copy.drawImage(canvas, 0, 0);
    const pixels = copy.getImageData(0, 0, canvas.width, canvas.height).data;
    return crypto.subtle.digest("SHA-256", pixels).then((digest) => Array.from(new Uint8Array(digest)));
"""


def shown(page):
    """A digest of the picture on the page."""
    return bytes(page.run(DIGEST))


def actual():
    """A digest of the screen."""
    return hashlib.sha256(Screen(None).grab().image().convert("RGBA").tobytes()).digest()


def place(page, x, y):
    """The place in the page of one on the screen."""
    return page.run(
        """const canvas = document.getElementById("picture");
        const box = canvas.getBoundingClientRect();
        return [box.left + (arguments[0] + 0.5) * box.width / canvas.width,
            box.top + (arguments[1] + 0.5) * box.height / canvas.height]""",
        x,
        y,
    )


def click(page, x, y, button=0):
    page.mouse(("move", *place(page, x, y)), ("down", button), ("up", button))


def click_into(page, held, name):
    """Clicks a field, and waits until it has the focus: a window manager may hold the click back, but not the keys behind it."""
    enter(
        held, "bagsEdit", "2"
    )  # gives another one the focus, so that it is the click that gives it to this one
    click(page, *held.centre(name))
    eventually(lambda: held.read(name, "focus"), timeout=60).is_true()


def enter(held, path, value):
    held.ask(
        "enter",
        window="Roastery",
        path=path,
        as_class="",
        value=value,
        press_return=False,
        force=False,
        timeout=10,
    )


@pytest.fixture
def entry_fields(held):
    """The page with the fields is in front."""
    held.activate("pages/qt_tabwidget_tabbar", "Entry fields")
    yield
    held.activate("pages/qt_tabwidget_tabbar", "Buttons")


@pytest.fixture
def pad(held):
    """The place of a widget that records what it gets; and the last lines of its records."""
    held.activate("clearJournalButton")

    def recorded():
        return [line.partition(" ")[2] for line in held.read("journal", "plainText").splitlines()]

    return held.centre("tastingPad"), recorded


def test_the_picture_becomes_that_of_the_screen_to_the_last_pixel(page, held):
    eventually(lambda: shown(page) == actual(), timeout=60).is_true()
    before = shown(page)
    held.activate("pages/qt_tabwidget_tabbar", "Dialogs")
    eventually(lambda: shown(page) not in (before,) and shown(page) == actual(), timeout=60).is_true()
    held.activate("pages/qt_tabwidget_tabbar", "Buttons")


def test_a_click_on_the_picture_presses_the_button_there(page, held):
    before = int(held.read("clickCount", "text"))
    click(page, *held.centre("brewButton"))
    eventually(lambda: held.read("clickCount", "text"), timeout=60).equals(str(before + 1))


def test_each_button_goes_to_its_place_and_a_drag_from_one_to_another(page, pad):
    (x, y), recorded = pad
    click(page, x, y, 2)
    eventually(lambda: len(recorded()), timeout=60).equals(2)
    page.mouse(("move", *place(page, x - 20, y)), ("down", 0))
    eventually(lambda: len(recorded()), timeout=60).equals(3)
    page.mouse(("move", *place(page, x + 20, y + 5)), ("up", 0))
    eventually(lambda: len(recorded()), timeout=60).equals(4)
    clicked, released, pressed, dragged = (line.rpartition(" ") for line in recorded())
    assert clicked[2] == released[2]
    left, top = map(int, clicked[2].split(","))
    assert [clicked[0], released[0]] == ["tastingPad right"] * 2
    assert [pressed[0], dragged[0]] == ["tastingPad left"] * 2
    assert [pressed[2], dragged[2]] == [f"{left - 20},{top}", f"{left + 20},{top + 5}"]


def test_keys_and_modifiers_go_to_what_has_the_focus(page, pad):
    (x, y), recorded = pad
    click(page, x, y)
    eventually(lambda: len(recorded()), timeout=60).equals(2)
    page.chord(CONTROL, "k")
    page.press(DOWN)
    page.chord(SHIFT, chr(0xE034))  # F4
    page.press("Q")
    eventually(lambda: recorded()[2:], timeout=60).equals(
        ["tastingPad Ctrl+K", "tastingPad Down", "tastingPad Shift+F4", "tastingPad Shift+Q"]
    )


def test_text_arrives_as_it_was_typed_also_what_the_keyboard_of_the_display_lacks(page, held, entry_fields):
    enter(held, "customerEdit", "to be replaced")
    click_into(page, held, "customerEdit")
    page.chord(CONTROL, "a")
    text = "Grüße an @Ada: 5€, {x|y} ЖΩ"
    page.press(*text)
    eventually(lambda: held.read("customerEdit", "text"), timeout=60).equals(text)


def test_the_tab_key_goes_to_the_application_and_ctrl_f6_leaves_the_picture(page, held, entry_fields):
    click_into(page, held, "customerEdit")
    page.press(TAB)
    eventually(lambda: held.read("bagsEdit", "hasSelectedText"), timeout=60).is_true()
    assert page.run("return document.activeElement.id") == "picture"
    page.chord(CONTROL, chr(0xE036))  # F6
    assert page.run("return document.activeElement.id") == "find"


def test_the_wheel_turns_in_the_picture(page, held, entry_fields):
    before = held.read("cupSpin", "value")
    page.wheel(*place(page, *held.centre("cupSpin")), 0, -200)
    eventually(lambda: held.read("cupSpin", "value"), timeout=60).equals(before + 2)


def test_nothing_stays_held_when_the_picture_loses_the_focus(page, pad):
    (x, y), recorded = pad
    click(page, x, y)
    eventually(lambda: len(recorded()), timeout=60).equals(2)
    page.keys(("keyDown", SHIFT))
    page.run("document.getElementById('picture').blur()")
    page.keys(("keyUp", SHIFT))
    click(page, x, y)
    eventually(lambda: [line.rsplit(" ", 1)[0] for line in recorded()], timeout=60).equals(
        ["tastingPad left"] * 4
    )
