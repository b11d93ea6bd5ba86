"""The tools that act: click, type, press, select."""

from __future__ import annotations

from typing import Any, Dict, Iterator, List, NamedTuple, Optional, Tuple

from ..api.widget import Widget
from ..errors import NotReadyError
from ..lookup.snapshot import headline_with_ref
from ..protocol.secrets import HIDDEN
from ..recording.code import call_code
from ..recording.steps import Argument
from .answers import MAX_CHARACTERS, Answer, ToolError, cut
from .call import Call
from .changes import title
from .running import RunningApplication, Target, way_to
from .session import Session
from .tool import APP, TARGET, WINDOW, Arguments, Tool

_CHECKABLE = ("checkbox", "radio button", "button", "group")
_ENTERED = ("spin box", "date edit")
"""The roles whose value is entered by the keyboard."""

_NOTHING = "nothing has changed on the screen"


class _Subject(NamedTuple):
    """The thing that a method is called on, and the call by which a test makes it; None where nothing finds it alone."""

    target: "Target | str"
    thing: Any
    call: Optional[str]

    def part(self, method: str, *arguments: Argument) -> "_Subject":
        """An item of it, or an entry of its menu."""
        call = (
            None
            if self.call is None
            else ".".join(filter(None, [self.call, call_code(method, arguments, {})]))
        )
        return self._replace(thing=getattr(self.thing, method)(*arguments), call=call)


def _subject(running: RunningApplication, arguments: Arguments) -> _Subject:
    """The widget that the arguments name, else the window; its item, cell or entry of a menu."""
    if "target" in arguments:
        target = running.target(arguments["target"], arguments.get("window"))
        subject = _Subject(target, target.widget, running.call_for_test(target))
    else:
        window = running.window(arguments.get("window"))
        if window.root is None:
            raise ToolError(f"{title(window)} cannot be told from another window of that title")
        subject = _Subject(window.call, running.window_of(window), "")
    if "item" in arguments:
        subject = _of_widget(subject, "item").part("item", arguments["item"])
    if "cell" in arguments:
        subject = _of_widget(subject, "cell").part("cell", *map(_row_or_column, arguments["cell"]))
    return subject


def _of_widget(subject: _Subject, name: str) -> _Subject:
    if not isinstance(subject.target, Target):
        raise ToolError(f"{name} needs a target, the widget that has it")
    return subject


def _row_or_column(value: "int | str") -> "int | str":
    return int(value) if isinstance(value, str) and value.isdigit() else value


def _call_and_record(
    session: Session,
    running: RunningApplication,
    subject: _Subject,
    method: str,
    *arguments: Argument,
    **keywords: Argument,
) -> str:
    """Calls a method and records that. Returns a note for the model."""
    try:
        getattr(subject.thing, method)(*arguments, **keywords)
    except NotReadyError as error:
        if not isinstance(subject.target, Target):
            raise
        raise ToolError(_unready(running, subject.target, error)) from None
    return session.record(running, subject.target, subject.call, method, arguments, keywords)


def _unready(running: RunningApplication, target: Target, error: NotReadyError) -> str:
    """Why a widget could not take the input."""
    lines = [f"{target}: {error.message}"]
    fresh = running.look().found.get(target.node.ref)
    if error.message == "disabled" and fresh is not None and fresh[1].root is not None:
        way = way_to(fresh[1].root, target.node.ref)[:-1]
        disabled = next((node for node in way if "disabled" in node.states), None)
        checked = next((node for node in way if node.role == "group" and "checked" not in node.states), None)
        around = disabled or checked
        lines += [] if around is None else [f"it is in {headline_with_ref(around)}"]
    explained = [
        line
        for line in error.explanation.splitlines()
        if "find(ref=" not in line and "force=True" not in line
    ]
    return "\n".join([*lines, *explained[1:]])


def _answer_after(running: RunningApplication, subject: _Subject, words: str, note: str) -> Answer:
    """The answer after an action: what was done, and what has changed since the last answer."""
    acted_on = subject.target.node.ref if isinstance(subject.target, Target) else None
    lines = running.changes_after_action(acted_on)
    return Answer(cut("\n".join([words, *(lines or [_NOTHING])]), MAX_CHARACTERS) + note)


