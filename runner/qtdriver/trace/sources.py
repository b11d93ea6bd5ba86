"""The lines of a test around a step."""

from __future__ import annotations

import ast
import linecache
from functools import lru_cache
from typing import Dict, List, Tuple

LINES_AROUND = 7
"""How many lines of a test are kept before that of a step, and as many behind it."""

_FUNCTIONS = (ast.FunctionDef, ast.AsyncFunctionDef)


def lines_around(file: str, line: int) -> Dict[int, str]:
    """The lines around one of a file, by their numbers: none of another function, where another test may have passwords."""
    lines = linecache.getlines(file)
    functions = _functions(file, len(lines))
    own = [span for span in functions if span[0] <= line <= span[1]]
    first, last = max(own, default=(1, len(lines)), key=lambda span: span[1] - span[0])
    near = range(max(line - LINES_AROUND, first), min(line + LINES_AROUND, last) + 1)
    others = [] if own else functions
    return {
        number: lines[number - 1].rstrip("\n")
        for number in near
        if not any(begin <= number <= end for begin, end in others)
    }


@lru_cache(maxsize=200)
def _functions(file: str, count: int) -> List[Tuple[int, int]]:
    """The first and the last line of each function; of none where the file is no Python. `count` are its lines."""
    try:
        tree = ast.parse("".join(linecache.getlines(file)))
    except (SyntaxError, ValueError, RecursionError):
        return []
    return [
        (min([node.lineno, *(one.lineno for one in node.decorator_list)]), node.end_lineno or node.lineno)
        for node in ast.walk(tree)
        if isinstance(node, _FUNCTIONS)
    ]
