"""The same words in applications that nobody has prepared: written in Python, and KeePassXC where it is installed."""

import os
import shutil

import pytest

from qtdriver import (
    CommandError,
    NotReadyError,
    WidgetNotFoundError,
    WindowNotFoundError,
    eventually,
)

from preloaded import SANITIZER
from showcase import QT

pytestmark = pytest.mark.skipif(QT != 5, reason="PyQt5 and KeePassXC are of Qt 5")

PROGRAM = """
import sys
from PyQt5.QtCore import Qt
from PyQt5.QtWidgets import *

class OwnBar(QMenuBar): pass
class OwnButton(QPushButton): pass
class OwnBox(QCheckBox): pass

application = QApplication(sys.argv)

def made(title, bar, central, name=""):
    window = QMainWindow()
    window.setWindowTitle(title)
    window.setObjectName(name)
    window.setMenuBar(bar)
    window.setCentralWidget(central)
    menu = bar.addMenu("&File")
    for text in ("&Open...", "&Save"):
        menu.addAction(text).triggered.connect(lambda _, text=text: window.setWindowTitle(title + ": " + text))
    return window

pane = QWidget()
layout = QVBoxLayout(pane)
button, box, label = OwnButton("&Go on"), OwnBox("&Milk && honey"), QLabel("nothing")
button.setObjectName("nextButton")
box.setObjectName("box")
label.setObjectName("label")
button.clicked.connect(lambda: label.setText("gone on"))
tools = QToolButton()
tools.setObjectName("tools")
tools.setText("Tools")
tools.setPopupMode(QToolButton.InstantPopup)
tools.setMenu(QMenu(tools))
tools.menu().addAction("Hammer").triggered.connect(lambda: label.setText("hammered"))
slow = QToolButton()
slow.setObjectName("slow")
slow.setText("Slow")
slow.setMenu(QMenu(slow))
slow.clicked.connect(lambda: label.setText("clicked"))
slow.menu().addAction("Saw").triggered.connect(lambda: label.setText("sawn"))
items, tree = QListWidget(), QTreeWidget()
items.setObjectName("list")
tree.setObjectName("tree")
for text in ("hidden", "one", "two", "two", "three"):
    items.addItem(text)
items.item(0).setHidden(True)
items.itemClicked.connect(lambda item: label.setText("clicked %d" % items.row(item)))
top = [QTreeWidgetItem(tree, [text, "1"]) for text in ("hidden", "a", "b")]
inner = [QTreeWidgetItem(top[2], [text, "2"]) for text in ("hidden", "b1", "b2")]
top[0].setHidden(True)
inner[0].setHidden(True)
tree.setColumnCount(2)
tree.itemClicked.connect(lambda item, column: label.setText("clicked " + item.text(0)))
tree.itemDoubleClicked.connect(lambda item, column: label.setText("double clicked " + item.text(0)))
for widget in (button, box, label, tools, slow, items, tree):
    layout.addWidget(widget)

own = OwnBar()
own.setObjectName("own")
windows = [made("Own", own, pane), made("Named", QMenuBar(), QLabel(objectName="note"), "named"),
    made("Nameless", QMenuBar(), QLabel())]
for window in windows:
    window.show()
sys.exit(application.exec_())
"""


@pytest.fixture(scope="module")
def app(agents_driver, tmp_path_factory):
    """Three main windows: with a menu bar of an own class, with one that only its parent's name tells, with none."""
    program = tmp_path_factory.mktemp("words") / "words.py"
    program.write_text(PROGRAM)
    application = agents_driver.launch("/usr/bin/python3", str(program), qt=5)
    eventually(application.window("Nameless")).is_open()
    return application


def test_a_menu_bar_of_an_own_class_is_found(app):
    app.window("Own").menu("File/Open...").click()
    eventually(app.window("Own")).has_title("Own: &Open...")


def test_a_menu_bar_without_a_name_is_found_by_the_name_of_its_window(app):
    app.window("Named").menu("File/Save").choose()
    eventually(app.window("Named")).has_title("Named: &Save")


def test_a_menu_bar_without_any_name_around_it_is_found_by_its_class(app):
    if not app.connection.knows_locators:
        pytest.skip("the agent knows no locators")
    app.window("Nameless").menu("File/Save").click()
    eventually(app.window("Nameless")).has_title("Nameless: &Save")


