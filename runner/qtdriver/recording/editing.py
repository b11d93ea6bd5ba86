"""The text of a test that grows while a user records, and that the user edits meanwhile."""

from __future__ import annotations

import re
from typing import List, NamedTuple, Sequence, Tuple

from .code import Needs

_INDENT = "    "
_CONSTANT = "SECRET_"
_BEGINNING = "def test_recorded(qtdriver):"
_FROM_RUNNER = re.compile(r"from qtdriver import ([\w, ]+)")
_CODE = re.compile(r"(def|async|class|@)\b|@")


class Edited(NamedTuple):
    """A text, and the number of the line below which the next step goes, from 0."""

    text: str
    line: int


def with_steps(text: str, line: int, before: Sequence[str], after: Sequence[str]) -> Edited:
    """The text with steps that were recorded since the last time; what the user has edited stays.

    Args:
        text: that of the editor. Without any line, it becomes a test.
        line: the number of the line with the cursor, from 0.
        before: the lines that were recorded until the last time, without indentation.
        after: those that were recorded until now. Steps that were written last can have become others, such as two clicks a
            double click: they are replaced where the user has left them as they were.
    """
    if text.strip() and list(before) == list(after):
        return Edited(text, line)  # also the spaces that the user is just typing stay
    lines = text.split("\n") if text.strip() else [_BEGINNING]
    while lines and not lines[-1].strip():
        lines.pop()
    kept = next(
        (n for n, (old, new) in enumerate(zip(before, after)) if old != new), min(len(before), len(after))
    )
    at = _find(lines, before[kept:])
    if before[kept:] and at is not None:
        place, removed, added = at, len(before) - kept, after[kept:]
    else:
        place, removed, added = _place(lines, line, before[:kept]), 0, after[len(before) :]
    indent = _indent_at(lines, place)
    lines[place : place + removed] = [f"{indent}{one}" for one in added]
    return Edited("\n".join([*lines, ""]), max(place + len(added) - 1, 0))


def with_needs(edited: Edited, needs: Needs) -> Edited:
    """The text with the imports and constants that it needs, and does not have yet."""
    lines = edited.text.split("\n")
    end = next((n for n, one in enumerate(lines) if _CODE.match(one)), len(lines))
    head, rest = lines[:end], lines[end:]
    missing = [f"import {name}" for name in needs.modules if f"import {name}" not in head]
    names, constants = _missing_names(head, needs), [one for one in needs.constants if one not in head]
    if not missing and not names and not constants:
        return edited
    head = _with_imports(head, missing, names)
    if constants:
        head = _stripped(head)
        follows = bool(head) and head[-1].startswith(_CONSTANT)
        head = [*head, *([] if follows else [""]), *constants]
    text = "\n".join([*_stripped(head), "", "", *rest])
    return Edited(text, edited.line + len(text.split("\n")) - len(lines))


def _find(lines: Sequence[str], block: Sequence[str]) -> "int | None":
    """The number of the line where the block is for the last time; None where it is not."""
    stripped = [one.strip() for one in lines]
    numbers = range(len(lines) - len(block), -1, -1)
    return next((n for n in numbers if block and stripped[n : n + len(block)] == list(block)), None)


def _place(lines: Sequence[str], line: int, before: Sequence[str]) -> int:
    """The number of the line that the next step becomes: below the last one that is still there, and below the cursor where the
    user goes on after that."""
    places = (_find(lines, [recorded]) for recorded in reversed(before))
    last = next((at for at in places if at is not None), None)
    is_within = line < len(lines) and lines[line].startswith((" ", "\t"))
    cursor = line + 1 if is_within else None
    if last is None:
        return len(lines) if cursor is None else cursor
    return max(last + 1, cursor or 0)


def _indent_at(lines: Sequence[str], place: int) -> str:
    """The indentation of the line above: where that begins a block, one level more."""
    above = lines[place - 1] if 0 < place <= len(lines) else ""
    indent = above[: len(above) - len(above.lstrip())]
    return indent + _INDENT if above.rstrip().endswith(":") else indent or _INDENT


def _missing_names(head: Sequence[str], needs: Needs) -> List[str]:
    """All names that are imported from the runner, if one is missing; else none."""
    imported = [
        name.strip() for one in head if (match := _FROM_RUNNER.fullmatch(one)) for name in match[1].split(",")
    ]
    wanted = sorted({*imported, *needs.names})
    return [] if set(needs.names) <= set(imported) else wanted


def _with_imports(head: List[str], modules: Sequence[str], names: Sequence[str]) -> List[str]:
    """The lines in front of the code, with more imports: after the docstring, those of Python first."""
    at = _after_docstring(head)
    top, others = _stripped(head[:at]), head[at:]
    plain = sorted({*(one for one in others if one.startswith("import ")), *modules})
    runner = [f"from qtdriver import {', '.join(names)}"] if names else []
    others = [one for one in others if not one.startswith("import ")]
    others = [one for one in others if not (names and _FROM_RUNNER.fullmatch(one))]
    blocks: Tuple[Sequence[str], ...] = (top, plain, runner, _stripped(others))
    return "\n\n".join("\n".join(block) for block in blocks if block).split("\n")


def _after_docstring(head: Sequence[str]) -> int:
    """The number of the first line that is no comment and no part of a docstring."""
    quotes = '"""'
    for number, one in enumerate(head):
        if one.startswith(quotes):
            rest = [*([one[len(quotes) :]]), *head[number + 1 :]]
            return number + 1 + next((n for n, text in enumerate(rest) if quotes in text), 0)
        if one.strip() and not one.startswith("#"):
            return number
    return len(head)


def _stripped(lines: Sequence[str]) -> List[str]:
    """The lines without empty ones at the beginning and the end."""
    return "\n".join(lines).strip("\n").split("\n") if any(one.strip() for one in lines) else []
