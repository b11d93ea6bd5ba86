"""Completion in shells: its words, and bash and zsh themselves in a terminal."""

import os
import shutil
import subprocess
from contextlib import contextmanager
from pathlib import Path

import pytest

from qtdriver.commandline.arguments import parsers
from qtdriver.shell.completion import Completion, complete, complete_in_bash
from qtdriver.shell.manual import manual_page

from oneshot import held, qtdriver, runtime  # noqa: F401
from terminal import in_terminal

ROOT = Path(__file__).resolve().parents[2]
FILES = ROOT / "runner" / "completion"


def completed(*words, answer=()):
    """The completion of the last word, and what the application was asked."""
    questions = []

    def ask(name, asked):
        questions.append((name, list(asked)))
        return answer

    return complete(words, parsers()[0], ask), questions


def test_the_first_word_is_a_command_or_an_option_of_all():
    found, questions = completed("")
    assert {"run", "tree", "stop", "doctor", "trace"} <= set(found.words) and questions == []
    assert completed("act")[0] == Completion("words", ["activate"])
    assert "--version" in completed("--")[0].words


def test_options_and_their_values_are_those_of_the_command():
    assert completed("run", "--head")[0] == Completion("words", ["--headless"])
    assert completed("mouse", "Main", "ok", "click", "--button", "r")[0] == Completion("words", ["right"])
    assert completed("run", "--qt", "")[0].words == ["4", "5", "6"]
    assert completed("run", "--script", "req")[0].kind == "files"
    assert completed("tree", "--timeout", "")[0] == Completion("words")


def test_windows_and_widgets_are_asked_of_the_application_that_is_named():
    found, questions = completed("get", "--name", "other", "Main", "dia", answer=["dialog/ok", "help"])
    assert found == Completion("words", ["dialog/ok"])
    assert questions == [("other", ["get", "Main"])]
    assert completed("tree", "roa", answer=["Roastery"])[0].words == ["Roastery"]


def test_behind_two_dashes_come_a_program_and_its_files():
    assert completed("run", "--", "speed")[0].kind == "programs"
    assert completed("run", "--", "./spe")[0].kind == "files"
    assert completed("run", "--", "editor", "no")[0].kind == "files"
    assert completed("doctor", "")[0].words == ["--"]


BASH = [
    ("qtdriver tree Ma", "Main\\ window\\ \\(2\\)"),
    ("qtdriver tree 'Ma", "Main window (2)"),
    ('qtdriver tree "Main w', "Main window (2)"),
    ("qtdriver tree Main\\ w", "Main\\ window\\ \\(2\\)"),
    ("qtdriver tree Widget:Ma", "MainWindow"),
]


@pytest.mark.parametrize("line, word", BASH)
def test_bash_gets_words_with_the_quotes_that_it_does_not_make_itself(line, word):
    def ask(name, words):
        return ["Main window (2)", "Widget:MainWindow"]

    assert complete_in_bash(line, parsers()[0], ask).words == [word]


def test_the_manual_page_tells_every_command_and_is_well_formed():
    page = manual_page(parsers()[0], "1.2.3")
    for command in ("run", "tree", "doctor", "report"):
        assert f'.SS "{command}"' in page
    checked = subprocess.run(
        ["man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", "-Z", "-"],
        input=page,
        capture_output=True,
        text=True,
        env={**os.environ, "MANROFFSEQ": "", "MANWIDTH": "80", "LC_ALL": "C.UTF-8"},
    )
    assert (checked.returncode, checked.stderr) == (0, "")


STARTS = {
    "bash": (["bash", "--norc", "--noprofile", "-i"], f"source {FILES}/qtdriver"),
    "zsh": (["zsh", "-f", "-i"], f"fpath=({FILES} $fpath); autoload -U compinit; compinit -D -u"),
}


@contextmanager
def shell(name, tmp_path):
    """The screen of a shell that has loaded the completion, and in which the command is the checkout's."""
    command, loading = STARTS[name]
    (tmp_path / "bin").mkdir()
    (tmp_path / "bin" / "qtdriver").symlink_to(ROOT / "scripts" / "qtdriver")
    environment = {**os.environ, "PATH": f"{tmp_path / 'bin'}:{os.environ['PATH']}", "HOME": str(tmp_path)}
    with in_terminal(command, environment) as (_, screen):
        screen.type(f"{loading}; PS1='rea''dy> '\r")
        screen.wait_for("ready> ")
        yield screen


def needs(name):
    return pytest.param(name, marks=pytest.mark.skipif(not shutil.which(name), reason=f"{name} is missing"))


@pytest.mark.parametrize("name", [needs("bash"), needs("zsh")])
def test_a_shell_completes_commands_windows_and_widgets(name, tmp_path, held):
    with shell(name, tmp_path) as screen:
        for typed, added in (("qtdriver activ", "ate"), (" Roas", "tery"), (" brewB", "utton")):
            screen.type(f"{typed}\t")
            screen.wait_for(added)
            screen.type("\b")  # the blank that a completed word ends with


@pytest.mark.parametrize("name", [needs("bash"), needs("zsh")])
def test_a_shell_completes_a_name_with_a_colon_and_a_word_in_quotes(name, tmp_path, held):
    with shell(name, tmp_path) as screen:
        screen.type("qtdriver tree Widget:sh\t")
        screen.wait_for("owcase")
        screen.type(" --vi\t")
        screen.wait_for("sible")
        screen.type('\x15qtdriver get Roastery "brewB\t')
        screen.wait_for("utton")


def test_a_window_without_a_menu_bar_has_no_entries_to_complete(held):
    qtdriver("menu", "Roastery", "Order/New order...")
    assert qtdriver("complete", "zsh", "menu", "Widget:ActiveModalWidget", "") == "words"
    assert "New order" in qtdriver("windows"), "the application is still held"