def test_a_menu_bar_that_no_path_tells_apart_is_said_to_be_there_where_the_agent_knows_no_locators(
    app, monkeypatch
):
    monkeypatch.setattr(app.connection, "_extensions", frozenset())
    with pytest.raises(WidgetNotFoundError, match="there is one, but neither its name nor those around it"):
        app.window("Nameless").menu("File/Save").click(timeout=0)


def test_buttons_of_own_classes_are_found_by_their_texts(app):
    window = app.window("Own")
    window.button("Go on").click()
    eventually(window.widget("label")).has(text="gone on")
    window.checkbox("Milk & honey").check()
    eventually(window.widget("box")).is_checked()


def test_the_menu_of_a_tool_button_that_is_nothing_else_is_opened(app):
    window = app.window("Own")
    window.button("Tools").menu("Hammer").click()
    eventually(window.widget("label")).has(text="hammered")


def test_the_menu_of_a_tool_button_with_a_click_of_its_own_is_opened_by_a_long_press(app):
    window = app.window("Own")
    window.button("Slow").menu("Saw").click()
    eventually(window.widget("label")).has(text="sawn")
    assert window.button("Slow").menu("").items() == ("Saw",)
    window.button("Slow").click()
    eventually(window.widget("label")).has(text="clicked")


def test_a_click_that_opens_no_menu_is_said_to(app):
    box = app.window("Own").widget("box")
    with pytest.raises(WindowNotFoundError) as caught:
        box.context_menu("Copy").click(timeout=0.2)
    assert 'the click for window("Own").widget("box").context_menu("Copy") has opened no menu' in str(
        caught.value
    )
    assert "these windows exist" in str(caught.value)


def test_items_among_hidden_ones_are_clicked(app):
    window = app.window("Own")
    items, tree, label = (window.widget(name) for name in ("list", "tree", "label"))
    items.item("three").click()
    eventually(label).has(text="clicked 4")
    items.item("two").click()
    eventually(label).has(text="clicked 2")
    items.item(3).click()
    eventually(label).has(text="clicked 3")
    tree.item("b/b2").click()
    eventually(label).has(text="clicked b2")
    tree.item("a").double_click()
    eventually(label).has(text="double clicked a")
    with pytest.raises(NotReadyError, match='item "hidden" not there yet'):
        items.item("hidden").click(timeout=0)
    with pytest.raises(NotReadyError, match='item "b:1/hidden:2" hidden'):
        tree.item("b/hidden").click(timeout=0)


def test_items_among_hidden_ones_are_clicked_by_an_older_agent(app, monkeypatch):
    known = app.connection.extensions - {"+scroll", "+item"}
    monkeypatch.setattr(app.connection, "_extensions", known)
    window = app.window("Own")
    items, tree, label = (window.widget(name) for name in ("list", "tree", "label"))
    items.item("one").click()
    eventually(label).has(text="clicked 1")
    items.item(3).click()
    eventually(label).has(text="clicked 3")
    tree.item("b/b1").click()
    eventually(label).has(text="clicked b1")
    with pytest.raises(CommandError, match='item "hidden" not found'):
        items.item("hidden").click()
    with pytest.raises(CommandError, match='item "b/hidden" not found'):
        tree.item("b/hidden").click()


@pytest.mark.skipif(shutil.which("keepassxc") is None, reason="KeePassXC is not installed")
@pytest.mark.skipif(
    SANITIZER is not None, reason="KeePassXC is built without the sanitizers that the agent needs"
)
def test_the_wizard_of_keepassxc_is_gone_through_by_its_texts(agents_driver, tmp_path):
    user = f"tester-{os.getpid()}"  # it runs once for each user, whatever the desktop
    home = {"USER": user, "HOME": str(tmp_path), "XDG_CONFIG_HOME": str(tmp_path)}
    with agents_driver.launch("keepassxc", environment=home) as app:
        app.window("KeePassXC").button("Create new database").click()
        wizard = app.modal("Create a new KeePassXC database")
        eventually(wizard).is_open()
        with pytest.raises(WidgetNotFoundError) as caught:
            wizard.button("Continu").click(timeout=0)
        assert 'did you mean "Continue"?' in str(caught.value) and '"Go Back"' in str(caught.value)
        wizard.widget("databaseName").enter("Secrets")
        wizard.button("Continue").click()
        eventually(wizard.widget("decryptionTimeSlider")).is_visible()
        wizard.button("Go Back").click()
        eventually(wizard.widget("databaseName")).has(text="Secrets")
        wizard.button("Cancel").click()
        eventually(wizard).is_closed()
