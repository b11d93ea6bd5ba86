"""Locators as a person types them: as the command line has them, or as calls in Python."""

from __future__ import annotations

import ast
import re
from typing import Any, Tuple

from ..api.app import App
from ..api.widget import Widget
from ..api.window import Window
from ..protocol.locators import Locator, address, as_locator, containing

_OF_APP = ("window", "modal", "popup")
_OF_WINDOW = ("widget", "find", "find_by", "button", "checkbox", "field")
_OF_WIDGET = ("find", "find_by", "nth", "first", "last")
_CALL = re.compile(r"(app\s*\.|window\s*\.|[a-z_]+\s*\()")
"""Matches the beginning of a call, which no locator has."""


def read_locator(app: App, window: Window, text: str) -> Tuple[Window, Locator]:
    """The locator in a text, and the window that it is for.

    Args:
        app: the application.
        window: the window where the text names none.
        text: such as brewButton, label="Name:", find("QLineEdit", label="Name:") or app.window("Roastery").button("OK").

    Raises ValueError for calls that are not complete, or do more than to name a widget.
    """
    text = text.strip()
    if not text:
        raise ValueError("nothing is looked for")
    if not _CALL.match(text):
        return window, as_locator(address(text))
    try:
        tree = ast.parse(text, mode="eval")
    except SyntaxError as error:
        raise ValueError("the call is not complete") from error
    found = _evaluate(tree.body, app, window)
    if not isinstance(found, Widget):
        raise ValueError("name a widget: find(...), widget(...), button(...), checkbox(...), field(...)")
    return found.window, found.as_locator()


def _evaluate(node: ast.expr, app: App, window: Window) -> Any:
    """The application, window or widget that an expression names; nothing is asked for it, and nothing done."""
    if isinstance(node, ast.Name) and node.id in ("app", "window"):
        return app if node.id == "app" else window
    if isinstance(node, ast.Call) and isinstance(node.func, ast.Name):
        return _call(app if node.func.id in _OF_APP else window, node.func.id, node)
    if isinstance(node, ast.Call) and isinstance(node.func, ast.Attribute):
        return _call(_evaluate(node.func.value, app, window), node.func.attr, node)
    raise ValueError(f"{ast.unparse(node)} names no widget")


def _call(target: Any, name: str, node: ast.Call) -> Any:
    allowed = _OF_APP if isinstance(target, App) else _OF_WINDOW if isinstance(target, Window) else _OF_WIDGET
    if name not in allowed:
        raise ValueError(f"{name}() names no widget: {', '.join(f'{one}()' for one in allowed)} do")
    if not hasattr(target, name):
        raise ValueError(f"{name}() goes with find() only")
    values = {keyword.arg: _value(keyword.value) for keyword in node.keywords if keyword.arg}
    return getattr(target, name)(*map(_value, node.args), **values)


def _value(node: ast.expr) -> Any:
    """The value of an argument: a literal, containing("a part") or re.compile("an expression")."""
    if isinstance(node, ast.Call):
        function, arguments = ast.unparse(node.func), [ast.literal_eval(one) for one in node.args]
        if len(arguments) == 1 and not node.keywords:
            if function == "containing":
                return containing(*arguments)
            if function == "re.compile":
                return re.compile(*arguments)
        raise ValueError(f"{ast.unparse(node)} is no text, containing(...) or re.compile(...)")
    return ast.literal_eval(node)
