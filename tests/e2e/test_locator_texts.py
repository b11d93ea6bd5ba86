"""Locators as Python writes them: the text that the agent reads, and what messages call them."""

import re

import pytest

from qtdriver import containing
from qtdriver.protocol.locators import address, as_address, locator, path_locator, raw_locator


@pytest.mark.parametrize(
    "found, text",
    [
        (locator("QPushButton"), "QPushButton"),
        (locator("QPushButton", text="Save"), 'QPushButton text="Save"'),
        (locator(label="Name:"), 'label="Name:"'),
        (locator(text=containing("Sa")), 'text*="Sa"'),
        (locator(text=re.compile("^Sa")), 'text~="^Sa"'),
        (locator(text=re.compile("^sa", re.IGNORECASE)), 'text~="(?i)^sa"'),
        (locator(text='say "hi"\\\n\t'), r'text="say \"hi\"\\\n\t"'),
        (locator(text=""), 'text=""'),
        (locator("ns::Widget", name="x", visible=None), 'ns::Widget name="x" visible=any'),
        (locator("*", visible=False), "* visible=false"),
        (locator(properties={"readOnly": True, "maximum": 5}), '.readOnly="true" .maximum="5"'),
        (locator(ref=12), "ref=12"),
        (path_locator("form//ok"), 'path="form//ok"'),
        (
            locator("QCheckBox").within(locator("QGroupBox", text="Size")),
            'QGroupBox text="Size" >> QCheckBox',
        ),
        (locator("QCheckBox").at("nth=2", "nth(2)"), "QCheckBox nth=2"),
    ],
)
def test_a_call_becomes_the_text_of_a_locator(found, text):
    assert found.text == text


@pytest.mark.parametrize(
    "found, shown",
    [
        (locator("QPushButton", text="Save"), 'find("QPushButton", text="Save")'),
        (locator(text="two\nlines, it's"), r"""find(text="two\nlines, it's")"""),
        (locator(text='say "hi"'), """find(text='say "hi"')"""),
        (locator(text=containing("Sa")), 'find(text=containing("Sa"))'),
        (locator(text=re.compile("^sa", re.I)), "find(text=re.compile('^sa', re.IGNORECASE))"),
        (locator(properties={"readOnly": True}, ref=3), "find(properties={'readOnly': True}, ref=3)"),
        (locator("A").within(locator("B")).at("first", "first()"), 'find("B").find("A").first()'),
        (path_locator("form/ok"), "form/ok"),
        (raw_locator('A text="b"'), 'A text="b"'),
    ],
)
def test_messages_call_it_as_the_test_wrote_it(found, shown):
    assert str(found) == shown


@pytest.mark.parametrize(
    "arguments, conditions",
    [
        ((), {}),
        ((), {"visible": None}),
        (("Q PushButton",), {}),
        (("QPushButton text=",), {}),
        ((), {"properties": {"a b": 1}}),
        ((), {"text": re.compile("a", re.DOTALL)}),
    ],
)
def test_what_cannot_be_written_is_refused(arguments, conditions):
    with pytest.raises(ValueError):
        locator(*arguments, **conditions)


@pytest.mark.parametrize(
    "found",
    [
        locator("QMenuBar"),
        locator("QMenuBar").at("first", "first()"),
        locator("A").within(locator("B")),
        locator(text="Save"),
        path_locator("form/ok"),
    ],
)
def test_an_address_for_the_command_line_finds_the_same(found):
    read = address(as_address(found))
    assert read == found.name if found.name else read.text.startswith(found.text)


def test_one_of_several_is_not_one_of_several_again():
    with pytest.raises(ValueError, match="already"):
        locator("A").at("first", "first()").at("nth=1", "nth(1)")


def test_a_text_that_ends_like_a_position_is_none():
    assert locator(text="the first").at("last", "last()").text == 'text="the first" last'
