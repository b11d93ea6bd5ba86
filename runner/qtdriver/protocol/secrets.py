"""Texts that are kept nowhere, and the lines and messages from which they are left out."""

from __future__ import annotations

import json
import re
from contextlib import suppress
from typing import Iterable, Iterator, List, Set

from .extensions import decode_or_nothing, decode_utf8_hex, encode_utf8_hex
from .wire import decode_hex, encode_hex

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

_PRESS_REQUEST = re.compile(r"(?P<before>\+press,[^,]*,[^,]*,)(?P<keys>[^,]*)(?P<after>.*)", re.DOTALL)


def pressed_keys(digits: str) -> List[str]:
    """The key strokes of a request, as they were written."""
    keys = decode_or_nothing(digits)
    return [stroke.strip() or stroke for stroke in re.split(r"(?<=.), *", keys)] if keys else []


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

    def add_new(self, texts: Iterable[str]) -> Set[str]:
        """Adds texts. Returns those that were not there before."""
        new = set(filter(None, texts)) - self._texts
        self._texts |= new
        return new

    def drop(self, texts: Set[str]) -> None:
        """Drops texts."""
        self._texts -= texts

    def grow(self, before: str, text: str) -> None:
        """Adds a text that was typed key by key, and drops a short beginning of it, which was added before."""
        if len(before) < _SHORT:
            self._texts.discard(before)
        self.add(text)

    def has_key(self, key: str) -> bool:
        """Whether this key was added."""
        return key in self._keys

    def add_key(self, key: str) -> None:
        """Adds a key that was pressed, as it was written. It is left out of calls and requests that press keys."""
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
        if self._keys:
            line = _PRESS_REQUEST.sub(self._hide_request, line)
        return self.hide(_HEX.sub(self._hide_digits, line)) if self._texts else line

    def hide_in_beginning(self, line: str, size: int) -> str:
        """The beginning of a request or a reply, at most so long, without the secrets and what a cut leaves of them."""
        if not self._texts or len(line) <= size:
            return self.hide_in_line(line)[:size]
        room = _CHARACTER * max(map(len, self._texts))
        # Behind the beginning that is kept there is room for the part of a secret, which nothing recognises.
        hidden = self.hide_in_line(_LAST_DIGITS.sub(_whole_characters, line[: size + room]))
        return hidden[: max(0, min(size, len(hidden) - room))]

    def _hide_request(self, request: "re.Match[str]") -> str:
        """A request that presses keys, without these if one of them is secret."""
        secret = any(map(self.has_key, pressed_keys(request["keys"])))
        return request["before"] + encode_utf8_hex(HIDDEN) + request["after"] if secret else request[0]

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
