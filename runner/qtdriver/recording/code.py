"""The code of a test from steps."""

from __future__ import annotations

import keyword
import re
from typing import Dict, Iterable, Iterator, List, Mapping, NamedTuple, Optional, Sequence, Tuple

from ..protocol.locators import as_python
from .steps import Argument, Launch, Part, Recorded, Secret, Step, Target

_WORD = re.compile(r"[A-Za-z0-9]+")
_TEXT_IN_CALL = re.compile(r"\"([^\"]*)\"|'([^']*)'")
_SPECIAL = re.compile(r"[.^$*+?{}\[\]\\|()]")
_FUNCTIONS = ("containing", "re", "os", "pytest", "qtdriver", "eventually")
_MAX_WORDS = 3


class Needs(NamedTuple):
    """Imports and constants that lines of a test need at the beginning of their file.

    Attributes:
        modules: those of Python that they import.
        names: those that they import from qtdriver.
        constants: the lines that read secrets.
    """

    modules: Tuple[str, ...] = ()
    names: Tuple[str, ...] = ()
    constants: Tuple[str, ...] = ()


def secret_variable(secret: Secret) -> str:
    """The environment variable that gives a secret to a test."""
    return f"TEST_SECRET_{secret.number}"


def test_code(name: str, steps: Sequence[Recorded], summary: str = "") -> str:
    """The text of a file with one test.

    Args:
        name: the name of the test without "test_".
        steps: what it does, in order.
        summary: one line about it, for the file.

    Raises ValueError without any step.
    """
    if not steps:
        raise ValueError("there are no steps yet")
    body = body_lines(steps)
    needed = needs_of(steps, body)
    lines = [_docstring(summary or f"The test {name}, from a conversation."), "", *_imports(needed)]
    lines += needed.constants
    lines += [""] if needed.constants else []
    return "\n".join([*lines, "", f"def test_{name}(qtdriver):", *(f"    {line}" for line in body), ""])


def body_lines(steps: Sequence[Recorded]) -> List[str]:
    """The lines of the function of a test, without their indentation: first each application and window that is needed."""
    return list(_body(steps))


def needs_of(steps: Sequence[Recorded], body: Sequence[str]) -> Needs:
    """The imports and constants that the lines of these steps need at the beginning of their file."""
    numbers = sorted({one.number for step in steps if isinstance(step, Step) for one in _secrets(step)})
    text = "\n".join(body)
    modules = [name for name, used in (("os", bool(numbers)), ("re", "re.compile(" in text)) if used]
    names = [name for name in ("containing", "eventually") if f"{name}(" in text]
    constants = [f'SECRET_{number} = os.environ["{secret_variable(Secret(number))}"]' for number in numbers]
    return Needs(tuple(modules), tuple(names), tuple(constants))


def call_code(
    method: str,
    arguments: Iterable[Argument],
    keywords: Dict[str, Argument],
    windows: Optional[Mapping[str, str]] = None,
) -> str:
    """A call in Python; `windows` are the variables of windows by their calls, where a target is among the arguments."""
    given = [
        f"{(windows or {})[one.window]}.{one.call}" if isinstance(one, Target) else python_value(one)
        for one in arguments
    ]
    given += [f"{key}={python_value(value)}" for key, value in keywords.items()]
    return f"{method}({', '.join(given)})"


def python_value(value: Argument) -> str:
    """A value in Python."""
    if isinstance(value, Secret):
        return f"SECRET_{value.number}"
    if isinstance(value, Part):
        return f"re.compile({_pattern(value.text)})"
    return as_python(value) if isinstance(value, str) else repr(value)


def _pattern(text: str) -> str:
    """A regular expression that finds the text, in Python."""
    escaped = _SPECIAL.sub(r"\\\g<0>", text)
    plain = '"' not in text and text.isprintable()
    return f'r"{escaped}"' if plain and "\\" in escaped else python_value(escaped)


def _secrets(step: Step) -> Iterator[Secret]:
    yield from (one for one in (*step.arguments, *step.keywords.values()) if isinstance(one, Secret))


def _docstring(text: str) -> str:
    line = " ".join(text.split()).replace("\\", "\\\\").replace('"""', "'''").rstrip('"')
    return f'"""{line}"""'


def _imports(needed: Needs) -> Iterator[str]:
    yield from (f"import {module}" for module in needed.modules)
    if needed.modules and needed.names:
        yield ""
    if needed.names:
        yield f"from qtdriver import {', '.join(needed.names)}"
    if needed.modules or needed.names:
        yield ""


def _body(steps: Sequence[Recorded]) -> Iterator[str]:
    """The lines of the function: a variable for each application and window, made where it is needed first."""
    apps: Dict[str, str] = {}
    windows: Dict[Tuple[str, str], str] = {}
    taken = set(_FUNCTIONS)
    for step in steps:
        if isinstance(step, Launch):
            apps[step.app] = apps.get(step.app) or _variable(step.app, "app", taken)
            windows = {key: name for key, name in windows.items() if key[0] != step.app}
            given = call_code("qtdriver.launch", step.command, {} if step.qt is None else {"qt": step.qt})
            yield f"{apps[step.app]} = {given}"
            continue
        if step.comment:
            yield f"# {step.comment}"
        if not step.method:
            continue
        targets = [one.window for one in step.arguments if isinstance(one, Target)]
        for call in (step.window, *targets):
            if (step.app, call) not in windows:
                windows[step.app, call] = _variable(_words_of_call(call), "window", taken)
                yield f"{windows[step.app, call]} = {apps[step.app]}.{call}"
        yield _statement(step, {call: name for (app, call), name in windows.items() if app == step.app})


def _statement(step: Step, windows: Dict[str, str]) -> str:
    """The line for a step; `windows` are the variables of windows by their calls."""
    window = windows[step.window]
    subject = f"{window}.{step.widget}" if step.widget else window
    call = call_code(step.method, step.arguments, step.keywords, windows)
    if not step.is_check:
        return f"{subject}.{call}"
    subject = f"lambda: {subject}.{step.reads}" if step.reads else subject
    return f"eventually({subject}).{call}"


def _words_of_call(call: str) -> str:
    match = _TEXT_IN_CALL.search(call)
    return (match[1] or match[2] or "") if match else call.partition("(")[0]


def _variable(text: str, usual: str, taken: "set[str]") -> str:
    """A name for a variable that is not taken yet, made of the first words of a text."""
    split = re.sub(r"(?<=[a-z0-9])(?=[A-Z])", " ", text)
    words: List[str] = _WORD.findall(split.lower())[:_MAX_WORDS]
    name = "_".join(words) or usual
    if not name[0].isalpha() or keyword.iskeyword(name):
        name = f"{usual}_{name}"
    name = name if name not in taken or name == usual else f"{name}_{usual}"
    number, free = 2, name
    while free in taken:
        free, number = f"{name}_{number}", number + 1
    taken.add(free)
    return free
