"""Recording, checking and saving on the page, in a browser, with the showcase."""

import os
import re

import pytest

from qtdriver import eventually

from inspecting import PROGRAM, inspecting, run_saved_test

CONTROL = chr(0xE009)
PLACE = """const canvas = document.getElementById("picture");
    const box = canvas.getBoundingClientRect();
    return [box.left + (arguments[0] + 0.5) * box.width / canvas.width, box.top + (arguments[1] + 0.5) * box.height / canvas.height]"""
TABS = "pages/qt_tabwidget_tabbar"
RUNS = int(os.environ.get("QTDRIVER_TEST_RUNS", "2"))
STORY = f"""from qtdriver import eventually


def test_recorded(qtdriver):
    app = qtdriver.launch("{PROGRAM}")
    showcase = app.window(name="showcase")
    showcase.widget("brewButton").click()
    eventually(showcase.widget("clickCount")).has(text="1")
    showcase.tab("Entry fields").click()
    showcase.widget("customerEdit").fill("Ada €")
    # what the user writes stays
    showcase.tab("Lists").click()
    showcase.widget("extrasList").select("Cinnamon")
    eventually(lambda: showcase.widget("extrasList").item("Cinnamon").is_selected()).is_true()
    showcase.tab("Dialogs").click()
    showcase.widget("emptyRoasterButton").click()
    empty_box = app.window(name="emptyBox")
    empty_box.find(text="No").click()
"""


@pytest.fixture(scope="module")
def folder(tmp_path_factory):
    """The folder in which the inspector is started, and below which tests are saved."""
    return tmp_path_factory.mktemp("tests")


@pytest.fixture(scope="module")
def address(held, folder):
    with inspecting(folder=folder) as running:
        yield running.address


@pytest.fixture(autouse=True)
def empty(page):
    """The editor is empty, and nothing is recorded."""
    page.run("document.getElementById('show-test').click()")
    page.click("#anew")
    if page.text("#anew") != "New":
        page.click("#anew")
    yield
    page.click("#use")
    if page.run("return document.getElementById('record').getAttribute('aria-pressed')") == "true":
        page.click("#record")
        page.wait_until("return document.getElementById('record').getAttribute('aria-pressed') === 'false'")


def code(page):
    return page.run("return document.getElementById('code').value")


def record(page):
    page.click("#record")
    wait_for_line(page, f'app = qtdriver.launch("{PROGRAM}")')


def click_at(page, place):
    page.mouse(("move", *page.run(PLACE, *place)), ("down", 0), ("up", 0))


def click(page, held, name):
    click_at(page, held.centre(name))


def centre_of_item(held, path, item):
    """The place of a tab or a row on the screen."""
    text = f'app.connection.scroll("Widget:showcase", "path={path}", {item!r})'
    told = held.perform("python", text=text)
    left, top, right, bottom = map(int, re.findall(r"-?\d+", told["output"]))
    return (left + right) // 2, (top + bottom) // 2


def wait_for_line(page, line):
    eventually(lambda: [one.strip() for one in code(page).splitlines()], timeout=60).satisfies(
        lambda lines: line in lines
    )


def check(page, held, name, words):
    """Chooses a check of a widget, as a user does."""
    page.click("#check")

    def offered():
        """Opens the menu once more where the page has not yet seen that the application has changed."""
        click(page, held, name)
        page.wait_until("return document.querySelectorAll('#checks p').length")
        return page.texts("#checks button")

    eventually(offered, timeout=60).satisfies(lambda found: words in found)
    page.click("#checks button", words)
    eventually(lambda: page.text("#told"), timeout=60).equals(f"Checked: {words}")
    page.click("#use")


