"""Widget trees of listings, and the addresses of items: what can be known without an application."""

import pytest

from qtdriver import (
    UnsupportedTextError,
    WidgetTree,
    cell,
    column_header,
    menu_entry,
    menu_path,
    model_item,
    row_header,
    tree_path,
    tree_row,
)
from qtdriver.api.mouse import mouse_command
from qtdriver.lookup.derived import button_name
from qtdriver.protocol.records import WidgetRecord


def tree(*lines):
    """A tree from lines such as "1 V QPushButton ok"; a class without a name has none."""
    records = []
    for line in lines:
        depth, visible, class_name, *name = line.split(" ")
        records.append(WidgetRecord(int(depth), visible == "V", class_name, name[0] if name else ""))
    return WidgetTree(records)


def names(nodes):
    return [node.name for node in nodes]


WINDOW = tree(
    "0 V QMainWindow main",
    "1 V QFrame left",
    "2 V QPushButton ok",
    "2 N QLabel note",
    "1 V QFrame right",
    "2 V QWidget",
    "3 V QPushButton ok",
    "1 N QPushButton hidden",
)


@pytest.mark.parametrize(
    "path, count",
    [
        ("ok", 2),
        ("left/ok", 1),
        ("right/ok", 0),
        ("right//ok", 1),
        ("right/unnamed/ok", 1),
        ("main//ok", 2),
        ("/ok", 2),
        ("outer/main/left/ok", 0),
        ("/main", 0),
        ("main", 1),
        ("unnamed", 1),
        ("right/", 1),
        ("nothing", 0),
    ],
)
def test_a_path_finds_what_the_agent_finds(path, count):
    assert len(WINDOW.find(path)) == count


def test_the_shortest_path_that_is_unique_is_suggested():
    assert [WINDOW.unique_path(node) for node in WINDOW.named("ok")] == ["left/ok", "right//ok"]
    assert WINDOW.unique_path(WINDOW.named("note")[0]) == "note"


def test_a_hidden_namesake_does_not_take_a_path_away():
    twins = tree("0 V QWidget main", "1 V QLabel note", "1 N QLabel note")
    assert [twins.unique_path(node) for node in twins.named("note")] == ["note", None]


def test_twins_have_no_unique_path():
    twins = tree("0 V QWidget main", "1 V QLabel note", "1 V QLabel note")
    assert [twins.unique_path(node) for node in twins.named("note")] == [None, None]


def test_the_name_of_a_nameless_button_is_not_guessed():
    bar = tree("0 V QWidget main", "1 V QPushButton", "1 V QToolButton", "1 V QLabel")
    button, tool_button, label = bar.nodes[1:]
    assert [bar.unique_path(node) for node in (button, tool_button)] == [None, None]
    assert bar.unique_path(label) is None, "the tool button may be called unnamed, too"


def test_children_of_an_input_dialog_are_named_after_their_class():
    dialog = tree("0 V QInputDialog", "1 V QLineEdit", "1 V QPushButton")
    assert names(dialog.nodes) == ["unnamed", "QLineEdit__widget__", ""]


@pytest.mark.parametrize(
    "text, name",
    [
        ("&Cancel", "Cancel_dialog_button"),
        ("Apply  to all", "ApplyToAll_dialog_button"),
        ("OK", "Ok_dialog_button"),
        ("Don't save", "Don'tSave_dialog_button"),
    ],
)
def test_a_button_without_a_name_is_named_after_its_text(text, name):
    assert button_name(text) == name


def test_addresses_are_written_as_the_agent_reads_them():
    assert menu_path("File", "Save as...") == "File/Save as..."
    assert menu_path("File", menu_entry(0)) == "File/Item 0"
    assert tree_path("docs", tree_row("readme", "12")) == "docs/readme:12"
    assert cell("Espresso", 2) == "Espresso:2"
    assert model_item((2, 3), 1) == "2;3/1"
    assert model_item((2, "Price")) == "2;Price"
    assert (row_header(1), column_header("Price")) == ("V:1", "H:Price")


@pytest.mark.parametrize(
    "write",
    [
        lambda: tree_path("and/or"),
        lambda: tree_row("and/or"),
        lambda: cell("9:30", 1),
        lambda: model_item("a;b"),
        lambda: model_item("a/b"),
    ],
)
def test_a_text_that_cannot_be_written_is_refused(write):
    with pytest.raises(UnsupportedTextError, match="joins its parts"):
        write()


@pytest.mark.parametrize(
    "write", [lambda: cell(0, 1), lambda: model_item(0), lambda: menu_entry(-1), lambda: menu_path()]
)
def test_a_number_that_no_item_has_is_refused(write):
    with pytest.raises(ValueError):
        write()


def test_mouse_commands_are_written_as_the_agent_reads_them():
    assert mouse_command("MouseClick", "left", None, "") == "MouseClick:LeftButton:::"
    assert (
        mouse_command("MousePress", "middle", (0.25, 1), "shift")
        == "MousePress:MidButton:0.25:1:ShiftModifier"
    )
    assert mouse_command("MouseMove", "", (0.5, 0.5), "") == "MouseMove::0.5:0.5:"


@pytest.mark.parametrize(
    "arguments",
    [
        ("Click", "left", None, ""),
        ("MouseClick", "thumb", None, ""),
        ("MouseClick", "left", (1.5, 0.5), ""),
        ("MouseClick", "left", None, "hyper"),
    ],
)
def test_a_mouse_command_with_an_unknown_word_is_refused(arguments):
    with pytest.raises(ValueError):
        mouse_command(*arguments)
