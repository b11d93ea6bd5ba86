"""Explains why a window or widget was not found: the second half of an error message."""

from __future__ import annotations

from typing import Callable, Dict, List, Sequence, Type

from ..errors import (
    AmbiguousError,
    AmbiguousWindowError,
    NotReadyError,
    NotVisibleError,
    ObscuredError,
    ProtocolError,
    ReplyError,
    WidgetNotFoundError,
    WindowBlockedError,
    WindowNotFoundError,
)
from ..protocol.connection import Connection
from ..protocol.locators import Address, Locator
from ..protocol.records import WindowRecord
from .derived import DIALOG_BUTTON
from .near_names import nearest_names
from .paths import checked_unique_path, list_tree
from .sight import describe_sight
from .snapshot import describe_node
from .tree import Node, WidgetTree
from .windows import MODAL, OBJECT_NAME, POPUP, describe_windows, walk_windows

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_SHOWN = 8


def explain(connection: Connection, error: ReplyError, window: str, path: Address) -> str:
    """Explains a refusal by what the application shows now.

    Args:
        connection: asks the application.
        error: the refusal.
        window: the window that was looked for, as in the methods of Connection.
        path: the widget; empty where the request was about the window as a whole.

    Returns one or more lines; empty for a refusal that is not about finding something.
    """
    tell = _EXPLANATIONS.get(type(error))
    try:
        if isinstance(error, NotReadyError):
            return "\n".join(_not_ready(connection, error, path))
        if (isinstance(path, Locator) or _is_about_another(error, path)) and type(error) in _LOCATED:
            return "\n".join(_located(connection, error, window))
        return "\n".join(tell(connection, window, str(path))) if tell is not None else ""
    except (ReplyError, ProtocolError) as another:
        return f"(what is there instead could not be listed: {another})"


def _is_about_another(error: ReplyError, path: str) -> bool:
    """Whether the error has candidates for another widget than that of `path`, as after a search by a text."""
    return bool(error.candidates) and not error.message.startswith(f"Widget ({path}) ")


def _no_window(connection: Connection, window: str, path: str) -> List[str]:
    windows = connection.list_windows()
    lines = [f"looked for {_wanted_window(window)}; these windows exist:", *describe_windows(windows)]
    similar = [record.title for record in windows if record.title.casefold().startswith(window.casefold())]
    if similar and not window.startswith(OBJECT_NAME):
        lines.append(f'upper and lower case count: did you mean "{similar[0]}"?')
    if window.startswith(OBJECT_NAME):
        lines += _window_names(connection, windows)
    return lines


def _wanted_window(window: str) -> str:
    if window == POPUP:
        return "an open popup, such as a menu"
    if window == MODAL:
        return "a modal dialog"
    if window.startswith(f"{MODAL}:"):
        return f'a modal dialog whose title begins with "{window[len(MODAL) + 1 :]}"'
    if window.startswith(OBJECT_NAME):
        return f'a visible window with the object name "{window[len(OBJECT_NAME) :]}"'
    return f'a visible window whose title begins with "{window}"'


def _window_names(connection: Connection, windows: Sequence[WindowRecord]) -> List[str]:
    """The object names of those windows whose title tells them apart."""
    names = {
        window.record.title: f'"{window.widgets[0].object_name}" ("{window.record.title}")'
        for window in walk_windows(connection, [record for record in windows if record.title])
        if window.error is None and window.widgets[0].object_name
    }
    return ["their object names: " + ", ".join(names[title] for title in sorted(names))] if names else []


def _several_windows(connection: Connection, window: str, path: str) -> List[str]:
    matching = [record for record in connection.list_windows() if _matches(record, window)]
    lines = [f"{_wanted_window(window)} has to be the only one; these match:", *describe_windows(matching)]
    return lines + ["give more of the title, or the object name of the window, which can tell them apart"]


def _matches(record: WindowRecord, window: str) -> bool:
    return window.startswith(OBJECT_NAME) or record.title.startswith(window)


def _blocked(connection: Connection, window: str, path: str) -> List[str]:
    popup = _open_popup(connection)
    if popup:
        return popup
    try:
        dialog = connection.window_tree(MODAL)[0]
        title = connection.check_window(MODAL)
        return [f'the modal dialog "{title}" ({dialog.class_name}) is open in front of it: answer it first']
    except ReplyError:
        return ["what was in front of it has gone meanwhile; these windows exist:"] + describe_windows(
            connection.list_windows()
        )


def _open_popup(connection: Connection) -> List[str]:
    """The line that names the open popup, if there is one."""
    try:
        popup = connection.window_tree(POPUP)[0]
    except ReplyError:
        return []
    name = f' "{popup.object_name}"' if popup.object_name else ""
    return [f"the popup {popup.class_name}{name} is open in front of it: choose from it, or close it, first"]


