"""Playing a test on the page, in a browser, with a showcase that the inspector has started."""

import psutil
import pytest

from qtdriver import eventually

from inspecting import PROGRAM, inspecting

HEAD = f"""def test_it(qtdriver):
    app = qtdriver.launch("{PROGRAM}")
    window = app.window(name="showcase")
    app.timeout = 0.2
"""
COUNT = 'assert window.widget("clickCount").text() == '


@pytest.fixture(scope="module")
def running(tmp_path_factory):
    with inspecting("--", str(PROGRAM), folder=tmp_path_factory.mktemp("tests")) as running:
        yield running


@pytest.fixture(scope="module")
def address(running):
    return running.address


@pytest.fixture
def write(page):
    """Writes a test with these statements into the editor; the cursor is at its end."""

    def write(*statements):
        page.run("document.getElementById('show-test').click()")
        page.run(
            """const field = document.getElementById("code");
            field.value = arguments[0];
            field.dispatchEvent(new Event("input"));
            field.focus();""",
            HEAD + "".join(f"    {one}\n" for one in statements),
        )

    yield write
    page.wait_until("return document.getElementById('play').textContent === 'Play'")


def process_of(running):
    (found,) = [
        one
        for one in psutil.Process(running.process.pid).children(recursive=True)
        if one.name() == "showcase"
    ]
    return found.pid


def play(page, button, told):
    page.run("document.getElementById('told').textContent = ''")
    page.click(button)
    eventually(lambda: page.text("#told"), timeout=60).equals(told)


def marks(page):
    """The lines that are marked, from 1, with their marks."""
    return page.run(
        """return Object.fromEntries([...document.querySelectorAll(".gutter div")].filter((one) => one.className)
            .map((one) => [Number(one.textContent), one.className]))"""
    )


def test_a_test_is_played_each_time_on_a_fresh_start(page, running, write):
    write('window.widget("brewButton").click()', f'{COUNT}"1"')
    before = process_of(running)
    play(page, "#play", "Passed.")
    assert set(marks(page).values()) == {"passed"} and list(marks(page)) == ["2", "3", "4", "5", "6"]
    assert process_of(running) != before
    play(page, "#play", "Passed.")


def test_a_step_that_fails_has_its_explanation_below_its_line(page, write):
    write('window.widget("brewButtn").click()', f'{COUNT}"0"')
    play(page, "#play", "A step failed.")
    assert marks(page)["5"] == "failed" and "6" not in marks(page)
    note = page.text(".note")
    assert note.startswith("WidgetNotFoundError: ") and "brewButton" in note
    bottom, top = page.run(
        """return [document.querySelectorAll(".gutter div")[4].getBoundingClientRect().bottom,
            document.querySelector(".note").getBoundingClientRect().top]"""
    )
    assert 0 <= top - bottom < 20
    page.type_into("#code", "x")
    assert page.texts(".note") == [] and marks(page) == {}


def test_a_test_is_played_to_the_line_with_the_cursor(page, write):
    write('window.widget("brewButton").click()', f'{COUNT}"1"')
    page.run("document.getElementById('code').setSelectionRange(arguments[0], arguments[0])", len(HEAD) - 1)
    play(page, "#to-cursor", "Played to the cursor.")
    assert list(marks(page)) == ["2", "3", "4"]


def test_a_test_is_played_step_by_step(page, write):
    write("window.title()")
    for line in (2, 3, 4, 5):
        page.click("#step")
        eventually(lambda: marks(page).get(str(line)), timeout=60).equals("passed")
        assert max(map(int, marks(page))) == line
    eventually(lambda: page.text("#told"), timeout=60).equals("Passed.")


def test_a_text_that_is_no_python_is_told_at_its_line(page, write):
    write("window.title(")
    play(page, "#play", "")
    eventually(lambda: page.texts(".note"), timeout=60).satisfies(
        lambda notes: notes and "SyntaxError" in notes[0]
    )
    assert marks(page) == {"5": "failed"}


def test_a_test_can_be_stopped(page, write):
    write("window.title()")
    page.click("#ten")
    page.wait_until("return document.getElementById('play').textContent === 'Stop'")
    page.click("#play")
    eventually(lambda: page.text("#told"), timeout=60).satisfies(lambda told: told.startswith("Stopped."))


def test_a_second_application_is_refused_with_the_way_out(page, write):
    write(f'qtdriver.launch("{PROGRAM}")')
    play(page, "#play", "A step failed.")
    assert "the page has one application" in page.text(".note") and "pytest" in page.text(".note")
