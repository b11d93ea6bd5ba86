"""Every verb on everything that it makes sense for: tabs, pages, cells, headers, entries of menus, widgets to scroll to."""

import pytest

from qtdriver import CommandError, ConditionError, Driver, NotReadyError, eventually

from showcase import AGENTS, QT

pytestmark = pytest.mark.skipif(QT != 5, reason="PyQt5 is of Qt 5")

PROGRAM = """
import sys
from PyQt5.QtCore import Qt
from PyQt5.QtWidgets import *

application = QApplication(sys.argv)
window = QMainWindow()
window.setWindowTitle("Verbs")
told = QLabel("nothing", objectName="told")
pane = QWidget()
layout = QGridLayout(pane)
layout.addWidget(told, 0, 0)
window.setCentralWidget(pane)

tabs = QTabWidget(objectName="tabs", movable=True)
for text in ("One", "Two", "Three"):
    tabs.addTab(QWidget(), text)
bar = tabs.tabBar()
bar.setContextMenuPolicy(Qt.CustomContextMenu)
def tab_menu(position):
    menu = QMenu(bar)
    text = bar.tabText(bar.tabAt(position))
    menu.addAction("Close").triggered.connect(lambda: told.setText("closed " + text))
    menu.popup(bar.mapToGlobal(position))
bar.customContextMenuRequested.connect(tab_menu)
bar.tabBarDoubleClicked.connect(lambda index: told.setText("double clicked " + bar.tabText(index)))
bar.setTabToolTip(1, "the second")
layout.addWidget(tabs, 1, 0)

box = QToolBox(objectName="box")
for text in ("Start", "End"):
    box.addItem(QWidget(), text)
layout.addWidget(box, 1, 1)

class Table(QTableWidget):
    def keyPressEvent(self, event):
        if event.key() != Qt.Key_Space or self.currentRow() != 2:
            super().keyPressEvent(event)

table = Table(40, 3, objectName="table")
table.setHorizontalHeaderLabels(["Name", "Done", "Note"])
table.setVerticalHeaderLabels(["row %d" % row for row in range(40)])
for row in range(40):
    table.setItem(row, 0, QTableWidgetItem("name %d" % row))
    item = QTableWidgetItem()
    item.setCheckState(Qt.Unchecked)
    table.setItem(row, 1, item)
table.itemChanged.connect(
    lambda item: item.setText(item.text().upper()) if (item.row(), item.column()) == (4, 0) else None)
table.item(1, 1).setCheckState(Qt.PartiallyChecked)
table.item(3, 1).setFlags(Qt.ItemIsUserCheckable)
table.setSortingEnabled(False)
table.horizontalHeader().sectionClicked.connect(lambda column: told.setText("header %d" % column))
table.horizontalHeader().setContextMenuPolicy(Qt.CustomContextMenu)
def header_menu(position):
    menu = QMenu(table)
    menu.addAction("Hide").triggered.connect(
        lambda: told.setText("hidden %d" % table.horizontalHeader().logicalIndexAt(position)))
    pinned = menu.addAction("Pinned")
    pinned.setCheckable(True)
    pinned.setChecked(True)
    menu.popup(table.horizontalHeader().viewport().mapToGlobal(position))
table.horizontalHeader().customContextMenuRequested.connect(header_menu)
table.verticalHeader().sectionDoubleClicked.connect(lambda row: told.setText("row header %d" % row))
layout.addWidget(table, 2, 0, 1, 2)

for number, name in enumerate(("tasks", "done")):
    tasks = QListWidget(objectName=name, dragDropMode=QListWidget.DragDrop, defaultDropAction=Qt.MoveAction)
    tasks.addItems(["%s %d" % (name, row) for row in range(3)])
    tasks.setMinimumHeight(90)  # all rows are in sight
    layout.addWidget(tasks, 4, number)

area = QScrollArea(objectName="area")
content = QWidget()
content.setFixedSize(600, 600)
far = QPushButton("Far", content, objectName="far")
far.move(480, 540)
area.setWidget(content)
area.setFixedHeight(80)
layout.addWidget(area, 3, 0, 1, 2)

file = window.menuBar().addMenu("&File")
file.addAction("New").setStatusTip("makes a new one")
file.addMenu("Recent").addAction("Letter").setStatusTip("opens a letter")
file.addAction("Quit").setEnabled(False)
window.statusBar().setObjectName("status")
window.resize(500, 640)
window.show()
sys.exit(application.exec_())
"""


@pytest.fixture
def window(tmp_path):
    program = tmp_path / "verbs.py"
    program.write_text(PROGRAM)
    with Driver(build=AGENTS, timeout=10) as driver:
        app = driver.launch("/usr/bin/python3", str(program), qt=5)
        found = app.window("Verbs")
        eventually(found).is_open()
        yield found


def has_told(window, text):
    eventually(window.widget("told")).has(text=text)


def test_a_tab_has_a_context_menu_and_a_double_click(window):
    window.tab("Two").context_menu("Close").click()
    has_told(window, "closed Two")
    window.tab("Three").double_click()
    has_told(window, "double clicked Three")
    window.tab("One").hover()
    assert window.app.widget_at_cursor().path.endswith("qt_tabwidget_tabbar")


