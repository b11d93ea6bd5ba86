"""Plays the test in the page's editor with the application at hand, one statement after the other."""

from __future__ import annotations

import ast
import linecache
import traceback
from contextlib import redirect_stdout
from io import StringIO
from pathlib import Path
from typing import Any, Dict, List, Optional

from ..api.app import App
from ..errors import QtDriverError
from ..expect.baselines import Baselines, use_baselines

Values = Dict[str, Any]

_FILE = "<recorded test>"
_DRIVER = "qtdriver"
_MAX_LENGTH = 6_000
"""Characters of an explanation that are kept."""


class _Driver:
    """Stands for the fixture of a test: it gives the application at hand for the first one that is started."""

    def __init__(self, app: App) -> None:
        self._app = app
        self._is_given = False

    def launch(self, *command: object, **options: object) -> App:
        """The application, which has been started."""
        if self._is_given:
            raise QtDriverError(
                "the page has one application",
                hint="save the test, and run it with pytest: there it can start several",
            )
        self._is_given = True
        return self._app

    attach = launch


class _Play:
    """A test that is played."""

    def __init__(self, app: App, text: str) -> None:
        self.text = text
        self.statements = _statements(text)
        self.names: Dict[str, Any] = {"app": app, _DRIVER: _Driver(app), "__name__": "recorded"}


_PLAY = "play"


def plan(app: App, values: Values) -> Any:
    """Prepares the test {"text"} to be played. Returns {"steps"}: of each statement its first and last line, from 0.

    The steps are those of the first function whose name begins with test_, behind what is in front of it; without one, those of
    the whole text. Returns {"steps": [], "error", "line"} for a text that is no Python.
    """
    try:
        play = _Play(app, str(values["text"]))
    except SyntaxError as error:
        return {"steps": [], "error": f"{type(error).__name__}: {error.msg}", "line": (error.lineno or 1) - 1}
    app.companions[_PLAY] = play
    steps = [[_first_line(one), (one.end_lineno or one.lineno) - 1] for one in play.statements]
    return {"steps": steps, "error": "", "line": 0}


def play(app: App, values: Values) -> Any:
    """Runs the statement {"number"} of the test that was planned last; {"path"} is that of its file.

    Returns {"failed", "text"}: the explanation of what went wrong, empty for nothing.
    """
    current: Optional[_Play] = app.companions.get(_PLAY)
    if current is None:
        raise QtDriverError("there is no test to play")
    statement = current.statements[int(values["number"])]
    baselines = Baselines(Path(str(values["path"])).absolute(), update_option="pytest --qtdriver-update")
    linecache.cache[_FILE] = (len(current.text), None, current.text.splitlines(keepends=True), _FILE)
    tree = ast.Module([statement], [])
    output = StringIO()
    try:
        with redirect_stdout(output), use_baselines(baselines):
            exec(compile(tree, _FILE, "exec"), current.names)  # the purpose of a play
    except BaseException as error:  # whatever it is: it is the test's, not that of the process
        return {"failed": True, "text": _explain(error)[:_MAX_LENGTH]}
    return {"failed": False, "text": output.getvalue()[:_MAX_LENGTH]}


def _statements(text: str) -> List[ast.stmt]:
    """The statements of the test, behind those of the module that are in front of it."""
    tree = ast.parse(text, _FILE)
    compile(text, _FILE, "exec")  # tells of what ast.parse() takes, such as a return outside of a function
    test = next(
        (one for one in tree.body if isinstance(one, ast.FunctionDef) and one.name.startswith("test_")), None
    )
    if test is None:
        return tree.body
    before = [one for one in tree.body if one is not test]
    return [*before, *test.body]


def _first_line(statement: ast.stmt) -> int:
    decorators = getattr(statement, "decorator_list", [])
    return int(min([statement.lineno, *(one.lineno for one in decorators)])) - 1


def _explain(error: BaseException) -> str:
    if isinstance(error, QtDriverError):
        return f"{type(error).__name__}: {error}"
    if isinstance(error, AssertionError) and not str(error):
        return "AssertionError: it is not so"
    return "".join(traceback.format_exception_only(type(error), error)).rstrip("\n")
