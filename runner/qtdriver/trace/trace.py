"""The trace of a test as a file: what the page of a run reads."""

from __future__ import annotations

import json
import os
from dataclasses import dataclass, field
from pathlib import Path
from typing import Callable, Dict, List, Mapping, Optional, Tuple

from ..errors import ProtocolError
from ..errors.paths import shown_path
from ..protocol.commands import COMMAND_BY_NUMBER
from ..protocol.extensions import EXTENSION_BY_NAME, decode_utf8_hex
from ..protocol.secrets import Secrets
from ..protocol.transcript import Exchange, Group, Step
from ..protocol.wire import Reply, decode_hex
from .readable import describe_reply
from .sources import lines_around

TRACE_FILE = "trace.json"

SCRIPT_FILE = "trace.js"
"""The trace as a script, for a page: browsers let a page that is a file load scripts beside it, but no data."""

FORMAT = 2

KEPT_READABLE = 2000
"""Characters of a reply in words that are kept."""


Place = Tuple[int, int, int, int]
"""Left, top, width and height in pixels of the screen."""


@dataclass(frozen=True)
class RecordedStep:
    """A step and what was recorded with it.

    Attributes:
        step: the step itself.
        pid: the process id of its application.
        before: file name of the picture before it, empty for none.
        after: file name of the picture after it, empty for none.
        widgets: key of the widgets after it in the trace's trees, empty for none.
        place: the widget that it is about: left, top, width and height in pixels of the screen; None where it is not known.
        comparison: file names of the pictures that it has compared: "expected", "actual", "difference"; empty for none.
    """

    step: Step
    pid: int
    before: str
    after: str
    widgets: str
    place: Optional[Place] = None
    comparison: Mapping[str, str] = field(default_factory=dict)


@dataclass(frozen=True)
class OutputLine:
    """A line that an application has written.

    Attributes:
        at: when, in seconds of time.monotonic().
        pid: the process id of the application.
        stream: "stdout" or "stderr".
        text: the line.
    """

    at: float
    pid: int
    stream: str
    text: str


