"""An application that is running, and what the model has seen of it."""

from __future__ import annotations

from typing import Dict, List, NamedTuple, Optional, Sequence, Tuple

from ..api.app import App
from ..api.found import FoundWidget
from ..api.window import Window
from ..errors import (
    AmbiguousWindowError,
    NotVisibleError,
    ReplyError,
    WidgetNotFoundError,
    WindowNotFoundError,
)
from ..lookup.near_names import nearest_names
from ..lookup.snapshot import SnapshotNode, headline_with_ref, walk_outline
from ..lookup.stable_locators import StableLocators
from ..lookup.survey import Survey, SurveyedWindow, take_survey
from ..protocol.locators import locator
from ..protocol.waiting import Deadline, attempts
from .answers import ToolError
from .changes import changes, is_same, title

_SETTLE_SECONDS = 0.25
"""How long an action may take to show a first effect, before it counts as one without."""

_MAX_CANDIDATES = 8
_MAX_REMEMBERED = 300
"""Widgets that are gone, or out of sight, of which it is known what they were."""

_TEXT_FIELDS = ("text", "label", "title", "action", "placeholder", "tip")


class Target(NamedTuple):
    """A widget that a tool is for.

    Attributes:
        node: as it was seen.
        window: the window that it is in.
        widget: finds exactly this widget.
    """

    node: SnapshotNode
    window: SurveyedWindow
    widget: FoundWidget

    def __str__(self) -> str:
        return f"{headline_with_ref(self.node)} in {title(self.window)}"


class Picture(NamedTuple):
    """Where the last picture was taken: its left and top on the screen, and how many pixels of the screen are one of it."""

    left: int
    top: int
    scale: float


class RunningApplication:
    """An application, from its launch to its end.

    Attributes:
        name: by which the client calls it.
        app: the application.
        command: the program and its arguments.
        survey: what it showed when it was last looked at.
        picture: the place of the last picture; None before the first.
    """

    def __init__(self, name: str, app: App, command: Sequence[str]) -> None:
        self.name = name
        self.app = app
        self.command: Tuple[str, ...] = tuple(command)
        self.survey = Survey(())
        self.picture: Optional[Picture] = None
        self._told = Survey(())
        self._seen: Dict[int, Tuple[SnapshotNode, SurveyedWindow]] = {}

    def __repr__(self) -> str:
        return f"<{self.name}: {self.app}>"

    def look(self) -> Survey:
        """Looks at all windows. Returns what they show, which is `survey` from now on."""
        with self.app.watched():
            self.survey = take_survey(self.app.connection, self.survey)
        gone = [ref for ref in self._seen if ref not in self.survey.found][-_MAX_REMEMBERED:]
        self._seen = {**{ref: self._seen[ref] for ref in gone}, **self.survey.found}
        return self.survey

    def window_of(self, window: SurveyedWindow) -> Window:
        """The window, to act on."""
        return Window(self.app, window.address, window.call)

    def changes_after_action(self, acted_on: Optional[int] = None) -> List[str]:
        """Waits until what an action has begun to show stays as it is. Returns the lines that tell what has changed.

        `acted_on` is the number of the widget of the action.
        """
        before = latest = self.survey
        for _ in attempts(Deadline(_SETTLE_SECONDS)):
            previous, latest = latest, self.look()
            if is_same(previous, latest) and not is_same(before, latest):
                break
        return self.changes_since_answer(acted_on)

    def changes_since_answer(self, acted_on: Optional[int] = None) -> List[str]:
        """The lines that tell what has changed since they were made last. They tell it once."""
        before, self._told = self._told, self.survey
        return changes(before, self.survey, acted_on)

    def mark_as_told(self) -> None:
        """Notes that the model sees all that was there at the last look."""
        self._told = self.survey

    def window(self, wanted: "int | str | None") -> SurveyedWindow:
        """The window of the last look with a number, or a title or name that begins so; None is the one in front.

        Raises ToolError where there is none.
        """
        survey = self.survey
        if wanted is None:
            found = survey.in_front()
            if found is None:
                raise ToolError(f"{self.name} shows no window at the moment: wait for one")
            return found
        fitting = [one for one in survey.windows if _fits_window(one, wanted)]
        exact = [one for one in fitting if one.record.title == wanted]
        if len(exact or fitting) == 1:
            return (exact or fitting)[0]
        if isinstance(wanted, int) and wanted in survey.found:
            return survey.found[wanted][1]
        many = f"{len(fitting)} windows begin" if fitting else "no window begins"
        raise ToolError(f"{many} with {wanted!r}; open are:\n{self.windows_in_lines()}")

    def window_seen(self, wanted: "int | str") -> Optional[SurveyedWindow]:
        """The window with a number or a title that was seen last, also if it is gone."""
        seen = (window for _, window in reversed(list(self._seen.values())))
        return next((window for window in seen if _fits_window(window, wanted)), None)

    def windows_in_lines(self) -> str:
        """A line for each window."""
        front = self.survey.in_front()
        lines = [self._window_line(window, window is front) for window in self.survey.windows]
        return "\n".join(lines) or "(no visible window)"

    @staticmethod
    def _window_line(window: SurveyedWindow, is_front: bool) -> str:
        if window.root is None:
            return f"{title(window)} (cannot be told from another window of that title)"
        notes = [word for word, fits in (("modal", window.record.modal), ("in front", is_front)) if fits]
        return f"[{window.root.ref}] {title(window)}" + (f" ({', '.join(notes)})" if notes else "")

    def target(self, wanted: "int | str", window: "int | str | None" = None) -> Target:
        """The widget with a reference number, or the one that shows a text or has a name.

        Args:
            wanted: the number, or the text.
            window: where to look for a text; by default in the window in front.

        Raises ToolError, which says what is there instead.
        """
        if isinstance(wanted, int):
            return self._by_ref(wanted)
        inside = self.window(window)
        assert inside.root is not None
        nodes = [node for node, _ in walk_outline(inside.root)]
        for fields in (("name",), _TEXT_FIELDS[:3], _TEXT_FIELDS[3:]):
            fitting = [node for node in nodes if any(node.details.get(field) == wanted for field in fields)]
            if len(fitting) == 1:
                return self._as_target(fitting[0], inside)
            if fitting:
                lines = "\n".join(map(headline_with_ref, fitting[:_MAX_CANDIDATES]))
                raise ToolError(
                    f"{len(fitting)} widgets have {wanted!r}; say which one by its number:\n{lines}"
                )
        raise ToolError(f"nothing in {title(inside)} shows {wanted!r}.{_nearest(wanted, nodes)}")

    def _by_ref(self, ref: int) -> Target:
        known = self.survey.found.get(ref) or self.look().found.get(ref)
        if known is not None and self._lives(known[1], ref):
            return self._as_target(*known)
        fresh = self.look()
        if ref in fresh.found:
            return self._as_target(*fresh.found[ref])
        if ref not in self._seen:
            raise ToolError(f"there is no widget [{ref}]: take a snapshot, which has the numbers")
        node, window = self._seen[ref]
        if self._lives(window, ref):
            around = _outermost_hidden(node, window, fresh)
            raise ToolError(f"{headline_with_ref(node)} is hidden at the moment{around}")
        raise ToolError(_stale(node, window, fresh))

    def _lives(self, window: SurveyedWindow, ref: int) -> bool:
        try:
            with self.app.watched():
                self.app.connection.read(window.address, locator(ref=ref), "className")
        except NotVisibleError:
            return True
        except (WidgetNotFoundError, WindowNotFoundError, AmbiguousWindowError):
            return False
        return True

    def _as_target(self, node: SnapshotNode, window: SurveyedWindow) -> Target:
        return Target(node, window, FoundWidget(self.window_of(window), locator(ref=node.ref)))

    def call_for_test(self, target: Target) -> Optional[str]:
        """The call on the window that finds the widget alone in a test; empty for the window, None where nothing does."""
        root = target.window.root
        if root is None or target.node.ref == root.ref:
            return ""
        try:
            with self.app.watched():
                found = StableLocators(self.app.connection, target.window.address, root).of(target.node)
        except ReplyError:
            return None  # the window is gone
        return None if found is None else found.call


