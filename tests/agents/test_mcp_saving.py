"""save_test of `qtdriver mcp`: what was done becomes a test, which runs on a fresh start before it is saved."""

import os
import re
import subprocess

import pytest

from mcpclient import BUILD, KIOSK, ROOT, McpClient
from qtdriver.desktop import desktop
from qtdriver.recording.code import test_code as code_of
from qtdriver.recording.files import TestFileError, write_below
from qtdriver.recording.steps import Launch, Part, Secret, Step

PIN = "s3cret-77"
WINDOW = 'window(name="main")'
LAUNCH = Launch("app", ("./editor", "a b.txt"))


@pytest.fixture(scope="module")
def folder(tmp_path_factory):
    """The working directory of the server: with a link that leads out of it."""
    folder = tmp_path_factory.mktemp("work")
    (folder / "out").symlink_to(tmp_path_factory.mktemp("elsewhere"))
    (folder / "test_link.py").symlink_to(folder / "out" / "test_there.py")
    return folder


@pytest.fixture(scope="module")
def client(folder):
    with McpClient("--build", BUILD / "agents", folder=folder) as running:
        running.initialize()
        yield running


def run(folder, name, **environment):
    """Runs a saved test as a person does. Returns what pytest prints."""
    command = [
        "/usr/bin/python3",
        "-m",
        "pytest",
        "-q",
        "-p",
        "no:cacheprovider",
        "-p",
        "qtdriver.plugin",
        name,
    ]
    environment = {**desktop.environment_for_own_network(), **environment, "PYTHONPATH": str(ROOT / "runner")}
    options = [f"--qtdriver-build={BUILD / 'agents'}", "--qtdriver-headed", "--qtdriver-trace=off"]
    ended = subprocess.run(
        [desktop.SCRIPT, *command, *options], cwd=folder, env=environment, capture_output=True, text=True
    )
    return ended.stdout


def test_a_conversation_becomes_a_test_that_passes_on_a_fresh_start(client, folder):
    client.call("launch", program=str(BUILD / "bin" / "showcase"))
    client.call("select", target="pages", value="Entry fields")
    client.call("type", target="Name:", text='Ada "the first"')
    client.call("type", target="Member PIN:", text=PIN)
    client.call("read", target="Member PIN:")
    client.call("select", target="cupSpin", value=3)
    client.refusal("click", target="no such thing")
    client.call("wait", target="orderSummary", contains="3 cups")
    client.call("read", target="Name:")
    client.call("click", menu="Order/New order...")
    client.call("press", keys=["Escape"])
    client.call("wait", window="New order", state="closed")
    text = client.call("save_test", path="tests/ui/test_order.py", summary="An order is filled in")
    assert text.startswith("saved tests/ui/test_order.py; run once on a fresh start it passed: 1 passed")
    assert "3 checks; it needs the variables TEST_SECRET_1" in text
    code = (folder / "tests" / "ui" / "test_order.py").read_text()
    assert PIN not in code + text
    for line in (
        '"""An order is filled in"""',
        "def test_order(qtdriver):",
        'showcase = app.window(name="showcase")',
        """showcase.widget("customerEdit").fill('Ada "the first"')""",
        'showcase.widget("passwordEdit").fill(SECRET_1)',
        'showcase.widget("cupSpin").enter(3)',
        'eventually(showcase.widget("orderSummary")).has_property("text", re.compile("3 cups"))',
        'showcase.menu("Order/New order...").click()',
        'order_dialog.press("Escape")',
        "eventually(order_dialog).is_closed()",
    ):
        assert line in code, code
    assert "no such thing" not in code
    assert "1 passed" in run(folder, "tests/ui/test_order.py", TEST_SECRET_1=PIN)


def test_a_test_that_fails_on_a_fresh_start_is_not_saved_unless_that_is_wanted(client, folder):
    marked = folder / "mark"
    words = {
        "program": "/usr/bin/python3",
        "arguments": [str(KIOSK), "once", str(marked)],
        "qt": 5,
        "app": "kiosk",
    }
    client.call("launch", **words)
    client.call("click", app="kiosk", target="Only once")
    client.call("read", app="kiosk", target="state")
    problem = client.refusal("save_test", path="test_once.py")
    assert problem.startswith("The test was not saved, since it failed on a fresh start: 1 failed")
    assert "Only once" in problem and not (folder / "test_once.py").exists()
    kept = client.call("save_test", path="test_once.py", keep_failing=True)
    assert "run once on a fresh start it FAILED" in kept and (folder / "test_once.py").exists()
    assert "there are no steps yet" in client.refusal("save_test", path="test_again.py")


def test_a_test_that_cannot_be_run_is_told_so_and_saved_if_that_is_wanted(tmp_path):
    refusing = tmp_path / "refusing"
    refusing.mkdir()
    (refusing / "unshare").write_text("#!/bin/sh\necho 'unshare: Operation not permitted' >&2\nexit 1\n")
    (refusing / "unshare").chmod(0o755)
    environment = {"PATH": f"{refusing}:{os.environ['PATH']}"}
    reason = "could not be run: this system allows no network namespaces"
    with McpClient(
        "--headed", "--build", BUILD / "agents", folder=tmp_path, environment=environment
    ) as client:
        client.initialize()
        client.call("launch", program="/usr/bin/python3", arguments=[str(KIOSK)], qt=5)
        client.call("click", target="Open")
        problem = client.refusal("save_test", path="test_open.py")
        assert problem.startswith(f"The test was not saved, since it {reason}")
        assert "Operation not permitted)\nkeep_failing saves it all the same\n" in problem
        assert "def test_open(qtdriver):" in problem and not (tmp_path / "test_open.py").exists()
        kept = client.call("save_test", path="test_open.py", keep_failing=True)
        assert kept.startswith(f"saved test_open.py; it {reason}") and "FAILED" not in kept
    assert "1 passed" in run(tmp_path, "test_open.py")