@dataclass(frozen=True)
class Trace:
    """The record of one test.

    Attributes:
        began: when, in seconds of time.monotonic().
        began_at: the same as a time of the day, in seconds of time.time().
        seconds: how long.
        steps: in their order.
        trees: texts that list widgets, by the key that steps have.
        output: what the applications have written, in the order of its times.
        notes: what went wrong with the recording, for a person.
        pictures: the parts of the screen that pictures show, by their file names.
        secrets: what is left out of all texts.
    """

    began: float
    began_at: float
    seconds: float
    steps: List[RecordedStep]
    trees: Dict[str, str]
    notes: List[str]
    output: List[OutputLine]
    pictures: Dict[str, Place]
    secrets: Secrets

    def write(self, folder: Path) -> None:
        """Writes the trace into the folder, next to its pictures. Readers find the whole of it or none."""
        groups = _groups(self.steps)
        data = {
            "format": FORMAT,
            "began_at": self.began_at,
            "seconds": round(self.seconds, 6),
            "notes": [self.secrets.hide(note) for note in self.notes],
            "steps": [self._step(recorded, groups) for recorded in self.steps],
            "groups": [self._group(group, groups) for group in groups],
            "output": [self._output_line(line) for line in self.output],
            "pictures": self.pictures,
            "sources": self._sources(),
            "trees": {key: self.secrets.hide(text) for key, text in self.trees.items()},
        }
        write_trace(folder, data)

    def _group(self, group: Group, groups: List[Group]) -> Dict[str, object]:
        return {
            "title": self.secrets.hide(group.title),
            "parent": None if group.parent is None else groups.index(group.parent),
            "start": round(group.started - self.began, 6),
            "seconds": round(group.seconds or 0.0, 6),
            "error": self.secrets.hide(group.error),
        }

    def _output_line(self, line: OutputLine) -> Dict[str, object]:
        return {
            "time": round(line.at - self.began, 6),
            "pid": line.pid,
            "stream": line.stream,
            "text": self.secrets.hide(line.text),
        }

    def _sources(self) -> Dict[str, Dict[int, str]]:
        """The lines of the test around its steps, by the names of the files in steps and by their numbers.

        They are not the whole files, in which other tests may have passwords.
        """
        sources: Dict[str, Dict[int, str]] = {}
        for step in (recorded.step for recorded in self.steps if recorded.step.file):
            known = sources.setdefault(shown_path(Path(step.file)), {})
            for number, text in lines_around(step.file, step.line).items():
                if number not in known:
                    known[number] = self.secrets.hide(text)
        return sources

    def _step(self, recorded: RecordedStep, groups: List[Group]) -> Dict[str, object]:
        step = recorded.step
        return {
            "title": step.title,
            "action": "" if step.action == step.title else step.action,
            "file": shown_path(Path(step.file)) if step.file else "",
            "line": step.line,
            "group": None if step.group is None else groups.index(step.group),
            "place": recorded.place,
            "reads": step.reads,
            "pid": recorded.pid,
            "start": round(step.started - self.began, 6),
            "seconds": round(step.seconds or 0.0, 6),
            "error": step.error,
            "exchanges": [self._exchange(exchange) for exchange in step.exchanges],
            "skipped": step.skipped,
            "before": recorded.before,
            "after": recorded.after,
            "widgets": recorded.widgets,
            "comparison": recorded.comparison,
        }

    def _exchange(self, exchange: Exchange) -> Dict[str, object]:
        request = self.secrets.hide_in_line(exchange.request)
        reply = None if exchange.reply is None else self.secrets.hide_in_line(exchange.reply)
        return {
            "request": request,
            "asks": describe_request(request),
            "reply": reply,
            "answers": "" if reply is None else _readable(request, reply),
            "start": round(exchange.started - self.began, 6),
            "seconds": round(exchange.seconds, 6),
            "error": self.secrets.hide(exchange.error),
        }


def write_trace(folder: Path, data: Mapping[str, object]) -> None:
    """Writes a trace, in types of JSON, for programs and for a page. Readers find the whole of it or none."""
    text = json.dumps(data)
    for name, written in ((SCRIPT_FILE, f"qtdriverTrace({text});\n"), (TRACE_FILE, text)):
        unfinished = folder / f"{name}.part"
        unfinished.write_text(written, encoding="ascii")
        os.replace(unfinished, folder / name)


def _groups(steps: List[RecordedStep]) -> List[Group]:
    """The groups of the steps, each behind those that it is in."""
    groups: List[Group] = []
    for recorded in steps:
        chain: List[Group] = []
        group = recorded.step.group
        while group is not None and group not in groups:
            chain.insert(0, group)
            group = group.parent
        groups += chain
    return groups


def describe_request(line: str) -> str:
    """The request with the name of its command, and its values in plain text; `line` itself if it is none."""
    number, *texts = line.split(",")
    command = COMMAND_BY_NUMBER.get(number)
    if number in EXTENSION_BY_NAME:
        same = COMMAND_BY_NUMBER.get(number[1:])
        name = number if same is None else f"+{same.name}"
        return "  ".join([name, *(_decoded(text, decode_utf8_hex) for text in texts if text)])
    if command is None:
        return line
    parts = [command.name]
    for section, text in zip(command.sections, texts):
        if not text:
            continue
        parts.append(_decoded(text, decode_hex) if section.encoded else text)
    return "  ".join(parts)


def _decoded(digits: str, decode: Callable[[str], str]) -> str:
    try:
        return decode(digits)
    except ValueError:
        return digits


def _readable(request: str, reply: str) -> str:
    try:
        return describe_reply(request, Reply.parse(reply))[:KEPT_READABLE]
    except (ProtocolError, ValueError):
        return ""  # a reply that the transcript has cut