def _fits_window(window: SurveyedWindow, wanted: "int | str") -> bool:
    if window.root is None:
        return False
    if isinstance(wanted, int):
        return window.root.ref == wanted
    return window.root.name == wanted or window.record.title.startswith(wanted)


def _outermost_hidden(node: SnapshotNode, window: SurveyedWindow, fresh: Survey) -> str:
    """Which widget around it is hidden as well."""
    if window.root is None or window.root.ref not in fresh.found:
        return f", as its window {title(window)} is"
    way = way_to(window.root, node.ref)
    hidden = next((one for one in way[:-1] if one.ref not in fresh.found), None)
    return "" if hidden is None else f", as all in {headline_with_ref(hidden)}"


def way_to(root: SnapshotNode, ref: int) -> List[SnapshotNode]:
    """The widgets from a root to the one with a reference number; none where that is not in it."""
    if root.ref == ref:
        return [root]
    for child in root.children:
        way = way_to(child, ref)
        if way:
            return [root, *way]
    return []


def _stale(node: SnapshotNode, window: SurveyedWindow, fresh: Survey) -> str:
    words = f"[{node.ref}] is gone: it was {headline_with_ref(node)} in {title(window)}."
    now = [other for other, _ in fresh.found.values() if other.role == node.role and _is_like(other, node)]
    if now:
        return f"{words} In its place:\n" + "\n".join(map(headline_with_ref, now[:_MAX_CANDIDATES]))
    nodes = [other for one in fresh.windows if one.root for other, _ in walk_outline(one.root)]
    shown = _shown(node)
    return words + (_nearest(shown, nodes) if shown else " Take a snapshot.")


def _is_like(node: SnapshotNode, other: SnapshotNode) -> bool:
    if other.name:
        return node.name == other.name
    return any(
        other.details.get(field) and node.details.get(field) == other.details[field] for field in _TEXT_FIELDS
    )


def _shown(node: SnapshotNode) -> str:
    return next(
        (str(node.details[field]) for field in (*_TEXT_FIELDS, "name") if node.details.get(field)), ""
    )


def _nearest(wanted: str, nodes: Sequence[SnapshotNode]) -> str:
    by_text = {text: node for node in nodes for text in (_shown(node), node.name) if text}
    near = nearest_names(wanted, list(by_text))
    if not near:
        return " Take a snapshot."
    lines = dict.fromkeys(headline_with_ref(by_text[text]) for text in near)
    return " The nearest:\n" + "\n".join(list(lines)[:_MAX_CANDIDATES])