def _no_widget(connection: Connection, window: str, path: str) -> List[str]:
    tree = list_tree(connection, window)
    last = path.rsplit("/", 1)[-1]
    namesakes = tree.named(last) if last else ()
    if namesakes:
        lines = [f'"{last}" is there, but not under that path:']
        return lines + _describe_nodes(connection, window, tree, namesakes)
    comparable = [
        name for name in tree.names() if name.endswith(DIALOG_BUTTON) == last.endswith(DIALOG_BUTTON)
    ]
    nearest = [node for name in nearest_names(last, comparable) for node in tree.named(name)]
    in_sight = [node for node in nearest if node.record.visible]
    hidden = [node for node in nearest if not node.record.visible]
    lines = []
    if in_sight:
        lines += ["the nearest names in sight:", *_describe_nodes(connection, window, tree, in_sight)]
    lines += describe_sight(connection, window, tree)
    if hidden:
        lines += ["hidden, with a name like that:", *_describe_nodes(connection, window, tree, hidden)]
    return lines or [
        f"nothing that is in sight can be told by a name: the window has {len(tree.nodes)} widgets, which "
        "print(window.tree()) shows"
    ]


def _describe_nodes(
    connection: Connection, window: str, tree: WidgetTree, nodes: Sequence[Node]
) -> List[str]:
    lines = [f"  {_describe_node(connection, window, tree, node)}" for node in nodes[:_SHOWN]]
    if len(nodes) > _SHOWN:
        lines.append(f"  and {len(nodes) - _SHOWN} more")
    return lines


def _describe_node(connection: Connection, window: str, tree: WidgetTree, node: Node) -> str:
    hidden = "" if node.record.visible else ", hidden"
    kind = f"({node.record.class_name}{hidden})"
    path = checked_unique_path(connection, window, tree, node)
    if path == node.name:
        return f"{path} {kind}"
    if path is not None:
        return f"{node.name} {kind}: {path}"
    above = "/".join(reversed([ancestor.name or "(button)" for ancestor in node.ancestors()]))
    return f"{node.name} {kind}: no path is unique; it is in {above or 'no other widget'}"


def _hidden(connection: Connection, window: str, path: str) -> List[str]:
    tree = list_tree(connection, window)
    hidden = [node for node in tree.find(path) if not node.record.visible]
    lines = []
    for node in hidden[:_SHOWN]:
        outermost = [above for above in node.ancestors() if not above.record.visible][-1:]
        cause = f", as all in {outermost[0].name or outermost[0].record.class_name}" if outermost else ""
        lines.append(f"  {node.name} ({node.record.class_name}) is hidden{cause}")
    return ["it exists, but the user cannot see it:", *lines] if lines else []


def _several_widgets(connection: Connection, window: str, path: str) -> List[str]:
    tree = list_tree(connection, window)
    candidates = [node for node in tree.find(path) if node.record.visible]
    return ["these are visible and match:", *_describe_nodes(connection, window, tree, candidates)]


def _covered(connection: Connection, window: str, path: str) -> List[str]:
    return [_HIDDEN_BY_ANOTHER]


_HIDDEN_BY_ANOTHER = (
    "another program's window is in front of it, the window manager has not shown it yet, "
    "or the place is beyond the edge of the screen"
)


def _not_ready(connection: Connection, error: NotReadyError, path: Address) -> List[str]:
    """Lines that say which widget it is, and, where only its place is unfit, that force=True helps."""
    lines = [f"the widget is {path}; nothing was done to it"] if path else ["nothing was done"]
    if error.message == "hidden by another window":
        lines.append(_HIDDEN_BY_ANOTHER)
    elif error.message.startswith(_UNFIT_PLACES):
        lines += _open_popup(connection)
        lines.append("click(force=True), and the like, send the input to whatever is at the place")
    return lines


_UNFIT_PLACES = ("covered by ", "moving", "outside ", "not reached ")
"""Beginnings of the reasons that are about the place, not about the widget."""

_LOCATED: Dict[Type[ReplyError], str] = {
    WidgetNotFoundError: "the nearest:",
    NotVisibleError: "it exists, but the user cannot see it:",
    AmbiguousError: "these are visible and match; say more of the one that is meant, or choose one by nth():",
}


def _located(connection: Connection, error: ReplyError, window: str) -> List[str]:
    """Lines on the candidates that the agent named when it refused a locator; where nothing matches, also on what is in sight."""
    candidates = [f"  {describe_node(candidate)}" for candidate in error.candidates]
    lines = [_LOCATED[type(error)], *candidates] if candidates else []
    return lines + describe_sight(connection, window) if isinstance(error, WidgetNotFoundError) else lines


_EXPLANATIONS: Dict[Type[ReplyError], Callable[[Connection, str, str], List[str]]] = {
    WindowNotFoundError: _no_window,
    AmbiguousWindowError: _several_windows,
    WindowBlockedError: _blocked,
    WidgetNotFoundError: _no_widget,
    NotVisibleError: _hidden,
    AmbiguousError: _several_widgets,
    ObscuredError: _covered,
}
