"""The language of locators: steps, classes, conditions, positions, and what is no locator."""

import pytest

from extensions import extension, hexadecimal
from located import found, invalid, names, refusal


@pytest.fixture
def app(launch):
    return launch("locatorhost")


@pytest.mark.shared
@pytest.mark.parametrize(
    "locator, name",
    [
        ("name=saveButton", "saveButton"),
        ('name="saveButton"', "saveButton"),
        ("name*=searchE", "searchEdit"),
        ("name~=^rich", "richLabel"),
        ("QLabel name~=^rich", "richLabel"),
        ("* name=searchEdit", "searchEdit"),
        ("path=saveButton", "saveButton"),
        ("path=dock//saveButton", "saveButton"),
        ("path=actionOpen_action_button", "5"),
        ("path=Save_dialog_button", "5"),
        ("QMainWindow", "main"),
        ("name=main", "main"),
        (".placeholderText=Search", "searchEdit"),
        ('.dynamic="of this one"', "searchEdit"),
        ("QLineEdit .readOnly=true", "searchEdit"),
        (".dynamic*=this", "searchEdit"),
        ("QLineEdit .maxLength=32767 name=searchEdit", "searchEdit"),
    ],
)
def test_a_widget_is_found_by_what_a_developer_knows_of_it(app, locator, name):
    assert found(app, "Main", locator).split(",")[0] == name


@pytest.mark.shared
@pytest.mark.parametrize(
    "window, locator, name",
    [
        ("Form", "fields::SpecialEdit", "ownerEdit"),
        ("Form", "QLineEdit name=ownerEdit", "ownerEdit"),
        ("Form", "QWidget name=ownerEdit", "ownerEdit"),
        ("Form", "SpecialEdit", "5"),
        ("Form", "QLineEdi", "5"),
        ("Form", "fields::SpecialEdit name=nameEdit", "5"),
        ("Main", "QAbstractButton text=Save", "saveButton"),
    ],
)
def test_a_class_counts_and_so_does_one_that_is_derived_from_it(app, window, locator, name):
    assert found(app, window, locator).split(",")[0] == name


@pytest.mark.shared
def test_a_step_looks_within_what_the_one_before_it_found(app):
    inside = 'QMdiSubWindow title="Doc 2" >> QPushButton'
    assert found(app, "Main", inside) == "closeDocument"
    assert refusal(app, "Main", 'text="Close document"')[0] == "7,Widget visible,2"
    assert found(app, "Main", 'name=area >> title="Doc 1" >> text*=Close') == "closeDocument"
    assert refusal(app, "Main", "name=saveButton >> QPushButton")[0] == "5,Widget not found"
    assert refusal(app, "Main", "QMdiSubWindow >> QPushButton")[0] == "7,Widget visible,2"


@pytest.mark.shared
def test_widgets_within_several_that_are_within_each_other_count_once(app):
    assert refusal(app, "Main", 'QWidget >> text="Close document"')[0] == "7,Widget visible,2"
    assert found(app, "Main", "QWidget >> QWidget >> name=saveButton") == "saveButton"


@pytest.mark.shared
def test_positions_are_those_in_the_order_of_the_widgets(app):
    first = found(app, "Main", "name=buttons >> QPushButton first")
    assert first == "saveButton"
    assert found(app, "Main", "name=buttons >> QPushButton nth=0") == "saveButton"
    assert found(app, "Main", "name=buttons >> QPushButton nth=2") == "researchButton"
    assert found(app, "Main", "name=buttons >> QPushButton last") == "linesButton"
    refused, near = refusal(app, "Main", "name=buttons >> QPushButton nth=5")
    assert refused == "5,Widget not found" and names(near)[:2] == ["saveButton", "saveAsButton"]


@pytest.mark.shared
def test_only_visible_widgets_are_found_unless_asked_otherwise(app):
    assert found(app, "Main", "text=Same") == "sameFirst"
    assert found(app, "Main", "text=Same visible=true") == "sameFirst"
    assert found(app, "Main", "text=Same visible=false") == "sameSecond"
    assert refusal(app, "Main", "text=Same visible=any")[0] == "7,Widget visible,2"
    assert refusal(app, "Main", "name=sameSecond")[0] == "6,Widget not visible"


