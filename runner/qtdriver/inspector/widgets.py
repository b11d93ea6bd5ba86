"""One widget as the page shows it: its addresses, its properties; and the widgets that a typed locator finds."""

from __future__ import annotations

import shlex
from typing import Any, Dict, Tuple

from ..api.app import App
from ..api.window import Window
from ..errors import QtDriverError
from ..lookup.snapshot import SnapshotNode
from ..lookup.stable_locators import StableLocators, count_of
from ..lookup.survey import SurveyedWindow
from ..protocol.locators import Locator, as_address
from ..trace.readable import describe_value
from .survey import last_survey, look
from .typed_locators import read_locator

Values = Dict[str, Any]

_MAX_MARKS = 50


def address(app: App, values: Values) -> Any:
    """The best address of the widget {"ref"}: {"python", "command"}, the latter for a shell; null for none."""
    locators, node, window = _locators(app, values)
    found = locators.of(node)
    return None if found is None else _told(window, found)


def addresses(app: App, values: Values) -> Any:
    """All addresses that find the widget {"ref"} alone, the most stable first, as a list."""
    locators, node, window = _locators(app, values)
    return [_told(window, found) for found in locators.all_of(node)]


def properties(app: App, values: Values) -> Any:
    """The properties of the widget {"ref"}: a list of names with their values as texts."""
    _, window = _find(app, values["ref"])
    widget = Window(app, window.address, window.call).find(ref=values["ref"], visible=None)
    read = widget.properties(timeout=0)
    return [
        [name, describe_value(value)] for name, value in sorted(read.items(), key=lambda row: row[0].lower())
    ]


def matches(app: App, values: Values) -> Any:
    """The widgets that the locator {"text"} finds, in the window of the widget {"ref"}: {"count", "found", "python"}.

    `found` has of the first ones {"ref", "rect"}.
    """
    _, surveyed = _find(app, values["ref"])
    typed = str(values["text"])
    window, found = read_locator(app, Window(app, surveyed.address, surveyed.call), typed)
    count = count_of(app.connection, window.address, found)
    if count == 1:
        nodes = [app.connection.snapshot(window.address, found)]
    else:
        each = (found.at(f"nth={number}", f"nth({number})") for number in range(min(count, _MAX_MARKS)))
        nodes = [app.connection.snapshot(window.address, one) for one in each]
    told = [{"ref": node["ref"], "rect": node["rect"]} for node in nodes]
    return {"count": count, "found": told, "python": f"app.{window}.{found.call}" if found.call else ""}


def _locators(app: App, values: Values) -> Tuple[StableLocators, SnapshotNode, SurveyedWindow]:
    node, window = _find(app, values["ref"])
    assert window.root is not None
    return StableLocators(app.connection, window.address, window.root), node, window


def _find(app: App, ref: int) -> Tuple[SnapshotNode, SurveyedWindow]:
    for survey in (last_survey, look):
        found = survey(app).found.get(ref)
        if found is not None:
            return found
    raise QtDriverError("this widget is not there any more")


def _told(window: SurveyedWindow, found: Locator) -> Dict[str, str]:
    return {
        "python": f"app.{window.call}.{found.call}",
        "command": shlex.join(["qtdriver", "get", window.address, as_address(found)]),
    }
