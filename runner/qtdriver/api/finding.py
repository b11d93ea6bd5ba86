"""Finding widgets by their texts, labels and other properties."""

from __future__ import annotations

from abc import ABC, abstractmethod
from typing import TYPE_CHECKING, Mapping, Optional

from ..protocol.locators import Locator, Text, locator

if TYPE_CHECKING:
    from .found import FoundWidget

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own


class Finder(ABC):
    """Base of windows and widgets: finds the widgets that are in it."""

    def find(
        self,
        class_name: str = "",
        *,
        text: Optional[Text] = None,
        label: Optional[Text] = None,
        name: Optional[Text] = None,
        placeholder: Optional[Text] = None,
        tooltip: Optional[Text] = None,
        action: Optional[Text] = None,
        accessible: Optional[Text] = None,
        title: Optional[Text] = None,
        path: Optional[str] = None,
        properties: Optional[Mapping[str, object]] = None,
        visible: Optional[bool] = True,
        ref: Optional[int] = None,
    ) -> "FoundWidget":
        """The one widget that fulfils all given conditions. Every call on it finds it anew, and waits until there is one.

        A text is exact, or containing("a part"), or a regular expression. Mnemonics ("&"), shortcuts after a tab and line
        breaks do not count. Needs an agent with extensions.

        Args:
            class_name: the widget's class, or one of its base classes.
            text: the text that it shows as its own: of a button, a tab, a group box, a label, a placeholder.
            label: the text of the field's label, or of the group box that holds nothing else.
            name: its object name.
            placeholder: the text that it shows while it is empty.
            tooltip: its tool tip.
            action: the text or the object name of a tool button's action.
            accessible: its accessible name.
            title: the title of an MDI window, a dock widget, or a page of a tab widget or tool box.
            path: its names, as for Window.widget().
            properties: names of Qt properties, and their values: {"readOnly": True}.
            visible: False finds hidden ones only, None both.
            ref: its number in a snapshot.

        Example: window.find("QLineEdit", label="Name:").fill("Ada")
        """
        found = locator(
            class_name,
            text=text,
            label=label,
            name=name,
            placeholder=placeholder,
            tooltip=tooltip,
            action=action,
            accessible=accessible,
            title=title,
            path=path,
            properties=properties,
            visible=visible,
            ref=ref,
        )
        return self.find_by(found)

    @abstractmethod
    def find_by(self, found: "Locator | str") -> "FoundWidget":
        """The widget in here that a locator finds.

        Args:
            found: the locator, or its text.

        Example: window.find_by('QGroupBox text="Size" >> QRadioButton first')
        """
