"""The steps of a trace tell what the test has written, where, and what it was about."""

import inspect
import json
import re

import pytest
from PIL import Image

from qtdriver import ConditionError, WidgetNotFoundError, eventually, step
from qtdriver.report.page import TestResult, write_page
from qtdriver.trace.recorder import Recorder
from qtdriver.trace.sources import lines_around

from chromium import browser, quiet  # noqa: F401 (fixtures)
from showcase import QT, running


@pytest.fixture(scope="module")
def application():
    """One showcase for the tests of this file."""
    with running() as (driver, app):
        yield driver, app


@pytest.fixture
def recorded(application, tmp_path):
    """Records a test of the showcase, whose first page is open; answers its trace."""
    driver, app = application

    def run(test, **options):
        window = app.window(name="showcase")
        window.widget("pages/qt_tabwidget_tabbar").select("Buttons")
        recorder = Recorder(tmp_path / "trace", **options)
        driver.listeners.append(recorder)
        try:
            test(window)
        finally:
            driver.listeners.remove(recorder)
            recorder.close(keep=True)
        return json.loads((tmp_path / "trace" / "trace.json").read_text())

    return run


def titles(trace):
    return [one["title"].replace('window(name="showcase").', "") for one in trace["steps"]]


def test_calls_are_named_as_the_test_wrote_them(recorded):
    def calls(window):
        button = window.widget("brewButton")
        button.click()
        button.click(at=(0.25, 0.5), modifier="shift")
        button.hover()
        button.text()
        button.is_enabled(timeout=3)
        window.widget("milkCheck").check()
        window.widget("milkCheck").uncheck(force=True)
        window.button("Brew a cup").activate()
        window.press("Tab", "Tab")
        window.resize(800, 600)
        window.app.windows()
        window.menu("Order/New order...").is_enabled()

    trace = recorded(calls, screenshots=False)
    assert [title for title in titles(trace) if "widget_at" not in title] == [
        'widget("brewButton").click()',
        """widget("brewButton").click(at=(0.25, 0.5), modifier='shift')""",
        'widget("brewButton").hover()',
        'widget("brewButton").text()',
        'widget("brewButton").is_enabled(timeout=3)',
        'widget("milkCheck").check()',
        'widget("milkCheck").uncheck(force=True)',
        'button("Brew a cup").activate()',
        "press('Tab', 'Tab')",
        "resize(800, 600)",
        "windows()",
        'menu("Order/New order...").is_enabled()',
    ]
    assert "mouse('MouseClick:LeftButton:::')" in trace["steps"][0]["action"]


def test_a_condition_is_named_as_the_test_wrote_it(recorded):
    def conditions(window):
        eventually(window.widget("clickCount")).has(text=re.compile("[0-9]"))
        eventually(window).is_open()

    trace = recorded(conditions, screenshots=False)
    assert titles(trace) == [
        """eventually(window(name="showcase").widget("clickCount")).has(text=re.compile('[0-9]'))""".replace(
            'window(name="showcase").', ""
        ),
        'eventually(window(name="showcase")).is_open()',
    ]


def test_a_condition_on_a_function_is_one_step_whatever_it_looks_at(recorded):
    looks = []

    def conditions(window):
        def count():
            looks.append(window.widget("clickCount").text())
            return len(looks) > 3 and window.widget("brewButton").is_enabled()

        eventually(count).is_true()
        with pytest.raises(ConditionError, match="Widget .nowhere. not found"):
            eventually(lambda: window.widget("nowhere").text(timeout=0), timeout=0.2).equals("x")
        window.title()

    trace = recorded(conditions, screenshots=False)
    assert titles(trace) == ["eventually(count).is_true()", "eventually(<lambda>).equals('x')", "title()"]
    assert len(looks) == 4 and len(trace["steps"][0]["exchanges"]) >= 5
    assert "not found" in trace["steps"][1]["error"] and trace["steps"][2]["error"] == ""


def press_twice(window):
    window.widget("brewButton").activate()
    window.widget("brewButton").activate()  # the line of the second step


def test_a_step_has_the_line_of_the_test_and_its_source(recorded):
    trace = recorded(press_twice, screenshots=False)
    lines, first = inspect.getsourcelines(press_twice)
    assert [one["line"] for one in trace["steps"]] == [first + 1, first + 2]
    (file,) = {one["file"] for one in trace["steps"]}
    assert file.endswith("test_report_steps.py")
    source = trace["sources"][file]
    assert source[str(first + 2)].endswith("# the line of the second step")
    numbers = [int(number) for number in source]
    assert numbers == list(range(first, first + 3)), "other functions may have the passwords of other tests"


def test_around_a_step_outside_of_functions_there_are_no_functions(tmp_path):
    file = tmp_path / "script.py"
    file.write_text("press()\n\n@slow\ndef other():\n    enter('secret')\n\nrelease()\n")
    assert lines_around(str(file), 7) == {1: "press()", 2: "", 6: "", 7: "release()"}
    assert list(lines_around(str(file), 5)) == [3, 4, 5]
    (tmp_path / "no.py").write_text("press(\nrelease(\n")
    assert list(lines_around(str(tmp_path / "no.py"), 1)) == [1, 2]


