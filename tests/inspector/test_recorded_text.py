"""The text of the editor as it grows: what the user has edited stays; and the checks that a widget offers."""

import gc
import os
import weakref
from types import SimpleNamespace

import pytest

from qtdriver import App
from qtdriver.inspector.operations import perform
from qtdriver.lookup.snapshot import SnapshotNode
from qtdriver.recording.checks import checks_of
from qtdriver.recording.code import Needs
from qtdriver.recording.editing import Edited, with_needs, with_steps
from qtdriver.recording.files import TestFileError, write_below, write_by_path

END = 99
"""The number of a line that is not there: the cursor is at the end."""

TEST = "def test_recorded(qtdriver):\n    a()\n    b()\n"

EDITS = {
    "an empty text becomes a test": ("", 0, [], ["a()"], "def test_recorded(qtdriver):\n    a()\n"),
    "a step goes to the end": (TEST, 0, ["a()", "b()"], ["a()", "b()", "c()"], f"{TEST}    c()\n"),
    "the last step becomes another one": (
        TEST,
        0,
        ["a()", "b()"],
        ["a()", "bb()", "c()"],
        "def test_recorded(qtdriver):\n    a()\n    bb()\n    c()\n",
    ),
    "a step that is none any more goes": (
        TEST,
        0,
        ["a()", "b()"],
        ["a()"],
        "def test_recorded(qtdriver):\n    a()\n",
    ),
    "a step that the user has changed stays": (
        TEST.replace("b()", "b(1)"),
        0,
        ["a()", "b()"],
        ["a()", "bb()", "c()"],
        "def test_recorded(qtdriver):\n    a()\n    c()\n    b(1)\n",
    ),
    "with the cursor at what the user has changed": (
        TEST.replace("b()", "b(1)"),
        2,
        ["a()", "b()"],
        ["a()", "bb()", "c()"],
        "def test_recorded(qtdriver):\n    a()\n    b(1)\n    c()\n",
    ),
    "a line that the user has added stays in front": (
        f"{TEST}    # mine\n",
        3,
        ["a()", "b()"],
        ["a()", "b()", "c()"],
        f"{TEST}    # mine\n    c()\n",
    ),
    "a step goes below the cursor in another text": (
        TEST,
        1,
        [],
        ["c()"],
        "def test_recorded(qtdriver):\n    a()\n    c()\n    b()\n",
    ),
    "outside of a function it goes to the end": (TEST, 0, [], ["c()"], f"{TEST}    c()\n"),
    "the indentation is that of the line above": (
        "def test_it(qtdriver):\n    with a():\n        b()\n",
        END,
        ["b()"],
        ["b()", "c()"],
        "def test_it(qtdriver):\n    with a():\n        b()\n        c()\n",
    ),
    "the same step twice": (
        "def test_it(qtdriver):\n    a()\n    a()\n",
        0,
        ["a()", "a()"],
        ["a()", "aa()"],
        "def test_it(qtdriver):\n    a()\n    aa()\n",
    ),
}


@pytest.mark.parametrize("case", EDITS)
def test_steps_are_written_and_edits_kept(case):
    text, line, before, after, expected = EDITS[case]
    assert with_steps(text, line, before, after).text == expected


def test_nothing_new_changes_nothing():
    for text in (TEST, f"{TEST}    ", f"{TEST}\n\n"):
        assert with_steps(text, 1, ["a()", "b()"], ["a()", "b()"]).text == text


EVENTUALLY = Needs(names=("eventually",))
SECRET = Needs(("os",), (), ('SECRET_1 = os.environ["TEST_SECRET_1"]',))
HEADS = {
    "nothing": (TEST, Needs(), TEST),
    "a name": (TEST, EVENTUALLY, f"from qtdriver import eventually\n\n\n{TEST}"),
    "a name that is there": (
        f"from qtdriver import eventually\n\n\n{TEST}",
        EVENTUALLY,
        f"from qtdriver import eventually\n\n\n{TEST}",
    ),
    "one more name": (
        f"from qtdriver import containing\n\n\n{TEST}",
        EVENTUALLY,
        f"from qtdriver import containing, eventually\n\n\n{TEST}",
    ),
    "a module and a secret": (
        TEST,
        SECRET,
        f'import os\n\nSECRET_1 = os.environ["TEST_SECRET_1"]\n\n\n{TEST}',
    ),
    "one more secret": (
        f'import os\n\nSECRET_1 = os.environ["TEST_SECRET_1"]\n\n\n{TEST}',
        Needs(("os",), (), ('SECRET_2 = os.environ["TEST_SECRET_2"]',)),
        f'import os\n\nSECRET_1 = os.environ["TEST_SECRET_1"]\nSECRET_2 = os.environ["TEST_SECRET_2"]\n\n\n{TEST}',
    ),
    "behind a docstring": (
        f'"""My tests,\nall of them."""\n\nimport time\n\nLIMIT = 5\n\n\n{TEST}',
        Needs(("re",), ("eventually",)),
        f'"""My tests,\nall of them."""\n\nimport re\nimport time\n\nfrom qtdriver import eventually\n\nLIMIT = 5\n\n\n{TEST}',
    ),
}


