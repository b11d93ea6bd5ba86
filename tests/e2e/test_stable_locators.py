"""The addresses of widgets that nothing but their position tells apart, and what it costs to find them."""

import re

import pytest

from qtdriver import AmbiguousError, SnapshotNode, WidgetNotFoundError
from qtdriver.lookup.stable_locators import StableLocators
from qtdriver.protocol.locators import locator, path_locator

COUNT = 30


def told(ref, kind, *children):
    return {"ref": ref, "class": kind, "role": "widget", "rect": [0, 0, 9, 9], "children": list(children)}


class Window:
    """Answers as an agent whose window has only frames, of which the locators know class and position."""

    def __init__(self, kinds):
        self.frames = [told(number + 2, kind) for number, kind in enumerate(kinds)]
        self.requests = []

    def snapshot(self, window, found):
        return self.found(found)

    def read(self, window, found, name):
        return self.found(found)["class"]

    def found(self, locator):
        self.requests.append(locator.text)
        match = re.fullmatch(r"(\w+)(?: nth=(\d+))?", locator.text)
        # each frame is a QFrame, some of a derived class
        fitting = [frame for frame in self.frames if match[1] in ("QFrame", frame["class"])]
        if match[2] is not None:
            fitting = fitting[int(match[2]) : int(match[2]) + 1]
        if not fitting:
            raise WidgetNotFoundError("5", "Widget () not found")
        if len(fitting) > 1:
            raise AmbiguousError("7", f"Widget () visible,{len(fitting)}")
        return fitting[0]


def addressed(kinds, number):
    """The locator of a frame, and how many requests it took."""
    window = Window(kinds)
    root = SnapshotNode.of(told(1, "QWidget", *window.frames))
    found = StableLocators(window, "w", root).of(root.children[number])
    return found.text, len(window.requests)


@pytest.mark.parametrize("number", [0, 1, COUNT // 2, COUNT - 1])
def test_the_position_among_many_takes_no_request_for_each(number):
    text, requests = addressed(COUNT * ["QFrame"], number)
    assert text == f"QFrame nth={number}"
    assert requests <= 3


def test_widgets_of_derived_classes_count_as_well():
    kinds = ["OwnFrame", "QFrame", "OwnFrame", "QFrame", "QFrame"]
    assert addressed(kinds, 3)[0] == "QFrame nth=3"
    assert addressed(kinds, 2)[0] == "OwnFrame nth=1"


def test_a_name_within_another_widget_is_told_as_a_call_that_widgets_have():
    found = path_locator("password").within(path_locator("enter"))
    assert found.call == 'widget("enter").find(path="password")'
    assert found.within(locator("QDialog")).call == 'find("QDialog").find(path="enter").find(path="password")'
