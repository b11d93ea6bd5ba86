"""Commands that only look: windows, tree, get, screenshot."""

from __future__ import annotations

import argparse
import os
from typing import Any, Dict, List, Optional

from ..api.app import App
from ..api.window import Window
from ..lookup.paths import checked_unique_path
from ..lookup.snapshot import SnapshotNode, describe_briefly
from ..lookup.stable_locators import StableLocators
from ..lookup.tree import UNKNOWN, Node, WidgetTree
from ..protocol.locators import Locator, as_address
from ..trace.readable import describe_value
from .outcome import Outcome, json_value
from .verbs import Arguments, Verb, add_timeout, add_widget, add_window, widget_of, window_of

_UNIQUE = "*"


def _no_arguments(parser: argparse.ArgumentParser) -> None:
    """Declares no arguments, for a command that has none."""


def _windows(app: App, arguments: Arguments) -> Outcome:
    windows = app.windows()
    lines = [f'{record.class_name}{" (M)" if record.modal else ""} : "{record.title}"' for record in windows]
    data = [{"class": record.class_name, "modal": record.modal, "title": record.title} for record in windows]
    return Outcome("\n".join(lines) or "(no visible window)", data)


def _add_tree(parser: argparse.ArgumentParser) -> None:
    add_window(parser)
    parser.add_argument(
        "--paths", action="store_true", help="tell for each visible widget what finds only that one"
    )
    parser.add_argument("--visible", action="store_true", help="leave out what the user cannot see")
    add_timeout(parser)


def _tree(app: App, arguments: Arguments) -> Outcome:
    window = window_of(app, arguments)
    if arguments["paths"] and "+2" in app.connection.extensions:
        return _addresses(window, arguments)
    tree = window.tree(timeout=arguments["timeout"])
    nodes = [node for node in tree.nodes if node.record.visible or not arguments["visible"]]
    rows = [_row(app, window.address, tree, node, arguments["paths"]) for node in nodes]
    legend = f"{_UNIQUE} marks a name that finds only this widget"
    return Outcome("\n".join([*map(_line, rows), legend]), rows)


def _addresses(window: Window, arguments: Arguments) -> Outcome:
    """The visible widgets with their addresses, for a shell and for Python."""
    root = window.snapshot(timeout=arguments["timeout"]).root
    locators = StableLocators(window.app.connection, window.address, root)
    rows = [_address_row(node, depth, locators.of(node)) for node, depth in root.walk_with_depth()]
    return Outcome("\n".join(map(_address_line, rows)), rows)


def _address_row(node: SnapshotNode, depth: int, found: Optional[Locator]) -> Dict[str, Any]:
    return {
        "depth": depth,
        "class": node.class_name,
        "role": node.role,
        "name": node.name,
        "shown": describe_briefly(node),
        "visible": True,
        "path": None if found is None else as_address(found),
        "python": None if found is None else found.call,
    }


def _address_line(row: Dict[str, Any]) -> str:
    line = f'{"  " * row["depth"]}{row["shown"]} ({row["class"]})'
    return f'{line}  {row["path"]}  {row["python"]}' if row["path"] else f"{line}  (gone)"


def _row(app: App, window: str, tree: WidgetTree, node: Node, with_path: bool) -> Dict[str, Any]:
    path = tree.unique_path(node)
    if with_path and path is not None:
        path = checked_unique_path(app.connection, window, tree, node)
    row: Dict[str, Any] = {
        "depth": node.record.depth,
        "class": node.record.class_name,
        "name": None if node.name == UNKNOWN else node.name,
        "object_name": node.record.object_name,
        "visible": node.record.visible,
        "unique": path == node.name,
    }
    if with_path:
        row["path"] = path
    return row


def _line(row: Dict[str, Any]) -> str:
    name = "(named after its text)" if row["name"] is None else row["name"]
    hidden = "" if row["visible"] else ", hidden"
    line = f'{"  " * row["depth"]}{name} ({row["class"]}{hidden})'
    if row["unique"]:
        line += f" {_UNIQUE}"
    return line + (f'  {row["path"]}' if row.get("path") not in (None, row["name"]) else "")


def _add_get(parser: argparse.ArgumentParser) -> None:
    add_widget(parser)
    parser.add_argument(
        "properties",
        metavar="PROPERTY",
        nargs="*",
        default=[],
        help="names; NAME=ARGUMENT for one that takes an argument; all without",
    )
    add_timeout(parser)


def _get(app: App, arguments: Arguments) -> Outcome:
    widget = widget_of(app, arguments)
    timeout = arguments["timeout"]
    names: List[str] = arguments["properties"]
    if names:
        values = {name: widget.read(*name.split("=", 1), timeout=timeout) for name in names}
    else:
        values = widget.properties(timeout=timeout)
    if len(names) == 1:
        return Outcome(describe_value(values[names[0]]), json_value(values[names[0]]))
    lines = [f"{name}: {_indented(describe_value(value))}" for name, value in values.items()]
    return Outcome("\n".join(lines), {name: json_value(value) for name, value in values.items()})


def _indented(text: str) -> str:
    return text if "\n" not in text else "\n" + "\n".join(f"  {line}" for line in text.splitlines())


def _absolute(path: str) -> str:
    """Makes a path absolute: the process that holds the application has another current folder than the user."""
    return os.path.abspath(path)


def _add_screenshot(parser: argparse.ArgumentParser) -> None:
    parser.add_argument(
        "file",
        metavar="FILE",
        type=_absolute,
        help="where to save it; its ending tells the format, such as .png",
    )


def _screenshot(app: App, arguments: Arguments) -> Outcome:
    file = str(app.screenshot(arguments["file"]))
    return Outcome(file, {"file": file})


VERBS = (
    Verb("windows", "lists the visible windows", "windows", _no_arguments, _windows),
    Verb("tree", "lists the widgets of a window with their names", "tree Roastery --paths", _add_tree, _tree),
    Verb("get", "reads properties of a widget", "get Roastery brewButton text enabled", _add_get, _get),
    Verb(
        "screenshot",
        "saves a picture of the application's screen",
        "screenshot shot.png",
        _add_screenshot,
        _screenshot,
    ),
)
