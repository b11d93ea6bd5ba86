"""Records the steps of one test: requests, pictures of the screen, widgets."""

from __future__ import annotations

import hashlib
import time
import zlib
from collections import deque
from contextlib import contextmanager
from dataclasses import dataclass
from pathlib import Path
from typing import Deque, Dict, Iterator, List, Optional

from ..api.app import App
from ..api.steps import StepListener
from ..desktop.screen_process import SCREENS, Pending, display_name
from ..desktop.screenshots import KEPT_BYTES, SavedPicture
from ..errors import PictureError
from ..errors.internal import TooSlow
from ..protocol.secrets import Secrets
from ..protocol.transcript import Comparison, Exchange, Step
from .trace import OutputLine, Place, RecordedStep, Trace
from .widgets import WidgetLister, place_of

KEPT_STEPS = 2000
"""The number of steps that are kept of a test; older ones are dropped."""

MAX_PICTURE_AGE = 0.05
"""Seconds. A picture that is not older serves as the picture before the next step."""

PAINT_SECONDS = 0.01
"""Qt paints a change 5 ms later, with all that changes meanwhile; the picture after a step waits for as much again."""

_KEPT_NOTES = 20


@dataclass
class _Entry:
    """A step, with the pictures around it, the key of the widgets after it, and the place of the widget it is about."""

    app: App
    step: Step
    before: Optional[Pending]
    after: Optional[Pending]
    widgets: str
    place: Optional[Place] = None


