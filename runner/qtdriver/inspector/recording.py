"""Writes the input of a user as a test into the text of the editor on the page."""

from __future__ import annotations

import os
import shutil
from typing import Any, Callable, Dict, List, Optional, Tuple, Union

from ..api.app import App
from ..errors import QtDriverError, ReplyError
from ..lookup.snapshot import SnapshotNode
from ..lookup.stable_locators import StableLocators, count_of
from ..lookup.survey import SurveyedWindow
from ..protocol.locators import locator
from ..protocol.peers import load_psutil
from ..recording.actions import steps_of
from ..recording.checks import Check, checks_of
from ..recording.code import body_lines, needs_of
from ..recording.editing import with_needs, with_steps
from ..recording.events import Event, parse_events
from ..recording.names import Names
from ..recording.steps import Launch, Step
from .survey import last_survey, look

Values = Dict[str, Any]

_APP = "app"


def record(app: App, values: Values) -> Any:
    """Begins a recording with {"on": true}, which goes on with the last one unless {"anew": true}; else ends it."""
    recording = _recording(app)
    if values.get("anew"):
        recording.forget()
    if values["on"]:
        recording.start()
    else:
        recording.stop()
    return {"on": recording.is_on}


def recorded(app: App, values: Values) -> Any:
    """The text of the editor with what has been recorded since.

    Args:
        values: {"text", "line": that with the cursor, "written": the lines that were recorded until the last time}.

    Returns {"text", "line", "written"} as they are now, {"on"}, and {"dropped"}: how many events were lost.
    """
    recording = _recording(app)
    recording.poll()
    steps = recording.steps()
    before = [str(one) for one in values["written"]]
    edited = str(values["text"])
    launches = "qtdriver.launch(" in edited and not before
    lines = body_lines([Launch(_APP, recording.command), *steps]) if steps or recording.is_on else before
    told = with_steps(edited, int(values["line"]), lines[:1] if launches else before, lines)
    told = with_needs(told, needs_of(steps, lines))
    return {
        "text": told.text,
        "line": told.line,
        "written": lines,
        "on": recording.is_on,
        "dropped": recording.dropped,
    }


def checks(app: App, values: Values) -> Any:
    """All that can be checked of the widget {"ref"}, as texts."""
    return [check.words for check in _checks(app, values)[0]]


def check(app: App, values: Values) -> Any:
    """Adds to the recording the check {"words"} of the widget {"ref"}."""
    found, node, window = _checks(app, values)
    chosen = next((one for one in found if one.words == values["words"]), None)
    if chosen is None:
        raise QtDriverError("this is not so any more")
    _recording(app).add(_step(app, chosen, node, window))
    return {"words": chosen.words}


def _step(app: App, check: Check, node: SnapshotNode, window: SurveyedWindow) -> Step:
    keywords: Dict[str, Any] = {}
    arguments, method = check.arguments, check.method
    if method == "has_property" and str(arguments[0]) in (
        "text",
        "value",
        "title",
        "currentText",
        "plainText",
    ):
        method, keywords, arguments = "has", {str(arguments[0]): arguments[1]}, ()
    if check.is_of_window:
        return Step(_APP, window.call, "", method, arguments, keywords, is_check=True)
    assert window.root is not None
    found = StableLocators(app.connection, window.address, window.root).of(node)
    if found is None:
        raise QtDriverError("nothing finds this widget alone")
    call = ".".join(filter(None, [found.call, check.part]))
    return Step(_APP, window.call, call, method, arguments, keywords, is_check=True, reads=check.reads)


def _checks(app: App, values: Values) -> Tuple[List[Check], SnapshotNode, SurveyedWindow]:
    found = look(app).found.get(values["ref"])
    if found is None:
        raise QtDriverError("this widget is not there any more")
    node, window = found
    return checks_of(node, window.record.title), node, window


