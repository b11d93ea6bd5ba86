"""Walks that an application's model, or a path, gives no end: they end in an error, and soon."""

from pathlib import Path

import pytest

from hostapp import BUILD
from replies import error
from viewapp import View, opener

SLOWER = 5 if BUILD.name.endswith("-asan") else 1
STUCK = error("item is not selectable")
MILLION = 1000000


@pytest.fixture
def start(launch):
    return opener(launch, "endlesshost", "Trees", "tree")


def work(app):
    """Seconds that the application's thread has worked since its start."""
    return int(Path(f"/proc/{app.process.pid}/schedstat").read_text().split()[0]) / 1e9


def within_a_second(app, act):
    """Returns the result of `act`, which must take less than a second of the application's work."""
    before = work(app)
    result = act()
    assert work(app) - before < 1.0 * SLOWER
    return result


def test_a_walk_to_an_item_below_a_hidden_row_ends_although_there_are_always_more_rows(start):
    view = start("endless")
    assert within_a_second(view.app, lambda: view.activate("s:row 1/inside")) == STUCK
    assert view.activate("s:row 3") == "0,QTreeView"
    assert view.current() == "row 3"


def test_a_walk_past_a_folder_that_fills_faster_ends(start):
    view = start("filling")
    assert within_a_second(view.app, lambda: view.activate("s:last")) == STUCK
    assert view.current() == "item"


def test_a_walk_past_a_folder_that_fills_for_a_while_goes_on(start):
    view = start("filling")
    view.app.do("fillUpTo30")
    assert view.activate("s:last") == "0,QTreeView"
    assert view.current() == "last"


def test_a_walk_to_a_disabled_row_of_a_list_ends_although_there_are_always_more_rows(launch):
    view = View(launch("listviewhost", "--scenario", "endless"), "Lists", "list")
    assert within_a_second(view.app, lambda: view.activate("i:5")) == "0,QListView"
    assert view.state()[0] > 5


def test_a_path_of_a_million_segments_leads_nowhere_in_a_model_without_a_floor(start):
    view = start("deep")
    path = "a/" * (MILLION - 1) + "a"
    assert within_a_second(view.app, lambda: view.read("itemPath", "s:" + path)) == error("Invalid item path")
    assert within_a_second(view.app, lambda: view.activate("s:" + path)) == error("Invalid item path")
    assert view.read("itemPath", "s:a/a/a") == "u:a/a/a"


def test_a_path_may_be_ten_thousand_segments_long(start):
    view = start("deep")
    path = "/".join(["a"] * 10000)
    assert view.read("itemPath", "s:" + path) == "u:" + path
    assert view.read("itemPath", "s:" + path + "/a") == error("Invalid item path")


def test_an_index_path_of_a_million_steps_leads_nowhere(start):
    view = start("deep")
    view.class_name = "QAbstractItemView"
    path = "1/" * (MILLION - 1) + "1"
    assert within_a_second(view.app, lambda: view.read("rowCount", "s:" + path)) == error("Path not found")
    assert view.read("rowCount", "s:1/1/1") == "0,i:1"
