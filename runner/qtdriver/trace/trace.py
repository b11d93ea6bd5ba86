"""The trace of a test as a file: what the page of a run reads."""

from __future__ import annotations

import json
import os
from dataclasses import dataclass
from pathlib import Path
from typing import Callable, Dict, List

from ..errors import ProtocolError
from ..protocol.commands import COMMAND_BY_NUMBER
from ..protocol.extensions import EXTENSION_BY_NAME, decode_utf8_hex
from ..protocol.transcript import Exchange, Step
from ..protocol.wire import Reply, decode_hex
from .readable import describe_reply

TRACE_FILE = "trace.json"
FORMAT = 1

KEPT_READABLE = 2000
"""Characters of a reply in words that are kept."""


@dataclass(frozen=True)
class RecordedStep:
    """A step and what was recorded with it.

    Attributes:
        step: the step itself.
        pid: the process id of its application.
        before: file name of the picture before it, empty for none.
        after: file name of the picture after it, empty for none.
        widgets: key of the widgets after it in the trace's trees, empty for none.
    """

    step: Step
    pid: int
    before: str
    after: str
    widgets: str


@dataclass(frozen=True)
class Trace:
    """The record of one test.

    Attributes:
        began: when, in seconds of time.monotonic().
        began_at: the same as a time of the day, in seconds of time.time().
        seconds: how long.
        steps: in their order.
        trees: texts that list widgets, by the key that steps have.
        notes: what went wrong with the recording, for a person.
    """

    began: float
    began_at: float
    seconds: float
    steps: List[RecordedStep]
    trees: Dict[str, str]
    notes: List[str]

    def write(self, folder: Path) -> None:
        """Writes the trace into the folder, next to its pictures. Readers find the whole of it or none."""
        data = {
            "format": FORMAT,
            "began_at": self.began_at,
            "seconds": round(self.seconds, 6),
            "notes": self.notes,
            "steps": [self._step(recorded) for recorded in self.steps],
            "trees": self.trees,
        }
        unfinished = folder / f"{TRACE_FILE}.part"
        unfinished.write_text(json.dumps(data, indent=1), encoding="ascii")
        os.replace(unfinished, folder / TRACE_FILE)

    def _step(self, recorded: RecordedStep) -> Dict[str, object]:
        step = recorded.step
        return {
            "title": step.title,
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
        }

    def _exchange(self, exchange: Exchange) -> Dict[str, object]:
        return {
            "request": exchange.request,
            "asks": describe_request(exchange.request),
            "reply": exchange.reply,
            "answers": "" if exchange.reply is None else _readable(exchange.request, exchange.reply),
            "start": round(exchange.started - self.began, 6),
            "seconds": round(exchange.seconds, 6),
            "error": exchange.error,
        }


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
