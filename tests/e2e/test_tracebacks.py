"""Every error of the runner ends at the line of the test: nobody has to read the runner to understand it."""

import re

import pytest

from pytestrun import Project
from showcase import AGENTS, PROGRAM, QT

FAILURES = {
    "window": 'app.window("Rostery").title(timeout=0)',
    "widget": 'window.widget("brewButtn").activate(timeout=0)',
    "read_widget": 'window.widget("brewButtn").text(timeout=0)',
    "refused": 'window.widget("brewButton").activate(True)',
    "unknown_property": 'window.widget("brewButton").read("colour")',
    "item": 'window.widget("pages/qt_tabwidget_tabbar").select("Butons")',
    "item_of_view": 'window.widget("extrasList").item("Coco").click(timeout=0)',
    "tab": 'window.tab("Butons").click(timeout=0)',
    "button": 'window.button("Brew a pot").click(timeout=0)',
    "found": 'window.find("QPushButton", text="Brew a pot").click(timeout=0)',
    "item_of_found": 'window.find("QTabBar", text="Lists").select("Butons", timeout=0)',
    "field": 'window.field("Nickname:").text(timeout=0)',
    "snapshot": 'app.window("Rostery").snapshot(timeout=0)',
    "menu": 'window.menu("Order/New oder...").choose()',
    "context_menu": 'window.widget("brewButton").context_menu("Copy").click(timeout=0)',
    "condition": 'eventually(window.widget("clickCount"), timeout=0).has(text="7")',
    "condition_of_widget": 'eventually(window.widget("clickCont"), timeout=0).has(text="7")',
    "condition_of_window": "eventually(window, timeout=0).is_closed()",
    "condition_of_function": "eventually(lambda: 1, timeout=0).equals(2)",
    "press": 'window.widget("brewButtn").press("F2", timeout=0)',
    "type": 'window.widget("brewButtn").type("tea", timeout=0)',
    "fill": 'window.widget("brewButtn").fill("tea", timeout=0)',
    "wheel": 'window.widget("brewButtn").wheel(down=1, timeout=0)',
    "hover": 'window.widget("brewButtn").hover(timeout=0)',
    "scroll_to": 'window.widget("brewButtn").scroll_to(timeout=0)',
    "tree": 'app.window("Rostery").tree(timeout=0)',
    "drag": 'window.widget("brewButton").drag_to(window.widget("nowhere"), timeout=0)',
    "file": 'window.file("a.txt", timeout=0)',
    "move": 'app.window("Rostery").move(1, 1, timeout=0)',
    "mouse_word": 'window.widget("brewButton").mouse("MouseTwist")',
    "text": 'window.focus_widget().enter("10 \\u20ac")',
    "address": "window.widget('regionTree').select(tree_path('a/b'))",
    "launch": 'driver.launch("/no/such/program")',
    "start": 'driver.launch("/usr/bin/true")',
    "connection": 'app.connection.activate_widget("Rostery", "ok")',
    "exit": "app.wait_for_exit(timeout=0)",
    "ended": "os.kill(app.pid, signal.SIGKILL); window.title()",
}


SHARED = f"""
from qtdriver import Driver, tree_path

@pytest.fixture(scope="module")
def driver():
    with Driver(build={str(AGENTS)!r}) as running:
        yield running

@pytest.fixture(scope="module")
def app(driver):
    return driver.launch({str(PROGRAM)!r}, qt={QT})

@pytest.fixture
def window(app):
    window = app.window("Roastery")
    window.title()
    return window

"""


@pytest.fixture(scope="module")
def runs(tmp_path_factory):
    """The output of one run of pytest with its own tracebacks, and of one with those of Python."""
    project = Project(tmp_path_factory.mktemp("tracebacks"))
    tests = [
        f"def test_{name}(driver, app, window):\n    {call}  # the line of the test\n"
        for name, call in FAILURES.items()
    ]
    project.write(SHARED + "\n\n".join(tests))
    return {
        style: sections(project.run(f"--tb={style}", "--qtdriver-trace=off").output)
        for style in ("auto", "native")
    }


def sections(output):
    """Pytest's text for each failure, by the name of the test."""
    failures = output.split(" FAILURES ", 1)[1]
    parts = re.split(r"^_{3,} test_(\w+) _{3,}$", failures, flags=re.MULTILINE)
    return dict(zip(parts[1::2], parts[2::2]))


@pytest.mark.parametrize("name", FAILURES)
def test_an_error_ends_at_the_line_of_the_test(runs, name):
    section = runs["auto"][name].split("--- Captured")[0]
    places = re.findall(r"^(\S+\.py):\d+: ?\S*$", section, flags=re.MULTILINE)
    assert places == ["test_project.py"], section
    assert "# the line of the test" in section


@pytest.mark.parametrize("name", FAILURES)
def test_the_traceback_of_python_is_short(runs, name):
    section = runs["native"][name]
    files = re.findall(r'^  File "(.*?)", line \d+', section, flags=re.MULTILINE)
    assert files[0].endswith("test_project.py")
    assert len(files) <= 8, section
    assert "During handling" not in section and "direct cause" not in section
