"""Texts that are typed into password fields, and the lines and messages from which they are left out."""

from __future__ import annotations

import json
import re
from contextlib import suppress
from typing import TYPE_CHECKING, Callable, Dict, Iterable, Iterator, List, Set, Tuple, TypeVar

from ..errors import ConnectionClosed, ProtocolError, ReplyError, RequestTimeout
from ..errors.internal import NoReplyYet
from .extensions import decode_utf8_hex, encode_utf8_hex
from .locators import path_locator
from .wire import Reply, decode_hex, encode_hex

if TYPE_CHECKING:
    from .channel import Channel

_Result = TypeVar("_Result")

HIDDEN = "***"
"""Stands in place of a typed password, as it does in snapshots."""

_SHORT = 4
"""A shorter password is left out only where it stands alone: it may be part of any word, or of an escape sequence."""

_CUT = "..."
"""Follows the beginning of a text that was cut."""

_BEGINNING = 8
"""A shorter beginning of a password is not left out: it may be any word."""

_HEX = re.compile(r"(?<![0-9A-Za-z])(?:[0-9a-fA-F]{2})+(?![0-9A-Za-z])")
_LAST_DIGITS = re.compile(r"(?<![0-9A-Za-z])[0-9a-fA-F]+$")
_CHARACTER = 8
"""Places that a character of a password takes at most: four bytes in hexadecimal digits."""

_STRING = r"""'(?:[^'\\]|\\.)*'|"(?:[^"\\]|\\.)*\""""
_QUOTED = re.compile(_STRING)
_PRESSING = re.compile(rf"\b(?:press|key_down|key_up)\((?:\s*(?:{_STRING}),?)+")
"""Calls that press keys, up to the last key."""

_RELEASE = "release"
_PASTING = ("ctrl+v", "shift+ins", "shift+insert", "paste")
_MOVING = ("5", "+5", "9", "+9", "+focus")
"""The requests besides keys after which another field may have the focus."""

_NORMAL = 0  # QLineEdit::Normal
_NOT_VISIBLE = "6"
_NO_PROPERTY = "8"
_PASSWORD_NAME = re.compile(r"(?i:passw|passphrase|pwd|secret|kennwort)|\b[Pp]in(?![a-z])|PIN(?![A-Z])")
_HAS_FOCUS = ".focus=true"
_HIDES = ".echoMode~=^[1-3]$"
_TYPING: Dict[str, Tuple[int, Callable[[str], str]]] = {
    "6": (4, decode_hex),
    "+6": (4, decode_utf8_hex),
    "+type": (3, decode_utf8_hex),
}
"""The requests that type, with the number of the section that has the text, and what decodes it."""


class Secrets:
    """Texts that are not to be kept anywhere."""

    def __init__(self, texts: Iterable[str] = ()) -> None:
        self._texts: Set[str] = set(texts)
        self._keys: Set[str] = set()

    def __repr__(self) -> str:
        return f"<{len(self._texts)} secrets>"

    def __iter__(self) -> Iterator[str]:
        return iter(self._texts)

    @classmethod
    def of_all(cls, many: "Iterable[Secrets]") -> "Secrets":
        """The secrets of several connections."""
        result = cls()
        for secrets in many:
            result._texts |= secrets._texts
            result._keys |= secrets._keys
        return result

    def add(self, text: str) -> None:
        """Adds a text. Keys at its end, which leave the field, are no part of it."""
        text = text.rstrip("\r\n\t")
        if text:
            self._texts.add(text)

    def replace(self, before: str, text: str) -> None:
        """Adds a text that has grown by what was just typed, and drops what it was before."""
        self._texts.discard(before)
        self.add(text)

    def has_key(self, key: str) -> bool:
        """Whether this key was added."""
        return key in self._keys

    def add_key(self, key: str) -> None:
        """Adds a key that was pressed, as it was written. It is left out of the calls that press keys."""
        self._keys.add(key)

    def hide(self, text: str) -> str:
        """The text without the secrets, as they are and as Python and JSON write them, and without their cut beginnings."""
        if self._keys:
            text = _PRESSING.sub(self._hide_keys, text)
        for secret in sorted(self._texts, key=len, reverse=True):
            for form in _forms(secret):
                pattern = re.escape(form)
                if len(secret) < _SHORT:
                    pattern = rf"(?<![\w\\]){pattern}(?!\w)"
                text = re.sub(pattern, HIDDEN, text)
                if len(form) > _BEGINNING and _CUT in text:
                    text = _without_beginnings(text, form)
        return text

    def hide_in_line(self, line: str) -> str:
        """A request or a reply without the secrets, also those in hexadecimal digits."""
        return self.hide(_HEX.sub(self._hide_digits, line)) if self._texts else line

    def hide_in_beginning(self, line: str, size: int) -> str:
        """The beginning of a request or a reply, at most so long, without the secrets and what a cut leaves of them."""
        if not self._texts or len(line) <= size:
            return self.hide_in_line(line)[:size]
        room = _CHARACTER * max(map(len, self._texts))
        # Behind the beginning that is kept there is room for the part of a secret, which nothing recognises.
        hidden = self.hide_in_line(_LAST_DIGITS.sub(_whole_characters, line[: size + room]))
        return hidden[: max(0, min(size, len(hidden) - room))]

    def _hide_keys(self, call: "re.Match[str]") -> str:
        """The call of a method that presses keys, without those that are secret."""
        return _QUOTED.sub(lambda quoted: self._hide_key(quoted[0]), call[0])

    def _hide_key(self, quoted: str) -> str:
        return f"{quoted[0]}{HIDDEN}{quoted[0]}" if quoted[1:-1].replace("\\", "") in self._keys else quoted

    def _hide_digits(self, digits: "re.Match[str]") -> str:
        for decode, encode in ((decode_utf8_hex, encode_utf8_hex), (decode_hex, encode_hex)):
            try:
                text = decode(digits[0])
            except ValueError:
                continue
            hidden = self.hide(text)
            if hidden != text:
                return encode(hidden)
        return digits[0]


