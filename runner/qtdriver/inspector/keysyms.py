"""The X key symbols of what browsers call keys."""

from __future__ import annotations

from typing import Dict, Optional

SHIFT, CONTROL, ALT, META = "shift", "ctrl", "alt", "meta"

MODIFIERS: Dict[str, int] = {SHIFT: 0xFFE1, CONTROL: 0xFFE3, ALT: 0xFFE9, META: 0xFFEB}
"""The modifiers by their names in messages, and the symbols of their left keys."""

_KEYS_OF_MODIFIERS = {"Shift", "Control", "Alt", "AltGraph", "Meta", "OS"}

_NAMED: Dict[str, int] = {
    "Backspace": 0xFF08,
    "Tab": 0xFF09,
    "Enter": 0xFF0D,
    "Pause": 0xFF13,
    "ScrollLock": 0xFF14,
    "Escape": 0xFF1B,
    "Home": 0xFF50,
    "ArrowLeft": 0xFF51,
    "ArrowUp": 0xFF52,
    "ArrowRight": 0xFF53,
    "ArrowDown": 0xFF54,
    "PageUp": 0xFF55,
    "PageDown": 0xFF56,
    "End": 0xFF57,
    "PrintScreen": 0xFF61,
    "Insert": 0xFF63,
    "ContextMenu": 0xFF67,
    "Delete": 0xFFFF,
    **{f"F{number}": 0xFFBD + number for number in range(1, 25)},
}
_FIRST_LATIN, _LAST_ASCII, _FIRST_UPPER, _LAST_LATIN = 0x20, 0x7E, 0xA0, 0xFF
_UNICODE = 0x01000000


def keysym(key: str) -> Optional[int]:
    """The symbol of a key, as KeyboardEvent.key names it: "a", "Enter". None for one that is not known, and for a modifier."""
    if len(key) != 1:
        return _NAMED.get(key)
    code = ord(key)
    if _FIRST_LATIN <= code <= _LAST_ASCII or _FIRST_UPPER <= code <= _LAST_LATIN:
        return code
    return _UNICODE + code if code > _LAST_LATIN else None


def is_text(key: str) -> bool:
    """Whether the key types a character, for which the layout of the keyboard says whether Shift is held."""
    return len(key) == 1


def is_modifier(key: str) -> bool:
    """Whether it is a key that is held for others."""
    return key in _KEYS_OF_MODIFIERS
