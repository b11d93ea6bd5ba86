"""clang-tidy finds nothing in the agent."""

import os
from pathlib import Path

import pytest

import tidy
from test_sources import tracked
from tidy import ROOT, Tidy, groups

BUILD = Path(os.environ.get("QTDRIVER_BUILD", ROOT / "build" / "qt5"))
NOT_OF_THIS_BUILD = ("platform_windows.cpp",)
AGENT = [
    source
    for source in tracked("src/*.cpp")
    if source.parent.name != "preload" and source.name not in NOT_OF_THIS_BUILD
]

GOOD = "#include <vector>\n\nint first(const std::vector<int>& all)\n{\n    return all.empty() ? 0 : all.front();\n}\n"
BAD = "\nint broken(bool known)\n{\n    const int* number = nullptr;\n    return known ? 0 : *number;\n}\n"
UGLY = "\nint* ugly()\n{\n    return 0;\n}\n"


@pytest.fixture
def made_up(tmp_path, monkeypatch):
    """clang-tidy for sources in a folder of the test; counts its runs."""
    monkeypatch.setattr(Tidy, "options", lambda self, source: ["-std=c++14"])
    checker = Tidy.__new__(Tidy)
    checker.folder = checker.build = tmp_path
    checker.looked_at = []
    monkeypatch.setattr(
        checker, "mark", lambda source: tmp_path / f"{source.name}-{hash(source.read_text())}", False
    )
    run = checker.run
    checker.run = lambda source, options: checker.looked_at.append(source.name) or run(source, options)

    def write(**texts):
        paths = []
        for name, text in texts.items():
            paths.append(tmp_path / f"{name}.cpp")
            paths[-1].write_text(text)
        return paths

    checker.write = write
    return checker


def test_clang_tidy_finds_nothing_in_the_agent():
    assert AGENT
    found = Tidy(BUILD).complaints(AGENT)
    assert not found, "\n".join(found)


@pytest.mark.parametrize(
    "mistake, complaint", [(BAD, "Dereference of null pointer"), (UGLY, "modernize-use-nullptr")]
)
def test_a_mistake_in_one_of_many_is_found_and_its_line_told(made_up, mistake, complaint):
    sources = made_up.write(one=GOOD, two=mistake)
    assert groups(sources) == [sources]
    (found,) = made_up.complaints(sources)
    assert complaint in found
    assert "two.cpp:" in found


def test_sources_beside_a_mistake_pass_and_are_not_looked_at_again(made_up):
    good = {name: f"int {name}()\n{{\n    return 0;\n}}\n" for name in ("one", "two", "three")}
    sources = made_up.write(**good, four=UGLY)
    assert len(made_up.complaints(sources)) == 1
    made_up.looked_at.clear()
    assert len(made_up.complaints(sources)) == 1
    assert made_up.looked_at == ["four.cpp"]


def test_only_the_source_with_the_mistake_is_looked_at_alone(made_up):
    good = {name: f"int {name}()\n{{\n    return 0;\n}}\n" for name in ("one", "two", "four", "five")}
    sources = made_up.write(**{**dict(list(good.items())[:2]), "three": UGLY, **good})
    assert len(made_up.complaints(sources)) == 1
    assert made_up.looked_at == ["one_and_4_others.cpp", "three.cpp", "one_and_3_others.cpp"]


def test_a_mistake_in_a_header_is_found(made_up, tmp_path):
    (tmp_path / "src").mkdir()
    (tmp_path / "src" / "ugly.h").write_text(f"#pragma once\n{UGLY.replace('int*', 'inline int*')}")
    sources = made_up.write(
        one='#include "src/ugly.h"\nint one()\n{\n    return 0;\n}\n', two="int two()\n{\n    return 0;\n}\n"
    )
    (found,) = made_up.complaints(sources)
    assert "ugly.h:" in found


def test_what_passed_is_not_looked_at_again_until_it_changes(made_up):
    sources = made_up.write(one=GOOD, two="int two()\n{\n    return 2;\n}\n")
    assert made_up.complaints(sources) == []
    assert made_up.looked_at == ["one_and_1_others.cpp"]
    assert made_up.complaints(sources) == []
    assert made_up.looked_at == ["one_and_1_others.cpp"]
    sources[1].write_text(sources[1].read_text() + UGLY)
    assert len(made_up.complaints(sources)) == len(made_up.complaints(sources)) == 1
    assert made_up.looked_at == ["one_and_1_others.cpp", "two.cpp", "two.cpp"]


def test_sources_with_a_name_in_common_are_not_put_together(made_up):
    for declaration in (
        "namespace {\nconst int rows[] = {1};\n}\n",
        "namespace {\nstruct Row {\n    int rows;\n};\nbool operator==(const Row&, const Row&);\nint rows()\n{\n}\n}\n",
    ):
        sources = made_up.write(one="namespace {\nint rows = 0;\n}\n", two=declaration)
        assert groups(sources) == [[source] for source in sources]


def test_a_header_the_options_or_the_version_that_change_have_a_source_looked_at_again(monkeypatch):
    checker, source = Tidy(BUILD), AGENT[0]
    header = next(
        path for path in ROOT.glob("src/*/*.h") if path in checker.dependencies()[object_of(checker, source)]
    )
    before = checker.mark(source)
    assert before == checker.mark(source)
    stamp = tidy.stamp
    monkeypatch.setattr(tidy, "stamp", lambda path: "changed" if path == header else stamp(path))
    assert checker.mark(source) != before
    monkeypatch.setattr(tidy, "stamp", lambda path: "changed" if path == tidy.CONFIGURATION else stamp(path))
    assert checker.mark(source) != before
    monkeypatch.setattr(tidy, "stamp", stamp)
    assert checker.mark(source) == before
    monkeypatch.setattr(tidy, "version", lambda: "another one")
    assert checker.mark(source) != before


def test_the_options_of_sources_that_are_compiled_together_are_known(tmp_path):
    sources = [tmp_path / "one.cpp", tmp_path / "two.cpp"]
    together = tmp_path / "Unity" / "unity_0_cxx.cxx"
    together.parent.mkdir()
    together.write_text("/* generated */\n" + "".join(f'#include "{source}"\n' for source in sources))
    assert tidy.compiled_with({"file": str(together)}) == sources
    assert tidy.compiled_with({"file": str(sources[0])}) == sources[:1]


def object_of(checker, source):
    words = checker.commands[source]["command"].split()
    return words[words.index("-o") + 1]
