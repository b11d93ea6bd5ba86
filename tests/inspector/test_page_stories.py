"""Sessions with programs that nobody here wrote, recorded on the page: the code is what a person would write, and passes."""

import os
import shutil
from contextlib import suppress

import pytest

from qtdriver import ConditionError, eventually

from chromium import ENTER, running_browser
from inspecting import holding, inspecting, run_saved_test

RUNS = int(os.environ.get("QTDRIVER_TEST_RUNS", "1"))
CONTROL = chr(0xE009)
PLACE = """const canvas = document.getElementById("picture");
    const box = canvas.getBoundingClientRect();
    return [box.left + (arguments[0] + 0.5) * box.width / canvas.width, box.top + (arguments[1] + 0.5) * box.height / canvas.height]"""
PASSWORD = "Mellon 1954 dwarves"
NOTES = "Milk 1 €\nBread 2 €"

FEATHERPAD = """def test_recorded(qtdriver):
    app = qtdriver.launch("featherpad", "--standalone", "FILE")
    fpwin = app.window(name="FPwin")
    fpwin.find("FeatherPad::TextEdit").fill("Milk 1 €\\nBread 2 €")
    fpwin.press("Ctrl+R")
    fpwin.widget("lineEditFind").fill("€")
    fpwin.widget("lineEditReplace").fill("euros")
    fpwin.widget("toolButtonAll").click()
    fpwin.press("Ctrl+S")
"""
KEEPASSXC = """import os

from qtdriver import eventually

SECRET_1 = os.environ["TEST_SECRET_1"]
SECRET_2 = os.environ["TEST_SECRET_2"]


def test_recorded(qtdriver):
    app = qtdriver.launch("keepassxc")
    main_window = app.window(name="MainWindow")
    main_window.widget("buttonNewDatabase").click()
    create_a_new = app.modal("Create a new KeePassXC database…")
    create_a_new.widget("databaseName").fill("Family")
    create_a_new.find(text="Continue").click()
    create_a_new.find(text="Continue").click()
    create_a_new.widget("enterPasswordEdit").find(path="passwordEdit").fill(SECRET_1)
    create_a_new.widget("repeatPasswordEdit").find(path="passwordEdit").fill(SECRET_2)
    create_a_new.find(text="Done").click()
    qfile_dialog = app.window(name="QFileDialog")
    qfile_dialog.file("FILE")
    eventually(main_window.find(text="New Entry…")).is_enabled()
    main_window.press("Ctrl+N")
    main_window.widget("titleEdit").fill("Bank")
    main_window.find(text="OK").click()
"""


@pytest.fixture(scope="module")
def browser(tmp_path_factory):
    with running_browser(tmp_path_factory.mktemp("profile")) as running:
        running.size(1800, 1250)
        yield running


@pytest.fixture
def surroundings(tmp_path, monkeypatch):
    """A home of its own, as a new user of a program has it, for the session and for the saved test alike."""
    for name, folder in [
        ("HOME", ""),
        ("XDG_CONFIG_HOME", ".config"),
        ("XDG_DATA_HOME", ".local"),
        ("XDG_CACHE_HOME", ".cache"),
    ]:
        monkeypatch.setenv(name, str(tmp_path / "home" / folder))
    for name, value in [
        ("LC_ALL", "C.UTF-8"),
        ("QT_XCB_GL_INTEGRATION", "none"),
        ("QT_QPA_PLATFORMTHEME", ""),
    ]:
        monkeypatch.setenv(name, value)
    monkeypatch.setenv(
        "USER", f"tester-{os.getpid()}"
    )  # KeePassXC runs once for each user, whatever the desktop
    (tmp_path / "home").mkdir()