def _forms(secret: str) -> Set[str]:
    """The secret as it is, and as Python and JSON write it within a text."""
    forms = {secret, repr(secret)[1:-1], ascii(secret)[1:-1]}
    forms |= {json.dumps(secret)[1:-1], json.dumps(secret, ensure_ascii=False)[1:-1]}
    # Python escapes an apostrophe where both kinds of quotation marks are in the whole text.
    return forms | {form.replace("'", r"\'") for form in forms if r"\'" not in form}


def _without_beginnings(text: str, secret: str) -> str:
    """The text without beginnings of the secret that are followed by the sign of a cut."""
    *parts, last = text.split(_CUT)
    for number, part in enumerate(parts):
        for size in range(len(secret) - 1, _BEGINNING - 1, -1):
            if part.endswith(secret[:size]):
                parts[number] = part[:-size] + HIDDEN
                break
    return _CUT.join([*parts, last])


def _whole_characters(digits: "re.Match[str]") -> str:
    """The digits without those of a character that was cut, for which they would be no text."""
    data = bytes.fromhex(digits[0][: len(digits[0]) // 2 * 2])
    for dropped in range(4):
        with suppress(UnicodeDecodeError):
            return data[: len(data) - dropped].decode("utf-8").encode("utf-8").hex()
    return data.hex()


def _typed_text(line: str) -> str:
    """The text that a request types; empty for other requests."""
    number, *sections = line.split(",")
    if number not in _TYPING:
        return ""
    section, decode = _TYPING[number]
    try:
        text = decode(sections[section - 1])
    except (ValueError, IndexError):
        return ""
    return text if number == "+type" else text[2:] if text.startswith("s:") else ""


class TypedSecrets:
    """Learns the secrets that a connection's requests type, before they are sent."""

    def __init__(self, channel: "Channel") -> None:
        self._channel = channel
        self._secrets = channel.secrets
        self._clipboard = ""
        self._field = ""
        self._spelled = ""
        self._before = ("", "")

    def learn(self, line: str) -> str:
        """Notes what a request types, if it is for a field with an echo mode other than Normal, or nobody knows for what.

        Asks the agent, outside the transcript. Returns the request as it may be kept, but for the texts of the secrets.
        Raises RequestTimeout, and within bounded_by() NoReplyYet.
        """
        number, *sections = line.split(",")
        if number == "+clipboard" and sections:
            self._clipboard = _decoded(sections[0])
        self._before = (self._field, self._spelled)
        keys = _pressed_keys(sections) if number == "+press" else []
        if keys and _decoded("".join(sections[3:4])) == _RELEASE:
            return _without_keys(line) if any(map(self._secrets.has_key, keys)) else line
        pasted = self._clipboard if any(key.lower() in _PASTING for key in keys) else ""
        typed = _typed_text(line) or "".join(map(_character, keys))
        if not (typed or pasted):
            self._field = "" if keys or number in _MOVING else self._field
            return line
        field = self._ask(lambda channel: _field_that_hides(channel, line), (typed, pasted), "")
        if not field:
            self._field = ""
            if number == "+type":
                self._note_later_texts(sections)
            return line
        self._secrets.add(pasted)
        return self._note(line, field, typed, [key for key in keys if _character(key)])

    def refused(self) -> None:
        """Tells that the request was refused: it has typed nothing."""
        self._field, self._spelled = self._before

    def _ask(
        self, question: Callable[["Channel"], _Result], typed: Iterable[str], otherwise: _Result
    ) -> _Result:
        """The answer to a question; `otherwise` if the agent has none. Adds what is typed where it cannot be asked."""
        try:
            with self._channel.transcript.paused():
                return question(self._channel)
        except ProtocolError:
            pass  # the request itself, which follows, raises the error, as for a connection that is closed
        except (ConnectionClosed, RequestTimeout, NoReplyYet) as error:
            for text in typed:
                self._secrets.add(text)
            if not isinstance(error, ConnectionClosed):
                raise
        return otherwise

    def _note_later_texts(self, sections: List[str]) -> None:
        """Adds the texts behind keys in a text that can move the focus, where there is a field that hides its text."""
        window, place, text = [*sections, "", "", ""][:3]
        later = re.split(r"[\t\r\n]+", _decoded(text))[1:]
        if any(later) and self._ask(
            lambda channel: not _stays(channel, window, _decoded(place))
            and _hides(_asked_for(channel, window, f"{_HIDES} first")),
            later,
            False,
        ):
            for one in later:
                self._secrets.add(one)

    def _note(self, line: str, field: str, typed: str, keys: List[str]) -> str:
        """Adds what is typed, alone and behind what was typed into the same field before."""
        before = self._spelled if field == self._field else ""
        if keys:
            self._secrets.replace(before if len(before) < _SHORT else "", before + typed)
            line = _without_keys(line)
        elif typed:
            self._secrets.add(typed)
            self._secrets.add(before + typed)
        for key in keys:
            self._secrets.add_key(key)
        ends = typed.endswith(("\r", "\n", "\t"))
        self._field, self._spelled = ("", "") if ends else (field, before + typed)
        return line


def _decoded(digits: str) -> str:
    try:
        return decode_utf8_hex(digits)
    except ValueError:
        return ""


def _pressed_keys(sections: List[str]) -> List[str]:
    """The key strokes of a request, as they were written."""
    keys = _decoded(sections[2]) if len(sections) > 2 else ""
    return [stroke.strip() or stroke for stroke in re.split(r"(?<=.), *", keys)] if keys else []


def _character(key: str) -> str:
    """The character that a key stroke types; empty for none."""
    modifiers, _, name = key.rpartition("+") if len(key) > 1 else ("", "", key)
    if len(name) != 1 or modifiers.lower() not in ("", "shift", "num"):
        return " " if key.lower() == "space" else ""
    return name.upper() if modifiers.lower() == "shift" else name.lower()


def _without_keys(line: str) -> str:
    """A request that presses keys, without these."""
    sections = line.split(",")
    return ",".join([*sections[:3], encode_utf8_hex(HIDDEN), *sections[4:]])


def _field_that_hides(channel: "Channel", line: str) -> str:
    """The question that has found a field with an echo mode other than Normal, into which a request types; else "".

    A widget that has no echo mode counts as the fields that are in it, as that of an editable combo box. Where nothing in
    the window has the focus yet, any of its fields may get it. A widget that is not found counts by its name. Raises
    ConnectionClosed and RequestTimeout.
    """
    number, window, place = [*line.split(","), "", ""][:3]
    if number == "6" and place.rpartition("/")[2] != "FocusWidget":
        reply = _asked(channel, f"7,{window},{place},,echoMode,")
        if _hides(reply):
            return place
        window, place = encode_utf8_hex(window), encode_utf8_hex(path_locator(place).text)
    elif number == "6":
        window, place = encode_utf8_hex(window), ""
    if not place:
        return _focused_field(channel, window)
    locator = _decoded(place)
    reply = _asked_for(channel, window, locator)
    if reply.code == _NOT_VISIBLE:
        reply = _asked_for(channel, window, f"{locator} visible=any")
    if reply.code == _NO_PROPERTY:
        reply = _asked_for(channel, window, f"{locator} >> {_HIDES} first")
    elif not reply.ok and _PASSWORD_NAME.search(locator):
        return place
    return place if _hides(reply) else ""


def keeps_line_breaks(channel: "Channel", window: str, place: str) -> bool:
    """Whether Return stays in the widget that gets the keys, since that is a text editor. Asks outside the transcript.

    Args:
        window: as extensions name it.
        place: the locator of the widget; empty for the one that has the focus.
    """
    with channel.transcript.paused():
        return _stays(channel, encode_utf8_hex(window), place)


def has_focused_button(channel: "Channel", window: str) -> bool:
    """Whether a button in a window has the focus. Asks outside the transcript."""
    with channel.transcript.paused():
        button = f"QAbstractButton {_HAS_FOCUS} first"
        return _asked_for(channel, encode_utf8_hex(window), button, "enabled").ok


def _stays(channel: "Channel", window: str, place: str) -> bool:
    editor = place or f"{_HAS_FOCUS} .tabChangesFocus~=. first"
    return _asked_for(channel, window, editor, "tabChangesFocus").ok


def _focused_field(channel: "Channel", window: str) -> str:
    field = f"{_HAS_FOCUS} .echoMode~=^[0-3]$ first"
    reply = _asked_for(channel, window, field)
    if reply.ok:
        return field if _hides(reply) else ""
    if _asked_for(channel, window, f"{_HAS_FOCUS} first", "enabled").ok:
        return ""
    return field if _hides(_asked_for(channel, window, f"{_HIDES} first")) else ""


def _asked_for(channel: "Channel", window: str, locator: str, name: str = "echoMode") -> Reply:
    """The reply to the question for a property of what a locator finds in a window, which is in digits."""
    return _asked(channel, f"+7,{window},{encode_utf8_hex(locator)},,{encode_utf8_hex(name)},")


def _asked(channel: "Channel", question: str) -> Reply:
    return Reply.parse(channel.exchange(question))


def _hides(reply: Reply) -> bool:
    with suppress(ReplyError, ProtocolError):
        return reply.value() != _NORMAL
    return False