def _click(session: Session, call: Call, arguments: Arguments) -> Answer:
    running = session.running(arguments)
    running.look()
    subject = _subject(running, arguments)
    button = arguments.get("button", "left")
    if "menu" in arguments:
        on_window = not isinstance(subject.target, Target)
        method = "context_menu" if button == "right" and not on_window else "menu"
        note = _call_and_record(session, running, subject.part(method, arguments["menu"]), "click")
        return _answer_after(
            running,
            subject,
            f"chose {arguments['menu']!r}{'' if on_window else f' from the menu of {subject.target}'}",
            note,
        )
    if not isinstance(subject.target, Target):
        raise ToolError("say what to click by target, or name an entry of the menu bar by menu")
    keywords: Dict[str, Any] = {key: arguments[key] for key in ("modifier",) if key in arguments}
    if "at" in arguments and isinstance(subject.thing, Widget):
        keywords["at"] = tuple(arguments["at"])
    method = "double_click" if arguments.get("double", False) else "click"
    given = () if button == "left" else (button,)
    note = _call_and_record(session, running, subject, method, *given, **keywords)
    words = f"{'double ' if method != 'click' else ''}clicked {_in_words(subject, arguments)}"
    return _answer_after(running, subject, words, note)


def _in_words(subject: _Subject, arguments: Arguments) -> str:
    part = arguments.get("item", arguments.get("cell"))
    return f"{subject.target}" if part is None else f"{part!r} of {subject.target}"


def _type(session: Session, call: Call, arguments: Arguments) -> Answer:
    running = session.running(arguments)
    running.look()
    subject, text = _subject(running, arguments), arguments["text"]
    is_field = isinstance(subject.target, Target)
    replaces = arguments.get("replace", is_field)
    if replaces and not is_field:
        raise ToolError("replace needs a target, the field whose text is replaced")
    note = _call_and_record(session, running, subject, "fill" if replaces else "type", text)
    if arguments.get("enter", False):
        note += _call_and_record(session, running, subject, "press", "Return")
    where = f" into {_in_words(subject, arguments)}" if is_field else ""
    return _answer_after(running, subject, f"typed {len(text)} characters{where}", note)


def _press(session: Session, call: Call, arguments: Arguments) -> Answer:
    running = session.running(arguments)
    running.look()
    subject = _subject(running, arguments)
    note = _call_and_record(session, running, subject, "press", *arguments["keys"])
    secrets = running.app.connection.secrets
    keys = (HIDDEN if secrets.has_key(key) else key for key in arguments["keys"])
    return _answer_after(running, subject, f"pressed {', '.join(keys)}", note)


def _select(session: Session, call: Call, arguments: Arguments) -> Answer:
    running = session.running(arguments)
    running.look()
    subject, value = _subject(running, arguments), arguments["value"]
    if not isinstance(subject.target, Target):
        raise ToolError("select needs a target")
    if subject.target.node.role == "tabs":
        bar = next((node for node in subject.target.node.children if node.role == "tab bar"), None)
        subject = _subject(running, arguments if bar is None else {**arguments, "target": bar.ref})
    notes = [
        _call_and_record(session, running, part, method, *given, **keywords)
        for part, method, given, keywords in _choices(subject, value)
    ]
    return _answer_after(running, subject, f"set {_in_words(subject, arguments)} to {value!r}", notes[-1])


_Choice = Tuple[_Subject, str, Tuple[Argument, ...], Dict[str, Argument]]


