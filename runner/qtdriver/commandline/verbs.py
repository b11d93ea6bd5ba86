"""The commands that talk to one application: from a shell, in the console, within the process that holds it."""

from __future__ import annotations

import argparse
from dataclasses import dataclass
from typing import Any, Callable, Dict, Tuple

from ..api.app import App
from ..api.widget import Widget
from ..api.window import Window
from ..errors import QtDriverError
from ..protocol.locators import address
from .outcome import Outcome

Arguments = Dict[str, Any]
"""The values of a command line by their names: what JSON can hold."""

FAILURES = (QtDriverError, OSError, KeyError, TypeError, ValueError)
"""The exceptions of running a command: OSError comes from files, the last three from arguments that do not fit."""


@dataclass(frozen=True)
class Verb:
    """A command.

    Attributes:
        name: its name on the command line.
        summary: one line of help.
        example: an example of its use, without "qtdriver" in front.
        add_arguments: declares its arguments to a parser.
        run: runs it.
    """

    name: str
    summary: str
    example: str
    add_arguments: Callable[[argparse.ArgumentParser], None]
    run: Callable[[App, Arguments], Outcome]

    def failure(self, error: Exception) -> Outcome:
        """The outcome when `run` has raised one of FAILURES."""
        if not isinstance(error, QtDriverError):
            error = QtDriverError(f"{self.name}: {error}")
        return Outcome.of_error(error)


def add_window(parser: argparse.ArgumentParser) -> None:
    """Declares the argument WINDOW."""
    parser.add_argument(
        "window",
        metavar="WINDOW",
        help="the beginning of a window title, or Widget:NAME by the object name, or Widget:ActivePopupWidget, "
        "Widget:ActiveModalWidget",
    )


def add_widget(parser: argparse.ArgumentParser) -> None:
    """Declares the arguments WINDOW and PATH, and the option --class."""
    add_window(parser)
    parser.add_argument(
        "path",
        metavar="PATH",
        help='names from the outside in, joined by "/": dialog/ok, dialog//ok; or a locator, such as \'label="Name:"\'',
    )
    parser.add_argument(
        "--class", dest="as_class", default="", metavar="CLASS", help="serve it as this base class"
    )


def add_timeout(parser: argparse.ArgumentParser) -> None:
    """Declares the option --timeout."""
    parser.add_argument(
        "--timeout",
        type=seconds,
        metavar="SECONDS",
        help="how long to wait for window and widget (default: 5)",
    )


def seconds(text: str) -> float:
    """A time in seconds from the command line."""
    value = float(text)
    if not 0 <= value < 1e6:
        raise ValueError(text)
    return value


seconds.__name__ = "number of seconds"


def window_of(app: App, arguments: Arguments) -> Window:
    """The window that the arguments name."""
    address = arguments["window"]
    return Window(app, address, f'window("{address}")')


def widget_of(app: App, arguments: Arguments) -> Widget:
    """The widget that the arguments name."""
    return Widget(window_of(app, arguments), address(arguments["path"]), as_class=arguments["as_class"])


def all_verbs() -> Tuple[Verb, ...]:
    """The table of the commands, in the order of the help."""
    from . import acting, looking, picking

    return (*looking.VERBS, picking.PICK, *acting.VERBS)


def verb_named(name: str) -> "Verb | None":
    """The command of this name; None where there is none."""
    return next((verb for verb in all_verbs() if verb.name == name), None)
