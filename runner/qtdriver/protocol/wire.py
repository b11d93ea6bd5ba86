"""The text forms of the protocol: hexadecimal sections, typed values of requests, replies and their values."""

from __future__ import annotations

from dataclasses import dataclass
from typing import Callable, Dict, Optional, Tuple, Union

from ..errors import REPLY_ERRORS, ProtocolError, UnsupportedTextError, reply_error

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

LIST_MARK = "\x0c"
"""The form feed in front of each item of a list."""

SUCCESS_CODES = ("0", "?")


@dataclass(frozen=True)
class Rect:
    """A rectangle in whole pixels. All four edges belong to it: right is left + width - 1."""

    left: int
    top: int
    right: int
    bottom: int

    @property
    def width(self) -> int:
        """Pixels from the left to the right edge, both included."""
        return self.right - self.left + 1

    @property
    def height(self) -> int:
        """Pixels from the top to the bottom edge, both included."""
        return self.bottom - self.top + 1


Argument = Union[None, bool, int, str]
"""A value in a request; None is "no value"."""

Value = Union[bool, int, str, Tuple[str, ...], Rect, bytes]
"""A value in a reply; bytes are a picture in the XPM format."""


def encode_hex(text: str) -> str:
    """Writes each character of `text` as two lower-case hexadecimal digits.

    Raises UnsupportedTextError for a character beyond U+00FF: two digits cannot hold it.
    """
    try:
        return text.encode("latin-1").hex()
    except UnicodeEncodeError as error:
        raise UnsupportedTextError(_beyond_latin_1(text, error.start)) from None


def decode_hex(digits: str) -> str:
    """Reads text written as two hexadecimal digits per character. Raises ValueError for anything else."""
    return bytes.fromhex(digits).decode("latin-1")


def encode_line(line: str) -> bytes:
    """Turns a request line without its line end into the bytes to send.

    Raises UnsupportedTextError for a line break inside the line and for characters beyond U+00FF.
    """
    if "\n" in line or "\r" in line:
        raise UnsupportedTextError(f"a request is one line, and this one has a line break: {line!r}")
    try:
        return line.encode("latin-1") + b"\n"
    except UnicodeEncodeError as error:
        raise UnsupportedTextError(_beyond_latin_1(line, error.start)) from None


def _beyond_latin_1(text: str, position: int) -> str:
    character = text[position]
    return (
        f"the protocol carries the characters U+0000 to U+00FF only, and {text!r} has "
        f"{character!r} (U+{ord(character):04X}) at position {position}"
    )


def encode_argument(value: Argument) -> str:
    """Writes a value with its type: "s:text", "b:true", "b:false", "i:5", and nothing for None.

    Raises ValueError for an integer beyond 32 bits and TypeError for a type that requests do not have.
    """
    if value is None:
        return ""
    if isinstance(value, bool):
        return "b:true" if value else "b:false"
    if isinstance(value, int):
        if not -(2**31) <= value < 2**31:
            raise ValueError(f"{value} does not fit into the 32 bits of an integer of a request")
        return f"i:{value}"
    if isinstance(value, str):
        return f"s:{value}"
    raise TypeError(f"a request carries text, integers, booleans or None, not {type(value).__name__}")


@dataclass(frozen=True)
class Reply:
    """One reply line.

    Attributes:
        code: "0" success, "?" the widget under the cursor, "2" to "9" a refusal.
        payload: what follows the code and its comma.
        raw: the whole line.
    """

    code: str
    payload: str
    raw: str

    @classmethod
    def parse(cls, line: str) -> "Reply":
        """Splits a reply line. Raises ProtocolError when it does not start with a known code and a comma."""
        code, comma, payload = line.partition(",")
        if not comma or (code not in SUCCESS_CODES and code not in REPLY_ERRORS):
            raise ProtocolError(f"not a reply: {line!r}")
        return cls(code, payload, line)

    @property
    def ok(self) -> bool:
        """Whether the command was carried out."""
        return self.code in SUCCESS_CODES

    def raise_for_code(self) -> None:
        """Raises the ReplyError subclass of the codes "2" to "9"; does nothing for the others."""
        if not self.ok:
            raise reply_error(self.code, self.payload)

    def value(self) -> Value:
        """The typed value of the payload; a payload without a type prefix is text as it stands.

        Raises ReplyError for the codes "2" to "9", and ProtocolError when the text does not fit its type.
        A window title can look like a typed value, so ask for `payload` where the answer is a title.
        """
        self.raise_for_code()
        parse = _PARSERS.get(self.payload[:2])
        if parse is None:
            return self.payload
        text = self.payload[2:]
        try:
            parsed = parse(text)
        except ValueError:
            parsed = None
        if parsed is None:
            raise ProtocolError(f"not a value of its type: {self.raw!r}")
        return parsed


def _parse_boolean(text: str) -> Optional[Value]:
    return {"true": True, "false": False}.get(text)


def _parse_list(text: str) -> Optional[Value]:
    before, *items = text.split(LIST_MARK)
    return None if before else tuple(items)


def _parse_rect(text: str) -> Optional[Value]:
    edges = text.split(",")
    return Rect(*map(int, edges)) if len(edges) == 4 else None


_PARSERS: Dict[str, Callable[[str], Optional[Value]]] = {
    "b:": _parse_boolean,
    "i:": int,
    "u:": lambda text: bytes.fromhex(text).decode("utf-8"),
    "l:": _parse_list,
    "r:": _parse_rect,
    "x:": bytes.fromhex,
}
