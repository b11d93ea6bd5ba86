"""All windows with their widgets, whatever their titles: the same for every part of the runner that lists them."""

import json

import pytest

from qtdriver import (
    AmbiguousWindowError,
    Driver,
    RequestTimeout,
    WidgetRecord,
    WindowNotFoundError,
    WindowRecord,
)
from qtdriver.commandline.console import LineCompleter
from qtdriver.lookup.windows import certain_beginning, walk_windows
from qtdriver.plugin.bundle import write_bundle
from qtdriver.trace.recorder import Recorder

from showcase import AGENTS, QT

TITLES = """
import sys
from PyQt5.QtWidgets import QApplication, QLabel, QWidget

application = QApplication(sys.argv)
windows = []
for name, title in (("notes", "Notes \\u2014 draft"), ("prices", "Prices, net"), ("plain", "Plain")):
    window = QWidget()
    window.setObjectName(name)
    window.setWindowTitle(title)
    QLabel(title, window).setObjectName(name + "Label")
    window.show()
    windows.append(window)
sys.exit(application.exec_())
"""
NAMES = ("notes", "prices", "plain")


@pytest.fixture(scope="module")
def titles(tmp_path_factory):
    """An application whose windows have titles that a request cannot carry as a whole, and one that can."""
    if QT != 5:
        pytest.skip("PyQt5 is of Qt 5")
    program = tmp_path_factory.mktemp("titles") / "titles.py"
    program.write_text(TITLES)
    with Driver(build=AGENTS, timeout=10) as driver:
        app = driver.launch("/usr/bin/python3", str(program), qt=5)
        for name in NAMES:
            app.window(name=name).title()
        yield app


def test_a_bundle_has_the_widgets_of_each_window(titles, tmp_path):
    write_bundle([titles], [], tmp_path, 0.0)
    text = (tmp_path / "windows.txt").read_text()
    assert [f'"{name}Label" (QLabel)' in text for name in NAMES] == [True, True, True]


def test_a_trace_has_the_widgets_of_each_window(titles, tmp_path):
    recorder = Recorder(tmp_path / "trace", screenshots=False)
    titles.listeners.append(recorder)
    titles.window(name="plain").move(30, 30)
    titles.listeners.remove(recorder)
    recorder.close(keep=True)
    (tree,) = json.loads((tmp_path / "trace" / "trace.json").read_text())["trees"].values()
    assert [f'QLabel "{name}Label"' in tree for name in NAMES] == [True, True, True]


def test_the_console_offers_the_object_name_of_each_window(titles):
    offered = [word for word, _ in LineCompleter(titles).completions("tree Widget:")]
    assert sorted(offered) == sorted(f"Widget:{name}" for name in NAMES)


def test_an_explanation_tells_the_object_name_of_each_window(titles):
    with pytest.raises(WindowNotFoundError) as caught:
        titles.window(name="other").title(timeout=0)
    assert [f'"{name}" ("' in str(caught.value) for name in NAMES] == [True, True, True]


class Windows:
    """In place of a connection: finds windows by the rules of an agent. The last modal one, and the popup, are active."""

    def __init__(self, *windows):
        """Each window is its title, its class, and "", "modal" or "popup"."""
        self.windows = windows
        self.asked = []

    def list_windows(self):
        """As replies have them."""
        return tuple(
            WindowRecord(kind, state == "modal", title.encode("latin-1", "replace").decode("latin-1"))
            for title, kind, state in self.windows
        )

    def window_tree(self, address):
        """The window alone, named as its title."""
        self.asked.append(address)
        form, _, beginning = address.removeprefix("Widget:").partition(":")
        active = {"ActiveModalWidget": "modal", "ActivePopupWidget": "popup"}.get(form)
        if active:
            found = [window for window in self.windows if window[2] == active][-1:]
            found = [window for window in found if window[0].startswith(beginning)]
        elif address.startswith("Widget:"):
            found = []
        else:
            found = [window for window in self.windows if window[0].startswith(address)]
        if len(found) != 1:
            raise AmbiguousWindowError("3", "several") if found else WindowNotFoundError("2", "none")
        return (WidgetRecord(0, True, found[0][1], found[0][0]),)


PLAIN = ("Plain", "QDialog", "")


@pytest.mark.parametrize(
    "windows",
    [
        [("Notes \u2014 draft", "QWidget", ""), PLAIN],
        [("Prices, net", "QWidget", ""), PLAIN],
        [("Two\nlines", "QWidget", ""), PLAIN],
        [("What? Why?", "QWidget", ""), PLAIN],
        [("Widget: a part", "QWidget", ""), PLAIN],
        [("", "QMenu", "popup"), PLAIN],
        [("", "QMessageBox", "modal"), PLAIN],
        [("Plain", "QMessageBox", "modal"), ("Other", "QWidget", "")],
        [("\u2014", "QWidget", "")],
        [("", "QWidget", "")],
    ],
)
def test_each_window_is_found_by_what_a_request_can_carry(windows):
    found = list(walk_windows(Windows(*windows)))
    assert [(window.error, window.widgets[0].object_name) for window in found] == [
        (None, title) for title, _, _ in windows
    ]


def test_a_modal_dialog_is_told_from_its_window_of_the_same_title():
    found = list(walk_windows(Windows(("Save", "QDialog", "modal"), ("Save as", "QWidget", ""))))
    assert [(window.address, window.widgets[0].class_name) for window in found] == [
        ("Widget:ActiveModalWidget:Save", "QDialog"),
        ("Save as", "QWidget"),
    ]


def test_a_modal_dialog_behind_another_one_is_found_by_its_title():
    first, second = walk_windows(Windows(("First", "QDialog", "modal"), ("Second", "QDialog", "modal")))
    assert (first.address, second.address) == ("First", "Widget:ActiveModalWidget:Second")


def test_a_window_is_not_taken_for_another_one():
    windows = Windows(("", "QWidget", ""), ("", "QMenu", "popup"), PLAIN)
    untitled, menu, _ = walk_windows(windows)
    assert isinstance(untitled.error, AmbiguousWindowError) and untitled.widgets == ()
    assert menu.widgets[0].class_name == "QMenu"


def test_windows_that_nothing_tells_apart_have_an_error_and_the_others_are_listed():
    found = list(walk_windows(Windows(("Doc, one", "QWidget", ""), ("Doc, two", "QWidget", ""), PLAIN)))
    assert [type(window.error) for window in found] == [
        AmbiguousWindowError,
        AmbiguousWindowError,
        type(None),
    ]


def test_an_application_that_does_not_answer_has_the_error_at_its_window(monkeypatch):
    windows = Windows(PLAIN)

    def give_up(address):
        raise RequestTimeout(address)

    monkeypatch.setattr(windows, "window_tree", give_up)
    (window,) = walk_windows(windows)
    assert isinstance(window.error, RequestTimeout)


def test_a_title_is_used_up_to_what_a_reply_may_have_replaced():
    assert certain_beginning("caf\u00e9 ? menu") == "caf\u00e9 "
