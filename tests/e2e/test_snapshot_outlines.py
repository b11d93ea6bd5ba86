"""The outline of a snapshot: what a person reads."""

import pytest

from qtdriver import Snapshot, SnapshotNode, errors
from qtdriver.lookup.reading_order import in_reading_order

RECT = [0, 0, 10, 10]


def node(role, ref=1, **fields):
    return {"ref": ref, "class": "QWidget", "role": role, "rect": RECT, **fields}


DIALOG = node(
    "dialog",
    text="New order",
    name="orderDialog",
    children=[
        node("widget", children=[node("label", text="Customer:"), node("edit", label="Customer:", value="Ada")]),
        node("checkbox", text="Milk", states=["checked", "focused"]),
        node("slider", label="Heat", value=42),
        node("tree", name="files", header=["Name", "Size"], more=7, items=[
            {"texts": ["src", ""], "states": ["expanded"]},
            {"texts": ["main.cpp", "12"], "depth": 1},
        ]),
        node("label", text="Nobody's label"),
    ],
)  # fmt: skip

OUTLINE = """\
dialog "New order" #orderDialog
  edit "Customer:" = 'Ada'
  checkbox "Milk" (checked, focused)
  slider "Heat" = 42
  tree #files
    - src |  (expanded)
      - main.cpp | 12
    - ... 7 more
  label "Nobody's label\""""


def test_an_outline_tells_what_a_person_sees():
    assert str(Snapshot(SnapshotNode.of(DIALOG))) == OUTLINE


def test_widgets_are_read_row_by_row_in_whatever_order_the_application_has_made_them():
    """As the keys of a keypad that come from a hash; a label is a little lower than its field."""
    placed = [
        ("6", [60, 50, 20, 20]), ("pane", [200, 0, 50, 100]), ("4", [0, 50, 20, 20]), ("9", [60, 20, 20, 20]),
        ("5", [30, 50, 20, 20]), ("field", [60, 1, 90, 18]), ("name", [0, 3, 50, 12]), ("7", [0, 20, 20, 20]),
    ]  # fmt: skip
    for made in (placed, placed[::-1]):
        inner = node("widget", children=[node("button", text=text, rect=rect) for text, rect in made])
        read = in_reading_order(SnapshotNode.of(node("window", children=[inner])))
        texts = [found.text for found in read.children[0].children]
        assert texts == ["pane", "name", "field", "7", "9", "4", "5", "6"]


def test_nodes_are_those_of_the_whole_tree_each_before_its_children():
    snapshot = Snapshot(SnapshotNode.of(DIALOG))
    assert [found.role for found in snapshot.nodes] == [
        "dialog", "widget", "label", "edit", "checkbox", "slider", "tree", "label",
    ]  # fmt: skip


def test_a_place_has_its_last_pixels():
    rect = SnapshotNode.of(node("button", rect=[3, 4, 10, 20])).rect
    assert (rect.left, rect.top, rect.right, rect.bottom) == (3, 4, 12, 23)


def test_long_texts_are_cut():
    line = str(SnapshotNode.of(node("label", text="x" * 500)))
    assert len(line) < 80 and line.endswith('..."')


@pytest.mark.parametrize("told", [{}, {"ref": 1}, node("a", rect=[1, 2]), node("a", items=[{}])])
def test_what_is_no_widget_is_a_protocol_error(told):
    with pytest.raises(errors.ProtocolError):
        SnapshotNode.of(told)


def test_of_many_rows_and_columns_the_first_are_told():
    rows = [{"texts": [f"{row}{column}" for column in "abcde"]} for row in range(12)]
    lines = str(Snapshot(SnapshotNode.of(node("table", items=rows, more=3)))).splitlines()
    assert lines[1] == "  - 0a | 0b | 0c | ..."
    assert lines[10:] == ["  - 9a | 9b | 9c | ...", "  - ... 5 more"]


def test_a_named_frame_around_one_named_widget_is_left_out_and_a_splitter_s_handle():
    inner = node("widget", name="page", children=[node("edit", name="note"), node("splitter handle")])
    outer = node("dialog", children=[node("stack", name="stack", children=[inner]), node("label")])
    assert str(Snapshot(SnapshotNode.of(outer))) == "dialog\n  edit #note"
    two = node("widget", name="page", children=[node("edit", name="note"), node("edit", name="more")])
    assert "#page" in str(Snapshot(SnapshotNode.of(node("dialog", children=[two]))))
