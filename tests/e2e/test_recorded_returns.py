"""Return in a field of several lines, recorded: a new line of the text, or the key that sends it off, as in a console."""

import pytest

from test_recorded_actions import BUTTON, NOTES, click, event, keys, lines_of, tree

CASES = {
    "lines that Return sends off": (
        [
            *keys(NOTES, "1+1"),
            event("key", NOTES, key="Return", text="\r", value="1+1"),
            event("key", NOTES, key="2", text="2"),
            event("key", NOTES, key="Return", text="\r", value="2"),
            *click(BUTTON, tree=tree(notes="")),
        ],
        [
            'shop.widget("notes").fill("1+1")',
            'shop.widget("notes").press("Return")',
            'shop.widget("notes").fill("2")',
            'shop.widget("notes").press("Return")',
            'shop.widget("brew").click()',
        ],
    ),
    "a line at the end": (
        [
            *keys(NOTES, "a"),
            event("key", NOTES, key="Return", text="\r", value="a"),
            *click(BUTTON, tree=tree(notes="a\n")),
        ],
        [r'shop.widget("notes").fill("a\n")', 'shop.widget("brew").click()'],
    ),
    "a Return after which nothing has happened yet": (
        [*keys(NOTES, "a"), event("key", NOTES, key="Return", text="\r", value="a")],
        ['shop.widget("notes").fill("a")', 'shop.widget("notes").press("Return")'],
    ),
}


@pytest.mark.parametrize("name", CASES)
def test_a_return_is_what_the_field_has_made_of_it(name):
    events, lines = CASES[name]
    assert lines_of(events) == lines
