"""The console: what it completes."""

import pytest

from qtdriver.commandline.console import LineCompleter

from showcase import running


@pytest.fixture(scope="module")
def words():
    """A console for a showcase."""
    with running() as (_, app):
        yield LineCompleter(app)


def offered(words, text):
    return [word for word, _ in words.completions(text)]


@pytest.mark.parametrize(
    "text, expected",
    [
        ("tr", ["tree"]),
        ("get Roa", ["Roastery"]),
        ("get Widget:sh", ["Widget:showcase"]),
        ("get Roastery brewB", ["brewButton"]),
        ("get roastery nothing", []),
        ("get Roastery brewButton tex", ["text"]),
        ("tree Roa", ["Roastery"]),
        ("7,Roa", ["Roastery"]),
        ("7,Roastery,brewB", ["brewButton"]),
        ("2,Widget:sh", ["Widget:showcase"]),
        ("1,", []),
        ("dance Roa", []),
    ],
)
def test_names_are_completed_where_they_stand(words, text, expected):
    assert offered(words, text) == expected


def test_a_completion_replaces_what_was_typed_of_the_word(words):
    assert words.completions("get Roastery brewB") == [("brewButton", len("brewB"))]
    assert words.completions("7,Roastery,brewB") == [("brewButton", len("brewB"))]


def test_a_word_with_a_blank_is_offered_in_quotes(words):
    assert "'Order/New order...'" in offered(words, "menu Roastery Order/New")
    assert "'Order/New order...'" in offered(words, "menu Roastery 'Order/New")
