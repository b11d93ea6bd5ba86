"""All windows of an application with all that they show, at one moment."""

from __future__ import annotations

import re
from dataclasses import dataclass
from typing import Dict, Iterator, List, Mapping, Optional, Sequence, Tuple

from ..errors import ReplyError
from ..protocol.connection import Connection
from ..protocol.locators import as_python
from ..protocol.records import WindowRecord
from .snapshot import SnapshotNode
from .windows import MODAL, OBJECT_NAME, POPUP, certain_beginning

_PLAIN = re.compile(r"(?!qt_|_q_)[\w.-]+", re.ASCII)
_TOOL_TIP = "QTipLabel"


@dataclass(frozen=True)
class SurveyedWindow:
    """A window that is open.

    Attributes:
        record: as the agent lists it.
        address: what finds this window alone in a request; empty where nothing does, or where it is the only one.
        root: all that it shows; None where no request can name it.
    """

    record: WindowRecord
    address: str
    root: Optional[SnapshotNode]

    @property
    def call(self) -> str:
        """The call on the application by which a test names the window."""
        if self.address == POPUP:
            return "popup()"
        if self.address == MODAL:
            return "modal()"
        if self.address.startswith(f"{MODAL}:"):
            return f"modal({as_python(self.address[len(MODAL) + 1 :])})"
        if self.address.startswith(OBJECT_NAME):
            return f"window(name={as_python(self.address[len(OBJECT_NAME) :])})"
        return f"window({as_python(self.address)})" if self.address else "window()"


class Survey:
    """All windows of an application at one moment.

    Attributes:
        windows: its visible windows but for tool tips.
    """

    def __init__(self, windows: Sequence[SurveyedWindow]) -> None:
        self.windows: Tuple[SurveyedWindow, ...] = tuple(windows)
        self._found: Optional[Dict[int, Tuple[SnapshotNode, SurveyedWindow]]] = None

    def __repr__(self) -> str:
        return f"<survey of {len(self.windows)} windows>"

    @property
    def found(self) -> Mapping[int, Tuple[SnapshotNode, SurveyedWindow]]:
        """The widgets by their reference numbers, each with its window."""
        if self._found is None:
            self._found = {
                node.ref: (node, window)
                for window in self.windows
                if window.root is not None
                for node in window.root.walk()
            }
        return self._found

    def in_front(self) -> Optional[SurveyedWindow]:
        """The window that a user would act on: the open popup, else the modal dialog, else the one with the focus."""
        for fits in (_is_popup, _is_modal, _has_focus):
            window = next((one for one in reversed(self.windows) if fits(one)), None)
            if window is not None:
                return window
        return next((window for window in self.windows if window.root is not None), None)


def take_survey(connection: Connection, before: Optional[Survey] = None) -> Survey:
    """Looks at all windows. `before` helps to find those again whose title alone does not tell them apart."""
    records = [one for one in connection.list_windows() if one.class_name != _TOOL_TIP]
    known = {(one.record.class_name, one.record.title): one.address for one in (before or Survey(())).windows}
    found = [_look(connection, record, known) for record in records]
    names = [window.root.name for window in found if window.root is not None]
    return Survey([_named(window, names) for window in found])


def _look(
    connection: Connection, record: WindowRecord, known: Mapping[Tuple[str, str], str]
) -> SurveyedWindow:
    for address in _addresses(record, known):
        try:
            root = SnapshotNode.of(connection.snapshot(address))
        except ReplyError:
            continue
        if root.class_name == record.class_name:
            return SurveyedWindow(record, address, root)
    return SurveyedWindow(record, "", None)


def _addresses(record: WindowRecord, known: Mapping[Tuple[str, str], str]) -> Iterator[str]:
    beginning = certain_beginning(record.title)
    if not record.title:
        yield POPUP
    if (record.class_name, record.title) in known:
        yield known[record.class_name, record.title]
    if record.modal:
        yield f"{MODAL}:{beginning}" if beginning else MODAL
    yield beginning


def _named(window: SurveyedWindow, names: List[str]) -> SurveyedWindow:
    """The window by its object name, which is more stable than its title, if only this one has it."""
    root = window.root
    if (
        root is None
        or window.address == POPUP
        or not _PLAIN.fullmatch(root.name)
        or names.count(root.name) > 1
    ):
        return window
    return SurveyedWindow(window.record, f"{OBJECT_NAME}{root.name}", root)


def _is_popup(window: SurveyedWindow) -> bool:
    return window.address == POPUP


def _is_modal(window: SurveyedWindow) -> bool:
    return window.record.modal and window.root is not None


def _has_focus(window: SurveyedWindow) -> bool:
    return window.root is not None and any("focused" in node.states for node in window.root.walk())
