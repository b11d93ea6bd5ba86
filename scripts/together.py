#!/usr/bin/env python3
"""Says which C++ sources can be compiled as one: together.py SOURCE...

A compiler and clang-tidy spend most of their time on Qt's headers, which each source includes. Sources that declare nothing
by the same name can share them. Prints a line for each group, its sources separated by ";".
"""

import re
import sys
from pathlib import Path

MAXIMUM_TOGETHER = 12

# A name that begins at the start of a line is declared for the whole file: namespaces are not indented. Behind "::" it is
# that of a class's own member, which only one source defines.
FILE_SCOPE = re.compile(
    r"^(?![#/ }]|namespace\b|(?:public|protected|private)\b)"
    r"[^\n;(={]*?(?<!::)\b(\w+) ?(?:\[[^\]\n]*\] ?)*(?:[;(={]|:(?!:)|$)",
    re.MULTILINE,
)


def names(text):
    """All names that a source may declare at the scope of its file; some more do no harm. Macros are in capitals."""
    return {name for name in FILE_SCOPE.findall(text) if not name.isupper()}


def groups(sources, maximum=MAXIMUM_TOGETHER):
    """Lists of sources that can be compiled as one: those of a list declare nothing by the same name."""
    found = []
    for source in sources:
        declared = names(source.read_text())
        for members, taken in found:
            if len(members) < maximum and not declared & taken:
                members.append(source)
                taken |= declared
                break
        else:
            found.append(([source], declared))
    return [members for members, _ in found]


if __name__ == "__main__":
    for group in groups([Path(name) for name in sys.argv[1:]]):
        print(";".join(map(str, group)))
