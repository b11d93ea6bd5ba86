"""Requests leave nothing behind: no memory, widgets, objects, or open files. scripts/leaks.sh plays more of them."""

import os

import pytest

from leaks import BATCHES, EVERY_KIND, PLANTED, SLOW, LeakApp

ROUNDS = int(os.environ.get("QTDRIVER_LEAK_ROUNDS", "60")) // BATCHES


@pytest.fixture(scope="module")
def app():
    app = LeakApp()
    yield app
    app.end()


@pytest.fixture(scope="module")
def bytes_of_menu(app):
    return app.growth_of_a_menu()


@pytest.mark.parametrize("name", EVERY_KIND)
def test_a_request_leaves_nothing_behind(app, bytes_of_menu, name):
    requests = EVERY_KIND[name]
    rounds = max(ROUNDS // 30, 3) if name in SLOW else ROUNDS
    leak = app.leak_of_requests(requests, rounds, bytes_of_menu)
    assert leak == {}, f"of {rounds} rounds of {len(requests)}, of a menu {bytes_of_menu:.0f}"


@pytest.mark.parametrize(
    "name, found",
    [
        ("bytes", {"heap"}),
        ("object", {"heap", "objects"}),
        ("widget", {"heap", "widgets", "objects"}),
        ("file", {"files"}),
    ],
)
def test_a_leak_in_the_application_would_be_found(app, name, found):
    assert set(app.leak_of_requests(PLANTED[name], ROUNDS, 0)) == found
