"""Rules for all extensions of the protocol: their names, their texts, and unknown ones."""

import pytest

from extensions import extension
from replies import error


@pytest.fixture
def app(launch):
    return launch("corehost")


@pytest.mark.shared
def test_an_agent_tells_which_extensions_it_has(app):
    names = app.request("+extensions").split("\f")
    assert names[0] == "0,l:"
    assert names[1] == "+extensions"
    assert len(set(names)) == len(names)
    for name in names[1:]:
        assert name.startswith("+")
        assert app.request(name) != "8,Command not found"


@pytest.mark.shared
@pytest.mark.parametrize(
    "line", ["+", "+nothing", "+1", "+extension", "+extensions ", "extensions", "+Extensions"]
)
def test_an_extension_that_the_agent_has_not_is_an_unknown_command(app, line):
    assert app.request(line) == "8,Command not found"


@pytest.mark.shared
def test_superfluous_sections_are_ignored(app):
    assert app.request("+extensions,00") == app.request("+extensions")