def press_button_of(page, held, shown):
    """Clicks a button of a dialog once that is there."""
    rects = []

    def found():
        rects[:] = [node["rect"] for node in held.nodes() if node["shown"] == shown]
        return len(rects)

    eventually(found, timeout=60).equals(1)
    left, top, width, height = rects[0]
    click_at(page, (left + width // 2, top + height // 2))


def test_a_recorded_session_is_the_test_that_a_person_would_write_and_passes(page, held, folder):
    record(page)
    click(page, held, "brewButton")
    wait_for_line(page, 'showcase.widget("brewButton").click()')
    eventually(lambda: held.read("clickCount", "text"), timeout=60).equals("1")
    check(page, held, "clickCount", 'its text is "1"')
    wait_for_line(page, 'eventually(showcase.widget("clickCount")).has(text="1")')
    click_at(page, centre_of_item(held, TABS, "Entry fields"))
    wait_for_line(page, 'showcase.tab("Entry fields").click()')
    click(page, held, "customerEdit")
    eventually(lambda: held.read("customerEdit", "focus"), timeout=60).is_true()
    page.chord(CONTROL, "a")
    page.press(*"Ada €")
    wait_for_line(page, 'showcase.widget("customerEdit").fill("Ada €")')
    page.run(
        """const field = document.getElementById("code");
        field.focus();
        field.setSelectionRange(field.value.length, field.value.length);"""
    )
    page.press(*"    # what the user writes stays")
    click_at(page, centre_of_item(held, TABS, "Lists"))
    wait_for_line(page, 'showcase.tab("Lists").click()')
    click_at(page, centre_of_item(held, "extrasList", "Cinnamon"))
    wait_for_line(page, 'showcase.widget("extrasList").select("Cinnamon")')
    check(page, held, "extrasList", '"Cinnamon" is selected')
    click_at(page, centre_of_item(held, TABS, "Dialogs"))
    wait_for_line(page, 'showcase.tab("Dialogs").click()')
    click(page, held, "emptyRoasterButton")
    press_button_of(page, held, 'button "No"')
    wait_for_line(page, 'empty_box.find(text="No").click()')
    assert code(page) == STORY
    page.click("#save")
    page.wait_until("return document.getElementById('told').textContent.startsWith('Saved.')")
    told = "Saved. Run it with: pytest test_recorded.py (and -n 1 while this page is open)"
    assert page.text("#told") == told
    assert (folder / "test_recorded.py").read_text(encoding="utf-8") == STORY
    for _ in range(RUNS):
        assert "1 passed" in run_saved_test(folder)


def test_a_file_that_is_there_is_replaced_only_when_that_is_said(page, folder):
    (folder / "test_there.py").write_text("before")
    page.run("document.getElementById('path').value = ''")
    page.type_into("#path", "test_there.py")
    page.type_into("#code", "# after")
    page.click("#save")
    page.wait_until(
        "return document.getElementById('told').textContent === 'test_there.py is there already.'"
    )
    assert (folder / "test_there.py").read_text() == "before"
    page.click("#replace")
    page.wait_until("return document.getElementById('told').textContent.startsWith('Saved.')")
    assert (folder / "test_there.py").read_text() == "# after"


def test_only_tests_below_the_folder_are_written(page, folder):
    for path in ("../test_it.py", "/tmp/test_it.py", "it.py"):
        page.run("document.getElementById('path').value = arguments[0]", path)
        page.run("document.getElementById('told').textContent = ''")
        page.click("#save")
        page.wait_until("return document.getElementById('told').textContent.includes('path has to')")
    assert not (folder.parent / "test_it.py").exists()


def test_a_password_is_in_no_recorded_test(page, held):
    held.activate(TABS, "Entry fields")
    record(page)
    click(page, held, "passwordEdit")
    eventually(lambda: held.read("passwordEdit", "focus"), timeout=60).is_true()
    page.press(*"pin")
    wait_for_line(page, 'showcase.widget("passwordEdit").fill(SECRET_1)')
    assert 'SECRET_1 = os.environ["TEST_SECRET_1"]' in code(page) and "pin" not in code(page)
    compile(code(page), "test", "exec")