@pytest.mark.shared
def test_widgets_of_other_windows_below_a_window_are_not_found(app):
    assert found(app, "Of main", "name=inDialog") == "inDialog"
    refused, near = refusal(app, "Main", "name=inDialog visible=any")
    assert refused == "5,Widget not found" and "inDialog" not in names(near)
    assert refusal(app, "Main", "name=main >> path=inDialog")[0] == "5,Widget not found"


PATHS = """inDialog dialog/inDialog main//inDialog dialog main main/dialog/inDialog buttons/saveButton dialog//saveButton
    Save_dialog_button actionOpen_action_button sameFirst sameSecond unnamed unnamed/unnamed main// / // main/inDialog
    nowhere nowhere//inDialog""".split()


@pytest.mark.shared
@pytest.mark.parametrize("path", ["", *PATHS])
def test_a_path_finds_what_it_finds_for_the_commands_also_in_other_windows_below(app, path):
    by_command = app.read("Main", path, "objectName")
    by_locator = found(app, "Main", f'path="{path}"')
    if by_command.startswith("u:"):
        assert by_locator == by_command[2:]
    else:
        written = hexadecimal(f'path="{path}"')
        assert by_locator.startswith(by_command.replace(f"({path})", f"({written})") + ",[")


@pytest.mark.shared
def test_a_path_goes_with_other_conditions_and_steps(app):
    assert found(app, "Main", "QPushButton path=inDialog") == "inDialog"
    assert refusal(app, "Main", "QLabel path=inDialog")[0] == "5,Widget not found"
    assert refusal(app, "Main", "path=inDialog path=saveButton")[0] == "5,Widget not found"
    assert found(app, "Main", "path=dialog >> QPushButton") == "inDialog"
    assert refusal(app, "Main", "name=main >> path=inDialog")[0] == "5,Widget not found"
    assert found(app, "Main", "path=main//saveButton first") == "saveButton"


@pytest.mark.shared
def test_several_widgets_are_told_with_what_tells_them_apart(app):
    refused, candidates = refusal(app, "Main", "QMdiSubWindow")
    assert refused == "7,Widget visible,2"
    assert [(w["title"], w["role"]) for w in candidates] == [("Doc 1", "subwindow"), ("Doc 2", "subwindow")]
    for candidate in candidates:
        assert found(app, "Main", f"ref={candidate['ref']}") == candidate["name"]


@pytest.mark.shared
def test_at_most_eight_widgets_are_told(app):
    refused, candidates = refusal(app, "Main", "QWidget")
    assert int(refused.rsplit(",", 1)[1]) > 8 and len(candidates) == 8


@pytest.mark.shared
@pytest.mark.parametrize(
    "locator, nearest",
    [
        ("QPushButton text=Same name=sameThird", ["sameFirst"]),
        ("QLabel text=Save", ["saveButton"]),
        ("text=save", ["saveButton"]),
        ("text=Srch", ["searchEdit"]),
        ("name=serchEdit", ["searchEdit"]),
        ("name=quiteAnother", []),
        ("QLineEdit .readOnly=false name=searchEdit", ["searchEdit"]),
    ],
)
def test_what_is_not_found_is_told_with_what_comes_nearest(app, locator, nearest):
    refused, widgets = refusal(app, "Main", locator)
    assert refused == "5,Widget not found"
    assert names(widgets)[: len(nearest)] == nearest
    assert bool(widgets) == bool(nearest)


def test_a_reference_is_good_as_long_as_its_widget_lives(app):
    button = refusal(app, "Main", "QToolButton name=opnButton")[1][0]
    assert button["name"] == "openButton"
    locator = f"ref={button['ref']}"
    assert found(app, "Main", locator) == "openButton"
    assert found(app, "Main", f"name=dock >> {locator}") == "openButton"
    assert refusal(app, "Form", locator)[0] == "5,Widget not found"
    assert refusal(app, "Main", f"QPushButton {locator}")[0] == "5,Widget not found"
    app.do("deleteOpenButton")
    assert refusal(app, "Main", locator)[0] == "5,Widget not found"


@pytest.mark.shared
def test_the_window_itself_is_meant_by_an_empty_locator(app):
    assert found(app, "Main", "") == "main"


