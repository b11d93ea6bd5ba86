"""Which of the texts and keys that requests type go to fields that hide their text."""

from __future__ import annotations

import re
from contextlib import suppress
from typing import TYPE_CHECKING, Callable, Dict, Iterable, Iterator, List, Set, Tuple

from ..errors import ConnectionClosed, ProtocolError, QtDriverError, ReplyError
from .extensions import decode_or_nothing, encode_utf8_hex
from .locators import path_locator
from .secrets import pressed_keys
from .wire import Reply, decode_hex

if TYPE_CHECKING:
    from .channel import Channel

_PASTING = ("ctrl+v", "shift+ins", "shift+insert", "paste")
_MOVING = ("5", "+5", "6", "+6", "9", "+9", "+focus")
"""The requests besides keys after which another field may have the focus."""

_STROKE = re.compile(r"\r\n|.", re.DOTALL)
_LINE = re.compile(r"[^\t\r\n]+")
_HIDDEN = re.compile(r",hidden:([0-9;-]+)$")

_NORMAL = 0  # QLineEdit::Normal
_NOT_VISIBLE = "6"
_FAILED = "8"
_YES = "0,b:true"
_PASSWORD_NAME = re.compile(r"(?i:passw|passphrase|pwd|secret|kennwort)|\b[Pp]in(?![a-z])|PIN(?![A-Z])")
_HAS_FOCUS = ".focus=true"
_HIDES = ".echoMode~=^[1-3]$"


class TypedSecrets:
    """Learns the secrets that a connection's requests type.

    The agent tells in its reply which keys went to a field that hides its text; for a request that enters a value, whose
    reply cannot always tell that, it is asked before for the echo mode and afterwards for the keys. As long as it has not
    told, all that a request types may be secret. Questions to the agent are no part of the transcript; those before a request
    raise the errors of Channel.exchange() but for ConnectionClosed.
    """

    def __init__(self, channel: "Channel") -> None:
        self._channel = channel
        self._secrets = channel.secrets
        self._clipboard = ""
        self._field = ""
        self._spelled = ""

    def expect(self, line: str) -> Set[str]:
        """Adds what a request that is about to be sent may type into a field that hides its text. Returns what is new."""
        if _name(line) == "+press" and self._spelled and self._field == _place(line):
            self._add_keys(pressed_keys(_section(line, 3)))
        new = self._secrets.add_new(self._typed_texts(line))
        if new and _name(line) in _ENTERING and self._is_hiding(line):
            return set()
        return new

    def learn(self, line: str, reply: Reply, expected: Set[str]) -> None:
        """Keeps or drops what was expected of a request, by the reply to it."""
        name, section = _name(line), _section(line, 3)
        if name in _ENTERING:
            self._field = ""
            self._learn_entered(name, reply, expected)
        elif not reply.ok:
            if not (expected and self._is_hiding(line)):
                self._secrets.drop(expected)
        elif name == "+type":
            self._secrets.drop(expected)
            self._learn_text(_place(line), decode_or_nothing(section), _hidden_strokes(reply))
        elif name == "+press":
            self._secrets.drop(expected)
            if decode_or_nothing(_section(line, 4)) != "release":
                self._learn_keys(_place(line), pressed_keys(section), _hidden_strokes(reply))
        elif name == "+clipboard" and "," in line:
            self._clipboard = decode_or_nothing(_section(line, 1))
        elif name in _MOVING:
            self._field = ""

    def learn_unsent(self, line: str) -> None:
        """Adds what a request would have typed into a field that hides its text."""
        new = self._secrets.add_new(self._typed_texts(line))
        if new and not self._is_hiding(line):
            self._secrets.drop(new)

    def _typed_texts(self, line: str) -> Iterable[str]:
        name, section = _name(line), _section(line, 3)
        if name == "+type":
            return _LINE.findall(decode_or_nothing(section))
        if name == "+press":
            return [self._clipboard] if _pastes(pressed_keys(section)) else ()
        value = _ENTERING[name](_section(line, 4)) if name in _ENTERING else ""
        return [value[2:].rstrip("\r\n\t")] if value.startswith("s:") else ()

    def _learn_entered(self, name: str, reply: Reply, expected: Set[str]) -> None:
        """Keeps what went to an editor that hides its text, in a tree also without the column in front of it."""
        if expected and self._was_hidden(name, reply):
            for text in expected:
                self._secrets.add(text.partition(":")[2])
        else:
            self._secrets.drop(expected)

    def _was_hidden(self, name: str, reply: Reply) -> bool:
        """Whether a request that enters a value has typed into a field that hides its text, such as an item view's editor."""
        if not reply.ok and reply.code != _FAILED:
            return False  # it has typed nothing
        if name == "+6" and reply.ok:
            return reply.payload.endswith(",hidden")
        try:
            with self._channel.transcript.paused():
                return Reply.parse(self._channel.exchange("+hidden")).raw == _YES
        except QtDriverError:
            return True  # the next request raises it again

    def _learn_text(self, place: str, text: str, hidden: Set[int]) -> None:
        """Adds the lines of a text of which a character was hidden; the first one also behind what was typed before."""
        before = self._spelled if place == self._field else ""
        self._field = self._spelled = ""
        for line, end in _lines_with(text, hidden):
            self._secrets.add(line)
            self._secrets.add(before + line)
            if end == len(text):
                self._field, self._spelled = place, before + line
            before = ""

    def _learn_keys(self, place: str, keys: List[str], hidden: Set[int]) -> None:
        """Adds the keys that were hidden, and what they and those before them have typed."""
        before = self._spelled if place == self._field else ""
        self._field = self._spelled = ""
        keys = [key for number, key in enumerate(keys) if number in hidden]
        if _pastes(keys):
            self._secrets.add(self._clipboard)
        if keys:
            self._field, self._spelled = place, before + "".join(map(_character, keys))
            self._secrets.grow(before, self._spelled)
            self._add_keys(keys)

    def _add_keys(self, keys: Iterable[str]) -> None:
        for key in filter(_character, keys):
            self._secrets.add_key(key)

    def _is_hiding(self, line: str) -> bool:
        """Whether a request is for a field that hides its text; True as well where nobody can tell any more."""
        try:
            with self._channel.transcript.paused():
                return _is_for_hiding_field(self._channel, line)
        except ProtocolError:
            return False  # the request itself, which follows, raises the error
        except ConnectionClosed:
            return True