@pytest.mark.parametrize("case", HEADS)
def test_what_steps_need_is_imported_once(case):
    text, needs, expected = HEADS[case]
    assert with_needs(Edited(text, 0), needs).text == expected


def test_the_line_of_the_last_step_is_told_also_behind_new_imports():
    told = with_needs(with_steps(TEST, 0, ["a()", "b()"], ["a()", "b()", "c()"]), EVENTUALLY)
    assert told.text.split("\n")[told.line] == "    c()"


def node(role, **told):
    return SnapshotNode.of({"ref": 1, "class": "QWidget", "role": role, "rect": [0, 0, 9, 9], **told})


ALWAYS = ["it is enabled", "it is visible"]
OFFERED = {
    "a button": (node("button", text="OK"), ['its text is "OK"', *ALWAYS]),
    "a disabled button": (
        node("button", text="OK", states=["disabled"]),
        ['its text is "OK"', "it is disabled", "it is visible"],
    ),
    "a box": (node("checkbox", text="Milk"), ['its text is "Milk"', "it is not checked", *ALWAYS]),
    "a checked box": (
        node("checkbox", text="Milk", states=["checked"]),
        ['its text is "Milk"', "it is checked", *ALWAYS],
    ),
    "a field": (node("edit", value="Ada"), ['its text is "Ada"', *ALWAYS]),
    "a text that the agent has cut": (node("edit", value="Ada…"), ALWAYS),
    "a number": (node("spin box", value=3), ["its value is 3", *ALWAYS]),
    "a choice": (node("combo box", value="Dark"), ['its value is "Dark"', *ALWAYS]),
    "a list": (
        node("list", items=[{"texts": ["Tea"], "states": ["selected"]}, {"texts": ["Milk"]}]),
        [*ALWAYS, '"Tea" is selected', 'there is an item "Tea"', 'there is an item "Milk"'],
    ),
    "a tree": (
        node("tree", items=[{"texts": ["2026"]}, {"texts": ["May"], "depth": 1}]),
        [*ALWAYS, 'there is an item "2026"', 'there is an item "2026/May"'],
    ),
    "a table": (
        node("table", header=["Drink", "2"], items=[{"texts": ["Tea", "1.80"]}]),
        [*ALWAYS, 'row 1, Drink is "Tea"', 'row 1, 2 is "1.80"'],
    ),
}


@pytest.mark.parametrize("case", OFFERED)
def test_what_is_so_can_be_checked(case):
    widget, words = OFFERED[case]
    of_window = ['the window\'s title is "Shop"', "the outline of the whole window"]
    assert [check.words for check in checks_of(widget, "Shop")] == [*words, *of_window]


def test_where_no_folder_can_be_held_open_a_file_is_written_by_its_path(tmp_path, monkeypatch):
    monkeypatch.setattr("sys.platform", "win32")
    write_below(tmp_path, "a/test_a.py", "first\n", overwrite=False)
    with pytest.raises(TestFileError, match="is there already"):
        write_below(tmp_path, "a/test_a.py", "second", overwrite=False)
    write_below(tmp_path, "a/test_a.py", "2", overwrite=True)
    assert (tmp_path / "a" / "test_a.py").read_text() == "2"


@pytest.mark.parametrize(
    "parts", [["out", "test_a.py"], ["out", "deeper", "test_a.py"], ["test_link.py"], ["C:", "test_a.py"]]
)
def test_a_path_leads_to_no_other_folder_and_no_other_drive(tmp_path, parts):
    folder, elsewhere = tmp_path / "tests", tmp_path / "elsewhere"
    folder.mkdir()
    elsewhere.mkdir()
    (folder / "out").symlink_to(elsewhere)
    (folder / "test_link.py").symlink_to(elsewhere / "test_there.py")
    with pytest.raises(OSError):
        write_by_path(folder, parts, "text", overwrite=True)
    assert list(elsewhere.iterdir()) == [] and not (folder / "C:").exists()


def test_what_a_page_keeps_of_an_application_does_not_keep_the_application():
    connection = SimpleNamespace(pid=os.getpid(), require=lambda name: None, record=lambda: None)
    app = App(connection)
    perform(app, "record", {"on": True})
    perform(app, "python", {"text": "mine = app"})
    assert perform(app, "plan", {"text": "app"})["error"] == ""
    gone = weakref.ref(app)
    del app
    gc.collect()
    assert gone() is None
