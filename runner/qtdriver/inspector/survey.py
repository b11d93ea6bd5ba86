"""The widgets of an application as the page shows them: all windows at one moment, and those of them that it asks about."""

from __future__ import annotations

from typing import Any, Dict, List, Optional

from ..api.app import App
from ..lookup.snapshot import SnapshotNode, describe_briefly
from ..lookup.survey import Survey, SurveyedWindow, take_survey

_SURVEY = "survey"


def look(app: App) -> Survey:
    """All windows as they are now."""
    app.connection.require("+2")
    survey = take_survey(app.connection, app.companions.get(_SURVEY))
    app.companions[_SURVEY] = survey
    return survey


def last_survey(app: App) -> Survey:
    """All windows as they were when they were looked at last."""
    survey: Optional[Survey] = app.companions.get(_SURVEY)
    return survey or look(app)


def survey(app: App, values: Dict[str, Any]) -> Any:
    """All windows, the one in front first, with their widgets.

    Returns {"windows": [{"title", "class", "modal", "call", "root"}]}. A widget is {"ref", "class", "role", "name", "shown",
    "states", "rect": [left, top, width, height], "children"}; where no request can name a window, its root is null.
    """
    surveyed = look(app)
    front = surveyed.in_front()
    windows = sorted(surveyed.windows, key=lambda window: window is not front)
    return {"windows": [_window(window) for window in windows]}


def _window(window: SurveyedWindow) -> Dict[str, Any]:
    return {
        "title": window.record.title,
        "class": window.record.class_name,
        "modal": window.record.modal,
        "call": window.call,
        "root": None if window.root is None else _node(window.root),
    }


def _node(node: SnapshotNode) -> Dict[str, Any]:
    children: List[Any] = [_node(child) for child in node.children]
    return {
        "ref": node.ref,
        "class": node.class_name,
        "role": node.role,
        "name": node.name,
        "shown": describe_briefly(node),
        "states": list(node.states),
        "rect": list(node.details["rect"]),
        "children": children,
    }
