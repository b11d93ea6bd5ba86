"""An application under test."""

from __future__ import annotations

import time
from contextlib import suppress
from pathlib import Path
from typing import Callable, List, Optional, Tuple, Type, TypeVar

from ..errors import RETRYABLE_ERRORS, ApplicationEndedError, ConnectionClosed, QtDriverError, ReplyError
from ..launch.process import GRACE_SECONDS, Process
from ..lookup.explain import explain
from ..lookup.windows import MODAL, POPUP
from ..protocol.closing import ClosedOnLeaving
from ..protocol.connection import Connection
from ..protocol.locators import Address
from ..protocol.records import CursorWidget, WindowRecord
from ..protocol.waiting import Deadline, retry
from ..protocol.wire import Rect
from .clipboard import Clipboard
from .disconnection import EndWatch, ended_error
from .pictures import save_screenshot
from .steps import StepListener, run_step
from .window import Window

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

DEFAULT_WAIT = 5.0
"""Seconds that a call waits for its window and widget where nothing else is said."""

_LISTING_SECONDS = 1.0
_Result = TypeVar("_Result")


class App(ClosedOnLeaving):
    """A running application with the agent inside.

    A context manager: leaving it ends the application. Not for use by several threads at the same time.

    Windows and widgets are named, never held: each call looks them up anew. Calls that need a window or a widget wait,
    `timeout` seconds at most, until it is there, visible, the only one and not blocked by a popup or modal dialog;
    then they raise a ReplyError subclass that tells what there is instead. What waiting cannot mend, such as a value
    that the widget does not take, is a CommandError at once.

    An application that ended is an ApplicationEndedError; one that does not answer a request in time is ended and
    is an ApplicationHangsError.

    Attributes:
        connection: the twelve commands as they are, without waiting.
        process: what was started; None for an application that came by itself.
        timeout: seconds that a call waits where it is not told otherwise.
        display: the X display of the application, None for that of this process.
        listeners: are told of every step that begins or ends.
        end_is_known: whether the test knows that the application has ended: it has waited for that or ended it, or a call
            has raised.
    """

    def __init__(
        self,
        connection: Connection,
        process: Optional[Process] = None,
        *,
        timeout: float = DEFAULT_WAIT,
        display: Optional[str] = None,
    ) -> None:
        self.connection: Connection = connection
        self.process = process
        self.timeout = timeout
        self.display = display
        self.listeners: List[StepListener] = []
        self._listed = 0.0
        self.end_is_known: bool = False

    def __repr__(self) -> str:
        return f"app({self.pid})"

    @property
    def pid(self) -> int:
        """Id of the process in which the agent runs, as this process sees it.

        Where the system hides that process, it is what the agent said.
        """
        return self.connection.pid

    @property
    def launched_pid(self) -> int:
        """Id of the process that was started; it may be a wrapper. For an application that came by itself, `pid`."""
        return self.pid if self.process is None else self.process.pid

    def window(self, title: str = "", *, name: Optional[str] = None) -> Window:
        """The window whose title begins with `title`, or that has the object name `name`.

        There has to be exactly one visible window that fits; without arguments, the application's only one.
        """
        if name is None:
            return Window(self, title, f'window("{title}")')
        return Window(self, f"Widget:{name}", f'window(name="{name}")')

    def modal(self, title: str = "") -> Window:
        """The modal dialog that is in front, if its title begins with `title`."""
        return Window(self, f"{MODAL}:{title}" if title else MODAL, f'modal("{title}")')

    def popup(self) -> Window:
        """The open popup: a menu, or the list of a combo box."""
        return Window(self, POPUP, "popup()")

    def windows(self) -> Tuple[WindowRecord, ...]:
        """The visible windows as they are now."""
        return self.perform("windows()", self.connection.list_windows)

    def widget_at_cursor(self) -> Optional[CursorWidget]:
        """The widget under the mouse cursor, and how a test can address it; None where the application has none."""
        return self.perform("widget_at_cursor()", self.connection.identify_widget_at_cursor)

    def tray_icon(self, name: str, *, timeout: Optional[float] = None) -> Rect:
        """The rectangle, in pixels of the screen, of the tray icon with this object name."""
        return self.perform(
            f'tray_icon("{name}")', lambda: self.connection.locate_tray_icon(name), timeout=timeout
        )

    def screenshot(self, path: "Path | str") -> Path:
        """Saves a picture of the application's whole screen; the ending of `path` tells the format."""
        return save_screenshot(Path(path), self.display)

    @property
    def clipboard(self) -> Clipboard:
        """The text on the clipboard of the application's desktop: clipboard.get(), clipboard.set("text")."""
        return Clipboard(self)

    def perform(
        self,
        title: str,
        call: Callable[[], _Result],
        *,
        reads: bool = True,
        window: str = "",
        path: Address = "",
        timeout: Optional[float] = None,
        retryable: Tuple[Type[ReplyError], ...] = RETRYABLE_ERRORS,
    ) -> _Result:
        """Makes `call`, which talks to the agent, as one step with this title; it is repeated until it does not raise
        what can clear by itself, `retryable`, `timeout` seconds at most.

        `window` and `path` say what the call looks for, for the error message. `reads` says that it does not act.
        """
        deadline = Deadline(self.timeout if timeout is None else timeout)
        with run_step(self, title, reads) as step, self.watched():
            try:
                result = retry(call, retryable, deadline)
            except QtDriverError as error:
                if step is None:
                    raise  # the step that this one is part of may try again; it explains what is final
                told = (
                    self.explained(error, window, path, deadline.seconds)
                    if isinstance(error, ReplyError) and isinstance(error, retryable)
                    else error
                )
                raise told.with_traceback(None) from None
            if reads:
                self._list_windows()
            return result

    def _list_windows(self) -> None:
        """Keeps the list of the windows at hand that is told when the application hangs."""
        now = time.monotonic()
        if now - self._listed > _LISTING_SECONDS:
            self._listed = now
            with suppress(ConnectionClosed):  # the next request tells
                self.connection.list_windows()

    def explained(self, error: ReplyError, window: str, path: Address, seconds: float) -> ReplyError:
        """`error` with what there is instead of this widget of this window, after a wait of `seconds`."""
        if error.explanation:
            return error
        explanation = error.explain_later() if error.explain_later is not None else ""
        explanation = explanation or explain(self.connection, error, window, path)
        waited = f"waited {seconds:g} s"
        if path and error.code != "2":
            waited += f' in window "{window}"'
        words = "\n".join(filter(None, [waited, explanation]))
        return type(error)(error.code, error.message, words, error.candidates)

    def watched(self) -> EndWatch:
        """Turns the end or the silence of the application within it into an error that tells what happened."""
        return EndWatch(self)

    def wait_for_exit(self, timeout: Optional[float] = None) -> int:
        """Waits for the application to end by itself and answers its exit status, negative for a signal.

        Raises TimeoutError when it still runs after `timeout` seconds, and RuntimeError if it came by itself.
        """
        if self.process is None:
            raise RuntimeError("only the status of an application that was started here is known")
        seconds = self.timeout if timeout is None else timeout
        status = self.process.wait(seconds)
        if status is None:
            raise TimeoutError(f"process {self.process.pid} still runs after {seconds:g} seconds")
        self.end_is_known = True
        return status

    def unexpected_end(self) -> Optional[ApplicationEndedError]:
        """The error that a failed or crashed application is worth, if the test does not know of its end: it has not
        waited for it, not ended it, and no call of it has raised. None otherwise, and for one that came by itself.
        """
        status = None if self.process is None or self.end_is_known else self.process.status()
        return ended_error(self) if status else None

    def terminate(self, grace: float = GRACE_SECONDS) -> Optional[int]:
        """Closes the connection and ends the application and everything that was started for it.

        SIGTERM first, SIGKILL after `grace` seconds. Answers the exit status of the process that was started,
        negative for a signal. An application that came by itself only loses its connection, and None is answered.
        """
        self.end_is_known = True
        self.connection.close()
        return None if self.process is None else self.process.terminate(grace)

    def close(self) -> None:
        """As terminate()."""
        self.terminate()
