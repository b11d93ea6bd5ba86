"""Widgets on the page of the inspector: the tree, pointing, addresses, properties, typed locators; in a browser, with the showcase."""

import pytest

from qtdriver import eventually

from chromium import DOWN, ESCAPE, LEFT, RIGHT

HAS_ROW = "return [...document.querySelectorAll('#tree .name')].some((one) => one.textContent === '#' + arguments[0])"
PLACE = """const canvas = document.getElementById("picture").getBoundingClientRect();
    const width = document.getElementById("picture").width;
    return [canvas.left + (arguments[0] + 0.5) * canvas.width / width, canvas.top + (arguments[1] + 0.5) * canvas.width / width]"""
FRAME = """const screen = document.getElementById("picture");
    const scale = screen.width / screen.getBoundingClientRect().width;
    const origin = screen.getBoundingClientRect();
    return [...document.querySelectorAll(arguments[0])].map((one) => one.getBoundingClientRect()).map((box) =>
        [box.left - origin.left, box.top - origin.top, box.width, box.height].map((side) => Math.round(side * scale)))"""


@pytest.fixture(autouse=True)
def tree(page):
    """The tree is there; no search, no locator, and a click uses the application."""
    page.run(
        """for (const id of ["find", "try"]) {
            const field = document.getElementById(id);
            field.value = "";
            field.dispatchEvent(new Event("input"));
        }
        document.getElementById("use").click()"""
    )
    page.wait_until(HAS_ROW, "showcase")


def rect(held, name):
    (node,) = [one for one in held.nodes() if one["name"] == name]
    return node["rect"]


def point_at(page, held, name, *actions):
    page.click("#point")
    page.mouse(("move", *page.run(PLACE, *held.centre(name))), *actions)


def select(page, held, name):
    """Selects a widget by a click in the picture: once more where the page has not yet seen that the application has changed."""

    def click():
        point_at(page, held, name, ("down", 0), ("up", 0))
        facts = "return document.querySelector('#selected .facts')?.textContent.includes('#' + arguments[0]) || false"
        return page.run(facts, name)

    eventually(click, timeout=60).is_true()
    page.wait_until("return document.querySelector('.best code') !== null")


def chosen_row(page):
    return page.texts("#tree [aria-selected=true]")


def test_windows_and_widgets_are_in_the_tree_as_they_are_in_each_other(page):
    levels = page.run(
        """return [...document.querySelectorAll("#tree [role=treeitem]")].map((row) =>
            [Number(row.getAttribute("aria-level")), row.querySelector(".class").textContent])"""
    )
    assert levels[0] == [1, "MainWindow"] and [2, "QMenuBar"] in levels
    assert all(after[0] <= before[0] + 1 for before, after in zip(levels, levels[1:]))


def test_a_widget_in_the_tree_is_marked_in_the_picture(page, held):
    place = page.run(
        """const row = [...document.querySelectorAll("#tree li")].find((one) => one.textContent.includes("#hopperCombo"));
        row.scrollIntoView({block: "center"});
        const box = row.getBoundingClientRect();
        return [box.left + 60, box.top + box.height / 2]"""
    )
    page.mouse(("move", *place))
    eventually(lambda: page.run(FRAME, "#marks .hovered"), timeout=60).equals([rect(held, "hopperCombo")])
    page.mouse(("move", 5, 5))
    eventually(lambda: page.run(FRAME, "#marks .hovered"), timeout=60).equals([])


def test_pointing_marks_and_a_click_selects_without_reaching_the_application(page, held):
    before = held.read("clickCount", "text")
    point_at(page, held, "brewButton")
    eventually(lambda: page.run(FRAME, "#marks .hovered"), timeout=60).equals([rect(held, "brewButton")])
    select(page, held, "brewButton")
    assert page.run(FRAME, "#marks .chosen") == [rect(held, "brewButton")]
    (row,) = chosen_row(page)
    assert 'button "Brew a cup"' in row and "QPushButton" in row
    assert page.text("#selected h2") == 'button "Brew a cup"'
    assert page.text(".best code") == 'app.window(name="showcase").widget("brewButton")'
    page.press(ESCAPE)
    assert page.run("return document.getElementById('use').getAttribute('aria-pressed')") == "true"
    assert held.read("clickCount", "text") == before


@pytest.mark.parametrize("name", ["cupSpin", "noteEdit"])
def test_pointing_at_a_part_of_a_field_selects_the_field(page, held, name):
    held.activate("pages/qt_tabwidget_tabbar", "Entry fields")
    page.type_into("#find", name)  # a search opens all that is around it
    page.wait_until(HAS_ROW, name)
    select(page, held, name)
    held.activate("pages/qt_tabwidget_tabbar", "Buttons")