def test_steps_are_in_the_groups_of_the_test(recorded):
    def grouped(window):
        window.title()
        with step("Order"):
            window.title()
            with step("Choose the milk"):
                window.widget("milkCheck").check()
            window.title()
        with pytest.raises(WidgetNotFoundError), step("Pay"):
            window.widget("purse").click(timeout=0)

    trace = recorded(grouped, screenshots=False)
    groups = trace["groups"]
    assert [(one["title"], one["parent"]) for one in groups] == [
        ("Order", None),
        ("Choose the milk", 0),
        ("Pay", None),
    ]
    assert [one["group"] for one in trace["steps"]] == [None, 0, 1, 0, 2]
    assert groups[0]["seconds"] >= groups[1]["seconds"] > 0
    assert [bool(one["error"]) for one in groups] == [False, False, True]


def test_the_place_of_the_widget_is_its_place_in_the_picture(recorded, tmp_path):
    def press(window):
        window.widget("brewButton").click()
        window.title()

    trace = recorded(press)
    clicked, read = trace["steps"]
    assert read["place"] is None
    left, top, width, height = clicked["place"]
    shown = trace["pictures"][clicked["before"]]
    picture = Image.open(tmp_path / "trace" / clicked["before"]).convert("RGB")
    assert picture.size == tuple(shown[2:])
    button = (left - shown[0], top - shown[1], left - shown[0] + width, top - shown[1] + height)
    assert 0 <= button[0] and 0 <= button[1] and button[2] <= shown[2] and button[3] <= shown[3]
    assert len(picture.crop(button).getcolors(1 << 20)) > 2, "there is a button with a text"


PRINTS = """
import os, sys, socket
connection = socket.create_connection(("127.0.0.1", 4242))
print("before", flush=True)
connection.sendall(f"+client+ 2.1.0 {os.getpid()} -1 fake\\n".encode())
for number, request in enumerate(connection.makefile("rb")):
    print("request", number, flush=True, file=[sys.stdout, sys.stderr][number % 2])
    connection.sendall(b"0,title\\n")
"""


def test_what_an_application_writes_is_in_the_trace_with_its_time(application, tmp_path):
    driver, _ = application
    app = driver.launch("python3", "-c", PRINTS.replace("\\\\", "\\"), qt=QT)
    recorder = Recorder(tmp_path / "trace", screenshots=False)
    driver.listeners.append(recorder)
    try:
        for number in range(3):
            app.connection.check_window("x")
            eventually(lambda: len(app.process.output.lines() + app.process.errors.lines())).equals(
                number + 2
            )
        app.perform("done()", lambda: app.connection.check_window("x"), reads=False)
    finally:
        driver.listeners.remove(recorder)
        recorder.close(keep=True)
        app.terminate()
    trace = json.loads((tmp_path / "trace" / "trace.json").read_text())
    written = [(line["stream"], line["text"]) for line in trace["output"]]
    assert written[:4] == [
        ("stdout", "before"),
        ("stdout", "request 0"),
        ("stderr", "request 1"),
        ("stdout", "request 2"),
    ]
    times = [line["time"] for line in trace["output"]]
    assert times == sorted(times) and {line["pid"] for line in trace["output"]} == {app.pid}


def test_the_page_shows_groups_source_output_and_the_widget(browser, recorded, tmp_path):
    def grouped(window):
        window.title()
        with step("Order"):
            window.widget("brewButton").click()  # marked
            with step("Milk"):
                window.widget("milkCheck").check()

    trace = recorded(grouped)
    trace["output"] = [
        dict(time=trace["steps"][1]["start"] + 1e-4, pid=1, stream="stderr", text="<grinding>")
    ]
    (tmp_path / "trace" / "trace.json").write_text(json.dumps(trace))
    write_page([TestResult("a::b", "failed", 1, "", tmp_path / "trace", None)], tmp_path / "page.html")
    browser.open(tmp_path / "page.html")
    rows = [text.split("\n")[0] for text in browser.texts(".steps li .title")]
    assert rows[1] == "Order" and rows[3] == "Milk" and len(rows) == 5
    assert browser.texts(".steps li.group .title") == ["Order", "Milk"]
    browser.click(".steps li[role=option]", "click()")
    assert browser.text(".source .current").strip().endswith("# marked")
    browser.click(".tabs button", "Output 1")
    assert browser.text(".output tr").split()[-2:] == ["stderr", "<grinding>"]
    browser.click(".modes button", "After")
    frame, picture = browser.run(
        """return ['.target', '.pictures img'].map((one) => document.querySelector(one).getBoundingClientRect())
            .map((box) => [box.left, box.top, box.width, box.height])"""
    )
    left, top, width, height = trace["steps"][1]["place"]
    shown = trace["pictures"][trace["steps"][1]["after"]]
    scale = picture[2] / shown[2]
    expected = [(left - shown[0]) * scale, (top - shown[1]) * scale, width * scale, height * scale]
    assert [frame[0] - picture[0], frame[1] - picture[1], *frame[2:]] == pytest.approx(expected, abs=2)
    browser.click(".steps li[role=option]", "title()")
    assert browser.texts(".target") == [] and len(browser.texts(".steps li[aria-selected=true]")) == 1
    assert browser.text(".tabs [aria-selected=true]") == "Source", "this step has no output"
    browser.click(".steps li[role=option]", "click()")
    assert browser.text(".tabs [aria-selected=true]") == "Output 1", "the tab that was chosen last"
