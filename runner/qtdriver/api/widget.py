"""A widget of an application."""

from __future__ import annotations

from contextlib import suppress
from pathlib import Path
from typing import TYPE_CHECKING, Callable, Dict, Optional, Tuple, Type, TypeVar

from ..errors import (
    RETRYABLE_ERRORS,
    RETRYABLE_LOOKUPS,
    AmbiguousError,
    CommandError,
    NotVisibleError,
    ProtocolError,
    ReplyError,
    WidgetNotFoundError,
)
from ..lookup.item_names import with_item_suggestions
from ..lookup.snapshot import Snapshot, SnapshotNode
from ..lookup.visible_texts import Search
from ..protocol.connection import Connection
from ..protocol.wire import Argument, Rect, Value
from ..protocol.locators import Address, Locator, path_locator, raw_locator
from .editing import refuse_without_editor
from .finding import Finder
from .keys import WidgetInput
from .mouse import RETRYABLE_KINDS, Modifier, MouseButton, Position, mouse_command, repeatable
from .pictures import read_xpm
from .verbs import Verbs

if TYPE_CHECKING:
    from .found import FoundWidget
    from .window import Window

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_Result = TypeVar("_Result")
_NOT_AMONG_PROPERTIES = ("propertyNames", "pseudoPropertyNames", "globalRect")


