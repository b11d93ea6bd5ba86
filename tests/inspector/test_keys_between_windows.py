"""Keys of the page while one window of the application closes and the next one has not got the keyboard yet."""

from types import SimpleNamespace

import pytest

from qtdriver.inspector.input import Input

A_WINDOW, KEYCODE = 0x400007, 38


class Display:
    """A display whose window manager names, each time it is asked, the next of these active windows; then the last one."""

    display = SimpleNamespace(info=SimpleNamespace(min_keycode=KEYCODE, max_keycode=KEYCODE))

    def __init__(self, *active):
        self._active = list(active)
        self.journal = []

    def screen(self):
        return SimpleNamespace(root=self)

    def intern_atom(self, name):
        assert name == "_NET_ACTIVE_WINDOW"
        return 1

    def get_full_property(self, atom, kind):
        active = self._active.pop(0) if len(self._active) > 1 else self._active[0]
        self.journal.append(active)
        return None if active is None else SimpleNamespace(value=[active])

    def get_keyboard_mapping(self, first, count):
        return [[ord("a")]]

    def keysym_to_keycodes(self, symbol):
        return [(KEYCODE, 0)]

    def xtest_fake_input(self, event, keycode):
        self.journal.append("key")

    def flush(self):
        pass


def type_keys(display, count=1):
    player = Input(display)
    for _ in range(count):
        player.play({"kind": "key", "key": "a"})
    return display.journal


def test_keys_wait_until_a_window_has_the_keyboard():
    assert type_keys(Display(0, 0, 0, A_WINDOW)) == [0, 0, 0, A_WINDOW, "key", "key"]


@pytest.mark.parametrize("active", [A_WINDOW, None], ids=["a window", "no window manager"])
def test_otherwise_keys_do_not_wait(active):
    assert type_keys(Display(active), 2) == [active, "key", "key"] * 2


def test_where_no_window_gets_the_keyboard_only_the_first_key_waits():
    journal = type_keys(Display(0), 3)
    assert journal.count("key") == 6
    assert journal[-6:] == [0, "key", "key"] * 2
