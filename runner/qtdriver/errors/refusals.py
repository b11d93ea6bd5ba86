"""Errors that the runner raises by itself: it refuses a call, lacks something for it, or a condition stays false."""

from __future__ import annotations

from .base import QtDriverError


class UnsupportedTextError(QtDriverError, ValueError):
    """A text that the protocol cannot carry, such as one with a comma or a line break in a name. Nothing has been sent."""


class NoEditorError(QtDriverError):
    """A text was not entered in a list, tree or table, since its edit triggers open no editor for it. Nothing was done.

    Attributes:
        view_class: the class that serves the view.
        triggers: the names of its edit triggers, as Qt writes them.
        value: the text that was to be entered.
    """

    def __init__(self, view_class: str, triggers: str, value: str) -> None:
        super().__init__(
            f'{value!r} was not entered: this {view_class} opens no editor at the keys of "enter", since its '
            f"editTriggers are {triggers}. The keys would act on the view itself: move its current item, run shortcuts "
            "of the application, and press Return, which activates the item and a dialog's default button.",
            hint="Open the editor as a user does, for example by double_click() where that edits, and enter the text in "
            "window.focus_widget(). Where the application opens an editor at F2 by itself, or has one open for the "
            "item, enter(..., force=True) sends the keys",
        )
        self.view_class = view_class
        self.triggers = triggers
        self.value = value


class CornerButtonError(QtDriverError):
    """A menu bar's entry was not chosen, since the first click would press a button in its corner. Nothing was done.

    Attributes:
        button_class: the class that serves the button.
        button: its path.
        bar: the path of the menu bar.
    """

    def __init__(self, button_class: str, button: str, bar: str) -> None:
        super().__init__(
            f'the menu was not opened: before it comes a click at the top right corner of the menu bar "{bar}", where '
            f'the {button_class} "{button}" is, which it would press.',
            hint=f'Open the menu by a click on its title, window.widget("{bar}").click(at=(0.02, 0.5)) for the first one, and '
            "choose from app.popup(). Where the button may be pressed, say force=True",
        )
        self.button_class = button_class
        self.button = button
        self.bar = bar


class OldAgentError(QtDriverError):
    """The call needs a newer agent than the application has. Nothing was done.

    Attributes:
        extension: the extension of the protocol that the agent lacks, such as "+press".
    """

    def __init__(self, extension: str) -> None:
        super().__init__(
            f'this needs a newer agent: that of the application has no extension "{extension}"',
            hint="Build the agent from the sources that this runner is from",
        )
        self.extension = extension


class ConditionError(QtDriverError, AssertionError):
    """A condition has not come true in time. The message tells what was there instead."""


class PictureError(QtDriverError):
    """There is no picture, or Pillow, which makes them, is missing."""


class ClipboardError(QtDriverError):
    """The clipboard cannot be read."""


class PauseError(QtDriverError):
    """A test cannot be paused: nobody is there who could have it go on."""
