"""Completes a command line for a shell."""

from __future__ import annotations

import argparse
import re
import shlex
from pathlib import Path
from typing import Callable, List, NamedTuple, Optional, Sequence, Tuple

from .parsers import commands_of, options_of, positions_of

Ask = Callable[[Optional[str], Sequence[str]], Sequence[str]]
"""Returns the words that may follow those of a command, as the held application of this name offers them. None is the
application of the default name."""

_APPLICATION = "-- APP"
_BEFORE_A_BREAK = re.compile(r".*[:=]")
_SPECIAL = re.compile(r"[^\w@%+=:,./-]")
_FILES = ("FILE", "FOLDER", "DIR")


class Completion(NamedTuple):
    """The words that may stand at the place of the last one.

    Attributes:
        kind: "words" for those of `words`, "files" for any file, "programs" for any program.
        words: they begin with what is typed, or are all that there are.
    """

    kind: str
    words: Sequence[str] = ()

    def to_lines(self) -> str:
        """The text for the shell: a line with the kind, and a line for each word."""
        return "\n".join([self.kind, *(word for word in self.words if "\n" not in word)])


def divide_line(text: str) -> Tuple[List[str], str]:
    """The words before the last one, and the last one as it is typed, which may be empty or have an open quote."""
    begin = 0
    quote = ""
    escaped = False
    for position, character in enumerate(text):
        if escaped:
            escaped = False
        elif character == "\\" and quote != "'":
            escaped = True
        elif quote:
            quote = "" if character == quote else quote
        elif character in "'\"":
            quote = character
        elif character == " ":
            begin = position + 1
    try:
        return shlex.split(text[:begin]), text[begin:]
    except ValueError:
        return [], text


def unquoted(word: str) -> str:
    """A word as the shell would hand it over; one whose quote is still open, without that quote."""
    for end in ("", "'", '"'):
        try:
            return "".join(shlex.split(word + end))
        except ValueError:
            continue
    return word


def complete_in_bash(line: str, parser: argparse.ArgumentParser, ask: Ask) -> Completion:
    """Completes a line for bash, up to the cursor and with the program's name. Arguments as for complete().

    Readline replaces what is behind the last colon or equals sign, and quotes nothing itself unless a quote is open.
    """
    before, partial = divide_line(line)
    found = complete([*before[1:], unquoted(partial)], parser, ask)
    if partial[:1] in ("'", '"') and partial:
        return found
    kept = _BEFORE_A_BREAK.match(partial)
    start = "" if kept is None else kept[0]
    words = [_SPECIAL.sub(r"\\\g<0>", word) for word in found.words]
    return Completion(found.kind, [word[len(start) :] if word.startswith(start) else word for word in words])


def complete(words: Sequence[str], parser: argparse.ArgumentParser, ask: Ask) -> Completion:
    """Completes the last word of a command line.

    Args:
        words: those behind the program's name; the last one is as far as it is typed, and may be empty.
        parser: that of the whole command line.
        ask: asked for windows, widgets, properties and menus.
    """
    *before, partial = words
    command = next((command for command in commands_of(parser) if command.name in before[:1]), None)
    if command is None:
        names = [command.name for command in commands_of(parser)]
        return _fitting([*names, *_names_of_options(parser)] if partial.startswith("-") else names, partial)
    given = before[1:]
    if "--" in given:
        first = given[-1] == "--"
        return Completion("programs" if first and "/" not in partial else "files")
    option = _option_before(command.parser, given)
    if option is not None:
        return _of_values(option, partial)
    if partial.startswith("-"):
        return _fitting(_names_of_options(command.parser), partial)
    typed = _positional(command.parser, given)
    places = positions_of(command.parser)
    if not places:
        return Completion("words")
    place = places[min(len(typed), len(places) - 1)]
    if place.metavar == _APPLICATION:
        return Completion("words", ["--"])
    if place.choices is not None or place.metavar in _FILES:
        return _of_values(place, partial)
    return _fitting(ask(_name_of_application(given), [command.name, *typed]), partial)


def _names_of_options(parser: argparse.ArgumentParser) -> List[str]:
    return [name for action in options_of(parser) for name in action.option_strings if name.startswith("--")]


def _option_before(parser: argparse.ArgumentParser, given: Sequence[str]) -> Optional[argparse.Action]:
    """The option whose value the last word is; None when it is none."""
    for action in options_of(parser):
        if given and given[-1] in action.option_strings and action.nargs != 0:
            return action
    return None


def _positional(parser: argparse.ArgumentParser, given: Sequence[str]) -> List[str]:
    """The words without the options and their values."""
    return [
        word
        for position, word in enumerate(given)
        if not word.startswith("-") and _option_before(parser, given[:position]) is None
    ]


def _of_values(action: argparse.Action, partial: str) -> Completion:
    if action.choices is not None:
        return _fitting([str(choice) for choice in action.choices], partial)
    if action.metavar in _FILES or action.type is Path:
        return Completion("files")
    return Completion("words")


def _name_of_application(given: Sequence[str]) -> Optional[str]:
    positions = [position for position, word in enumerate(given[:-1]) if word == "--name"]
    return given[positions[-1] + 1] if positions else None


def _fitting(words: Sequence[str], partial: str) -> Completion:
    """The words that begin like `partial`, whatever the case of their letters."""
    return Completion("words", [word for word in words if word.casefold().startswith(partial.casefold())])
