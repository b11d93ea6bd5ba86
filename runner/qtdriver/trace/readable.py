"""Replies and commands as text for a person."""

from __future__ import annotations

import re
from typing import List, Optional

from ..errors import ProtocolError
from ..protocol.commands import COMMANDS, COMMAND_BY_NUMBER, Answer, Command
from ..protocol.extensions import EXTENSIONS, EXTENSION_BY_NAME, Extension, refusal
from ..protocol.records import CursorWidget
from ..protocol.wire import Rect, Reply, Value

_XPM_VALUES = re.compile(rb'"\s*(\d{1,9})\s+(\d{1,9})\s+(\d{1,9})\s+\d+')


def describe_reply(request: str, reply: Reply) -> str:
    """The reply to `request` in one or more lines. A reply that does not fit the protocol is shown raw."""
    number = request.split(",", 1)[0]
    extension = EXTENSION_BY_NAME.get(number)
    command = COMMAND_BY_NUMBER.get(number) or extension
    try:
        if not reply.ok:
            return f"error {reply.code}: {refusal(reply).message if extension else reply.payload}"
        if reply.code == "?":
            return _describe_cursor_widget(CursorWidget.parse(reply.payload))
        if command is not None and command.answer is Answer.TEXT:
            return reply.payload
        return describe_value(reply.value())
    except ProtocolError:
        return reply.raw


def _describe_cursor_widget(widget: Optional[CursorWidget]) -> str:
    if widget is None:
        return "no widget under the cursor"
    rows = (
        ("class", widget.class_name),
        ("same name", f"{widget.count}, visible {widget.visible_count}"),
        ("path", widget.path),
        ("window name", widget.window_name),
        ("window", widget.window),
    )
    return "\n".join(f"{label}: {text}".rstrip() for label, text in rows)


def describe_value(value: Value) -> str:
    """A typed value in one or more lines."""
    if isinstance(value, bool):
        return "true" if value else "false"
    if isinstance(value, tuple):
        return "\n".join(value) if value else "(empty list)"
    if isinstance(value, Rect):
        return (
            f"rectangle: left {value.left}, top {value.top}, right {value.right}, bottom {value.bottom} "
            f"({value.width} x {value.height} pixels)"
        )
    if isinstance(value, bytes):
        return _describe_picture(value)
    return str(value)


def _describe_picture(xpm: bytes) -> str:
    match = _XPM_VALUES.search(xpm)
    if match is None:
        return f"picture: {len(xpm)} bytes"
    width, height, colours = map(int, match.groups())
    return f"picture: {width} x {height} pixels, {colours} colours, {len(xpm)} bytes of XPM"


def describe_commands() -> str:
    """The table of the commands with their sections, for the help of the dialogue."""
    requests = [_pattern(command) for command in COMMANDS]
    width = max(map(len, requests))
    lines: List[str] = ["One request a line, its sections separated by commas:"]
    for command, request in zip(COMMANDS, requests):
        lines.append(f"  {request:<{width}}  {command.name}: {command.summary}")
    lines.append("Extensions, which the agent may lack:")
    lines += [f"  {_pattern_of_extension(extension)}  {extension.summary}" for extension in EXTENSIONS]
    lines += [
        "Sections in [brackets] travel as hexadecimal text. Type = in front to give them as plain text:",
        r"\, is a comma, \\ a backslash, \n a line break, \t a tabulator:  5,Main,dialog/name,,=s:one\, two,",
        "Values have a type: s:text  b:true  b:false  i:5. The mouse command is a text:",
        "  9,Main,dialog/ok,,=s:MouseClick:LeftButton:0.5:0.5:NoModifier,",
        "Other input: help, quit, blank lines, and comments that start with #",
    ]
    return "\n".join(lines)


def _pattern(command: Command) -> str:
    sections = [f"[{section.name}]" if section.encoded else section.name for section in command.sections]
    return ",".join([command.number, *sections])


def _pattern_of_extension(extension: Extension) -> str:
    return ",".join([extension.name, *(f"[{section}]" for section in extension.sections)])