def test_each_of_the_addresses_finds_the_widget_alone(page, held):
    select(page, held, "serveButton")
    page.wait_until("return document.querySelectorAll('.others .address').length > 2")
    (button,) = [node for node in held.nodes() if node["name"] == "serveButton"]
    told = [one["python"] for one in held.perform("addresses", ref=button["ref"])]
    shown = page.run(
        "return [...document.querySelectorAll('#selected .address code')].map((one) => one.textContent)"
    )
    assert shown == told and len(set(told)) == len(told)
    for text in told:
        found = held.perform("matches", ref=button["ref"], text=text)
        assert [one["ref"] for one in found["found"]] == [button["ref"]], text


def test_the_address_is_copied(page, held):
    page.command("Browser.grantPermissions", permissions=["clipboardReadWrite", "clipboardSanitizedWrite"])
    select(page, held, "brewButton")
    page.click(".best .copy")
    page.wait_until("return document.querySelector('.best .copy').textContent === 'Copied'")
    assert page.run("return navigator.clipboard.readText()") == page.text(".best code")


def property_of(page, name):
    return page.run(
        """const row = [...document.querySelectorAll(".properties tr")].find((one) => one.cells[0].textContent === arguments[0]);
        return row ? row.cells[1].textContent : null""",
        name,
    )


def test_properties_are_shown_sifted_and_kept_up_to_date(page, held):
    held.activate("milkCheck", "b:false")
    select(page, held, "milkCheck")
    eventually(lambda: property_of(page, "checked"), timeout=60).equals("false")
    held.activate("milkCheck", "b:true")
    eventually(lambda: property_of(page, "checked"), timeout=60).equals("true")
    held.activate("milkCheck", "b:false")
    page.type_into("[aria-label='Filter properties']", "toolt")
    names = page.run(
        "return [...document.querySelectorAll('.properties tr:not([hidden]) th')].map((one) => one.textContent)"
    )
    assert "toolTip" in names and "checked" not in names
    page.run("document.querySelector('[aria-label=\"Filter properties\"]').select()")
    page.press(chr(0xE003))


@pytest.mark.parametrize(
    "text, told, names",
    [
        ("brewButton", "finds 1 widget", ["brewButton"]),
        ('QCheckBox text="Milk"', "finds 1 widget", ["milkCheck"]),
        ('find("QPushButton", text="Serve")', "finds 1 widget", ["serveButton"]),
        ('app.window(name="showcase").checkbox("Milk")', "finds 1 widget", ["milkCheck"]),
        ('find(text="Milk")', "finds 2 widgets", None),
        ('find(text="Tea")', "finds no widgets", []),
        ("find(text=", "the call is not complete", []),
        ("window.title()", "title() names no widget", []),
    ],
)
def test_what_a_typed_locator_finds_is_marked(page, held, text, told, names):
    page.type_into("#try", text)
    page.wait_until("return document.getElementById('found').textContent.startsWith(arguments[0])", told)
    marked = page.run(FRAME, "#marks .match")
    assert names is None or marked == [rect(held, name) for name in names]
    assert names is not None or len(marked) == 2


def test_the_tree_can_be_used_by_keys_and_searched(page, held):
    select(page, held, "brewButton")
    page.click("#use")
    page.run("document.getElementById('tree').focus()")
    page.press(LEFT)
    (row,) = chosen_row(page)
    assert "#counterBox" in row
    page.press(LEFT)
    assert not page.run(HAS_ROW, "brewButton")
    page.press(RIGHT)
    page.wait_until(HAS_ROW, "brewButton")
    page.press(DOWN)
    assert "#counterBox" not in chosen_row(page)[0]
    page.type_into("#find", "steam")
    page.wait_until("return document.querySelectorAll('#tree .shown').length < 8")
    assert any("Let off steam" in row for row in page.texts("#tree li"))


def test_a_dialog_comes_to_the_front_of_the_tree_and_of_the_picture(page, held):
    held.activate("pages/qt_tabwidget_tabbar", "Dialogs")
    held.activate("emptyRoasterButton")
    front = "return document.querySelector('#tree li')?.textContent.includes('emptyBox') || false"
    page.wait_until(front)
    (button,) = [node for node in held.nodes() if node["shown"] == 'button "No"']
    left, top, width, height = button["rect"]
    page.click("#point")
    page.mouse(("move", *page.run(PLACE, left + width // 2, top + height // 2)), ("down", 0), ("up", 0))
    eventually(lambda: page.texts(".best code"), timeout=60).equals(
        ['app.window(name="emptyBox").find(text="No")']
    )
    page.click("#use")
    page.mouse(("move", *page.run(PLACE, left + width // 2, top + height // 2)), ("down", 0), ("up", 0))
    page.wait_until(front.replace("return", "return !(") + ")")
    held.activate("pages/qt_tabwidget_tabbar", "Buttons")
