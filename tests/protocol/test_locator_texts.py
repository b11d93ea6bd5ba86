"""Widgets by what is written on them and beside them."""

import pytest

from located import found, names, refusal


@pytest.fixture
def app(launch):
    return launch("locatorhost")


@pytest.mark.shared
@pytest.mark.parametrize(
    "locator, name",
    [
        ("text=Save", "saveButton"),
        ("text=&Save", "saveButton"),
        ('text="Save as..."', "saveAsButton"),
        ('text="Save as...\tCtrl+S"', "saveAsButton"),
        ("text=R&D", "researchButton"),
        ("text=R&&D", "researchButton"),
        ('text="Grüße, \\"€\\""', "euroButton"),
        ('text="two lines"', "linesButton"),
        ('text="two\\n\\tlines"', "linesButton"),
        ('text="Rich & bold"', "richLabel"),
        ('text="AT&T & more"', "stateLabel"),
        ('text="Open file"', "openButton"),
        ('QToolButton text*="pen f"', "openButton"),
        ("text=Search", "searchEdit"),
        ("placeholder=Search", "searchEdit"),
        ("placeholder*=ear", "searchEdit"),
        ('tooltip="What it does"', "linesButton"),
        ("action=actionOpen", "openButton"),
        ('action="Open file"', "openButton"),
        ("title=Notes", "notesGroup"),
        ("text=Notes", "notesGroup"),
        ("title=Layers", "dock"),
        ('title="Doc 1"', "Doc 1"),
        ("title=First", "First"),
        ("title=Drawer", "boxPage"),
        ("QMenuBar text=File", "menus"),
        ("QTabBar text=Second", "qt_tabwidget_tabbar"),
        ("text~=^Save.as", "saveAsButton"),
        ("text~=(?i)RICH", "richLabel"),
    ],
)
def test_a_widget_is_found_by_what_it_shows(app, locator, name):
    window = "Form" if name in ("stateLabel", "notesGroup") else "Main"
    assert found(app, window, locator) == name


@pytest.mark.shared
@pytest.mark.parametrize(
    "locator",
    ["text=save", "text=Ctrl+S", "text=Sav", "text*=SAVE", "text~=^ave", 'text="twolines"'],
)
def test_another_text_is_not_that_of_the_widget(app, locator):
    assert refusal(app, "Main", locator)[0] == "5,Widget not found"


@pytest.mark.shared
@pytest.mark.parametrize(
    "locator, name",
    [
        ("label=Name:", "nameEdit"),
        ("label=&Name:", "nameEdit"),
        ("label=Path:", "pathEdit"),
        ("label=Owner:", "ownerEdit"),
        ('label="Größe in €:"', "sizeBox"),
        ("label=State:", "stateLabel"),
        ("label=Width:", "widthBox"),
        ("label=Height:", "heightBox"),
        ("label=Colour", "colourBox"),
        ('label="Far away:"', "notesEdit"),
        ("label*=olo", "colourBox"),
        ("label~=^Hei", "heightBox"),
    ],
)
def test_a_field_is_found_by_its_label(app, locator, name):
    assert found(app, "Form", locator) == name


@pytest.mark.shared
@pytest.mark.parametrize("label", ["Notes", "Ready", "Locked", "name:"])
def test_a_text_that_labels_nothing_finds_nothing(app, label):
    """A buddy label counts more than a group box; a gap parts a label from what comes after it."""
    assert refusal(app, "Form", f"label={label}")[0] == "5,Widget not found"


@pytest.mark.shared
def test_a_description_tells_texts_as_they_are_shown(app):
    button = refusal(app, "Main", 'QPushButton text="two  line"')[1][0]
    assert button["class"] == "QPushButton" and button["role"] == "button"
    assert button["name"] == "linesButton"
    assert button["text"] == "two lines" and button["tip"] == "What it does"
    assert "states" not in button and "label" not in button and "title" not in button


@pytest.mark.shared
def test_a_description_has_label_placeholder_action_and_states(app):
    field = refusal(app, "Form", "QLineEdit label=Nam:")[1][0]
    assert (field["name"], field["label"], field["role"]) == ("nameEdit", "Name:", "edit")
    search = refusal(app, "Main", "QLineEdit placeholder=search")[1][0]
    assert search["placeholder"] == "Search" and search["states"] == ["readonly"]
    tool = refusal(app, "Main", "QToolButton action=actionOpne")[1][0]
    assert tool["action"] == "actionOpen" and tool["text"] == "Open file"


@pytest.mark.shared
def test_a_description_tells_where_the_widget_is_on_the_screen(app):
    button = refusal(app, "Main", 'QPushButton text="two  line"')[1][0]
    left, top, right, bottom = app.rect("Main", "linesButton")
    assert button["rect"] == [left, top, right - left + 1, bottom - top + 1]


@pytest.mark.shared
def test_hidden_widgets_are_told_as_hidden(app):
    refused, [button] = refusal(app, "Main", "name=saveButton2")
    assert refused == "6,Widget not visible"
    assert button["states"] == ["hidden"] and names([button]) == ["saveButton2"]
