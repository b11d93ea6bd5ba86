"""Shared by the tests of the inspector: an application that is held, its page, and a browser that shows it."""

import sys
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "runner"), str(ROOT / "tests" / "e2e")]


@pytest.fixture(scope="module")
def held(tmp_path_factory):
    """A showcase that is held by a process of its own, and can be asked here and by the inspector alike."""
    from inspecting import holding

    with holding(tmp_path_factory.mktemp("runtime")) as showcase:
        yield showcase


@pytest.fixture(scope="module")
def address(held):
    """The address of the page of that showcase."""
    from inspecting import inspecting

    with inspecting() as running:
        yield running.address


@pytest.fixture(scope="module")
def page(address, tmp_path_factory):
    """A browser that shows the page, with the picture there."""
    from chromium import running_browser

    with running_browser(tmp_path_factory.mktemp("profile")) as browser:
        browser.size(1800, 1250)  # so that the picture is not scaled
        browser.go(address)
        browser.wait_until("return Number(document.getElementById('picture').dataset.count) > 0")
        yield browser


@pytest.fixture(autouse=True)
def quiet(request):
    """After each test that used the browser: its console is empty, and nothing but the server was asked."""
    yield
    if "page" in request.fixturenames:
        page, address = request.getfixturevalue("page"), request.getfixturevalue("address")
        assert [entry["message"] for entry in page.log("browser")] == []
        own = (address, "data:", "blob:", "about:", "chrome:")
        assert [one for one in page.requested() if not one.startswith(own)] == []
