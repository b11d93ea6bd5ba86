"""Python in the console of the page, with the showcase."""

import pytest

from qtdriver import eventually

RIGHT_BUTTON = 'app.window(name="showcase").widget("brewButton")'


@pytest.fixture
def run(held):
    """Runs lines in the console. Answers what it says, and whether it failed."""

    def ask(text):
        told = held.perform("python", text=text)
        return told["output"], told["failed"]

    return ask


def test_a_value_is_shown_and_kept(run):
    assert run(f"{RIGHT_BUTTON}.text()") == ("'Brew a cup'", False)
    assert run("_.upper()") == ("'BREW A CUP'", False)
    assert run("None") == ("", False)


def test_lines_are_run_and_names_kept(run):
    assert run("found = []\nfor number in range(2):\n    found.append(number)\n    print(number)") == (
        "0\n1",
        False,
    )
    assert run("found") == ("[0, 1]", False)


def test_an_error_is_told_with_the_lines_that_were_typed(run):
    output, failed = run('app.timeout = 0.1\napp.window(name="showcase").widget("brewButtn").activate()')
    assert failed and 'File "<console>", line 2' in output and "WidgetNotFoundError: " in output
    assert "brewButton" in output and "runner/qtdriver" not in output
    assert run("app.timeout = 10") == ("", False)


@pytest.mark.parametrize(
    "text, error", [("1 +", "SyntaxError"), ("1 / 0", "ZeroDivisionError"), ("exit()", "SystemExit")]
)
def test_no_error_ends_more_than_its_line(run, text, error):
    output, failed = run(text)
    assert failed and error in output
    assert run("1 + 1") == ("2", False)


def test_a_long_output_is_cut(run):
    output, _ = run("print('x' * 100000)")
    assert len(output) < 21000 and output.endswith("...")


def test_lines_are_typed_in_the_page_and_called_back(page, held):
    before = int(held.read("clickCount", "text"))
    page.type_into("#line", f"{RIGHT_BUTTON}.activate()")
    page.press(chr(0xE007))
    eventually(lambda: held.read("clickCount", "text"), timeout=60).equals(str(before + 1))
    page.wait_until("return document.querySelector('#log').textContent.includes('QPushButton')")
    page.press(chr(0xE013))
    assert page.run("return document.getElementById('line').value") == f"{RIGHT_BUTTON}.activate()"
    page.press(chr(0xE015))
    page.type_into("#line", "1 / 0")
    page.press(chr(0xE007))
    page.wait_until(
        "return document.querySelector('#log .refused')?.textContent.includes('ZeroDivisionError')"
    )
