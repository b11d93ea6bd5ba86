"""Commands that act on the application: activate, enter, mouse, menu."""

from __future__ import annotations

import argparse
from typing import Optional

from ..api.app import App
from ..api.mouse import MouseButton, mouse_command
from ..protocol.wire import Argument
from .outcome import Outcome
from .verbs import Arguments, Verb, add_timeout, add_widget, add_window, widget_of, window_of

_KINDS = {
    "click": "MouseClick",
    "double-click": "MouseDoubleClick",
    "press": "MousePress",
    "release": "MouseRelease",
    "move": "MouseMove",
}
_VALUES = (
    "a text as it is; b:true, b:false, i:NUMBER for other types; s:TEXT for a text that begins like these"
)


def typed_value(text: Optional[str]) -> Argument:
    """The value of a text of the command line. Raises ValueError where the text behind its prefix is no such value."""
    if text is None:
        return None
    kind, rest = text[:2], text[2:]
    if kind == "s:":
        return rest
    if kind == "i:":
        return int(rest)
    if kind == "b:":
        if rest not in ("true", "false"):
            raise ValueError(text)
        return rest == "true"
    return text


def _value(text: str) -> str:
    typed_value(text)
    return text


_value.__name__ = "value"


def _add_force(parser: argparse.ArgumentParser) -> None:
    parser.add_argument("--force", action="store_true", help="at once, whether or not a user could do it")


def _add_activate(parser: argparse.ArgumentParser) -> None:
    add_widget(parser)
    parser.add_argument("value", metavar="VALUE", nargs="?", type=_value, help=_VALUES)
    parser.add_argument(
        "option", metavar="OPTION", nargs="?", type=_value, help="the same; few widgets take one"
    )
    _add_force(parser)
    add_timeout(parser)


def _activate(app: App, arguments: Arguments) -> Outcome:
    widget = widget_of(app, arguments)
    value, option = typed_value(arguments["value"]), typed_value(arguments["option"])
    served = widget.activate(value, option, force=arguments["force"], timeout=arguments["timeout"])
    return _served(served)


def _served(class_name: str) -> Outcome:
    return Outcome(class_name, {"class": class_name})


def _add_enter(parser: argparse.ArgumentParser) -> None:
    add_widget(parser)
    parser.add_argument("value", metavar="VALUE", type=_value, help=_VALUES)
    parser.add_argument(
        "--return", dest="press_return", action="store_true", help="press Return behind a text"
    )
    parser.add_argument(
        "--force",
        action="store_true",
        help="at once, whether or not a user could; into an item view whose edit triggers open no editor, too",
    )
    add_timeout(parser)


def _enter(app: App, arguments: Arguments) -> Outcome:
    widget = widget_of(app, arguments)
    value = typed_value(arguments["value"])
    assert value is not None
    if arguments["press_return"] and isinstance(value, str):
        value += "\n"
    return _served(widget.enter(value, force=arguments["force"], timeout=arguments["timeout"]))


def _add_mouse(parser: argparse.ArgumentParser) -> None:
    add_widget(parser)
    parser.add_argument("kind", metavar="KIND", choices=sorted(_KINDS), help=", ".join(_KINDS))
    parser.add_argument(
        "--button", choices=("left", "right", "middle"), default="left", help="(default: left)"
    )
    parser.add_argument(
        "--at", type=_position, metavar="X,Y", help="shares of width and height: 0.5,0.5 is the centre"
    )
    parser.add_argument(
        "--modifier", choices=("shift", "control", "alt"), default="", help="shift, control or alt"
    )
    _add_force(parser)
    add_timeout(parser)


def _position(text: str) -> "list[float]":
    x, y = map(float, text.split(","))
    mouse_command("MouseMove", "", (x, y), "")
    return [x, y]


_position.__name__ = "position"


def _mouse(app: App, arguments: Arguments) -> Outcome:
    widget = widget_of(app, arguments)
    kind = _KINDS[arguments["kind"]]
    button: MouseButton = "" if kind == "MouseMove" else arguments["button"]
    place = arguments["at"]
    at = (place[0], place[1]) if place is not None else ((0.5, 0.5) if kind == "MouseMove" else None)
    force, timeout = arguments["force"], arguments["timeout"]
    widget.mouse(kind, button, at=at, modifier=arguments["modifier"], force=force, timeout=timeout)
    return Outcome("OK", {})


def _add_menu(parser: argparse.ArgumentParser) -> None:
    add_window(parser)
    parser.add_argument("path", metavar="PATH", help="texts of the menus and of the entry: File/Save")
    parser.add_argument("--bar", metavar="PATH", help="path of the menu bar, where the window has several")
    parser.add_argument("--check", choices=("on", "off"), help="choose it only if it is not in that state")
    parser.add_argument(
        "--force", action="store_true", help="even if the click that opens it presses a button of the bar"
    )
    add_timeout(parser)


def _menu(app: App, arguments: Arguments) -> Outcome:
    entry = window_of(app, arguments).menu(arguments["path"], bar=arguments["bar"])
    force, timeout = arguments["force"], arguments["timeout"]
    if arguments["check"] is None:
        entry.activate(force=force, timeout=timeout)
    else:
        entry.check(arguments["check"] == "on", force=force, timeout=timeout)
    return Outcome("OK", {})


VERBS = (
    Verb(
        "activate",
        "does what a widget is for: presses, checks, chooses",
        "activate Roastery milkCheck b:true",
        _add_activate,
        _activate,
    ),
    Verb(
        "enter",
        "enters a value by the keyboard",
        "enter Roastery customerEdit Ada --return",
        _add_enter,
        _enter,
    ),
    Verb(
        "mouse",
        "moves, presses and clicks the mouse",
        "mouse Roastery tastingPad click --at 0.25,0.5 --modifier control",
        _add_mouse,
        _mouse,
    ),
    Verb("menu", "chooses an entry of the menu bar", "menu Roastery 'Order/New order...'", _add_menu, _menu),
)
