"""Shared by the tests of menus: how the host programs tell of keys, popups and the keyboard's owner."""

import pytest

from hostapp import eventually

POPUP = "Widget:ActivePopupWidget"
POPUP_PATH = "ActivePopupWidget"

KEY_NAMES = {
    "16777216": "Escape",
    "16777220": "Return",
    "16777234": "Left",
    "16777236": "Right",
    "16777237": "Down",
}


def keys(app):
    """The keys pressed so far and the widgets that got them, as in "fileMenu Down"."""
    presses = [line.split(" ") for line in app.events("keypress")]
    return [f"{press[1]} {KEY_NAMES[press[2]]}" for press in presses]


def input_state(app):
    """The open popup, the widget with the keyboard and the modal widget, by name or "none"."""
    app.do("state")
    line = next(line for line in reversed(app.journal) if line.startswith("state"))
    words = line.split(" ")
    return {"popup": words[2], "focus": words[4], "modal": words[6]}


def wait_for_popup(app):
    """Waits until a popup is open: the reply to a click comes before its effect."""
    eventually(lambda: app.request(f"2,{POPUP}")[:2], "0,")


def wait_until_closed(app, focus="edit"):
    """Waits until no popup is open and the widget has the keyboard.

    Qt 5 can lose track of the active window when popups close and open in quick succession; as for any command, the
    agent makes the window active again.
    """
    eventually(lambda: input_state(app)["popup"], "none")

    def owner():
        if input_state(app)["focus"] == "none":
            app.read("", focus, "globalRect")
        return input_state(app)["focus"]

    eventually(owner, focus)


def sharing(rows, but):
    """Rows of parameters whose tests share an application, but for those that change it, by their paths."""
    return [pytest.param(*row, id=row[0], marks=[] if row[0] in but else pytest.mark.shared) for row in rows]
