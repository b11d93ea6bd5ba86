"""An application under test."""

from __future__ import annotations

import os
import time
from contextlib import suppress
from pathlib import Path
from typing import Any, Callable, ClassVar, Dict, List, Optional, Tuple, Type, TypeVar

from ..crashes.stacks import Stacks, stacks_of_process
from ..errors import (
    RETRYABLE_ERRORS,
    ApplicationEndedError,
    ConnectionClosed,
    PauseError,
    QtDriverError,
    ReplyError,
)
from ..errors.internal import NoReplyYet
from ..launch.dlls import windows_path
from ..launch.process import GRACE_SECONDS, Process
from ..lookup.explain import explain
from ..lookup.windows import MODAL, POPUP
from ..protocol.closing import ClosedOnLeaving
from ..protocol.connection import Connection
from ..protocol.locators import Address, Locator
from ..protocol.records import CursorWidget, WindowRecord
from ..protocol.waiting import Deadline, retry
from ..protocol.wire import Rect
from ..surroundings.look import Look
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

    It is a context manager: leaving it ends the application. It belongs to one thread.

    Windows and widgets are named, never held: each call looks them up anew. Calls that need a window or a widget wait,
    `timeout` seconds at most, until it is there, visible, the only one and not blocked by a popup or modal dialog;
    then they raise a ReplyError subclass that says what there is instead. A refusal that waiting cannot clear, such as a
    value that the widget does not take, is a CommandError at once.

    Every call raises ApplicationEndedError when the application has ended, and ApplicationHangsError when it does not
    answer a request in time; the runner then ends it.

    Attributes:
        connection: the twelve commands as they are, without waiting.
        process: the process that was started; None for an application that came by itself.
        timeout: seconds that calls wait unless they are given another time.
        display: the X display of the application, None for that of this process.
        look: its Qt, style and platform, by which picture snapshots are told apart.
        listeners: the StepListeners that are notified of every step that begins or ends.
        companions: what other packages keep as long as the application, each under a name of its own.
        end_is_known: whether the test knows that the application has ended: the test has waited for that or ended it, or
            a call has raised an error for it.
    """

    pauser: ClassVar[Optional[Callable[["App"], None]]] = None
    """Pauses a test. The package qtdriver sets it: pages are no matter of this package."""

    def __init__(
        self,
        connection: Connection,
        process: Optional[Process] = None,
        *,
        timeout: float = DEFAULT_WAIT,
        display: Optional[str] = None,
        look: Look = Look(),
    ) -> None:
        self.connection: Connection = connection
        self.process = process
        self.timeout = timeout
        self.display = display
        self.look = look
        self.listeners: List[StepListener] = []
        self.companions: Dict[str, Any] = {}
        self._listed = 0.0
        self._stacks: Optional[Stacks] = None
        self.end_is_known: bool = False

    def __repr__(self) -> str:
        return f"app({self.pid})"

    @property
    def pid(self) -> int:
        """Id of the process in which the agent runs, as this process sees it; the agent's own where the system hides it."""
        return self.connection.pid

    @property
    def launched_pid(self) -> int:
        """Id of the process that was started; it may be a wrapper. For an application that came by itself, `pid`."""
        return self.pid if self.process is None else self.process.pid

    def window(self, title: str = "", *, name: Optional[str] = None) -> Window:
        """The one visible window with a title or an object name; without arguments, the application's only one.

        Args:
            title: the beginning of its title.
            name: its object name, in place of the title.

        Example: app.window("Untitled").button("Save").click()
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

    def pause(self) -> None:
        """Pauses the test, and opens a page with the application, the source of the test and a console, until you go on there.

        Raises PauseError, rather than to hang, where nobody is there: in CI, without a terminal, in one of several workers.
        """
        if App.pauser is None:
            raise PauseError("nothing here pauses a test: import qtdriver")
        App.pauser(self)

    def windows(self) -> Tuple[WindowRecord, ...]:
        """The visible windows as they are now."""
        return self.perform("windows()", self.connection.list_windows)

    def widget_at_cursor(self) -> Optional[CursorWidget]:
        """The widget under the mouse cursor, and how a test can address it; None where the application has none."""
        return self.perform("widget_at_cursor()", self.connection.identify_widget_at_cursor)

    def tray_icon(self, name: str, *, timeout: Optional[float] = None) -> Rect:
        """The rectangle of a tray icon, in pixels of the screen.

        Args:
            name: the icon's object name.
            timeout: seconds to wait for it.

        Raises CommandError when the desktop does not tell where the icon is.
        """
        return self.perform(
            f'tray_icon("{name}")', lambda: self.connection.locate_tray_icon(name), timeout=timeout
        )

    def file_name(self, path: "Path | str") -> str:
        """How the application names a file of this machine: under Wine, the files of Linux are on drive Z.

        A relative path stays as it is.
        """
        if self.process is None or not self.process.under_wine or not os.path.isabs(path):
            return str(path)
        return windows_path(Path(path))

    def screenshot(self, path: "Path | str") -> Path:
        """Saves a picture of the application's whole screen.

        Args:
            path: the file; its ending is the format, such as ".png".

        Returns `path`. Raises PictureError without a display or Pillow.
        """
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
        target: Optional[Locator] = None,
    ) -> _Result:
        """Makes a call that talks to the agent as one step, and repeats it while its error can clear by itself.

        Args:
            title: names the step in reports.
            call: makes the requests.
            reads: whether the call only reads; False for one that acts on the application.
            window: the window that the call looks for, for the error message.
            path: the widget that it looks for.
            timeout: seconds to repeat it, by default those of the application.
            retryable: the errors that can clear.
            target: finds the widget that the call is about, for the picture of the step.

        Returns what `call` returns. Raises the last error, with an explanation.
        """
        deadline = Deadline(self.timeout if timeout is None else timeout)
        with run_step(self, title, reads=reads, window=window, target=target) as step, self.watched():
            try:
                result = retry(call, retryable, deadline)
            except QtDriverError as error:
                if step is None:
                    raise  # this step is part of another one, which may repeat it, and explains its last error
                final = (
                    self.explained(error, window, path, deadline.seconds)
                    if isinstance(error, ReplyError) and isinstance(error, retryable)
                    else error
                )
                raise final.with_traceback(None) from None
            if reads:
                self._list_windows()
            return result

    def _list_windows(self) -> None:
        """Lists the windows, once a second at most: the error of an application that hangs quotes the last list."""
        now = time.monotonic()
        if now - self._listed > _LISTING_SECONDS:
            self._listed = now
            with suppress(ConnectionClosed, NoReplyYet):  # the next request raises it
                self.connection.list_windows()

    def explained(self, error: ReplyError, window: str, path: Address, seconds: float) -> ReplyError:
        """The error with an explanation: how long the call waited, and what there is instead of the widget or window."""
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
        """A context in which the end or the silence of the application becomes an error that says what happened."""
        return EndWatch(self)

    def stacks(self, *, hangs: bool = False) -> Optional[Stacks]:
        """The stacks of the application's threads, once it has crashed, or was found to hang; None otherwise.

        Args:
            hangs: whether it has just been found to hang, and is still there to be looked at.
        """
        if self._stacks is None and self.process is not None:
            self._stacks = self.process.crash()
        if self._stacks is None and hangs and self.connection.process is not None:
            self._stacks = stacks_of_process(self.connection.process)
        return self._stacks

    def wait_for_exit(self, timeout: Optional[float] = None) -> int:
        """Waits for the application to end by itself.

        Args:
            timeout: seconds to wait, by default those of the application.

        Returns its exit status, negative for a signal. Raises TimeoutError when it still runs then, and RuntimeError for
        an application that was not started here.
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
        """The error for an application that crashed or ended with an error status without the test knowing (end_is_known).

        None otherwise, and for an application that was not started here.
        """
        status = None if self.process is None or self.end_is_known else self.process.status()
        return ended_error(self) if status else None

    def terminate(self, grace: float = GRACE_SECONDS) -> Optional[int]:
        """Closes the connection and ends the application with everything that it started.

        Args:
            grace: seconds from SIGTERM to SIGKILL.

        Returns the exit status of the process that was started, negative for a signal. An application that was not
        started here only loses its connection; then it is None.
        """
        self.end_is_known = True
        self.connection.close()
        return None if self.process is None else self.process.terminate(grace)

    def close(self) -> None:
        """As terminate()."""
        self.terminate()