class Recorder(StepListener):
    """Records the steps of a test from its creation to close(). Add it to the listeners of a driver.

    An acting step has a picture of the screen before and after it, and the widgets after it; a step that only reads has
    the picture after it, and the widgets if it failed. An application that has not answered a request is asked nothing
    more. An error of the recorder becomes a note in the trace, and does not fail the test.
    """

    def __init__(self, folder: Path, *, screenshots: bool = True, kept_bytes: int = KEPT_BYTES) -> None:
        """Begins to record.

        Args:
            folder: for the trace, if it is kept; it need not exist.
            screenshots: whether to take pictures.
            kept_bytes: the memory that the pictures may take; the oldest ones are dropped first.
        """
        self._folder = folder
        self._began = time.monotonic()
        self._began_at = time.time()
        self._entries: Deque[_Entry] = deque(maxlen=KEPT_STEPS)
        self._forgotten = 0
        self._notes: List[str] = []
        self._kept_bytes = kept_bytes
        self._store = SCREENS.new_store()
        self._screenshots = screenshots
        if screenshots:
            SCREENS.start()
        self._latest: Dict[str, Pending] = {}
        self._before: Optional[Pending] = None
        self._place: Optional[Place] = None
        self._listers: Dict[int, WidgetLister] = {}
        self._trees: Dict[str, bytes] = {}
        self._closed = False
        self._pictures_later = False

    def step_started(self, app: App, step: Step) -> None:
        """Takes the picture before a step that acts, unless the last one is new enough."""
        self._before = self._place = None
        if not step.reads and not self._closed:
            with self._noting("no picture before a step"):
                self._before = self._picture_before(app)
            self._place = place_of(app, step)
            with self._noting("no picture before a step"):
                self._wait_for(self._before)

    def step_ended(self, app: App, step: Step) -> None:
        """Adds the step, with the widgets and the picture after it."""
        if self._closed:
            return
        entry = _Entry(app, step, self._before, None, "", self._place)
        self._before = self._place = None
        if len(self._entries) == KEPT_STEPS:
            self._forgotten += 1
        self._entries.append(entry)
        with self._noting("no picture after a step"):
            entry.after = self._picture_after(app)
        # Listing the widgets takes as long as the application may need to paint itself: the picture is taken meanwhile.
        if step.error or not step.reads:
            began = time.monotonic()
            with self._noting("the widgets could not be listed"):
                entry.widgets = self._widgets(app, step.exchanges)
            if entry.widgets and time.monotonic() - began > PAINT_SECONDS:
                # Until now the application was busy, or the machine: the picture may be from before it has painted itself.
                with self._noting("no picture after a step"):
                    entry.after = self._order(app, PAINT_SECONDS)
            # Nothing but the listing tells whether the application answers.
            entry.place = entry.place or place_of(app, step, asks_agent=bool(entry.widgets))

    def close(self, *, keep: bool, pictures_later: bool = False) -> None:
        """Ends the recording. Closing twice is harmless.

        Args:
            keep: whether to write the trace and its pictures into the folder.
            pictures_later: whether to write the pictures while the caller goes on; `SCREENS.finish()` waits for them.

        Raises OSError when the folder cannot be written.
        """
        if self._closed:
            return
        if keep:
            self._attach_final_widgets()
        self._closed = True
        self._pictures_later = pictures_later
        if keep:
            self._folder.mkdir(parents=True, exist_ok=True)
            self._trace().write(self._folder)
        self._entries.clear()
        SCREENS.forget(self._store)
        self._trees.clear()

    def _attach_final_widgets(self) -> None:
        """Adds the widgets at the end of the test to the last step.

        An assertion on a value that the test has read before fails without a step of its own.
        """
        if not self._entries:
            return
        entry = self._entries[-1]
        if entry.widgets or _has_ended(entry.app):
            return
        with self._noting("the widgets could not be listed at the end"):
            entry.widgets = self._widgets(entry.app, entry.step.exchanges)

    @contextmanager
    def _noting(self, what: str) -> Iterator[None]:
        """A context in which an error becomes a note in the trace, once."""
        try:
            yield
        except Exception as error:  # whatever it is: a test does not fail because it is recorded
            self._note(f"{what}: {str(error) or type(error).__name__}")

    def _note(self, note: str) -> None:
        if note not in self._notes and len(self._notes) < _KEPT_NOTES:
            self._notes.append(note)

    def _picture_before(self, app: App) -> Optional[Pending]:
        """The screen as it is now, or was a moment ago. Does not wait until the picture is taken."""
        latest = self._latest.get(display_name(app.display))
        if (
            latest is not None
            and latest.is_done()
            and time.monotonic() - latest.answered_at > MAX_PICTURE_AGE
        ):
            latest = None
        return latest or self._order(app, 0.0)

    def _wait_for(self, picture: Optional[Pending]) -> None:
        """Waits until the picture is taken. Raises PictureError, once."""
        if picture is None or not self._screenshots:
            return
        try:
            picture.wait()
        except PictureError:
            # There is no screen, or it does not answer: asking again would cost time.
            self._screenshots = False
            raise

    def _picture_after(self, app: App) -> Optional[Pending]:
        """The screen as it will be when the application has painted itself. Does not wait."""
        latest = self._latest.get(display_name(app.display))
        if self._screenshots and latest is not None and not latest.is_done():
            return latest
        return self._order(app, PAINT_SECONDS)

    def _order(self, app: App, delay: float) -> Optional[Pending]:
        if not self._screenshots:
            return None
        picture = SCREENS.grab(display_name(app.display), self._store, self._kept_bytes, delay)
        self._latest[picture.display] = picture
        return picture

    def _widgets(self, app: App, exchanges: List[Exchange]) -> str:
        """Keeps the text that lists the widgets. Returns its key; empty when the application cannot be asked."""
        last = (exchanges or app.connection.transcript.exchanges())[-1:]
        if (last and last[0].error) or _has_ended(app):
            return ""
        lister = self._listers.setdefault(id(app.connection), WidgetLister(app.connection))
        try:
            text = lister.list()
        except TooSlow as error:
            self._note(f"process {app.pid}: {error}")
            return ""
        if not text:
            return ""
        data = text.encode("utf-8", "backslashreplace")
        key = hashlib.sha1(data).hexdigest()[:20]
        if key not in self._trees:
            self._trees[key] = zlib.compress(data, 1)
        return key

    def _save_pictures(self) -> Dict[int, SavedPicture]:
        """The files of the pictures by their numbers. Notes what is missing."""
        pictures = [picture for entry in self._entries for picture in (entry.before, entry.after) if picture]
        if not pictures:
            return {}
        for picture in dict.fromkeys(pictures):
            with self._noting("no picture after a step"):
                self._wait_for(picture)
        with self._noting("the pictures could not be saved"):
            saved = SCREENS.save(self._store, self._folder, pictures, later=self._pictures_later)
            if saved.dropped:
                self._note(f"the {saved.dropped} oldest pictures were dropped to save memory")
            if saved.problem:
                self._note(f"pictures that were taken could not be kept: {saved.problem}")
            return saved.files
        return {}

    def _save_comparison(self, comparison: Optional[Comparison]) -> Dict[str, str]:
        """The files of pictures that a step has compared, by the kind of each."""
        files: Dict[str, str] = {}
        for kind, data in ({} if comparison is None else vars(comparison)).items():
            if data:
                files[kind] = f"{hashlib.sha1(data).hexdigest()[:20]}.png"
                (self._folder / files[kind]).write_bytes(data)
        return files

    def _hide_passwords(self, secrets: Secrets) -> None:
        for entry in self._entries:  # a text that was typed in vain at first may be a password
            entry.step.title = secrets.hide(entry.step.title)
            entry.step.action = secrets.hide(entry.step.action)
            entry.step.error = secrets.hide(entry.step.error)

    def _note_what_is_missing(self) -> None:
        if self._forgotten:
            self._note(f"the first {self._forgotten} steps were dropped: the last {KEPT_STEPS} are kept")
        for entry in self._entries:
            for refusal in entry.app.connection.transcript.refusals:
                self._note(f"refused before process {entry.app.pid} came: {refusal}")

    def _trace(self) -> Trace:
        saved = self._save_pictures()
        self._note_what_is_missing()

        def name(picture: Optional[Pending]) -> str:
            return saved[picture.number].name if picture is not None and picture.number in saved else ""

        apps = list({id(entry.app): entry.app for entry in self._entries}.values())
        secrets = Secrets.of_all(app.connection.secrets for app in apps)
        self._hide_passwords(secrets)
        steps = [
            RecordedStep(
                entry.step,
                entry.app.pid,
                name(entry.before),
                name(entry.after),
                entry.widgets,
                entry.place,
                self._save_comparison(entry.step.comparison),
            )
            for entry in self._entries
        ]
        wanted = {entry.widgets for entry in self._entries}
        trees = {key: zlib.decompress(data).decode() for key, data in self._trees.items() if key in wanted}
        seconds = time.monotonic() - self._began
        return Trace(
            self._began,
            self._began_at,
            seconds,
            steps,
            trees,
            self._notes,
            _output_of(apps),
            dict(saved.values()),
            secrets,
        )


def _output_of(apps: List[App]) -> List[OutputLine]:
    lines = [
        OutputLine(at, app.pid, stream, text)
        for app in apps
        if app.process is not None
        for stream, tail in (("stdout", app.process.output), ("stderr", app.process.errors))
        for at, text in tail.timed_lines()
    ]
    return sorted(lines, key=lambda line: line.at)


def _has_ended(app: App) -> bool:
    return app.process is not None and app.process.status() is not None
