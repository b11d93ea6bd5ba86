"""The sources that other people compile keep to what Microsoft's compilers since 2015 and clang-cl understand.

None of those compilers runs here. Two parts of C++14 are missing in Microsoft's of 2015: constexpr functions of more than one
statement, and initial values in braces for classes whose members have default values. C++11 has neither, so clang takes
the sources as C++11 with the library of C++14, and without any extension.
"""

import os
import re
import subprocess
from pathlib import Path

import pytest

from test_sources import ROOT, tracked
from tidy import Tidy, groups

BUILD = Path(os.environ.get("QTDRIVER_BUILD", ROOT / "build" / "qt5"))
QT = os.environ.get("QTDRIVER_QT", "5")
FOR_LINUX = re.compile(r"_posix\.cpp$|/preload/preload\w*\.cpp$")
"""Sources that no compiler for Windows sees."""
LIBRARY = """#pragma once
#include <memory>
#include <utility>

namespace std {
template <typename Type, typename... Arguments>
unique_ptr<Type> make_unique(Arguments&&... arguments)
{
    return unique_ptr<Type>(new Type(forward<Arguments>(arguments)...));
}
} // namespace std
"""
"""The part of C++14's library that the sources use."""

MISSING_IN_2015 = {
    "a loop in a constexpr function": "constexpr int sum(int n)\n{\n    while (n > 9) --n;\n    return n;\n}\n",
    "initial values beside default values": "struct Row { int a = 0; int b; };\nRow row() { return {1, 2}; }\n",
}
EXTENSIONS = {
    "an array of variable length": "int first(int n) { int all[n]; all[0] = n; return all[0]; }\n",
    "a statement as an expression": "int one() { return ({ 1; }); }\n",
    "initial values by name": "struct Row { int a; };\nRow row() { return {.a = 1}; }\n",
    "a range of cases": "int kind(int n) { switch (n) { case 1 ... 3: return 1; default: return 0; } }\n",
    "typeof": "int same(int n) { typeof(n) m = n; return m; }\n",
}
WORDS = re.compile(
    r"\b(__\w*attribute\w*|__builtin_\w+|__extension__|__typeof__|__int128|__PRETTY_FUNCTION__)\b"
)
HEADERS = re.compile(
    r"#include <((?:sys|net|netinet|arpa)/\w+\.h|unistd\.h|dlfcn\.h|strings\.h|cxxabi\.h|bits/\S+)>"
)


def complaints(folder, sources, options):
    """Errors of clang about sources that it compiles as one."""
    library, together = folder / "library.h", folder / "together.cpp"
    library.write_text(LIBRARY)
    together.write_text("".join(f'#include "{source}"\n' for source in sources))
    strict = [
        "-std=c++11",
        "-pedantic-errors",
        "-Werror=gnu",
        "-ferror-limit=0",
        "-Wno-ignored-optimization-argument",
    ]
    command = ["clang++", "-fsyntax-only", *options, *strict, "-include", str(library), str(together)]
    result = subprocess.run(command, cwd=folder, capture_output=True, text=True)
    return result.stderr if result.returncode else ""


def outside_of_conditionals(text):
    """The lines that every compiler sees."""
    depth = 0
    for line in text.splitlines():
        if re.match(r"#\s*if", line):
            depth += 1
        elif re.match(r"#\s*endif", line):
            depth -= 1
        elif not depth:
            yield line


@pytest.mark.skipif(QT == "6", reason="the headers of Qt 6 need C++17")
def test_the_sources_need_nothing_that_microsofts_compiler_of_2015_lacks(tmp_path):
    checker = Tidy(BUILD)
    sources = [
        source for source in tracked("src/*.cpp", "examples/showcase/*.cpp") if source in checker.commands
    ]
    assert len(sources) > 100
    alike = {}
    for source in sources:
        alike.setdefault(tuple(checker.options(source)[:-1]), []).append(source)
    found = [
        complaints(tmp_path, members, options)
        for options, compiled_alike in alike.items()
        for members in groups(compiled_alike, 100)
    ]
    assert not any(found), "\n".join(found)


@pytest.mark.parametrize(
    "text", [*MISSING_IN_2015.values(), *EXTENSIONS.values()], ids=[*MISSING_IN_2015, *EXTENSIONS]
)
def test_this_is_found_in_a_source(tmp_path, text):
    source = tmp_path / "source.cpp"
    source.write_text(text)
    assert "source.cpp" in complaints(tmp_path, [source], [])


def test_words_and_headers_of_gcc_are_within_conditionals_and_no_others_name_headers_of_linux():
    found = []
    for source in tracked("src/*.cpp", "src/*.h", "examples/showcase/*.cpp", "examples/showcase/*.h"):
        if FOR_LINUX.search(str(source)):
            continue
        for line in outside_of_conditionals(source.read_text()):
            if WORDS.search(line) or HEADERS.search(line):
                found.append(f"{source.relative_to(ROOT)}: {line}")
    assert found == []


def test_sources_are_ascii_since_microsofts_compiler_reads_them_in_the_code_page_of_the_machine():
    sources = tracked("src/*.cpp", "src/*.h", "examples/showcase/*.cpp", "examples/showcase/*.h")
    assert [str(source) for source in sources if not source.read_bytes().isascii()] == []
