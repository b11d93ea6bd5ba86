"""Who may talk to the page's server: the rules, as functions."""

import pytest

from qtdriver.inspector.access import content_policy, new_token, refusal

TOKEN = "aToken"
HOST = "127.0.0.1:40000"


def test_a_token_is_long_new_and_a_part_of_an_address():
    tokens = {new_token() for _ in range(100)}
    assert len(tokens) == 100
    assert all(len(token) >= 32 and token.replace("-", "").replace("_", "").isalnum() for token in tokens)


@pytest.mark.parametrize(
    "host", [HOST, "localhost:40000", "LOCALHOST:1", "[::1]:8080", "127.0.0.1", "localhost"]
)
def test_names_of_this_machine_are_taken_with_any_port(host):
    assert refusal(TOKEN, f"/{TOKEN}/", host, None) == ""


@pytest.mark.parametrize(
    "path", ["/", "", "//", "/aToke/", "/atoken/", "/aToken2/", "/wrong/aToken/", "/ü/", "live"]
)
def test_a_path_without_the_token_is_refused(path):
    assert "token" in refusal(TOKEN, path, HOST, None)


@pytest.mark.parametrize(
    "host",
    [None, "", "example.org", "example.org:40000", "127.0.0.1.example.org", "localhost:40000:1", "127.0.0.2"],
)
def test_a_name_of_another_machine_is_refused(host):
    assert "127.0.0.1 and localhost only" in refusal(TOKEN, f"/{TOKEN}/", host, None)


@pytest.mark.parametrize(
    "origin",
    [
        "http://example.org",
        "https://127.0.0.1:40000",
        "http://127.0.0.1:40001",
        "http://127.0.0.1",
        "null",
        "file://",
    ],
)
def test_another_page_is_refused(origin):
    assert "another page" in refusal(TOKEN, f"/{TOKEN}/live", HOST, origin, needs_origin=True)


def test_the_page_itself_is_not_refused():
    assert refusal(TOKEN, f"/{TOKEN}/live", HOST, f"http://{HOST}", needs_origin=True) == ""


def test_a_program_that_is_no_browser_gets_no_connection():
    assert "for the page only" in refusal(TOKEN, f"/{TOKEN}/live", HOST, None, needs_origin=True)


def test_the_page_may_load_nothing_from_elsewhere():
    rules = dict(rule.split(" ", 1) for rule in content_policy(HOST).split("; "))
    assert rules["default-src"] == "'none'" and rules["script-src"] == "'self'"
    assert rules["connect-src"] == f"'self' ws://{HOST}" and rules["frame-ancestors"] == "'none'"