@pytest.mark.shared
@pytest.mark.parametrize(
    "locator, reason, at",
    [
        (" ", "something to look for expected", 1),
        (">>", "something to look for expected", 0),
        ("QLabel >>", "something to look for expected", 9),
        ("QLabel >> >> QLabel", "something to look for expected", 10),
        ("QLabel QLabel", "a condition or a position expected", 7),
        ("name=a QLabel", "a condition or a position expected", 7),
        ("QLabel name", "a condition or a position expected", 7),
        ("Q-Label", "a blank expected", 1),
        ("a::", "a class, a condition or a position expected", 0),
        ("::a", "a class, a condition or a position expected", 0),
        ("2d", "a class, a condition or a position expected", 0),
        ("nam=a", 'unknown key "nam"', 0),
        ("=a", "a class, a condition or a position expected", 0),
        ("name=", "a value expected", 5),
        ('name=a"b', "a quote within a word", 6),
        ('name="a', "a quote that does not end", 5),
        ('name="a"b', "a blank expected", 8),
        ('name="\\x"', "an unknown escape", 6),
        ('name="\\', "an unknown escape", 6),
        (".=a", "the name of a property expected", 1),
        (".a", '"=", "*=" or "~=" expected', 2),
        ("ref=0", "a number from 1 expected", 4),
        ("ref=a", "a number from 1 expected", 4),
        ("ref*=1", '"=" expected', 3),
        ("path~=a", '"=" expected', 4),
        ("visible=yes", '"true", "false" or "any" expected', 8),
        ("nth=-1", "a number from 0 expected", 4),
        ("nth=99999999999", "a number from 0 expected", 4),
        ("first last", "nothing can come after the position", 6),
        ("nth=1 name=a", "nothing can come after the position", 6),
    ],
)
def test_what_is_no_locator_is_told_with_the_reason_and_the_place(app, locator, reason, at):
    assert found(app, "Main", locator) == invalid(reason, at)


@pytest.mark.shared
@pytest.mark.parametrize("pattern", ["(", "[a", "*", "a" * 1001])
def test_a_pattern_that_is_none_is_told(app, pattern):
    reply = found(app, "Main", f'QLabel text~="{pattern}"')
    assert reply.startswith("8,Exception : Invalid locator: no pattern, ") and reply.endswith(" at 7")


@pytest.mark.shared
def test_a_pattern_that_is_none_is_told_in_a_step_that_is_not_reached_too(app):
    assert refusal(app, "Main", "name=nothing >> text~=a")[0] == "5,Widget not found"
    assert found(app, "Main", "name=nothing >> text~=(").startswith(
        "8,Exception : Invalid locator: no pattern, "
    )


@pytest.mark.shared
def test_a_text_with_conversions_of_printf_is_told_as_it_stands(app):
    assert found(app, "Main", "%s%n%d=a") == invalid("a class, a condition or a position expected", 0)
    assert refusal(app, "Main", 'name="%s%n%d"') == ("5,Widget not found", [])


@pytest.mark.shared
def test_endless_locators_are_refused(app):
    assert found(app, "Main", "name=a " * 101) == invalid("too many words", 700)
    assert found(app, "Main", "* >> " * 1_000_000 + "*") == invalid("too many words", 250)
    long = "x" * 1_000_000
    assert refusal(app, "Main", f"text={long}") == ("5,Widget not found", [])


@pytest.mark.shared
@pytest.mark.parametrize("pattern", ["(a*)*b", "(x+x+)+y", "^(a|a|aa)+$", "(.*)*X"])
def test_a_pattern_that_would_take_for_ever_does_not(app, pattern):
    locator = f'name~="{pattern}" visible=any'
    assert found(app, "Main", locator)[0] in "0567"


def test_a_property_that_ends_widgets_ends_nothing_else(app):
    app.do("arm")
    assert found(app, "Deadly", "DeadlyWidget .deadly=1 last") == "survivor"
    assert refusal(app, "Deadly", "DeadlyWidget .deadly=1")[0] == "7,Widget visible,2"
    assert refusal(app, "Deadly", "* .deadly=1 name=victim >> *")[0] == "5,Widget not found"


@pytest.mark.shared
@pytest.mark.parametrize("number", ["+4", "+5", "+6", "+7", "+9"])
def test_windows_are_refused_as_by_the_commands(app, number):
    for window, reply in [("Nobody, here", "2,Window ({}) not found"), ("", "3,Window ({}) visible,4")]:
        assert app.request(extension(number, window, "")) == reply.format(hexadecimal(window))
