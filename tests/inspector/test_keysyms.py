"""The keys of a browser as those of a display."""

import pytest

from qtdriver.inspector.keysyms import is_modifier, is_text, keysym


@pytest.mark.parametrize(
    "key, symbol",
    [
        ("a", 0x61),
        ("A", 0x41),
        (" ", 0x20),
        ("ß", 0xDF),
        ("€", 0x010020AC),
        ("Enter", 0xFF0D),
        ("F1", 0xFFBE),
        ("F12", 0xFFC9),
        ("ArrowUp", 0xFF52),
        ("\x07", None),
        ("Dead", None),
        ("Shift", None),
    ],
)
def test_a_key_has_its_symbol(key, symbol):
    assert keysym(key) == symbol


def test_characters_modifiers_and_other_keys_are_told_apart():
    assert is_text("a") and is_text("€") and not is_text("Enter")
    assert is_modifier("Shift") and is_modifier("AltGraph") and not is_modifier("a")