def _name(line: str) -> str:
    return line.partition(",")[0]


def _section(line: str, number: int) -> str:
    return "".join(line.split(",", number + 1)[number : number + 1])


def _place(line: str) -> str:
    return f"{_section(line, 1)},{_section(line, 2)}"


def _decoded_hex(digits: str) -> str:
    with suppress(ValueError):
        return decode_hex(digits)
    return ""


_ENTERING: Dict[str, Callable[[str], str]] = {"6": _decoded_hex, "+6": decode_or_nothing}
"""The requests that enter a value, with what decodes it."""


def _hidden_strokes(reply: Reply) -> Set[int]:
    """The numbers of the strokes that went to a field that hides its text, from 0."""
    told = _HIDDEN.search(reply.payload)
    ranges = (one.split("-") for one in told[1].split(";")) if told else ()
    return {number for first, last in ranges for number in range(int(first), int(last) + 1)}


def _lines_with(text: str, strokes: Set[int]) -> Iterator[Tuple[str, int]]:
    """The parts of a text between line breaks and tabs that have one of the strokes, and where they end."""
    if not strokes:
        return
    places = [stroke.start() for stroke in _STROKE.finditer(text)]
    marked = sorted(places[number] for number in strokes if number < len(places))
    for line in _LINE.finditer(text):
        if any(line.start() <= place < line.end() for place in marked):
            yield line[0], line.end()


def _pastes(keys: List[str]) -> bool:
    return any(key.lower() in _PASTING for key in keys)


def _character(key: str) -> str:
    """The character that a key stroke types; empty for none."""
    modifiers, _, name = key.rpartition("+") if len(key) > 1 else ("", "", key)
    if len(name) != 1 or modifiers.lower() not in ("", "shift", "num"):
        return " " if key.lower() == "space" else ""
    return name.upper() if modifiers.lower() == "shift" else name.lower()


def _is_for_hiding_field(channel: "Channel", line: str) -> bool:
    """Whether a request that types is for a field with an echo mode other than Normal.

    A widget that has no echo mode counts as the fields that are in it, as that of an editable combo box. Where no field has
    the focus yet, any of the window may get it. A widget that is not found counts by its name.
    """
    name, window, place = _name(line), _section(line, 1), _section(line, 2)
    if name == "6":
        is_special = place.rpartition("/")[2] == "FocusWidget"
        if not is_special and _hides(_asked(channel, f"7,{window},{place},,echoMode,")):
            return True
        window, place = encode_utf8_hex(window), "" if is_special else encode_utf8_hex(
            path_locator(place).text
        )
    locator = decode_or_nothing(place)
    if not locator:
        reply = _asked_for(channel, window, f"{_HAS_FOCUS} .echoMode~=^[0-3]$ first")
        if not reply.ok and not _asked_for(channel, window, f"{_HAS_FOCUS} first", "enabled").ok:
            reply = _asked_for(channel, window, f"{_HIDES} first")
        return _hides(reply)
    reply = _asked_for(channel, window, locator)
    if reply.code == _NOT_VISIBLE:
        reply = _asked_for(channel, window, f"{locator} visible=any")
    if reply.code == _FAILED:
        reply = _asked_for(channel, window, f"{locator} >> {_HIDES} first")
    elif not reply.ok:
        return bool(_PASSWORD_NAME.search(locator))
    return _hides(reply)


def _asked_for(channel: "Channel", window: str, locator: str, name: str = "echoMode") -> Reply:
    """The reply to the question for a property of what a locator finds in a window, which is in digits."""
    return _asked(channel, f"+7,{window},{encode_utf8_hex(locator)},,{encode_utf8_hex(name)},")


def _asked(channel: "Channel", question: str) -> Reply:
    return Reply.parse(channel.exchange(question))


def _hides(reply: Reply) -> bool:
    with suppress(ReplyError, ProtocolError):
        return reply.value() != _NORMAL
    return False
