"""Paths as only Windows has them, in file dialogs of Qt's own: the application gets the file that is meant."""

import os
from pathlib import Path

import pytest
from hostapp import HostApp
from hostplatform import shown

MODAL = "Widget:ActiveModalWidget"
SERVER, SHARE = "roastery", "beans"


@pytest.fixture
def folder(tmp_path):
    (tmp_path / "inner").mkdir()
    for name in ("report.txt", "inner/Mixed Case.TXT"):
        (tmp_path / name).write_text(name)
    return tmp_path


@pytest.fixture
def share(folder):
    """The folder as a share of a server: Wine looks for those in its prefix."""
    shares = Path(os.environ["WINEPREFIX"]) / "dosdevices" / "unc" / SERVER
    shares.mkdir(parents=True, exist_ok=True)
    link = shares / SHARE
    link.symlink_to(folder)
    yield
    link.unlink()


@pytest.fixture
def app(folder):
    app = HostApp("filedialoghost", env={"FOLDER": shown(folder)})
    yield app
    app.end()


def choose(app, button, path):
    """Has a click open a dialog, types the path there, and returns the file that the application gets."""
    assert app.activate("Files", button) == "0,QPushButton"
    app.wait_until("dialog", "isActiveWindow", "true")
    app.forget()
    assert app.activate(MODAL, "dialog", f"s:{path}") == "0,QFileDialog"
    app.wait_until("dialog", "visible", "<no object dialog>")
    (answer,) = app.events("file", "no")
    return answer.partition(" ")[2]


def backslashes(path):
    return path.replace("/", "\\")


@pytest.mark.parametrize(
    "button, name", [("open", "report.txt"), ("open", "inner/Mixed Case.TXT"), ("save", "new.txt")]
)
def test_backslashes_separate_folders_as_slashes_do(app, folder, button, name):
    path = f"{shown(folder)}/{name}"
    assert choose(app, button, backslashes(path)) == path
    assert choose(app, button, path) == path


def test_a_drive_is_named_by_its_letter_in_any_case(app, folder):
    path = f"{shown(folder)}/report.txt"
    assert choose(app, "open", "z" + backslashes(path[1:])).lower() == path.lower()


def test_another_drive_than_the_shown_one_is_reached(app):
    assert choose(app, "save", "C:\\windows\\new.txt") == "C:/windows/new.txt"


@pytest.mark.parametrize("name", ["inner\\Mixed Case.TXT", ".\\report.txt", "inner\\..\\report.txt"])
def test_a_relative_path_begins_in_the_folder_that_is_shown(app, folder, name):
    chosen = choose(app, "open", name)
    assert os.path.normpath(chosen) == os.path.normpath(f"{shown(folder)}/{name}".replace("\\", "/"))


@pytest.mark.usefixtures("share")
@pytest.mark.parametrize("name", ["report.txt", "inner/Mixed Case.TXT"])
@pytest.mark.parametrize("write", [backslashes, str], ids=["backslashes", "slashes"])
def test_a_file_on_a_server_is_chosen(app, name, write):
    path = f"//{SERVER}/{SHARE}/{name}"
    assert choose(app, "open", write(path)) == path
