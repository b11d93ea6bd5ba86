"""A widget of an application."""

from __future__ import annotations

from contextlib import suppress
from typing import TYPE_CHECKING, Callable, Dict, Optional, Sequence, Tuple, Type, TypeVar

from ..errors import (
    RETRYABLE_ERRORS,
    RETRYABLE_LOOKUPS,
    AmbiguousError,
    NotVisibleError,
    ReplyError,
    WidgetNotFoundError,
)
from ..lookup.item_names import with_item_suggestions
from ..lookup.snapshot import Snapshot, SnapshotNode
from ..lookup.visible_texts import Search
from ..protocol.connection import Connection
from ..protocol.wire import Argument, Value
from ..protocol.locators import Address, Locator, as_locator, raw_locator
from .finding import Finder
from .keys import WidgetInput
from .mouse import RETRYABLE_KINDS, Modifier, MouseButton, Position, mouse_command, repeatable
from ..lookup.refusals import refuse_without_editor
from .values import WidgetValues
from .verbs import Verbs

if TYPE_CHECKING:
    from .found import FoundWidget
    from .window import Window

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_Result = TypeVar("_Result")


class Widget(Finder, Verbs, WidgetInput, WidgetValues):
    """The name of a widget: each call finds the widget anew, and waits until it is visible and the only one.

    What acts on it also waits until a user could: until it is enabled, at rest, in sight in its window, and not covered,
    and until the item is there that the call names. Then it is a NotReadyError with the reason. `force` leaves that out:
    the input goes to whatever is at the place, and a disabled widget or a missing item is a CommandError at once. So it is
    in an application whose agent has no extensions, and of a window's focus_widget().

    `timeout` of the methods is how many seconds they wait, by default as long as the application says.

    Attributes:
        window: the window that it is in.
        path: its name, with names of ancestors in front where it takes them; or a locator.
        as_class: the base class to be served as; empty for the nearest that the agent knows.
    """

    def __init__(
        self,
        window: "Window",
        path: Address,
        *,
        as_class: str = "",
        search: Optional[Search] = None,
        title: str = "",
    ) -> None:
        """`search` finds it where no visible widget has that path, or where that is empty. `title` is how messages call it within its window."""
        self.window = window
        self.path = path
        self.as_class = as_class
        self._search = search
        self._title = title or (path.call if isinstance(path, Locator) else f'widget("{path}")')

    def __repr__(self) -> str:
        return f"{self.window}.{self.call()}"

    def call(self) -> str:
        """The call on the window that makes it, as messages and reports show it."""
        return self._title

    def as_locator(self) -> Locator:
        """The locator that finds it, for the agent's extensions."""
        if self._search is not None:
            return self._search.locator
        return as_locator(self.path)

    def find_by(self, found: "Locator | str") -> "FoundWidget":
        inner = found if isinstance(found, Locator) else raw_locator(found)
        return self.window.find_by(inner.within(self.as_locator()))

    def activate(
        self,
        value: Argument = None,
        option: Argument = None,
        *,
        force: bool = False,
        timeout: Optional[float] = None,
    ) -> str:
        """Does what the widget is for: presses a button, chooses an item, a tab, a page.

        The widget's class decides what `value` and `option` mean. Answers the class that served the widget.
        """
        shown = [repr(argument) for argument in (value, option) if argument is not None]
        connection, address = self._connection, self.window.address

        def act(path: Address) -> str:
            return with_item_suggestions(
                connection,
                address,
                path,
                value,
                lambda: connection.activate_widget(
                    address, path, value, option, widget_class=self.as_class, force=force
                ),
                self.as_class,
            )

        return self._act(f"activate({_listed(shown, force)})", act, timeout, force=force)

    def check(self, on: bool = True, *, force: bool = False, timeout: Optional[float] = None) -> None:
        """Clicks a check box, or another button that can be checked, if it is not in that state."""
        self.activate(on, force=force, timeout=timeout)

    def select(self, item: "str | int", *, force: bool = False, timeout: Optional[float] = None) -> None:
        """Chooses an item of a list, tree, table, combo box, tab bar or tool box, once it is there.

        By its text, its number as the class counts, or its address: see the module `addresses`.
        """
        self.activate(item, force=force, timeout=timeout)

    def enter(
        self, value: "str | int | bool", *, force: bool = False, timeout: Optional[float] = None
    ) -> str:
        """Replaces what the widget holds, with the keyboard: "Ada\\n" types Ada and presses Return.

        In item views it edits the current item. A text for a list, tree or table whose edit triggers open no editor for
        it is a NoEditorError, since the keys would do other things; `force` sends them nevertheless, for an application
        that opens editors by itself, or has one open. Answers the class that served the widget.
        """
        connection, address = self._connection, self.window.address

        def act(path: Address) -> str:
            if not force:
                refuse_without_editor(connection, address, path, value, self.as_class)
            return connection.enter_widget(address, path, value, widget_class=self.as_class, force=force)

        return self._act(f"enter({_listed([repr(value)], force)})", act, timeout, force=force)

    def click(
        self,
        button: MouseButton = "left",
        *,
        at: Optional[Position] = None,
        modifier: Modifier = "",
        force: bool = False,
        timeout: Optional[float] = None,
    ) -> None:
        """Clicks with the mouse; `at` is a position as shares of width and height, (0.5, 0.5) being the centre.

        Without `at`, buttons are clicked where they react, and item views at their current item. A share of 1.0 is beyond
        the edge, where nobody can tell what is meant to get the click: it is forced.
        """
        self.mouse("MouseClick", button, at=at, modifier=modifier, force=force, timeout=timeout)

    def double_click(
        self,
        button: MouseButton = "left",
        *,
        at: Optional[Position] = None,
        modifier: Modifier = "",
        force: bool = False,
        timeout: Optional[float] = None,
    ) -> None:
        """Double clicks; the rest is as for click()."""
        self.mouse("MouseDoubleClick", button, at=at, modifier=modifier, force=force, timeout=timeout)

    def hover(
        self, *, at: Position = (0.5, 0.5), force: bool = False, timeout: Optional[float] = None
    ) -> None:
        """Moves the mouse onto the widget."""
        self._play_mouse("MouseMove", "", at, "", timeout, True, force)

    def drag_to(
        self,
        target: "Widget",
        *,
        at: Position = (0.5, 0.5),
        to: Position = (0.5, 0.5),
        force: bool = False,
        timeout: Optional[float] = None,
    ) -> None:
        """Presses the left button at `at`, moves to the position `to` of `target`, and releases it there.

        Both places have to be ready before the button is pressed, for which the mouse goes to the target first. From
        then on nothing is checked: what is dragged may move with the mouse, or cover the target. Where that fails, the
        button is released on this widget.
        """
        if self._connection.knows_locators and not force:
            target.hover(at=to, timeout=timeout)
        self.mouse("MousePress", "left", at=at, force=force, timeout=timeout)
        try:
            target.mouse("MouseMove", "", at=to, timeout=timeout)
            target.mouse("MouseRelease", "left", at=to, timeout=timeout)
        except ReplyError:
            with suppress(ReplyError):
                self.mouse("MouseRelease", "left", at=at, timeout=0)
            raise

    def mouse(
        self,
        kind: str,
        button: MouseButton = "left",
        *,
        at: Optional[Position] = None,
        modifier: Modifier = "",
        force: bool = False,
        timeout: Optional[float] = None,
    ) -> None:
        """Plays one of MousePress, MouseRelease, MouseClick, MouseDoubleClick, MouseMove; see click().

        A move or a release may be part of a drag, which would lose a move if it were repeated: where no window of the
        application is, they fail at once, and they never wait until a user could.
        """
        self._play_mouse(kind, button, at, modifier, timeout, kind in RETRYABLE_KINDS, force)

    def _play_mouse(
        self,
        kind: str,
        button: MouseButton,
        at: Optional[Position],
        modifier: Modifier,
        timeout: Optional[float],
        is_repeatable: bool,
        force: bool,
    ) -> None:
        command = mouse_command(kind, button, at, modifier)
        force = force or (at is not None and 1.0 in at)
        # Served as buttons or item views, widgets choose the place of a click themselves and ignore a position.
        served_as = self.as_class or ("" if at is None else "QWidget")
        self._act(
            f"mouse({_listed([repr(command)], force)})",
            lambda path: self._connection.mouse_widget(
                self.window.address, path, command, widget_class=served_as, force=force or not is_repeatable
            ),
            timeout,
            is_repeatable,
            button,
            force,
        )

    def locate(self, *, timeout: Optional[float] = None) -> str:
        """Brings the window to the front, puts the cursor on the widget's top left pixel, answers its class.

        The path has to end with an object name or "unnamed": the agent does not look for derived names here.
        """
        return self._act(
            "locate()", lambda path: self._connection.locate_widget(self.window.address, path), timeout
        )

    def read(self, name: str, argument: Optional[str] = None, *, timeout: Optional[float] = None) -> Value:
        """The value of a property of Qt or of the widget's class; `argument` is for those that take one."""
        shown = repr(name) if argument is None else f"{name!r}, {argument!r}"
        connection, address = self._connection, self.window.address

        def look(path: Address) -> Value:
            return with_item_suggestions(
                connection,
                address,
                path,
                argument,
                lambda: connection.read_property(address, path, name, argument, widget_class=self.as_class),
                self.as_class,
            )

        return self.perform(f"read({shown})", look, timeout=timeout)

    def is_visible(self) -> bool:
        """Whether the user can see such a widget now. Waits for the window only."""

        def look() -> bool:
            try:
                self._with_path(
                    lambda path: self._connection.read_property(self.window.address, path, "className")
                )
            except (WidgetNotFoundError, NotVisibleError):
                return False
            except AmbiguousError:
                return True  # there are even several
            return True

        return self.window.perform(f"{self._title}.is_visible()", look, path=self.path)

    def snapshot(self, *, timeout: Optional[float] = None) -> Snapshot:
        """All that the widget shows now; prints as an outline. Needs an agent with extensions."""
        return self.perform(
            "snapshot()",
            lambda path: Snapshot(
                SnapshotNode.of(self._connection.snapshot(self.window.address, as_locator(path)))
            ),
            timeout=timeout,
        )

    @property
    def _connection(self) -> Connection:
        return self.window.app.connection

    def _act(
        self,
        action: str,
        call: Callable[[Address], _Result],
        timeout: Optional[float],
        is_repeatable: bool = True,
        button: MouseButton = "left",
        force: bool = False,
    ) -> _Result:
        """Makes `call` with the address, which has the agent check first whether a user could, unless with `force`.

        It is repeated when the mouse misses the window, if it may be; what may not is never checked.
        """
        if not is_repeatable:
            return self.perform(action, call, reads=False, timeout=timeout, retryable=RETRYABLE_LOOKUPS)
        connection = self._connection
        act = repeatable(connection, self.window.address, call, button)

        def act_checked(path: Address) -> _Result:
            return act(path if force else connection.checked_address(path))

        return self.perform(action, act_checked, reads=False, timeout=timeout)

    def perform(
        self,
        action: str,
        call: Callable[[Address], _Result],
        *,
        reads: bool = True,
        timeout: Optional[float] = None,
        retryable: Tuple[Type[ReplyError], ...] = RETRYABLE_ERRORS,
    ) -> _Result:
        """As App.perform(), for a call that takes the path of this widget."""
        return self.window.perform(
            f"{self._title}.{action}",
            lambda: self._with_path(call),
            reads=reads,
            path=self.path,
            timeout=timeout,
            retryable=retryable,
        )

    def _with_path(self, call: Callable[[Address], _Result]) -> _Result:
        """Makes `call` with the path; where no visible widget has that, with the one that the search finds."""
        if self.path or self._search is None:
            try:
                return call(self.path)
            except (WidgetNotFoundError, NotVisibleError):
                if self._search is None:
                    raise
        return call(self._search.look(self._connection, self.window.address))


def _listed(arguments: Sequence[str], force: bool) -> str:
    """The arguments of a call as a title shows them."""
    return ", ".join([*arguments, "force=True"] if force else arguments)