class Widget(Finder, Verbs, WidgetInput):
    """The name of a widget: each call finds the widget anew, and waits until it is visible and the only one.

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
        """What finds it, as the agent's extensions take it."""
        if self._search is not None:
            return self._search.locator
        return self.path if isinstance(self.path, Locator) else path_locator(self.path)

    def find_by(self, found: "Locator | str") -> "FoundWidget":
        inner = found if isinstance(found, Locator) else raw_locator(found)
        return self.window.find_by(inner.within(self.as_locator()))

    def activate(
        self, value: Argument = None, option: Argument = None, *, timeout: Optional[float] = None
    ) -> str:
        """Does what the widget is for: presses a button, chooses an item, a tab, a page.

        The widget's class decides what `value` and `option` mean. Answers the class that served the widget.
        """
        shown = ", ".join(repr(argument) for argument in (value, option) if argument is not None)
        connection, address = self._connection, self.window.address

        def act(path: Address) -> str:
            return with_item_suggestions(
                connection,
                address,
                path,
                value,
                lambda: connection.activate_widget(address, path, value, option, widget_class=self.as_class),
                self.as_class,
            )

        return self._act(f"activate({shown})", act, timeout)

    def check(self, on: bool = True, *, timeout: Optional[float] = None) -> None:
        """Clicks a check box, or another button that can be checked, if it is not in that state."""
        self.activate(on, timeout=timeout)

    def select(self, item: "str | int", *, timeout: Optional[float] = None) -> None:
        """Chooses an item of a list, tree, table, combo box, tab bar or tool box.

        By its text, its number as the class counts, or its address: see the module `addresses`.
        """
        self.activate(item, timeout=timeout)

    def enter(
        self, value: "str | int | bool", *, force: bool = False, timeout: Optional[float] = None
    ) -> str:
        """Replaces what the widget holds, with the keyboard: "Ada\\n" types Ada and presses Return.

        In item views it edits the current item. A text for a list, tree or table whose edit triggers open no editor for
        it is a NoEditorError, since the keys would do other things; `force` sends them nevertheless, for an application
        that opens editors by itself. Answers the class that served the widget.
        """
        connection, address = self._connection, self.window.address

        def act(path: Address) -> str:
            if not force:
                refuse_without_editor(connection, address, path, value, self.as_class)
            return connection.enter_widget(address, path, value, widget_class=self.as_class)

        return self._act(f"enter({value!r}{', force=True' if force else ''})", act, timeout)

    def click(
        self,
        button: MouseButton = "left",
        *,
        at: Optional[Position] = None,
        modifier: Modifier = "",
        timeout: Optional[float] = None,
    ) -> None:
        """Clicks with the mouse; `at` is a position as shares of width and height, (0.5, 0.5) being the centre.

        Without `at`, buttons are clicked where they react, and item views at their current item.
        """
        self.mouse("MouseClick", button, at=at, modifier=modifier, timeout=timeout)

    def double_click(
        self,
        button: MouseButton = "left",
        *,
        at: Optional[Position] = None,
        modifier: Modifier = "",
        timeout: Optional[float] = None,
    ) -> None:
        """Double clicks; the rest is as for click()."""
        self.mouse("MouseDoubleClick", button, at=at, modifier=modifier, timeout=timeout)

    def hover(self, *, at: Position = (0.5, 0.5), timeout: Optional[float] = None) -> None:
        """Moves the mouse onto the widget."""
        self._play_mouse("MouseMove", "", at, "", timeout, True)

    def drag_to(
        self,
        target: "Widget",
        *,
        at: Position = (0.5, 0.5),
        to: Position = (0.5, 0.5),
        timeout: Optional[float] = None,
    ) -> None:
        """Presses the left button at `at`, moves to the position `to` of `target`, and releases it there.

        Where that fails, the button is released on this widget.
        """
        self.mouse("MousePress", "left", at=at, timeout=timeout)
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
        timeout: Optional[float] = None,
    ) -> None:
        """Plays one of MousePress, MouseRelease, MouseClick, MouseDoubleClick, MouseMove; see click().

        A move or a release may be part of a drag, which would lose a move if it were repeated: where no window of the
        application is, they fail at once.
        """
        self._play_mouse(kind, button, at, modifier, timeout, kind in RETRYABLE_KINDS)

    def _play_mouse(
        self,
        kind: str,
        button: MouseButton,
        at: Optional[Position],
        modifier: Modifier,
        timeout: Optional[float],
        is_repeatable: bool,
    ) -> None:
        command = mouse_command(kind, button, at, modifier)
        # Served as buttons or item views, widgets choose the place of a click themselves and ignore a position.
        served_as = self.as_class or ("" if at is None else "QWidget")
        self._act(
            f"mouse({command!r})",
            lambda path: self._connection.mouse_widget(
                self.window.address, path, command, widget_class=served_as
            ),
            timeout,
            is_repeatable,
            button,
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

    def text(self, *, timeout: Optional[float] = None) -> str:
        """The property "text" as text, whatever its type."""
        return str(self.read("text", timeout=timeout))

    def is_enabled(self, *, timeout: Optional[float] = None) -> bool:
        """Whether it can be used."""
        return self.read("enabled", timeout=timeout) is True

    def is_checked(self, *, timeout: Optional[float] = None) -> bool:
        """Whether it is checked."""
        return self.read("checked", timeout=timeout) is True

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

    def class_name(self, *, timeout: Optional[float] = None) -> str:
        """Its own class."""
        return str(self.read("className", timeout=timeout))

    def rect(self, *, timeout: Optional[float] = None) -> Rect:
        """Its rectangle in pixels of the screen; brings the window to the front and onto the screen."""
        value = self.read("globalRect", timeout=timeout)
        if not isinstance(value, Rect):
            raise ProtocolError(f"not a rectangle: {value!r}")
        return value

    def items(self, *, timeout: Optional[float] = None) -> Tuple[str, ...]:
        """The texts of the items of a list, combo box, tab bar or menu, the paths of those of a tree."""
        names = self.read("pseudoPropertyNames", timeout=timeout)
        name = "pathList" if isinstance(names, tuple) and "pathList" in names else "itemList"
        value = self.read(name, timeout=timeout)
        if not isinstance(value, tuple):
            raise ProtocolError(f"not a list: {value!r}")
        return value

    def properties(self, *, timeout: Optional[float] = None) -> Dict[str, Value]:
        """Every property that has a value which can be told and takes no argument.

        Without the listings of the names, and without "globalRect", which moves the window to be read.
        """
        values: Dict[str, Value] = {}
        for listing in ("pseudoPropertyNames", "propertyNames"):
            names = self.read(listing, timeout=timeout)
            for name in names if isinstance(names, tuple) else ():
                if name in values or name in _NOT_AMONG_PROPERTIES:
                    continue
                try:
                    values[name] = self.read(name, timeout=timeout)
                except CommandError:
                    continue  # it takes an argument, or has a type that cannot be told
        return values

    def snapshot(self, *, timeout: Optional[float] = None) -> Snapshot:
        """All that the widget shows now; prints as an outline. Needs an agent with extensions."""
        return self.perform(
            "snapshot()",
            lambda path: Snapshot(
                SnapshotNode.of(
                    self._connection.snapshot(
                        self.window.address, path if isinstance(path, Locator) else path_locator(path)
                    )
                )
            ),
            timeout=timeout,
        )

    def save_picture(self, name: str, path: "Path | str", *, timeout: Optional[float] = None) -> Path:
        """Saves the picture or icon in the property `name`; the ending of `path` tells the format."""
        value = self.read(name, timeout=timeout)
        if not isinstance(value, bytes):
            raise ProtocolError(f"not a picture: {value!r}")
        file = Path(path)
        read_xpm(value).save(file)
        return file

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
    ) -> _Result:
        """Makes `call` with the path; it is repeated when the mouse misses the window, if it may be."""
        if not is_repeatable:
            return self.perform(action, call, reads=False, timeout=timeout, retryable=RETRYABLE_LOOKUPS)
        act = repeatable(self._connection, self.window.address, call, button)
        return self.perform(action, act, reads=False, timeout=timeout)

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
