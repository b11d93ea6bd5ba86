"""How the tests of refusals see that something has happened after all."""

import pytest

from refusals import nothing_happens


def test_input_is_seen_that_nobody_keeps_a_journal_of(launch):
    app = launch("corehost")
    with pytest.raises(AssertionError, match="input events reached the application"):
        with nothing_happens(app, but=("clicked",)):
            assert app.activate("Editor", "twin") == "0,QPushButton"


def test_a_change_is_seen_that_comes_without_input(launch):
    app = launch("itemviewhost")
    with pytest.raises(AssertionError, match="selection own r1c1"):
        with nothing_happens(app, but=("scrollTo",)):
            assert app.activate("Views", "own", "s:1", "s:Select") == "0,QAbstractItemView"


def test_reading_and_the_way_of_the_mouse_are_nothing(launch):
    app = launch("corehost")
    app.request("4,Editor,edit")
    with nothing_happens(app):
        assert app.request("4,Editor,twin") == "0,QPushButton"
        assert app.read("Editor", "twin", "text") == "u:twin"
