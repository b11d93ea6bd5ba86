"""Passwords that are typed into fields which do not show them are kept nowhere."""

import json
import os

import pytest

from pytestrun import Project
from qtdriver import ApplicationEndedError
from qtdriver.protocol.channel import Channel
from qtdriver.protocol.secrets import Secrets
from qtdriver.protocol.transcript import KEPT_REPLY
from qtdriver.trace.recorder import Recorder

from showcase import PROGRAM, QT, running

PASSWORD = "corr3ct-horse"
FORMS = [PASSWORD, PASSWORD.encode().hex()]


@pytest.fixture
def recorded(tmp_path):
    """Runs a test on the page with the password field; answers all that is kept of it as a text."""

    def run(test):
        with running(timeout=5) as (driver, app):
            window = app.window(name="showcase")
            window.widget("pages/qt_tabwidget_tabbar").select("Entry fields")
            recorder = Recorder(tmp_path / "trace", screenshots=False)
            driver.listeners.append(recorder)
            test(window)
            recorder.close(keep=True)
            exchanges = app.connection.transcript.exchanges()
        return (tmp_path / "trace" / "trace.json").read_text() + repr(exchanges)

    return run


def titles(tmp_path):
    steps = json.loads((tmp_path / "trace" / "trace.json").read_text())["steps"]
    return [step["title"].rpartition(".")[2] for step in steps]


@pytest.mark.parametrize(
    "type_it",
    [
        lambda window: window.widget("passwordEdit").enter(PASSWORD),
        lambda window: window.widget("passwordEdit").enter(PASSWORD + "\n"),
        lambda window: window.widget("passwordEdit").type(PASSWORD),
        lambda window: window.widget("passwordEdit").fill(PASSWORD),
        lambda window: (window.widget("passwordEdit").focus(), window.type(PASSWORD)),
        lambda window: (window.widget("passwordEdit").focus(), window.focus_widget().enter(PASSWORD)),
        lambda window: window.app.connection.enter_widget("Widget:showcase", "passwordEdit", PASSWORD),
        lambda window: window.widget("postcodeEdit").type(f"7\t\t{PASSWORD}"),
        lambda window: window.widget("postcodeEdit").fill(f"7\t\t{PASSWORD}\n"),
    ],
    ids=[
        "enter",
        "enter and Return",
        "type",
        "fill",
        "window",
        "focus widget",
        "command",
        "type Tab",
        "fill Tab",
    ],
)
def test_a_typed_password_is_in_no_trace_and_no_transcript(recorded, type_it):
    def type_and_read(window):
        type_it(window)
        assert window.widget("passwordEdit").text() == PASSWORD, "the application has got it"

    kept = recorded(type_and_read)
    assert [form for form in FORMS if form in kept] == []
    assert "***" in kept


def test_other_texts_are_kept(recorded, tmp_path):
    kept = recorded(lambda window: window.widget("customerEdit").enter("Ada Lovelace"))
    assert "enter('Ada Lovelace')" in titles(tmp_path) and "Ada Lovelace".encode().hex() in kept


def test_a_text_that_was_typed_in_vain_before_is_left_out_too(recorded, tmp_path):
    def type_twice(window):
        with pytest.raises(Exception, match="not found"):
            window.widget("passwortEdit").enter(PASSWORD, timeout=0)
        window.widget("passwordEdit").enter(PASSWORD)

    kept = recorded(type_twice)
    assert titles(tmp_path)[-2:] == ["enter('***', timeout=0)", "enter('***')"]
    trace = (tmp_path / "trace" / "trace.json").read_text()
    assert [form for form in FORMS if form in trace] == [] and kept


def test_messages_are_without_the_password():
    with running(timeout=1) as (_, app):
        window = app.window(name="showcase")
        window.widget("pages/qt_tabwidget_tabbar").select("Entry fields")
        field = window.widget("passwordEdit")
        field.enter(PASSWORD)
        os.kill(app.pid, 9)
        with pytest.raises(ApplicationEndedError) as caught:
            field.enter(PASSWORD)
    assert not [form for form in FORMS if form in str(caught.value)]