def test_a_test_begins_with_the_last_start_of_the_application(client, folder):
    words = {"program": "/usr/bin/python3", "arguments": [str(KIOSK)], "qt": 5, "app": "kiosk"}
    for button in ("Open", "Make anew"):
        client.result("close", app="kiosk")
        client.call("launch", **words)
        client.call("click", app="kiosk", target=button)
    client.call("save_test", path="test_anew.py")
    code = (folder / "test_anew.py").read_text()
    assert (
        code.count("launch(") == 1 + ("showcase" in code) and '"Open"' not in code and '"Make anew"' in code
    )


@pytest.mark.parametrize(
    "path",
    ["/tmp/test_a.py", "../test_a.py", "a/../../test_a.py", "a.py", "test_a.txt", "", ".", "test_\0.py"],
)
def test_only_tests_below_the_working_directory_can_be_written(tmp_path, path):
    with pytest.raises(TestFileError):
        write_below(tmp_path, path, "", overwrite=True)
    assert list(tmp_path.iterdir()) == []


@pytest.mark.parametrize("path", ["out/test_a.py", "test_link.py", "out/deeper/test_a.py"])
@pytest.mark.parametrize("overwrite", [False, True])
def test_no_link_leads_out_of_the_working_directory(folder, path, overwrite):
    with pytest.raises(TestFileError):
        write_below(folder, path, "text", overwrite=overwrite)
    assert os.listdir(folder / "out") == []


def test_a_file_that_is_there_is_kept_unless_it_is_to_be_replaced(tmp_path):
    write_below(tmp_path, "a/test_a.py", "first", overwrite=False)
    with pytest.raises(TestFileError, match="is there already"):
        write_below(tmp_path, "a/test_a.py", "second", overwrite=False)
    assert (tmp_path / "a" / "test_a.py").read_text() == "first"
    write_below(tmp_path, "a/test_a.py", "2", overwrite=True)
    assert (tmp_path / "a" / "test_a.py").read_text() == "2"


@pytest.mark.parametrize(
    "steps, lines",
    [
        ([LAUNCH], ['app = qtdriver.launch("./editor", "a b.txt")']),
        ([Launch("app", ("x",), 5)], ['app = qtdriver.launch("x", qt=5)']),
        (
            [LAUNCH, Step("app", WINDOW, 'widget("ok")', "click"), Step("app", WINDOW, "", "press", ("Tab", "F2"))],
            ['main = app.window(name="main")', 'main.widget("ok").click()', 'main.press("Tab", "F2")'],
        ),
        (
            [LAUNCH, Step("app", WINDOW, 'widget("a")', "click", ("right",), {"modifier": "shift"})],
            ['main.widget("a").click("right", modifier="shift")'],
        ),
        (
            [LAUNCH, Step("app", 'modal("Find & Replace all of it")', 'widget("a")', "has_property", ("on", True), is_check=True)],
            ['find_replace_all = app.modal("Find & Replace all of it")', 'eventually(find_replace_all.widget("a")).has_property("on", True)'],
        ),
        (
            [LAUNCH, Step("app", "popup()", 'widget("a")', "equals", (("x", "y"),), is_check=True, reads="items()")],
            ["eventually(lambda: popup.widget(\"a\").items()).equals(('x', 'y'))"],
        ),
        (
            [LAUNCH, Step("app", 'window("class")', "", "has_title", (Part("a.b"),), is_check=True)],
            ["import re", 'window_class = app.window("class")', 'has_title(re.compile(r"a\\.b"))'],
        ),
        (
            [LAUNCH, Step("app", 'window("os")', "", "type", (Secret(2),))],
            ["import os", 'SECRET_2 = os.environ["TEST_SECRET_2"]', "os_window.type(SECRET_2)"],
        ),
        (
            [LAUNCH, Step("app", 'window("A")', "", "press"), LAUNCH, Step("app", 'window("A")', "", "press")],
            ['a = app.window("A")', 'a_window = app.window("A")'],
        ),
    ],
)  # fmt: skip
def test_steps_as_code(steps, lines):
    code = code_of("it", steps, 'Shows """it""" \\')
    compile(code, "test_it.py", "exec")
    for line in lines:
        assert line in code, code
    assert ("eventually" in code) == any(getattr(step, "is_check", False) for step in steps)


def test_names_of_variables_are_not_taken_twice():
    steps = [
        LAUNCH,
        *(Step("app", f'window("{title}")', "", "press") for title in ("App", "app!", "9 lives", "Été")),
    ]
    names = re.findall(r"^    (\w+) = app\.window", code_of("it", steps), re.MULTILINE)
    assert len(set(names)) == 4 and "app" not in names
