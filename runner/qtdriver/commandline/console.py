"""The console of `qtdriver run` on a terminal: history and completion."""

from __future__ import annotations

import importlib
import os
import shlex
import time
from pathlib import Path
from typing import Any, Callable, Dict, Iterable, Iterator, List, Tuple

from ..api.app import App
from ..errors import QtDriverError
from ..lookup.paths import list_tree
from ..lookup.tree import UNNAMED
from ..lookup.windows import OBJECT_NAME, certain_beginning, walk_windows
from ..shell.completion import divide_line
from .verbs import all_verbs

PROMPT = "qtdriver> "
_MAX_ANSWER_AGE = 1.0


def prompted_lines(app: App) -> Iterator[str]:
    """The lines that the user types, until the end of the input. Plain input where prompt_toolkit is missing."""
    try:
        yield from _console_lines(app)
    except ImportError:
        yield from _plain_lines(app)


def _plain_lines(app: App) -> Iterator[str]:
    history: Any = importlib.import_module("readline")  # gives input() line editing and a history
    while True:
        try:
            line = input(PROMPT)
        except EOFError:
            print()
            return
        last = history.get_current_history_length()
        yield line
        if line and history.get_history_item(last) == line:
            history.replace_history_item(last - 1, _kept(app, line))


def _console_lines(app: App) -> Iterator[str]:
    session, keep = _console_session(LineCompleter(app))
    while True:
        try:
            line = session.prompt()
        except EOFError:
            return
        try:
            yield line
        finally:
            keep(_kept(app, line))


def _console_session(completer: LineCompleter) -> Tuple[Any, Callable[[str], None]]:
    """A session of prompt_toolkit, and the function that adds a line to its history."""
    from prompt_toolkit import PromptSession
    from prompt_toolkit.completion import CompleteEvent, Completer, Completion
    from prompt_toolkit.document import Document
    from prompt_toolkit.history import FileHistory

    class WordCompleter(Completer):
        """Offers what fits the text before the cursor."""

        def get_completions(self, document: Document, complete_event: CompleteEvent) -> Iterable[Completion]:
            """The completions, each replacing the word before the cursor."""
            for word, length in completer.completions(document.text_before_cursor):
                yield Completion(word, start_position=-length)

    class LaterHistory(FileHistory):
        """Keeps a line once it has been run: only then it is known whether a password is in it."""

        def append_string(self, string: str) -> None:
            """Leaves that to keep()."""

        def keep(self, line: str) -> None:
            """Adds a line."""
            if line and self.get_strings()[-1:] != [line]:
                super().append_string(line)

    history = LaterHistory(str(_history_file()))
    session: "PromptSession[str]" = PromptSession(
        PROMPT,
        history=history,
        completer=WordCompleter(),
        complete_while_typing=False,
    )
    return session, history.keep


def _kept(app: App, line: str) -> str:
    """A line for the history: without the passwords that it, or an earlier one, has typed."""
    return app.connection.secrets.hide_in_line(line)


def _history_file() -> Path:
    folder = Path(os.environ.get("XDG_STATE_HOME") or Path.home() / ".local" / "state") / "qtdriver"
    try:
        folder.mkdir(parents=True, exist_ok=True)
    except OSError:
        return Path(os.devnull)
    return folder / "history"


class LineCompleter:
    """Completes commands, then windows, then the widgets of that window, then the properties of that widget.

    The application is asked at most once a second.
    """

    def __init__(self, app: App) -> None:
        self._app = app
        self._answers: Dict[Tuple[str, ...], Tuple[float, List[str]]] = {}

    def completions(self, text: str) -> List[Tuple[str, int]]:
        """Completions of the last word of `text`, each with the length of the text that it replaces."""
        complete, partial = divide_line(text)
        if partial and not complete and partial[0].isdigit():
            return self._request_completions(partial)
        return [
            (shlex.quote(word), len(partial)) for word in self.candidates(complete) if _begins(word, partial)
        ]

    def _request_completions(self, partial: str) -> List[Tuple[str, int]]:
        """Completions of a raw request, whose sections are separated by commas."""
        number, *sections = partial.split(",")
        if not sections or number == "1":
            return []
        names = self.candidates(["get", *sections[:-1]][: 3 if number in ("4", "5", "6", "7", "9") else 2])
        if len(sections) > 2:
            names = self.candidates(["get", *sections[:2]]) if number == "7" and len(sections) == 4 else []
        last = sections[-1]
        return [(name, len(last)) for name in names if _begins(name, last) and "," not in name]

    def candidates(self, words: List[str]) -> List[str]:
        """All that may come behind these words, the first of which is a command."""
        if not words:
            return [*(verb.name for verb in all_verbs()), "help", "quit"]
        if words[0] not in ("tree", "get", "activate", "enter", "mouse", "menu"):
            return []
        if len(words) == 1:
            return self._ask(("windows",))
        if len(words) == 2:
            return (
                []
                if words[0] == "tree"
                else self._ask((words[0] if words[0] == "menu" else "widgets", words[1]))
            )
        return self._ask(("properties", words[1], words[2])) if words[0] == "get" else []

    def _ask(self, question: Tuple[str, ...]) -> List[str]:
        asked, answer = self._answers.get(question, (0.0, []))
        now = time.monotonic()
        if not asked or now - asked > _MAX_ANSWER_AGE:
            try:
                answer = _ASKING[question[0]](self._app, *question[1:])
            except (QtDriverError, ValueError):
                answer = []  # there is no window or widget of that name (yet)
            self._answers[question] = (now, answer)
        return answer


def _windows(app: App) -> List[str]:
    """The titles, as far as a request can carry them, and the object names."""
    windows = list(walk_windows(app.connection))
    titles = [certain_beginning(window.record.title) for window in windows]
    names = [window.widgets[0].object_name for window in windows if window.record.title and window.widgets]
    return [*filter(None, titles), *(f"{OBJECT_NAME}{name}" for name in names if name)]


def _widgets(app: App, window: str) -> List[str]:
    tree = list_tree(app.connection, window)
    paths = [tree.unique_path(node) for node in tree.nodes if node.record.visible and node.name != UNNAMED]
    return sorted({path for path in paths if path is not None})


def _properties(app: App, window: str, path: str) -> List[str]:
    names: List[str] = []
    for listing in ("pseudoPropertyNames", "propertyNames"):
        value = app.connection.read_property(window, path, listing)
        names += value if isinstance(value, tuple) else ()
    return list(dict.fromkeys(names))


def _menu_entries(app: App, window: str) -> List[str]:
    nodes = list_tree(app.connection, window).nodes
    bar = next((node for node in nodes if node.record.class_name == "QMenuBar"), None)
    value = () if bar is None else app.connection.read_property(window, bar.name, "itemList")
    return list(value) if isinstance(value, tuple) else []


_ASKING: Dict[str, Callable[..., List[str]]] = {
    "windows": _windows,
    "widgets": _widgets,
    "properties": _properties,
    "menu": _menu_entries,
}


def _begins(word: str, partial: str) -> bool:
    return word.casefold().startswith(partial.lstrip("'\"").casefold())
