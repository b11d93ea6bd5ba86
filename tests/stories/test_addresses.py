"""Every visible widget of programs that nobody prepared has an address that finds it alone, and keeps it."""

import os

import pytest

from qtdriver import SnapshotNode, errors, eventually
from qtdriver.lookup.stable_locators import StableLocators

QT = int(os.environ.get("QTDRIVER_QT", "5"))
KEPT = 0.9
"""The share of the addresses that have to be true of the next start of a program, too."""
BUTTONS = ("button", "checkbox", "radio button")

PROGRAMS = {
    5: {
        "speedcrunch": ["Session/Save...", "Help/About SpeedCrunch"],
        "featherpad": ["Options/Preferences", "Help/About"],
        "keepassxc": ["Database/Open Database…", "Help/About"],
        "qpdfview": ["File/Open...", "Edit/Settings..."],
    },
    6: {
        "/usr/lib/qt6/bin/designer": ["Settings/Preferences...", "Help/About Qt Designer"],
        "/usr/lib/qt6/bin/linguist": ["File/Open...", "Help/About Qt Linguist"],
    },
}
PLACES = [(program, menu) for program, menus in PROGRAMS[QT].items() for menu in (None, *menus)]


@pytest.mark.parametrize("program, menu", PLACES)
def test_every_visible_widget_has_an_address_that_is_kept(start, program, menu):
    first = start(program)
    window = shown(first, program, menu)
    addresses = []

    def without_address():
        addresses[:] = addresses_of(window)
        return [f"{role} ({kind})" for role, kind, found, _ in addresses if found is None]

    eventually(without_address).equals([])  # a window may still change when it has just appeared
    first.terminate()

    window = shown(start(program), program, menu)
    eventually(lambda: lost(window, addresses)).satisfies(
        lambda names: len(names) <= (1 - KEPT) * len(addresses)
    )


def shown(app, program, menu):
    """The main window, or the dialog that an entry of its menu opens."""
    if program.endswith("designer"):  # it opens a dialog by itself, some time after it has started
        app.modal("New Form").button("Close").click()
        eventually(app.window("New Form")).is_closed()
    eventually(lambda: len(main_windows(app))).equals(1)
    window = app.window(main_windows(app)[0].title.partition("[*]")[0])
    if menu is None:
        return window
    window.menu(menu).click()
    dialog = app.modal()
    dialog.title()
    return dialog


def main_windows(app):
    return [record for record in app.windows() if record.class_name.endswith(("MainWindow", "FPwin"))]


def addresses_of(window):
    """Role, class, locator and what is told of each visible widget that tells it apart."""
    connection = window.app.connection
    root = window.snapshot().root
    locators = StableLocators(connection, window.address, root)
    return [(node.role, node.class_name, locators.of(node), seen(node)) for node in root.walk()]


def seen(node):
    """By this a user knows a widget again. Other texts than those of buttons can be of the time, of files, of this start."""
    fields = ["name", "label", "action"] + (["text"] if node.role in BUTTONS else [])
    return node.class_name, node.role, *(node.details.get(field) for field in fields)


def lost(window, addresses):
    """The addresses that do not find the widget that they found, or one that looks the same."""
    return [str(found) for _, _, found, told in addresses if not finds(window, found, told)]


def finds(window, found, told):
    connection = window.app.connection
    try:
        return seen(SnapshotNode.of(connection.snapshot(window.address, found))) == told
    except errors.ReplyError:
        return False
