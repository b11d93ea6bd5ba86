"""Locators: descriptions that find a widget, in the form that the agent's extensions read."""

from __future__ import annotations

import re
from dataclasses import dataclass, field
from functools import lru_cache
from typing import Any, Dict, Mapping, Optional, Pattern, Union

SPECIAL_NAMES = ("ActivePopupWidget", "FocusWidget")
"""Last names of paths that mean the open popup, and the widget with the focus. Locators do not know them."""

_CONDITION = re.compile(
    r"(^|\s)((name|text|label|placeholder|tooltip|action|accessible|title|path|ref|visible|\.\w+)[*~]?=|nth=\d|>> )"
)
_POSITION = re.compile(r" (first|last|nth=\d+)$")
_PATH_CALL = "widget("
_ESCAPES = {"\\": r"\\", '"': r"\"", "\n": r"\n", "\t": r"\t"}
_PROPERTY = re.compile(r"\w+")
_CLASS = re.compile(r"\*|\w+(::\w+)*")


@dataclass(frozen=True)
class Containing:
    """A text of which only a part is known; see containing()."""

    part: str

    def __repr__(self) -> str:
        return f"containing({self.part!r})"


def containing(part: str) -> Containing:
    """Any text that has `part` in it, upper and lower case as there: find("QLabel", text=containing("files"))."""
    return Containing(part)


Address = Union[str, "Locator"]
"""A path of names, or a locator."""

Text = Union[str, Containing, Pattern[str]]
"""An exact text, a part of a text, or a regular expression that matches a part."""


@dataclass(frozen=True)
class Locator:
    """A description that finds a widget. The methods of a connection take it in place of a path.

    Attributes:
        text: the text that the agent reads.
        call: the call by which a test makes it.
        name: the name that messages use in place of the call; empty for none.
    """

    text: str
    call: str = field(default="", compare=False)
    name: str = field(default="", compare=False)

    def __str__(self) -> str:
        return self.name or self.call or self.text

    def within(self, outer: "Locator") -> "Locator":
        """A locator for the widgets of this one that are inside the widget of `outer`."""
        call = self.call
        if call.startswith(_PATH_CALL):  # widget() is a method of windows alone
            call = f"find(path={call[len(_PATH_CALL):]}"
        return Locator(f"{outer.text} >> {self.text}", f"{outer.call}.{call}")

    def at(self, position: str, call: str) -> "Locator":
        """The locator for one of several widgets that this one finds.

        Args:
            position: "first", "last", or "nth=2", counted from 0.
            call: how a test writes that.

        Raises ValueError where it has a position already.
        """
        if _POSITION.search(self.text):
            raise ValueError(f"{self} has a position already: use only one of first, last and nth()")
        return Locator(f"{self.text} {position}", f"{self.call}.{call}")


def locator(
    class_name: str = "",
    *,
    properties: Optional[Mapping[str, object]] = None,
    visible: Optional[bool] = True,
    ref: Optional[int] = None,
    **conditions: Optional[Text],
) -> Locator:
    """The locator for a class and conditions; the arguments are those of Window.find(), None meaning no condition.

    Raises ValueError without any condition, and for a class, a property or flags of a regular expression that cannot be
    written.
    """
    words = [_checked_class(class_name)] if class_name else []
    words += [_condition(key, text) for key, text in conditions.items() if text is not None]
    words += [_condition(f".{_property(name)}", _value(value)) for name, value in (properties or {}).items()]
    words += [] if ref is None else [f"ref={ref}"]
    if not words:
        raise ValueError("nothing is looked for: give a class, a text, a label, a name, ...")
    words += [] if visible else [f"visible={'any' if visible is None else 'false'}"]
    arguments = [f'"{class_name}"'] if class_name else []
    arguments += [f"{key}={as_python(text)}" for key, text in conditions.items() if text is not None]
    arguments += [f"properties={dict(properties)!r}"] if properties else []
    arguments += [] if ref is None else [f"ref={ref}"]
    arguments += [] if visible else [f"visible={visible}"]
    return Locator(" ".join(words), f"find({', '.join(arguments)})")


def text_locator(key: str, text: str, class_name: str = "") -> Locator:
    """The locator for one condition, and a class."""
    conditions: Dict[str, Any] = {key: text}
    return locator(class_name, **conditions)


@lru_cache(maxsize=1000)  # each request by a path needs it several times
def path_locator(path: str) -> Locator:
    """The locator for a path of names."""
    return Locator(_condition("path", path), f'widget("{path}")', path)


def as_locator(path: Address) -> Locator:
    """The locator for an address: itself, or that of the path."""
    return path if isinstance(path, Locator) else path_locator(path)


def is_special(path: Address) -> bool:
    """Whether a path means the open popup or the widget with the focus, which locators do not know."""
    return isinstance(path, str) and path.rsplit("/", 1)[-1] in SPECIAL_NAMES


def raw_locator(text: str) -> Locator:
    """The locator with this text."""
    return Locator(text, f"find_by({text!r})", text)


def address(text: str) -> Address:
    """The address in a text of the command line: a locator if it has a condition such as text="Save", else a path."""
    return raw_locator(text) if _CONDITION.search(text) else text


def as_address(found: Locator) -> str:
    """The text from which address() makes the locator. To a class alone it adds a condition, or it would be a path."""
    if found.name:
        return found.name
    return found.text if _CONDITION.search(found.text) else f"{found.text} visible=true"


def as_python(text: Text) -> str:
    """The argument in Python, in double quotes where it contains none."""
    if isinstance(text, str):
        # repr() takes double quotes for a text with an apostrophe.
        return repr(text) if '"' in text else '"' + repr("'" + text)[2:]
    if isinstance(text, Containing):
        return f"containing({as_python(text.part)})"
    return f"re.compile({text.pattern!r}{', re.IGNORECASE' if text.flags & re.IGNORECASE else ''})"


def _checked_class(name: str) -> str:
    if not _CLASS.fullmatch(name):
        raise ValueError(f"{name!r} is no name of a class")
    return name


def _property(name: str) -> str:
    if not _PROPERTY.fullmatch(name):
        raise ValueError(f"{name!r} is no name of a property")
    return name


def _value(value: object) -> Text:
    if isinstance(value, bool):
        return str(value).lower()
    return value if isinstance(value, (str, Containing, re.Pattern)) else str(value)


def _condition(key: str, text: Text) -> str:
    if isinstance(text, Containing):
        return f"{key}*={_quoted(text.part)}"
    if isinstance(text, str):
        return f"{key}={_quoted(text)}"
    if text.flags & ~(re.UNICODE | re.IGNORECASE):
        raise ValueError(
            f"the only flag that a regular expression of a locator can have is IGNORECASE: {text!r}"
        )
    return f"{key}~={_quoted(('(?i)' if text.flags & re.IGNORECASE else '') + text.pattern)}"


def _quoted(text: str) -> str:
    return '"' + "".join(_ESCAPES.get(character, character) for character in text) + '"'
