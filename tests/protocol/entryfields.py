"""Shared by the tests of entry fields."""

import re

import pytest

from styles import STYLES

WINDOW = "Entries"
DIED = "8,Exception : Internal error, proxy without widget"
CLEAR = ["Home", "Shift+End", "Backspace"]

_KEYS = {
    0x01000003: "Backspace",
    0x01000004: "Return",
    0x01000010: "Home",
    0x01000011: "End",
    0x01000013: "Up",
    0x01000015: "Down",
    ord("V"): "V",
}
_MODIFIERS = {0: "", 0x02000000: "Shift+", 0x04000000: "Control+", 0x06000000: "Control+Shift+"}
_EVENT = re.compile(r"(keypress|keyrelease) (\S*) (\d+) '(.*)' modifiers (\d+)", re.DOTALL)


def launched(launch, *arguments):
    """The host of all entry fields, with an empty journal."""
    app = launch("entryhost", *arguments)
    app.forget()
    return app


@pytest.fixture(name="app", params=STYLES)
def styled_app(launch, request):
    """The host in each style."""
    return launched(launch, "-style", request.param)


@pytest.fixture(name="plain")
def plain_app(launch):
    """The host in the style that it has by itself."""
    return launched(launch)


def keys(app, name, kind="keypress"):
    """The keys that reached an object, in order: a character as its text, other keys by name, as "Shift+End"."""
    found = []
    for line in app.events(kind):
        _, target, key, text, modifiers = _EVENT.fullmatch(line).groups()
        if target == name:
            found.append(_MODIFIERS[int(modifiers)] + (text or _KEYS[int(key)]))
    return found


def size(app, name):
    width, height = app.get(name, "geometry").split(" ")[1].split("x")
    return int(width), int(height)


def center(app, name):
    width, height = size(app, name)
    return f"{(width - 1) // 2},{(height - 1) // 2}"


def press_in(app, name):
    """Where in a field its inner part was pressed, in coordinates of the field."""
    presses = [line.split(" ")[2:] for line in app.events("press") if line.split(" ")[1] == name + "Text"]
    assert [press[1:] for press in presses] == ["button 1 buttons 1 modifiers 0".split(" ")]
    inner = app.get(name + "Text", "geometry").split(" ")[0]
    x, y = (int(a) + int(b) for a, b in zip(inner.split(","), presses[0][0].split(",")))
    return f"{x},{y}"


def type_error(name, class_name, expected):
    return f'8,Exception : Type error: object "{name}" of class "{class_name}" accepts {expected}.'


def not_implemented(operation, class_name):
    return f'8,Exception : "{operation}" is not implemented for widget of class "{class_name}"'


def disabled(name, class_name):
    return f'8,Exception : Error: widget "{name}" of class "{class_name}" is disabled.'


def input_events(app):
    """Everything that a mouse or a keyboard did to the fields."""
    return app.events("press", "release", "doubleclick", "contextmenu", "keypress", "keyrelease")


BUILT_IN_PROPERTIES = "0,l:" + "".join(
    "\f" + name
    for name in ("propertyNames", "pseudoPropertyNames", "className", "silkClassName", "globalRect")
)