def _choices(subject: _Subject, value: Any) -> Iterator[_Choice]:
    """The calls that give the widget a value."""
    assert isinstance(subject.target, Target)
    role = subject.target.node.role
    if isinstance(value, list):
        for number, item in enumerate(value):
            yield subject.part("item", item), "click", (), {"modifier": "control"} if number else {}
    elif isinstance(value, bool):
        yield subject, "check", () if value else (False,), {}
    elif role in _ENTERED:
        yield subject, "enter", (value,), {}
    elif role in _CHECKABLE:
        raise ToolError(f"a {role} is set to true or false")
    elif isinstance(value, float):
        raise ToolError(f"a {role} has no items with fractions")
    elif isinstance(subject.thing, Widget):
        yield subject, "select", (value,), {}
    else:
        raise ToolError("value is the item already: leave item out, or give true or false for its check box")


_ITEM = {
    "type": ["string", "integer"],
    "description": "An item in the target: its text, in trees the path 'parent/child', or its number from 1.",
}
_CELL = {
    "type": "array",
    "items": {"type": ["integer", "string"]},
    "minItems": 2,
    "maxItems": 2,
    "description": "A cell of the table that is the target: row and column, each a header's text or a number from 1.",
}
_PLACE: Dict[str, Any] = {"window": WINDOW, "app": APP}
_ANSWER = " Answers with what has changed on the screen."
_MODIFIERS: List[str] = ["shift", "control", "alt"]

TOOLS = (
    Tool(
        "click",
        "Click",
        "Clicks a widget, an item or cell in it, or chooses an entry of a menu, with the real mouse, once a user could: it "
        "waits until the widget is enabled and not covered." + _ANSWER,
        _click,
        {
            "target": TARGET,
            "item": _ITEM,
            "cell": _CELL,
            "menu": {
                "type": "string",
                "description": "Texts of the menus and the entry, joined by '/', such as File/Save. Without a target of the menu "
                "bar or the open menu; with a target of the menu that a click on it opens, with button right its context menu.",
            },
            "button": {"type": "string", "enum": ["left", "right", "middle"]},
            "double": {"type": "boolean", "description": "A double click."},
            "modifier": {"type": "string", "enum": _MODIFIERS, "description": "Held meanwhile."},
            "at": {
                "type": "array",
                "items": {"type": "number", "minimum": 0, "maximum": 1},
                "minItems": 2,
                "maxItems": 2,
                "description": "Where in the widget, as shares of its width and height. Default: where it reacts.",
            },
            **_PLACE,
        },
        destroys=True,
    ),
    Tool(
        "type",
        "Type text",
        "Types a text by the keyboard. With a target it replaces the text of that field; without one it types where the caret "
        "is." + _ANSWER,
        _type,
        {
            "text": {"type": "string", "description": "The text; a line break is Return, a tab is Tab."},
            "target": TARGET,
            "item": _ITEM,
            "cell": _CELL,
            "replace": {
                "type": "boolean",
                "description": "false: types at the caret of the target, and keeps its text.",
            },
            "enter": {"type": "boolean", "description": "Presses Return afterwards."},
            **_PLACE,
        },
        ("text",),
        destroys=True,
    ),
    Tool(
        "press",
        "Press keys",
        "Presses keys or shortcuts, such as Ctrl+S, Escape, Tab or F2, for the target or for what has the focus."
        + _ANSWER,
        _press,
        {
            "keys": {
                "type": "array",
                "items": {"type": "string"},
                "minItems": 1,
                "maxItems": 50,
                "description": "One after the other.",
            },
            "target": TARGET,
            **_PLACE,
        },
        ("keys",),
        destroys=True,
    ),
    Tool(
        "select",
        "Choose a value",
        "Gives a widget a value: chooses an item of a list, tree, table or combo box, or a tab by its text; several items by "
        "a list; sets a check box to true or false; a slider or spin box to a number; a date as 2024-03-12 or a time as "
        "07:30." + _ANSWER,
        _select,
        {
            "target": TARGET,
            "value": {
                "type": ["string", "number", "boolean", "array"],
                "items": {"type": ["string", "integer"]},
                "description": "The text of the item, in trees the path 'parent/child'; a number; true or false; texts.",
            },
            "item": {"type": ["string", "integer"], "description": "The item whose check box is meant."},
            **_PLACE,
        },
        ("target", "value"),
        destroys=True,
    ),
)
