"""Keys for an item, which becomes the current one first."""

from __future__ import annotations

from typing import Optional

from ..errors import CommandError, ConditionError
from ..protocol.waiting import Deadline, attempts
from .item_access import ItemAccess

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own


class ItemKeys(ItemAccess):
    """The keyboard of WidgetItem."""

    def _make_current(self, timeout: Optional[float]) -> None:
        self.widget.select(self.address, timeout=timeout)

    def enter(
        self, value: "str | int | bool", *, force: bool = False, timeout: Optional[float] = None
    ) -> None:
        """Makes it the current item and replaces its text or value by the keyboard, as Widget.enter().

        Raises NoEditorError for a text where the view opens no editor.

        Example: table.cell("Espresso", "Price").enter("2.50")
        """
        self._make_current(timeout)
        self.widget.enter(value, force=force, timeout=timeout)

    def fill(self, text: str, *, timeout: Optional[float] = None) -> None:
        """As enter(), and waits until it shows the text. Raises ConditionError where it then shows another one."""
        deadline = Deadline(self.widget.window.app.timeout if timeout is None else timeout)
        self.enter(text, timeout=timeout)
        shown = None
        for _ in attempts(deadline):
            try:
                shown = self.text(timeout=0)
            except CommandError:
                return  # its address was its old text
            if shown == text:
                return
        raise ConditionError(f"{self} has the text {shown!r} after fill({text!r})")

    def press(self, *keys: str, timeout: Optional[float] = None) -> None:
        """Makes it the current item, and presses keys, such as "F2": see Widget.press()."""
        self._make_current(timeout)
        self.widget.press(*keys, timeout=timeout)

    def type(self, text: str, *, timeout: Optional[float] = None) -> None:
        """Makes it the current item, and types a text: into its editor, where the view opens one for that."""
        self._make_current(timeout)
        self.widget.type(text, timeout=timeout)

    def text(self, *, timeout: Optional[float] = None) -> str:
        """The text that it shows."""
        raise NotImplementedError
