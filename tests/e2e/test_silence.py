"""The agent is silent: no read has the application print anything, of any property of any class of the showcase."""

import re

import pytest
from showcase import running

from qtdriver import CommandError, eventually

ARGUMENTS = (None, "", "1", "1:1", "V:1", "nothing")
"""Arguments for the pseudo-properties, some of which take one."""
DIALOGS = {
    "newOrderButton": "cancelOrderButton",
    "nameBlendButton": "Cancel_dialog_button",
    "emptyRoasterButton": "No_dialog_button",
    "priceListButton": "Cancel_dialog_button",
}
"""The buttons that open a dialog, and the one in it that closes it."""


PARTS = {"QToolBoxButton", "QTableCornerButton", "QToolBarSeparator"}
"""Classes of Qt's own, all of whose widgets are without a name among others without one: no path leads to them."""


class Reader:
    """Reads every property of one widget of each class."""

    def __init__(self, app):
        self.connection = app.connection
        self.seen = set()
        self.values = {}

    def read_all(self, window):
        tree = window.tree()
        for node in tree.nodes:
            name = node.record.class_name
            if not node.record.visible:
                continue
            self.seen.add(name)
            path = tree.unique_path(node)
            if path and name not in self.values:
                self.values[name] = self._values(window.address, path)

    def _values(self, window, path):
        values = {}
        for listing, arguments in (("propertyNames", (None,)), ("pseudoPropertyNames", ARGUMENTS)):
            for name in self.connection.read_property(window, path, listing):
                for argument in arguments:
                    values[name, argument] = self._value(window, path, name, argument)
        return values

    def _value(self, window, path, name, argument):
        try:
            return self.connection.read_property(window, path, name, argument)
        except CommandError as error:
            return error


def read_showcase(app):
    """Has every page, every dialog and the second window read."""
    reader = Reader(app)
    main = app.window(name="showcase")
    tabs = main.widget("pages/qt_tabwidget_tabbar")
    for page in tabs.items():
        tabs.select(page)
        reader.read_all(main)
    for opener, closer in DIALOGS.items():
        main.widget(opener).activate()
        dialog = app.modal()
        eventually(dialog).is_open()
        reader.read_all(dialog)
        dialog.widget(closer).activate()
        eventually(dialog).is_closed()
    main.widget("ordersButton").activate()
    orders = app.window(name="ordersWindow")
    eventually(orders).is_open()
    reader.read_all(orders)
    return reader


RACE = re.compile(
    r"qt\.qpa\.xcb: QXcbConnection: XCB error: 3 \(BadWindow\), .* major code: 40 \(TranslateCoords\), .*"
)
"""Qt 5's own words when it asks the X server what is at a point while the window manager takes a closed window away. Any
application prints this now and then as the mouse moves."""


def printed(app):
    lines = app.process.errors.lines() + app.process.output.lines()
    return [line for line in lines if not RACE.fullmatch(line)]


@pytest.fixture(scope="module")
def silence():
    """The values read of the showcase, the lines that it had printed before, and those since."""
    with running() as (_, app):
        before = printed(app)
        reader = read_showcase(app)
        app.window(name="showcase").title()
        yield reader, before, printed(app)


def test_reading_every_property_of_every_class_prints_nothing(silence):
    _, before, after = silence
    assert after == before


def test_a_widget_of_every_class_is_read(silence):
    reader, _, _ = silence
    assert reader.seen - set(reader.values) <= PARTS
    assert len(reader.values) > 30
    assert all(("objectName", None) in values for values in reader.values.values())