def test_a_failure_in_pytest_is_told_without_the_password(tmp_path):
    project = Project(tmp_path)
    project.write(
        """
        def test_login(qtdriver):
            command = f'echo "no user has the PIN $PASSWORD"; exec {os.environ["SHOWCASE"]}'
            app = qtdriver.launch("/bin/sh", "-c", command, qt=int(os.environ["QTDRIVER_QT"]))
            window = app.window(name="showcase")
            window.widget("pages/qt_tabwidget_tabbar").select("Entry fields")
            window.widget("passwordEdit").enter(os.environ["PASSWORD"])
            print("typed", os.environ["PASSWORD"])
            assert window.widget("passwordEdit").text() == "nothing"
        """
    )
    project.environment.update(PASSWORD=PASSWORD, SHOWCASE=str(PROGRAM), QTDRIVER_QT=str(QT))
    run = project.run("--showlocals")
    assert run.outcomes == "1 failed" and "assert '***' == 'nothing'" in run.output
    files = [path for path in [project.junit, *project.results.rglob("*")] if path.is_file()]
    assert {
        "error.txt",
        "junit.xml",
        "report.html",
        "stdout.txt",
        "trace.json",
        "transcript.txt",
    } <= {path.name for path in files}
    found = [path.name for path in files for form in FORMS if form.encode() in path.read_bytes()]
    assert found == [] and PASSWORD not in run.output


def test_a_short_password_is_left_out_where_it_stands_alone():
    secrets = Secrets(["7", "a\\b"])
    assert secrets.hide("type('7') in 17 s: 7") == "type('***') in 17 s: ***"
    assert secrets.hide(f"type({'a' + chr(92) + 'b'!r})") == "type('***')"
    assert secrets.hide_in_line("0,u:37") == f"0,u:{'***'.encode().hex()}"
    assert secrets.hide_in_line("0,u:3737") == "0,u:3737"


@pytest.mark.parametrize("secret", ['it\'s "1"', 'pä"s\\s-w', "tab\there", "\U0001f600-smile"])
def test_a_password_is_left_out_as_python_and_json_write_it(secret):
    secrets = Secrets([secret])
    texts = [secret, f"'{secret}\" {secret}"]
    for text in texts:
        for write in (str, repr, ascii, json.dumps, lambda one: json.dumps(one, ensure_ascii=False)):
            assert secrets.hide(write(text)) == write(text.replace(secret, "***")), write(text)


def test_the_beginning_of_a_password_is_left_out_where_a_text_is_cut():
    secrets = Secrets(['Open sesame, "now"'])
    for text, hidden in (
        ("label Open sesa... (12 more characters)", "label ***... (12 more characters)"),
        ('"Open sesame, \\"no..." and "Open sesame,..."', '"***..." and "***..."'),
        ("Open sesame... Open sesame...", "***... ***..."),
        ("Open...", "Open..."),  # as entries of menus are
        ("Open sesa and ...", "Open sesa and ..."),
    ):
        assert secrets.hide(text) == hidden


@pytest.mark.parametrize("password", [PASSWORD, "пароль-на-кофе"])
@pytest.mark.parametrize("kind", ["0,u:", "0,sl:", "0,j:"])
def test_no_part_of_a_password_is_kept_of_a_long_reply(kind, password):
    """Wherever it is, and wherever the reply is cut."""
    secrets = Secrets([password])
    for before in (
        5,
        *range(KEPT_REPLY // 2 - 30, KEPT_REPLY // 2 + 3),
        *range(KEPT_REPLY - 30, KEPT_REPLY + 3),
    ):
        text = "-" * before + password + "-" * KEPT_REPLY
        kept = secrets.hide_in_beginning(kind + (text if kind == "0,j:" else text.encode().hex()), KEPT_REPLY)
        assert not [part for part in (password[:4], password[:4].encode().hex()) if part in kept], before
        assert KEPT_REPLY * 0.9 < len(kept) <= KEPT_REPLY and kept.startswith(kind)


def test_a_transcript_has_the_beginning_of_a_long_reply_without_the_password(monkeypatch):
    channel = Channel(None, None)
    monkeypatch.setattr(channel, "exchange", lambda line, timeout: f"0,u:{(PASSWORD * 500).encode().hex()}")
    channel.secrets.add(PASSWORD)
    channel.request("7,Main,note,,text,")
    (exchange,) = channel.transcript.exchanges()
    assert exchange.reply.startswith(f"0,u:{b'******'.hex()}") and FORMS[1][:8] not in exchange.reply
