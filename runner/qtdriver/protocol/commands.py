"""The table of the twelve commands, by which the connection sends them and the command line explains them."""

from __future__ import annotations

from dataclasses import dataclass
from enum import Enum
from typing import Dict, Tuple

from ..errors import UnsupportedTextError
from .wire import encode_hex

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own


class Answer(Enum):
    """The kinds of answers to a command that succeeds."""

    LIST = "a list"
    CURSOR = "the widget under the cursor"
    TEXT = "a class name or a window title, as it stands"
    VALUE = "a typed value"
    JSON = "a description in JSON"


@dataclass(frozen=True)
class Section:
    """One comma-separated part of a request; `encoded` parts travel as hexadecimal text."""

    name: str
    encoded: bool = False


@dataclass(frozen=True)
class Command:
    """A command of the agent: number on the wire, name, sections, answer, and one line of help."""

    number: str
    name: str
    sections: Tuple[Section, ...]
    answer: Answer
    summary: str

    def compose(self, *texts: str) -> str:
        """The request line.

        Args:
            texts: one for each section, decoded.

        Raises ValueError when they are not as many as the sections, and UnsupportedTextError for a comma or a line break in
        a section that is not encoded, and for a character beyond U+00FF in one that is.
        """
        if len(texts) != len(self.sections):
            raise ValueError(f"{self.name} has {len(self.sections)} sections, not {len(texts)}")
        parts = [_written(section, text) for section, text in zip(self.sections, texts)]
        return ",".join([self.number, *parts])


def _written(section: Section, text: str) -> str:
    if section.encoded:
        return encode_hex(text)
    for character, name in ((",", "comma"), ("\n", "line break"), ("\r", "line break")):
        if character in text:
            raise UnsupportedTextError(f"the {section.name} of a request cannot hold a {name}: {text!r}")
    return text


_WINDOW = Section("window")
_WIDGET = (_WINDOW, Section("path"), Section("class"))
_OPTION = Section("option", encoded=True)
_VALUE = (*_WIDGET, Section("value", encoded=True), _OPTION)
_MOUSE = (*_WIDGET, Section("mouse command", encoded=True), _OPTION)
_PROPERTY = (*_WIDGET, Section("property"), Section("argument"))
_POSITION = (_WINDOW, Section("x"), Section("y"))
_SIZE = (_WINDOW, Section("width"), Section("height"))
_TRAY_ICON = (Section("ignored"), Section("name"))

COMMANDS: Tuple[Command, ...] = (
    Command("1", "listWindows", (), Answer.LIST, "lists the visible windows"),
    Command("2", "windowTree", (_WINDOW,), Answer.LIST, "lists the widgets of a window"),
    Command("3", "identifyWidgetAtCursor", (), Answer.CURSOR, "describes the widget under the cursor"),
    Command("4", "locateWidget", (_WINDOW, Section("path")), Answer.TEXT, "moves the cursor to a widget"),
    Command("5", "activateWidget", _VALUE, Answer.TEXT, "does what the widget is for: click, check, choose"),
    Command("6", "enterWidget", _VALUE, Answer.TEXT, "enters a value into a widget"),
    Command("7", "readProperty", _PROPERTY, Answer.VALUE, "reads a property of a widget"),
    Command("8", "checkWindow", (_WINDOW,), Answer.TEXT, "answers the title of a window that takes input"),
    Command("9", "mouseWidget", _MOUSE, Answer.TEXT, "moves, presses, clicks the mouse on a widget"),
    Command("10", "moveWindow", _POSITION, Answer.TEXT, "moves a window (pixels of the screen)"),
    Command("11", "resizeWindow", _SIZE, Answer.TEXT, "resizes the inner area of a window (pixels)"),
    Command("12", "locateTrayIcon", _TRAY_ICON, Answer.VALUE, "answers the screen rectangle of a tray icon"),
)

COMMAND_BY_NUMBER: Dict[str, Command] = {command.number: command for command in COMMANDS}
COMMAND_BY_NAME: Dict[str, Command] = {command.name: command for command in COMMANDS}
