"""Request lines as a person types them: with plain text in sections that are sent as hexadecimal text."""

from __future__ import annotations

from typing import Callable, List, Tuple

from ..protocol.commands import COMMAND_BY_NUMBER
from ..protocol.extensions import EXTENSION_BY_NAME, encode_utf8_hex
from ..protocol.wire import encode_hex

PLAIN_MARK = "="
_ESCAPES = {",": ",", "\\": "\\", "n": "\n", "t": "\t"}


def to_request(typed: str) -> str:
    r"""The request for a typed line: turns each encoded section that starts with "=" into hexadecimal text.

    In such a section `\,` is a comma, `\\` a backslash, `\n` a line break, `\t` a tabulator. Everything else stays as typed.

    Raises ValueError for another escape and, in commands, for a character beyond U+00FF in such a section.
    """
    number, comma, sections = typed.partition(",")
    if number in EXTENSION_BY_NAME and comma:
        return ",".join([number, *_encoded_sections(sections, encode_utf8_hex)])
    command = COMMAND_BY_NUMBER.get(number)
    if command is None or not any(section.encoded for section in command.sections):
        return typed
    first_encoded = 1 + [section.encoded for section in command.sections].index(True)
    parts = typed.split(",", first_encoded)
    if len(parts) <= first_encoded:
        return typed
    return ",".join(parts[:first_encoded] + _encoded_sections(parts[first_encoded], encode_hex))


def _encoded_sections(text: str, encode: Callable[[str], str]) -> List[str]:
    sections = []
    more = True
    while more:
        if text.startswith(PLAIN_MARK):
            plain, text, more = _take_plain(text[len(PLAIN_MARK) :])
            sections.append(encode(plain))
        else:
            section, comma, text = text.partition(",")
            sections.append(section)
            more = bool(comma)
    return sections


def _take_plain(text: str) -> Tuple[str, str, bool]:
    """Splits plain text from what follows its comma, and tells whether there was one."""
    plain = ""
    characters = enumerate(text)
    for position, character in characters:
        if character == ",":
            return plain, text[position + 1 :], True
        if character == "\\":
            _, escape = next(characters, (position, ""))
            if escape not in _ESCAPES:
                raise ValueError(
                    rf"\{escape} is not known here: write \\ for a backslash, \, for a comma, \n, \t"
                )
            character = _ESCAPES[escape]
        plain += character
    return plain, "", False