class _Recording:
    """All that has been recorded of an application.

    Attributes:
        command: that started the application.
        dropped: how many events were lost.
    """

    def __init__(self, app: App) -> None:
        self._app = app
        self._is_on = False
        self._known: Dict[Tuple[str, int], Optional[str]] = {}
        self.command = _command_of(app)
        self.forget()

    def forget(self) -> None:
        """Begins with nothing."""
        self._made: List[Union[Event, Step]] = []
        self._last: Optional[Event] = None
        self.dropped = 0

    @property
    def is_on(self) -> bool:
        """Whether the agent records."""
        return self._is_on

    def go_on_with(self, app: App) -> None:
        """Keeps what was done with an application that has ended; a recording ends with its application."""
        self._made, self._last = list(self.steps()), None
        self._known.clear()
        self._app = app
        self._is_on = False

    def start(self) -> None:
        """Has the agent record, unless it does."""
        if not self._is_on:
            self._app.connection.record()
            self._is_on = True

    def stop(self) -> None:
        """Has the agent record no more; what has happened until now is kept."""
        if self._is_on:
            self._app.connection.stop_recording()
            self.poll()
            self._is_on = False

    def poll(self) -> None:
        """Asks the agent what has happened."""
        if self._is_on:
            told = parse_events(self._app.connection.events())
            self._made += told.events
            if told.events or told.last is not None:
                self._last = told.last
            self.dropped += told.dropped
            self._is_on = told.is_recording

    def add(self, step: Step) -> None:
        """Adds a step behind all that has happened."""
        self.poll()
        self._made.append(step)

    def steps(self) -> List[Step]:
        """All that was done."""
        made = self._made if self._last is None else [*self._made, self._last]
        return steps_of(_APP, made, _LiveNames(self._app, self._known))


class _LiveNames(Names):
    """Names for widgets that were told; for one that nothing in its own window tells from others, the application is asked."""

    def __init__(self, app: App, known: "Dict[Tuple[str, int], Optional[str]]") -> None:
        """`known` keeps what the application has said: a widget may be gone, or have got another text, when it is asked again."""
        super().__init__()
        self._app = app
        self._known = known

    def by_class(self, node: SnapshotNode) -> Optional[str]:
        """As the base class has it."""
        return self._asked("class", node, self._ask_for_class)

    def by_application(self, node: SnapshotNode) -> Optional[str]:
        """As the base class has it."""
        return self._asked("all", node, self._ask_for_all)

    def _asked(
        self, kind: str, node: SnapshotNode, ask: Callable[[SnapshotNode, SurveyedWindow], Optional[str]]
    ) -> Optional[str]:
        key = (kind, node.ref)
        if key not in self._known:
            try:
                found = last_survey(self._app).found.get(node.ref) or look(self._app).found.get(node.ref)
                self._known[key] = None if found is None else ask(*found)
            except ReplyError:  # its window has closed: what else was recorded is told all the same
                self._known[key] = None
        return self._known[key]

    def _ask_for_class(self, node: SnapshotNode, window: SurveyedWindow) -> Optional[str]:
        by_class = locator(node.class_name)
        is_alone = count_of(self._app.connection, window.address, by_class) == 1
        return by_class.call if is_alone else None

    def _ask_for_all(self, node: SnapshotNode, window: SurveyedWindow) -> Optional[str]:
        if window.root is None:
            return None
        found = StableLocators(self._app.connection, window.address, window.root).of(node)
        return None if found is None else found.call


_RECORDING = "recording"


def _recording(app: App) -> _Recording:
    app.connection.require("+record")
    recording: Optional[_Recording] = app.companions.get(_RECORDING)
    if recording is None:
        recording = app.companions[_RECORDING] = _Recording(app)
    return recording


def is_recording(app: App) -> bool:
    """Whether the agent records for a page."""
    return _RECORDING in app.companions and bool(app.companions[_RECORDING].is_on)


def move_recording(before: App, after: App) -> None:
    """Has the recording of an application go on with the one that was started in its place."""
    recording: Optional[_Recording] = before.companions.pop(_RECORDING, None)
    if recording is not None:
        recording.go_on_with(after)
        after.companions[_RECORDING] = recording


def _command_of(app: App) -> Tuple[str, ...]:
    """The command that started it, with the name alone of a program that is found by that."""
    psutil = load_psutil()
    try:
        program, *arguments = psutil.Process(app.launched_pid).cmdline() or ["APP"]
    except psutil.Error:
        return ("APP",)
    name = os.path.basename(program)
    return (name if shutil.which(name) == program else program, *arguments)
