"""The table of the extensions: requests beyond the twelve commands, which an agent may lack."""

from __future__ import annotations

import json
import re
from dataclasses import dataclass
from typing import Dict, Mapping, Tuple

from ..errors import ProtocolError, ReplyError, UnsupportedTextError, reply_error
from .commands import Answer
from .wire import Reply

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_REFUSED = re.compile(
    r"(?P<kind>Window|Widget) \((?P<name>[0-9A-Fa-f]*)\) (?P<outcome>[^,]*(,\d+)?)(,(?P<candidates>\[.*))?"
)


@dataclass(frozen=True)
class Extension:
    """An extension of the agent: its name, sections, answer, and one line of help. All sections are UTF-8 as
    hexadecimal."""

    name: str
    sections: Tuple[str, ...]
    answer: Answer
    summary: str

    def compose(self, *texts: str) -> str:
        """The request line.

        Args:
            texts: those of the sections; at the end some may be left out.

        Raises ValueError for more texts than sections, and UnsupportedTextError for half of a surrogate pair, which
        UTF-8 does not have.
        """
        if len(texts) > len(self.sections):
            raise ValueError(f"{self.name} has {len(self.sections)} sections, not {len(texts)}")
        return ",".join([self.name, *map(encode_utf8_hex, texts)])


def encode_utf8_hex(text: str) -> str:
    """The text's bytes in UTF-8, two hexadecimal digits each. Raises UnsupportedTextError for half of a surrogate pair."""
    try:
        return text.encode("utf-8").hex()
    except UnicodeEncodeError as error:
        raise UnsupportedTextError(
            f"{text!r} has half of a surrogate pair at position {error.start}, which is no character"
        ) from None


def decode_utf8_hex(digits: str) -> str:
    """The text of a section of an extension's request. Raises ValueError for anything else."""
    return bytes.fromhex(digits).decode("utf-8")


def readable_request(line: str) -> str:
    """The request for a person: that of an extension with its texts decoded, any other one as it is."""
    name, *sections = line.split(",")
    if name not in EXTENSION_BY_NAME:
        return line
    texts = [decode_or_nothing(digits) or digits for digits in sections]
    while texts and not texts[-1]:
        texts.pop()
    return ",".join([name, *texts])


def decode_or_nothing(digits: str) -> str:
    """The text of a section of an extension's request, empty for anything else."""
    try:
        return decode_utf8_hex(digits)
    except ValueError:
        return ""


def refusal(reply: Reply, shown: str = "") -> ReplyError:
    """The error for the refusal of an extension, with the window and the widget as the test wrote them.

    Args:
        reply: the refusal.
        shown: the widget's name for the message; by default that of the reply.

    Returns the error, with the widgets that the agent names as its candidates. Raises ProtocolError where the reply is
    no refusal.
    """
    match = _REFUSED.fullmatch(reply.payload) if reply.code in _CODES_WITH_NAMES else None
    if match is None:
        return reply_error(reply.code, reply.payload)
    try:
        name = decode_utf8_hex(match["name"])
        candidates = tuple(json.loads(match["candidates"] or "[]"))
    except ValueError:
        raise ProtocolError(f"not a refusal of an extension: {reply.raw!r}") from None
    name = shown if shown and match["kind"] == "Widget" else name
    error = reply_error(reply.code, f"{match['kind']} ({name}) {match['outcome']}")
    return type(error)(error.code, error.message, candidates=candidates)


def decode_json(reply: Reply) -> Mapping[str, object]:
    """The object that a reply describes. Raises ProtocolError for anything else."""
    mark, text = reply.payload[:2], reply.payload[2:]
    try:
        value = json.loads(text) if mark == "j:" else None
    except ValueError:
        value = None
    if not isinstance(value, dict):
        raise ProtocolError(f"not a description in JSON: {reply.raw[:80]!r}")
    return value


_CODES_WITH_NAMES = ("2", "3", "4", "5", "6", "7")
_WIDGET = ("window", "locator")
_VALUE = (*_WIDGET, "class", "value")

EXTENSIONS: Tuple[Extension, ...] = (
    Extension("+extensions", (), Answer.LIST, "lists the extensions that the agent has"),
    Extension(
        "+2", _WIDGET, Answer.JSON, "describes a window, or what the locator finds, with all that is in it"
    ),
    Extension("+4", _WIDGET, Answer.TEXT, "moves the cursor to a widget"),
    Extension("+5", (*_VALUE, "option", "force"), Answer.TEXT, "does what the widget is for, once it can"),
    Extension("+6", (*_VALUE, "force"), Answer.TEXT, "enters a value into a widget, once it can"),
    Extension(
        "+7", (*_WIDGET, "class", "property", "argument"), Answer.VALUE, "reads a property of a widget"
    ),
    Extension(
        "+9",
        (*_WIDGET, "class", "mouse command", "force", "item"),
        Answer.TEXT,
        "uses the mouse on a widget or its item, once it can",
    ),
    Extension("+scroll", (*_WIDGET, "class", "item"), Answer.VALUE, "scrolls to a widget or its item"),
    Extension("+item", (*_WIDGET, "class", "item"), Answer.JSON, "tells the text and the states of an item"),
    Extension("+press", (*_WIDGET, "keys", "mode"), Answer.TEXT, "presses and releases keys"),
    Extension("+type", (*_WIDGET, "text"), Answer.TEXT, "types a text, whatever its characters"),
    Extension(
        "+wheel", (*_WIDGET, "wheel command"), Answer.TEXT, "turns the wheel of the mouse over a widget"
    ),
    Extension("+clipboard", ("text",), Answer.VALUE, "reads the text on the clipboard, or sets it"),
    Extension("+focus", _WIDGET, Answer.TEXT, "gives a widget the keyboard focus"),
    Extension(
        "+hidden", (), Answer.VALUE, "tells whether the last value was entered into a field that hides it"
    ),
    Extension("+record", ("mode", "option"), Answer.TEXT, "begins or ends the recording of what a user does"),
    Extension("+events", (), Answer.JSON, "tells what a user has done since the last time"),
)

EXTENSION_BY_NAME: Dict[str, Extension] = {extension.name: extension for extension in EXTENSIONS}
