"""The manual page, in the language of man(7)."""

from __future__ import annotations

import argparse
import re
from typing import Iterator

from .parsers import Command, commands_of, options_of, positions_of

_INDENTED = re.compile(r"^\s")


def manual_page(parser: argparse.ArgumentParser, version: str) -> str:
    """The page of section 1 about the command that `parser` reads."""
    commands = commands_of(parser)
    lines = [
        f'.TH {_quoted(parser.prog.upper())} 1 "" {_quoted(f"{parser.prog} {version}")} "User Commands"',
        ".SH NAME",
        rf"{parser.prog} \- drive Qt widgets applications with real mouse and keyboard input",
        ".SH SYNOPSIS",
        *(line for command in commands for line in _synopsis(command)),
        ".SH DESCRIPTION",
        *_paragraphs(parser.description or ""),
        ".SH OPTIONS",
        *_arguments(parser),
        ".SH COMMANDS",
        *(line for command in commands for line in _command(command)),
        ".SH SEE ALSO",
        ".BR pytest (1)",
    ]
    return "\n".join(lines) + "\n"


def _synopsis(command: Command) -> Iterator[str]:
    usage = " ".join(command.parser.format_usage().partition(":")[2].split())
    yield ".HP"
    yield _escaped(usage)


def _command(command: Command) -> Iterator[str]:
    yield f".SS {_quoted(command.name)}"
    yield from _paragraphs(command.parser.description or "")
    yield from _arguments(command.parser)
    yield from _paragraphs(command.parser.epilog or "")


def _arguments(parser: argparse.ArgumentParser) -> Iterator[str]:
    formatter = argparse.HelpFormatter(parser.prog)
    for action in [*positions_of(parser), *options_of(parser)]:
        if action.help is argparse.SUPPRESS:
            continue
        yield ".TP"
        yield rf"\fB{_escaped(formatter._format_action_invocation(action))}\fR"
        yield _escaped(formatter._expand_help(action) if action.help else "")


def _paragraphs(text: str) -> Iterator[str]:
    """Paragraphs are filled, but lines that are indented stay as they are."""
    for paragraph in text.split("\n\n"):
        as_it_is = False
        yield ".PP"
        for line in paragraph.splitlines():
            if bool(_INDENTED.match(line)) != as_it_is:
                as_it_is = not as_it_is
                yield ".nf" if as_it_is else ".fi"
            if line:
                yield _escaped(line)
        if as_it_is:
            yield ".fi"


def _quoted(text: str) -> str:
    return '"' + _escaped(text).replace('"', r"\(dq") + '"'


def _escaped(text: str) -> str:
    """The text as it is: no backslash of it is one of the language, a hyphen stays one, no line begins a request."""
    text = text.replace("\\", r"\e").replace("-", r"\-")
    return rf"\&{text}" if text.startswith((".", "'")) else text
