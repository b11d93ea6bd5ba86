"""Real input: the mouse and the keyboard of a display, by its extension XTEST."""

from __future__ import annotations

import time
from typing import Any, Dict, Optional, Set, Tuple

from ..errors import QtDriverError
from .keysyms import MODIFIERS, SHIFT, is_modifier, is_text, keysym

_BUTTONS = {0: 1, 1: 2, 2: 3}
"""The numbers of the mouse buttons in a browser, and in X."""

_WHEEL_UP, _WHEEL_DOWN, _WHEEL_LEFT, _WHEEL_RIGHT = 4, 5, 6, 7
_MAX_STEPS = 20
_MAX_SECONDS_WITHOUT_WINDOW = 1.0
_SECONDS_BETWEEN_LOOKS = 0.01
_NEEDS_XLIB = "install it: apt install python3-xlib, or pip install python-xlib"


def open_input(name: str) -> "Input":
    """The input of a display. Raises QtDriverError where python-xlib is missing, or the display cannot do it."""
    try:
        from Xlib.display import Display  # type: ignore[import]
        from Xlib.error import DisplayError  # type: ignore[import]
    except ImportError as error:
        raise QtDriverError("input in the picture needs python-xlib", hint=_NEEDS_XLIB) from error
    try:
        display = Display(name)
    except (DisplayError, OSError) as error:
        raise QtDriverError(f"the display {name} takes no input: {error}") from error
    if not display.has_extension("XTEST"):
        display.close()
        raise QtDriverError(f"the display {name} takes no input: it has no extension XTEST")
    return Input(display)


class Input:
    """Plays what happens to the picture on the page to the display.

    The keyboard of the user and that of the display may differ: a character is typed with the modifiers that it needs there, and
    where the display has no key for it, a key that has no meaning gets this one.
    """

    def __init__(self, display: Any) -> None:
        """Owns the connection from now on."""
        self._display = display
        self._held: Set[str] = set()
        self._buttons: Set[int] = set()
        self._spare = _spare_keycodes(display)
        self._given: Dict[int, int] = {}
        self._had_active_window = True

    def play(self, told: Dict[str, Any]) -> None:
        """Plays one event.

        Args:
            told: {"kind": "move", "x", "y"}, {"kind": "press" or "release", "x", "y", "button"}, {"kind": "wheel", "x", "y",
                "across", "down"} in steps, {"kind": "key", "key"}, {"kind": "idle"}; each with the "modifiers" that are held, a
                list. Places are in pixels of the screen, buttons and keys are those of the browser.

        Raises KeyError, TypeError or ValueError for an event that is none, QtDriverError when the display has ended.
        """
        from Xlib.error import ConnectionClosedError

        kind, modifiers = told["kind"], set(told.get("modifiers", ())) & set(MODIFIERS)
        try:
            if kind == "key":
                self._key(str(told["key"]), modifiers)
            else:
                self._hold(modifiers)
                if "x" in told:
                    self._move(int(told["x"]), int(told["y"]))
                if kind in ("press", "release"):
                    self._button(_BUTTONS[told["button"]], kind == "press")
                elif kind == "wheel":
                    self._turn(int(told["across"]), _WHEEL_LEFT, _WHEEL_RIGHT)
                    self._turn(int(told["down"]), _WHEEL_UP, _WHEEL_DOWN)
            self._display.flush()
        except ConnectionClosedError as error:
            raise QtDriverError("the display has ended") from error

    def close(self) -> None:
        """Lets go all that is held, and ends the connection."""
        try:
            self._hold(set())
            for button in tuple(self._buttons):
                self._button(button, False)
            self._display.sync()
            self._display.close()
        except Exception:  # python-xlib raises several kinds when the server has ended before
            pass

    def _move(self, x: int, y: int) -> None:
        from Xlib import X  # type: ignore[import]

        screen = self._display.screen()
        x, y = min(max(x, 0), screen.width_in_pixels - 1), min(max(y, 0), screen.height_in_pixels - 1)
        self._display.xtest_fake_input(X.MotionNotify, x=x, y=y)

    def _button(self, button: int, pressed: bool) -> None:
        from Xlib import X

        self._display.xtest_fake_input(X.ButtonPress if pressed else X.ButtonRelease, button)
        (self._buttons.add if pressed else self._buttons.discard)(button)

    def _turn(self, steps: int, back: int, forth: int) -> None:
        for _ in range(min(abs(steps), _MAX_STEPS)):
            for pressed in (True, False):
                self._button(forth if steps > 0 else back, pressed)

    def _key(self, key: str, modifiers: Set[str]) -> None:
        symbol = keysym(key)
        if symbol is None:
            if is_modifier(key):
                self._hold(modifiers)
            return
        self._wait_for_active_window()
        keycode, needs_shift = self._keycode(symbol)
        if is_text(key):
            modifiers = (modifiers - {SHIFT}) | ({SHIFT} if needs_shift else set())
        self._hold(modifiers)
        self._press(keycode, True)
        self._press(keycode, False)

    def _wait_for_active_window(self) -> None:
        """Waits while the window manager has taken the keyboard from a window that closes, and given it to no other one yet.

        Where no window gets it for a second, the next keys do not wait again.
        """
        end = time.monotonic() + _MAX_SECONDS_WITHOUT_WINDOW
        while not (has := self._has_active_window()) and self._had_active_window and time.monotonic() < end:
            time.sleep(_SECONDS_BETWEEN_LOOKS)
        self._had_active_window = has

    def _has_active_window(self) -> bool:
        """Whether a window has the keyboard; true without a window manager that tells."""
        from Xlib import X

        active = self._display.intern_atom("_NET_ACTIVE_WINDOW")
        told = self._display.screen().root.get_full_property(active, X.AnyPropertyType)
        return told is None or not len(told.value) or told.value[0] != X.NONE

    def _hold(self, modifiers: Set[str]) -> None:
        """Holds these modifiers and no others."""
        for name in sorted(self._held ^ modifiers):
            self._press(self._display.keysym_to_keycode(MODIFIERS[name]), name in modifiers)
        self._held = modifiers

    def _press(self, keycode: int, pressed: bool) -> None:
        from Xlib import X

        self._display.xtest_fake_input(X.KeyPress if pressed else X.KeyRelease, keycode)

    def _keycode(self, symbol: int) -> Tuple[int, bool]:
        """The key for a symbol, and whether Shift is held for it."""
        for keycode, level in self._display.keysym_to_keycodes(symbol):
            if level in (0, 1):
                return keycode, level == 1
        if symbol not in self._given:
            self._given[symbol] = self._give_key(symbol)
        return self._given[symbol], False

    def _give_key(self, symbol: int) -> int:
        """Gives a key that has no meaning this one: the one that got its meaning first, where all have one."""
        keycode: Optional[int] = next((one for one in self._spare if one not in self._given.values()), None)
        if keycode is None:
            if not self._given:
                raise QtDriverError("the display has no key for this character, and none to give it")
            oldest = next(iter(self._given))
            keycode = self._given.pop(oldest)
        self._display.change_keyboard_mapping(keycode, [(symbol, symbol)])
        self._display.sync()
        return keycode


def _spare_keycodes(display: Any) -> Tuple[int, ...]:
    """The keys that have no meaning."""
    first, last = display.display.info.min_keycode, display.display.info.max_keycode
    mapping = display.get_keyboard_mapping(first, last - first + 1)
    return tuple(first + number for number, symbols in enumerate(mapping) if not any(symbols))
