"""Shared by the tests of item views."""

import re

UP, DOWN, LEFT, RIGHT, HOME, END = 0x01000013, 0x01000015, 0x01000012, 0x01000014, 0x01000010, 0x01000011
TAB, F2, BACKSPACE, RETURN, SPACE, PLUS = 0x01000001, 0x01000031, 0x01000003, 0x01000004, 0x20, 0x2B
SHIFT, CONTROL = 0x02000000, 0x04000000
PASTE_OVER = [(END, "", 0), (HOME, "", SHIFT), (ord("V"), "", CONTROL), (RETURN, "", 0)]
"""The keys with which an item's editor gets another text from the clipboard and hands it over."""


class View:
    """One view of an application: requests to the agent about it, and what the application itself tells of it."""

    def __init__(self, app, window, name, class_name=""):
        self.app, self.window, self.name, self.class_name = app, window, name, class_name

    def activate(self, value="", option=""):
        return self.app.activate(self.window, self.name, value, option, self.class_name)

    def enter(self, value):
        return self.app.enter(self.window, self.name, value, self.class_name)

    def mouse(self, command):
        return self.app.mouse(self.window, self.name, command, self.class_name)

    def read(self, prop, argument=""):
        return self.app.read(self.window, self.name, prop, argument, self.class_name)

    def items(self, prop, argument=""):
        """The texts of a property that is a list."""
        reply = self.read(prop, argument)
        assert reply.startswith("0,l:"), reply
        return reply.split("\f")[1:]

    def state(self):
        """The current item and the selected ones as (row, column, text, [texts]), from the application."""
        self.app.do(self.name + "State")
        line = self.app.journal.pop()
        row, column, text, selected = re.fullmatch(
            rf"state {self.name} current (-?\d+),(-?\d+) '(.*)' selected (.*)", line
        ).groups()
        return int(row), int(column), text, selected.split("|") if selected else []

    def current(self):
        return self.state()[2]

    def cell(self):
        return self.state()[:2]

    def selected(self):
        return self.state()[3]

    def keys(self, part=""):
        """The keys since the last `forget`, as (key, text, modifiers): the view's own, or those of its "Editor"."""
        pattern = re.compile(rf"keypress {self.name}{part} (\d+) '(.*)' modifiers (\d+)")
        found = [pattern.fullmatch(line) for line in self.app.events("keypress")]
        return [(int(m[1]), m[2], int(m[3])) for m in found if m]

    def key_codes(self):
        return [key for key, _, _ in self.keys()]

    def data(self):
        return self.app.events("data")


def opener(launch, program, window, name):
    """A function that starts the program in one of its scenarios and returns its view."""
    return lambda scenario: View(launch(program, "--scenario", scenario), window, name)
