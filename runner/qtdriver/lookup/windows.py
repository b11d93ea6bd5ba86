"""The windows of an application: their names in requests, the walk over all of them, and their description."""

from __future__ import annotations

import re
from dataclasses import dataclass
from typing import Iterable, Iterator, List, Optional, Sequence, Tuple

from ..errors import ProtocolError, QtDriverError, ReplyError, WindowNotFoundError
from ..protocol.connection import Connection
from ..protocol.records import WidgetRecord, WindowRecord
from ..protocol.transcript import Exchange
from ..protocol.wire import Reply

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

POPUP = "Widget:ActivePopupWidget"
MODAL = "Widget:ActiveModalWidget"
OBJECT_NAME = "Widget:"

_CERTAIN = re.compile(r"[^,\n\r?]*")


@dataclass(frozen=True)
class WindowWidgets:
    """A window with its widgets.

    Attributes:
        record: the window.
        address: its name in a request; empty where no name finds only this window.
        widgets: the window itself and all widgets in it, each parent before its children; none after an error.
        error: the reason why they could not be listed.
    """

    record: WindowRecord
    address: str = ""
    widgets: Tuple[WidgetRecord, ...] = ()
    error: Optional[QtDriverError] = None


def walk_windows(
    connection: Connection, windows: Optional[Iterable[WindowRecord]] = None
) -> Iterator[WindowWidgets]:
    """Yields every visible window with its widgets, which are listed window by window.

    Args:
        connection: asks the application.
        windows: the windows, if they have been listed already.

    Raises the errors of listing the windows. An error of listing the widgets of one window is in its `error`, also where
    the application does not answer or has ended.
    """
    for record in connection.list_windows() if windows is None else windows:
        try:
            yield _widgets_of(connection, record)
        except QtDriverError as error:
            yield WindowWidgets(record, error=error)


def _widgets_of(connection: Connection, record: WindowRecord) -> WindowWidgets:
    refusal: ReplyError = WindowNotFoundError("2", f"no request names the window ({record.title}) alone")
    for address in reversed(list(_addresses(record))):
        try:
            widgets = connection.window_tree(address)
        except ReplyError as error:
            refusal = error
            continue
        if widgets and widgets[0].class_name == record.class_name:
            return WindowWidgets(record, address, widgets)
    raise refusal


def _addresses(record: WindowRecord) -> Iterator[str]:
    """Names of the window in a request, the best last: several windows can have a title, and popups have none."""
    beginning = certain_beginning(record.title)
    yield beginning  # an empty one finds the only window of an application
    if record.modal:
        yield f"{MODAL}:{beginning}" if beginning else MODAL
    elif not record.title:
        yield POPUP


def certain_beginning(title: str) -> str:
    """The beginning of a title in a reply that can name the window in a request.

    Titles in requests cannot contain commas and line breaks, and replies have "?" for characters beyond U+00FF.
    """
    match = _CERTAIN.match(title)
    beginning = match[0] if match else ""
    return OBJECT_NAME[:-1] if beginning.startswith(OBJECT_NAME) else beginning


def describe_windows(windows: Optional[Iterable[WindowRecord]]) -> List[str]:
    """A line for each window, indented. One line says so where there are none, or where they are None: not listed yet."""
    if windows is None:
        return ["  (nobody had asked for them)"]
    lines = [f'  "{window.title}" ({_kind(window)})' for window in windows]
    return lines or ["  (no visible window)"]


def _kind(window: WindowRecord) -> str:
    return f"{window.class_name}, modal" if window.modal else window.class_name


def last_windows(exchanges: Sequence[Exchange]) -> Optional[List[WindowRecord]]:
    """The windows of the last listing in a transcript; None if there is no listing."""
    for exchange in reversed(exchanges):
        if exchange.request == "1" and exchange.reply is not None:
            return _parse(exchange.reply)
    return None


def _parse(line: str) -> List[WindowRecord]:
    windows = []
    try:
        items = Reply.parse(line).value()
        for item in items if isinstance(items, tuple) else ():
            windows.append(WindowRecord.parse(item))
    except (ProtocolError, ReplyError):
        pass  # the transcript cuts long replies: what is whole is told
    return windows
