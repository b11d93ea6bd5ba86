"""A widget of an application."""

from __future__ import annotations

from contextlib import suppress
from typing import TYPE_CHECKING, Callable, Optional, Sequence, Tuple, Type, TypeVar

from ..errors import (
    RETRYABLE_ERRORS,
    RETRYABLE_LOOKUPS,
    AmbiguousError,
    NotVisibleError,
    ReplyError,
    WidgetNotFoundError,
)
from ..lookup.item_names import with_item_suggestions
from ..lookup.refusals import refuse_without_editor
from ..lookup.visible_texts import Search
from ..protocol.connection import Connection
from ..protocol.locators import Address, Locator, as_locator, is_special, raw_locator
from ..protocol.wire import Argument
from .finding import Finder
from .keys import WidgetInput
from .mouse import RETRYABLE_KINDS, Modifier, MouseButton, Position, mouse_command, repeatable
from .values import WidgetValues
from .verbs import Verbs

if TYPE_CHECKING:
    from .found import FoundWidget
    from .window import Window

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_Result = TypeVar("_Result")


class Widget(Finder, WidgetValues, Verbs, WidgetInput):
    """The name of a widget: each call finds the widget anew, and waits until it is visible and the only one.

    Calls that act on it also wait until a user could: until it is enabled, at rest, in sight in its window and not
    covered, and until the item exists that the call names. They raise NotReadyError with the reason when that takes too
    long. With `force` they check nothing: the input goes to whatever is at the place, and a disabled widget or a missing
    item is a CommandError at once. So it is, too, with an agent without extensions, and on a window's focus_widget().

    `timeout` of the methods is how many seconds they wait, by default as long as the application says.

    Attributes:
        window: the window that it is in.
        path: its name, with as many names of ancestors in front as it needs; or a locator.
        as_class: the base class to serve it as; empty for the nearest that the agent knows.
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
        """Names a widget.

        Args:
            window, path, as_class: the attributes.
            search: finds the widget where no visible one has that path, or where the path is empty.
            title: the call on the window that messages show for it.
        """
        self.window = window
        self.path = path
        self.as_class = as_class
        self._search = search
        self._title = title or (path.call if isinstance(path, Locator) else f'widget("{path}")')

    def __repr__(self) -> str:
        return f"{self.window}.{self.call()}"

    def call(self) -> str:
        """The call on the window that makes it, for messages and reports."""
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

        Args:
            value, option: mean what the widget's class makes of them.
            force, timeout: see the class.

        Returns the class that served the widget.

        Example: window.widget("drinks").activate("Espresso")
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

        `item` is its text, its number as the class counts, or an address that the module `addresses` writes.
        """
        self.activate(item, force=force, timeout=timeout)

    def enter(
        self, value: "str | int | bool", *, force: bool = False, timeout: Optional[float] = None
    ) -> str:
        """Replaces the widget's text or value by the keyboard; in item views that of the current item.

        Args:
            value: the text or value; in line edits, a line break at the end presses Return.
            force: also enters a text into a view whose edit triggers open no editor, for an application that opens
                editors by itself or has one open.
            timeout: see the class.

        Returns the class that served the widget. Raises NoEditorError for a text for a list, tree or table that opens no
        editor for it, since the keys would act on the view itself.

        Example: window.widget("customerEdit").enter("Ada\\n")
        """
        connection, address = self._connection, self.window.address

        def act(path: Address) -> str:
            with connection.guarding(value, address, path):
                if not force:
                    refuse_without_editor(connection, address, path, value, self.as_class)
                # By a locator also where nothing is checked: that reply tells of an editor that hides the text.
                place = connection.checked_address(path)
                return connection.enter_widget(address, place, value, widget_class=self.as_class, force=force)

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
        """Clicks with the mouse.

        Args:
            button: the mouse button.
            at: the position, as shares of width and height: (0.5, 0.5) is the centre. Without it, buttons are clicked
                where they react, and item views at their current item. A share of 1.0 is beyond the edge, where no check
                can tell which widget is meant, so that the click is forced.
            modifier: the key that is held meanwhile.
            force, timeout: see the class.
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
        self._play_mouse("MouseMove", "", at, "", timeout, is_repeatable=True, force=force)

    def drag_to(
        self,
        target: "Widget",
        *,
        at: Position = (0.5, 0.5),
        to: Position = (0.5, 0.5),
        force: bool = False,
        timeout: Optional[float] = None,
    ) -> None:
        """Drags with the left mouse button from this widget to another one.

        Both places are checked before the button is pressed, for which the mouse goes to the target first. After that
        nothing is checked, since the dragged thing may move with the mouse, or cover the target. If the drag fails, the
        button is released on this widget.

        Args:
            target: the widget to drop on.
            at, to: the positions in this widget and in the target, as shares of width and height.
            force, timeout: see the class.
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
        """Plays a single mouse command; the other arguments are those of click().

        Moves and releases may be part of a drag, which repeating would break: they are never checked, and fail at once
        where no window of the application is.

        Args:
            kind: "MousePress", "MouseRelease", "MouseClick", "MouseDoubleClick" or "MouseMove".
        """
        is_repeatable = kind in RETRYABLE_KINDS
        self._play_mouse(kind, button, at, modifier, timeout, is_repeatable=is_repeatable, force=force)

    def _play_mouse(
        self,
        kind: str,
        button: MouseButton,
        at: Optional[Position],
        modifier: Modifier,
        timeout: Optional[float],
        *,
        is_repeatable: bool,
        force: bool,
    ) -> None:
        command = mouse_command(kind, button, at, modifier)
        force = force or (at is not None and 1.0 in at)
        # Buttons and item views choose the place of a click themselves; served as QWidget they take a position.
        served_as = self.as_class or ("" if at is None else "QWidget")
        self._act(
            f"mouse({_listed([repr(command)], force)})",
            lambda path: self._connection.mouse_widget(
                self.window.address, path, command, widget_class=served_as, force=force or not is_repeatable
            ),
            timeout,
            is_repeatable=is_repeatable,
            button=button,
            force=force,
        )

    def locate(self, *, timeout: Optional[float] = None) -> str:
        """Brings the window to the front and puts the cursor on the widget's top left pixel. Returns its class.

        The path has to end with an object name or "unnamed": the agent does not look for derived names here.
        """
        return self._act(
            "locate()", lambda path: self._connection.locate_widget(self.window.address, path), timeout
        )

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
                return True  # several are visible
            return True

        return self.window.perform(f"{self._title}.is_visible()", look, path=self.path)

    @property
    def _connection(self) -> Connection:
        return self.window.app.connection

    def _act(
        self,
        action: str,
        call: Callable[[Address], _Result],
        timeout: Optional[float],
        *,
        is_repeatable: bool = True,
        button: MouseButton = "left",
        force: bool = False,
    ) -> _Result:
        """Makes a call that acts, as one step.

        Args:
            action: names the step in reports.
            call: makes the request; it takes the address of the widget.
            timeout: seconds to repeat it.
            is_repeatable: whether it may be repeated when the mouse misses the window; other calls are not checked.
            button: the mouse button that it presses.
            force: leaves out the agent's checks.
        """
        connection = self._connection
        # By a locator the agent moves the mouse of a drag as a user would, though it checks nothing.
        if not is_repeatable:
            return self.perform(
                action,
                lambda path: call(path if force else connection.checked_address(path)),
                reads=False,
                timeout=timeout,
                retryable=RETRYABLE_LOOKUPS,
            )
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
        """As App.perform(), for a call that takes the address of this widget."""
        return self.window.perform(
            f"{self._title}.{action}",
            lambda: self._with_path(call),
            reads=reads,
            path=self.path,
            timeout=timeout,
            retryable=retryable,
            target=None if is_special(self.path) else self.as_locator(),
        )

    def _with_path(self, call: Callable[[Address], _Result]) -> _Result:
        """Makes `call` with the path; where no visible widget has that, with the address that the search finds."""
        if self.path or self._search is None:
            try:
                return call(self.path)
            except (WidgetNotFoundError, NotVisibleError):
                if self._search is None:
                    raise
        return call(self._search.find(self._connection, self.window.address))


def _listed(arguments: Sequence[str], force: bool) -> str:
    """The arguments of a call, for the title of its step."""
    return ", ".join([*arguments, "force=True"] if force else arguments)
