"""The tools that look: windows, snapshot, find, read."""

from __future__ import annotations

from typing import Dict, Iterator, List, Optional, Tuple

from ..errors import CommandError
from ..lookup.snapshot import SnapshotNode, headline_with_ref, outline_length, outline_with_refs, walk_outline
from ..protocol.secrets import HIDDEN
from ..protocol.wire import Rect, Value
from .answers import MAX_LINES, Answer, ToolError, cut, limited
from .call import Call
from .changes import title
from .running import RunningApplication, Target
from .session import Session
from .tool import APP, TARGET, WINDOW, Arguments, Tool

_MAX_FOUND = 20
_MAX_OF_A_VALUE = 3000
_MAIN_PROPERTY: Dict[str, str] = {
    "checkbox": "checked",
    "radio button": "checked",
    "combo box": "currentText",
    "spin box": "value",
    "slider": "value",
    "progress bar": "value",
    "display": "value",
    "group": "title",
    "window": "windowTitle",
    "dialog": "windowTitle",
}
"""The property that has what a widget shows, by its role; see _OTHERS for the rest."""

_OTHERS = ("plainText", "text")
_PASSWORD_TEXTS = ("text", "displayText", "selectedText")


def _windows(session: Session, call: Call, arguments: Arguments) -> Answer:
    if not session.names:
        return Answer("no application is running: launch one")
    names = [arguments["app"]] if "app" in arguments else session.names
    lines = []
    for name in names:
        running = session.running({"app": name})
        running.look()
        lines.append(f"{name}:\n{running.windows_in_lines()}")
    return Answer("\n".join(lines))


def _snapshot(session: Session, call: Call, arguments: Arguments) -> Answer:
    running = session.running(arguments)
    if arguments.get("changes", False):
        running.look()
        lines = running.changes_since_answer()
        return Answer(limited(lines or ["nothing has changed since the last answer"], "take a snapshot"))
    root = _root(running, arguments)
    running.mark_as_told()
    parts = {"depth": arguments.get("depth"), "whole": arguments.get("whole_texts", False)}
    first, count = arguments.get("first_line", 0), outline_length(root, **parts)
    if first >= count:
        raise ToolError(f"it has {count} lines, the first one being 0")
    hint = f"snapshot with target {root.ref} and first_line {{}}, a target further in, or a depth"
    lines = outline_with_refs(root, most=first + MAX_LINES, **parts)
    text = limited(lines[first:], hint, first=first, count=count - first)
    others = [one for one in running.survey.windows if one.root is not None and one.root.ref != root.ref]
    more = "\nother windows: " + ", ".join(f"[{one.root.ref}] {title(one)}" for one in others if one.root)
    return Answer(text + (more if others and "target" not in arguments else ""))


def _root(running: RunningApplication, arguments: Arguments) -> SnapshotNode:
    running.look()
    if "target" in arguments:
        return running.target(arguments["target"], arguments.get("window")).node
    window = running.window(arguments.get("window"))
    if window.root is None:
        raise ToolError(f"{title(window)} cannot be told from another window of that title")
    return window.root


def _find(session: Session, call: Call, arguments: Arguments) -> Answer:
    running = session.running(arguments)
    survey = running.look()
    wanted, role = arguments.get("text", ""), arguments.get("role")
    windows = survey.windows if "window" not in arguments else (running.window(arguments["window"]),)
    lines, known_roles = [], set()
    for window in windows:
        for node, _ in walk_outline(window.root) if window.root is not None else ():
            known_roles.add(node.role)
            if (role is None or node.role == role) and _has_text(node, wanted.casefold()):
                where = f" in {title(window)}" if len(windows) > 1 else ""
                lines.append(f"{headline_with_ref(node)}{where}{_fitting_items(node, wanted.casefold())}")
    if not lines:
        roles = "" if role is None else f" of the role {role!r}; there are {', '.join(sorted(known_roles))}"
        raise ToolError(f"nothing in sight has {wanted!r}{roles}")
    return Answer(limited(lines[:_MAX_FOUND] + _left_out(lines), "say more of the text, or the role"))


def _left_out(lines: List[str]) -> List[str]:
    return [f"... {len(lines) - _MAX_FOUND} more: say more of the text"] if len(lines) > _MAX_FOUND else []


def _has_text(node: SnapshotNode, wanted: str) -> bool:
    return not wanted or any(wanted in text.casefold() for text in _texts(node))


def _texts(node: SnapshotNode) -> Iterator[str]:
    for key, value in node.details.items():
        if key not in ("items", "header", "states", "rect", "ref", "role") and isinstance(
            value, (str, int, float)
        ):
            yield str(value)
    yield from node.header
    yield from (text for item in node.items for text in item.texts)


def _fitting_items(node: SnapshotNode, wanted: str) -> str:
    fitting = [item for item in node.items if wanted and wanted in str(item).casefold()]
    return "".join(f"\n  - {' '.join(str(item).split())}" for item in fitting[:3])


