"""Texts that are typed into password fields, and the lines and messages from which they are left out."""

from __future__ import annotations

import json
import re
from contextlib import suppress
from typing import TYPE_CHECKING, Any, Callable, Dict, Iterable, Iterator, List, Optional, Set, Tuple

from ..errors import ConnectionClosed, QtDriverError, RequestTimeout
from .extensions import decode_utf8_hex, encode_utf8_hex
from .wire import Reply, decode_hex, encode_hex

if TYPE_CHECKING:
    from .channel import Channel

HIDDEN = "***"
"""Stands in place of a typed password, as it does in snapshots."""

_SHORT = 4
"""A shorter password is left out only where it stands alone: it may be part of any word."""

_CUT = "..."
"""Follows the beginning of a text that was cut."""

_BEGINNING = 8
"""A shorter beginning of a password is not left out: it may be any word."""

_HEX = re.compile(r"(?<![0-9A-Za-z])(?:[0-9a-fA-F]{2})+(?![0-9A-Za-z])")
_LAST_DIGITS = re.compile(r"(?<![0-9A-Za-z])[0-9a-fA-F]+$")
_CHARACTER = 8
"""Places that a character of a password takes at most: four bytes in hexadecimal digits."""

_NORMAL = 0  # QLineEdit::Normal
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

    def __repr__(self) -> str:
        return f"<{len(self._texts)} secrets>"

    def __iter__(self) -> Iterator[str]:
        return iter(self._texts)

    def add(self, text: str) -> None:
        """Adds a text. Keys at its end, which leave the field, are no part of it."""
        text = text.rstrip("\r\n\t")
        if text:
            self._texts.add(text)

    def hide(self, text: str) -> str:
        """The text without the secrets, as they are and as Python and JSON write them, and without their cut beginnings."""
        for secret in sorted(self._texts, key=len, reverse=True):
            for form in {secret, repr(secret)[1:-1], json.dumps(secret)[1:-1]}:
                pattern = re.escape(form)
                if len(secret) < _SHORT:
                    pattern = rf"(?<!\w){pattern}(?!\w)"
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


def typed_text(line: str) -> str:
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


def is_for_password(channel: "Channel", line: str) -> bool:
    """Whether a request types into a field with an echo mode other than Normal. Asks the agent, outside the transcript.

    Raises ConnectionClosed and RequestTimeout.
    """
    with channel.transcript.paused():
        for question in _questions(channel, line):
            try:
                reply = Reply.parse(channel.exchange(question))
                return reply.ok and reply.value() != _NORMAL
            except (ConnectionClosed, RequestTimeout):
                raise
            except QtDriverError:
                return False
    return False


def _questions(channel: "Channel", line: str) -> List[str]:
    """The request that asks for the echo mode; none where the field cannot be found."""
    number, window, place = line.split(",")[:3]
    mode = encode_utf8_hex("echoMode")
    if number == "6" and place.rpartition("/")[2] != "FocusWidget":
        return [f"7,{window},{place},,echoMode,"]
    if number == "6":
        window, place = encode_utf8_hex(window), ""
    if not place:
        found = _focused(channel, window)
        if found is None:
            return []
        place = encode_utf8_hex(f"ref={found}")
    return [f"+7,{window},{place},,{mode},"]


def _focused(channel: "Channel", window: str) -> Optional[int]:
    """The reference number of the widget with the keyboard focus."""
    try:
        payload = Reply.parse(channel.exchange(f"+2,{window},")).payload
        waiting: List[Any] = [json.loads(payload[2:])] if payload.startswith("j:") else []
    except (ConnectionClosed, RequestTimeout):
        raise
    except (QtDriverError, ValueError):
        return None
    while waiting:
        node = waiting.pop()
        if "focused" in node.get("states", ()):
            return int(node["ref"])
        waiting += node.get("children", ())
    return None
