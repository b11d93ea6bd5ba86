"""INI files as QSettings reads them, with each version of Qt."""

from __future__ import annotations

import re
import string
from typing import Dict, List, Mapping, Sequence, Union

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

Setting = Union[str, bool, int, float, Sequence[str]]
"""A value; a sequence is a list of texts."""

SettingsFiles = Mapping[str, Union[str, Mapping[str, Setting]]]
"""By the name of a file: its text, or its settings by their keys, "Group/key" as QSettings has them."""

_GENERAL = "General"
_PLAIN = re.compile(r"[A-Za-z0-9_.\-]")
_ESCAPES = {'"': '\\"', "\\": "\\\\", "\n": "\\n", "\r": "\\r", "\t": "\\t"}


def ini_text(settings: Mapping[str, Setting]) -> str:
    """The text of the file with these settings.

    Raises TypeError for a value that is none of those in Setting.
    """
    groups: Dict[str, List[str]] = {}
    for key, value in settings.items():
        group, _, name = key.partition("/") if "/" in key else ("", "", key)
        section = _section(group)
        groups.setdefault(section, []).append(f"{_key(name)}={_value(key, value)}")
    return "\n".join("\n".join([f"[{section}]", *lines, ""]) for section, lines in groups.items())


def _section(group: str) -> str:
    """The section of a group. Keys without one are in that named General, so a group of this name has another one."""
    if not group:
        return _GENERAL
    return f"%{_GENERAL}" if group == _GENERAL else _key(group)


def _key(name: str) -> str:
    """A key in the characters that keys of INI files have."""
    return "".join(map(_key_character, name))


def _key_character(character: str) -> str:
    if _PLAIN.match(character):
        return character
    if character == "/":
        return "\\"
    return "".join(f"%{unit:02X}" if unit < 0x100 else f"%U{unit:04X}" for unit in _utf16_units(character))


def _value(key: str, value: Setting) -> str:
    if isinstance(value, bool):
        return "true" if value else "false"
    if isinstance(value, (int, float)):
        return str(value)
    if isinstance(value, str):
        return _quoted(value)
    if isinstance(value, (list, tuple)) and all(isinstance(entry, str) for entry in value):
        return ", ".join(map(_quoted, value)) if len(value) != 0 else "@Invalid()"
    raise TypeError(
        f"settings: {key}: {value!r} ({type(value).__name__}) is none of a text, True or False, a number, a list of texts"
    )


def _quoted(text: str) -> str:
    """A text in quotes, in ASCII: versions of Qt read other characters differently."""
    marked = f"@{text}" if text.startswith("@") else text
    result, is_after_number = "", False
    for unit in _utf16_units(marked):
        character = chr(unit)
        escaped = _ESCAPES.get(character)
        # A hexadecimal digit behind a number would be read as a part of it.
        is_number = not " " <= character <= "~" or (is_after_number and character in string.hexdigits)
        is_after_number = is_number and escaped is None
        result += f"\\x{unit:x}" if is_after_number else escaped or character
    return f'"{result}"'


def _utf16_units(text: str) -> List[int]:
    encoded = text.encode("utf-16-be")
    return [int.from_bytes(encoded[at : at + 2], "big") for at in range(0, len(encoded), 2)]
