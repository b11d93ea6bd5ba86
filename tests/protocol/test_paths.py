"""Names and paths of widgets."""

import pytest

from refusals import nothing_happens


@pytest.fixture
def app(launch):
    return launch("corehost")


@pytest.mark.shared
def test_a_name_that_two_visible_widgets_have_is_ambiguous(app):
    assert app.read("Editor", "ok", "text") == "7,Widget (ok) visible,2"


@pytest.mark.shared
@pytest.mark.parametrize("parent", ["a", "b"])
def test_the_parents_name_tells_widgets_apart(app, parent):
    app.activate("Editor", f"{parent}/ok")
    app.wait_for("clicked ok")
    assert app.read("Editor", f"{parent}/ok", "className") == "u:QPushButton"


@pytest.mark.shared
@pytest.mark.parametrize(
    "path",
    [
        "deep",
        "inner/deep",
        "outer//deep",
        "middle//deep",
        "outer/middle//deep",
        "outer//inner/deep",
        "/deep",
        "//deep",
    ]
    + ["outer///deep", "main//deep", "main/central/outer/middle/inner/deep", "central//middle//deep"],
)
def test_a_path_that_fits_finds_the_widget(app, path):
    assert app.read("Editor", path, "text") == "u:deep"


@pytest.mark.shared
@pytest.mark.parametrize(
    "path",
    [
        "outer/deep",
        "x/deep",
        "x//deep",
        "deep/",
        "desktop/main//deep",
        "middle/outer/deep",
        "outer/inner/deep",
        "Deep",
    ],
)
def test_a_path_that_does_not_fit_finds_nothing(app, path):
    assert app.read("Editor", path, "text") == f"5,Widget ({path}) not found"


@pytest.mark.shared
def test_a_wrong_ancestor_is_not_found_although_the_name_exists(app):
    assert app.read("Editor", "x/ok", "text") == "5,Widget (x/ok) not found"


@pytest.mark.shared
def test_the_visible_one_of_two_widgets_is_found(app):
    assert app.read("Editor", "twin", "visible") == "0,b:true"


@pytest.mark.shared
def test_widgets_that_are_all_hidden_are_not_visible(app):
    with nothing_happens(app):
        assert app.read("Editor", "gone", "text") == "6,Widget (gone) not visible"
        assert app.activate("Editor", "gone") == "6,Widget (gone) not visible"


@pytest.mark.shared
def test_a_path_above_the_window_fails(app):
    assert app.read("Editor", "screen/main/central", "visible") == "5,Widget (screen/main/central) not found"


@pytest.mark.shared
def test_the_window_itself_has_its_own_name_as_path(app):
    assert app.read("Editor", "main", "className") == "u:QMainWindow"


@pytest.mark.shared
def test_the_only_unnamed_widget_is_found_as_unnamed(app):
    app.show("showUnnamed", "several")
    assert app.read("Single", "unnamed", "text") == "u:only"
    assert app.read("Single", "single/unnamed", "text") == "u:only"


@pytest.mark.shared
def test_several_unnamed_widgets_are_ambiguous(app):
    app.show("showUnnamed", "several")
    assert app.read("Several", "unnamed", "text") == "7,Widget (unnamed) visible,2"


@pytest.mark.shared
@pytest.mark.parametrize("path", ["", "/", "//"])
def test_a_path_of_empty_elements_fits_every_unnamed_widget(app, path):
    app.show("showUnnamed", "several")
    assert app.read("Single", path, "text") == "u:only"
    assert app.read("Several", path, "text") == f"7,Widget ({path}) visible,2"


@pytest.mark.shared
@pytest.mark.parametrize(
    "name, label",
    [
        ("Cancel_dialog_button", "&Cancel"),
        ("ApplyToAll_dialog_button", "Apply  to all"),
        ("Don'tSave_dialog_button", "Don't save"),
        ("\0_dialog_button", ""),
        ("GoOn_dialog_button", "Go on"),
    ],
)
def test_an_unnamed_push_button_is_named_by_its_text(app, name, label):
    app.show("showNames", "names")
    assert app.activate("Names", name) == "0,QPushButton"
    app.wait_for(f"clicked label {label}")
    assert app.read("Names", f"names/{name}", "text") == "u:" + label.replace("&", "")


@pytest.mark.shared
@pytest.mark.parametrize(
    "action, class_name", [("fileOpen", "QToolButton"), ("fileClose", "DerivedToolButton")]
)
def test_a_tool_button_is_named_by_its_only_action(app, action, class_name):
    app.show("showNames", "names")
    name = f"{action}_action_button"
    assert app.read("Names", name, "className") == f"u:{class_name}"
    assert app.activate("Names", name) == "0,QToolButton"
    app.wait_for(f"triggered {action}")


@pytest.mark.shared
def test_a_derived_name_must_fit_exactly(app):
    app.show("showNames", "names")
    with nothing_happens(app):
        assert app.activate("Names", "cancel_dialog_button") == "5,Widget (cancel_dialog_button) not found"
        assert app.activate("Names", "_action_button") == "5,Widget (_action_button) not found"


@pytest.mark.shared
def test_a_named_button_has_no_derived_name(app):
    with nothing_happens(app):
        assert app.activate("Editor", "Twin_dialog_button") == "5,Widget (Twin_dialog_button) not found"


def test_an_unnamed_widget_of_an_input_dialog_is_named_by_its_class(app):
    app.show("openInputDialog", "input")
    assert app.read("Input", "QLineEdit__widget__", "className") == "u:QLineEdit"
    assert app.read("Input", "input/QLineEdit__widget__", "visible") == "0,b:true"
    assert app.read("Input", "ValueWidget__widget__", "className") == "u:ValueWidget"
    assert app.read("Input", "input", "className") == "u:DerivedInputDialog"
    # The other line edit, one level deeper, has no such name: the one above is not ambiguous.
    assert app.activate("Input", "Ok_dialog_button") == "0,QPushButton"
    app.wait_for("input ")


@pytest.mark.parametrize(
    "class_name, name", [("QPushButton", "Help_dialog_button"), ("QToolButton", "find_action_button")]
)
def test_a_button_of_an_input_dialog_is_named_as_any_other(app, class_name, name):
    app.show("openInputDialog", "input")
    assert app.read("Input", name, "className") == f"u:{class_name}"
    other = f"{class_name}__widget__"
    assert app.read("Input", other, "className") == f"5,Widget ({other}) not found"


def test_a_changed_text_changes_the_derived_name_at_once(app):
    app.show("openInputDialog", "input")
    app.do("renameOk")
    assert app.activate("Input", "Ok_dialog_button") == "5,Widget (Ok_dialog_button) not found"
    assert app.activate("Input", "GoOn_dialog_button") == "0,QPushButton"
    app.wait_for("input ")