def _read(session: Session, call: Call, arguments: Arguments) -> Answer:
    running = session.running(arguments)
    running.look()
    target = running.target(arguments["target"], arguments.get("window"))
    if arguments.get("items", False):
        return _read_items(session, running, target, arguments)
    names = arguments.get("properties") or _main_property(target)
    if names == ["*"]:
        known = target.widget.read("propertyNames") or ()
        more = target.widget.read("pseudoPropertyNames") or ()
        return Answer(
            limited([str(target), ", ".join(map(str, (*_names(known), *_names(more))))], "name one")
        )
    lines, note = [str(target)], ""
    for name in names:
        value = _value(target, name)
        lines.append(f"{name}: {_shown(value)}")
        if arguments.get("check", True) and _is_plain(value) and value != HIDDEN:
            widget = running.call_for_test(target)
            note = session.record(running, target, widget, "has_property", (name, value), is_check=True)  # type: ignore[arg-type]
    if "properties" not in arguments:
        lines += outline_with_refs(target.node, whole=True)[1:]
    return Answer(limited(lines, "snapshot with this target and first_line 0") + note)


def _names(value: Value) -> Tuple[str, ...]:
    return tuple(map(str, value)) if isinstance(value, tuple) else ()


def _main_property(target: Target) -> List[str]:
    wanted = _MAIN_PROPERTY.get(target.node.role)
    for name in _OTHERS if wanted is None else (wanted,):
        try:
            target.widget.read(name, timeout=0)
        except CommandError:
            continue
        return [name]
    return []


def _value(target: Target, name: str) -> Value:
    if name in _PASSWORD_TEXTS and target.node.value == HIDDEN:
        return HIDDEN
    return target.widget.read(*name.split("=", 1))


def _is_plain(value: Value) -> bool:
    return isinstance(value, (str, int, float, bool)) or (
        isinstance(value, tuple) and not isinstance(value, Rect)
    )


def _shown(value: Value) -> str:
    if isinstance(value, bytes):
        return "a picture: take a screenshot of the widget"
    return cut(repr(value) if isinstance(value, (str, tuple)) else str(value), _MAX_OF_A_VALUE)


def _read_items(
    session: Session, running: RunningApplication, target: Target, arguments: Arguments
) -> Answer:
    first: int = arguments.get("first_line", 0)
    items = target.widget.items()
    note: Optional[str] = ""
    if arguments.get("check", True) and len(items) <= _MAX_FOUND:
        widget = running.call_for_test(target)
        note = session.record(running, target, widget, "equals", (items,), is_check=True, reads="items()")
    lines = [f"- {' '.join(text.split())}" for text in items[first:]]
    hint = "read with items and first_line {}"
    head = f"{target} has {len(items)} items"
    return Answer(f"{head}\n{limited(lines, hint, first=first)}{note}")


_CHECK = {
    "type": "boolean",
    "description": "Whether save_test shall make a check of it. Default: true. Give false for what differs each time.",
}
TOOLS = (
    Tool(
        "windows",
        "List windows",
        "Lists the applications that are running and their open windows, and says which window is in front or modal.",
        _windows,
        {"app": APP},
        reads_only=True,
    ),
    Tool(
        "snapshot",
        "Look at a window",
        "Answers with an outline of all that a window shows, or a part of it: the role, text, name, value and states of each "
        "widget, and its number in brackets. Rarely needed after an action, whose answer tells what has changed.",
        _snapshot,
        {
            "target": TARGET,
            "window": WINDOW,
            "app": APP,
            "depth": {
                "type": "integer",
                "minimum": 0,
                "maximum": 100,
                "description": "How many levels. Default: all.",
            },
            "changes": {
                "type": "boolean",
                "description": "Only what has changed in all windows since the last answer, as after something slow.",
            },
            "first_line": {
                "type": "integer",
                "minimum": 0,
                "description": "Goes on from this line of the outline.",
            },
            "whole_texts": {"type": "boolean", "description": "With long texts and all items in sight."},
        },
        reads_only=True,
    ),
    Tool(
        "find",
        "Find widgets",
        "Lists the widgets whose text, label, name, tool tip, value or items contain a text, in all windows, with their numbers.",
        _find,
        {
            "text": {"type": "string", "description": "Part of a text; upper and lower case are alike."},
            "role": {
                "type": "string",
                "description": "Such as button, checkbox, edit, list, tree, table, label.",
            },
            "window": WINDOW,
            "app": APP,
        },
        reads_only=True,
    ),
    Tool(
        "read",
        "Read a widget",
        "Reads what a widget holds, in full: its text or value, named properties of Qt, or all items of a list, tree, combo "
        "box or menu. What is read becomes a check of the test that save_test writes.",
        _read,
        {
            "target": TARGET,
            "window": WINDOW,
            "app": APP,
            "properties": {
                "type": "array",
                "items": {"type": "string"},
                "minItems": 1,
                "maxItems": 20,
                "description": 'Names of Qt properties, such as enabled; ["*"] lists the names. Default: text or value.',
            },
            "items": {"type": "boolean", "description": "All items, also those out of sight."},
            "first_line": {"type": "integer", "minimum": 0, "description": "Goes on from this item."},
            "check": _CHECK,
        },
        ("target",),
        reads_only=True,
    ),
)
