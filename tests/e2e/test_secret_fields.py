"""Passwords that reach a field in other ways than by a text for that field are in no trace either."""

import json
import re
import sys
from pathlib import Path

import pytest

from qtdriver import Driver, errors, eventually
from qtdriver.trace.recorder import Recorder

from showcase import AGENTS

sys.path.append(str(Path(__file__).resolve().parents[1] / "protocol"))

from hostapp import HostApp

FIELDS = ("userEdit", "slowEdit", "pinEdit", "vault", "pinBox")


@pytest.fixture(scope="module")
def logging_in():
    """An application whose password fields get what was typed in other ways than by a click or the Tab key."""
    with Driver(build=AGENTS, timeout=10) as driver:
        host = HostApp("loginhost", serve=False)
        yield driver, host, driver.attach(pid=host.process.pid)
        assert host.close() == 0


@pytest.fixture
def login(logging_in, tmp_path):
    """Runs a test on the fields, which are empty; answers the trace of it as a text."""
    driver, host, app = logging_in
    window = app.window(name="login")
    for name in FIELDS:
        window.widget(name).fill("")

    def run(test):
        recorder = Recorder(tmp_path / "trace", screenshots=False)
        driver.listeners.append(recorder)
        try:
            test(window, host)
        finally:
            driver.listeners.remove(recorder)
            recorder.close(keep=True)
        return (tmp_path / "trace" / "trace.json").read_text()

    return run


def forms_of(password):
    """The ways in which a trace could have a text."""
    return [
        password,
        password.encode().hex(),
        json.dumps(password)[1:-1],
        "', '".join(password),
        '", "'.join(password),
    ]


def raw(window):
    return window.app.connection


def typed(text):
    """A text as a command has it."""
    return f"s:{text}".encode("latin-1").hex()


def titles(trace):
    return [step["title"].rpartition(".")[2] for step in json.loads(trace)["steps"]]


@pytest.mark.parametrize(
    "password, type_it, field",
    [
        ("alder-4711", lambda window, text: window.widget("userEdit").type(f"ada\n{text}"), "pinEdit"),
        ("birch-4712", lambda window, text: window.widget("userEdit").fill(f"ada\r\n{text}\n"), "pinEdit"),
        ("cedar-4713", lambda window, text: window.widget("slowEdit").type(f"ada\n{text}\n"), "pinEdit"),
        ("ebony-4714", lambda window, text: window.widget("vault").type(text), "vault/vaultEdit"),
        ("hazel-4715", lambda window, text: window.widget("vault").fill(text), "vault/vaultEdit"),
        ("larch-4716", lambda window, text: window.widget("pinBox").enter(text), "pinBox/pinBoxEdit"),
        ("maple-4717", lambda window, text: window.widget("pinBox").type(text), "pinBox/pinBoxEdit"),
        ("olive-4718", lambda window, text: window.widget("pinEdit").press(*text), "pinEdit"),
        ("'\"()-4719", lambda window, text: [window.widget("pinEdit").press(key) for key in text], "pinEdit"),
        (
            "yucca-4721",
            lambda window, text: (window.app.clipboard.set(text), window.widget("pinEdit").press("Ctrl+V")),
            "pinEdit",
        ),
        (
            "aspen-4722",
            lambda window, text: (
                window.widget("userEdit").focus(),
                window.app.connection.type_text("Widget:login", f"ada\n{text}"),
            ),
            "pinEdit",
        ),
        ("rowan-4720", lambda window, text: [window.widget("pinEdit").type(key) for key in text], "pinEdit"),
    ],
    ids=[
        "Return",
        "fill Return",
        "focus moves later",
        "field within a widget",
        "fill within a widget",
        "box",
        "type box",
        "keys",
        "key by key",
        "pasted",
        "one request",
        "text by text",
    ],
)
def test_a_password_that_comes_in_another_way_is_in_no_trace(login, password, type_it, field):
    def type_and_read(window, host):
        type_it(window, password)
        assert window.widget(field).text() == password, "the application has got it"

    kept = login(type_and_read)
    assert [form for form in forms_of(password) if form in kept] == []
    assert "***" in kept


@pytest.mark.parametrize(
    "password, type_it",
    [
        ("alder-5711", lambda window, text: window.widget("greyEdit").fill(text, timeout=0)),
        ("birch-5712", lambda window, text: window.widget("greyEdit").enter(text, timeout=0)),
        ("cedar-5713", lambda window, text: window.widget("unlitEdit").fill(text, timeout=0)),
        ("ebony-5714", lambda window, text: window.widget("unlitEdit").type(text, timeout=0)),
        ("hazel-5715", lambda window, text: window.find(label="PIN:").type(text, timeout=0)),
        ("larch-5716", lambda window, text: window.widget("passwordField").enter(text, timeout=0)),
        (
            "maple-5717",
            lambda window, text: window.app.window("Vault").widget("pinEdit").fill(text, timeout=0),
        ),
    ],
    ids=["fill disabled", "enter disabled", "fill hidden", "type hidden", "no label", "no name", "no window"],
)
def test_a_password_whose_field_cannot_be_used_is_in_no_trace(login, password, type_it):
    def type_in_vain(window, host):
        with pytest.raises(errors.ReplyError):
            type_it(window, password)

    kept = login(type_in_vain)
    assert [form for form in forms_of(password) if form in kept] == [] and "***" in kept


