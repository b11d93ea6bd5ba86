"""Python with the application at hand, for the console of the page."""

from __future__ import annotations

import ast
import io
import linecache
import re
import traceback
from contextlib import redirect_stdout
from typing import Any, Dict, Mapping

from ..api.app import App
from ..errors import QtDriverError
from ..expect.conditions import eventually
from ..protocol.locators import containing

_FILE = "<console>"
_MAX_LENGTH = 20_000
"""Characters of an answer that are kept."""

_NAMES = "names of the console"


def run_python(app: App, values: Dict[str, Any]) -> Any:
    """Runs {"text"}: lines of Python in which `app` is the application, and earlier names are known.

    Returns {"output", "failed"}: what was printed, then the value of the last line as the interactive Python shows it, or the error.
    """
    text = str(values["text"])
    output, failed = io.StringIO(), False
    with redirect_stdout(output):
        try:
            value = _run(text, _names(app))
            if value is not None:
                print(repr(value) if not isinstance(value, QtDriverError) else value)
        except BaseException as error:  # whatever it is: it is the user's, not that of the process
            failed = True
            print(_describe(error, text))
    told = output.getvalue().rstrip("\n")
    return {"output": told if len(told) <= _MAX_LENGTH else f"{told[:_MAX_LENGTH]}\n...", "failed": failed}


def offer_names(app: App, names: Mapping[str, Any]) -> None:
    """Has the console of an application know these names, too."""
    _names(app).update(names)


def _names(app: App) -> Dict[str, Any]:
    first = {"app": app, "eventually": eventually, "containing": containing, "re": re}
    names: Dict[str, Any] = app.companions.setdefault(_NAMES, first)
    return names


def _run(text: str, names: Dict[str, Any]) -> Any:
    """Runs the lines. Returns the value of the last one if it is an expression, which the name _ gets, too."""
    tree = ast.parse(text, _FILE)
    last = tree.body.pop() if tree.body and isinstance(tree.body[-1], ast.Expr) else None
    exec(compile(tree, _FILE, "exec"), names)  # the purpose of a console
    if not isinstance(last, ast.Expr):
        return None
    value = eval(compile(ast.Expression(last.value), _FILE, "eval"), names)
    if value is not None:
        names["_"] = value
    return value


def _describe(error: BaseException, text: str) -> str:
    """The error as Python tells it, with the lines that were typed and nothing of the runner's own."""
    linecache.cache[_FILE] = (len(text), None, text.splitlines(keepends=True), _FILE)
    frames = [frame for frame in traceback.extract_tb(error.__traceback__) if frame.filename == _FILE]
    lines = [] if isinstance(error, SyntaxError) else traceback.format_list(frames)
    if isinstance(error, QtDriverError):  # by its own name, not that of its module
        return "".join([*lines, f"{type(error).__name__}: {error}"])
    return "".join([*lines, *traceback.format_exception_only(type(error), error)]).rstrip("\n")
