"""Keys for an item view, where the application takes the focus, the editor or the view away between two of them."""

import pytest

WINDOW = "Views"
DIED = "8,Exception : Internal error, proxy without widget"
ROUNDS = [*range(8), *range(8, 64, 5)]
"""Rounds of events after which the application acts; the last of them are later than the last key."""


class Kind:
    """A kind of view: what to enter, where to go, and how to read the item that gets the text."""

    def __init__(self, reply, text, way, *item):
        self.reply, self.text, self.way, self.item = reply, text, way, item


KINDS = {
    "list": Kind("0,QListView", "s:new", "s:R4C0", "itemList"),
    "tree": Kind("0,QTreeView", "s:0:new", "s:R4C0", "pathList"),
    "table": Kind("0,QTableView", "s:new", "s:5:1", "itemText", "s:3:1"),
}


@pytest.fixture
def app(launch):
    return launch("viewdeathhost")


def keys_elsewhere(app):
    """The keys that another widget got, and the text that it has."""
    return [line for line in app.events("keypress", "keyrelease") if " other " in line], app.get(
        "other", "text"
    )


def enter(app, name, fault, rounds):
    """Enters a text into an item while the application acts; returns the reply, with nobody else touched by a key."""
    app.forget()
    app.do(f"{name}-{fault}-{rounds}")
    reply = app.enter(WINDOW, "view", KINDS[name].text)
    app.wait_for("fault is done")
    assert keys_elsewhere(app) == ([], ""), f"{fault} after {rounds} rounds"
    return reply


@pytest.mark.parametrize("name", sorted(KINDS))
@pytest.mark.parametrize("fault", ["endEditor", "endView"])
def test_a_text_for_an_item_reaches_nothing_else_when_its_editor_or_view_dies(app, name, fault):
    replies = {enter(app, name, fault, rounds) for rounds in ROUNDS}
    assert replies == {DIED, KINDS[name].reply}


@pytest.mark.parametrize("name", sorted(KINDS))
def test_a_text_for_an_item_is_there_or_told_not_to_be_when_another_widget_takes_the_focus(app, name):
    replies = set()
    for rounds in ROUNDS:
        reply = enter(app, name, "takeFocus", rounds)
        is_there = "new" in app.read(WINDOW, "view", *KINDS[name].item)
        assert is_there == (reply != DIED), f"after {rounds} rounds"
        replies.add(reply)
    assert replies == {DIED, KINDS[name].reply}


@pytest.mark.parametrize("name", sorted(KINDS))
def test_keys_for_a_view_that_loses_the_focus_on_the_way_reach_nothing_else(app, name):
    for rounds in ROUNDS[:8]:
        app.forget()
        app.do(f"{name}-takeFocusOnTheWay-{rounds}")
        app.activate(WINDOW, "view", KINDS[name].way)
        app.wait_for("fault is done")
        assert keys_elsewhere(app) == ([], ""), f"after {rounds} rounds"
