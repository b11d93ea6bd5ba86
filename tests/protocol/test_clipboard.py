"""+clipboard: the text on the clipboard, as the application has it."""

import pytest

from extensions import extension
from replies import error


@pytest.fixture
def app(launch):
    return launch("keyhost")


def read(app):
    reply = app.request("+clipboard")
    assert reply.startswith("0,u:")
    return bytes.fromhex(reply[4:]).decode("utf-8")


@pytest.mark.parametrize(
    "text",
    ["plain", "", "Grüße €\n\t\U0001f600", "a,b", "x" * 1_000_000],
    ids=["plain", "empty", "unicode", "comma", "long"],
)
def test_a_text_comes_back_as_it_was_put_there(app, text):
    assert app.request(extension("+clipboard", text)) == "0,"
    assert read(app) == text


def test_the_application_pastes_what_was_put_there_and_what_it_copies_is_read(app):
    app.request(extension("+clipboard", "Größe €"))
    app.request(extension("+press", "Keys ä", "path=plain", "Ctrl+V"))
    app.wait_until("plain", "plainText", "Größe €")
    app.request(extension("+type", "Keys ä", "path=plain", "!"))
    app.request(extension("+press", "Keys ä", "path=plain", "Ctrl+A, Ctrl+C"))
    app.settle()
    assert read(app) == "Größe €!"


@pytest.mark.shared
def test_a_section_that_is_not_hexadecimal_is_an_error(app):
    assert app.request("+clipboard,x") == error("Section 1 is not hexadecimal")
