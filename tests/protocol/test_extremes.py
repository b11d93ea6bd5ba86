"""Numbers at the ends of their range, and windows beyond the end of the screen. The sanitizer sees what overflows."""

import pytest

from hostapp import eventually
from refusals import nothing_happens


@pytest.fixture
def app(launch):
    app = launch("throwhost")
    app.wait_until("button", "visible", "true")
    return app


def click_until_it_arrives(app):
    """The window manager takes its time to move a window: a click may come before that, or meet it on its way."""

    def is_clicked():
        app.activate("Thrower", "button")
        return app.events("clicked") != []

    eventually(is_clicked, True)


@pytest.mark.parametrize("number", ["-2147483648", "2147483647"])
def test_an_item_number_at_the_end_of_the_range_is_out_of_range(app, number):
    def activate(path):
        return app.activate("Thrower", "table", f"s:{path}", "s:ScrollTo", class_name="QAbstractItemView")

    with nothing_happens(app):
        assert activate(number) == f"8,Exception : Row {number} is out of range (0..3)"
        assert activate(f"1;{number}") == f"8,Exception : Column {number} is out of range (0..2)"


@pytest.mark.parametrize("x, y", [("2147483647", "0"), ("-2147483648", "-2147483648"), ("0", "2147483647")])
def test_a_window_moved_as_far_as_it_goes_can_still_be_used(app, x, y):
    assert app.request(f"10,Thrower,{x},{y}") == "0,Thrower"
    assert app.read("Thrower", "button", "globalRect").startswith("0,r:")
    click_until_it_arrives(app)


def test_a_window_that_the_application_itself_moved_out_of_reach(app):
    app.do("moveFar")
    assert app.read("Thrower", "button", "globalRect").startswith("0,r:")
    eventually(lambda: app.request("8,Thrower"), "0,Thrower")
