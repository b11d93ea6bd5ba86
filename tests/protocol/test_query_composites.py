"""Inner parts of composite widgets under the cursor: the composite is told."""

import pytest

pytestmark = pytest.mark.shared

TITLE = "Composites".encode().hex()


@pytest.fixture
def app(launch):
    host = launch("compositehost")
    host.wait_until("composites", "isActiveWindow", "true")
    return host


def part_under_cursor(app, name):
    app.do(f"pointAt:{name}")
    return app.events("part")[-1][len("part ") :]


@pytest.mark.parametrize(
    "name, part, told_as",
    [
        ("spin", "QLineEdit", "QSpinBox"),
        ("doubleSpin", "QLineEdit", "QDoubleSpinBox"),
        ("date", "QLineEdit", "QDateEdit"),
        ("text", "QWidget", "QTextEdit"),
        ("treeWidget", "QWidget", "QTreeView"),
        ("listWidget", "QWidget", "QListView"),
        ("tableWidget", "QWidget", "QTableWidget"),
        ("treeView", "QWidget", "QTreeView"),
        ("listView", "QWidget", "QListView"),
        ("tableView", "QWidget", "QTableView"),
        ("q3ListView", "QAbstractScrollAreaWidget", "QWidget"),
        ("q3ListBox", "QAbstractScrollAreaWidget", "QWidget"),
        ("q3Table", "QAbstractScrollAreaWidget", "QWidget"),
        ("frequency", "VCNumeric", "QWidget"),
    ],
)
def test_a_part_is_told_as_its_composite(app, name, part, told_as):
    assert part_under_cursor(app, name) == part
    assert app.request("3") == f"?,{told_as},1,1,composites/{name},composites,{TITLE}"


@pytest.mark.parametrize(
    "name, part, told_as",
    [
        ("numericElsewhere", "VCNumeric", "QWidget"),
        ("derivedNumeric", "DerivedNumeric", "QWidget"),
        ("labelInText", "QLabel", "QLabel"),
    ],
)
def test_other_widgets_within_are_told_themselves(app, name, part, told_as):
    assert part_under_cursor(app, name) == part
    assert app.request("3") == f"?,{told_as},1,1,composites/{name}/{name}Part,composites,{TITLE}"