def test_the_tool_tip_of_a_tab_appears(window):
    window.tab("One").hover()
    window.tab("Two").hover()
    tips = lambda: [record.class_name for record in window.app.windows()]  # noqa: E731
    eventually(lambda: "QTipLabel" in tips()).is_true()


def test_a_movable_tab_is_dragged_to_the_place_of_another(window):
    bar = window.find("QTabBar", text="One")
    window.tab("One").drag_to(window.tab("Two"))
    eventually(bar.items).equals(("Two", "One", "Three"))
    window.tab("Three").drag_to(window.tab("Two"))
    eventually(bar.items).equals(("Three", "Two", "One"))


def test_rows_are_dragged_before_others_and_into_another_list(window):
    tasks, done = window.widget("tasks"), window.widget("done")
    tasks.item("tasks 2").drag_to(tasks.item("tasks 0"), to=(0.5, 0.05))
    eventually(tasks.items).equals(("tasks 2", "tasks 0", "tasks 1"))
    tasks.item("tasks 0").drag_to(done.item("done 1"), to=(0.5, 0.95))
    eventually(done.items).equals(("done 0", "done 1", "tasks 0", "done 2"))
    eventually(tasks.items).equals(("tasks 2", "tasks 1"))


def test_a_page_of_a_tool_box_is_clicked_hovered_and_chosen(window):
    box = window.widget("box")
    box.item("End").click()
    eventually(box).has(currentText="End")
    box.item("Start").choose()
    eventually(box).has(currentText="Start")
    box.item("End").hover()
    assert box.item("Start").is_selected() and not box.item("End").is_selected()


def test_the_check_box_of_a_cell_is_set_and_read(window):
    table = window.widget("table")
    cell = table.cell("row 30", "Done")
    assert not cell.is_checked() and cell.is_enabled()
    cell.check()
    assert cell.is_checked()
    cell.check()
    assert cell.is_checked()
    cell.uncheck()
    assert not cell.is_checked()


def test_a_partly_checked_cell_gets_either_state(window):
    cell = window.widget("table").cell("row 1", "Done")
    cell.uncheck()
    assert not cell.is_checked()


def test_a_cell_that_cannot_be_checked_says_so(window):
    table = window.widget("table")
    with pytest.raises(CommandError, match="has no check box"):
        table.cell("row 0", "Name").check()
    with pytest.raises(ConditionError, match=r"after check\(True\)"):
        table.cell("row 2", "Done").check(timeout=0.3)
    assert not table.cell("row 3", "Done").is_enabled()
    with pytest.raises(NotReadyError, match="there is no row"):
        table.cell("row 99", "Done").click(timeout=0)


def test_a_cell_is_filled_and_takes_keys(window):
    cell = window.widget("table").cell("row 30", "Name")
    cell.fill("Tea €")
    assert cell.text() == "Tea €"
    cell.enter("Coffee")
    eventually(cell.text).equals("Coffee")
    cell.press("F2")
    window.press("Home")
    window.type("Cold ")
    window.press("Return")
    eventually(cell.text).equals("Cold Coffee")
    cell.type("Milk\n")  # opens the editor with it
    eventually(cell.text).equals("Milk")


def test_what_keeps_another_text_and_what_takes_no_keys_says_so(window):
    table = window.widget("table")
    with pytest.raises(ConditionError, match=r"has the text 'NAME 5' after fill\('name 5'\)"):
        table.cell("row 4", "Name").fill("name 5", timeout=0.3)
    for act in (table.column_header("Name").enter, table.column_header("Name").press):
        with pytest.raises(CommandError, match="takes no keys"):
            act("F2")


def test_headers_are_clicked_and_have_menus(window):
    table = window.widget("table")
    table.column_header("Done").click()
    has_told(window, "header 1")
    table.column_header(1).context_menu("Hide").click()
    has_told(window, "hidden 0")
    table.row_header("row 35").double_click()
    has_told(window, "row header 35")
    assert str(table.column_header("Done")).endswith(".column_header('Done')")


def test_headers_and_entries_of_their_menus_tell_what_they_are(window):
    header = window.widget("table").column_header("Done")
    assert (header.text(), header.is_enabled()) == ("Done", True)
    assert header.context_menu("Pinned").is_checked()
    assert not header.context_menu("Hide").is_checked()
    with pytest.raises(CommandError, match="Pinned"):
        header.context_menu("Pined").is_checked(timeout=0)
    assert not window.app.popup().is_open()


def test_a_widget_is_scrolled_to_without_the_mouse(window):
    area = window.widget("area").rect()
    far = window.widget("far")
    assert far.rect().top > area.bottom
    far.scroll_to()
    assert far.rect().bottom <= area.bottom and far.rect().right <= area.right


def test_an_entry_of_a_menu_is_hovered_for_its_status_tip(window):
    window.menu("File/New").hover()
    eventually(window.widget("status")).has(currentMessage="makes a new one")
    window.menu("File/Recent/Letter").hover()
    eventually(window.widget("status")).has(currentMessage="opens a letter")
    window.menu("File/Quit").hover()
    window.menu("File/New").hover()
    eventually(window.widget("status")).has(currentMessage="makes a new one")
    with pytest.raises(NotReadyError) as caught:
        window.menu("File/Nwe").hover(timeout=0)
    assert 'did you mean "New"?' in str(caught.value)