def test_a_text_for_another_field_that_is_not_found_is_kept(login):
    def type_in_vain(window, host):
        for name in ("spinEdit", "opinionEdit", "pinboardEdit"):
            with pytest.raises(errors.WidgetNotFoundError):
                window.widget(name).fill("Ada Lovelace", timeout=0)

    kept = login(type_in_vain)
    assert [title.partition(",")[0] for title in titles(kept)] == ["fill('Ada Lovelace'"] * 3


def test_a_password_for_a_window_that_is_not_in_front_is_in_no_trace(login):
    def type_into_second(window, host):
        second = window.app.window(name="second")
        host.do("showSecond")
        eventually(second.widget("behindEdit")).has(isActiveWindow=True)
        window.widget("userEdit").click()
        eventually(window.widget("userEdit")).has(isActiveWindow=True)
        second.type("poplar-4723")
        # On a busy desktop the window manager can give the focus back in the middle, and the keys follow it.
        eventually(second.widget("behindEdit")).has(text=re.compile("^p"))

    kept = login(type_into_second)
    assert [form for form in forms_of("poplar-4723") if form in kept] == [] and "***" in kept


def test_a_password_for_an_editor_that_its_first_key_opens_is_in_no_trace(login):
    ways = [
        ("acacia-6711", lambda window, text: window.widget("keyList").type(f"{text}\n")),
        ("brazil-6712", lambda window, text: window.widget("keyList").press(*text, "Return")),
        (
            "clover-6713",
            lambda window, text: [window.widget("keyList").item(0).type(k) for k in (text, "\n")],
        ),
        ("eryngo-6715", lambda window, text: window.widget("keyList").enter(text)),
        ("hyssop-6718", lambda window, text: window.widget("keyList").enter(text, force=True)),
        ("fescue-6716", lambda window, text: window.widget("keyList").item(0).enter(text)),
        ("daphne-6714", lambda window, text: (window.widget("keyList").focus(), window.type(f"{text}\n"))),
        (
            "ginkgo-6719",
            lambda window, text: (window.widget("keyList").focus(), window.focus_widget().enter(text)),
        ),
        (
            "jasmin-6720",
            lambda window, text: (
                window.widget("keyList").focus(),
                window.focus_widget().enter(text, force=True),
            ),
        ),
        ("lupine-6721", lambda window, text: raw(window).enter_widget("Widget:login", "keyList", text)),
        ("mallow-6722", lambda window, text: raw(window).request(f"6,Widget:login,keyList,,{typed(text)},")),
    ]

    def type_and_read(window, host):
        for password, type_it in ways:
            type_it(window, password)
            eventually(window.widget("keyList").item(0).text).equals(password)

    kept = login(type_and_read)
    assert [form for password, _ in ways for form in forms_of(password) if form in kept] == []
    assert kept.count("***") >= len(ways)


@pytest.mark.parametrize(
    "enter_it",
    [
        lambda view, text: view.enter(text),
        lambda view, text: (view.focus(), view.window.focus_widget().enter(text)),
        lambda view, text: raw(view.window).enter_widget("Widget:login", "keyList", text),
    ],
    ids=["widget", "focus widget", "command"],
)
def test_a_password_that_the_editor_of_a_view_refuses_is_in_no_trace(login, enter_it):
    password = "ginger-6717-longer-than-the-editor-takes-which-is-forty"

    def enter(window, host):
        with pytest.raises(errors.CommandError, match="validate error"):
            enter_it(window.widget("keyList"), password)
        window.press("Escape")

    kept = login(enter)
    assert [form for form in forms_of(password) if form in kept] == [] and "***" in kept


@pytest.mark.parametrize("text", ["no such", "qsuch"], ids=["button", "shortcut"])
def test_the_rest_of_a_text_goes_to_the_dialog_that_its_middle_opens(login, text):
    def type_on_button(window, host):
        window.widget("askButton").focus()
        window.type(text)
        dialog = window.app.window(name="asked0")
        eventually(dialog.widget("askedEdit")).has(text="such")
        dialog.press("Escape")
        eventually(dialog).is_closed()

    login(type_on_button)


def test_keys_and_line_breaks_elsewhere_are_kept(login):
    def type_and_press(window, host):
        window.widget("pinEdit").press("x", "7")
        window.widget("notesEdit").type("one\ntwo")
        window.widget("notesEdit").press("Ctrl+A", "x")
        window.widget("userEdit").fill("ada\n")

    kept = login(type_and_press)
    assert [title for title in titles(kept) if "text()" not in title] == [
        "press('***', '***')",
        "type('one\\ntwo')",
        "press('Ctrl+A', '***')",
        "fill('ada\\n')",
    ]
    typed = [step["exchanges"][-1]["request"] for step in json.loads(kept)["steps"]]
    assert typed[1].endswith("one\ntwo".encode().hex()), "an editor gets it in one request"
