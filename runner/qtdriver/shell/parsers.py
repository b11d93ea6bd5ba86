"""Reads an argparse parser: its commands and their options, as its help has them."""

from __future__ import annotations

import argparse
from typing import Dict, Iterator, List, NamedTuple


class Command(NamedTuple):
    """A command of a parser.

    Attributes:
        name: its name on the command line.
        summary: one line of help.
        parser: the parser of its arguments.
    """

    name: str
    summary: str
    parser: argparse.ArgumentParser


def commands_of(parser: argparse.ArgumentParser) -> List[Command]:
    """The commands, in the order of the help; none for a parser without."""
    return [command for action in parser._actions for command in _commands_of_action(action)]


def _commands_of_action(action: argparse.Action) -> Iterator[Command]:
    if not isinstance(action, argparse._SubParsersAction):
        return
    summaries = {choice.dest: choice.help or "" for choice in action._choices_actions}
    parsers: Dict[str, argparse.ArgumentParser] = dict(action.choices or {})
    for name, parser in parsers.items():
        yield Command(name, summaries.get(name, ""), parser)


def options_of(parser: argparse.ArgumentParser) -> List[argparse.Action]:
    """The arguments that begin with "-"."""
    return [action for action in parser._actions if action.option_strings]


def positions_of(parser: argparse.ArgumentParser) -> List[argparse.Action]:
    """The arguments that are told by their position, without the name of a command."""
    return [
        action
        for action in parser._actions
        if not action.option_strings and not isinstance(action, argparse._SubParsersAction)
    ]