class Session:
    """A program on the page, which is recorded."""

    def __init__(self, page, held):
        self.page = page
        self._held = held

    def find(self, **wanted):
        """The one widget that has these values."""
        found = []

        def look():
            found[:] = [
                node
                for node in self._held.nodes()
                if all(node[key] == value for key, value in wanted.items())
            ]
            return len(found)

        eventually(look, timeout=60).equals(1)
        return found[0]

    def click(self, **wanted):
        left, top, width, height = self.find(**wanted)["rect"]
        place = self.page.run(PLACE, left + width // 2, top + height // 2)
        self.page.mouse(("move", *place), ("down", 0), ("up", 0))

    def click_into(self, **wanted):
        """Clicks a field, and waits until it has the focus: the window manager may hold a click back."""
        self.click(**wanted)
        self.wait_for_focus(**wanted)

    def wait_for_focus(self, **wanted):
        """Waits until a field, or a part of it, has the focus. One that has it at first is not clicked where keys follow that
        select: they can overtake the click, which would end the selection."""

        def focused():
            left, top, width, height = self.find(**wanted)["rect"]
            rects = [node["rect"] for node in self._held.nodes() if "focused" in node["states"]]
            return any(left <= x < left + width and top <= y < top + height for x, y, _, _ in rects)

        eventually(focused, timeout=60).is_true()

    def write(self, text, **wanted):
        """Clicks a field and types a text, once more where the window manager has not let the keys through."""
        for seconds in (15, 60):
            self.click_into(**wanted)
            self.page.chord(CONTROL, "a")
            self.page.press(*text)
            with suppress(ConditionError):
                self.wait_for(f'fill("{text}")', seconds)
                return
        raise AssertionError(f"{text} was not recorded: {self.code()}")

    def check(self, words, **wanted):
        """Chooses a check of a widget, once that can be chosen."""
        self.page.click("#check")

        def offered():
            self.click(**wanted)
            self.page.wait_until("return document.querySelectorAll('#checks p').length")
            return self.page.texts("#checks button")

        eventually(offered, timeout=60).satisfies(lambda found: words in found)
        self.page.click("#checks button", words)
        eventually(lambda: self.page.text("#told"), timeout=60).equals(f"Checked: {words}")
        self.page.click("#use")

    def wait_for(self, part, seconds=60):
        """Waits until this part of the code is written."""
        eventually(self.code, timeout=seconds).satisfies(lambda code: part in code)

    def code(self):
        return self.page.run("return document.getElementById('code').value")


def record(browser, tmp_path, program, story):
    """Records a story, and saves it. Answers its code."""
    if not shutil.which(program[0]):
        pytest.skip(f"{program[0]} is not installed")
    with holding(tmp_path / "home", *program) as held, inspecting(folder=tmp_path) as running:
        browser.go(running.address)
        browser.wait_until("return Number(document.getElementById('picture').dataset.count) > 0", seconds=60)
        browser.click("#record")
        session = Session(browser, held)
        session.wait_for("qtdriver.launch(")
        story(session)
        browser.click("#save")
        browser.wait_until("return document.getElementById('told').textContent.startsWith('Saved.')")
        return session.code()


def test_a_session_with_featherpad(browser, tmp_path, surroundings):
    file = tmp_path / "notes.txt"
    file.write_text("", encoding="utf-8")

    def story(session):
        session.click_into(**{"class": "FeatherPad::TextEdit"})
        browser.press(*NOTES.replace("\n", ENTER))
        browser.chord(CONTROL, "r")
        session.click_into(name="lineEditFind")
        browser.press("€")
        session.click_into(name="lineEditReplace")
        browser.press(*"euros")
        session.wait_for('.fill("euros")')
        session.click(name="toolButtonAll")
        session.wait_for('widget("toolButtonAll").click()')
        browser.chord(CONTROL, "s")
        session.wait_for('press("Ctrl+S")')
        eventually(lambda: file.read_text(encoding="utf-8").strip(), timeout=60).equals(
            NOTES.replace("€", "euros")
        )

    code = record(browser, tmp_path, ["featherpad", "--standalone", str(file)], story)
    assert code == FEATHERPAD.replace("FILE", str(file))
    for _ in range(RUNS):
        file.write_text("", encoding="utf-8")
        assert "1 passed" in run_saved_test(tmp_path)
        assert file.read_text(encoding="utf-8").strip() == NOTES.replace("€", "euros")


def test_a_session_with_keepassxc(browser, tmp_path, surroundings):
    file = tmp_path / "family.kdbx"

    def story(session):
        session.click(name="buttonNewDatabase")
        session.wait_for_focus(name="databaseName")
        browser.chord(CONTROL, "a")
        browser.press(*"Family")
        session.click(shown='button "Continue"')
        session.find(shown='label "Encryption Settings"')
        session.click(shown='button "Continue"')
        for name in ("enterPasswordEdit", "repeatPasswordEdit"):
            session.click_into(name=name)
            browser.press(*PASSWORD)
        session.click(shown='button "Done"')
        session.wait_for_focus(name="fileNameEdit")
        browser.chord(CONTROL, "a")
        browser.press(*str(file), ENTER)
        session.wait_for(".file(")
        session.check("it is enabled", shown='button "New Entry…"')
        browser.chord(CONTROL, "n")
        session.write("Bank", name="titleEdit")
        session.click(shown='button "OK"')
        session.wait_for('find(text="OK").click()')

    code = record(browser, tmp_path, ["keepassxc"], story)
    assert code == KEEPASSXC.replace("FILE", str(file))
    for _ in range(RUNS):
        file.unlink()
        shutil.rmtree(tmp_path / "home" / ".config", ignore_errors=True)
        told = run_saved_test(tmp_path, TEST_SECRET_1=PASSWORD, TEST_SECRET_2=PASSWORD)
        assert "1 passed" in told, told
        assert file.exists()
